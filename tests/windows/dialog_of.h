// The window of a running zenro.exe.
#pragma once

#include "tests/windows/console.h"

namespace zm::test {

/// Its visible dialog, message boxes included, once it is there; null after half a minute, or when the program has ended.
/// other: a window that is not meant.
HWND DialogOf(const Zenro& zenro, HWND other = nullptr);

}  // namespace zm::test
