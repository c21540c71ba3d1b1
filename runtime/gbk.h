// GBK to and from UTF-8, by one built-in table. The bytes inside the library are GBK; only its edges convert.
#pragma once

#include <string>
#include <string_view>

namespace zm::gbk {

/// Converts GBK bytes to UTF-8. A byte that begins no character of the code page becomes U+FFFD, alone;
/// invalid, if not null, receives how many there were.
std::string ToUtf8(std::string_view gbk, int* invalid = nullptr);

/// Converts UTF-8 to GBK. What the code page lacks, and bytes that are no UTF-8, become the replacement;
/// lost, if not null, receives how many there were.
std::string FromUtf8(std::string_view utf8, int* lost = nullptr, char replacement = '?');

/// True for the first byte of a two-byte character.
inline bool IsLead(char c) {
    const auto b = static_cast<unsigned char>(c);
    return b >= 0x81 && b <= 0xFE;
}

}  // namespace zm::gbk
