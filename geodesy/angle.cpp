// Packed sexagesimal numbers, angle normalisation, bearings.
#include <cmath>

#include "geodesy/numeric.h"
#include "zenromath/geodesy.h"

namespace zm::geodesy {
namespace {

constexpr double kDegreesPerRadian = 57.29577951308232;

// Required: rad_dms rounds up from 0.01" below a full minute, deg_dms only from 0.000001" below it.
constexpr double kFullMinuteOfDegrees = 59.999999;  // seconds
constexpr double kFullMinuteOfRadians = 59.99;      // seconds
constexpr double kFullDegree = 59.9;                // minutes

// Required: dms_rad takes every seconds field above 99.9 for 60, the others only one above 99.9999.
constexpr double kFullFieldOfDegrees = 0.999999;  // hundreds of seconds
constexpr double kFullFieldOfRadians = 0.999;     // hundreds of seconds

constexpr double kSnap = 1e-5;           // radians; angles this near to 0 or a full turn become 0
constexpr long kMostTurns = 10'000'000;  // full turns that _ADJUSTANGLE adds or subtracts at most
constexpr double kVertical = 1e-7;       // |dx| below it makes a line vertical
constexpr double kStraightUp = 1.5707963267948966;
constexpr double kStraightDown = 4.71238898038469;

// Required: only a number above 0 keeps its sign, so that 0 gives -0; recorded results hold it.
double WithSignOf(double original, double magnitude) {
    return original > 0.0 ? magnitude : -magnitude;
}

double Packed(double degrees, double fullMinute) {
    const auto [wholeDegrees, degreeFraction] = Split(degrees);
    const auto [wholeMinutes, minuteFraction] = Split(degreeFraction * 60.0);
    double d = wholeDegrees;
    double m = wholeMinutes;
    double s = minuteFraction * 60.0;
    if (s > fullMinute) {
        s = 0.0;
        m += 1.0;
    }
    if (m > kFullDegree) {
        m = 0.0;
        d += 1.0;
    }
    return d + m / 100.0 + s / 10000.0;
}

struct PackedFields {
    double degrees;
    double minutes;
    double hundredSeconds;  // seconds divided by 100
};

PackedFields Fields(double packed, double fullField) {
    const auto [degrees, fraction] = Split(std::abs(packed));
    const auto [minutes, hundredSeconds] = Split(fraction * 100.0);
    return {degrees, minutes, hundredSeconds > fullField ? 0.6 : hundredSeconds};
}

// Adds turn until the angle is at least 0 (below: until it is at most a full turn), or nothing moves any more.
void TurnUp(double& angle) {
    for (long i = 0; angle < 0.0 && i < kMostTurns; ++i) {
        const double next = angle + kTwoPi;
        if (next == angle) return;
        angle = next;
    }
}
void TurnDown(double& angle) {
    for (long i = 0; angle > kTwoPi && i < kMostTurns; ++i) {
        const double next = angle - kTwoPi;
        if (next == angle) return;
        angle = next;
    }
}

}  // namespace
}  // namespace zm::geodesy

using namespace zm::geodesy;

double deg_dms(double deg) {
    return WithSignOf(deg, Packed(std::abs(deg), kFullMinuteOfDegrees));
}

double rad_dms(double rad) {
    return WithSignOf(rad, Packed(std::abs(rad) * kDegreesPerRadian, kFullMinuteOfRadians));
}

double dms_deg(double dms) {
    const PackedFields f = Fields(dms, kFullFieldOfDegrees);
    return WithSignOf(dms, f.degrees + f.minutes / 60.0 + f.hundredSeconds / 36.0);
}

double dms_sec(double dms) {
    const PackedFields f = Fields(dms, kFullFieldOfDegrees);
    return WithSignOf(dms, f.degrees * 3600.0 + f.minutes * 60.0 + f.hundredSeconds * 100.0);
}

double dms_rad(double dms) {
    const PackedFields f = Fields(dms, kFullFieldOfRadians);
    return WithSignOf(dms, (f.minutes / 60.0 + f.degrees + f.hundredSeconds / 36.0) / kDegreesPerRadian);
}

void _ADJUSTANGLE(double& angle) {
    TurnUp(angle);
    if (std::abs(angle) < kSnap) {
        angle = 0.0;
        return;
    }
    TurnDown(angle);
    if (std::abs(angle - kTwoPi) < kSnap) angle = 0.0;
}

double _BEARING(double x1, double y1, double x2, double y2) {
    const double dx = x2 - x1;
    const double dy = y2 - y1;
    if (std::abs(dx) < kVertical) return dy >= 0.0 ? kStraightUp : kStraightDown;
    const double slope = std::atan(dy / dx);
    if (dx > 0.0) return dy < 0.0 ? slope + kTwoPi : slope;
    return slope + kPi;
}

double bearing(double x1, double y1, double x2, double y2) {
    return _BEARING(x1, y1, x2, y2);
}

AngleValue::AngleValue(double v, int u) : value(v), unit(u), radians(v) {
    if (u == 1)
        radians = Radians(v);
    else if (u == 2)
        radians = dms_rad(v);
}

void AngleValue::ToDegrees() {
    value = Degrees(radians);
    unit = 1;
}

double AngleValue::ToRadians() {
    value = radians;
    unit = 0;
    return radians;
}
