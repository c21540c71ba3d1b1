#include "symbol/state.h"

SYMBODY* TheBody = nullptr;
int nBody = 0;
LCBODY TheLCBody = {};

zm::symbol::State& zm::symbol::state() {
    static State s;
    return s;
}

void zm::symbol::ResetState() {
    state() = State{};
    TheBody = nullptr;
    nBody = 0;
    TheLCBody = {};
}
