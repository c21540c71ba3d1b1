#include "config/state.h"

void zm::config::ResetState() {}
