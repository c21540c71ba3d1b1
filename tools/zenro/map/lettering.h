// Text on the map: note classes as lettering, and how a text goes to the drawing context.
//
// A height is that of capitals and digits, and of the square that a full character fills, on every output: devices
// get the cell of the face that has them so, drawings and recordings the height itself.
#pragma once

#include <string>
#include <vector>

#include "zenromath/config.h"
#include "zenromath/draw.h"

namespace zm::tool {

/// How a note class writes, in ground metres at the scale in force.
struct Lettering {
    int fontNumber = 1;
    double height = 0.0;
    double width = 0.0;  // of a Chinese character; of any character where the class is a narrow one
    double interval = 0.0;
    int color = 1;
    std::string layer;  // GBK
    bool shown = true;  // the class's display switch
};

/// The lettering of a note class. Call setgscale before.
Lettering LetteringOf(TqNoteLayBase& notes, char note);

/// A stretch of text of one kind: one-byte or two-byte characters.
struct Run {
    std::string text;
    double width;  // of a character
    double length() const;
    int characters() const;
};

/// A text in its runs. Where a class is as wide as high its width is that of a Chinese character, and one-byte
/// characters take two thirds of it.
std::vector<Run> RunsOf(const std::string& gbk, const Lettering& lettering);
double LengthOf(const std::vector<Run>& runs);

/// Draws a text, its top left corner at (x, y), in a direction in degrees.
void DrawRuns(const std::vector<Run>& runs, const Lettering& lettering, double x, double y, double degrees);

/// One character of a name whose characters stand apart: its top left corner and its own turn in degrees.
struct Spot {
    double x, y, degrees;
};
/// Draws each character of a text at the spot of its own.
void DrawSpread(const std::string& gbk, const Lettering& lettering, const std::vector<Spot>& spots);

/// A face at a size, as recordings and drawings have it.
struct TextLook {
    std::string face;      // GBK
    double height, width;  // of capitals and full characters, ground metres; the width of a character
    double degrees;
    bool italic;
};
/// Draws a text of one kind on a device, its top left corner at (x, y): capitals and full characters get their height.
void DrawOnDevice(const std::string& gbk, const TextLook& look, double x, double y);

}  // namespace zm::tool
