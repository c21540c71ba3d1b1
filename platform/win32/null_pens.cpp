#include "platform/win32/null_pens.h"

#include <algorithm>
#include <unordered_map>

namespace zm::win32 {
namespace {

std::unordered_map<HGDIOBJ, LOGPEN>& Descriptions() {
    static std::unordered_map<HGDIOBJ, LOGPEN> descriptions;
    return descriptions;
}

// Contexts with the stock null pen, and the pen for which it was selected.
std::unordered_map<HDC, HPEN>& Selected() {
    static std::unordered_map<HDC, HPEN> selected;
    return selected;
}

// For those who select it by the system's own functions: dashes without length and with flat ends leave no mark either.
// From two units of width on, since Wine draws a pixel for each dash of a thin pen.
HPEN CreateUnsharedPen(LONG width) {
    const LOGBRUSH brush = {BS_SOLID, 0, 0};
    const DWORD dashAndGap[] = {0, 0x7FFFFFFF};
    return ::ExtCreatePen(PS_GEOMETRIC | PS_USERSTYLE | PS_ENDCAP_FLAT | PS_JOIN_BEVEL,
                          static_cast<DWORD>(std::max<LONG>(width, 2)), &brush, 2, dashAndGap);
}

}  // namespace

HPEN CreateNullPen(const LOGPEN& description) {
    const HPEN pen = CreateUnsharedPen(description.lopnWidth.x);
    if (pen != nullptr) Descriptions()[pen] = description;
    return pen;
}

const LOGPEN* NullPenDescription(HGDIOBJ pen) {
    const auto found = Descriptions().find(pen);
    return found != Descriptions().end() ? &found->second : nullptr;
}

void ForgetNullPen(HGDIOBJ pen) {
    if (Descriptions().erase(pen) > 0) std::erase_if(Selected(), [pen](const auto& s) { return s.second == pen; });
}

HPEN SelectPen(HDC dc, HPEN pen) {
    const HPEN stock = static_cast<HPEN>(::GetStockObject(NULL_PEN));
    const bool isNull = NullPenDescription(pen) != nullptr;
    HPEN before = static_cast<HPEN>(::SelectObject(dc, isNull ? stock : pen));
    if (before == nullptr) return nullptr;
    if (const auto noted = Selected().find(dc); noted != Selected().end()) {
        if (before == stock) before = noted->second;
        Selected().erase(noted);
    }
    if (isNull) Selected()[dc] = pen;
    return before;
}

}  // namespace zm::win32
