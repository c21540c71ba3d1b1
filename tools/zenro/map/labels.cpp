#include "tools/zenro/map/labels.h"

#include <cmath>

#include "draw/device.h"
#include "tools/kit/angles.h"
#include "tools/zenro/map/map_pen.h"

namespace zm::tool {
namespace {

// Two texts with a bar between, as control points have name over height.
void DrawFraction(const PlacedLabel& label, const Lettering& lettering) {
    const double gap = _To01mm(10) * kBarGap;  // ten tenths are a millimetre
    const auto upper = RunsOf(label.text, lettering), lower = RunsOf(label.under, lettering);
    DrawRuns(upper, lettering, label.x + (label.length - LengthOf(upper)) / 2, label.y, 0.0);
    const double bar = label.y - lettering.height - gap;
    TqDC->line(label.x, bar, label.x + label.length, bar);
    DrawRuns(lower, lettering, label.x + (label.length - LengthOf(lower)) / 2, bar - gap, 0.0);
}

// A number whose decimal point is the surveyed point: whole part and decimals end and begin beside it.
void DrawDecimal(const PlacedLabel& label, const Lettering& lettering) {
    const std::size_t point = label.text.rfind('.');
    const std::string whole = label.text.substr(0, point);
    const std::string decimals = point == std::string::npos ? std::string() : label.text.substr(point + 1);
    const auto before = RunsOf(whole, lettering), after = RunsOf(decimals, lettering);
    const double gap = _To01mm(5), top = label.y + lettering.height * 0.2;
    if (!whole.empty()) DrawRuns(before, lettering, label.x - gap - LengthOf(before), top, 0.0);
    if (!decimals.empty()) DrawRuns(after, lettering, label.x + gap, top, 0.0);
}

}  // namespace

std::vector<TurnedBox> BoxesOf(const PlacedLabel& label, TqNoteLayBase& notes, double clear) {
    const Lettering lettering = LetteringOf(notes, label.rule->note);
    const double h = lettering.height, w = lettering.width;
    const auto box = [&](double x, double y, double length, double height, double degrees) {
        const double a = degrees * kDegree, c = std::cos(a), s = std::sin(a);
        // From the top left corner down, then out by what is kept clear.
        const double lx = -clear, ly = -height - clear;
        return TurnedBox{x + lx * c - ly * s, y + lx * s + ly * c, length + 2 * clear, height + 2 * clear, a};
    };
    std::vector<TurnedBox> boxes;
    for (const Spot& spot : label.spots) boxes.push_back(box(spot.x, spot.y, w, h, spot.degrees));
    if (!boxes.empty()) return boxes;
    const double height = label.under.empty() ? h : 2.0 * (h + _To01mm(10) * kBarGap);
    const double left = label.place == LabelPlace::decimal ? label.x - label.length / 2 : label.x;
    return {box(left, label.y, label.length, height, label.degrees)};
}

void DrawLabels(const std::vector<PlacedLabel>& labels, TqNoteLayBase& notes) {
    device::SetBkMode(TqDC->GetHdc(), TRANSPARENT);
    for (const PlacedLabel& label : labels) {
        const Lettering lettering = LetteringOf(notes, label.rule->note);
        const MapPen pen(label.rule->layer);
        if (!label.under.empty()) {
            DrawFraction(label, lettering);
        } else if (label.place == LabelPlace::decimal) {
            DrawDecimal(label, lettering);
        } else if (!label.spots.empty()) {
            DrawSpread(label.text, lettering, label.spots);
        } else {
            DrawRuns(RunsOf(label.text, lettering), lettering, label.x, label.y, label.degrees);
        }
    }
}

}  // namespace zm::tool
