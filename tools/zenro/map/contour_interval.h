// The interval of contours, and which of them are index contours.
#pragma once

#include "tools/zenro/store/feature.h"

namespace zm::tool {

/// Metres between the contours of a rule: what it names, else what hilly ground has at the scale.
double IntervalOf(const Rule& rule, double scale);
/// Whether a contour by a rule with an index symbol is one: every fifth, counted from the height zero.
bool IsIndexContour(const Use& use, double scale);
/// Whether its height is no whole number of intervals, so that nothing can be counted.
bool IsBetweenIntervals(const Use& use, double scale);

}  // namespace zm::tool
