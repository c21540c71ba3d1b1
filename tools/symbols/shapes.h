// The shapes of the readable symbol source, turned into the operators of the symbol file.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace zm::tool::symbols {

/// A point of a symbol, millimetres on paper, x to the right, y up.
struct Millimetres {
    double x = 0.0;
    double y = 0.0;
};

/// Turns one line of the readable source into drawing records of the symbol file.
///
/// A line that begins with a digit is a record of the file already and comes back as it is. Else it is a shape:
///     line x,y x,y ...          closed x,y x,y ...        rect x,y x,y (two corners)
///     circle x,y r              arc x,y r from to         oval x,y rx ry [from to]
///     ngon x,y r corners from   star x,y r r2 points from dot x,y
///     disc x,y r (filled)       wedge x,y r from to (filled)   fill x,y x,y ... (filled polygon)
///     wave x,y x,y amplitude halves                        flash x,y height
/// Angles are degrees, counter-clockwise. In front may stand "both" (the shape and its mirror image at the y axis) or
/// "turned n" (n copies turned about the origin); after it "at x,y" moves the result.
///
/// Filled shapes are drawn by strokes kFillStep apart, since the file language has no fill for graphic symbols. No
/// record is longer than the reader's line.
///
/// \param[out] records  the records are appended
/// \return              what is wrong with the line, empty if nothing is
std::string ExpandShape(std::string_view line, std::vector<std::string>& records);

/// Distance of the strokes that fill a shape, millimetres on paper: less than the thinnest pen of a map, 0.15.
constexpr double kFillStep = 0.1;

/// A length or coordinate as the file has it: at most three decimals, no needless zeros, no negative zero.
std::string FileNumber(double millimetres);

}  // namespace zm::tool::symbols
