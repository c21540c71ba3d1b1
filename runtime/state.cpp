#include "runtime/state.h"

bool tqwaitcur::sz_bPeekMessage = false;

zm::runtime::State& zm::runtime::state() {
    // Never destroyed: what it holds may still be asked for while the objects of the program end.
    static State& s = *new State;
    return s;
}

void zm::runtime::ResetState() {
    state().waiting.reset();
    state() = State{};
    tqwaitcur::sz_bPeekMessage = false;
}
