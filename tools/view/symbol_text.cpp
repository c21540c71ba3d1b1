#include "tools/view/symbol_text.h"

#include <QFontDatabase>
#include <QHelpEvent>
#include <QTextBlock>
#include <QToolTip>
#include <utility>

namespace zm::view {

SymbolText::SymbolText(QWidget* owner) : QPlainTextEdit(owner) {
    setObjectName("text");
    setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    setLineWrapMode(QPlainTextEdit::NoWrap);
    setTabChangesFocus(true);
}

void SymbolText::SetRemarks(std::vector<LineRemark> remarks) {
    m_remarks = std::move(remarks);
    QList<QTextEdit::ExtraSelection> marked;
    for (const LineRemark& remark : m_remarks) {
        const QTextBlock block = document()->findBlockByNumber(remark.line - 1);
        if (remark.line < 1 || !block.isValid()) continue;
        QTextEdit::ExtraSelection line;
        line.cursor = QTextCursor(block);
        line.format.setBackground(remark.grave ? QColor(255, 80, 80, 70) : QColor(255, 190, 0, 70));
        line.format.setProperty(QTextFormat::FullWidthSelection, true);
        marked << line;
    }
    setExtraSelections(marked);
}

void SymbolText::GoToLine(int line) {
    const QTextBlock block = document()->findBlockByNumber(line - 1);
    if (line < 1 || !block.isValid()) return;
    setTextCursor(QTextCursor(block));
    setFocus();
}

QString SymbolText::RemarksOf(int line) const {
    QStringList texts;
    for (const LineRemark& remark : m_remarks)
        if (remark.line == line) texts << remark.text;
    return texts.join('\n');
}

bool SymbolText::event(QEvent* event) {
    if (event->type() != QEvent::ToolTip) return QPlainTextEdit::event(event);
    const auto* help = static_cast<QHelpEvent*>(event);
    const QTextCursor at = cursorForPosition(viewport()->mapFromGlobal(help->globalPos()));
    QToolTip::showText(help->globalPos(), RemarksOf(at.blockNumber() + 1), this);
    return true;
}

}  // namespace zm::view
