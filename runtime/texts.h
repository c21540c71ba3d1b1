// Texts of the runtime services, as GBK bytes. Each stands beside its readable form; a test compares the two.
#pragma once

namespace zm::runtime::texts {

struct Text {
    const char* gbk;
    const char* readable;  // UTF-8
};

// "Internal error: %s, at: %s's %s, end the program?"
inline constexpr Text kInternalError = {
    "\xC4\xDA\xB2\xBF\xB4\xED\xCE\xF3\xA3\xBA%s\n\xD4\xDA\xA3\xBA%s\xB5\xC4%s\n"
    "\xBD\xE1\xCA\xF8\xB3\xCC\xD0\xF2\xD4\xCB\xD0\xD0\xC2\xF0\xA3\xBF",
    "内部错误：%s\n在：%s的%s\n结束程序运行吗？"};
// "Warning"
inline constexpr Text kWarning = {"\xBE\xAF\xB8\xE6", "警告"};

inline constexpr Text kAll[] = {kInternalError, kWarning};

}  // namespace zm::runtime::texts
