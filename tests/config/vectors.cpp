// Handlers of the recorded calls of config.
#include "tests/vector_runner/registry.h"
