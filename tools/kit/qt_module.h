// Loads the Qt module at need.
#pragma once

#include "tools/kit/qt_bridge.h"

namespace zm::tool {

/// The module's functions. Throws Failure (kFailed), which says where it was looked for, if it cannot be loaded.
const ZenroQtBridge& LoadQt();
/// The same without an exception; null if it cannot be loaded.
const ZenroQtBridge* TryLoadQt();

}  // namespace zm::tool
