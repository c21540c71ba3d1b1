// What symbol remembers between calls.
#pragma once

namespace zm::symbol {

/// Sets every remembered value of this folder back to its start value.
void ResetState();

}  // namespace zm::symbol
