// The window of a map: the map in the middle, the layers on its left, what was identified and found on its right.
#pragma once

#include <QElapsedTimer>
#include <QFileSystemWatcher>
#include <QJsonObject>
#include <QLabel>
#include <QListWidget>
#include <QMap>
#include <QPointer>
#include <QStringList>
#include <QTimer>
#include <QTreeWidget>
#include <cstdio>
#include <functional>
#include <optional>

#include "tools/view/job_window.h"
#include "tools/view/layer_panel.h"
#include "tools/view/map_memory.h"
#include "tools/view/map_view.h"

class QComboBox;
class QDockWidget;
class QLineEdit;

namespace zm::view {

class SymbolWindow;
class WorkerLink;

/// Where a row of the feature holds the code of its symbol.
constexpr int kSymbolRole = Qt::UserRole + 1;

class ViewWindow : public JobWindow {
    Q_OBJECT
 public:
    explicit ViewWindow(const ViewJob& job);
    ~ViewWindow() override;

 protected:
    void closeEvent(QCloseEvent* event) override;
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dropEvent(QDropEvent* event) override;

 private:
    // view_window.cpp: the window and the worker
    void Start();
    void TakeWord(WorkerLink* from, const QJsonObject& message);
    void TakeReady(WorkerLink* from, const QJsonObject& message);
    void ShowStart();
    void TakeEnd(WorkerLink* from, bool crashed, int status, const QString& words);
    void TakeEndOfReading(bool crashed, int status, const QString& words);
    void StartAgain();
    void Watch(const QStringList& files);
    static QString StampOf(const QString& file);
    void RememberFiles();
    bool FilesChanged();
    void ShowError(const QString& why);
    void Doing(const QString& what);
    void Note(const QString& line);
    void Log(QJsonObject what);
    void TakePicture();
    void OpenInputs(const QStringList& files, bool add);
    void OpenRemembered(const RememberedMap& map);
    void OpenJob(const ViewJob& job, bool sameView);
    // view_window_parts.cpp: menus, docks, status line
    void MakeParts();
    void MakeMenus();
    void MakeDocks();
    void MakeStatus();
    QAction* Add(QMenu* menu, const char* text, const QList<QKeySequence>& keys, const std::function<void()>& act);
    void ShowScale();
    void RestoreState();
    void SaveState() const;
    void RememberThisMap() const;
    void ShowTitle();
    // view_window_work.cpp: what is done on the map
    void ShowCursor(QPointF plane);
    void Identify(QPointF plane, double reach);
    void ShowHits(const QJsonObject& answer);
    void Search();
    void GoTo(const QJsonObject& found);
    void TakeMeasured(bool added);
    void ShowMeasured();
    void CopyCoordinate();
    void CopyPicture();
    void Export(bool sheet);
    // view_window_print.cpp
    void Print(bool sheet);
    void ShowPrint(const QImage& picture, const QImage& coarse);
    QStringList PageOptions(bool sheet) const;
    void RunDraw(bool sheet, const QStringList& more, const QString& file, const std::function<void()>& written);
    void TakeMargins();
    void OpenSettings(const QString& which);
    void EditRule(const QString& file, int line);
    void OpenSymbols(int code);
    void TakeSymbols(const QString& file);
    void TakeTool(Tool tool);
    void HideLayers();

    std::optional<ViewJob> m_good;                    // the one that is shown, while another is read
    WorkerLink *m_link = nullptr, *m_next = nullptr;  // in use, and one that reads the map again
    MapView* m_map = nullptr;
    LayerPanel* m_layers = nullptr;
    QPointer<SymbolWindow> m_symbols;
    QTreeWidget* m_feature = nullptr;
    QListWidget *m_found = nullptr, *m_messages = nullptr;
    QDockWidget *m_featureDock = nullptr, *m_foundDock = nullptr, *m_messagesDock = nullptr;
    QLineEdit* m_search = nullptr;
    QComboBox* m_scale = nullptr;
    QLabel *m_plane = nullptr, *m_degrees = nullptr, *m_system = nullptr, *m_doing = nullptr;
    QAction *m_snap = nullptr, *m_bySheet = nullptr;
    QList<QAction*> m_tools;

    QFileSystemWatcher m_watcher;
    QTimer m_changed;
    QStringList m_watched;
    QMap<QString, QString> m_stamps;  // of the watched files, as they were read
    QJsonObject m_about;
    bool m_readAgain = false;  // the map that comes is another reading of the same
    bool m_again = false;      // a map was shown before the one that is read
    bool m_errorShown = false;
    bool m_askingWhere = false;
    bool m_askAgain = false;
    bool m_layersKnown = false;
    int m_crashes = 0;  // in a row, without a whole picture between
    std::FILE* m_logFile = nullptr;
    QElapsedTimer m_sinceStart;
};

}  // namespace zm::view
