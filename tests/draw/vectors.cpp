// Handlers of the recorded calls of draw.
#include "tests/vector_runner/registry.h"
