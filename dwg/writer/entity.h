// What all entity functions share.
#pragma once

#include "dwg/writer/record_writer.h"
#include "dwg/writer/session.h"
#include "dwg/writer/state.h"
#include "geometry/elevation.h"

namespace zm::dwg {

/// The elevation at a place: the height found there while a height table is armed, else the current elevation.
inline double ElevationAt(double x, double y) {
    _LDBsyncelev(x, y);
    return state().now.elevation;
}

/// True if the numbers of a sum of products with zero are all finite; if not, the limit is reported.
inline bool Finite(double zeroSum) {
    if (zeroSum == 0.0) [[likely]]
        return true;
    TellOnce(Limit::coordinate);
    return false;
}

/// Zero for finite numbers, not-a-number if any is not finite.
template <typename... Real>
inline double ZeroSum(Real... values) {
    return (... + (values * 0.0));
}

}  // namespace zm::dwg
