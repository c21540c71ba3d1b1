// Any bytes as a drawing that becomes DXF, in both encodings: groups in pairs of lines, an end, no more than the
// drawing's size can account for, and numbers that are numbers.
#include <cstdint>
#include <cstdlib>
#include <string>
#include <vector>

#include "dwg/dxf/dxf_writer.h"

namespace {

void Require(bool condition) {
    if (!condition) std::abort();
}

void CheckGroups(const std::string& text) {
    std::size_t lines = 0;
    for (const char c : text) lines += c == '\n' ? 1 : 0;
    Require(lines % 2 == 0);
    Require(text.size() > 8 && text.ends_with("\nEOF\n"));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace zm::dwg;
    const reader::Drawing drawing(std::vector<std::uint8_t>(data, data + size));
    for (const bool utf8 : {false, true}) {
        std::string text;
        dxf::Count count;
        const bool whole = dxf::WriteDxf(
            drawing, {utf8}, [&](std::string_view piece) { return text.append(piece), true; }, count);
        Require(whole);
        CheckGroups(text);
        Require(text.size() < 200000 + 400 * size);
    }
    // An output that ends after some bytes ends the writing.
    std::size_t taken = 0;
    dxf::Count count;
    dxf::WriteDxf(
        drawing, {}, [&](std::string_view piece) { return (taken += piece.size()) < 1000; }, count);
    return 0;
}
