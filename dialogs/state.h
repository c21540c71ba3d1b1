// What dialogs remembers between calls.
#pragma once

namespace zm::dialogs {

/// Sets every remembered value of this folder back to its start value.
void ResetState();

}  // namespace zm::dialogs
