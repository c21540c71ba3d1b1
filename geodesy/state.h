// What geodesy remembers between calls.
#pragma once

namespace zm::geodesy {

struct State {
    double ellipsePrecision = 0.00027778;  // degrees, about a second of arc; SetEllipsePrecision
    double angleRounding = 1e-06;          // seconds of arc, 0 and below: none; SetEllipseBLsecPrec
    double planeRounding = 0.0;            // metres, only between 0 and 1; SetEllipseXYmeterPrec
};

State& state();

/// Sets every remembered value of this folder back to its start value.
void ResetState();

}  // namespace zm::geodesy
