// Proves a drawing: every offset, length, index, count, closing link and table size.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "dwg/reader/drawing.h"

namespace zm::dwg::reader {

struct Finding {
    std::uint64_t offset;  // where in the file
    std::string text;      // what is wrong, with the values
};

struct Report {
    std::vector<Finding> problems;  // the drawing is damaged
    std::vector<Finding> remarks;   // sound, but a reader may stumble; what a writer of ours leaves on purpose is here
    std::uint64_t entities = 0;
    std::uint64_t unlisted = 0;  // problems beyond kMaxFindings
};

constexpr std::size_t kMaxFindings = 1000;

/// Checks all of a drawing. Takes any bytes.
Report Check(const Drawing& drawing);

}  // namespace zm::dwg::reader
