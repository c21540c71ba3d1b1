// What the layer, pen, colour and note tables remember between calls.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <vector>

#include "zenromath/config.h"

namespace zm::config {

constexpr int kLayerLimit = 1000;
constexpr int kPenCodes = 1000;  // bytes of the pen width table; byte 0 is the default width
constexpr int kColorCount = 10;

struct State {
    LayerCol* layers = nullptr;  // kLayerLimit layers, from the first ReadCengCi to DeleteCengCi8Dlg
    int layerCount = 0;
    std::uint8_t* penWidths = nullptr;  // kPenCodes bytes, allocated with the layers

    // Number of the layer of each code below kLayerLimit, -1 for none. Only while nobody outside has the table.
    std::vector<std::int16_t> layerOfCode;
    bool tableHandedOut = false;  // for good: the count's address stays good when the table goes

    unsigned long palette[kColorCount] = {0x000000, 0x000000, 0x0000FF, 0x00FF00, 0xFF0000,
                                          0x00FFFF, 0xFF00FF, 0xFFFF00, 0x008080, 0x5C5CC0};

    TqNoteLayBase* notes = nullptr;  // GetTqNoteLayBasePt

    void* (*allocate)(std::size_t) = std::malloc;  // of all tables and records; tests run out of memory with it
};

State& state();

/// Frees the tables and sets every remembered value of this folder back to its start value.
void ResetState();

}  // namespace zm::config
