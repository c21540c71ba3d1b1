// Labels that have their places, and how they are drawn.
#pragma once

#include <string>
#include <vector>

#include "tools/zenro/map/lettering.h"
#include "tools/zenro/map/page.h"

namespace zm::tool {

/// A label that has its place: the top left corner of its text.
struct PlacedLabel {
    const Rule* rule = nullptr;
    std::string text, under;  // GBK
    double x = 0.0, y = 0.0;
    double degrees = 0.0;
    std::vector<Spot> spots;  // of a spread label: one for each character
    double length = 0.0;      // of the longer of the two texts
    LabelPlace place = LabelPlace::beside;
};

/// A box on the ground, turned about its lower left corner by an angle in radians.
struct TurnedBox {
    double x, y, length, height, radians;
};
/// What a label covers, with so much clear around it in ground metres: one box for a text, one for each character of a
/// spread name.
std::vector<TurnedBox> BoxesOf(const PlacedLabel& label, TqNoteLayBase& notes, double clear);

/// Draws the labels on the working context, which has the map's clip area.
void DrawLabels(const std::vector<PlacedLabel>& labels, TqNoteLayBase& notes);

/// Millimetres between the two texts of a fraction and its bar.
constexpr double kBarGap = 0.3;

}  // namespace zm::tool
