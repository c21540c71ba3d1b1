// A hand that works the controls of a dialog's window by messages, from another thread than the window's.
#pragma once

#include <windows.h>

#include <functional>

#include "tests/dialogs/session.h"

namespace zm::test {

class WindowHand : public vectors::Hand {
 public:
    /// dialog is read for the letters of the template alone.
    WindowHand(HWND window, const dialogs::Template& layout) : m_window(window), m_layout(layout) {}

    bool IsOpen() const override { return ::IsWindow(m_window) != 0 && IsWindowVisible(m_window) != 0; }
    void Type(int id, const std::string& text) override;
    void Check(int id, bool on) override;
    void Select(int id, int row) override;
    void Click(int id, int row) override;
    void Focus(int id, int row) override;
    void Press(int id) override;
    void Escape() override;
    void Enter() override { SendMessageW(m_window, WM_COMMAND, IDOK, 0); }

    std::string Title() const override;
    std::string Label(int id) const override;
    std::string Edit(int id) const override;
    bool IsChecked(int id) const override;
    bool IsVisible(int id) const override;
    std::vector<std::string> Rows(int id) const override;
    int Selected(int id) const override;
    int Focused(int id) const override;
    std::vector<std::pair<std::string, int>> Columns(int id) const override;
    std::array<int, 3> Sample() const override;

    HWND window() const { return m_window; }
    HWND Item(int id) const { return GetDlgItem(m_window, id); }

 private:
    const dialogs::Control& ControlOf(int id) const;

    HWND m_window;
    const dialogs::Template& m_layout;
};

/// Waits for a visible window of a thread that fits; null after ten seconds, or as soon as gaveUp says so.
HWND AwaitWindow(DWORD thread, const std::function<bool(HWND)>& fits, const std::function<bool()>& gaveUp = {});

/// Of settings dialogs, message boxes and choosers.
bool IsDialogBox(HWND window);

/// The child of a message box that has the message.
HWND LongestLabel(HWND box);

/// The text of a window in UTF-8.
std::string Utf8TextOf(HWND window);

/// Runs show on this thread, and act on another one as soon as a window of this thread fits. What act throws is thrown
/// here, with the windows closed; so is an error where a window is open ten seconds after act has returned.
void WithWindow(const std::function<bool(HWND)>& fits, const std::function<void(HWND)>& act,
                const std::function<void()>& show);

}  // namespace zm::test
