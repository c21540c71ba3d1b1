#include "tools/zenro/map/contour_interval.h"

#include <cmath>

namespace zm::tool {
namespace {

constexpr double kIndexStep = 5.0;  // intervals from one index contour to the next
constexpr double kSame = 1e-3;      // of an interval

bool IsMultiple(double height, double step) {
    return std::fabs(std::remainder(height, step)) < kSame * step;
}

}  // namespace

// Source: GB 50026, hilly ground.
double IntervalOf(const Rule& rule, double scale) {
    if (rule.interval > 0.0) return rule.interval;
    return scale <= 500.0 ? 0.5 : scale <= 1000.0 ? 1.0 : scale <= 2000.0 ? 2.0 : 5.0;
}

bool IsIndexContour(const Use& use, double scale) {
    return use.rule->index > 0 && use.hasHeight && IsMultiple(use.height, kIndexStep * IntervalOf(*use.rule, scale));
}

bool IsBetweenIntervals(const Use& use, double scale) {
    return use.rule->index > 0 && use.hasHeight && !IsMultiple(use.height, IntervalOf(*use.rule, scale));
}

}  // namespace zm::tool
