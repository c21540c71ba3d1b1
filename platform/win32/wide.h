// GBK texts as the system's wide characters and back, by the library's own table: never by the system's code page.
#pragma once

#include <string>
#include <string_view>

namespace zm::win32 {

std::wstring Wide(std::string_view gbk);
/// Null counts as an empty text.
std::wstring Wide(const char* gbk);
/// lost, if not null, receives the number of characters that GBK lacks; each becomes a "?".
std::string Gbk(std::wstring_view wide, int* lost = nullptr);

std::wstring FromUtf8(std::string_view utf8);
std::string ToUtf8(std::wstring_view wide);

/// Copies at most size - 1 bytes of a text, cut between characters, and an end byte; the number of bytes copied.
int CopyText(std::string_view gbk, char* buffer, int size);

}  // namespace zm::win32
