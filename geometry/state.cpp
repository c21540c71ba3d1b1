#include "geometry/state.h"

void zm::geometry::ResetState() {}
