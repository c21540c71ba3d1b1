// The host of a program without windows: messages on stderr, questions on the terminal, progress in one line of it.
#pragma once

#include <string>

#include "platform/posix/progress_terminal.h"
#include "zenromath/host.h"

namespace zm::platform {

class ConsoleHost : public Host {
 public:
    /// Writes "title: text" to stderr in the terminal's encoding. A question is answered from the terminal if both
    /// stdin and stderr are one, else with No.
    int ShowBox(const char* text, const char* title, unsigned int type) override;
    /// Rings the bell if stderr is a terminal.
    void Beep() override;

    /// The progress line, where stderr is a terminal.
    HWND MainWindow() override;
    bool IsWindow(HWND window) override;
    void SetText(HWND window, const char* text) override;

    /// While the wait cursor is in force Esc and Ctrl-C are taken as keys.
    HCURSOR PutCursor(HCURSOR cursor) override;
    HCURSOR StandardCursor(Cursor cursor) override;
    /// Releases of keys, where the caller asks for them alone.
    bool TakeMessage(QueueMessage& message, HWND window, unsigned int first, unsigned int last) override;

 private:
    ProgressTerminal m_terminal;
    HCURSOR m_cursor = nullptr;
};

/// GBK text in the encoding that the environment names for a terminal: GBK stays, all else is UTF-8.
std::string TerminalText(const char* gbk);

}  // namespace zm::platform
