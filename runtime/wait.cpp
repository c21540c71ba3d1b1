// The wait cursor and the progress in the title of a window.
#include <algorithm>
#include <cstdarg>
#include <cstring>
#include <limits>
#include <memory>
#include <string>

#include "runtime/state.h"
#include "runtime/text/fixed_text.h"
#include "runtime/text/numbers.h"
#include "zenromath/runtime.h"

// A friend of the class in place of the function itself: of a friend that is imported from a DLL g++ warns each client.
struct zm::runtime::WaitTimes {
    /// Seconds.
    static double SinceMessageOf(const tqwaitcur& waiting) {
        return zm::CurrentHost().Now() - waiting.m_lastMessageTime;
    }
};

namespace {

using zm::runtime::CutText;

constexpr int kBarLength = 35;
constexpr int kFaceLength = 3;
constexpr std::size_t kLineLimit = 255;
constexpr std::size_t kTextLimit = 1999;
constexpr double kSecondsBetweenLines = 2.0;
constexpr int kNoNumber = -9999;
constexpr zm::UInt64 kEscape = 27;
// Moves, clicks and double clicks of three buttons; the wheel and further buttons come after them. The header of the
// system counts those as mouse messages too.
constexpr unsigned int kFirstMouseMessage = 512;
constexpr unsigned int kLastMouseMessage = 521;

const char* OrEmpty(const char* text) {
    return text != nullptr ? text : "";
}

std::string ProgressLine(int percent, const char* text) {
    std::string tail(kBarLength, '_');
    tail = "  " + tail + "  " + zm::numbers::Text("%d%%", percent);
    // Of a text that is too long its end is left out, so that bar and percentage stay whole.
    std::string line = zm::numbers::Text("%40s", std::string(CutText(OrEmpty(text), kLineLimit - tail.size())).c_str());
    const std::size_t bar = line.size() + 2;
    line += tail;
    // Beyond 0 to 100 the face is kept in the line.
    const int place = std::clamp(percent / 3, 0, kBarLength - kFaceLength + 1);
    line.replace(bar + static_cast<std::size_t>(place), kFaceLength, percent < 50 ? "^-^" : "^o^");
    return line;
}

// Lets the waiting messages of the thread run.
// Required: quit and mouse messages are dropped, so that clicks made during the wait start nothing afterwards.
void PumpMessages(zm::Host& host) {
    zm::QueueMessage message;
    while (host.TakeMessage(message, nullptr, 0, 0)) {
        if (message.message == WM_QUIT) continue;
        if (message.message >= kFirstMouseMessage && message.message <= kLastMouseMessage) continue;
        host.Dispatch(message);
    }
}

std::string Formatted(const char* format, std::va_list args) {
    return std::string(CutText(zm::numbers::TextV(OrEmpty(format), args), kTextLimit));
}

bool Showing() {
    return zm::runtime::state().waiting != nullptr && !zm::runtime::state().waitHidden;
}

}  // namespace

tqwaitcur::tqwaitcur(const char* text, HWND wnd)
    : m_window(wnd), m_lastMessageTime(-std::numeric_limits<double>::infinity()) {
    zm::Host& host = zm::CurrentHost();
    m_previousCursor = host.PutCursor(host.StandardCursor(zm::Cursor::wait));
    if (m_window == nullptr) m_window = host.MainWindow();
    if (m_window != nullptr) SetWndText(text, 1);
}

tqwaitcur::~tqwaitcur() {
    restore();
    SetWndText(m_savedTitle, 0);
}

void tqwaitcur::restore() {
    zm::Host& host = zm::CurrentHost();
    host.PutCursor(m_previousCursor != nullptr ? m_previousCursor : host.StandardCursor(zm::Cursor::arrow));
}

void tqwaitcur::SetWndText(const char* text, int save) {
    zm::Host& host = zm::CurrentHost();
    if (m_window == nullptr || !host.IsWindow(m_window)) return;
    char title[sizeof m_savedTitle] = {};
    const bool isFrame = host.GetFrameTitle(m_window, title, sizeof title);
    if (save == 1) {
        if (!isFrame) host.GetText(m_window, title, sizeof title);
        std::memcpy(m_savedTitle, title, sizeof title);
        m_savedTitle[sizeof m_savedTitle - 1] = '\0';
    }
    if (text == nullptr) return;
    if (isFrame)
        host.SetFrameTitle(m_window, text);
    else
        host.SetText(m_window, text);
}

void tqwaitcur::setmessage(const char* text) {
    SetWndText(text, 0);
    if (sz_bPeekMessage) PumpMessages(zm::CurrentHost());
    m_lastMessageTime = zm::CurrentHost().Now();
}

void tqwaitcur::setmessage(int percent, const char* text) {
    if (m_window != nullptr) setmessage(ProgressLine(percent, text).c_str());
}

int tqwaitcur::IsESCpressed() {
    zm::QueueMessage message;
    if (!zm::CurrentHost().TakeMessage(message, m_window, WM_KEYUP, WM_KEYUP)) return 0;
    return message.wparam == kEscape ? 1 : 0;
}

NoPeekMessageOnWaitMsg::NoPeekMessageOnWaitMsg(bool nopeek) : m_previous(tqwaitcur::sz_bPeekMessage) {
    tqwaitcur::sz_bPeekMessage = !nopeek;
}

NoPeekMessageOnWaitMsg::~NoPeekMessageOnWaitMsg() {
    tqwaitcur::sz_bPeekMessage = m_previous;
}

bool SetHideWaitMsg(bool hide) {
    const bool previous = zm::runtime::state().waitHidden;
    zm::runtime::state().waitHidden = hide;
    return previous;
}

void _LWaitMsg(const char* text, HWND wnd) {
    _LWaitMsgEnd();
    if (!zm::runtime::state().waitHidden) zm::runtime::state().waiting = std::make_shared<tqwaitcur>(text, wnd);
}

void _LWaitMsgEnd() {
    zm::runtime::state().waiting.reset();
}

void _LWaitReMsg(const char* text) {
    if (!Showing()) return;
    const std::shared_ptr<tqwaitcur> waiting = zm::runtime::state().waiting;
    waiting->setmessage(text);
}

void _LWaitReMsg(const char* text, int n) {
    if (Showing()) _LWaitReMsg2("%s %d", OrEmpty(text), n);
}

void _LWaitReMsg2(const char* format, ...) {
    if (!Showing()) return;
    std::va_list args;
    va_start(args, format);
    const std::string text = Formatted(format, args);
    va_end(args);
    _LWaitReMsg(text.c_str());
}

int _LWaitReMsgEsc(const char* text, int n) {
    if (n == kNoNumber)
        _LWaitReMsg(text);
    else
        _LWaitReMsg(text, n);
    // Required: Esc is asked for while hidden too, so that work which hides its progress can still be stopped.
    const std::shared_ptr<tqwaitcur> waiting = zm::runtime::state().waiting;
    return waiting != nullptr ? waiting->IsESCpressed() : 0;
}

int _LWaitReMsgEsc2(int total, int current, const char* format, ...) {
    if (!Showing()) return 0;
    const std::shared_ptr<tqwaitcur> waiting = zm::runtime::state().waiting;
    const zm::Int64 count = std::max(total, 1);
    const zm::Int64 done = std::clamp<zm::Int64>(current, 0, count);
    if (zm::runtime::WaitTimes::SinceMessageOf(*waiting) > kSecondsBetweenLines || done % ((count + 99) / 100) == 0) {
        std::va_list args;
        va_start(args, format);
        const std::string text = Formatted(format, args);
        va_end(args);
        waiting->setmessage(static_cast<int>(done * 100 / count), text.c_str());
    }
    return waiting->IsESCpressed();
}
