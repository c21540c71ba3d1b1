// What geodesy remembers between calls.
#pragma once

namespace zm::geodesy {

/// Sets every remembered value of this folder back to its start value.
void ResetState();

}  // namespace zm::geodesy
