#include "dwg/state.h"

#include <cmath>

#include "dwg/limits.h"
#include "dwg/session.h"
#include "dwg/trace.h"
#include "dwg/writer.h"

constinit zm::dwg::State zm::dwg::g_state;

void zm::dwg::SessionDeleter::operator()(Session* session) const {
    delete session;
}

void zm::dwg::ResetState() {
    state() = State{};
}

double zm::dwg::CurrentElevation() {
    return state().now.elevation;
}

bool zm::dwg::LastFileComplete() {
    return state().lastFileComplete;
}

namespace {

// Sets an attribute that entities carry; one that is no number would spoil every entity behind it.
void SetFinite(double& attribute, double value) {
    if (std::isfinite(value))
        attribute = value;
    else
        TellOnce(zm::dwg::Limit::attribute);
}

}  // namespace

void _LDBsetcolor(int color) {
    zm::dwg::State& state = zm::dwg::state();
    if (state.trace != nullptr) return state.trace->SetColor(color);
    state.now.color = static_cast<std::uint16_t>(color);
}

void _LDBsetelev(double elevation, double thickness) {
    zm::dwg::State& state = zm::dwg::state();
    if (state.trace != nullptr) return state.trace->SetElev(elevation, thickness);
    SetFinite(state.now.elevation, elevation);
    SetFinite(state.now.thickness, thickness);
}

void SetDwgElevation(double elevation) {
    SetFinite(zm::dwg::state().now.elevation, elevation);
}
