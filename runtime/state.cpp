#include "runtime/state.h"

zm::runtime::State& zm::runtime::state() {
    static State s;
    return s;
}

void zm::runtime::ResetState() { state() = State{}; }
