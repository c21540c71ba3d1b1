// Text inside pages and pictures of markup.
#pragma once

#include <string>
#include <string_view>

namespace zm {

/// Text with the characters that HTML and XML keep for themselves replaced, and with inPlace for each control byte,
/// which has no place there, except those of kept.
inline std::string EscapedMarkup(std::string_view text, char inPlace, std::string_view kept = {}) {
    std::string out;
    for (const char c : text) {
        switch (c) {
            case '&':
                out += "&amp;";
                break;
            case '<':
                out += "&lt;";
                break;
            case '>':
                out += "&gt;";
                break;
            case '"':
                out += "&quot;";
                break;
            default:
                const bool control = static_cast<unsigned char>(c) < 0x20 && kept.find(c) == std::string_view::npos;
                out += control ? inPlace : c;
        }
    }
    return out;
}

/// The same for a page: line ends and tabs stay, other control bytes become question marks.
inline std::string HtmlText(std::string_view text) {
    return EscapedMarkup(text, '?', "\n\t");
}

}  // namespace zm
