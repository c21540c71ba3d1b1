// Numbers as the ints that the interface takes.
#pragma once

#include <climits>
#include <cmath>

namespace zm {

/// Truncates toward zero. What an int cannot hold becomes the nearest value it can, NaN 0.
inline int Truncated(double value) {
    if (std::isnan(value)) return 0;
    if (value >= static_cast<double>(INT_MAX)) return INT_MAX;
    if (value <= static_cast<double>(INT_MIN)) return INT_MIN;
    return static_cast<int>(value);
}

}  // namespace zm
