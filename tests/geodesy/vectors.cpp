// Handlers of the recorded calls of geodesy.
#include "tests/vector_runner/registry.h"
