#include "tools/view/view_window.h"

#include <QApplication>
#include <QCloseEvent>
#include <QDateTime>
#include <QDockWidget>
#include <QDropEvent>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QLineEdit>
#include <QMimeData>
#include <QProcess>
#include <utility>

#include "tools/view/phrases.h"
#include "tools/view/symbol_window.h"
#include "tools/view/worker_link.h"

namespace zm::view {
namespace {

constexpr int kMostCrashes = 3;
constexpr int kChangeRest = 300;  // milliseconds after the last change of a file: it may still be written

QRectF RectOf(const QJsonArray& box) {
    return {QPointF(box[0].toDouble(), box[1].toDouble()), QPointF(box[2].toDouble(), box[3].toDouble())};
}

}  // namespace

ViewWindow::ViewWindow(const ViewJob& job) : JobWindow(job) {
    m_sinceStart.start();
    if (!job.log.isEmpty()) m_logFile = std::fopen(job.log.toUtf8().constData(), "a");
    setAcceptDrops(true);
    MakeParts();
    RestoreState();
    m_changed.setSingleShot(true);
    m_changed.setInterval(kChangeRest);
    connect(&m_watcher, &QFileSystemWatcher::fileChanged, this, [this] { m_changed.start(); });
    connect(&m_watcher, &QFileSystemWatcher::directoryChanged, this, [this] { m_changed.start(); });
    connect(&m_changed, &QTimer::timeout, this, [this] {
        if (m_about.isEmpty() || !FilesChanged()) return;
        Note(Say("read again: a file has changed"));
        m_readAgain = true;
        Start();
    });
    connect(m_map, &MapView::PictureChanged, this, [this](bool whole) {
        Doing(whole ? Say("ready") : Say("drawing"));
        if (!m_map->isWhole()) Log({{"asked", static_cast<qint64>(m_map->askedNumber())}});
        if (!whole) return;
        m_crashes = 0;
        TakePicture();
    });
    connect(m_map, &MapView::Failed, this, [this](const QString& why) {
        Note(why);
        Doing(Say("ready"));
        if (!m_job.picture.isEmpty()) End(1, why);
    });
    Start();
}

ViewWindow::~ViewWindow() {
    // Dialogs of settings and exports that are still open go with the window, and say nothing to it any more.
    for (QProcess* process : findChildren<QProcess*>()) {
        process->disconnect(this);
        process->terminate();
    }
    if (m_logFile != nullptr) std::fclose(m_logFile);
}

// ---- the worker ----

void ViewWindow::Start() {
    if (m_next != nullptr) m_next->deleteLater();
    m_again = !m_about.isEmpty();
    QStringList arguments = m_job.options;
    arguments << "--" << m_job.inputs;
    RememberFiles();
    m_next = new WorkerLink(m_job.program, {"view"}, arguments, this);
    WorkerLink* link = m_next;
    if (!link->valid()) return End(1, "there is no memory for pictures.");
    connect(link, &WorkerLink::Said, this, [this, link](const QJsonObject& m) { TakeWord(link, m); });
    connect(link, &WorkerLink::Ended, this,
            [this, link](bool crashed, int status, const QString& words) { TakeEnd(link, crashed, status, words); });
    link->Watch();
    Doing(Say("reading"));
    Log({{"worker", link->processId()}});
}

void ViewWindow::TakeWord(WorkerLink* from, const QJsonObject& message) {
    const QString what = message["is"].toString();
    if (what == "reading") {
        const double done = message["done"].toDouble(), total = message["total"].toDouble();
        Doing(Say("reading") + " " + locale().toString(done, 'f', 0) +
              (total > 0.0 ? " / " + locale().toString(total, 'f', 0) : QString()));
    } else if (what == "ready") {
        TakeReady(from, message);
    } else if (what == "painted" && from == m_link) {
        QJsonObject reported = message;
        reported["map"] = QJsonArray{m_map->viewport().x, m_map->viewport().y, m_map->viewport().pixel};
        reported["pixels"] = QJsonArray{m_map->askedPixels().width(), m_map->askedPixels().height()};
        Log(reported);
        m_map->TakePainted(message);
    } else if (what == "lost") {
        Note(message["where"].toString() + ": " + message["why"].toString() + "; " + Say("left out"));
        Log(message);
    } else if (what == "report") {
        for (const QJsonValue value : message["lines"].toArray()) {
            const QString line = value.toString();
            // What a change of a file brings is shown; what was there before is in the list already.
            if (m_again && m_messages->findItems(line, Qt::MatchExactly).isEmpty()) m_messagesDock->show();
            Note(line);
        }
    } else if (what == "failed") {
        m_reason = message["text"].toString();
    }
}

void ViewWindow::TakeReady(WorkerLink* from, const QJsonObject& message) {
    if (from != m_next) return;
    if (m_link != nullptr) m_link->deleteLater();
    m_link = std::exchange(m_next, nullptr);
    m_reason.clear();
    m_good.reset();
    if (std::exchange(m_errorShown, false)) m_map->SetReadout({});  // it is mended
    m_askingWhere = m_askAgain = false;                             // what the other one was asked it answers no more
    const bool first = m_about.isEmpty();
    m_about = message;
    ShowTitle();
    m_map->SetSymbolScale(m_bySheet->isChecked() ? message["scale"].toDouble() : 0.0);
    m_map->SetWhole(RectOf(message["data"].toArray()));
    m_map->SetLink(m_link);
    m_system->setText(SpeaksChinese() ? message["planeChinese"].toString() : message["plane"].toString());
    m_layersKnown = false;
    m_link->Ask({{"do", "layers"}}, [this](const QJsonObject& answer) {
        m_layersKnown = true;
        if (answer.contains("error")) Note(answer["error"].toString());
        m_layers->SetLayers(answer["layers"].toArray());
        if (!m_layers->HiddenLayers().isEmpty() || !m_layers->HiddenRules().isEmpty()) HideLayers();
        if (m_map->isWhole()) TakePicture();
    });
    if (first || !m_readAgain) ShowStart();
    m_readAgain = false;
    RememberThisMap();
    Watch(message["files"].toVariant().toStringList());
    Log({{"ready", message}});
}

// Where one looked last, unless the command line says what is shown.
void ViewWindow::ShowStart() {
    if (m_job.picture.isEmpty() && !NamesPlace(m_job.options)) {
        const auto last = LastView(m_job.inputs, m_about["plane"].toString(), m_map->whole(), m_map->size());
        if (last) return m_map->Show(*last);
    }
    Viewport start = m_map->viewport();
    start.rotation = m_about["rotation"].toDouble();
    start.size = m_map->size();
    start.Fit(RectOf(m_about["start"].toArray()));
    m_map->Show(start);
}

void ViewWindow::TakeEnd(WorkerLink* from, bool crashed, int status, const QString& words) {
    from->deleteLater();
    if (from == m_next) {
        m_next = nullptr;
        TakeEndOfReading(crashed, status, m_reason.isEmpty() ? words : m_reason);
    } else if (from == m_link) {
        m_link = nullptr;
        m_askingWhere = m_askAgain = false;
        m_map->SetLink(nullptr);
        StartAgain();
    }
}

void ViewWindow::TakeEndOfReading(bool crashed, int status, const QString& words) {
    if (crashed && m_crashes + 1 < kMostCrashes) {
        Note(Say("The process that draws ended and is started again."));
        ++m_crashes;
        return Start();
    }
    const char* again = "The process that draws ends again and again; it is not started any more. Read again: F5.";
    const QString why = words.isEmpty() ? Say(again) : words;
    if (m_link == nullptr && m_about.isEmpty()) return End(status > 0 && !crashed ? status : 1, why);
    Note(why + (m_link != nullptr ? "\n" + Say("The last good picture stays.") : QString()));
    ShowError(why);
    Log({{"failed", why}});
    Doing(Say("ready"));
    if (!m_good) return;
    m_job = *std::exchange(m_good, std::nullopt);
    if (m_link == nullptr) StartAgain();  // it ended meanwhile
}

// The map that was shown, in the same view. What ends again and again before its picture is whole is left alone.
void ViewWindow::StartAgain() {
    m_readAgain = m_next == nullptr || m_readAgain;
    if (++m_crashes >= kMostCrashes) {
        const QString why =
            Say("The process that draws ends again and again; it is not started any more. Read again: F5.");
        Note(why);
        if (!m_job.picture.isEmpty()) return End(1, why);
        Doing(Say("ready"));
        return ShowError(why);
    }
    Note(Say("The process that draws ended and is started again."));
    if (m_next == nullptr) Start();  // else one reads already
}

// A folder is watched beside its file: editors put a new file in the place of the old one.
void ViewWindow::Watch(const QStringList& files) {
    const QStringList before = m_watcher.files() + m_watcher.directories();
    if (!before.isEmpty()) m_watcher.removePaths(before);
    m_watched.clear();
    QStringList folders;
    for (const QString& file : files) {
        const QString folder = QFileInfo(file).absolutePath();
        if (!folders.contains(folder)) folders << folder;
        m_watched << file;
    }
    for (const QString& file : m_watched)
        if (QFileInfo::exists(file)) folders << file;
    if (!folders.isEmpty()) m_watcher.addPaths(folders);
    for (const QString& file : m_watched)
        if (!m_stamps.contains(file)) m_stamps[file] = StampOf(file);
    if (FilesChanged()) m_changed.start();  // while the map was read for the first time, and nothing was watched
}

QString ViewWindow::StampOf(const QString& file) {
    const QFileInfo info(file);
    return info.exists() ? QString::number(info.size()) + " " + QString::number(info.lastModified().toMSecsSinceEpoch())
                         : QString();
}

// Taken before the files are read, so that a change meanwhile is one.
void ViewWindow::RememberFiles() {
    QStringList files = m_watched;
    for (const QString& text : m_job.inputs + m_job.options)  // what is watched is not known before the first reading
        files << QFileInfo(text.startsWith("--") ? text.section('=', 1) : text).absoluteFilePath();
    for (const QString& file : files)
        if (m_watched.contains(file) || QFileInfo(file).isFile()) m_stamps[file] = StampOf(file);
}

bool ViewWindow::FilesChanged() {
    bool changed = false;
    for (const QString& file : m_watched) {
        const QString stamp = StampOf(file);
        // A file that is gone for a moment is being replaced.
        if (!stamp.isEmpty() && stamp != m_stamps[file]) changed = true;
    }
    for (const QString& file : m_watched)
        if (!m_watcher.files().contains(file) && QFileInfo::exists(file)) m_watcher.addPath(file);
    return changed;
}

// ---- words ----

void ViewWindow::Doing(const QString& what) {
    m_doing->setText(what);
}

void ViewWindow::Note(const QString& line) {
    m_messages->addItem(line);
    m_messages->scrollToBottom();
    m_messagesDock->setWindowTitle(Say("Messages") + " (" + QString::number(m_messages->count()) + ")");
    Log({{"note", line}});
}

void ViewWindow::ShowError(const QString& why) {
    m_map->SetReadout(why);
    m_errorShown = true;
    m_messagesDock->show();
    m_messagesDock->raise();
}

void ViewWindow::Log(QJsonObject what) {
    if (m_logFile == nullptr) return;
    what["ms"] = static_cast<double>(m_sinceStart.nsecsElapsed()) / 1e6;
    const QByteArray line = QJsonDocument(what).toJson(QJsonDocument::Compact) + "\n";
    std::fwrite(line.constData(), 1, static_cast<std::size_t>(line.size()), m_logFile);
    std::fflush(m_logFile);
}

// ---- the end ----

void ViewWindow::TakePicture() {
    if (!m_job.picture.isEmpty() && m_layersKnown) WritePicture();
}

void ViewWindow::closeEvent(QCloseEvent* event) {
    if (m_symbols != nullptr && !m_symbols->close()) return event->ignore();  // it has what is not saved
    SaveState();
    RememberThisMap();
    event->accept();
    emit Ended();
}

// ---- files dropped on the window ----

void ViewWindow::OpenInputs(const QStringList& files, bool add) {
    ViewJob job = m_job;
    QStringList inputs;
    for (const QString& file : files) {
        if (!file.endsWith(".rules")) {
            inputs << file;
            continue;
        }
        job.options.removeIf([](const QString& one) { return one.startsWith("--rules="); });
        job.options << "--rules=" + file;
    }
    // Rules alone are of the data that is shown; drawings are shown alone.
    const bool alone = !inputs.isEmpty() && (IsDrawn(inputs.front()) || IsDrawn(job.inputs.front()));
    const bool replace = alone || (!add && !inputs.isEmpty());
    job.inputs = replace ? inputs : job.inputs + inputs;
    if (replace) job.options = MapOf({}, job.options).options;
    OpenJob(job, !replace);
}

void ViewWindow::OpenRemembered(const RememberedMap& map) {
    ViewJob job = m_job;
    job.inputs = map.inputs;
    job.options = map.options;
    OpenJob(job, false);
}

// What cannot be read changes nothing: the map that is shown stays, and is the one that is read again.
void ViewWindow::OpenJob(const ViewJob& job, bool sameView) {
    RememberThisMap();
    if (!m_good) m_good = m_job;
    m_job = job;
    m_readAgain = sameView;
    Start();
}

void ViewWindow::dragEnterEvent(QDragEnterEvent* event) {
    if (event->mimeData()->hasUrls()) event->acceptProposedAction();
}

// Rules go in the place of the rules, data to the data; with Ctrl in its place.
void ViewWindow::dropEvent(QDropEvent* event) {
    QStringList files;
    for (const QUrl& url : event->mimeData()->urls())
        if (url.isLocalFile()) files << url.toLocalFile();
    if (!files.isEmpty()) OpenInputs(files, (event->modifiers() & Qt::ControlModifier) == 0);
    event->acceptProposedAction();
}

}  // namespace zm::view
