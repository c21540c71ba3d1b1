// Where labels stand: beside their points, along their lines, in their areas; on free paper before covered paper, and
// never on each other.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "tools/zenro/map/contour_sense.h"
#include "tools/zenro/map/cover.h"
#include "tools/zenro/map/labels.h"

namespace zm::tool {

/// Finds places. Labels are tried in the order they come; one without room is left out and counted.
class LabelPlacer {
 public:
    LabelPlacer(const Page& page, TqNoteLayBase& notes, Cover& cover, const ContourSense& sense)
        : m_page(page), m_notes(notes), m_cover(cover), m_sense(sense) {}
    /// Places the label of a shape, already turned as it is drawn.
    void Place(const Shape& shape, const Use& use);
    const std::vector<PlacedLabel>& labels() const { return m_labels; }
    long withoutRoom() const { return m_withoutRoom; }

 private:
    struct Candidate;
    struct Text;
    bool Try(const std::vector<Candidate>& candidates, const Text& text);
    void Beside(const Shape& shape, const Text& text);
    void BesideLine(const Shape& shape, const Text& text);
    void Centred(const Shape& shape, const Text& text);
    void Along(const Shape& shape, const Text& text);
    void OnContour(const Shape& shape, const Text& text);
    void LabelContour(const Chain& chain, double all, double from, double stretch, const Text& text);
    void Decimal(const Shape& shape, const Text& text);
    void Spread(const Shape& shape, const Text& text);
    static bool IsName(const std::string& label);
    bool IsNearItsLike(const std::string& label, double x, double y);

    const Page& m_page;
    TqNoteLayBase& m_notes;
    Cover& m_cover;
    const ContourSense& m_sense;
    std::vector<PlacedLabel> m_labels;
    std::vector<PP> m_contourLabels;                    // their middles
    std::map<std::string, std::vector<PP>> m_repeated;  // where names along lines stand
    long m_withoutRoom = 0;
};

}  // namespace zm::tool
