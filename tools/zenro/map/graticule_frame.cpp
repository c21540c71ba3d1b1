#include "tools/zenro/map/graticule_frame.h"

#include <algorithm>
#include <cmath>
#include <vector>

#include "tools/kit/text.h"
#include "tools/zenro/map/frame.h"
#include "tools/zenro/map/map_pen.h"
#include "tools/zenro/map/shapes.h"
#include "zenromath/draw.h"

namespace zm::tool {
namespace {

// Millimetres of paper.
constexpr double kBand = 1.5;  // width of the minute band, inside the outer frame
constexpr double kTick = 5.0, kGridStep = 100.0;
constexpr double kCoordinate = 2.5, kCorner = 2.2;
constexpr double kClear = 12.0;  // from the corners to the first kilometres
constexpr double kUnit = 1e5;    // of a second: the grain of sheet borders

long long Units(double degrees) {
    return std::llround(degrees * 3600.0 * kUnit);
}

// Unit vector to the right of a segment's course: outwards, as the sides run anticlockwise.
PP Outward(const Chain& side, std::size_t segment) {
    const double dx = side.x[segment + 1] - side.x[segment], dy = side.y[segment + 1] - side.y[segment];
    const double length = std::hypot(dx, dy);
    return {dy / length, -dx / length};
}

// A side moved outwards; its ends are square to its end segments.
Chain Moved(const Chain& side, double by) {
    Chain moved;
    for (std::size_t i = 0; i < side.size(); ++i) {
        const PP a = Outward(side, i == 0 ? 0 : i - 1), b = Outward(side, std::min(i, side.size() - 2));
        const double factor = by / (1.0 + a.x * b.x + a.y * b.y);
        moved.x.push_back(side.x[i] + factor * (a.x + b.x));
        moved.y.push_back(side.y[i] + factor * (a.y + b.y));
    }
    return moved;
}

// Where the last segment of one chain and the first of another meet, both prolonged.
PP Meeting(const Chain& one, const Chain& other) {
    const std::size_t n = one.size();
    const double ax = one.x[n - 2], ay = one.y[n - 2], ux = one.x[n - 1] - ax, uy = one.y[n - 1] - ay;
    const double bx = other.x[0], by = other.y[0], vx = other.x[1] - bx, vy = other.y[1] - by;
    const double t = ((bx - ax) * vy - (by - ay) * vx) / (ux * vy - uy * vx);
    return {ax + t * ux, ay + t * uy};
}

// The four sides moved outwards as one closed chain.
Chain Around(const GraticuleEdge& edge, double by) {
    std::vector<Chain> sides;
    for (const Chain& side : edge.sides) sides.push_back(Moved(side, by));
    for (std::size_t i = 0; i < 4; ++i) {
        Chain &one = sides[i], &next = sides[(i + 1) % 4];
        const PP corner = Meeting(one, next);
        one.x.back() = next.x.front() = corner.x;
        one.y.back() = next.y.front() = corner.y;
    }
    Chain whole;
    for (const Chain& side : sides) {
        whole.x.insert(whole.x.end(), side.x.begin(), side.x.end() - 1);
        whole.y.insert(whole.y.end(), side.y.begin(), side.y.end() - 1);
    }
    whole.x.push_back(whole.x.front());
    whole.y.push_back(whole.y.front());
    return whole;
}

void DrawClosed(Chain chain) {
    TqDC->lines(static_cast<int>(chain.size()), chain.x.data(), chain.y.data());
}

// A place on a side by the share of its degrees, and the direction outwards there.
void PlaceOn(const Chain& side, double share, PP& place, PP& outward) {
    const double at = share * static_cast<double>(side.size() - 1);
    const std::size_t i = std::min(static_cast<std::size_t>(std::max(at, 0.0)), side.size() - 2);
    const double t = at - static_cast<double>(i);
    place = {side.x[i] + t * (side.x[i + 1] - side.x[i]), side.y[i] + t * (side.y[i + 1] - side.y[i])};
    outward = Outward(side, i);
}

// Ticks across the minute band at whole steps of latitude or longitude.
void DrawMinutes(const Page& page, const Chain& side, double from, double to) {
    const double paper = LengthOf(side) * 1000.0 / page.scale;
    const long long step = std::llround(GraticuleStep(std::fabs(to - from) * 3600.0, paper) * kUnit);
    const long long a = Units(std::min(from, to)), b = Units(std::max(from, to));
    const double inner = page.Ground(kOuterFrame - kBand), outer = page.Ground(kOuterFrame);
    long long mark = a / step * step;
    if (mark < a) mark += step;
    for (; mark <= b; mark += step) {
        const double share = static_cast<double>(mark - a) / static_cast<double>(b - a);
        PP p, out;
        PlaceOn(side, from < to ? share : 1.0 - share, p, out);
        TqDC->line(p.x + inner * out.x, p.y + inner * out.y, p.x + outer * out.x, p.y + outer * out.y);
    }
}

// Sides of a corner run on to the outer frame, as the corner's lines.
void DrawCornerLines(const Page& page, const GraticuleEdge& edge) {
    const double out = page.Ground(kOuterFrame);
    for (const Chain& side : edge.sides) {
        const std::size_t n = side.size();
        const auto along = [&](std::size_t from, std::size_t to) {
            const double dx = side.x[to] - side.x[from], dy = side.y[to] - side.y[from], l = std::hypot(dx, dy);
            TqDC->line(side.x[to], side.y[to], side.x[to] + dx / l * out, side.y[to] + dy / l * out);
        };
        along(n - 2, n - 1);
        along(1, 0);
    }
}

// Latitude beside the parallel's line, longitude on both sides of the meridian's.
void DrawCornerLabels(const Page& page, const GraticuleEdge& edge, TqNoteLayBase& notes) {
    const int decimals = std::max({DecimalsOfSeconds(edge.south), DecimalsOfSeconds(edge.north),
                                   DecimalsOfSeconds(edge.west), DecimalsOfSeconds(edge.east)});
    const double strip = page.Ground((kOuterFrame - kBand) / 2), row = page.Ground(kCorner / 2 + 0.6),
                 gap = page.Ground(0.8);
    const double room = kOuterFrame - kBand - 1.0;
    const auto fitted = [&](const std::string& text) {
        const double width = static_cast<double>(text.size()) * 2.0 / 3.0;  // a degree sign has two bytes and is wider
        return std::min(kCorner, room / width);
    };
    for (std::size_t i = 0; i < 4; ++i) {  // south-west, south-east, north-east, north-west
        const double x = edge.sides[i].x.front(), y = edge.sides[i].y.front();
        const double left = i == 0 || i == 3 ? -1.0 : 1.0, low = i < 2 ? -1.0 : 1.0;
        const SplitAngle b = SplitDegrees(i < 2 ? edge.south : edge.north, decimals);
        const SplitAngle l = SplitDegrees(left < 0 ? edge.west : edge.east, decimals);
        PutText(page, notes, b.degrees + b.minutes, fitted(b.degrees + b.minutes), x + left * strip, y + row,
                Align::centre);
        PutText(page, notes, b.seconds, fitted(b.seconds), x + left * strip, y - row, Align::centre);
        PutText(page, notes, l.degrees, kCorner, x - gap, y + low * strip, Align::right);
        PutText(page, notes, l.minutes + l.seconds, kCorner, x + gap, y + low * strip, Align::left);
    }
}

// Where a side meets a grid line; false where it does not.
bool MeetGridLine(const Chain& side, bool easting, double value, PP& place) {
    const std::vector<double>&u = easting ? side.x : side.y, &v = easting ? side.y : side.x;
    for (std::size_t i = 0; i + 1 < u.size(); ++i) {
        if ((u[i] - value) * (u[i + 1] - value) > 0.0 || u[i] == u[i + 1]) continue;
        const double t = (value - u[i]) / (u[i + 1] - u[i]), w = v[i] + t * (v[i + 1] - v[i]);
        place = easting ? PP{value, w} : PP{w, value};
        return true;
    }
    return false;
}

// Ticks of grid lines inside the neat line, their kilometres in the strip: whole at the ends of a side and at tens, else
// the last two figures.
void DrawGrid(const Page& page, const GraticuleEdge& edge, TqNoteLayBase& notes) {
    const double step = page.Ground(kGridStep), tick = page.Ground(kTick), strip = page.Ground(kOuterFrame - kBand) / 2;
    const int decimals = step < 999.0 ? 1 : 0;
    for (std::size_t i = 0; i < 4; ++i) {
        const Chain& side = edge.sides[i];
        const bool easting = i % 2 == 0;
        const Box box = BoxOf(side);
        const double from = easting ? box.x1 : box.y1, to = easting ? box.x2 : box.y2;
        std::vector<double> values;
        for (double v = std::ceil(from / step) * step; v <= to; v += step) values.push_back(v);
        const double clear = page.Ground(kClear);
        while (!values.empty() && values.front() < from + clear) values.erase(values.begin());
        while (!values.empty() && values.back() > to - clear) values.pop_back();
        for (const double v : values) {
            PP p;
            if (!MeetGridLine(side, easting, v, p)) continue;
            const double out = i == 0 || i == 3 ? -1.0 : 1.0;
            const bool ten = std::fabs(std::remainder(v, 10000.0)) < 0.5;
            const std::string text = Kilometres(v, decimals, ten || v == values.front() || v == values.back());
            TqDC->line(p.x, p.y, p.x - (easting ? 0.0 : out * tick), p.y - (easting ? out * tick : 0.0));
            PutText(page, notes, text, kCoordinate, p.x + (easting ? 0.0 : out * strip),
                    p.y + (easting ? out * strip : 0.0), Align::centre, easting ? 0.0 : 90.0);
        }
    }
}

}  // namespace

double GraticuleStep(double seconds, double millimetres) {
    constexpr double kLeast = 15.0;
    const double steps[] = {1, 5, 10, 15, 30, 60, 300, 600, 1800, 3600};
    double best = steps[0];
    for (const double step : steps) {
        if (step > 60.0 && millimetres * 60.0 / seconds >= kLeast) break;  // minutes
        if (step > seconds / 2.0) break;
        best = step;
        if (step > 60.0 && millimetres * step / seconds >= kLeast) break;
    }
    return best;
}

int DecimalsOfSeconds(double degrees) {
    const long long units = std::llabs(Units(degrees)) % static_cast<long long>(kUnit);
    return units == 0 ? 0 : units % 10000 == 0 ? 1 : units % 1000 == 0 ? 2 : 3;
}

SplitAngle SplitDegrees(double degrees, int decimals) {
    const long long second = static_cast<long long>(kUnit), all = std::llabs(Units(degrees));
    const long long d = all / (3600 * second), m = all / (60 * second) % 60;
    const auto two = [](const std::string& digits) { return digits.size() < 2 ? "0" + digits : digits; };
    std::string s = Fixed(static_cast<double>(all % (60 * second)) / kUnit, decimals);
    if (s.find('.') == 1 || s.size() == 1) s.insert(0, 1, '0');
    return {(degrees < 0.0 ? "-" : "") + std::to_string(d) + "°", two(std::to_string(m)) + "'", s + "\""};
}

void DrawGraticuleFrame(const Page& page, double outerWidth, TqNoteLayBase& notes) {
    const GraticuleEdge& edge = *page.graticule;
    {
        const WidthPen pen(page, outerWidth, FrameCode());
        DrawClosed(Around(edge, page.Ground(kOuterFrame + outerWidth / 2)));
    }
    const WidthPen pen(page, kNeatWidth, FrameCode());
    DrawClosed(Around(edge, 0.0));
    DrawClosed(Around(edge, page.Ground(kOuterFrame - kBand)));
    DrawCornerLines(page, edge);
    DrawMinutes(page, edge.sides[0], edge.west, edge.east);
    DrawMinutes(page, edge.sides[1], edge.south, edge.north);
    DrawMinutes(page, edge.sides[2], edge.east, edge.west);
    DrawMinutes(page, edge.sides[3], edge.north, edge.south);
    DrawCornerLabels(page, edge, notes);
    if (page.rotation == 0.0) DrawGrid(page, edge, notes);
}

}  // namespace zm::tool
