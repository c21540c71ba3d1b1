#include "tools/view/symbol_window.h"

#include <QCloseEvent>
#include <QFileDialog>
#include <QFileInfo>
#include <QHeaderView>
#include <QLineEdit>
#include <QMenuBar>
#include <QMessageBox>
#include <QPlainTextEdit>
#include <QScreen>
#include <QSplitter>
#include <QStatusBar>
#include <QVBoxLayout>

#include "tools/view/phrases.h"

namespace zm::view {
namespace {

constexpr int kKeyRest = 60;  // milliseconds after a key: a word is drawn once

QStringList ForProcess(const QStringList& options) {
    QStringList given;
    for (const QString& option : options)
        if (option.startsWith("--project=")) given << option;
    return given;
}

int CodeOf(const QStringList& options) {
    for (const QString& option : options)
        if (option.startsWith("--code=")) return option.mid(7).toInt();
    return 0;
}

QString LibraryFilter() {
    return Say("Symbol library") + " (*.dat);;" + Say("All files") + " (*)";
}

}  // namespace

SymbolWindow::SymbolWindow(const ViewJob& job, QWidget* owner)
    : JobWindow(job, owner), m_link(job.program, ForProcess(job.options), this) {
    setObjectName("symbols");
    MakeList();
    MakeWork();
    MakeMenus();
    m_rest.setSingleShot(true);
    m_rest.setInterval(kKeyRest);
    connect(&m_rest, &QTimer::timeout, this, &SymbolWindow::TakeText);
    connect(&m_link, &SymbolLink::Idle, this, [this] {
        AskIcon();
        TakePicture();
    });
    resize(QSize(1180, 780).boundedTo(screen() != nullptr ? screen()->availableSize() : QSize(1180, 780)));
    Open(m_job.inputs.value(0), CodeOf(m_job.options));
}

void SymbolWindow::MakeMenus() {
    const auto add = [this](QMenu* menu, const char* text, const QKeySequence& key, auto act) {
        QAction* action = menu->addAction(Say(text), key);
        action->setObjectName(QString::fromLatin1(text));
        connect(action, &QAction::triggered, this, act);
        return action;
    };
    m_fileMenu = menuBar()->addMenu(Say("&File"));
    add(m_fileMenu, "&Open a library...", QKeySequence::Open, [this] {
        const QString file = QFileDialog::getOpenFileName(this, Say("Symbol library"), m_file, LibraryFilter());
        if (!file.isEmpty() && AskToSave()) Open(file, m_code);
    });
    add(m_fileMenu, "&Save", QKeySequence::Save, [this] { Save(); });
    add(m_fileMenu, "Save &as...", QKeySequence("Ctrl+Shift+S"), [this] { SaveAs(); });
    m_takeBack =
        add(m_fileMenu, "&Take back the changes of this symbol", QKeySequence("Ctrl+R"), [this] { TakeBack(); });
    m_fileMenu->addSeparator();
    add(m_fileMenu, "&Compare with another library...", QKeySequence("Ctrl+D"), [this] {
        const QString file = QFileDialog::getOpenFileName(this, Say("Compare"), m_file, LibraryFilter());
        if (!file.isEmpty()) CompareWith(file);
    });
    m_noCompare = add(m_fileMenu, "Compare &no more", {}, [this] { CompareWith({}); });
    m_fileMenu->addSeparator();
    add(m_fileMenu, "Close the window", QKeySequence("Ctrl+W"), [this] { close(); });
    auto* find = new QAction(this);
    find->setShortcut(QKeySequence::Find);
    connect(find, &QAction::triggered, this, [this] {
        m_search->setFocus();
        m_search->selectAll();
    });
    addAction(find);
    ShowState();
}

void SymbolWindow::MakeList() {
    m_search = new QLineEdit;
    m_search->setObjectName("symbolSearch");
    m_search->setPlaceholderText(Say("Code, note or kind"));
    m_search->setClearButtonEnabled(true);
    connect(m_search, &QLineEdit::textChanged, this, [this] { Filter(); });
    connect(m_search, &QLineEdit::returnPressed, this, [this] {
        for (int i = 0; i < m_list->topLevelItemCount(); ++i)
            if (!m_list->topLevelItem(i)->isHidden()) return m_list->setCurrentItem(m_list->topLevelItem(i));
    });
    m_list = new QTreeWidget;
    m_list->setObjectName("codes");
    m_list->setHeaderLabels({Say("Code"), Say("Kind"), Say("Note"), QString()});
    m_list->setRootIsDecorated(false);
    m_list->setUniformRowHeights(true);
    m_list->setIconSize(QSize(44, 28));
    m_list->header()->setStretchLastSection(false);
    m_list->header()->setSectionResizeMode(2, QHeaderView::Stretch);
    for (const int column : {0, 1, 3}) m_list->header()->setSectionResizeMode(column, QHeaderView::ResizeToContents);
    connect(m_list, &QTreeWidget::currentItemChanged, this, [this](QTreeWidgetItem* item) {
        if (item != nullptr && !m_setting) ShowCode(item->text(0).toInt());
    });
}

void SymbolWindow::MakeWork() {
    const std::pair<const char*, QString> kSamples[] = {
        {"alone", Say("Symbol")}, {"line", Say("On a line")}, {"area", Say("In an area")}};
    for (const auto& [sample, caption] : kSamples) m_panes.push_back(new SymbolPane(sample, caption));
    m_otherPane = new SymbolPane("alone", {});
    m_otherPane->setObjectName("other");
    m_otherPane->hide();
    for (SymbolPane* pane : m_panes)
        connect(pane, &SymbolPane::Moved, this, [this, pane] { AskPicture(pane, m_file, Edits(false)); });
    connect(m_otherPane, &SymbolPane::Moved, this, [this] { AskPicture(m_otherPane, m_other, {}); });
    m_text = new SymbolText;
    connect(m_text, &QPlainTextEdit::textChanged, this, [this] {
        if (!m_setting) m_rest.start();
    });
    m_remarks = new QListWidget;
    m_remarks->setObjectName("remarks");
    m_remarks->setWordWrap(true);
    connect(m_remarks, &QListWidget::itemClicked, this,
            [this](QListWidgetItem* item) { m_text->GoToLine(item->data(Qt::UserRole).toInt()); });
    m_difference = new QPlainTextEdit;
    m_difference->setObjectName("difference");
    m_difference->setReadOnly(true);
    m_difference->setFont(m_text->font());
    m_difference->hide();

    const auto split = [](Qt::Orientation way, const QList<QWidget*>& parts, const QList<int>& sizes) {
        auto* splitter = new QSplitter(way);
        for (QWidget* part : parts) splitter->addWidget(part);
        splitter->setChildrenCollapsible(false);
        splitter->setSizes(sizes);
        return splitter;
    };
    auto* codes = new QWidget;
    auto* column = new QVBoxLayout(codes);
    column->setContentsMargins(4, 4, 0, 0);
    column->addWidget(m_search);
    column->addWidget(m_list);
    auto* wide = split(Qt::Vertical, {m_panes[1], m_panes[2]}, {170, 260});
    auto* pictures = split(Qt::Horizontal, {m_panes[0], m_otherPane, wide}, {320, 320, 480});
    auto* words = split(Qt::Vertical, {m_remarks, m_difference}, {150, 120});
    auto* texts = split(Qt::Horizontal, {m_text, words}, {420, 380});
    setCentralWidget(split(Qt::Horizontal, {codes, split(Qt::Vertical, {pictures, texts}, {430, 250})}, {330, 850}));
    m_about = new QLabel(this);
    m_about->setObjectName("about");
    m_doing = new QLabel(this);
    m_doing->setObjectName("symbolDoing");
    statusBar()->addWidget(m_about, 1);
    statusBar()->addPermanentWidget(m_doing);
}

void SymbolWindow::ServeMap() {
    m_fileMenu->addSeparator();
    m_forMap = m_fileMenu->addAction(Say("The map draws with what is saved here"));
    m_forMap->setCheckable(true);
    m_forMap->setChecked(true);
}

void SymbolWindow::ShowTitle() {
    const QString changed = m_edits.isEmpty() ? QString() : QString(" *");
    setWindowTitle(QFileInfo(m_file).fileName() + changed + " - " + Say("Symbols"));
}

// A number is a code, or the beginning of one; words are parts of the note, or the kind.
void SymbolWindow::Filter() {
    const QStringList words = m_search->text().split(' ', Qt::SkipEmptyParts);
    for (QTreeWidgetItem* item : m_items) {
        bool fits = m_other.isEmpty() || !item->text(3).isEmpty();
        for (const QString& word : words)
            fits = fits && (item->text(0).startsWith(word) || item->text(1).compare(word, Qt::CaseInsensitive) == 0 ||
                            item->text(2).contains(word, Qt::CaseInsensitive));
        item->setHidden(!fits);
    }
}

// What of the list and the menu follows from the edits.
void SymbolWindow::ShowState() {
    m_takeBack->setEnabled(m_edits.contains(m_code));
    m_noCompare->setEnabled(!m_other.isEmpty());
    for (auto i = m_items.cbegin(); i != m_items.cend(); ++i) {
        QFont font = i.value()->font(0);
        if (font.bold() == m_edits.contains(i.key())) continue;
        font.setBold(!font.bold());
        for (const int column : {0, 1, 2}) i.value()->setFont(column, font);
    }
    ShowTitle();
}

void SymbolWindow::closeEvent(QCloseEvent* event) {
    if (!AskToSave()) return event->ignore();
    event->accept();
    emit Ended();
}

}  // namespace zm::view
