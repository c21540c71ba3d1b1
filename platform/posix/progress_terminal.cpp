#include "platform/posix/progress_terminal.h"

#include <poll.h>
#include <signal.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>

#include "platform/posix/console_host.h"
#include "runtime/text/fixed_text.h"

namespace zm::platform {
namespace {

constexpr char kEscape = 27;
constexpr std::size_t kUsualColumns = 80;

volatile sig_atomic_t g_interrupted = 0;
volatile sig_atomic_t g_rawInput = 0;
termios g_before;  // what stdin was before keys were read from it

void RestoreInput() {
    if (g_rawInput == 0) return;
    g_rawInput = 0;
    ::tcsetattr(STDIN_FILENO, TCSANOW, &g_before);
}

extern "C" void OnInterrupt(int signal) {
    if (g_interrupted == 0) {
        g_interrupted = 1;
        return;
    }
    RestoreInput();
    ::signal(signal, SIG_DFL);
    ::raise(signal);
}

std::size_t Columns() {
    winsize size{};
    if (::ioctl(STDERR_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col > 0) return size.ws_col;
    return kUsualColumns;
}

bool InForeground() {
    return ::isatty(STDIN_FILENO) == 1 && ::tcgetpgrp(STDIN_FILENO) == ::getpgrp();
}

// Where the bytes of an arrow or function key end, which begins with Esc at a place; that place where there is none.
std::size_t EndOfKeySequence(std::string_view bytes, std::size_t at) {
    std::size_t end = at + 1;
    if (end >= bytes.size() || (bytes[end] != '[' && bytes[end] != 'O')) return at;
    const bool isLong = bytes[end++] == '[';
    while (isLong && end < bytes.size() && (bytes[end] < '@' || bytes[end] > '~')) ++end;
    return end + 1;
}

// Of the keys that were typed since the last look: Esc, if it is among them, else the last one.
int EscapeOrLastKey(std::string_view bytes) {
    for (std::size_t at = bytes.find(kEscape); at < bytes.size(); at = bytes.find(kEscape, at)) {
        const std::size_t end = EndOfKeySequence(bytes, at);
        if (end == at) return kEscape;
        at = end;
    }
    return static_cast<unsigned char>(bytes.back());
}

}  // namespace

std::string FitColumns(std::string_view gbk, std::size_t columns) {
    // A two-byte character takes two columns, so bytes count as columns.
    while (gbk.size() > columns && gbk.starts_with(' ')) gbk.remove_prefix(1);
    return std::string(runtime::CutText(gbk, columns));
}

ProgressTerminal::~ProgressTerminal() {
    EndKeys();
    Hide();
}

bool ProgressTerminal::HasLine() {
    return ::isatty(STDERR_FILENO) == 1;
}

void ProgressTerminal::Show(const char* gbk) {
    if (!HasLine()) return;
    if (gbk == nullptr || *gbk == '\0') {
        Hide();
        return;
    }
    // The last column stays free: a line that fills it would go on in the next.
    std::fprintf(stderr, "\r%s\033[K", TerminalText(FitColumns(gbk, Columns() - 1).c_str()).c_str());
    std::fflush(stderr);
    m_lineShown = true;
}

void ProgressTerminal::Hide() {
    if (!m_lineShown) return;
    std::fputs("\r\033[K", stderr);
    std::fflush(stderr);
    m_lineShown = false;
}

void ProgressTerminal::StartKeys() {
    struct sigaction now {};
    if (!m_catchesInterrupt && ::sigaction(SIGINT, nullptr, &now) == 0 && now.sa_handler == SIG_DFL) {
        struct sigaction ours {};
        ours.sa_handler = OnInterrupt;
        ours.sa_flags = SA_RESTART;
        sigemptyset(&ours.sa_mask);
        g_interrupted = 0;
        m_catchesInterrupt = ::sigaction(SIGINT, &ours, nullptr) == 0;
    }
    if (m_readsKeys || !InForeground() || ::tcgetattr(STDIN_FILENO, &m_before) != 0) return;
    termios raw = m_before;
    raw.c_lflag &= ~static_cast<tcflag_t>(ICANON | ECHO);
    raw.c_cc[VMIN] = 0;
    raw.c_cc[VTIME] = 0;
    g_before = m_before;
    m_readsKeys = ::tcsetattr(STDIN_FILENO, TCSANOW, &raw) == 0;
    if (!m_readsKeys) return;
    g_rawInput = 1;
    static const int registered = std::atexit(RestoreInput);
    static_cast<void>(registered);
}

void ProgressTerminal::EndKeys() {
    if (m_readsKeys) RestoreInput();
    m_readsKeys = false;
    if (m_catchesInterrupt) ::signal(SIGINT, SIG_DFL);
    m_catchesInterrupt = false;
}

bool ProgressTerminal::TakeKey(int& key) {
    if (g_interrupted != 0) {
        g_interrupted = 0;
        key = kEscape;
        return true;
    }
    if (!m_readsKeys) return false;
    pollfd input{STDIN_FILENO, POLLIN, 0};
    if (::poll(&input, 1, 0) != 1 || (input.revents & POLLIN) == 0) return false;
    char bytes[256];
    const ssize_t count = ::read(STDIN_FILENO, bytes, sizeof bytes);
    if (count <= 0) return false;
    key = EscapeOrLastKey({bytes, static_cast<std::size_t>(count)});
    return true;
}

}  // namespace zm::platform
