#include "dialogs/state.h"

void zm::dialogs::ResetState() {}
