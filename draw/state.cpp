#include "draw/state.h"

void zm::draw::ResetState() {}
