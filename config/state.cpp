#include "config/state.h"

zm::config::State& zm::config::state() {
    static State& s = *new State;
    return s;
}

void zm::config::ResetState() {
    DeleteCengCi8Dlg();
    state() = State{};
}
