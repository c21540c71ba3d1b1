#include "tools/zenro/map/page.h"

#include <cmath>

namespace zm::tool {

void Page::TurnBy(double degrees, double& x, double& y) const {
    if (degrees == 0.0) return;
    const double a = degrees * 3.141592653589793 / 180.0, s = std::sin(a), c = std::cos(a);
    const double cx = (sheet.x1 + sheet.x2) / 2.0, cy = (sheet.y1 + sheet.y2) / 2.0;
    const double dx = x - cx, dy = y - cy;
    x = cx + dx * c - dy * s;
    y = cy + dx * s + dy * c;
}

Shape Page::ClippedArea() const {
    Shape area{GeometryKind::area, {clip.front()}};
    Chain& ring = area.chains.front();
    if (ring.x.front() != ring.x.back() || ring.y.front() != ring.y.back()) {
        ring.x.push_back(ring.x.front());
        ring.y.push_back(ring.y.front());
    }
    return area;
}

Box SheetAround(const Box& data, double scale) {
    const double step = 0.01 * scale;
    Box sheet;
    sheet.x1 = std::floor(data.x1 / step) * step;
    sheet.y1 = std::floor(data.y1 / step) * step;
    sheet.x2 = std::ceil(data.x2 / step) * step;
    sheet.y2 = std::ceil(data.y2 / step) * step;
    if (sheet.x2 - sheet.x1 < step) sheet.x2 = sheet.x1 + step;
    if (sheet.y2 - sheet.y1 < step) sheet.y2 = sheet.y1 + step;
    return sheet;
}

double ScaleFor(const Box& data) {
    constexpr double kLargestSheet = 0.6;  // metres of paper
    const double side = std::max(data.x2 - data.x1, data.y2 - data.y1);
    double last = 500.0;
    for (const double scale : {500.0, 1000.0, 2000.0, 5000.0, 10000.0, 25000.0, 50000.0, 100000.0, 250000.0, 500000.0,
                               1000000.0, 5000000.0, 20000000.0}) {
        last = scale;
        if (side / scale <= kLargestSheet) break;
    }
    return last;
}

}  // namespace zm::tool
