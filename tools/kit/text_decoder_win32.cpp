#include <windows.h>

#include <charconv>

#include "platform/win32/wide.h"
#include "tools/kit/text_decoder.h"
#include "zenromath/gbk.h"

namespace zm::tool {
namespace {

// The code page of "1252", "CP1252" or "WINDOWS-1252"; 0 for any other name.
UINT CodePage(std::string_view name) {
    for (const std::string_view before : {"CP", "WINDOWS-"})
        if (name.substr(0, before.size()) == before) name.remove_prefix(before.size());
    UINT page = 0;
    const auto [end, error] = std::from_chars(name.data(), name.data() + name.size(), page);
    return error == std::errc() && end == name.data() + name.size() && IsValidCodePage(page) != 0 ? page : 0;
}

bool FromGbk(std::string& text) {
    int invalid = 0;
    std::string utf8 = gbk::ToUtf8(text, &invalid);
    if (invalid == 0) text = std::move(utf8);
    return invalid == 0;
}

bool FromCodePage(UINT page, std::string& text) {
    const int bytes = static_cast<int>(text.size());
    const int length = MultiByteToWideChar(page, MB_ERR_INVALID_CHARS, text.data(), bytes, nullptr, 0);
    if (length <= 0) return false;
    std::wstring wide(static_cast<std::size_t>(length), L'\0');
    MultiByteToWideChar(page, MB_ERR_INVALID_CHARS, text.data(), bytes, wide.data(), length);
    text = win32::ToUtf8(wide);
    return true;
}

}  // namespace

// The library's own table is the one for Chinese texts: characters of four bytes, which GB18030 has beyond GBK, are
// refused.
TextDecoder::Convert SystemDecoder(const std::string& name) {
    if (name == "GB18030") return FromGbk;
    const UINT page = CodePage(name);
    if (page == 0) return nullptr;
    return [page](std::string& text) { return FromCodePage(page, text); };
}

}  // namespace zm::tool
