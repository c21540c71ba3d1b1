// Where labels stand: beside their points, along their lines, in their areas; on free paper before covered paper, and
// never on each other.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "tools/zenro/lettering.h"
#include "tools/zenro/page.h"

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
    /// How far such a box is covered, 0 to 1 by strokes, more by symbols; 2 and above where a label stands, too much
    /// of symbols, or the box leaves the sheet.
    double Covered(double x, double y, double length, double height, double radians) const;

 private:
    std::uint8_t* At(double x, double y);
    const std::uint8_t* At(double x, double y) const;

    Box m_sheet;
    double m_cell;
    int m_columns, m_rows;
    std::vector<std::uint8_t> m_cells;
};

/// A label that has its place: the top left corner of its text.
struct PlacedLabel {
    const Rule* rule = nullptr;
    std::string text, under;  // GBK
    double x = 0.0, y = 0.0;
    double degrees = 0.0;
    std::vector<PP> spots;  // of a spread label: the top left corner of each character
    double length = 0.0;    // of the longer of the two texts
    LabelPlace place = LabelPlace::beside;
    bool covers = false;  // strokes lie under it
};

/// Finds places. Labels are tried in the order they come; one without room is left out and counted.
class LabelPlacer {
 public:
    LabelPlacer(const Page& page, TqNoteLayBase& notes, Cover& cover) : m_page(page), m_notes(notes), m_cover(cover) {}
    /// Places the label of a shape, already turned as it is drawn.
    void Place(const Shape& shape, const Use& use);
    const std::vector<PlacedLabel>& labels() const { return m_labels; }
    long withoutRoom() const { return m_withoutRoom; }

 private:
    struct Candidate;
    struct Text;
    bool Try(const std::vector<Candidate>& candidates, const Text& text);
    void Beside(const Shape& shape, const Text& text);
    void Centred(const Shape& shape, const Text& text);
    void Along(const Shape& shape, const Text& text);
    void Decimal(const Shape& shape, const Text& text);
    void Spread(const Shape& shape, const Text& text);
    bool IsNearItsLike(const std::string& label, double x, double y);

    const Page& m_page;
    TqNoteLayBase& m_notes;
    Cover& m_cover;
    std::vector<PlacedLabel> m_labels;
    std::map<std::string, std::vector<PP>> m_repeated;  // where names along lines stand
    long m_withoutRoom = 0;
};

/// Draws the labels on the working context, which has the map's clip area.
void DrawLabels(const std::vector<PlacedLabel>& labels, TqNoteLayBase& notes);

/// A place well inside an area, for symbols and labels of areas.
void InnerPoint(const Shape& shape, double& x, double& y);
/// The point at a distance along a chain, and the direction there in radians.
void PointAlong(const Chain& chain, double distance, double& x, double& y, double& direction);
double LengthOf(const Chain& chain);

}  // namespace zm::tool
