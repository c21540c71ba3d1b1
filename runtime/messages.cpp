// Messages and internal errors: CLMsg, _LMsg, _LErr, the replaceable boxes.
#include <cstdio>
#include <cstring>

#include "runtime/files/files.h"
#include "runtime/files/system.h"
#include "runtime/state.h"
#include "runtime/text/numbers.h"
#include "runtime/texts.h"
#include "zenromath/runtime.h"

namespace {

constexpr char kDefaultTitle[] = "Zenro Info";
constexpr unsigned int kQuestion = MB_SYSTEMMODAL | MB_ICONQUESTION | MB_YESNO;
constexpr unsigned int kInformation = MB_TASKMODAL | MB_ICONINFORMATION;
constexpr unsigned int kInternalErrorBox = MB_ICONSTOP | MB_YESNO;
static_assert(kQuestion == 0x1024 && kInformation == 0x2040 && kInternalErrorBox == 0x14);

// Shows the box that both CLMsg and _LMsg show; 1 for Yes.
int Box(const char* text, const char* title, int ask) {
    if (ask != 0) return zm::CurrentHost().ShowBox(text, title, kQuestion) == IDYES ? 1 : 0;
    zm::CurrentHost().ShowBox(text, title, kInformation);
    return 0;
}

const char* OrEmpty(const char* text) {
    return text != nullptr ? text : "";
}

}  // namespace

#if !defined(_AFX) && !defined(_AFXDLL)
int CWnd::GetWindowText(char* buffer, int size) const {
    if (buffer == nullptr || size <= 0) return 0;
    buffer[0] = '\0';
    return m_hWnd != nullptr ? zm::CurrentHost().GetText(m_hWnd, buffer, size) : 0;
}

void CString::Format(const char* format, ...) {
    std::va_list args;
    va_start(args, format);
    m_text = zm::numbers::TextV(format, args);
    va_end(args);
}
#endif

CLMsg::CLMsg(CLMsgOutTo target, const char* name, int beep)
    : m_scratch{}, m_name{}, m_beep(beep), m_target(target), m_delimiter(":") {
    if (name == nullptr) return;
    const std::size_t length = std::strlen(name);
    if (length < sizeof m_name)
        std::memcpy(m_name, name, length + 1);
    else
        _LMsg("CLMsg: the name is longer than 255 bytes and was left out. Use a shorter path.", nullptr, 0);
}

CLMsg::~CLMsg() = default;

CLMsg& CLMsg::AddToBuf(const char* text) {
    if (std::strcmp(text, "endl") == 0) {
        OutMsg(m_target, 0);
        m_buffer.Empty();
    } else {
        m_buffer += text;
        m_buffer += m_delimiter.GetString();
    }
    return *this;
}

CLMsg& CLMsg::operator<<(const char* text) {
    return AddToBuf(OrEmpty(text));
}

CLMsg& CLMsg::operator<<(int value) {
    zm::numbers::Print(m_scratch, sizeof m_scratch, "%d", value);
    return AddToBuf(m_scratch);
}

CLMsg& CLMsg::operator<<(float value) {
    return *this << static_cast<double>(value);
}

CLMsg& CLMsg::operator<<(double value) {
    // 1e308 has 309 digits, more than the scratch holds.
    return AddToBuf(zm::numbers::Text("%f", value).c_str());
}

CLMsg& CLMsg::operator<<(CEdit* edit) {
    m_scratch[0] = '\0';
    if (edit != nullptr) edit->GetWindowText(m_scratch, sizeof m_scratch);
    return AddToBuf(m_scratch);
}

CLMsg& CLMsg::operator<<(CStatic* label) {
    m_scratch[0] = '\0';
    if (label != nullptr) label->GetWindowText(m_scratch, sizeof m_scratch);
    return AddToBuf(m_scratch);
}

CLMsg& CLMsg::operator<<(const CString& text) {
    m_buffer += static_cast<const char*>(text);
    m_buffer += static_cast<const char*>(m_delimiter);
    return *this;
}

int CLMsg::OutMsg(CLMsgOutTo target, int ask) {
    zm::Host& host = zm::CurrentHost();
    if (m_beep != 0) host.Beep();
    const char* text = m_buffer;
    const char* title = m_name[0] != '\0' ? m_name : kDefaultTitle;
    if (ask != 0) return Box(text, title, ask);
    switch (static_cast<int>(target)) {
        case CLMsgToPane0:
        case CLMsgToPane1:
        case CLMsgToPane2:
            if (host.SetStatusPane(static_cast<int>(target), text)) return 0;
            break;
        case CLMsgToTitle:
            if (HWND window = host.MainWindow()) {
                host.SetText(window, text);
                return 0;
            }
            break;
        case CLMsgToFile:
            if (std::FILE* file = zm::files::Open(m_name, "at")) {
                std::fprintf(file, "%s\n", text);
                std::fclose(file);
            }
            return 0;
        default:
            break;
    }
    return Box(text, title, 0);
}

void CLMsg::SetDelimiter(const char* text) {
    m_delimiter = OrEmpty(text);
}

void CLMsg::ResetFile() {
    if (m_name[0] == '\0') return;
    if (std::FILE* file = zm::files::Open(m_name, "wt")) std::fclose(file);
}

CString CLMsg::GetMsgBuf() const {
    return m_buffer;
}

int _LMsg(const char* text, const char* title, int ask) {
    zm::CurrentHost().Beep();
    if (text == nullptr || *text == '\0') return 0;
    return Box(text, title != nullptr ? title : kDefaultTitle, ask);
}

int _LMsg(int id, const char* title, int ask) {
    if (const auto lookUp = zm::runtime::state().stringTable) return _LMsg(lookUp(id), title, ask);
    return _LMsg(zm::system::ResourceText(id).c_str(), title, ask);
}

void zm::SetStringTable(const char* (*lookUp)(int id)) {
    runtime::state().stringTable = lookUp;
}

void _LErr(int cond, const char* what, const char* where, const char* func) {
    if (cond == 0) return;
    char text[512];
    zm::numbers::Print(text, sizeof text, zm::runtime::texts::kInternalError.gbk, OrEmpty(what), OrEmpty(where),
                       OrEmpty(func));
    zm::Host& host = zm::CurrentHost();
    if (host.ShowBox(text, zm::runtime::texts::kWarning.gbk, kInternalErrorBox) == IDYES) host.EndProcess(13);
}

int AfxMessageBox2(const char* text, unsigned int type, unsigned int help) {
    if (const auto process = zm::runtime::state().messageBox) return process(text, type, help);
    return zm::CurrentHost().ShowAppBox(OrEmpty(text), type, help);
}

void Set_MessageBox_Process(int (*process)(const char*, unsigned int, unsigned int)) {
    zm::runtime::state().messageBox = process;
}

int WindowSendMeassage(CWnd* wnd, unsigned int msg, zm::UInt64 wparam, zm::Int64 lparam) {
    if (const auto process = zm::runtime::state().sendMessage) return process(wnd, msg, wparam, lparam);
    if (wnd == nullptr || wnd->GetSafeHwnd() == nullptr || !zm::CurrentHost().IsWindow(wnd->GetSafeHwnd())) return 0;
    return static_cast<int>(zm::CurrentHost().Send(wnd->GetSafeHwnd(), msg, wparam, lparam));
}

void Set_WindowSendMeassageEx(int (*process)(CWnd*, unsigned int, zm::UInt64, zm::Int64)) {
    zm::runtime::state().sendMessage = process;
}

CZenroMathApp::CZenroMathApp() = default;
