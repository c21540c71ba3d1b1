#include "tools/kit/text_decoder.h"

#include <algorithm>
#include <cctype>

#include "tools/kit/exit_codes.h"
#include "tools/kit/translation.h"
#include "tools/kit/utf8.h"

namespace zm::tool {
namespace {

// The system's name of an encoding. GB18030 holds GBK, and GBK holds GB2312, character by character.
std::string SystemName(std::string name) {
    std::transform(name.begin(), name.end(), name.begin(), [](unsigned char c) { return std::toupper(c); });
    for (const char* chinese :
         {"GBK", "GB2312", "CP936", "936", "ANSI_936", "MS936", "WINDOWS-936", "EUC-CN", "GB18030"})
        if (name == chinese) return "GB18030";
    if (name == "UTF8" || name == "65001" || name == "CP65001") return "UTF-8";
    return name;
}

bool IsAscii(std::string_view text) {
    return std::all_of(text.begin(), text.end(), [](char c) { return static_cast<unsigned char>(c) < 0x80; });
}

}  // namespace

bool IsUtf8(std::string_view text) {
    for (std::size_t at = 0; at < text.size();) {
        const std::size_t length = Utf8Length(text, at);
        if (length == 0) return false;
        at += length;
    }
    return true;
}

TextDecoder::TextDecoder(const std::string& name) : m_name(name) {
    if (name.empty()) return;
    const std::string system = SystemName(name);
    m_plain = system == "UTF-8";
    if (m_plain) return;
    m_convert = SystemDecoder(system);
    if (m_convert == nullptr)
        throw Failure(kUsage, Phrase("--encoding {0}: no encoding of this name; use GBK (also GB2312, CP936, 936, "
                                     "ANSI_936), GB18030 or UTF-8.",
                                     name));
}

bool TextDecoder::Decode(std::string& text) const {
    if (m_plain) return IsUtf8(text);
    return IsAscii(text) || m_convert(text);
}

}  // namespace zm::tool
