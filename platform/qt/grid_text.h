// Text in cells of equal width, two for a Chinese character: padded rows align in every face.
#pragma once

#include <QLabel>
#include <QStyledItemDelegate>
#include <span>
#include <vector>

class QPainter;

namespace zm::qt {

/// Cells that a text takes, with tab stops in cells; a tab goes at least one cell on.
int CellsOf(const QString& text, std::span<const int> tabs);

/// Draws a text into a rectangle, centred vertically, with the painter's font and pen.
void DrawCells(QPainter& painter, const QRectF& where, const QString& text, double cell, std::span<const int> tabs);

/// The fixed-width face of the system, with the Chinese face that goes with it, at the size that fills such cells.
QFont FixedPitch(double cell);

/// Paints rows of a list in cells.
class GridDelegate : public QStyledItemDelegate {
 public:
    GridDelegate(QObject* parent, std::span<const int> tabs)
        : QStyledItemDelegate(parent), m_tabs(tabs.begin(), tabs.end()) {}
    /// Width of a cell and margin on the left, device-independent pixels.
    void SetMeasures(double cell, double margin) {
        m_cell = cell;
        m_margin = margin;
    }
    void paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const override;
    QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override;

 private:
    std::vector<int> m_tabs;
    double m_cell = 8.0;
    double m_margin = 4.0;
};

/// A heading over such a list.
class GridLabel : public QLabel {
 public:
    using QLabel::QLabel;
    void SetCell(double cell) { m_cell = cell; }

 protected:
    void paintEvent(QPaintEvent* event) override;

 private:
    double m_cell = 8.0;
};

}  // namespace zm::qt
