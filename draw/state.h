// What draw remembers between calls.
#pragma once

namespace zm::draw {

/// Sets every remembered value of this folder back to its start value.
void ResetState();

}  // namespace zm::draw
