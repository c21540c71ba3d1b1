// Cutting a segment at the boundary of the clip area into pieces with an in-or-out mark.
#include <algorithm>
#include <cstdint>
#include <vector>

#include "draw/clip/polygon.h"
#include "zenromath/draw.h"
#include "zenromath/runtime.h"

namespace {

struct Place {
    double squaredDistance;  // from the first point
    double x;
};

// Makes the pieces between neighbours, the farthest point first, and appends them to the list.
int OrderLines(std::uint8_t m1, std::uint8_t m2, const double* points, int n, CObArray* out) {
    if (n < 1) return 0;
    std::vector<Place> places;
    for (int i = 0; i < n; ++i) {
        const double dx = points[2 * i] - points[0];
        const double dy = points[2 * i + 1] - points[1];
        places.push_back({dx * dx + dy * dy, points[2 * i]});
    }
    std::stable_sort(places.begin(), places.end(),
                     [](const Place& a, const Place& b) { return a.squaredDistance > b.squaredDistance; });
    std::uint8_t mark = m1;
    for (std::size_t i = 0; i + 1 < places.size(); ++i) {
        const double x1 = places[i].x;
        const double x2 = places[i + 1].x;
        // Required: both numbers of an end are its x; this copy is what callers of the function receive.
        auto* piece = new zm::RegionPiece{{x1, x1}, {x2, x2}, mark};
        out->Add(reinterpret_cast<CObject*>(piece));
        mark = static_cast<std::uint8_t>((mark - 1) & 1);
    }
    _LErr(mark == m2 ? 1 : 0, "in out err", "Newdgx", "OrderLines");
    return n - 1;
}

}  // namespace

int CCutArea::rgncutline(double x1, double y1, double x2, double y2, CObArray* out) {
    if (m_docut == 0 || out == nullptr) return 0;
    if (IsPolygon()) {
        std::vector<double> points = {x1, y1};
        const auto m1 = static_cast<std::uint8_t>(cutpoint(x1, y1));
        const auto m2 = static_cast<std::uint8_t>(cutpoint(x2, y2));
        zm::draw::ForEachCrossing(m_polygon, m_polygonSize, x1, y1, x2, y2, [&](double cx, double cy) {
            points.insert(points.end(), {cx, cy});
            return true;
        });
        points.insert(points.end(), {x2, y2});
        return OrderLines(m1, m2, points.data(), static_cast<int>(points.size() / 2), out);
    }
    const int c1 = incode(x1, y1);
    const int c2 = incode(x2, y2);
    // Required: the ends move along the segment of the last cutline, whose fields this function does not set.
    if (c1 != 0) resetEN(x1, y1, c1);
    if (c2 != 0) resetEN(x2, y2, c2);
    const double points[] = {x1, y1, x2, y2};
    return OrderLines(static_cast<std::uint8_t>(c1), static_cast<std::uint8_t>(c2), points, 2, out);
}
