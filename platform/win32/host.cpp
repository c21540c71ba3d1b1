#include "platform/win32/host.h"

#include <commctrl.h>
#include <commdlg.h>

#include <string>
#include <vector>

#include "platform/default_host.h"
#include "platform/win32/dialog_window.h"
#include "platform/win32/fonts.h"
#include "platform/win32/resources.h"
#include "platform/win32/wide.h"

namespace zm::platform {
namespace {

using win32::Wide;

std::wstring ProgramName() {
    wchar_t path[MAX_PATH] = {};
    GetModuleFileNameW(nullptr, path, MAX_PATH - 1);
    std::wstring name = path;
    if (const std::size_t separator = name.find_last_of(L"\\/"); separator != std::wstring::npos)
        name.erase(0, separator + 1);
    if (const std::size_t dot = name.rfind(L'.'); dot != std::wstring::npos) name.erase(dot);
    return name;
}

BOOL CALLBACK KeepMainWindow(HWND window, LPARAM found) {
    if (IsWindowVisible(window) == 0 || GetWindow(window, GW_OWNER) != nullptr) return TRUE;
    if ((GetWindowLongW(window, GWL_EXSTYLE) & WS_EX_TOOLWINDOW) != 0) return TRUE;
    *reinterpret_cast<HWND*>(found) = window;
    return FALSE;
}

// The status bar control among the direct children of a window.
HWND StatusBarOf(HWND window) {
    return window != nullptr ? FindWindowExW(window, nullptr, STATUSCLASSNAMEW, nullptr) : nullptr;
}

}  // namespace

int WindowsHost::ShowBox(const char* text, const char* title, unsigned int type) {
    return MessageBoxW(nullptr, Wide(text).c_str(), Wide(title).c_str(), type);
}

int WindowsHost::ShowAppBox(const char* text, unsigned int type, unsigned int) {
    return MessageBoxW(GetActiveWindow(), Wide(text).c_str(), ProgramName().c_str(), type);
}

void WindowsHost::Beep() {
    MessageBeep(0xFFFFFFFF);
}

HWND WindowsHost::MainWindow() {
    if (const HWND active = GetActiveWindow()) return GetAncestor(active, GA_ROOTOWNER);
    HWND found = nullptr;
    EnumThreadWindows(GetCurrentThreadId(), KeepMainWindow, reinterpret_cast<LPARAM>(&found));
    return found;
}

bool WindowsHost::IsWindow(HWND window) {
    return ::IsWindow(window) != 0;
}

int WindowsHost::GetText(HWND window, char* buffer, int size) {
    std::vector<wchar_t> text(static_cast<std::size_t>(GetWindowTextLengthW(window)) + 1);
    const int length = GetWindowTextW(window, text.data(), static_cast<int>(text.size()));
    return win32::CopyText(win32::Gbk({text.data(), static_cast<std::size_t>(length)}), buffer, size);
}

void WindowsHost::SetText(HWND window, const char* text) {
    SetWindowTextW(window, Wide(text).c_str());
}

bool WindowsHost::SetStatusPane(int pane, const char* text) {
    const HWND bar = StatusBarOf(MainWindow());
    if (bar == nullptr || pane < 0 || pane >= SendMessageW(bar, SB_GETPARTS, 0, 0)) return false;
    if (SendMessageW(bar, SB_SETTEXTW, static_cast<WPARAM>(pane), reinterpret_cast<LPARAM>(Wide(text).c_str())) == 0)
        return false;
    UpdateWindow(bar);
    return true;
}

Int64 WindowsHost::Send(HWND window, unsigned int message, UInt64 wparam, Int64 lparam) {
    return SendMessageA(window, message, wparam, lparam);
}

HCURSOR WindowsHost::PutCursor(HCURSOR cursor) {
    return SetCursor(cursor);
}

HCURSOR WindowsHost::StandardCursor(Cursor cursor) {
    return LoadCursorW(nullptr, reinterpret_cast<const wchar_t*>(cursor == Cursor::wait ? IDC_WAIT : IDC_ARROW));
}

bool WindowsHost::TakeMessage(QueueMessage& message, HWND window, unsigned int first, unsigned int last) {
    MSG taken;
    if (PeekMessageW(&taken, window, first, last, PM_REMOVE) == 0) return false;
    message = {taken.hwnd, taken.message, taken.wParam, taken.lParam};
    return true;
}

void WindowsHost::Dispatch(const QueueMessage& message) {
    MSG forwarded = {};
    forwarded.hwnd = message.window;
    forwarded.message = message.message;
    forwarded.wParam = message.wparam;
    forwarded.lParam = message.lparam;
    TranslateMessage(&forwarded);
    DispatchMessageW(&forwarded);
}

bool WindowsHost::PickFont(HWND owner, LOGFONTA& font) {
    LOGFONTW wide = win32::WideFont(font);
    CHOOSEFONTW choice = {};
    choice.lStructSize = sizeof choice;
    choice.hwndOwner = owner;
    choice.lpLogFont = &wide;
    choice.Flags = CF_SCREENFONTS | CF_INITTOLOGFONTSTRUCT;
    if (::ChooseFontW(&choice) == 0) return false;
    font = win32::GbkFont(wide);
    return true;
}

bool WindowsHost::RunDialog(dialogs::Dialog& dialog) {
    return win32::ShowDialog(dialog);
}

void* WindowsHost::PutResourceSource(void* module) {
    return win32::PutResourceSource(static_cast<HMODULE>(module));
}

void* WindowsHost::LibraryModule() {
    return win32::OwnModule();
}

Host& DefaultHost() {
    static WindowsHost host;
    return host;
}

}  // namespace zm::platform
