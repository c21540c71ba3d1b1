#include "dwg/state.h"

void zm::dwg::ResetState() {}
