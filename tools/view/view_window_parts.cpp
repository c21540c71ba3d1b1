// The parts of the window: menus and keys, docks, the line below.
#include <QActionGroup>
#include <QApplication>
#include <QComboBox>
#include <QDockWidget>
#include <QFileDialog>
#include <QFileInfo>
#include <QLineEdit>
#include <QMenuBar>
#include <QScreen>
#include <QSettings>
#include <QStatusBar>
#include <QToolBar>
#include <QVBoxLayout>

#include "tools/view/phrases.h"
#include "tools/view/view_window.h"

namespace zm::view {
namespace {

constexpr double kUsualScales[] = {200, 500, 1000, 2000, 5000, 10000, 25000, 50000, 100000, 250000, 500000, 1000000};
constexpr int kMostRecent = 8, kMostNamed = 3;

// "1:2 000", "1:2000" and "2000" alike; 0 for what is no scale.
double ScaleOfText(QString text) {
    text = text.section(':', -1).remove(' ').remove(',').remove(QChar(0xA0)).remove(QChar(0x202F));
    bool good = false;
    const double scale = text.toDouble(&good);
    return good && scale >= 1.0 && scale <= 1e9 ? scale : 0.0;
}

}  // namespace

QAction* ViewWindow::Add(QMenu* menu, const char* text, const QList<QKeySequence>& keys,
                         const std::function<void()>& act) {
    QAction* action = menu->addAction(Say(text));
    action->setShortcuts(keys);
    action->setObjectName(QString::fromLatin1(text));
    connect(action, &QAction::triggered, this, act);
    return action;
}

void ViewWindow::MakeParts() {
    setObjectName("zenro view");
    ShowTitle();
    m_map = new MapView(this);
    setCentralWidget(m_map);
    MakeDocks();
    MakeMenus();
    MakeStatus();
    connect(m_map, &MapView::CursorMoved, this, &ViewWindow::ShowCursor);
    connect(m_map, &MapView::Clicked, this, &ViewWindow::Identify);
    connect(m_map, &MapView::Measured, this, &ViewWindow::TakeMeasured);
    connect(m_map, &MapView::ViewChanged, this, &ViewWindow::ShowScale);
    connect(m_layers, &LayerPanel::Changed, this, &ViewWindow::HideLayers);
    m_map->setFocus();
}

void ViewWindow::MakeMenus() {
    QMenu* file = menuBar()->addMenu(Say("&File"));
    Add(file, "&Open data...", {QKeySequence::Open}, [this] {
        const QStringList files = QFileDialog::getOpenFileNames(this, Say("Map data"));
        if (!files.isEmpty()) OpenInputs(files, false);
    });
    Add(file, "Open &rules...", {}, [this] {
        const QString rules = QFileDialog::getOpenFileName(this, Say("Rules"), {},
                                                           Say("Rules") + " (*.rules);;" + Say("All files") + " (*)");
        if (!rules.isEmpty()) OpenInputs({rules}, true);
    });
    QMenu* recent = file->addMenu(Say("Recent files"));
    connect(recent, &QMenu::aboutToShow, this, [this, recent] {
        recent->clear();
        for (const RememberedMap& one : RememberedMaps().mid(0, kMostRecent))
            recent->addAction(one.inputs.join("  ").replace('&', "&&"), this, [this, one] { OpenRemembered(one); });
    });
    file->addSeparator();
    Add(file, "&Export the view...", {QKeySequence("Ctrl+E")}, [this] { Export(false); });
    Add(file, "Export as a &sheet with frame...", {QKeySequence("Ctrl+Shift+E")}, [this] { Export(true); });
    Add(file, "&Print the view...", {QKeySequence("Ctrl+P")}, [this] { Print(false); });
    Add(file, "Print as a sheet with &frame...", {QKeySequence("Ctrl+Shift+P")}, [this] { Print(true); });
    Add(file, "&Margins of the sheet...", {}, [this] { TakeMargins(); });
    file->addSeparator();
    Add(file, "Read again", {QKeySequence("F5")}, [this] {
        m_readAgain = true;
        m_crashes = 0;
        Start();
    });
    Add(file, "&Quit", {QKeySequence::Quit}, [this] { close(); });

    QMenu* view = menuBar()->addMenu(Say("&View"));
    Add(view, "Whole map", {QKeySequence("F"), QKeySequence("Home")}, [this] { m_map->Fit(m_map->whole()); });
    Add(view, "Zoom in", {QKeySequence::ZoomIn}, [this] { m_map->ZoomBy(1.5); });
    Add(view, "Zoom out", {QKeySequence::ZoomOut}, [this] { m_map->ZoomBy(1.0 / 1.5); });
    Add(view, "Previous view", {QKeySequence("Alt+Left")}, [this] { m_map->Back(); });
    Add(view, "Next view", {QKeySequence("Alt+Right")}, [this] { m_map->Forward(); });
    Add(view, "Scale", {QKeySequence("Ctrl+L")}, [this] {
        m_scale->setFocus();
        m_scale->lineEdit()->selectAll();
    });
    view->addSeparator();
    Add(view, "North up", {QKeySequence("N")}, [this] { m_map->Turn(-m_map->viewport().rotation); });
    Add(view, "Turn left", {QKeySequence("Ctrl+Left")}, [this] { m_map->Turn(15.0); });
    Add(view, "Turn right", {QKeySequence("Ctrl+Right")}, [this] { m_map->Turn(-15.0); });
    view->addSeparator();
    auto* sizes = new QActionGroup(this);
    m_bySheet =
        Add(view, "Symbols as on the sheet", {}, [this] { m_map->SetSymbolScale(m_about["scale"].toDouble()); });
    QAction* byView = Add(view, "Symbols by the scale of the view", {}, [this] { m_map->SetSymbolScale(0.0); });
    for (QAction* one : {m_bySheet, byView}) {
        one->setCheckable(true);
        sizes->addAction(one);
    }
    m_bySheet->setChecked(true);
    view->addSeparator();
    for (const QDockWidget* dock : findChildren<QDockWidget*>()) view->addAction(dock->toggleViewAction());

    QMenu* tools = menuBar()->addMenu(Say("&Tools"));
    auto* group = new QActionGroup(this);
    const auto tool = [&](const char* text, const char* key, Tool which) {
        QAction* action = Add(tools, text, {QKeySequence(key)}, [this, which] { TakeTool(which); });
        action->setCheckable(true);
        group->addAction(action);
        m_tools << action;
    };
    tool("Look and identify", "I", Tool::look);
    tool("Zoom to a rectangle", "Z", Tool::zoom);
    tool("Measure a distance", "D", Tool::distance);
    tool("Measure an area", "A", Tool::area);
    m_tools.front()->setChecked(true);
    m_snap = tools->addAction(Say("Snap to vertices"));
    m_snap->setCheckable(true);
    m_snap->setChecked(true);
    m_snap->setShortcut(QKeySequence("S"));
    tools->addSeparator();
    Add(tools, "Find", {QKeySequence::Find}, [this] {
        m_search->setFocus();
        m_search->selectAll();
    });
    Add(tools, "Copy the coordinate", {QKeySequence::Copy}, [this] { CopyCoordinate(); });
    Add(tools, "Copy the picture", {QKeySequence("Ctrl+Shift+C")}, [this] { CopyPicture(); });
    Add(tools, "Edit the rules", {QKeySequence("F4")}, [this] {
        if (!m_about["rules"].toString().isEmpty()) EditRule(m_about["rules"].toString(), 1);
    });
    Add(tools, "&Symbols...", {QKeySequence("F6")}, [this] {
        if (!m_about["symbols"].toString().isEmpty()) OpenSymbols(0);
    });

    QMenu* settings = menuBar()->addMenu(Say("&Settings"));
    const std::pair<const char*, const char*> kDialogs[] = {{"Layers and colours...", "layers"},
                                                            {"Pen widths...", "pens"},
                                                            {"Note classes...", "notes"},
                                                            {"Note fonts...", "fonts"},
                                                            {"Palette...", "colours"}};
    for (const auto& [text, which] : kDialogs)
        Add(settings, text, {}, [this, name = QString::fromLatin1(which)] { OpenSettings(name); });

    auto* bar = addToolBar(Say("Find"));
    bar->setObjectName("find");
    bar->setMovable(false);
    for (QAction* action : m_tools) bar->addAction(action);
    auto* space = new QWidget(bar);
    space->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Preferred);
    bar->addWidget(space);
    m_search = new QLineEdit(bar);
    m_search->setObjectName("search");
    m_search->setClearButtonEnabled(true);
    m_search->setPlaceholderText(Say("Name, code, sheet number, coordinate"));
    m_search->setMinimumWidth(200);
    m_search->setMaximumWidth(360);
    connect(m_search, &QLineEdit::returnPressed, this, &ViewWindow::Search);
    bar->addWidget(m_search);
}

void ViewWindow::MakeDocks() {
    const auto dock = [this](const char* title, QWidget* inside, Qt::DockWidgetArea area, const char* name) {
        auto* made = new QDockWidget(Say(title), this);
        made->setObjectName(name);
        made->setWidget(inside);
        addDockWidget(area, made);
        return made;
    };
    m_layers = new LayerPanel;
    dock("Layers", m_layers, Qt::LeftDockWidgetArea, "layersDock");
    m_feature = new QTreeWidget;
    m_feature->setObjectName("feature");
    m_feature->setColumnCount(2);
    m_feature->setHeaderHidden(true);
    m_feature->setWordWrap(true);
    m_feature->setTextElideMode(Qt::ElideMiddle);
    connect(m_feature, &QTreeWidget::itemActivated, this, [this](QTreeWidgetItem* item) {
        const QVariant line = item->data(0, Qt::UserRole);
        if (line.isValid()) EditRule(m_about["rules"].toString(), line.toInt());
        if (item->data(0, kSymbolRole).isValid()) OpenSymbols(item->data(0, kSymbolRole).toInt());
    });
    connect(m_feature, &QTreeWidget::itemClicked, this, [](QTreeWidgetItem* item) { item->setExpanded(true); });
    m_featureDock = dock("Feature", m_feature, Qt::RightDockWidgetArea, "featureDock");
    m_found = new QListWidget;
    m_found->setObjectName("found");
    connect(m_found, &QListWidget::itemActivated, this,
            [this](QListWidgetItem* item) { GoTo(item->data(Qt::UserRole).toJsonObject()); });
    connect(m_found, &QListWidget::itemClicked, this,
            [this](QListWidgetItem* item) { GoTo(item->data(Qt::UserRole).toJsonObject()); });
    m_foundDock = dock("Found", m_found, Qt::RightDockWidgetArea, "foundDock");
    m_messages = new QListWidget;
    m_messages->setObjectName("messages");
    m_messages->setWordWrap(true);
    m_messages->setSelectionMode(QAbstractItemView::ExtendedSelection);
    m_messagesDock = dock("Messages", m_messages, Qt::BottomDockWidgetArea, "messagesDock");
    for (QDockWidget* one : {m_featureDock, m_foundDock, m_messagesDock}) one->hide();
    resizeDocks({findChild<QDockWidget*>("layersDock")}, {230}, Qt::Horizontal);
}

void ViewWindow::MakeStatus() {
    m_doing = new QLabel(this);
    m_doing->setObjectName("doing");
    m_plane = new QLabel(this);
    m_plane->setObjectName("plane");
    m_degrees = new QLabel(this);
    m_degrees->setObjectName("degrees");
    m_system = new QLabel(this);
    m_system->setObjectName("system");
    m_system->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    m_scale = new QComboBox(this);
    m_scale->setObjectName("scale");
    m_scale->setEditable(true);
    m_scale->setInsertPolicy(QComboBox::NoInsert);
    m_scale->setMinimumContentsLength(11);
    for (const double scale : kUsualScales) m_scale->addItem("1:" + QString::number(scale, 'f', 0));
    const auto take = [this] {
        const double scale = ScaleOfText(m_scale->currentText());
        if (scale > 0.0) m_map->SetScale(scale);
        ShowScale();
        m_map->setFocus();
    };
    connect(m_scale, &QComboBox::activated, this, take);
    connect(m_scale->lineEdit(), &QLineEdit::returnPressed, this, take);
    for (QLabel* label : {m_plane, m_degrees}) label->setTextInteractionFlags(Qt::TextSelectableByMouse);
    statusBar()->addWidget(m_plane);
    statusBar()->addWidget(m_degrees);
    statusBar()->addWidget(m_system, 1);
    statusBar()->addPermanentWidget(m_doing);
    statusBar()->addPermanentWidget(m_scale);
}

void ViewWindow::ShowScale() {
    if (m_scale->lineEdit()->hasFocus() && m_scale->lineEdit()->isModified()) return;
    m_scale->setEditText("1:" + QString::number(m_map->scale(), 'f', m_map->scale() < 100.0 ? 1 : 0));
}

void ViewWindow::RestoreState() {
    const QSettings settings;
    const QSize room = screen() != nullptr ? screen()->availableSize() : QSize(1280, 800);
    resize(QSize(1200, 800).boundedTo(room));
    if (!m_job.picture.isEmpty()) return;  // pictures look the same for everybody
    restoreGeometry(settings.value("view/geometry").toByteArray());
    restoreState(settings.value("view/state").toByteArray());
}

void ViewWindow::SaveState() const {
    if (!m_job.picture.isEmpty()) return;
    QSettings settings;
    settings.setValue("view/geometry", saveGeometry());
    settings.setValue("view/state", saveState());
}

// The one that is shown, and not one that is still read.
void ViewWindow::RememberThisMap() const {
    if (!m_job.picture.isEmpty() || m_about.isEmpty()) return;
    const ViewJob& job = m_good ? *m_good : m_job;
    RememberedMap map = MapOf(job.inputs, job.options);
    map.plane = m_about["plane"].toString();
    map.view = m_map->viewport();
    RememberMap(map);
}

void ViewWindow::ShowTitle() {
    QStringList names;
    for (const QString& input : m_job.inputs) names << QFileInfo(input).fileName();
    if (names.size() > kMostNamed) names = names.mid(0, kMostNamed) << "...";
    setWindowTitle(names.join(", ") + " - zenro view");
}

}  // namespace zm::view
