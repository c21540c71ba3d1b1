#include "tools/kit/tool_host.h"

#include <algorithm>
#include <cstdio>
#include <iterator>
#include <new>
#include <string_view>

#include "runtime/text/gbk.h"
#include "tools/kit/process.h"
#include "tools/kit/shown_text.h"
#include "tools/kit/translation.h"

namespace zm::tool {
namespace {

constexpr int kEscape = 27;
constexpr double kQuietSeconds = 1.0;  // progress begins after it

// What the library shows where memory ran out. It goes on without the line or the hatch; a map that lacks them is none.
constexpr std::string_view kMemoryRanOut[] = {"mem err",     "no space",          "symwin space err",
                                              "cod mem err", "font info mem err", "内存不足"};

bool g_lineShown = false;
char g_window;  // its address is the handle of the terminal line
bool (*g_stopQuestion)() = nullptr;

HWND TerminalWindow() {
    return reinterpret_cast<HWND>(&g_window);
}

}  // namespace

void SetStopQuestion(bool (*question)()) {
    g_stopQuestion = question;
}

bool StopAsked() {
    return g_stopQuestion != nullptr && g_stopQuestion();
}

void ClearProgressLine() {
    if (!g_lineShown) return;
    std::fputs("\r\033[K", stderr);
    std::fflush(stderr);
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
    if (std::find(std::begin(kMemoryRanOut), std::end(kMemoryRanOut), m_lastMessage) != std::end(kMemoryRanOut))
        throw std::bad_alloc();
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
    if (m_report.quiet() || m_report.collecting() || !IsTerminal(stderr) || Now() - m_start < kQuietSeconds) return;
    const char* shown = text != nullptr ? text : "";
    while (*shown == ' ') ++shown;
    if (*shown == '\0') return ClearProgressLine();
    std::fprintf(stderr, "\r\033[K%s", ForTerminal(Printable(WithoutSecrets(gbk::ToUtf8(shown)))).c_str());
    std::fflush(stderr);
    g_lineShown = true;
}

bool ToolHost::TakeMessage(QueueMessage& message, HWND, unsigned int first, unsigned int last) {
    const bool keys = first == 0 || (first <= WM_KEYUP && WM_KEYUP <= last);
    if (!keys || (!StopRequested() && !StopAsked())) return false;
    message.window = TerminalWindow();
    message.message = WM_KEYUP;
    message.wparam = kEscape;
    return true;
}

void ToolHost::EndProcess(int status) {
    throw LibraryStop{status};
}

}  // namespace zm::tool
