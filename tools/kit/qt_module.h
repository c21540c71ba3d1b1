// Loads the Qt module at need.
#pragma once

#include "tools/kit/qt_bridge.h"

namespace zm::tool {

/// The module's functions. Throws Failure (kFailed), which says where it was looked for, if it cannot be loaded.
const ZenroQtBridge& LoadQt();
/// The same without an exception; null if it cannot be loaded.
const ZenroQtBridge* TryLoadQt();

/// Where the user has no runtime directory Qt makes one under a name that can be foreseen, leaves it there, and says so
/// each time: this makes one that is removed at the end of this process. Before processes are made that load Qt: they
/// end without that.
void NameRuntimeDirectory();

}  // namespace zm::tool
