// make_symbols OUTPUT SOURCE...: writes the symbol file of the readable sources, in their order.
#include <cstdio>
#include <fstream>
#include <iterator>

#include "tools/symbols/source.h"

int main(int argc, char** argv) {
    if (argc < 3) {
        std::fprintf(stderr, "usage: make_symbols OUTPUT SOURCE...\n");
        return 2;
    }
    std::vector<std::string> sources;
    for (int i = 2; i < argc; ++i) {
        std::ifstream in(argv[i], std::ios::binary);
        if (!in) {
            std::fprintf(stderr, "make_symbols: %s cannot be read.\n", argv[i]);
            return 2;
        }
        sources.emplace_back(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
        if (!sources.back().empty() && sources.back().back() != '\n') sources.back() += '\n';
    }
    std::vector<zm::tool::symbols::SourceFault> faults;
    const std::string text = zm::tool::symbols::BuildSymbolFile(sources, faults);
    for (const auto& fault : faults)
        std::fprintf(stderr, "make_symbols: line %d of the joined sources: %s.\n", fault.line, fault.text.c_str());
    if (!faults.empty()) return 1;
    std::ofstream out(argv[1], std::ios::binary);
    out.write(text.data(), static_cast<std::streamsize>(text.size()));
    out.close();
    if (!out) {
        std::fprintf(stderr, "make_symbols: %s cannot be written.\n", argv[1]);
        return 2;
    }
    return 0;
}
