// Resources: texts and dialog templates of a module, and the module that they are taken from.
#pragma once

#include "zenromath/platform.h"

namespace zm::win32 {

/// The module that dialogs and texts are taken from; the program at first.
HMODULE ResourceSource();
/// Makes another module the source, the program if null, and returns the one before.
HMODULE PutResourceSource(HMODULE module);
/// The module that this code was loaded from: the library, or the program where it is linked in.
HMODULE OwnModule();

}  // namespace zm::win32
