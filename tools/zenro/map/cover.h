// Which paper of the sheet is covered, so that labels find free paper.
#pragma once

#include <cstdint>
#include <vector>

#include "tools/zenro/map/page.h"

namespace zm::tool {

/// What of the sheet is covered, in cells of half a millimetre of paper.
class Cover {
 public:
    explicit Cover(const Page& page);
    /// Covers the inside of an area, as lines that fill it do.
    void MarkArea(const Shape& shape);
    /// Covers the cells that a chain runs through.
    void MarkLine(const Chain& chain);
    /// What a cell may hold: the weight of its cover.
    enum Weight : std::uint8_t { stroke = 1, symbol = 4, label = 255 };
    /// Covers a box turned about its lower left corner by an angle in radians.
    void MarkBox(double x, double y, double length, double height, double radians, Weight weight);
    /// How far such a box is covered, 0 to 1 by strokes, more by symbols; 2 and above where a label lies, too much
    /// of symbols, or the box leaves the sheet.
    double Covered(double x, double y, double length, double height, double radians) const;

 private:
    void CloseOutside(const Shape& map);
    std::uint8_t* At(double x, double y);
    const std::uint8_t* At(double x, double y) const;

    Box m_sheet;
    double m_cell;
    int m_columns, m_rows;
    std::vector<std::uint8_t> m_cells;
};

}  // namespace zm::tool
