// The pen width table of the layers.
#pragma once

#include <cstdint>

namespace zm::config {

constexpr std::uint8_t kNoWidth = 255;  // the code has no width of its own

/// Reads the table of section "PenWidth" of "neworv.ini" beside the module; the table, or null if it is not allocated.
std::uint8_t* ReadPenWidth();
/// Writes it there; false where there is no table or, after a message, where the file could not be written.
bool WritePenWidth();

}  // namespace zm::config
