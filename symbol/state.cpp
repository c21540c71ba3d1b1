#include "symbol/state.h"

SYMBODY* TheBody = nullptr;
int nBody = 0;
LCBODY TheLCBody = {};

constinit zm::symbol::State zm::symbol::detail::theState;

void zm::symbol::ResetState() {
    state() = State{};
    TheBody = nullptr;
    nBody = 0;
    TheLCBody = {};
}
