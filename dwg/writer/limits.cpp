#include "dwg/writer/limits.h"

#include <cstring>

#include "dwg/texts.h"
#include "dwg/writer/state.h"
#include "zenromath/runtime.h"

namespace zm::dwg {
namespace {

const char* TextOf(Limit limit) {
    switch (limit) {
        case Limit::closed:
            return texts::kClosed;
        case Limit::layers:
            return texts::kTooManyLayers;
        case Limit::linetypes:
            return texts::kTooManyLinetypes;
        case Limit::styles:
            return texts::kTooManyStyles;
        case Limit::name:
            return texts::kLongName;
        case Limit::blockName:
            return texts::kLongBlockName;
        case Limit::font:
            return texts::kLongFont;
        case Limit::pattern:
            return texts::kLongPattern;
        case Limit::text:
            return texts::kLongText;
        case Limit::file:
            return texts::kLongFile;
        case Limit::coordinate:
            return texts::kNoCoordinate;
        case Limit::attribute:
            return texts::kNoAttribute;
        case Limit::count:
            break;
    }
    return "";
}

}  // namespace

void TellOnce(Limit limit) {
    const std::uint32_t bit = std::uint32_t{1} << static_cast<int>(limit);
    if ((state().reported & bit) != 0) return;
    state().reported |= bit;
    _LMsg(TextOf(limit), nullptr, 0);
}

std::string_view CutToField(const char* text, std::size_t fieldSize, Limit limit) {
    const std::size_t length = std::strlen(text);
    if (length < fieldSize) return {text, length};
    TellOnce(limit);
    std::size_t kept = 0;
    for (std::size_t at = 0; at < fieldSize;) {
        kept = at;
        at += (static_cast<unsigned char>(text[at]) & 0x80) != 0 ? 2 : 1;
    }
    return {text, kept};
}

}  // namespace zm::dwg
