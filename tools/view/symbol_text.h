// The text of a symbol, with remarks at its lines.
#pragma once

#include <QPlainTextEdit>
#include <QString>
#include <vector>

namespace zm::view {

/// What is said of a line, counted from 1; 0: of none of this text.
struct LineRemark {
    int line = 0;
    bool grave = true;
    QString text;
};

class SymbolText : public QPlainTextEdit {
    Q_OBJECT
 public:
    explicit SymbolText(QWidget* owner = nullptr);

    void SetRemarks(std::vector<LineRemark> remarks);
    void GoToLine(int line);
    /// The remarks of a line, one below the other.
    QString RemarksOf(int line) const;

 protected:
    bool event(QEvent* event) override;

 private:
    std::vector<LineRemark> m_remarks;
};

}  // namespace zm::view
