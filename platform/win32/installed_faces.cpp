#include "platform/win32/installed_faces.h"

#include <algorithm>
#include <map>
#include <utility>

namespace zm::win32 {
namespace {

int theEnumerations = 0;

int CALLBACK KeepFace(const LOGFONTW* font, const TEXTMETRICW*, DWORD, LPARAM faces) {
    if (font->lfFaceName[0] != L'@') reinterpret_cast<std::set<std::wstring>*>(faces)->insert(font->lfFaceName);
    return 1;
}

std::set<std::wstring> Enumerated(HDC dc, const std::wstring& name, BYTE charset) {
    ++theEnumerations;
    LOGFONTW wanted = {};
    wanted.lfCharSet = charset;
    std::copy_n(name.begin(), std::min<std::size_t>(name.size(), LF_FACESIZE - 1), wanted.lfFaceName);
    std::set<std::wstring> faces;
    ::EnumFontFamiliesExW(dc, &wanted, KeepFace, reinterpret_cast<LPARAM>(&faces), 0);
    return faces;
}

}  // namespace

const std::set<std::wstring>& InstalledFaces(HDC dc, const std::wstring& name, BYTE charset) {
    static std::map<std::pair<std::wstring, BYTE>, std::set<std::wstring>> lists;
    const std::pair key(name, charset);
    if (const auto known = lists.find(key); known != lists.end()) return known->second;
    if (lists.size() >= kKeptFaceLists) lists.clear();
    return lists[key] = Enumerated(dc, name, charset);
}

int FaceEnumerations() {
    return theEnumerations;
}

}  // namespace zm::win32
