#include "geodesy/state.h"

void zm::geodesy::ResetState() {}
