// Text on the map: note classes as lettering, and how a text goes to the drawing context.
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
    double width;        // of a character
    double spare = 0.0;  // room behind each character, as a part of its width
    double length() const;
    int characters() const;
};

/// A text in its runs. One-byte characters take half the class's width where the class is as wide as high, since its
/// width is that of a Chinese character.
std::vector<Run> RunsOf(const std::string& gbk, const Lettering& lettering);
double LengthOf(const std::vector<Run>& runs);

/// Draws a text, its top left corner at (x, y), in a direction in degrees.
void DrawRuns(const std::vector<Run>& runs, const Lettering& lettering, double x, double y, double degrees);
/// Draws each character of a text upright, its top left corner at the spot of its own.
void DrawSpread(const std::string& gbk, const Lettering& lettering, const std::vector<PP>& spots);

}  // namespace zm::tool
