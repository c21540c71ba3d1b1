// The window of a settings dialog, laid out by its template.
#pragma once

#include <QDialog>
#include <functional>
#include <vector>

#include "zenromath/dialog_view.h"

class QAbstractItemView;

namespace zm::qt {

/// Shows a dialog until it ends or its window goes away. For Host::RunDialog; it does not ask for a display.
/// \return  true
bool ShowDialog(dialogs::Dialog& dialog);

/// The window. Controls are found by their ids: findChild<QWidget*>(DialogWindow::NameOf(id)).
class DialogWindow : public QDialog {
 public:
    DialogWindow(dialogs::Dialog& dialog, QWidget* owner);

    static QString NameOf(int id);
    /// Device-independent pixels of a dialog unit, the same both ways.
    double unit() const { return m_unit; }
    /// Opens the dialog's fields and shows them in the controls.
    void Begin();
    /// What Esc and the close box do.
    void reject() override;

 protected:
    void paintEvent(QPaintEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void keyReleaseEvent(QKeyEvent* event) override;
    void changeEvent(QEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

 private:
    struct Shown {
        const dialogs::Control* control;
        QWidget* widget;
        QString text;  // of an edit, as it was shown last
    };

    void MakeControls();
    QWidget* Make(const dialogs::Control& control);
    QWidget* MakeEdit(const dialogs::Control& control, bool masked);
    QWidget* MakeButton(const dialogs::Control& control);
    QWidget* MakeList(const dialogs::Control& control);
    QWidget* MakeTable(const dialogs::Control& control);
    void WatchSelection(int id, QAbstractItemView* view);
    double NeededUnit() const;
    void Place();
    void ShowKeys(bool shown);

    void Pull();
    void PullRows(const dialogs::Control& control, QAbstractItemView* view);
    void Push();
    void PushEdit(Shown& shown);
    void PushRows(const dialogs::Control& control, QAbstractItemView* view);
    void Fire(const std::function<void(dialogs::Dialog&)>& event);

    dialogs::Dialog& m_dialog;
    std::vector<Shown> m_shown;
    double m_unit = 2.0;
    bool m_pushing = false;
    bool m_rowMoved = false;  // the selection moved since the mouse was pressed
    bool m_keysShown = false;
};

}  // namespace zm::qt
