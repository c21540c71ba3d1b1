#include "tests/windows/console.h"

#include "platform/win32/wide.h"

namespace zm::test {
namespace {

constexpr DWORD kPatience = 120'000;  // milliseconds
constexpr SHORT kColumns = 120, kLines = 200;

void HaveConsole() {
    static const bool made = [] {
        FreeConsole();
        return AllocConsole() != 0;
    }();
    static_cast<void>(made);
}

}  // namespace

ConsoleScreen::ConsoleScreen() {
    HaveConsole();
    SECURITY_ATTRIBUTES inherited = {sizeof inherited, nullptr, TRUE};
    m_handle = CreateConsoleScreenBuffer(GENERIC_READ | GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE, &inherited,
                                         CONSOLE_TEXTMODE_BUFFER, nullptr);
    SetConsoleScreenBufferSize(m_handle, {kColumns, kLines});
}

ConsoleScreen::~ConsoleScreen() {
    CloseHandle(m_handle);
}

std::string ConsoleScreen::Text() const {
    CONSOLE_SCREEN_BUFFER_INFO info = {};
    GetConsoleScreenBufferInfo(m_handle, &info);
    std::string text;
    for (SHORT y = 0; y <= info.dwCursorPosition.Y; ++y) {
        std::wstring line(static_cast<std::size_t>(info.dwSize.X), L' ');
        DWORD count = 0;
        ReadConsoleOutputCharacterW(m_handle, line.data(), static_cast<DWORD>(line.size()), {0, y}, &count);
        line.resize(count);
        line.erase(line.find_last_not_of(L' ') + 1);
        text += win32::ToUtf8(line) + "\n";
    }
    return text;
}

Zenro::Zenro(const std::wstring& arguments, const ConsoleScreen* screen) {
    SetEnvironmentVariableW(L"PATH", (win32::FromUtf8(ZM_LIBRARY_DIR) + L";C:\\windows\\system32").c_str());
    SECURITY_ATTRIBUTES inherited = {sizeof inherited, nullptr, TRUE};
    const HANDLE said = screen != nullptr ? screen->handle()
                                          : CreateFileW(L"said.txt", GENERIC_WRITE, FILE_SHARE_READ, &inherited,
                                                        CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr);
    STARTUPINFOW start = {};
    start.cb = sizeof start;
    start.dwFlags = STARTF_USESTDHANDLES;
    start.hStdOutput = start.hStdError = said;
    std::wstring line = L"zenro " + arguments;
    if (CreateProcessW(win32::FromUtf8(ZM_ZENRO).c_str(), line.data(), nullptr, nullptr, TRUE, 0, nullptr, nullptr,
                       &start, &m_process) == 0)
        m_process = {};
    if (screen == nullptr) CloseHandle(said);
}

Zenro::~Zenro() {
    if (!started()) return;
    if (running()) TerminateProcess(m_process.hProcess, 1);
    CloseHandle(m_process.hProcess);
    CloseHandle(m_process.hThread);
}

int Zenro::Status() const {
    DWORD status = 0;
    if (WaitForSingleObject(m_process.hProcess, kPatience) != WAIT_OBJECT_0) return -1;
    GetExitCodeProcess(m_process.hProcess, &status);
    return static_cast<int>(status);
}

}  // namespace zm::test
