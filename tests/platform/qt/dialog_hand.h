// A hand on the real controls of a dialog window.
#pragma once

#include <QPointer>
#include <functional>

#include "platform/qt/dialog_window.h"
#include "tests/dialogs/session.h"

namespace zm::test {

class QtHand : public vectors::Hand {
 public:
    explicit QtHand(qt::DialogWindow* window) : m_window(window) {}
    bool IsOpen() const override { return m_window != nullptr && m_window->isVisible(); }
    void Type(int id, const std::string& text) override;
    void Check(int id, bool on) override;
    void Select(int id, int row) override;
    void Click(int id, int row) override;
    void Focus(int id, int row) override;
    void Press(int id) override;
    void Escape() override;
    void Enter() override;

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

    /// The control of an id; throws if there is none of this type.
    template <class Widget>
    Widget* Find(int id) const {
        auto* widget = m_window != nullptr ? m_window->findChild<Widget*>(qt::DialogWindow::NameOf(id)) : nullptr;
        if (widget == nullptr) throw std::runtime_error("no such control: " + std::to_string(id));
        return widget;
    }
    qt::DialogWindow* window() const { return m_window; }

 private:
    QPointer<qt::DialogWindow> m_window;
};

/// Shows the dialog in a window of its own and plays on it; what play throws comes out when the window is gone.
bool OnWindow(dialogs::Dialog& dialog, const std::function<void(vectors::Hand&)>& play);

/// The dialog window that is open now, null if there is none.
qt::DialogWindow* OpenWindow();

}  // namespace zm::test
