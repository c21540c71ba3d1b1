// The window of a symbol library: its codes, each shown large, on a line and in an area, and its text, edited live.
#pragma once

#include <QJsonArray>
#include <QJsonObject>
#include <QLabel>
#include <QListWidget>
#include <QMap>
#include <QTimer>
#include <QTreeWidget>
#include <set>
#include <vector>

#include "tools/view/job_window.h"
#include "tools/view/symbol_link.h"
#include "tools/view/symbol_pane.h"
#include "tools/view/symbol_text.h"

class QLineEdit;
class QPlainTextEdit;

namespace zm::view {

class SymbolWindow : public JobWindow {
    Q_OBJECT
 public:
    /// \param job  the library is the one input; --code=N among the options is shown first
    explicit SymbolWindow(const ViewJob& job, QWidget* owner = nullptr);

    const QString& file() const { return m_file; }
    /// The symbol that is shown, 0 before there is one.
    int code() const { return m_code; }
    void ShowCode(int code);
    /// The map of the window that opened this one draws with what is saved here, where the reader leaves that on.
    void ServeMap();
    bool servesMap() const { return m_forMap != nullptr && m_forMap->isChecked(); }
    /// What one sees is there; pictures of rows that are scrolled away may still be drawn.
    bool isWhole() const;
    /// Rows whose pictures are not drawn yet.
    std::size_t iconless() const { return m_iconless.size(); }
    qint64 processId() const { return m_link.processId(); }

 signals:
    void Saved(const QString& file);

 protected:
    void closeEvent(QCloseEvent* event) override;

 private:
    // symbol_window.cpp: the window
    void MakeMenus();
    void MakeList();
    void MakeWork();
    void ShowTitle();
    void Filter();
    void ShowState();
    // symbol_window_work.cpp: what is done in it
    void Open(const QString& file, int code);
    void FillList(const QJsonArray& symbols);
    void TakeText();
    void Look();
    void AskPicture(SymbolPane* pane, const QString& file, const QJsonArray& edits);
    void AskIcon();
    int SeenIconless() const;
    void ShowRemarks(const QJsonObject& answer);
    QJsonArray Edits(bool all) const;
    bool AskToSave();
    void Save();
    void SaveAs();
    void SaveTo(const QString& file);
    void TakeBack();
    void CompareWith(const QString& file);
    void ShowDifference();
    void TakePicture();
    QTreeWidgetItem* ItemOf(int code) const { return m_items.value(code); }

    SymbolLink m_link;
    QString m_file, m_other;
    bool m_shipped = false;
    int m_code = 0;
    QMap<int, QString> m_texts, m_edits;  // as the file has them; as they are written here
    std::set<int> m_faulty;               // edits that nothing can be drawn with
    QMap<int, QTreeWidgetItem*> m_items;
    QMap<int, QString> m_differences;  // to the other library, by code
    QMap<int, QString> m_otherTexts;   // of codes that only that one has
    std::set<int> m_iconless;
    QLineEdit* m_search = nullptr;
    QTreeWidget* m_list = nullptr;
    SymbolText* m_text = nullptr;
    QListWidget* m_remarks = nullptr;
    QPlainTextEdit* m_difference = nullptr;
    std::vector<SymbolPane*> m_panes;
    SymbolPane* m_otherPane = nullptr;
    QLabel *m_about = nullptr, *m_doing = nullptr;
    QAction *m_takeBack = nullptr, *m_noCompare = nullptr, *m_forMap = nullptr;
    QMenu* m_fileMenu = nullptr;
    QTimer m_rest;  // after a key
    bool m_checked = false, m_setting = false;
};

}  // namespace zm::view
