// Limits of a drawing file. What goes beyond one is left out or cut, and the user hears once in a session.
#pragma once

#include <cstddef>
#include <string_view>

namespace zm::dwg {

enum class Limit {
    closed,  // no session open
    layers,
    linetypes,
    styles,
    name,  // of a layer, linetype or style
    blockName,
    font,
    pattern,  // elements of a linetype
    text,
    file,        // 4 GiB
    coordinate,  // not finite
    attribute,   // not finite
    count
};

/// Shows the message of a limit, unless it was shown since the last open.
void TellOnce(Limit limit);

/// What of a text fits into a field of this size with its end byte; a two-byte character is not cut in half.
std::string_view CutToField(const char* text, std::size_t fieldSize, Limit limit);

}  // namespace zm::dwg
