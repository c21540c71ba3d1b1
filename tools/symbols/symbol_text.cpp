#include "tools/symbols/symbol_text.h"

#include <cstdio>
#include <memory>

#include "runtime/files/files.h"
#include "tools/symbols/quiet_host.h"

namespace zm::tool::symbols {

namespace {

struct CloseFile {
    void operator()(std::FILE* file) const { std::fclose(file); }
};
using File = std::unique_ptr<std::FILE, CloseFile>;

std::vector<std::string> ReadLines(std::FILE* file) {
    std::vector<std::string> lines;
    std::string line;
    char block[16384];
    const auto finish = [&] {
        if (!line.empty() && line.back() == '\r') line.pop_back();
        lines.push_back(std::move(line));
        line.clear();
    };
    while (const std::size_t got = std::fread(block, 1, sizeof block, file))
        for (std::size_t i = 0; i < got; ++i) {
            if (block[i] == '\n')
                finish();
            else
                line += block[i];
        }
    if (!line.empty()) finish();
    return lines;
}

bool IsBlank(const std::string& line) {
    return line.find_first_not_of(" \t\v\f\r") == std::string::npos;
}

/// Whether a line of a body is taken by the reader: it begins with an integer, or is empty.
bool IsRecord(const std::string& line) {
    int value = 0;
    return IsBlank(line) || zm::scan::Scanner(line.c_str()).Int(value);
}

}  // namespace

const std::string& SymbolText::Line(int number) const {
    static const std::string none;
    return number < 1 || static_cast<std::size_t>(number) > lines.size() ? none
                                                                         : lines[static_cast<std::size_t>(number) - 1];
}

namespace {

/// The last line of the symbol whose header is in the given line.
int LastLine(const SymbolText& text, int header, int status) {
    const int count = static_cast<int>(text.lines.size());
    if (status == SymbolStatusLC) return header < count ? header + 1 : header;
    if (status != SymbolStatusG && status != SymbolStatusH) return header;
    int last = header;
    for (int i = header + 1; i <= count; ++i) {
        const std::string& line = text.Line(i);
        if ((!line.empty() && line[0] == '*') || !IsRecord(line)) break;
        if (!IsBlank(line)) last = i;
    }
    return last;
}

void FindPlaces(SymbolText& text) {
    int end = static_cast<int>(text.lines.size());
    for (const auto& remark : text.remarks)
        if (remark.what == zm::symbol::Remark::kLibraryTooLarge) end = remark.line - 1;
    for (int i = 1; i <= end; ++i) {
        const std::string& line = text.Line(i);
        if (line.size() < 2 || line[0] != '*') continue;
        if (line[1] == '$') break;
        int code = 0;
        if (!zm::scan::Scanner(line.c_str() + 1).Int(code) || code < 1 || code >= zm::symbol::kHeads) continue;
        text.places[static_cast<std::size_t>(code)] = {i, LastLine(text, i, text.Head(code).status)};
    }
}

}  // namespace

bool ReadSymbolText(const char* path, SymbolText& text) {
    const QuietHost quiet;
    const File file(files::Open(path, "rb"));
    if (file == nullptr) return false;
    text.lines = ReadLines(file.get());
    std::rewind(file.get());
    zm::symbol::SymbolFileReader(file.get(), text.library, &text.remarks).Read();
    FindPlaces(text);
    return true;
}

}  // namespace zm::tool::symbols
