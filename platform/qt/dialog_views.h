// The lists of a dialog window, and the text of their rows.
#pragma once

#include <QFocusEvent>
#include <QListWidget>
#include <QTreeWidget>

namespace zm::qt {

/// A list that has no current row until the user makes one: the Tab key alone does not, and the End key makes the last
/// row the current one from there too.
template <class View>
class CalmView : public View {
 public:
    using View::View;

 protected:
    QModelIndex moveCursor(QAbstractItemView::CursorAction action, Qt::KeyboardModifiers modifiers) override {
        const int rows = this->model()->rowCount();
        if (action == QAbstractItemView::MoveEnd && !this->currentIndex().isValid() && rows > 0)
            return this->model()->index(rows - 1, 0);
        return View::moveCursor(action, modifiers);
    }
    void focusInEvent(QFocusEvent* event) override {
        const bool had = this->currentIndex().isValid();
        View::focusInEvent(event);
        if (!had && event->reason() != Qt::MouseFocusReason)
            this->selectionModel()->setCurrentIndex(QModelIndex(), QItemSelectionModel::NoUpdate);
    }
};

/// The text of a row, the cells of a table with tabs between them.
inline QString RowText(const QAbstractItemView* view, int row) {
    const QAbstractItemModel& model = *view->model();
    QString text = model.index(row, 0).data().toString();
    for (int column = 1; column < model.columnCount(); ++column)
        text += u'\t' + model.index(row, column).data().toString();
    return text;
}

}  // namespace zm::qt
