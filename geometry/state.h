// What geometry remembers between calls.
#pragma once

namespace zm::geometry {

/// Sets every remembered value of this folder back to its start value.
void ResetState();

}  // namespace zm::geometry
