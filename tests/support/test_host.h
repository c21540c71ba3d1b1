// A host that records what was shown and answers from a script.
#pragma once

#include <deque>
#include <map>
#include <string>
#include <vector>

#include "zenromath/host.h"

namespace zm::test {

/// What EndProcess throws, so that a test sees the status without dying.
struct ProcessEnded {
    int status;
};

struct ShownBox {
    std::string text;
    std::string title;
    unsigned int type;
};

class TestHost : public Host {
 public:
    TestHost() : m_previous(SetHost(this)) {}
    ~TestHost() override { SetHost(m_previous); }
    TestHost(const TestHost&) = delete;
    TestHost& operator=(const TestHost&) = delete;

    int ShowBox(const char* text, const char* title, unsigned int type) override {
        boxes.push_back({text, title, type});
        if (answers.empty()) return (type & 0xF) == MB_YESNO ? IDNO : IDOK;
        const int answer = answers.front();
        answers.pop_front();
        return answer;
    }
    void Beep() override { ++beeps; }
    HWND MainWindow() override { return mainWindow; }
    bool IsWindow(HWND window) override { return texts.count(window) != 0; }
    int GetText(HWND window, char* buffer, int size) override;
    void SetText(HWND window, const char* text) override {
        texts[window] = text;
        history.push_back(text);
    }
    bool SetStatusPane(int pane, const char* text) override {
        if (!hasStatusBar) return false;
        panes[pane] = text;
        return true;
    }
    bool GetFrameTitle(HWND window, char* buffer, int size) override;
    bool SetFrameTitle(HWND window, const char* text) override {
        if (window != frame) return false;
        frameTitle = text;
        history.push_back(text);
        return true;
    }
    Int64 Send(HWND, unsigned int msg, UInt64, Int64) override {
        sent.push_back(msg);
        return sendResult;
    }
    HCURSOR PutCursor(HCURSOR cursor) override {
        HCURSOR previous = currentCursor;
        currentCursor = cursor;
        return previous;
    }
    HCURSOR StandardCursor(Cursor cursor) override {
        static char arrow;
        static char wait;
        return reinterpret_cast<HCURSOR>(cursor == Cursor::wait ? &wait : &arrow);
    }
    bool TakeMessage(QueueMessage& message, HWND window, unsigned int first, unsigned int last) override;
    void Dispatch(const QueueMessage& message) override { dispatched.push_back(message.message); }
    double Now() override { return now; }
    [[noreturn]] void EndProcess(int status) override { throw ProcessEnded{status}; }

    /// Makes a window with this text; the handle lives as long as the host.
    HWND MakeWindow(const std::string& text);

    std::vector<ShownBox> boxes;
    std::deque<int> answers;  // answers of the next boxes; without one a question is answered No
    int beeps = 0;
    HWND mainWindow = nullptr;
    std::map<HWND, std::string> texts;
    std::vector<std::string> history;  // every text that a window or frame was given
    bool hasStatusBar = false;
    std::map<int, std::string> panes;
    HWND frame = nullptr;
    std::string frameTitle;
    std::vector<unsigned int> sent;
    Int64 sendResult = 0;
    HCURSOR currentCursor = nullptr;
    std::deque<QueueMessage> queue;
    std::vector<unsigned int> dispatched;
    double now = 0.0;

 private:
    Host* m_previous;
    std::deque<char> m_windows;
};

}  // namespace zm::test
