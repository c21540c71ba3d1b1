// The host of a Windows program: the system's own boxes, windows, cursors and message queue.
#include "zenromath/host.h"

#include <commdlg.h>

#include "platform/default_host.h"

namespace zm::platform {
namespace {

HCURSOR LoadStandard(const char* name) {
    return LoadCursorA(nullptr, name);
}

class WindowsHost : public Host {
 public:
    int ShowBox(const char* text, const char* title, unsigned int type) override {
        return MessageBoxA(nullptr, text, title, type);
    }
    void Beep() override { MessageBeep(0xFFFFFFFF); }
    HWND MainWindow() override { return GetActiveWindow(); }
    bool IsWindow(HWND window) override { return ::IsWindow(window) != 0; }
    int GetText(HWND window, char* buffer, int size) override { return GetWindowTextA(window, buffer, size); }
    void SetText(HWND window, const char* text) override { SetWindowTextA(window, text); }
    Int64 Send(HWND window, unsigned int message, UInt64 wparam, Int64 lparam) override {
        return SendMessageA(window, message, wparam, lparam);
    }
    HCURSOR PutCursor(HCURSOR cursor) override { return SetCursor(cursor); }
    HCURSOR StandardCursor(Cursor cursor) override {
        return cursor == Cursor::wait ? LoadStandard(reinterpret_cast<const char*>(IDC_WAIT))
                                      : LoadStandard(reinterpret_cast<const char*>(IDC_ARROW));
    }
    bool TakeMessage(QueueMessage& message, HWND window, unsigned int first, unsigned int last) override {
        MSG taken;
        if (PeekMessageA(&taken, window, first, last, PM_REMOVE) == 0) return false;
        message = {taken.hwnd, taken.message, taken.wParam, taken.lParam};
        return true;
    }
    void Dispatch(const QueueMessage& message) override {
        MSG forwarded = {};
        forwarded.hwnd = message.window;
        forwarded.message = message.message;
        forwarded.wParam = message.wparam;
        forwarded.lParam = message.lparam;
        TranslateMessage(&forwarded);
        DispatchMessageA(&forwarded);
    }
    bool PickFont(HWND owner, LOGFONTA& font) override {
        CHOOSEFONTA choice = {};
        choice.lStructSize = sizeof choice;
        choice.hwndOwner = owner;
        choice.lpLogFont = &font;
        choice.Flags = CF_SCREENFONTS | CF_INITTOLOGFONTSTRUCT;
        return ::ChooseFontA(&choice) != 0;
    }
};

}  // namespace

Host& DefaultHost() {
    static WindowsHost host;
    return host;
}

}  // namespace zm::platform
