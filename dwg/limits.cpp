#include "dwg/limits.h"

#include <cstring>

#include "dwg/state.h"
#include "dwg/texts.h"
#include "zenromath/runtime.h"

namespace zm::dwg {
namespace {

const char* TextOf(Limit limit) {
    switch (limit) {
        case Limit::closed:
            return texts::kClosed;
        case Limit::layers:
            return "The drawing holds 200 layers, no more fit. Entities of further layers go to the layer before.";
        case Limit::linetypes:
            return "The drawing holds 100 linetypes, no more fit. The linetype before stays selected.";
        case Limit::styles:
            return "The drawing holds 10 text styles, no more fit. The style before stays selected.";
        case Limit::name:
            return "A layer, linetype or style name is longer than 31 bytes. It is cut there; choose shorter names.";
        case Limit::blockName:
            return "A block name is longer than 31 bytes. The block is left out; rename its file.";
        case Limit::font:
            return "A font file name is longer than 63 bytes. It is cut there; choose a shorter name.";
        case Limit::pattern:
            return "A linetype of ACAD.LIN has more than 12 elements. The elements behind the twelfth are left out.";
        case Limit::text:
            return "A text is longer than 32697 bytes. It is cut there.";
        case Limit::file:
            return "The drawing has reached 4 GiB, the most its offsets can tell. Everything further is left out.";
        case Limit::coordinate:
            return "An entity has a coordinate that is no finite number. Such entities are left out.";
        case Limit::attribute:
            return "An elevation, thickness or text width that is no finite number was given. The value before stays.";
        case Limit::count:
            break;
    }
    return "";
}

}  // namespace

void TellOnce(Limit limit) {
    const std::uint32_t bit = std::uint32_t{1} << static_cast<int>(limit);
    if ((state().told & bit) != 0) return;
    state().told |= bit;
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
