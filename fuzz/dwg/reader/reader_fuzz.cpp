// Any bytes as a drawing: read, checked, dumped, measured.
#include <cstddef>
#include <cstdint>
#include <vector>

#include "dwg/reader/check.h"
#include "dwg/reader/drawing.h"
#include "dwg/reader/dump.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace zm::dwg::reader;
    const Drawing drawing(std::vector<std::uint8_t>(data, data + size));
    Check(drawing);
    Info(drawing, true);
    drawing.ForEachEntity([&](const Record& record) { return !Line(drawing, record, true).empty(); });
    for (std::size_t i = 0; i < drawing.blocks.size() && i < 8; ++i)
        drawing.ForEachInBlock(i, [&](const Record& record) { return !Line(drawing, record, false).empty(); });
    return 0;
}
