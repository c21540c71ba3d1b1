#include "platform/qt/dialog_window.h"

#include <QApplication>
#include <QCheckBox>
#include <QFrame>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPainter>
#include <QPointer>
#include <QPushButton>
#include <QTreeWidget>
#include <QValidator>
#include <algorithm>
#include <cmath>
#include <utility>

#include "platform/qt/dialog_views.h"
#include "platform/qt/grid_text.h"
#include "platform/qt/qt_text.h"
#include "runtime/text/gbk.h"
#include "zenromath/qt.h"
#include "zenromath/qt_host.h"

namespace zm::qt {
namespace {

using dialogs::Control;
using dialogs::Field;
using dialogs::Kind;
using dialogs::Rows;

constexpr int kEnter = 1;
constexpr int kEscape = 2;
constexpr double kCell = 4.0;          // dialog units of one cell of a fixed-width list
constexpr double kPixelsOfUnit = 1.5;  // of the screen for which the columns' widths are meant
constexpr double kButtonMargin = 6.0;  // device-independent pixels on each side of a caption
constexpr double kTextMargin = 2.0;    // dialog units between the edge of a list and its text

bool IsButton(const Control& control) {
    return control.kind == Kind::button || control.kind == Kind::defaultButton;
}

// The caption as it is written; with its key after it while the user holds Alt.
QString Caption(const Control& control, bool withKey) {
    const QString text = FromGbk(control.text).replace(u'&', QStringLiteral("&&"));
    return withKey && control.key != 0 ? text + QStringLiteral("(&%1)").arg(QLatin1Char(control.key)) : text;
}

// Takes what the code page can hold: any other character would be lost in the file.
class GbkOnly : public QValidator {
 public:
    using QValidator::QValidator;
    State validate(QString& text, int&) const override {
        int lost = 0;
        gbk::FromUtf8(text.toStdString(), &lost);
        return lost == 0 ? Acceptable : Invalid;
    }
};

QString CellText(const QString& row, int column) {
    return row.section(u'\t', column, column);
}

void ShowRow(QAbstractItemView* view, int row, const QString& text) {
    if (auto* list = qobject_cast<QListWidget*>(view)) {
        list->item(row)->setText(text);
        return;
    }
    auto* table = static_cast<QTreeWidget*>(view);
    QTreeWidgetItem* item = table->topLevelItem(row);
    for (int column = 0; column < table->columnCount(); ++column) item->setText(column, CellText(text, column));
}

void PutRow(QAbstractItemView* view, int row) {
    if (auto* list = qobject_cast<QListWidget*>(view))
        list->insertItem(row, QString());
    else
        static_cast<QTreeWidget*>(view)->insertTopLevelItem(row, new QTreeWidgetItem);
}

void TakeRow(QAbstractItemView* view, int row) {
    if (auto* list = qobject_cast<QListWidget*>(view))
        delete list->takeItem(row);
    else
        delete static_cast<QTreeWidget*>(view)->takeTopLevelItem(row);
}

}  // namespace

bool ShowDialog(dialogs::Dialog& dialog) {
    EnsureApplication();
    QWidget* owner = WidgetOf(dialog.owner);
    if (!QApplication::allWidgets().contains(owner)) owner = nullptr;
    // The owner may go away while the dialog is open, and takes the window along.
    const QPointer<DialogWindow> window = new DialogWindow(dialog, owner);
    window->Begin();
    window->exec();
    delete window.data();
    return true;
}

QString DialogWindow::NameOf(int id) {
    return QStringLiteral("control%1").arg(id);
}

DialogWindow::DialogWindow(dialogs::Dialog& dialog, QWidget* owner) : QDialog(owner), m_dialog(dialog) {
    setWindowTitle(FromGbk(dialog.Title()));
    setWindowModality(Qt::ApplicationModal);
    MakeControls();
    m_unit = NeededUnit();
    Place();
}

void DialogWindow::MakeControls() {
    QString label;
    QWidget* previous = nullptr;
    for (const Control& control : m_dialog.layout().controls) {
        QWidget* widget = Make(control);
        widget->setObjectName(NameOf(control.id));
        m_shown.push_back({&control, widget, QString()});
        if (control.kind == Kind::label) label = FromGbk(control.text);
        if (control.kind == Kind::edit) widget->setAccessibleName(label);
        if (widget->focusPolicy() == Qt::NoFocus) continue;
        if (previous != nullptr) setTabOrder(previous, widget);
        previous = widget;
    }
}

QWidget* DialogWindow::Make(const Control& control) {
    switch (control.kind) {
        case Kind::edit:
            return MakeEdit(control, false);
        case Kind::masked:
            return MakeEdit(control, true);
        case Kind::check:
        case Kind::button:
        case Kind::defaultButton:
            return MakeButton(control);
        case Kind::list:
            return MakeList(control);
        case Kind::table:
            return MakeTable(control);
        case Kind::frame: {
            auto* frame = new QFrame(this);
            frame->setFrameStyle(static_cast<int>(QFrame::Box) | static_cast<int>(QFrame::Sunken));
            return frame;
        }
        case Kind::label:
            break;
    }
    QLabel* label = control.fixedPitch ? new GridLabel(this) : new QLabel(this);
    label->setText(FromGbk(control.text));
    return label;
}

QWidget* DialogWindow::MakeEdit(const Control& control, bool masked) {
    auto* edit = new QLineEdit(this);
    if (masked) edit->setEchoMode(QLineEdit::Password);
    edit->setValidator(new GbkOnly(edit));
    if (const int limit = control.limit; limit > 0) {
        edit->setMaxLength(limit);
        // A longer text that the dialog put in may be shortened, and then has the usual limit.
        connect(edit, &QLineEdit::textEdited, edit, [edit, limit](const QString& text) {
            edit->setMaxLength(std::max(limit, static_cast<int>(text.size())));
        });
    }
    return edit;
}

QWidget* DialogWindow::MakeButton(const Control& control) {
    QAbstractButton* button = nullptr;
    if (control.kind == Kind::check)
        button = new QCheckBox(this);
    else
        button = new QPushButton(this);
    if (auto* push = qobject_cast<QPushButton*>(button)) push->setDefault(control.kind == Kind::defaultButton);
    button->setText(Caption(control, false));
    if (control.key != 0) {
        button->setShortcut(QKeySequence(QStringLiteral("Alt+%1").arg(QLatin1Char(control.key))));
        button->setToolTip(QStringLiteral("Alt+%1").arg(QLatin1Char(control.key)));
    }
    if (IsButton(control))
        connect(button, &QAbstractButton::clicked, this,
                [this, id = control.id] { Fire([id](dialogs::Dialog& dialog) { dialog.Pressed(id); }); });
    return button;
}

QWidget* DialogWindow::MakeList(const Control& control) {
    auto* list = new CalmView<QListWidget>(this);
    list->setUniformItemSizes(false);
    if (control.fixedPitch) {
        std::vector<int> tabs;
        for (const int tab : control.tabs) tabs.push_back(static_cast<int>(std::ceil(tab / kCell)));
        list->setItemDelegate(new GridDelegate(list, tabs));
    }
    WatchSelection(control.id, list);
    return list;
}

QWidget* DialogWindow::MakeTable(const Control& control) {
    auto* table = new CalmView<QTreeWidget>(this);
    table->setRootIsDecorated(false);
    table->setUniformRowHeights(true);
    table->setItemsExpandable(false);
    table->setAllColumnsShowFocus(true);
    if (control.severalRows) table->setSelectionMode(QAbstractItemView::ExtendedSelection);
    QStringList titles;
    for (const dialogs::Column& column : control.columns) titles.append(FromGbk(column.title));
    table->setHeaderLabels(titles);
    table->header()->setStretchLastSection(false);
    table->header()->setSectionsMovable(false);
    table->header()->setMinimumSectionSize(1);
    WatchSelection(control.id, table);
    return table;
}

// The selection counts, not the current item, which comes earlier; and a click on the selected row is one more choice.
void DialogWindow::WatchSelection(int id, QAbstractItemView* view) {
    connect(view->selectionModel(), &QItemSelectionModel::selectionChanged, this, [this, id] {
        m_rowMoved = true;
        if (!m_pushing) Fire([id](dialogs::Dialog& dialog) { dialog.RowChanged(id); });
    });
    view->viewport()->installEventFilter(this);
    connect(view, &QAbstractItemView::clicked, this, [this, id] {
        const bool again = !std::exchange(m_rowMoved, false);
        Fire([id, again](dialogs::Dialog& dialog) {
            if (again) dialog.RowChanged(id);
            if (!dialog.result) dialog.RowClicked(id);
        });
    });
}

bool DialogWindow::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::MouseButtonPress) m_rowMoved = false;
    return QDialog::eventFilter(watched, event);
}

// ---- Layout ----

// The smallest unit, in whole quarters of a pixel, at which every caption and every line of text has room.
double DialogWindow::NeededUnit() const {
    const QFontMetricsF metrics(font());
    double unit = metrics.height() / 9.5;
    for (const Shown& shown : m_shown) {
        const dialogs::Box& box = shown.control->box;
        const double text = metrics.horizontalAdvance(Caption(*shown.control, true).remove(u'&'));
        if (IsButton(*shown.control)) {
            unit = std::max(unit, (text + 2.0 * kButtonMargin) / box.width);
            unit = std::max(unit, (metrics.height() + 8.0) / box.height);
        }
        if (shown.control->kind == Kind::check) unit = std::max(unit, (text + 24.0) / box.width);
        if (shown.control->kind == Kind::label && !shown.control->fixedPitch)
            unit = std::max(unit, metrics.horizontalAdvance(FromGbk(shown.control->text)) / box.width);
        if (shown.control->kind == Kind::edit) unit = std::max(unit, (metrics.height() + 7.0) / box.height);
    }
    return std::ceil(unit * 4.0) / 4.0;
}

void DialogWindow::Place() {
    const auto pixels = [this](double units) { return static_cast<int>(std::lround(units * m_unit)); };
    setFixedSize(pixels(m_dialog.layout().width), pixels(m_dialog.layout().height));
    const QFont fixed = FixedPitch(kCell * m_unit);
    for (const Shown& shown : m_shown) {
        if (shown.control->fixedPitch) shown.widget->setFont(fixed);
        const dialogs::Box& box = shown.control->box;
        QRect place(pixels(box.x), pixels(box.y), pixels(box.x + box.width) - pixels(box.x),
                    pixels(box.y + box.height) - pixels(box.y));
        if (shown.control->kind == Kind::label) {
            const int missing = std::max(0, QFontMetrics(shown.widget->font()).height() - place.height());
            place.adjust(0, -missing / 2, 0, missing - missing / 2);
        }
        shown.widget->setGeometry(place);
        if (auto* label = dynamic_cast<GridLabel*>(shown.widget)) label->SetCell(kCell * m_unit);
        if (auto* list = qobject_cast<QListWidget*>(shown.widget))
            if (auto* grid = dynamic_cast<GridDelegate*>(list->itemDelegate()))
                grid->SetMeasures(kCell * m_unit, kTextMargin * m_unit - list->frameWidth());
        if (auto* table = qobject_cast<QTreeWidget*>(shown.widget))
            for (int i = 0; i < table->columnCount(); ++i)
                table->setColumnWidth(
                    i, pixels(shown.control->columns[static_cast<std::size_t>(i)].width / kPixelsOfUnit));
    }
}

// While Alt is held the captions have their keys beside them.
void DialogWindow::ShowKeys(bool shown) {
    if (m_keysShown == shown) return;
    m_keysShown = shown;
    for (const Shown& s : m_shown) {
        auto* button = qobject_cast<QAbstractButton*>(s.widget);
        if (button == nullptr || s.control->key == 0) continue;
        button->setText(Caption(*s.control, shown));
        button->setShortcut(QKeySequence(QStringLiteral("Alt+%1").arg(QLatin1Char(s.control->key))));
    }
}

void DialogWindow::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Alt) ShowKeys(true);
    QDialog::keyPressEvent(event);
}

void DialogWindow::keyReleaseEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Alt) ShowKeys(false);
    QDialog::keyReleaseEvent(event);
}

void DialogWindow::changeEvent(QEvent* event) {
    if (event->type() == QEvent::ActivationChange && !isActiveWindow()) ShowKeys(false);
    QDialog::changeEvent(event);
}

void DialogWindow::paintEvent(QPaintEvent* event) {
    QDialog::paintEvent(event);
    const dialogs::Sample* sample = m_dialog.Painted();
    if (sample == nullptr) return;
    const double unit = static_cast<double>(height()) / sample->unitsOfHeight;
    const auto colour = static_cast<unsigned int>(sample->colour);
    const auto part = [colour](int shift) { return static_cast<int>(colour >> shift & 0xFF); };
    QPainter painter(this);
    painter.setPen(palette().color(QPalette::WindowText));
    painter.setBrush(QColor(part(0), part(8), part(16)));
    painter.drawRect(
        QRectF(sample->box.x * unit, sample->box.y * unit, sample->box.width * unit, sample->box.height * unit));
}

// ---- Events ----

void DialogWindow::Begin() {
    m_dialog.Open();
    const bool wantsOne = m_dialog.focus != dialogs::Dialog::kNoControl;
    Push();
    const auto takesKeys = [](const Shown& shown) { return shown.widget->focusPolicy() != Qt::NoFocus; };
    const auto first = std::find_if(m_shown.begin(), m_shown.end(), takesKeys);
    if (!wantsOne && first != m_shown.end()) first->widget->setFocus();
}

void DialogWindow::reject() {
    Fire([](dialogs::Dialog& dialog) { dialog.Pressed(kEscape); });
}

// The dialog may show boxes meanwhile, and the window may go away while it does.
void DialogWindow::Fire(const std::function<void(dialogs::Dialog&)>& event) {
    if (m_dialog.result) return;
    const QPointer<DialogWindow> alive(this);
    Pull();
    event(m_dialog);
    if (alive == nullptr) return;
    if (m_dialog.result) return done(*m_dialog.result == kEnter ? QDialog::Accepted : QDialog::Rejected);
    Push();
}

void DialogWindow::Pull() {
    for (const Shown& shown : m_shown) {
        if (auto* edit = qobject_cast<QLineEdit*>(shown.widget); edit != nullptr && edit->text() != shown.text)
            m_dialog.field(shown.control->id).text = gbk::FromUtf8(edit->text().toStdString());
        if (auto* check = qobject_cast<QCheckBox*>(shown.widget))
            m_dialog.field(shown.control->id).checked = check->isChecked();
        if (auto* view = qobject_cast<QAbstractItemView*>(shown.widget)) PullRows(*shown.control, view);
    }
}

void DialogWindow::PullRows(const Control& control, QAbstractItemView* view) {
    Rows& rows = m_dialog.field(control.id).rows;
    const QModelIndexList chosen = view->selectionModel()->selectedRows();
    const auto isChosen = [&](int row) {
        return std::any_of(chosen.begin(), chosen.end(),
                           [row](const QModelIndex& index) { return index.row() == row; });
    };
    if (chosen.isEmpty())
        rows.selected = Rows::kNone;
    else if (!isChosen(rows.selected))
        rows.selected = chosen.first().row();
    rows.focused = view->currentIndex().isValid() ? view->currentIndex().row() : Rows::kNone;
}

void DialogWindow::Push() {
    m_pushing = true;
    for (Shown& shown : m_shown) {
        if (shown.control->id == dialogs::Dialog::kNoControl) continue;
        Field& field = m_dialog.field(shown.control->id);
        if (qobject_cast<QLineEdit*>(shown.widget) != nullptr) PushEdit(shown);
        if (auto* check = qobject_cast<QCheckBox*>(shown.widget)) check->setChecked(field.checked);
        if (auto* view = qobject_cast<QAbstractItemView*>(shown.widget)) PushRows(*shown.control, view);
        shown.widget->setVisible(field.visible);
    }
    const int focus = std::exchange(m_dialog.focus, dialogs::Dialog::kNoControl);
    // Labels are controls without a number, and none of them takes the keyboard.
    auto* wanted = focus != dialogs::Dialog::kNoControl ? findChild<QWidget*>(NameOf(focus)) : nullptr;
    if (wanted != nullptr) {
        wanted->setFocus();
        if (auto* edit = qobject_cast<QLineEdit*>(wanted)) edit->selectAll();
    }
    m_pushing = false;
    update();
}

void DialogWindow::PushEdit(Shown& shown) {
    auto* edit = static_cast<QLineEdit*>(shown.widget);
    const QString text = FromGbk(m_dialog.field(shown.control->id).text);
    if (edit->text() != text) {
        if (shown.control->limit > 0) edit->setMaxLength(std::max(shown.control->limit, static_cast<int>(text.size())));
        edit->setText(text);
    }
    shown.text = edit->text();
}

// Rows before and after those that changed stay as they are, so that selection and scrolling do.
void DialogWindow::PushRows(const Control& control, QAbstractItemView* view) {
    Rows& rows = m_dialog.field(control.id).rows;
    const int old = view->model()->rowCount();
    const int added = rows.count() - old;
    int place = added > 0 ? rows.count() - added : rows.count();
    if (added != 0) {
        place = 0;  // the first row that differs
        const int common = std::min(old, rows.count());
        while (place < common && RowText(view, place) == FromGbk(rows.at(place))) ++place;
    }
    for (int i = 0; i < added; ++i) PutRow(view, place);
    for (int i = 0; i < -added; ++i) TakeRow(view, place);
    for (int row = 0; row < rows.count(); ++row) {
        const QString text = FromGbk(rows.at(row));
        if (RowText(view, row) != text) ShowRow(view, row, text);
    }
    const auto indexOf = [view](int row) { return row != Rows::kNone ? view->model()->index(row, 0) : QModelIndex(); };
    QItemSelectionModel* selection = view->selectionModel();
    const bool isTable = control.kind == Kind::table;
    if (rows.selected == Rows::kNone)
        selection->clearSelection();
    else if (!selection->isRowSelected(rows.selected))
        selection->select(indexOf(rows.selected), QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
    const int current = isTable ? rows.focused : rows.selected;
    if (view->currentIndex().row() != current)
        selection->setCurrentIndex(indexOf(current), QItemSelectionModel::NoUpdate);
    const int reveal = std::exchange(rows.reveal, Rows::kNone);
    if (reveal != Rows::kNone) view->scrollTo(indexOf(reveal));
}

}  // namespace zm::qt
