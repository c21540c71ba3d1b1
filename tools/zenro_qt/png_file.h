// Images as PNG files, compressed in strips on all processors.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

namespace zm::tool {

/// An image of opaque pixels, 0xRRGGBB in the low bytes of each word.
struct PngImage {
    const std::uint32_t* pixels = nullptr;
    std::ptrdiff_t wordsPerRow = 0;  // from one row to the next
    int width = 0;
    int height = 0;
    int dotsPerMetre = 0;  // 0: not said
    std::string title;     // UTF-8, empty for none
};

/// Writes the image, 8 bits for each of red, green and blue. The empty text, or why the file could not be written whole.
std::string WritePng(const std::string& path, const PngImage& image);

}  // namespace zm::tool
