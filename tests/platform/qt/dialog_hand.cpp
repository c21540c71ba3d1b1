#include "tests/platform/qt/dialog_hand.h"

#include <QApplication>
#include <QCheckBox>
#include <QHeaderView>
#include <QInputMethodEvent>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QTest>
#include <QTimer>
#include <QTreeWidget>
#include <exception>

#include "platform/qt/dialog_views.h"
#include "platform/qt/qt_text.h"
#include "runtime/text/gbk.h"

namespace zm::test {
namespace {

std::string GbkOf(const QString& text) {
    return gbk::FromUtf8(text.toStdString());
}

void ClickRow(QAbstractItemView* view, int row) {
    QPoint place(view->viewport()->width() / 3, view->viewport()->height() - 3);
    if (row >= 0) {
        const QModelIndex index = view->model()->index(row, 0);
        view->scrollTo(index);
        place = view->visualRect(index).center();
        place.setX(10);
    }
    QTest::mouseClick(view->viewport(), Qt::LeftButton, Qt::NoModifier, place);
}

}  // namespace

void QtHand::Type(int id, const std::string& text) {
    auto* edit = Find<QLineEdit>(id);
    edit->setFocus();
    edit->selectAll();
    QTest::keyClick(edit, Qt::Key_Delete);
    for (const QChar c : qt::FromGbk(text)) {
        if (c.unicode() < 0x80) {
            QTest::keyClick(edit, c.toLatin1());
            continue;
        }
        QInputMethodEvent event;
        event.setCommitString(QString(c));
        QApplication::sendEvent(edit, &event);
    }
}

void QtHand::Check(int id, bool on) {
    auto* check = Find<QCheckBox>(id);
    if (check->isChecked() != on) QTest::keyClick(check, Qt::Key_Space);
}

void QtHand::Select(int id, int row) {
    auto* view = Find<QAbstractItemView>(id);
    if (qobject_cast<QListWidget*>(view) != nullptr) return ClickRow(view, row);
    QTest::keyClick(view, Qt::Key_Home);
    for (int i = 0; i < row; ++i) QTest::keyClick(view, Qt::Key_Down);
}

void QtHand::Click(int id, int row) {
    ClickRow(Find<QAbstractItemView>(id), row);
}

void QtHand::Focus(int id, int row) {
    auto* view = Find<QAbstractItemView>(id);
    for (int i = 0; i < 2000 && view->currentIndex().row() != row; ++i)
        QTest::keyClick(view, view->currentIndex().row() < row ? Qt::Key_Down : Qt::Key_Up, Qt::ControlModifier);
}

void QtHand::Press(int id) {
    if (auto* button = m_window->findChild<QAbstractButton*>(qt::DialogWindow::NameOf(id)))
        QTest::mouseClick(button, Qt::LeftButton);
    else
        Escape();
}

void QtHand::Escape() {
    QTest::keyClick(m_window.data(), Qt::Key_Escape);
}

void QtHand::Enter() {
    QTest::keyClick(m_window->findChild<QLineEdit*>(), Qt::Key_Return);
}

std::string QtHand::Title() const {
    return GbkOf(m_window->windowTitle());
}
std::string QtHand::Label(int id) const {
    return GbkOf(Find<QAbstractButton>(id)->text());
}
std::string QtHand::Edit(int id) const {
    return GbkOf(Find<QLineEdit>(id)->text());
}
bool QtHand::IsChecked(int id) const {
    return Find<QCheckBox>(id)->isChecked();
}
bool QtHand::IsVisible(int id) const {
    return Find<QWidget>(id)->isVisible();
}

std::vector<std::string> QtHand::Rows(int id) const {
    const auto* view = Find<QAbstractItemView>(id);
    std::vector<std::string> rows;
    for (int row = 0; row < view->model()->rowCount(); ++row) rows.push_back(GbkOf(qt::RowText(view, row)));
    return rows;
}

int QtHand::Selected(int id) const {
    const QModelIndexList rows = Find<QAbstractItemView>(id)->selectionModel()->selectedRows();
    return rows.isEmpty() ? -1 : rows.first().row();
}

int QtHand::Focused(int id) const {
    return Find<QAbstractItemView>(id)->currentIndex().row();
}

std::vector<std::pair<std::string, int>> QtHand::Columns(int id) const {
    const auto* table = Find<QTreeWidget>(id);
    std::vector<std::pair<std::string, int>> columns;
    for (int i = 0; i < table->columnCount(); ++i)
        columns.emplace_back(GbkOf(table->headerItem()->text(i)),
                             static_cast<int>(std::lround(table->columnWidth(i) / m_window->unit() * 1.5)));
    return columns;
}

// What is painted: the middle of the sample.
std::array<int, 3> QtHand::Sample() const {
    const double unit = m_window->height() / 116.0;
    const QImage image = m_window->grab().toImage();
    const double ratio = image.devicePixelRatio();
    const QColor colour = image.pixelColor(static_cast<int>(142 * unit * ratio), static_cast<int>(40 * unit * ratio));
    return {colour.red(), colour.green(), colour.blue()};
}

qt::DialogWindow* OpenWindow() {
    for (QWidget* widget : QApplication::topLevelWidgets())
        if (auto* window = dynamic_cast<qt::DialogWindow*>(widget); window != nullptr && window->isVisible())
            return window;
    return nullptr;
}

bool OnWindow(dialogs::Dialog& dialog, const std::function<void(vectors::Hand&)>& play) {
    std::exception_ptr failure;
    QTimer::singleShot(0, [&] {
        QtHand hand(OpenWindow());
        try {
            play(hand);
        } catch (...) {
            failure = std::current_exception();
        }
        if (hand.IsOpen()) hand.window()->done(0);
    });
    const bool shown = qt::ShowDialog(dialog);
    if (failure) std::rethrow_exception(failure);
    return shown;
}

}  // namespace zm::test
