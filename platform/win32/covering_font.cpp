#include "platform/win32/covering_font.h"

#include <algorithm>
#include <iterator>
#include <utility>
#include <vector>

#include "platform/win32/installed_faces.h"
#include "platform/win32/missing_glyphs.h"
#include "platform/win32/wide.h"

namespace zm::win32 {
namespace {

constexpr WORD kNoGlyph = 0xFFFF;

MissingGlyphsReport& Report() {
    static MissingGlyphsReport report;
    return report;
}

// Control characters are in no font. A font that cannot be asked counts as one that has all.
bool Covers(HDC dc, const std::wstring& text) {
    std::vector<WORD> glyphs(text.size());
    const DWORD count =
        ::GetGlyphIndicesW(dc, text.c_str(), static_cast<int>(text.size()), glyphs.data(), GGI_MARK_NONEXISTING_GLYPHS);
    if (count == GDI_ERROR) return true;
    for (std::size_t i = 0; i < text.size(); ++i)
        if (glyphs[i] == kNoGlyph && text[i] >= L' ') return false;
    return true;
}

HFONT WithFace(LOGFONTW font, const std::wstring& face) {
    std::fill(std::begin(font.lfFaceName), std::end(font.lfFaceName), L'\0');
    std::copy_n(face.begin(), std::min<std::size_t>(face.size(), LF_FACESIZE - 1), font.lfFaceName);
    font.lfCharSet = GB2312_CHARSET;
    return ::CreateFontIndirectW(&font);
}

}  // namespace

CoveringFont::CoveringFont(HDC dc, const std::wstring& text) : m_dc(dc) {
    if (Covers(dc, text)) return;
    LOGFONTW asked = {};
    ::GetObjectW(::GetCurrentObject(dc, OBJ_FONT), sizeof asked, &asked);
    std::wstring used;
    if (InstalledFaces(dc, asked.lfFaceName, DEFAULT_CHARSET).empty()) used = Select(asked, text);
    if (Report()) Report()(ToUtf8(asked.lfFaceName), ToUtf8(used));
}

// Selects the first face for Chinese that has all characters; its name, empty where there is none. The order of names
// makes the choice the same each time.
std::wstring CoveringFont::Select(const LOGFONTW& asked, const std::wstring& text) {
    for (const std::wstring& face : InstalledFaces(m_dc, {}, GB2312_CHARSET)) {
        m_made = WithFace(asked, face);
        m_before = ::SelectObject(m_dc, m_made);
        if (Covers(m_dc, text)) return face;
        GiveBack();
    }
    return {};
}

void CoveringFont::GiveBack() {
    if (m_made == nullptr) return;
    ::SelectObject(m_dc, m_before);
    ::DeleteObject(std::exchange(m_made, nullptr));
}

CoveringFont::~CoveringFont() {
    GiveBack();
}

MissingGlyphsReport SetMissingGlyphsReport(MissingGlyphsReport report) {
    return std::exchange(Report(), std::move(report));
}

}  // namespace zm::win32
