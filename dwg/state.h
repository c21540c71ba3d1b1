// What dwg remembers between calls.
#pragma once

namespace zm::dwg {

/// Sets every remembered value of this folder back to its start value.
void ResetState();

}  // namespace zm::dwg
