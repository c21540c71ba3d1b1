#include <fcntl.h>
#include <io.h>
#include <windows.h>

// After windows.h.
#include <shellapi.h>

#include <atomic>

#include "platform/win32/wide.h"
#include "runtime/files/system.h"
#include "tools/kit/output_file.h"
#include "tools/kit/process.h"
#include "tools/kit/tool_host.h"

namespace zm::tool {
namespace {

constexpr std::size_t kConsoleBuffer = 1 << 16;  // bytes

std::atomic<bool> g_stop = false;

// Comes on a thread of its own. The first call only sets the flag; where the console or the session ends, the system
// waits for this function no longer than some seconds.
BOOL WINAPI OnStopEvent(DWORD event) {
    const bool ends = event == CTRL_CLOSE_EVENT || event == CTRL_LOGOFF_EVENT || event == CTRL_SHUTDOWN_EVENT;
    if (g_stop.exchange(true) || ends) {
        RemoveUnfinishedOutputs();
        TerminalText::Restore();
        ExitProcess(kStopped);
    }
    return TRUE;
}

int CALLBACK KeepFace(const LOGFONTW* font, const TEXTMETRICW*, DWORD, LPARAM name) {
    if (font->lfFaceName[0] == L'@') return 1;  // for text from top to bottom
    *reinterpret_cast<std::wstring*>(name) = font->lfFaceName;
    return 0;
}

}  // namespace

void CatchStopSignals() {
    SetConsoleCtrlHandler(OnStopEvent, TRUE);
}

bool StopRequested() {
    return g_stop;
}

std::vector<std::string> Arguments(int argc, char** argv) {
    int count = 0;
    wchar_t** wide = CommandLineToArgvW(GetCommandLineW(), &count);
    if (wide == nullptr) return {argv, argv + argc};
    std::vector<std::string> arguments;
    for (int i = 0; i < count; ++i) arguments.push_back(win32::ToUtf8(wide[i]));
    LocalFree(wide);
    if (arguments.empty()) arguments.emplace_back("zenro");
    return arguments;
}

std::FILE* OpenFile(const std::filesystem::path& path, const char* mode) {
    return _wfopen(system::Reachable(path).c_str(), win32::FromUtf8(mode).c_str());
}

bool IsTerminal(std::FILE* stream) {
    DWORD mode = 0;
    return GetConsoleMode(reinterpret_cast<HANDLE>(_get_osfhandle(_fileno(stream))), &mode) != 0;
}

unsigned int TerminalText::s_previous = 0;

// What is written goes out as it is: UTF-8, lines ended as on all systems. Some C libraries take text for a console as of
// the system's code page. Lines that are typed end as the console ends them.
TerminalText::TerminalText() {
    for (std::FILE* stream : {stdin, stdout, stderr})
        if (stream != stdin || !IsTerminal(stream)) _setmode(_fileno(stream), _O_BINARY);
    if (!IsTerminal(stdout) && !IsTerminal(stderr)) return;
    s_previous = GetConsoleOutputCP();
    SetConsoleOutputCP(CP_UTF8);
    const HANDLE error = GetStdHandle(STD_ERROR_HANDLE);
    DWORD mode = 0;
    if (GetConsoleMode(error, &mode) != 0) SetConsoleMode(error, mode | ENABLE_VIRTUAL_TERMINAL_PROCESSING);
    // A character is not to be cut in two: without these the C library hands on byte by byte.
    std::setvbuf(stdout, nullptr, _IOFBF, kConsoleBuffer);
    std::setvbuf(stderr, nullptr, _IOFBF, kConsoleBuffer);
}

TerminalText::~TerminalText() {
    Restore();
}

void TerminalText::Restore() {
    if (s_previous != 0) SetConsoleOutputCP(s_previous);
    s_previous = 0;
}

std::string InstalledChineseFace() {
    LOGFONTW wanted = {};
    wanted.lfCharSet = GB2312_CHARSET;
    std::wstring face;
    const HDC dc = CreateCompatibleDC(nullptr);
    EnumFontFamiliesExW(dc, &wanted, KeepFace, reinterpret_cast<LPARAM>(&face), 0);
    DeleteDC(dc);
    return win32::ToUtf8(face);
}

}  // namespace zm::tool
