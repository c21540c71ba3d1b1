#include "runtime/files/path_escape.h"

#include "runtime/text/gbk.h"
#include "runtime/text/numbers.h"

namespace zm::files {
namespace {

// The bytes of the character at the front; 1 for a byte that begins none.
std::size_t LengthOf(std::string_view text) {
    const auto lead = static_cast<unsigned char>(text.front());
    const std::size_t length = lead < 0xC2 ? 1 : lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : lead < 0xF5 ? 4 : 1;
    if (length > text.size()) return 1;
    for (std::size_t i = 1; i < length; ++i)
        if ((static_cast<unsigned char>(text[i]) & 0xC0U) != 0x80) return 1;
    return length;
}

unsigned CodePoint(std::string_view character) {
    const std::size_t length = character.size();
    unsigned c = static_cast<unsigned char>(character.front()) & (0x7FU >> length);
    for (std::size_t i = 1; i < length; ++i) c = c << 6 | (static_cast<unsigned char>(character[i]) & 0x3FU);
    return c;
}

}  // namespace

std::string EscapedPath(std::string_view utf8) {
    int lost = 0;
    std::string whole = gbk::FromUtf8(utf8, &lost);
    if (lost == 0) return whole;
    std::string path;
    while (!utf8.empty()) {
        const std::size_t length = LengthOf(utf8);
        const std::string_view character = utf8.substr(0, length);
        int missing = 0;
        const std::string converted = gbk::FromUtf8(character, &missing);
        const auto first = static_cast<unsigned char>(character.front());
        if (missing == 0)
            path += converted;
        else if (length == 1)
            path += numbers::Text("\xFFx%02X\xFF", first);
        else
            path += numbers::Text("\xFF%X\xFF", CodePoint(character));
        utf8.remove_prefix(length);
    }
    return path;
}

}  // namespace zm::files
