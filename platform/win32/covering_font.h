// The font that a text is drawn in where the selected one lacks its characters.
#pragma once

#include <string>

#include "zenromath/platform.h"

namespace zm::win32 {

/// While it lives, a font that has all characters of a text is selected, if the face of the selected one is not
/// installed and an installed face has them.
class CoveringFont {
 public:
    CoveringFont(HDC dc, const std::wstring& text);
    ~CoveringFont();
    CoveringFont(const CoveringFont&) = delete;
    CoveringFont& operator=(const CoveringFont&) = delete;

 private:
    std::wstring Select(const LOGFONTW& asked, const std::wstring& text);
    void GiveBack();

    HDC m_dc;
    HGDIOBJ m_made = nullptr;
    HGDIOBJ m_before = nullptr;
};

}  // namespace zm::win32
