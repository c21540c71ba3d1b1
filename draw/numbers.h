// Conversions that the mapping and the fonts share.
#pragma once

#include <climits>
#include <cmath>

namespace zm::draw {

constexpr double kDegreesPerRadian = 57.29577951308232;
constexpr double kFullTurn = 6.283185307179586;

/// Truncates toward zero. What an int cannot hold becomes the nearest value it can, what is no number 0.
inline int Truncated(double value) {
    if (std::isnan(value)) return 0;
    if (value >= static_cast<double>(INT_MAX)) return INT_MAX;
    if (value <= static_cast<double>(INT_MIN)) return INT_MIN;
    return static_cast<int>(value);
}

template <class... Values>
bool AllFinite(Values... values) {
    return (std::isfinite(values) && ...);
}

}  // namespace zm::draw
