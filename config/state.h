// What config remembers between calls.
#pragma once

namespace zm::config {

/// Sets every remembered value of this folder back to its start value.
void ResetState();

}  // namespace zm::config
