// Handlers of the recorded calls of dwg.
#include "tests/vector_runner/registry.h"
