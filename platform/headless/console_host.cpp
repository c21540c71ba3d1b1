#include "platform/headless/console_host.h"

#include <unistd.h>

#include <algorithm>
#include <cctype>
#include <cstdio>
#include <cstdlib>

#include "platform/default_host.h"
#include "runtime/gbk.h"

namespace zm::platform {
namespace {

// The character set of the environment's locale, in lower case; empty where none is named.
std::string TerminalCharset() {
    for (const char* name : {"LC_ALL", "LC_CTYPE", "LANG"}) {
        const char* value = std::getenv(name);
        if (value == nullptr || *value == '\0') continue;
        std::string charset(value);
        const auto dot = charset.find('.');
        charset = dot == std::string::npos ? std::string() : charset.substr(dot + 1);
        charset = charset.substr(0, charset.find('@'));
        std::transform(charset.begin(), charset.end(), charset.begin(),
                       [](unsigned char c) { return std::tolower(c); });
        return charset;
    }
    return {};
}

bool CanAsk() {
    return isatty(STDIN_FILENO) == 1 && isatty(STDERR_FILENO) == 1;
}

}  // namespace

std::string TerminalText(const char* gbk) {
    const std::string charset = TerminalCharset();
    if (charset == "gbk" || charset == "gb18030" || charset == "gb2312" || charset == "cp936") return gbk;
    return gbk::ToUtf8(gbk);
}

int ConsoleHost::ShowBox(const char* text, const char* title, unsigned int type) {
    std::fflush(stdout);
    std::fprintf(stderr, "%s: %s\n", TerminalText(title).c_str(), TerminalText(text).c_str());
    if ((type & 0xF) != MB_YESNO) return IDOK;
    if (!CanAsk()) return IDNO;
    std::fprintf(stderr, "[y/N] ");
    std::fflush(stderr);
    char answer[16] = {};
    if (std::fgets(answer, sizeof answer, stdin) == nullptr) return IDNO;
    return answer[0] == 'y' || answer[0] == 'Y' ? IDYES : IDNO;
}

void ConsoleHost::Beep() {
    if (isatty(STDERR_FILENO) == 1) std::fputc('\a', stderr);
}

Host& DefaultHost() {
    static ConsoleHost host;
    return host;
}

}  // namespace zm::platform
