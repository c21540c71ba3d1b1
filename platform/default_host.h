// The host and the device layer that this build puts in force by itself.
#pragma once

#include "zenromath/host.h"

namespace zm::platform {

/// The console host, or on Windows the system's own message boxes. Lives as long as the process.
Host& DefaultHost();

}  // namespace zm::platform
