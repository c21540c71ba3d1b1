// Handlers of the recorded calls of runtime.
#include "tests/vector_runner/registry.h"
