// Text at the edge of the library: everything inside is bytes in GBK, a program's own text is mostly UTF-8.
//
// One built-in table (code page 936; 0x80 is the euro sign); no locale and no system table has a part in
// it. Both functions may be called from any thread.
#pragma once

#include <string>
#include <string_view>

#include "zenromath/export.h"

namespace zm::gbk {

/// Converts GBK bytes to UTF-8.
/// \param[out] invalid  if not null: how many bytes begin no character of the code page; each becomes U+FFFD, alone
ZM_API std::string ToUtf8(std::string_view gbk, int* invalid = nullptr);

/// Converts UTF-8 to GBK.
/// \param[out] lost    if not null: how many characters the code page lacks, bytes that are no UTF-8 included
/// \param replacement  what is put for each of them
ZM_API std::string FromUtf8(std::string_view utf8, int* lost = nullptr, char replacement = '?');

/// True for the first byte of a two-byte character.
inline bool IsLead(char c) {
    const auto b = static_cast<unsigned char>(c);
    return b >= 0x81 && b <= 0xFE;
}

}  // namespace zm::gbk
