// The texts of rows and edits: cells between tabs or commas, blanks at their ends, cuts to a buffer.
#pragma once

#include <algorithm>
#include <string>
#include <string_view>

#include "runtime/text/fixed_text.h"

namespace zm::dialogs {

/// The text without the blanks at both ends.
inline std::string_view Trimmed(std::string_view text) {
    while (text.starts_with(' ')) text.remove_prefix(1);
    while (text.ends_with(' ')) text.remove_suffix(1);
    return text;
}

/// Takes the text up to the next separator off the rest, the separator with it. No second byte of a character is a tab
/// or a comma.
inline std::string_view TakeCell(std::string_view& rest, char separator) {
    const std::size_t end = std::min(rest.find(separator), rest.size());
    const std::string_view cell = rest.substr(0, end);
    rest.remove_prefix(std::min(end + 1, rest.size()));
    return cell;
}

/// What of an edit fits a buffer of so many bytes, cut at a character.
inline std::string ReadEdit(std::string_view text, std::size_t bytes) {
    return std::string(runtime::CutText(text, bytes));
}

}  // namespace zm::dialogs
