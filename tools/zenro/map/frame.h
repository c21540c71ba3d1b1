// The frame of the map: neat line, outer frame, grid crosses, ticks, coordinates.
#pragma once

#include <array>
#include <string>

#include "tools/zenro/map/lettering.h"
#include "tools/zenro/map/masks.h"
#include "tools/zenro/map/page.h"

namespace zm::tool {

/// What is around a sheet, all in UTF-8; what is empty leaves no hole.
struct FrameTexts {
    std::string title;
    std::string number;        // under the title; empty: made of the sheet's south-west corner
    std::string system;        // lower left, as are the next four
    std::string heightSystem;  // with or without the interval
    std::string interval;      // of contours
    std::string symbols;       // the edition of the symbols
    std::string survey;        // date and way of survey
    std::string remark;        // lower right: source, date, whatever the user wants
    std::string secrecy;       // above the right corner
    std::string unit;          // left of the frame, from the top down
    std::string surveyor, draughtsman, checker;
    std::array<std::string, 8> neighbours;  // north-west, north, north-east, west, east, south-west, south, south-east
    bool adjoining = false;                 // an index of adjoining sheets, by numbers where no name is given
    bool barScale = false;
    double outerWidth = 1.0;  // of the outer frame's line, millimetres
};

/// Draws the frame on the working context. Clipping is switched off meanwhile.
void DrawFrame(const Page& page, const FrameTexts& texts, TqNoteLayBase& notes);
/// The strokes of the grid crosses and of the ticks at the neat line, which lie in the map, turn with it and give way to
/// the masks.
std::vector<Chain> OpenCrosses(const Page& page, const Masks& masks);
void DrawCrosses(const Page& page, const Masks& masks);

// ---- what frame and margins share ----

constexpr double kOuterFrame = 12.0;  // millimetres of paper from the neat line
constexpr double kNeatWidth = 0.15;   // of its line

/// The feature code whose layer the frame is drawn on.
int FrameCode();

enum class Align { left, centre, right };
/// A text in the first font whose middle height is at y; height in millimetres of paper.
void PutText(const Page& page, TqNoteLayBase& notes, const std::string& utf8, double height, double x, double y,
             Align align, double degrees = 0.0);
void DrawRectangle(double x1, double y1, double x2, double y2);

/// The decimals of kilometres that the numbers of a scale have, more where the sheet's sides need them.
int KilometreDecimals(const Page& page);
/// Kilometres; if not whole only the last two figures before the point, as on printed sheets between the corners.
std::string Kilometres(double metres, int decimals, bool whole);

}  // namespace zm::tool
