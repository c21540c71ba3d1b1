// The host of the program: messages of the library on stderr, progress on a terminal, Ctrl-C as the Esc key, and no
// way for the library to end the process behind the program's back.
#pragma once

#include <string>

#include "tools/kit/report.h"
#include "zenromath/host.h"

namespace zm::tool {

/// What EndProcess throws; the program turns it into a status that is never success.
struct LibraryStop {
    int status;
};

class ToolHost : public Host {
 public:
    explicit ToolHost(Report& report);
    ~ToolHost() override;
    ToolHost(const ToolHost&) = delete;
    ToolHost& operator=(const ToolHost&) = delete;

    /// A warning with the text, in UTF-8; IDNO to a question, else IDOK. Throws std::bad_alloc where the text says that
    /// memory ran out: the library goes on without what it was drawing.
    int ShowBox(const char* text, const char* title, unsigned int type) override;
    void Beep() override {}
    HWND MainWindow() override;
    bool IsWindow(HWND window) override;
    void SetText(HWND window, const char* text) override;
    bool TakeMessage(QueueMessage& message, HWND window, unsigned int first, unsigned int last) override;
    [[noreturn]] void EndProcess(int status) override;

    /// The last message that the library showed, in UTF-8; empty if none.
    const std::string& lastMessage() const { return m_lastMessage; }
    /// Messages shown by the library so far.
    long messages() const { return m_messages; }

 private:
    Report& m_report;
    Host* m_previous;
    std::string m_lastMessage;
    long m_messages = 0;
    double m_start;
};

/// From now on Ctrl-C and a polite kill set a flag; a second one removes unfinished outputs and ends at once.
void CatchStopSignals();
/// True once Ctrl-C was pressed.
bool StopRequested();
/// From now on work stops too where this says so; null: no more. Asked once for each item of work.
void SetStopQuestion(bool (*question)());
/// What the question says; false without one.
bool StopAsked();
/// Throws Stopped if Ctrl-C was pressed or the question says so. Called once for each item of work.
inline void CheckStop() {
    if (StopRequested() || StopAsked()) throw Stopped{};
}

/// Takes a progress line off the terminal, so that a report does not stand after it.
void ClearProgressLine();

}  // namespace zm::tool
