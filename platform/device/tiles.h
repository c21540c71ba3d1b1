// What hatch and pattern brushes look like: tiles of 8 by 8 pixels, the highest bit of each row leftmost.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

namespace zm::platform {

using Tile = std::array<std::uint8_t, 8>;

/// The lines of the six hatch styles.
inline constexpr Tile kHatchRows[] = {
    {0, 0, 0, 0xFF, 0, 0, 0, 0},                       // HS_HORIZONTAL
    {0x08, 0x08, 0x08, 0x08, 0x08, 0x08, 0x08, 0x08},  // HS_VERTICAL
    {0x80, 0x40, 0x20, 0x10, 0x08, 0x04, 0x02, 0x01},  // HS_FDIAGONAL
    {0x01, 0x02, 0x04, 0x08, 0x10, 0x20, 0x40, 0x80},  // HS_BDIAGONAL
    {0x08, 0x08, 0x08, 0xFF, 0x08, 0x08, 0x08, 0x08},  // HS_CROSS
    {0x81, 0x42, 0x24, 0x18, 0x18, 0x24, 0x42, 0x81},  // HS_DIAGCROSS
};

/// The first 8 by 8 pixels of a bitmap of one bit a pixel; a smaller one is repeated.
/// \param width, height  pixels, 1 or more
/// \param bytes          the rows; each is read as whole 16-bit words, the first byte leftmost
inline Tile TileOf(int width, int height, const std::uint8_t* bytes) {
    const std::size_t rowBytes = (static_cast<std::size_t>(width) + 15) / 16 * 2;  // Required: whole words of 16 bits.
    Tile tile{};
    for (int y = 0; y < 8; ++y)
        for (int x = 0; x < 8; ++x) {
            const auto column = static_cast<std::size_t>(x % width);
            const std::uint8_t byte = bytes[static_cast<std::size_t>(y % height) * rowBytes + column / 8];
            if (((byte >> (7 - column % 8)) & 1) != 0)
                tile[static_cast<std::size_t>(y)] |= static_cast<std::uint8_t>(0x80 >> x);
        }
    return tile;
}

}  // namespace zm::platform
