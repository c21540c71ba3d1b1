// What a symbol is shown on: by itself, on a line with bends, in an area.
#pragma once

#include <vector>

#include "tools/symbols/ornament_table.h"
#include "tools/symbols/symbols.h"

namespace zm::tool::symbols {

using SamplePoints = std::vector<OrnamentPoint>;

constexpr double kSampleScale = 1000.0;  // at which samples are drawn: metres are millimetres of paper

/// A line with three bends, 62 mm wide on paper, so that each pattern is there three times.
const SamplePoints& LineSample();
/// An area with a notch, 64 by 34 mm on paper, closed: three symbols of the field grid in a row.
const SamplePoints& AreaSample();
/// Points about their middle.
SamplePoints Centred(const SamplePoints& points);

/// Points as the interface takes them, with room for what it makes of them.
struct PointArrays {
    explicit PointArrays(const SamplePoints& points);
    int n;
    std::vector<double> x, y;
};

enum class Sample { alone, line, area };

/// Draws a symbol of the library in force through the working context, about the origin, at the scale kSampleScale. A
/// graphic symbol is on a plain line or inside a plain area, an ornament on the points of its example throughout.
void DrawSample(const Symbol& symbol, Sample sample);

}  // namespace zm::tool::symbols
