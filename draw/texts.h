// Texts of draw, as GBK bytes. Each that is not plain ASCII is beside its readable form; a test compares the two.
#pragma once

namespace zm::draw::texts {

struct Text {
    const char* gbk;
    const char* readable;  // UTF-8
};

inline constexpr char kRedefined[] = "fatal error TqDC redefined";

// "Information about font number %d is not defined in orvnote.cod"
inline constexpr Text kNoFont = {
    "\xD4\xDAorvnote.cod\xD6\xD0\xCE\xB4\xB6\xA8\xD2\xE5\xD7\xD6\xCC\xE5\xBA\xC5%"
    "d\xB5\xC4\xD7\xD6\xCC\xE5\xD0\xC5\xCF\xA2",
    "在orvnote.cod中未定义字体号%d的字体信息"};

inline constexpr Text kAll[] = {kNoFont};

}  // namespace zm::draw::texts
