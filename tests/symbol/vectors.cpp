// Handlers of the recorded calls of symbol.
#include "tests/vector_runner/registry.h"
