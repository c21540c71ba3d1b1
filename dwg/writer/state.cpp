#include "dwg/writer/state.h"

#include <cmath>

#include "dwg/writer/limits.h"
#include "dwg/writer/session.h"
#include "dwg/writer/writer.h"

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

// Sets an attribute that entities carry; NaN would spoil every entity after it.
void SetFinite(double& attribute, double value) {
    if (std::isfinite(value))
        attribute = value;
    else
        TellOnce(zm::dwg::Limit::attribute);
}

}  // namespace

void _LDBsetcolor(int color) {
    zm::dwg::state().now.color = static_cast<std::uint16_t>(color);
}

void _LDBsetelev(double elevation, double thickness) {
    zm::dwg::State& state = zm::dwg::state();
    SetFinite(state.now.elevation, elevation);
    SetFinite(state.now.thickness, state.keepThickness ? thickness : 0.0);
}

void zm::dwg::SetThicknessKept(bool kept) {
    state().keepThickness = kept;
}

void zm::dwg::ResetAttributes() {
    state().now = Attributes{};
}

void zm::dwg::SetRingsClosed(bool closed) {
    state().closeRings = closed;
}

void SetDwgElevation(double elevation) {
    SetFinite(zm::dwg::state().now.elevation, elevation);
}
