#include "zenromath/sheets.h"

const char* zm::sheets::NameOf(Refusal refusal) {
    switch (refusal) {
        case Refusal::none:
            return "";
        case Refusal::malformed:
            return "malformed";
        case Refusal::range:
            return "range";
        case Refusal::outside:
            return "outside";
        case Refusal::scale:
            return "scale";
        case Refusal::size:
            return "size";
        case Refusal::style:
            return "style";
        case Refusal::origin:
            return "origin";
        case Refusal::offGrid:
            return "off-grid";
        case Refusal::box:
            return "box";
        case Refusal::negative:
            return "negative";
        case Refusal::tooMany:
            return "too-many";
    }
    return "";
}
