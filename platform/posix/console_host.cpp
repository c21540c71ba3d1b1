#include "platform/posix/console_host.h"

#include <unistd.h>

#include <algorithm>
#include <cctype>
#include <cstdio>
#include <cstdlib>

#include "platform/default_host.h"
#include "runtime/text/gbk.h"

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

char g_line;  // the addresses are the handles
char g_cursors[2];

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
    m_terminal.Hide();
    std::fprintf(stderr, "%s: %s\n", TerminalText(title).c_str(), TerminalText(text).c_str());
    if ((type & 0xF) != MB_YESNO) return IDOK;
    if (!CanAsk()) return IDNO;
    std::fprintf(stderr, "[y/N] ");
    std::fflush(stderr);
    // An answer is a line: keys are not taken one by one while it is typed.
    m_terminal.EndKeys();
    char answer[16] = {};
    const bool answered = std::fgets(answer, sizeof answer, stdin) != nullptr;
    if (m_cursor == StandardCursor(Cursor::wait)) m_terminal.StartKeys();
    if (!answered) return IDNO;
    return answer[0] == 'y' || answer[0] == 'Y' ? IDYES : IDNO;
}

void ConsoleHost::Beep() {
    if (isatty(STDERR_FILENO) == 1) std::fputc('\a', stderr);
}

HWND ConsoleHost::MainWindow() {
    return ProgressTerminal::HasLine() ? reinterpret_cast<HWND>(&g_line) : nullptr;
}

bool ConsoleHost::IsWindow(HWND window) {
    return window == reinterpret_cast<HWND>(&g_line);
}

void ConsoleHost::SetText(HWND window, const char* text) {
    if (IsWindow(window)) m_terminal.Show(text);
}

HCURSOR ConsoleHost::PutCursor(HCURSOR cursor) {
    HCURSOR previous = m_cursor;
    m_cursor = cursor;
    if (cursor == StandardCursor(Cursor::wait))
        m_terminal.StartKeys();
    else
        m_terminal.EndKeys();
    return previous;
}

HCURSOR ConsoleHost::StandardCursor(Cursor cursor) {
    return reinterpret_cast<HCURSOR>(&g_cursors[cursor == Cursor::wait ? 1 : 0]);
}

bool ConsoleHost::TakeMessage(QueueMessage& message, HWND window, unsigned int first, unsigned int last) {
    int key = 0;
    if (first != WM_KEYUP || last != WM_KEYUP || !m_terminal.TakeKey(key)) return false;
    message = QueueMessage{};
    message.window = window;
    message.message = WM_KEYUP;
    message.wparam = static_cast<UInt64>(key);
    return true;
}

Host& DefaultHost() {
    static ConsoleHost host;
    return host;
}

}  // namespace zm::platform
