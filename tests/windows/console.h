// A console of the test's own, and zenro.exe started on it.
#pragma once

#include <windows.h>

#include <string>
#include <vector>

namespace zm::test {

/// A screen that a program writes on; it is not shown.
class ConsoleScreen {
 public:
    ConsoleScreen();
    ~ConsoleScreen();
    ConsoleScreen(const ConsoleScreen&) = delete;
    ConsoleScreen& operator=(const ConsoleScreen&) = delete;
    HANDLE handle() const { return m_handle; }
    /// What stands on it, in UTF-8, without blanks at the ends of lines.
    std::string Text() const;

 private:
    HANDLE m_handle;
};

/// zenro.exe with standard output and standard error on a screen or, where there is none, in the file "said.txt".
class Zenro {
 public:
    Zenro(const std::wstring& arguments, const ConsoleScreen* screen);
    ~Zenro();
    Zenro(const Zenro&) = delete;
    Zenro& operator=(const Zenro&) = delete;
    bool started() const { return m_process.hProcess != nullptr; }
    bool running() const { return WaitForSingleObject(m_process.hProcess, 0) == WAIT_TIMEOUT; }
    DWORD id() const { return m_process.dwProcessId; }
    /// The exit status, after two minutes at most; -1 if it did not end.
    int Status() const;

 private:
    PROCESS_INFORMATION m_process = {};
};

}  // namespace zm::test
