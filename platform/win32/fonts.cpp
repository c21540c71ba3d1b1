#include "platform/win32/fonts.h"

#include <algorithm>
#include <cstddef>
#include <cstring>

#include "platform/win32/wide.h"

namespace zm::win32 {

// Both descriptions are alike up to the face name.
static_assert(offsetof(LOGFONTA, lfFaceName) == offsetof(LOGFONTW, lfFaceName));

LOGFONTW WideFont(const LOGFONTA& font) {
    LOGFONTW wide{};
    std::memcpy(&wide, &font, offsetof(LOGFONTA, lfFaceName));
    const std::size_t length = ::strnlen(font.lfFaceName, LF_FACESIZE - 1);
    const std::wstring face = Wide(std::string_view(font.lfFaceName, length));
    std::copy_n(face.begin(), std::min<std::size_t>(face.size(), LF_FACESIZE - 1), wide.lfFaceName);
    return wide;
}

LOGFONTA GbkFont(const LOGFONTW& font) {
    LOGFONTA narrow{};
    std::memcpy(&narrow, &font, offsetof(LOGFONTA, lfFaceName));
    const std::size_t length = ::wcsnlen(font.lfFaceName, LF_FACESIZE);
    CopyText(Gbk({font.lfFaceName, length}), narrow.lfFaceName, LF_FACESIZE);
    return narrow;
}

}  // namespace zm::win32
