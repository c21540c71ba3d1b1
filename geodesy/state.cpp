#include "geodesy/state.h"

#include <utility>

#include "zenromath/geodesy.h"

namespace zm::geodesy {

State& state() {
    static State instance;
    return instance;
}

void ResetState() {
    state() = State{};
}

}  // namespace zm::geodesy

using zm::geodesy::state;

double GetEllipsePrecision() {
    return state().ellipsePrecision;
}

void SetEllipsePrecision(double degrees) {
    state().ellipsePrecision = degrees;
}

double SetEllipseBLsecPrec(double seconds) {
    return std::exchange(state().angleRounding, seconds);
}

double SetEllipseXYmeterPrec(double metres) {
    return std::exchange(state().planeRounding, metres);
}
