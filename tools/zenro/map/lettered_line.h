// Pipelines and cables whose kind a letter shows in a gap of the line. The letter is upright or turned by at
// most 45 degrees, whatever the direction of the line.
#pragma once

#include <optional>
#include <vector>

#include "tools/zenro/map/page.h"

namespace zm::tool {

/// What a line symbol with letters is drawn by.
struct LetteredLine {
    int plain;      // the line symbol without letters
    int letter;     // the point symbol in the gaps
    double repeat;  // millimetres from letter to letter
};
std::optional<LetteredLine> LetteredLineOf(int code);

/// A place of a letter and its turn in radians.
struct LetterSpot {
    double x, y, turn;
};
/// A line with its gaps.
struct GappedLine {
    std::vector<Chain> pieces;
    std::vector<LetterSpot> letters;
};
/// One letter for each repeat of the line, at least one, none where the line is shorter than 7 mm; off the sheet none.
GappedLine WithGaps(const Chain& chain, double repeat, const Page& page);

}  // namespace zm::tool
