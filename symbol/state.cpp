#include "symbol/state.h"

void zm::symbol::ResetState() {}
