// The host of a program with Qt windows: message boxes, status bar, titles, wait cursor, Esc, the pump, fonts.
#pragma once

#include <QObject>
#include <deque>
#include <set>

#include "zenromath/host.h"

class QMainWindow;
class QWidget;

namespace zm::qt {

/// An HWND is a QWidget* under this host.
ZM_API HWND HandleOf(QWidget* widget);
/// The widget of such a handle.
ZM_API QWidget* WidgetOf(HWND window);

/// Without a display questions are answered No and messages go to stderr, as under the console host.
///
/// While the library takes messages, Qt's events are processed. Clicks and keys made during the wait do not reach the
/// application; released keys are kept for the Esc test.
class ZM_API QtHost : public QObject, public Host {
 public:
    /// main may be null; then the active main window of the application serves.
    explicit QtHost(QMainWindow* main = nullptr);
    ~QtHost() override;

    int ShowBox(const char* text, const char* title, unsigned int type) override;
    void Beep() override;
    HWND MainWindow() override;
    bool IsWindow(HWND window) override;
    int GetText(HWND window, char* buffer, int size) override;
    void SetText(HWND window, const char* text) override;
    bool SetStatusPane(int pane, const char* text) override;
    Int64 Send(HWND window, unsigned int message, UInt64 wparam, Int64 lparam) override;
    HCURSOR PutCursor(HCURSOR cursor) override;
    HCURSOR StandardCursor(Cursor cursor) override;
    bool TakeMessage(QueueMessage& message, HWND window, unsigned int first, unsigned int last) override;
    bool PickFont(HWND owner, LOGFONT& font) override;
    /// A window of Qt, modal for the application.
    bool RunDialog(dialogs::Dialog& dialog) override;

 protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

 private:
    QMainWindow* Main() const;

    QMainWindow* m_main;
    HCURSOR m_cursor = nullptr;
    bool m_taking = false;
    std::deque<QueueMessage> m_keys;
};

}  // namespace zm::qt
