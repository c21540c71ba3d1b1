// Paths with characters that the family's code page lacks.
#pragma once

#include <string>
#include <string_view>

#include "zenromath/export.h"

namespace zm::files {

/// A path as GBK. A character that GBK lacks is carried by an escape: the byte 0xFF, which GBK never has, the code point
/// in hexadecimal capitals, and 0xFF again; a byte that is no UTF-8 as 0xFF, "x", two digits, 0xFF. gbk::ToUtf8 gives
/// the path back as it was. Separators stay as they are.
ZM_API std::string EscapedPath(std::string_view utf8);

}  // namespace zm::files
