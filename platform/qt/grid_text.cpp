#include "platform/qt/grid_text.h"

#include <QApplication>
#include <QFontDatabase>
#include <QPainter>
#include <algorithm>
#include <cmath>

#include "platform/qt/qt_text.h"

namespace zm::qt {
namespace {

constexpr char16_t kFirstWide = 0x1100;  // everything of GBK above this is in two cells

constexpr double kFilled = 0.9;  // of two cells by a Chinese character

int Width(QChar c) {
    return c.unicode() >= kFirstWide ? 2 : 1;
}

// Where the text goes on after a tab at a cell.
int AfterTab(int cell, std::span<const int> tabs) {
    for (const int stop : tabs)
        if (stop > cell) return stop;
    return cell + 1;
}

template <class Visit>
int Walk(const QString& text, std::span<const int> tabs, const Visit& visit) {
    int cell = 0;
    for (const QChar c : text) {
        if (c == u'\t') {
            cell = AfterTab(cell, tabs);
            continue;
        }
        visit(cell, c);
        cell += Width(c);
    }
    return cell;
}

}  // namespace

int CellsOf(const QString& text, std::span<const int> tabs) {
    return Walk(text, tabs, [](int, QChar) {});
}

void DrawCells(QPainter& painter, const QRectF& where, const QString& text, double cell, std::span<const int> tabs) {
    Walk(text, tabs, [&](int at, QChar c) {
        const QRectF box(where.left() + at * cell, where.top(), Width(c) * cell, where.height());
        if (c != u' ') painter.drawText(box, Qt::AlignCenter | Qt::TextDontClip, QString(c));
    });
}

QFont FixedPitch(double cell) {
    QFont font = QFontDatabase::systemFont(QFontDatabase::FixedFont);
    font.setPixelSize(std::max(1, static_cast<int>(kFilled * 2.0 * cell)));
    const QString chinese = ChineseFace();
    if (!chinese.isEmpty()) font.setFamilies({font.family(), chinese});
    return font;
}

void GridDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const {
    QStyleOptionViewItem item = option;
    initStyleOption(&item, index);
    const QString text = item.text;
    item.text.clear();
    const QStyle* style = item.widget != nullptr ? item.widget->style() : QApplication::style();
    style->drawControl(QStyle::CE_ItemViewItem, &item, painter, item.widget);
    const bool selected = (item.state & QStyle::State_Selected) != 0;
    const auto group = (item.state & QStyle::State_Active) != 0 ? QPalette::Active : QPalette::Inactive;
    painter->save();
    painter->setFont(item.font);
    painter->setPen(item.palette.color(group, selected ? QPalette::HighlightedText : QPalette::Text));
    DrawCells(*painter, QRectF(item.rect).adjusted(m_margin, 0.0, 0.0, 0.0), text, m_cell, m_tabs);
    painter->restore();
}

QSize GridDelegate::sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const {
    const int cells = CellsOf(index.data().toString(), m_tabs);
    const int height = QFontMetrics(option.font).height() + 2;
    return {static_cast<int>(std::ceil(cells * m_cell + 2.0 * m_margin)), height};
}

void GridLabel::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setFont(font());
    painter.setPen(palette().color(foregroundRole()));
    DrawCells(painter, QRectF(rect()), text(), m_cell, {});
}

}  // namespace zm::qt
