// Proves a drawing: every offset, length, index, count, closing link and table size.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "dwg/reader/drawing.h"
#include "zenromath/export.h"

namespace zm::dwg::reader {

struct Finding {
    std::uint64_t offset;  // where in the file
    std::string text;      // what is wrong, with the values
    bool byCopy = false;   // a problem that the copying of block files of our writer leaves, which is required so
};

struct Report {
    std::vector<Finding> problems;  // the drawing is damaged, or readers take it for damaged
    std::vector<Finding> remarks;   // sound, but a reader may stumble
    std::uint64_t entities = 0;
    std::uint64_t unlisted = 0;  // problems beyond kMaxFindings
};

constexpr std::size_t kMaxFindings = 1000;

/// Gives a text of findings, a format of printf, in a reader's language: the same conversions in the same order, UTF-8; the
/// text itself where it has none. What it gives lives as long as the check.
using Wording = const char* (*)(const char* english);

/// Checks all of a drawing. Takes any bytes. Findings are in English without a wording.
ZM_API Report Check(const Drawing& drawing, Wording wording = nullptr);

}  // namespace zm::dwg::reader
