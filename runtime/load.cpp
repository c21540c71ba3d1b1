// The work of the library at load, in its order. Only the shared library carries this source.
#include "zenromath/runtime.h"

namespace {

CZenroMathApp g_application;

}  // namespace
