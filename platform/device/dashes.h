// The dashes of pen styles, for devices that draw them themselves.
#pragma once

#include <array>
#include <span>

#include "zenromath/platform.h"

namespace zm::platform {

/// Lengths of strokes and gaps in turn, in pixels whatever the width of the pen: a wide pen keeps the rhythm of a thin
/// one. They begin anew where a line does not go on from the end of the last one. Empty for a style without gaps.
inline std::span<const int> DashesOf(int style) {
    static constexpr std::array<int, 2> kDash = {18, 6};
    static constexpr std::array<int, 2> kDot = {3, 3};
    static constexpr std::array<int, 4> kDashDot = {9, 6, 3, 6};
    static constexpr std::array<int, 6> kDashDotDot = {9, 3, 3, 3, 3, 3};
    switch (style) {
        case PS_DASH:
            return kDash;
        case PS_DOT:
            return kDot;
        case PS_DASHDOT:
            return kDashDot;
        case PS_DASHDOTDOT:
            return kDashDotDot;
        default:
            return {};
    }
}

}  // namespace zm::platform
