#include "tools/zenro/map/frame.h"

#include <algorithm>
#include <cmath>
#include <string_view>
#include <utility>
#include <vector>

#include "draw/device.h"
#include "tools/kit/text.h"
#include "tools/zenro/map/graticule_frame.h"
#include "tools/zenro/map/map_pen.h"
#include "tools/zenro/map/margins.h"
#include "tools/zenro/map/shapes.h"
#include "zenromath/draw.h"
#include "zenromath/runtime.h"

namespace zm::tool {
namespace {

// Lengths in millimetres of paper, as large-scale sheets have them.
constexpr double kGridStep = 100.0;
constexpr double kCross = 5.0;         // half the length of a grid cross
constexpr double kLeastOfCross = 1.0;  // what remains of a stroke and is shorter is left out
constexpr double kTick = 5.0;          // of a grid line, inside the neat line
constexpr double kCoordinateHeight = 2.5;
constexpr double kSquare = 1.0;  // width to height of Chinese characters
constexpr int kFrameLayer = 999;
constexpr double kMostGridLines = 400.0;

}  // namespace

int FrameCode() {
    return GetLayerName(kFrameLayer) != nullptr ? kFrameLayer : 1;
}

namespace {

// A dash in the midst of letters and digits, as in the number of a standard, is set as a hyphen: as a full character it
// would stand apart from the narrow ones before it.
std::string WithHyphens(std::string utf8) {
    static const std::string kDash = "\xE2\x80\x94";
    const auto narrow = [&](std::size_t at) { return at < utf8.size() && static_cast<unsigned char>(utf8[at]) < 0x80; };
    for (std::size_t at = utf8.find(kDash); at != std::string::npos; at = utf8.find(kDash, at + 1))
        if (at > 0 && narrow(at - 1) && narrow(at + kDash.size())) utf8.replace(at, kDash.size(), "-");
    return utf8;
}

// How long a run comes out: blanks, points and strokes are half as wide as digits, m and w wider by half.
double SetLength(const Run& run) {
    if (run.text.empty() || static_cast<unsigned char>(run.text.front()) >= 0x80) return run.length();
    const auto count = [&](std::string_view of) {
        return std::count_if(run.text.begin(), run.text.end(),
                             [&](char c) { return of.find(c) != std::string_view::npos; });
    };
    return run.length() + 0.5 * run.width * static_cast<double>(count("mwMW") - count(" .,:;-/'|()il"));
}

}  // namespace

// Text whose middle height is at y.
void PutText(const Page& page, TqNoteLayBase& notes, const std::string& utf8, double height, double x, double y,
             Align align, double degrees) {
    int lost = 0;
    Lettering lettering;
    lettering.fontNumber = notes.Fontn('0');
    lettering.height = page.Ground(height);
    lettering.width = lettering.height * kSquare;
    const auto runs = RunsOf(ToLibraryText(WithHyphens(utf8), '?', lost), lettering);
    const double a = degrees * 3.141592653589793 / 180.0, c = std::cos(a), s = std::sin(a);
    double length = 0.0;
    for (const Run& run : runs) length += SetLength(run);
    const double back = align == Align::left ? 0.0 : length * (align == Align::centre ? 0.5 : 1.0);
    const double up = lettering.height / 2;
    x -= back * c + up * s;
    y -= back * s - up * c;
    for (const Run& run : runs) {
        DrawRuns({run}, lettering, x, y, degrees);
        x += SetLength(run) * c;
        y += SetLength(run) * s;
    }
}

void DrawRectangle(double x1, double y1, double x2, double y2) {
    double x[] = {x1, x2, x2, x1, x1}, y[] = {y1, y1, y2, y2, y1};
    TqDC->lines(5, x, y);
}

namespace {

// The grid lines across a stretch, ends included where they fall on it.
std::vector<double> GridLines(double from, double to, double step) {
    std::vector<double> lines;
    if ((to - from) / step > kMostGridLines) return lines;
    for (double v = std::ceil(from / step - 1e-9) * step; v <= to + step * 1e-9; v += step) lines.push_back(v);
    return lines;
}

int DecimalsOf(double metres) {
    for (int decimals = 0; decimals < 3; ++decimals) {
        const double unit = 1000.0 / std::pow(10.0, decimals);
        if (std::fabs(metres / unit - std::round(metres / unit)) < 1e-6) return decimals;
    }
    return 3;
}

}  // namespace

int KilometreDecimals(const Page& page) {
    const int usual = page.scale <= 500.0 ? 2 : page.scale <= 2000.0 ? 1 : 0;
    const Box& b = page.sheet;
    return std::max({usual, DecimalsOf(b.x1), DecimalsOf(b.y1), DecimalsOf(b.x2), DecimalsOf(b.y2)});
}

std::string Kilometres(double metres, int decimals, bool whole) {
    double km = metres / 1000.0;
    if (!whole) km = std::fmod(km, 100.0);
    std::string text = Fixed(km, decimals);
    if (!whole && km >= 0.0 && km < 10.0 && metres >= 100000.0) text.insert(0, 1, '0');
    return text;
}

namespace {

// The most that a number in digits comes out long, whatever the font, millimetres of paper; its point is half as wide.
double LengthOf(const std::string& number) {
    constexpr double kDigit = 0.6 * kCoordinateHeight;
    const auto points = std::count(number.begin(), number.end(), '.');
    return kDigit * (static_cast<double>(number.size()) - 0.5 * static_cast<double>(points));
}

void DrawCoordinates(const Page& page, TqNoteLayBase& notes) {
    const Box& b = page.sheet;
    const double step = page.Ground(kGridStep), gap = page.Ground(kOuterFrame) / 2;
    const int decimals = std::max(KilometreDecimals(page), DecimalsOf(step));
    constexpr double kFromCorner = 1.0, kApart = 0.5, kLeastMargin = 12.0;  // millimetres of paper
    const double margin = page.Ground(kLeastMargin);
    // Sheets with odd corners have long numbers there, and the next one keeps away from them.
    const auto beside = [&](double corner, double line) {
        return page.Ground(std::max(kLeastMargin, kFromCorner + LengthOf(Kilometres(corner, decimals, true)) + kApart +
                                                      LengthOf(Kilometres(line, decimals, false)) / 2.0));
    };
    const auto put = [&](double value, bool whole, double x, double y, double degrees) {
        PutText(page, notes, Kilometres(value, decimals, whole), kCoordinateHeight, x, y, Align::centre, degrees);
    };
    for (const double v : GridLines(b.x1, b.x2, step)) {
        if (v - b.x1 < beside(b.x1, v) || b.x2 - v < beside(b.x2, v)) continue;
        put(v, false, v, b.y1 - gap, 0.0);
        put(v, false, v, b.y2 + gap, 0.0);
    }
    for (const double v : GridLines(b.y1, b.y2, step)) {
        if (v - b.y1 < margin || b.y2 - v < margin) continue;
        put(v, false, b.x1 - gap, v, 90.0);
        put(v, false, b.x2 + gap, v, 90.0);
    }
    const double in = page.Ground(kFromCorner), low = page.Ground(kCoordinateHeight / 2 + 0.8);
    for (const double y : {b.y1 - gap, b.y2 + gap}) {
        PutText(page, notes, Kilometres(b.x1, decimals, true), kCoordinateHeight, b.x1 + in, y, Align::left);
        PutText(page, notes, Kilometres(b.x2, decimals, true), kCoordinateHeight, b.x2 - in, y, Align::right);
    }
    // Between the neat line and the frame, smaller where a number is longer than that.
    const auto fitted = [&](double value, double x, double y) {
        const std::string text = Kilometres(value, decimals, true);
        const double room = (kOuterFrame - 2.0 * kFromCorner) / LengthOf(text);
        PutText(page, notes, text, kCoordinateHeight * std::min(1.0, room), x, y, Align::right);
    };
    for (const double x : {b.x1 - in, b.x2 + page.Ground(kOuterFrame) - in}) {
        fitted(b.y1, x, b.y1 + low);
        fitted(b.y2, x, b.y2 - low);
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

// A stroke of a grid cross or a tick, and the middle of the cross or the place on the neat line.
struct GridStroke {
    Chain chain;
    double x, y;
};

// What is cut off from its cross or from the neat line is no sign any more, only a stub beside a house.
bool HoldsOn(const GridStroke& stroke, const Chain& piece) {
    const double x = stroke.x, y = stroke.y;
    return (piece.x.front() - x) * (piece.x.back() - x) + (piece.y.front() - y) * (piece.y.back() - y) <= 0.0;
}

// At the neat line, inside it.
std::vector<GridStroke> GridTicks(const Page& page) {
    std::vector<GridStroke> strokes;
    if (page.graticule || page.rotation != 0.0) return strokes;
    const Box& b = page.sheet;
    const double step = page.Ground(kGridStep), tick = page.Ground(kTick);
    const auto add = [&](double x, double y, double dx, double dy) {
        strokes.push_back({{{x, x + dx * tick}, {y, y + dy * tick}}, x, y});
    };
    for (const double v : GridLines(b.x1, b.x2, step)) {
        if (v - b.x1 < step * 1e-6 || b.x2 - v < step * 1e-6) continue;
        add(v, b.y1, 0.0, 1.0);
        add(v, b.y2, 0.0, -1.0);
    }
    for (const double v : GridLines(b.y1, b.y2, step)) {
        if (v - b.y1 < step * 1e-6 || b.y2 - v < step * 1e-6) continue;
        add(b.x1, v, 1.0, 0.0);
        add(b.x2, v, -1.0, 0.0);
    }
    return strokes;
}

std::vector<GridStroke> GridCrosses(const Page& page) {
    const double step = page.Ground(kGridStep), half = page.Ground(kCross);
    Box grid;  // what the sheet covers of the unturned grid
    for (const double x : {page.sheet.x1, page.sheet.x2})
        for (const double y : {page.sheet.y1, page.sheet.y2}) {
            double gx = x, gy = y;
            page.TurnBack(gx, gy);
            grid.Add(gx, gy);
        }
    const double edge = page.Ground(0.5);
    std::vector<GridStroke> strokes;
    const Shape map = page.graticule ? page.ClippedArea() : Shape{};
    for (const double gx : GridLines(grid.x1, grid.x2, step))
        for (const double gy : GridLines(grid.y1, grid.y2, step)) {
            double x = gx, y = gy;
            page.Turn(x, y);
            if (x < page.sheet.x1 + edge || x > page.sheet.x2 - edge || y < page.sheet.y1 + edge ||
                y > page.sheet.y2 - edge)
                continue;
            if (page.graticule && !Inside(map, x, y)) continue;
            for (Chain stroke : {Chain{{gx - half, gx + half}, {gy, gy}}, Chain{{gx, gx}, {gy - half, gy + half}}}) {
                page.Turn(stroke);
                strokes.push_back({std::move(stroke), x, y});
            }
        }
    return strokes;
}

}  // namespace

std::vector<Chain> OpenCrosses(const Page& page, const Masks& masks) {
    const double least = page.Ground(kLeastOfCross);
    std::vector<Chain> open;
    for (const auto& strokes : {GridCrosses(page), GridTicks(page)})
        for (const GridStroke& stroke : strokes)
            for (Chain& piece : masks.Outside(stroke.chain))
                if (LengthOf(piece) >= least && HoldsOn(stroke, piece)) open.push_back(std::move(piece));
    return open;
}

void DrawCrosses(const Page& page, const Masks& masks) {
    const WidthPen pen(page, kNeatWidth, FrameCode());
    for (const Chain& stroke : OpenCrosses(page, masks))
        TqDC->line(stroke.x.front(), stroke.y.front(), stroke.x.back(), stroke.y.back());
}

void DrawFrame(const Page& page, const FrameTexts& texts, TqNoteLayBase& notes) {
    const int docut = TqDC->SetDoCut(0);
    device::SetBkMode(TqDC->GetHdc(), TRANSPARENT);
    if (page.graticule) {
        DrawGraticuleFrame(page, texts.outerWidth, notes);
        DrawMargins(page, texts, notes);
        TqDC->SetDoCut(docut);
        return;
    }
    const Box& b = page.sheet;
    // The inner edge of the outer line is so far from the neat line.
    const double out = page.Ground(kOuterFrame + texts.outerWidth / 2);
    {
        const WidthPen pen(page, texts.outerWidth, FrameCode());
        DrawRectangle(b.x1 - out, b.y1 - out, b.x2 + out, b.y2 + out);
    }
    const WidthPen pen(page, kNeatWidth, FrameCode());
    DrawRectangle(b.x1, b.y1, b.x2, b.y2);
    DrawCorners(page);
    if (page.rotation == 0.0) DrawCoordinates(page, notes);
    DrawMargins(page, texts, notes);
    TqDC->SetDoCut(docut);
}

}  // namespace zm::tool
