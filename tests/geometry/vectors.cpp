// Handlers of the recorded calls of geometry.
#include "tests/vector_runner/registry.h"
