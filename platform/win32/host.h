// The host of a Windows program: the system's own boxes, windows, cursors and message queue. Texts are GBK and reach the
// system as wide characters, so that they read the same under every code page.
#pragma once

#include "zenromath/host.h"

namespace zm::platform {

class WindowsHost : public Host {
 public:
    int ShowBox(const char* text, const char* title, unsigned int type) override;
    /// With the active window of the thread as owner, and the program's file name as title.
    int ShowAppBox(const char* text, unsigned int type, unsigned int help) override;
    void Beep() override;

    /// The thread's active window or what owns it; while another program is in front the first visible top-level window
    /// of the thread that no other window owns. Null where the thread has none.
    HWND MainWindow() override;
    bool IsWindow(HWND window) override;
    int GetText(HWND window, char* buffer, int size) override;
    void SetText(HWND window, const char* text) override;
    /// Writes to the status bar control of the main window; false where it has none, or no such pane.
    bool SetStatusPane(int pane, const char* text) override;
    Int64 Send(HWND window, unsigned int message, UInt64 wparam, Int64 lparam) override;

    HCURSOR PutCursor(HCURSOR cursor) override;
    HCURSOR StandardCursor(Cursor cursor) override;
    bool TakeMessage(QueueMessage& message, HWND window, unsigned int first, unsigned int last) override;
    void Dispatch(const QueueMessage& message) override;
    bool PickFont(HWND owner, LOGFONTA& font) override;
    bool RunDialog(dialogs::Dialog& dialog) override;
    void* PutResourceSource(void* module) override;
    void* LibraryModule() override;
};

}  // namespace zm::platform
