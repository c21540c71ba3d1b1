// Any bytes as "ACAD.LIN"; the first line is the wanted name.
#include <algorithm>
#include <cmath>

#include "dwg/writer/line_pattern.h"
#include "fuzz/dwg/session_in_memory.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace zm;
    const std::uint8_t* end = std::find(data, data + size, '\n');
    const std::string wanted(data, end);
    std::vector<std::uint8_t> file(end, data + size);
    const dwg::FileOwner stream = fuzz::StreamOn(file, "rb");
    if (stream == nullptr) return 0;
    dwg::LinePattern pattern;
    const dwg::PatternResult result = dwg::ReadLinePattern(stream.get(), wanted.c_str(), pattern);
    if (result != dwg::PatternResult::found) return 0;
    fuzz::Require(pattern.count >= 1 && pattern.count <= dwg::kPatternSize, "a pattern has 1 to 12 elements");
    double length = 0.0;
    for (int i = 0; i < pattern.count; ++i) length += std::fabs(pattern.elements[i]);
    fuzz::Require(length == pattern.length, "a pattern's length is the sum of its elements");
    return 0;
}
