#include "tools/zenro/tool_host.h"

#include <signal.h>
#include <unistd.h>

#include <cstdio>
#include <cstring>

#include "runtime/gbk.h"
#include "tools/zenro/output_file.h"

namespace zm::tool {
namespace {

constexpr int kEscape = 27;
constexpr double kQuietSeconds = 1.0;  // progress begins after it

volatile sig_atomic_t g_stop = 0;
bool g_lineShown = false;
char g_window;  // its address is the handle of the terminal line

HWND TerminalWindow() {
    return reinterpret_cast<HWND>(&g_window);
}

extern "C" void OnStopSignal(int) {
    if (g_stop != 0) {
        RemoveUnfinishedOutputs();
        _exit(kStopped);
    }
    g_stop = 1;
}

}  // namespace

void CatchStopSignals() {
    struct sigaction action;
    std::memset(&action, 0, sizeof action);
    action.sa_handler = OnStopSignal;  // no SA_RESTART: a read that waits for input must return
    sigemptyset(&action.sa_mask);
    sigaction(SIGINT, &action, nullptr);
    sigaction(SIGTERM, &action, nullptr);
    sigaction(SIGHUP, &action, nullptr);
    signal(SIGPIPE, SIG_IGN);  // a closed pipe is a failed write, told as such
}

bool StopRequested() {
    return g_stop != 0;
}

void ClearProgressLine() {
    if (!g_lineShown) return;
    std::fputs("\r\033[K", stderr);
    g_lineShown = false;
}

ToolHost::ToolHost(Report& report) : m_report(report), m_previous(SetHost(this)), m_start(Now()) {}

ToolHost::~ToolHost() {
    ClearProgressLine();
    SetHost(m_previous);
}

int ToolHost::ShowBox(const char* text, const char* title, unsigned int type) {
    m_lastMessage = gbk::ToUtf8(text != nullptr ? text : "");
    for (char& c : m_lastMessage)
        if (c == '\n' || c == '\r') c = ' ';
    ++m_messages;
    std::string kind = title != nullptr ? gbk::ToUtf8(title) : "";
    if (kind.empty() || kind == "Zenro Info") kind = "library";
    m_report.Warn("message of the " + kind + ": " + m_lastMessage, kind + ": " + m_lastMessage);
    return (type & 0xF) == MB_YESNO ? IDNO : IDOK;
}

HWND ToolHost::MainWindow() {
    return TerminalWindow();
}

bool ToolHost::IsWindow(HWND window) {
    return window == TerminalWindow();
}

void ToolHost::SetText(HWND, const char* text) {
    if (m_report.quiet() || isatty(STDERR_FILENO) != 1 || Now() - m_start < kQuietSeconds) return;
    const char* shown = text != nullptr ? text : "";
    while (*shown == ' ') ++shown;
    if (*shown == '\0') return ClearProgressLine();
    std::fprintf(stderr, "\r\033[K%s", gbk::ToUtf8(shown).c_str());
    g_lineShown = true;
}

bool ToolHost::TakeMessage(QueueMessage& message, HWND, unsigned int first, unsigned int last) {
    const bool keys = first == 0 || (first <= WM_KEYUP && WM_KEYUP <= last);
    if (!keys || !StopRequested()) return false;
    message.window = TerminalWindow();
    message.message = WM_KEYUP;
    message.wparam = kEscape;
    return true;
}

void ToolHost::EndProcess(int status) {
    throw LibraryStop{status};
}

}  // namespace zm::tool
