// Small numeric helpers of geodesy.
#pragma once

#include <cmath>
#include <cstdint>

#include "runtime/truncated.h"

namespace zm::geodesy {

constexpr double kPi = 3.141592653589793;
constexpr double kTwoPi = 6.283185307179586;

/// Degrees to radians and back, in the order of operations that zones depend on.
inline double Radians(double degrees) {
    return degrees * kPi / 180.0;
}
inline double Degrees(double radians) {
    return radians * 180.0 / kPi;
}

/// Whole and fractional part of a number that is not negative, towards zero.
struct SplitNumber {
    double whole;
    double fraction;
};
inline SplitNumber Split(double value) {
    constexpr double kAllWhole = 9007199254740992.0;  // from 2^53 every double is whole
    if (value < kAllWhole) {
        const auto whole = static_cast<double>(static_cast<std::int64_t>(value));
        return {whole, value - whole};
    }
    return {value, value == value ? 0.0 : value};
}

/// The largest whole number that is not above the value.
inline double Floor(double value) {
    const double whole = Split(value < 0.0 ? -value : value).whole;
    if (!(value < 0.0)) return whole;
    return -whole > value ? -whole - 1.0 : -whole;
}

}  // namespace zm::geodesy
