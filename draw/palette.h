// The palette of ten colours, as pens and fonts use it.
#pragma once

#include "zenromath/config.h"

namespace zm::draw {

/// The colour of a number from 0 to 9.
inline COLORREF PaletteColor(int number) {
    unsigned long* palette = nullptr;
    const int count = Get_SysColor(palette);
    return palette != nullptr && number >= 0 && number < count ? static_cast<COLORREF>(palette[number]) : 0;
}

}  // namespace zm::draw
