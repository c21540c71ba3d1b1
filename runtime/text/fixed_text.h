// Texts in fields of fixed size: cut at the field's end, no two-byte character in two, always terminated.
#pragma once

#include <cstddef>
#include <cstring>
#include <string_view>

#include "runtime/text/gbk.h"

namespace zm::runtime {

/// The text up to limit bytes, without the half of a character at the end.
inline std::string_view CutText(std::string_view text, std::size_t limit) {
    if (text.size() <= limit) return text;
    std::size_t end = 0;
    while (end < limit) {
        const std::size_t length = gbk::IsLead(text[end]) ? 2 : 1;
        if (end + length > limit) break;
        end += length;
    }
    return text.substr(0, end);
}

/// Copies a text into a field and ends it; what is left of the field becomes 0. False if the text was cut.
template <std::size_t Size>
bool CopyCut(char (&field)[Size], std::string_view text) {
    const std::string_view part = CutText(text, Size - 1);
    std::memset(field, 0, Size);
    std::memcpy(field, part.data(), part.size());
    return part.size() == text.size();
}

/// The text of a field that may lack its end byte.
template <std::size_t Size>
std::string_view FieldText(const char (&field)[Size]) {
    const void* end = std::memchr(field, 0, Size);
    return {field, end != nullptr ? static_cast<std::size_t>(static_cast<const char*>(end) - field) : Size};
}

}  // namespace zm::runtime
