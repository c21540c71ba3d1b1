// UTF-8, a character at a time.
#pragma once

#include <cstddef>
#include <string_view>

namespace zm::tool {

/// How many bytes the character that begins at a place of a text has, 1 to 4; 0 where none does: a byte that begins none,
/// one cut off, a longer form than needed, a half of a UTF-16 pair, a number beyond U+10FFFF.
inline std::size_t Utf8Length(std::string_view text, std::size_t at) {
    const auto byte = [&](std::size_t i) { return static_cast<unsigned char>(text[at + i]); };
    const unsigned char lead = byte(0);
    const std::size_t length = lead < 0x80   ? 1
                               : lead < 0xC2 ? 0
                               : lead < 0xE0 ? 2
                               : lead < 0xF0 ? 3
                               : lead < 0xF5 ? 4
                                             : 0;
    if (length == 0 || at + length > text.size()) return 0;
    for (std::size_t i = 1; i < length; ++i)
        if ((byte(i) & 0xC0U) != 0x80) return 0;
    const unsigned char second = length > 1 ? byte(1) : 0;
    const bool wrong = (lead == 0xE0 && second < 0xA0) || (lead == 0xED && second > 0x9F) ||
                       (lead == 0xF0 && second < 0x90) || (lead == 0xF4 && second > 0x8F);
    return wrong ? 0 : length;
}

}  // namespace zm::tool
