#include "tools/zenro/frame.h"

#include <algorithm>
#include <cmath>
#include <vector>

#include "draw/device.h"
#include "tools/zenro/text.h"
#include "zenromath/draw.h"
#include "zenromath/runtime.h"

namespace zm::tool {
namespace {

// Lengths in millimetres of paper, as large-scale sheets have them.
constexpr double kGridStep = 100.0;
constexpr double kCross = 5.0;        // half the length of a grid cross
constexpr double kTick = 5.0;         // of a grid line, inside the neat line
constexpr double kOuterFrame = 12.0;  // from the neat line
constexpr double kNeatWidth = 0.15, kOuterWidth = 0.5, kThinWidth = 0.1;
constexpr double kCoordinateHeight = 2.4;
constexpr double kTitleHeight = 6.0, kNumberHeight = 3.4, kScaleHeight = 4.0, kSystemHeight = 2.8;
constexpr double kSquare = 0.87;  // width to cell height that makes Chinese characters square
constexpr double kArrowHeight = 12.0;
constexpr int kFrameLayer = 999;
constexpr double kMostGridLines = 400.0;

// A pen of a stated width; in a DWG file, which has no widths, the layer of the frame.
class FramePen {
 public:
    FramePen(const Page& page, double width) : m_layer(LayerCode(), 0, 0), m_pen(0, page.Ground(width), DWORD{0}) {}

 private:
    static int LayerCode() { return GetLayerName(kFrameLayer) != nullptr ? kFrameLayer : -1; }
    CTQPen m_layer, m_pen;
};

enum class Align { left, centre, right };

// Text whose middle height is at y.
void PutText(const Page& page, TqNoteLayBase& notes, const std::string& utf8, double height, double x, double y,
             Align align, double degrees = 0.0) {
    int lost = 0;
    Lettering lettering;
    lettering.fontNumber = notes.Fontn('0');
    lettering.height = page.Ground(height);
    lettering.width = lettering.height * kSquare;
    const auto runs = RunsOf(ToLibraryText(utf8, '?', lost), lettering);
    const double a = degrees * 3.141592653589793 / 180.0, c = std::cos(a), s = std::sin(a);
    const double back = align == Align::left ? 0.0 : LengthOf(runs) * (align == Align::centre ? 0.5 : 1.0);
    const double up = lettering.height / 2;
    DrawRuns(runs, lettering, x - back * c - up * s, y - back * s + up * c, degrees);
}

void Rectangle(double x1, double y1, double x2, double y2) {
    double x[] = {x1, x2, x2, x1, x1}, y[] = {y1, y1, y2, y2, y1};
    TqDC->lines(5, x, y);
}

// The grid lines across a stretch, ends included where they fall on it.
std::vector<double> GridLines(double from, double to, double step) {
    std::vector<double> lines;
    if ((to - from) / step > kMostGridLines) return lines;
    for (double v = std::ceil(from / step - 1e-9) * step; v <= to + step * 1e-9; v += step) lines.push_back(v);
    return lines;
}

int KilometreDecimals(double metres) {
    for (int decimals = 0; decimals < 3; ++decimals) {
        const double unit = 1000.0 / std::pow(10.0, decimals);
        if (std::fabs(metres / unit - std::round(metres / unit)) < 1e-6) return decimals;
    }
    return 3;
}

// Kilometres; between the corners only the last two figures before the point, as on printed sheets.
std::string Kilometres(double metres, int decimals, bool whole) {
    double km = metres / 1000.0;
    if (!whole) km = std::fmod(km, 100.0);
    std::string text = Fixed(km, decimals);
    if (!whole && km >= 0.0 && km < 10.0 && metres >= 100000.0) text.insert(0, 1, '0');
    return text;
}

void DrawCoordinates(const Page& page, TqNoteLayBase& notes) {
    const Box& b = page.sheet;
    const double step = page.Ground(kGridStep), gap = page.Ground(kOuterFrame) / 2;
    const int decimals = std::max({KilometreDecimals(step), KilometreDecimals(b.x1), KilometreDecimals(b.y1),
                                   KilometreDecimals(b.x2), KilometreDecimals(b.y2)});
    const double near = page.Ground(12.0);
    const auto put = [&](double value, bool whole, double x, double y, double degrees) {
        PutText(page, notes, Kilometres(value, decimals, whole), kCoordinateHeight, x, y, Align::centre, degrees);
    };
    for (const double v : GridLines(b.x1, b.x2, step)) {
        if (v - b.x1 < near || b.x2 - v < near) continue;
        put(v, false, v, b.y1 - gap, 0.0);
        put(v, false, v, b.y2 + gap, 0.0);
    }
    for (const double v : GridLines(b.y1, b.y2, step)) {
        if (v - b.y1 < near || b.y2 - v < near) continue;
        put(v, false, b.x1 - gap, v, 90.0);
        put(v, false, b.x2 + gap, v, 90.0);
    }
    const double in = page.Ground(1.0), low = page.Ground(kCoordinateHeight / 2 + 0.8);
    for (const double y : {b.y1 - gap, b.y2 + gap}) {
        PutText(page, notes, Kilometres(b.x1, decimals, true), kCoordinateHeight, b.x1 + in, y, Align::left);
        PutText(page, notes, Kilometres(b.x2, decimals, true), kCoordinateHeight, b.x2 - in, y, Align::right);
    }
    for (const double x : {b.x1 - in, b.x2 + page.Ground(kOuterFrame) - in}) {
        PutText(page, notes, Kilometres(b.y1, decimals, true), kCoordinateHeight, x, b.y1 + low, Align::right);
        PutText(page, notes, Kilometres(b.y2, decimals, true), kCoordinateHeight, x, b.y2 - low, Align::right);
    }
}

void DrawTicks(const Page& page) {
    const Box& b = page.sheet;
    const double step = page.Ground(kGridStep), tick = page.Ground(kTick);
    for (const double v : GridLines(b.x1, b.x2, step)) {
        if (v - b.x1 < step * 1e-6 || b.x2 - v < step * 1e-6) continue;
        TqDC->line(v, b.y1, v, b.y1 + tick);
        TqDC->line(v, b.y2, v, b.y2 - tick);
    }
    for (const double v : GridLines(b.y1, b.y2, step)) {
        if (v - b.y1 < step * 1e-6 || b.y2 - v < step * 1e-6) continue;
        TqDC->line(b.x1, v, b.x1 + tick, v);
        TqDC->line(b.x2, v, b.x2 - tick, v);
    }
}

// The neat line's sides run on to the outer frame, so that the corner coordinates have their corner.
void DrawCorners(const Page& page) {
    const Box& b = page.sheet;
    const double out = page.Ground(kOuterFrame);
    for (const double y : {b.y1, b.y2}) {
        TqDC->line(b.x1 - out, y, b.x1, y);
        TqDC->line(b.x2, y, b.x2 + out, y);
    }
    for (const double x : {b.x1, b.x2}) {
        TqDC->line(x, b.y1 - out, x, b.y1);
        TqDC->line(x, b.y2, x, b.y2 + out);
    }
}

// A slim arrow, its right half dark, at the upper right; it turns with the map.
void DrawNorthArrow(const Page& page, TqNoteLayBase& notes) {
    const double h = page.Ground(kArrowHeight), w = h * 0.16;
    const double cx = page.sheet.x2 + page.Ground(kOuterFrame) - h * 0.7;
    const double cy = page.sheet.y2 + page.Ground(kOuterFrame + 2.0) + h / 2;
    const double a = page.rotation * 3.141592653589793 / 180.0, c = std::cos(a), s = std::sin(a);
    const auto at = [&](double u, double v) { return PP{cx + u * c - v * s, cy + u * s + v * c}; };
    const auto stroke = [&](PP p, PP q) { TqDC->line(p.x, p.y, q.x, q.y); };
    const PP top = at(0, h / 2), foot = at(0, -h / 2 + h * 0.14), left = at(-w, -h / 2), right = at(w, -h / 2);
    stroke(top, left);
    stroke(left, foot);
    stroke(foot, right);
    stroke(right, top);
    stroke(top, foot);
    constexpr int kShades = 9;
    for (int i = 1; i < kShades; ++i) {
        const double t = static_cast<double>(i) / kShades;
        stroke(top, PP{foot.x + (right.x - foot.x) * t, foot.y + (right.y - foot.y) * t});
    }
    const PP north = at(0, h / 2 + page.Ground(2.4));
    PutText(page, notes, "北", 3.0, north.x, north.y, Align::centre, page.rotation);
}

// Kilometres of the south-west corner; a turned sheet has no such number.
std::string SheetNumber(const Page& page) {
    if (page.rotation != 0.0) return {};
    const int decimals = std::max(1, std::max(KilometreDecimals(page.sheet.x1), KilometreDecimals(page.sheet.y1)));
    return Kilometres(page.sheet.y1, decimals, true) + "-" + Kilometres(std::fmod(page.sheet.x1, 1e6), decimals, true);
}

}  // namespace

std::vector<Chain> GridCrosses(const Page& page) {
    const double step = page.Ground(kGridStep), half = page.Ground(kCross);
    Box grid;  // what the sheet covers of the unturned grid
    for (const double x : {page.sheet.x1, page.sheet.x2})
        for (const double y : {page.sheet.y1, page.sheet.y2}) {
            double gx = x, gy = y;
            page.TurnBack(gx, gy);
            grid.Add(gx, gy);
        }
    const double edge = page.Ground(0.5);
    std::vector<Chain> strokes;
    for (const double gx : GridLines(grid.x1, grid.x2, step))
        for (const double gy : GridLines(grid.y1, grid.y2, step)) {
            double x = gx, y = gy;
            page.Turn(x, y);
            if (x < page.sheet.x1 + edge || x > page.sheet.x2 - edge || y < page.sheet.y1 + edge ||
                y > page.sheet.y2 - edge)
                continue;
            for (Chain stroke : {Chain{{gx - half, gx + half}, {gy, gy}}, Chain{{gx, gx}, {gy - half, gy + half}}}) {
                page.Turn(stroke);
                strokes.push_back(std::move(stroke));
            }
        }
    return strokes;
}

void DrawCrosses(const Page& page) {
    const FramePen pen(page, kThinWidth);
    for (const Chain& stroke : GridCrosses(page)) TqDC->line(stroke.x[0], stroke.y[0], stroke.x[1], stroke.y[1]);
}

void DrawFrame(const Page& page, const FrameTexts& texts, TqNoteLayBase& notes) {
    const int docut = TqDC->SetDoCut(0);
    device::SetBkMode(TqDC->GetHdc(), TRANSPARENT);
    const Box& b = page.sheet;
    const double out = page.Ground(kOuterFrame), middle = (b.x1 + b.x2) / 2;
    {
        const FramePen pen(page, kNeatWidth);
        Rectangle(b.x1, b.y1, b.x2, b.y2);
        DrawCorners(page);
        if (page.rotation == 0.0) DrawTicks(page);
    }
    {
        const FramePen pen(page, kOuterWidth);
        Rectangle(b.x1 - out, b.y1 - out, b.x2 + out, b.y2 + out);
    }
    const FramePen pen(page, kThinWidth);
    if (page.rotation == 0.0) DrawCoordinates(page, notes);
    const double top = b.y2 + out, bottom = b.y1 - out;
    PutText(page, notes, texts.number.empty() ? SheetNumber(page) : texts.number, kNumberHeight, middle,
            top + page.Ground(4.2), Align::centre);
    PutText(page, notes, texts.title, kTitleHeight, middle, top + page.Ground(11.5), Align::centre);
    PutText(page, notes, "1:" + Fixed(page.scale, 0), kScaleHeight, middle, bottom - page.Ground(5.5), Align::centre);
    PutText(page, notes, texts.system, kSystemHeight, b.x1 - out, bottom - page.Ground(4.5), Align::left);
    if (!texts.remark.empty())
        PutText(page, notes, texts.remark, kSystemHeight, b.x2 + out, bottom - page.Ground(4.5), Align::right);
    DrawNorthArrow(page, notes);
    TqDC->SetDoCut(docut);
}

}  // namespace zm::tool
