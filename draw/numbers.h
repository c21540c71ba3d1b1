// Conversions that the mapping and the fonts share, Truncated among them.
#pragma once

#include <cmath>

#include "runtime/truncated.h"

namespace zm::draw {

constexpr double kDegreesPerRadian = 57.29577951308232;
constexpr double kFullTurn = 6.283185307179586;

template <class... Values>
bool AllFinite(Values... values) {
    return (std::isfinite(values) && ...);
}

}  // namespace zm::draw
