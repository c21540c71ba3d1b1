#include "platform/win32/wide.h"

#include <windows.h>

#include <cstring>

#include "runtime/text/gbk.h"

namespace zm::win32 {

std::wstring FromUtf8(std::string_view utf8) {
    if (utf8.empty()) return {};
    const int bytes = static_cast<int>(utf8.size());
    const int length = MultiByteToWideChar(CP_UTF8, 0, utf8.data(), bytes, nullptr, 0);
    std::wstring wide(static_cast<std::size_t>(length), L'\0');
    MultiByteToWideChar(CP_UTF8, 0, utf8.data(), bytes, wide.data(), length);
    return wide;
}

std::string ToUtf8(std::wstring_view wide) {
    if (wide.empty()) return {};
    const int units = static_cast<int>(wide.size());
    const int length = WideCharToMultiByte(CP_UTF8, 0, wide.data(), units, nullptr, 0, nullptr, nullptr);
    std::string utf8(static_cast<std::size_t>(length), '\0');
    WideCharToMultiByte(CP_UTF8, 0, wide.data(), units, utf8.data(), length, nullptr, nullptr);
    return utf8;
}

std::wstring Wide(std::string_view gbk) {
    return FromUtf8(gbk::ToUtf8(gbk));
}

std::wstring Wide(const char* gbk) {
    return Wide(gbk != nullptr ? std::string_view(gbk) : std::string_view());
}

std::string Gbk(std::wstring_view wide, int* lost) {
    return gbk::FromUtf8(ToUtf8(wide), lost);
}

int CopyText(std::string_view gbk, char* buffer, int size) {
    if (buffer == nullptr || size <= 0) return 0;
    std::size_t count = 0;
    while (count < gbk.size()) {
        const std::size_t step = gbk::IsLead(gbk[count]) && count + 1 < gbk.size() ? 2 : 1;
        if (count + step > static_cast<std::size_t>(size) - 1) break;
        count += step;
    }
    std::memcpy(buffer, gbk.data(), count);
    buffer[count] = '\0';
    return static_cast<int>(count);
}

}  // namespace zm::win32
