#include "draw/clip/polygon_index.h"

#include <cstddef>

#include "geometry/exact/crossing.h"
#include "zenromath/geometry.h"

namespace zm::draw {
namespace {

constexpr int kFewestVertices = 24;         // below, the plain order is as fast
constexpr double kLargestCoordinate = 5e7;  // metres; beyond, rounding comes near the tolerances below
constexpr double kMostRows = 16384.0;       // and columns of the grid
constexpr double kLongestList = 24.0;       // entries in the cells for each edge; longer lists take a coarser grid

// The tolerances of PtInPolyEdge are 1e-7 and 1e-8. What follows is outside them by more than rounding.
constexpr double kOnEdge = 0.9e-7;  // nearer: surely on the boundary
constexpr double kOffEdge = 1e-6;   // farther: surely not on it
constexpr double kHeightDoubt =
    1.3e-7;                            // a vertex at a height that is nearer, but another: the rule for vertices counts
constexpr double kCentreDoubt = 1e-7;  // a cell's centre nearer to an edge's line decides nothing
constexpr double kRounding = 4e-15;    // relative error of a cross value, with room to spare

struct Sides {
    double value;
    double doubt;
    bool Sure() const { return std::fabs(value) > doubt; }
};

// On which side of the line a, b the point (x, y) lies.
Sides SideOf(const PP& a, const PP& b, double x, double y) {
    const double u = (b.x - a.x) * (y - a.y);
    const double v = (b.y - a.y) * (x - a.x);
    return {u - v, kRounding * (std::fabs(u) + std::fabs(v))};
}

double SquaredDistance(const PP& a, const PP& b, double x, double y) {
    const double dx = b.x - a.x;
    const double dy = b.y - a.y;
    const double length = dx * dx + dy * dy;
    const double along = length > 0.0 ? std::clamp(((x - a.x) * dx + (y - a.y) * dy) / length, 0.0, 1.0) : 0.0;
    const double ex = x - (a.x + along * dx);
    const double ey = y - (a.y + along * dy);
    return ex * ex + ey * ey;
}

}  // namespace

// Visits every cell that the segment a, b, widened by the margin on all sides, may touch.
template <class Visit>
void PolygonIndex::VisitCells(const PP& a, const PP& b, double margin, Visit visit) const {
    const PP& low = a.y <= b.y ? a : b;
    const PP& high = a.y <= b.y ? b : a;
    const int firstRow = m_grid.Row(low.y - margin);
    const int lastRow = m_grid.Row(high.y + margin);
    const double dx = high.x - low.x;
    const double dy = high.y - low.y;
    const double left = std::min(a.x, b.x) - margin;
    const double right = std::max(a.x, b.x) + margin;
    if (firstRow == lastRow || !(dy > 0.0)) {
        const int firstColumn = m_grid.Column(left);
        const int lastColumn = m_grid.Column(right);
        for (int row = firstRow; row <= lastRow; ++row)
            for (int column = firstColumn; column <= lastColumn; ++column) visit(row, column);
        return;
    }
    const double slope = dx / dy;
    for (int row = firstRow; row <= lastRow; ++row) {
        const double rowBottom = m_grid.bottom + row * m_grid.cellHeight - margin;
        const double rowTop = rowBottom + m_grid.cellHeight + 2.0 * margin;
        const double from = std::max(rowBottom, low.y);
        const double to = std::min(rowTop, high.y);
        const double x1 = low.x + (from - low.y) * slope;
        const double x2 = low.x + (to - low.y) * slope;
        const int firstColumn = m_grid.Column(std::max(std::min(x1, x2) - margin, left));
        const int lastColumn = m_grid.Column(std::min(std::max(x1, x2) + margin, right));
        for (int column = firstColumn; column <= lastColumn; ++column) visit(row, column);
    }
}

void PolygonIndex::Build(const PP* polygon, int n) {
    if (n < kFewestVertices) return;
    double left = polygon[0].x;
    double right = left;
    double bottom = polygon[0].y;
    double top = bottom;
    for (int i = 0; i < n; ++i) {
        const PP& p = polygon[i];
        if (!(std::fabs(p.x) <= kLargestCoordinate) || !(std::fabs(p.y) <= kLargestCoordinate)) return;
        left = std::min(left, p.x);
        right = std::max(right, p.x);
        bottom = std::min(bottom, p.y);
        top = std::max(top, p.y);
        m_largest = std::max({m_largest, std::fabs(p.x), std::fabs(p.y)});
    }
    const double width = right - left;
    const double height = top - bottom;
    m_size = width + height;
    m_shortest = m_size;
    for (int i = 0; i < n; ++i) {
        const PP& a = polygon[i];
        const PP& b = polygon[i + 1 < n ? i + 1 : 0];
        const double length = std::fabs(b.x - a.x) + std::fabs(b.y - a.y);
        // Edges without length meet nothing.
        if (length > 0.0) m_shortest = std::min(m_shortest, length / 2.0);
    }
    m_margin = kOffEdge + 1e-14 * m_largest;
    if (!(width > 100.0 * m_margin) || !(height > 100.0 * m_margin)) return;

    double cells = 2.0 * n;
    do {
        const double cell = std::sqrt(width * height / cells);
        m_grid.left = left;
        m_grid.bottom = bottom;
        m_grid.columns = static_cast<int>(std::clamp(std::ceil(width / cell), 1.0, kMostRows));
        m_grid.rows = static_cast<int>(std::clamp(std::ceil(height / cell), 1.0, kMostRows));
        m_grid.cellWidth = width / m_grid.columns;
        m_grid.cellHeight = height / m_grid.rows;
        m_grid.perWidth = 1.0 / m_grid.cellWidth;
        m_grid.perHeight = 1.0 / m_grid.cellHeight;
        cells /= 4.0;
    } while (!Lay(polygon, n));
    SortHeights(polygon, n);
    MarkCentres(polygon, n);
    m_seen.assign(static_cast<std::size_t>(n), 0);
}

// Lays the edges into the cells; false if the lists become too long for it to be worth while.
bool PolygonIndex::Lay(const PP* polygon, int n) {
    const auto columns = static_cast<std::size_t>(m_grid.columns);
    const std::size_t cells = columns * static_cast<std::size_t>(m_grid.rows);
    const auto forEach = [&](auto visit) {
        for (int i = 0; i < n; ++i)
            VisitCells(polygon[i], polygon[i + 1 < n ? i + 1 : 0], m_margin, [&](int row, int column) {
                visit(static_cast<std::uint32_t>(i),
                      static_cast<std::size_t>(row) * columns + static_cast<std::size_t>(column));
            });
    };
    std::size_t entries = 0;
    m_starts.assign(cells + 1, 0);
    forEach([&](std::uint32_t, std::size_t cell) {
        ++m_starts[cell + 1];
        ++entries;
    });
    if (cells > 4 && static_cast<double>(entries) > kLongestList * n) return false;
    for (std::size_t cell = 0; cell < cells; ++cell) m_starts[cell + 1] += m_starts[cell];
    m_edges.resize(entries);
    std::vector<std::uint32_t> next(m_starts.begin(), m_starts.end() - 1);
    forEach([&](std::uint32_t edge, std::size_t cell) { m_edges[next[cell]++] = edge; });
    return true;
}

void PolygonIndex::SortHeights(const PP* polygon, int n) {
    m_heights.resize(static_cast<std::size_t>(n));
    for (int i = 0; i < n; ++i) m_heights[static_cast<std::size_t>(i)] = polygon[i].y;
    std::sort(m_heights.begin(), m_heights.end());
    m_heights.erase(std::unique(m_heights.begin(), m_heights.end()), m_heights.end());
    const int bands = n;
    m_perBand = bands / (m_heights.back() - m_heights.front());
    m_heightStarts.assign(static_cast<std::size_t>(bands) + 1, 0);
    std::size_t at = 0;
    for (int band = 0; band <= bands; ++band) {
        while (at < m_heights.size() && geometry::CellAt((m_heights[at] - m_grid.bottom) * m_perBand, bands) < band)
            ++at;
        m_heightStarts[static_cast<std::size_t>(band)] = static_cast<std::uint32_t>(at);
    }
    m_heightStarts.back() = static_cast<std::uint32_t>(m_heights.size());
}

// Is there a vertex whose height is another than y, but so near that the rule for vertices on the ray plays a part?
bool PolygonIndex::NearOtherHeight(double y) const {
    const int bands = static_cast<int>(m_heightStarts.size()) - 1;
    const int first = geometry::CellAt((y - kHeightDoubt - m_grid.bottom) * m_perBand, bands);
    const int last = geometry::CellAt((y + kHeightDoubt - m_grid.bottom) * m_perBand, bands);
    const std::size_t end = m_heightStarts[static_cast<std::size_t>(last) + 1];
    for (std::size_t i = m_heightStarts[static_cast<std::size_t>(first)]; i < end; ++i)
        if (m_heights[i] != y && std::fabs(m_heights[i] - y) < kHeightDoubt) return true;
    return false;
}

// Which centres of cells lie inside, row by row: an edge counts from above its lower to its upper end.
void PolygonIndex::MarkCentres(const PP* polygon, int n) {
    const auto columns = static_cast<std::size_t>(m_grid.columns);
    const auto rows = static_cast<std::size_t>(m_grid.rows);
    m_inside.assign(columns * rows, 0);
    std::vector<std::vector<double>> crossings(rows);
    for (int i = 0; i < n; ++i) {
        const PP& a = polygon[i];
        const PP& b = polygon[i + 1 < n ? i + 1 : 0];
        const double low = std::min(a.y, b.y);
        const double high = std::max(a.y, b.y);
        if (low == high) continue;
        const int last = m_grid.Row(high);
        for (int row = m_grid.Row(low); row <= last; ++row) {
            const double y = m_grid.bottom + (row + 0.5) * m_grid.cellHeight;
            if (low < y && y <= high)
                crossings[static_cast<std::size_t>(row)].push_back(a.x + (y - a.y) / (b.y - a.y) * (b.x - a.x));
        }
    }
    for (std::size_t row = 0; row < rows; ++row) {
        auto& xs = crossings[row];
        std::sort(xs.begin(), xs.end());
        std::size_t passed = 0;
        for (std::size_t column = 0; column < columns; ++column) {
            const double x = m_grid.left + (static_cast<double>(column) + 0.5) * m_grid.cellWidth;
            while (passed < xs.size() && xs[passed] < x) ++passed;
            m_inside[row * columns + column] = static_cast<std::uint8_t>(passed & 1U);
        }
    }
}

bool PolygonIndex::Locate(const PP* polygon, int n, double px, double py, int& answer) const {
    if (!IsBuilt() || NearOtherHeight(py)) return false;
    const int row = m_grid.Row(py);
    const int column = m_grid.Column(px);
    const std::size_t cell =
        static_cast<std::size_t>(row) * static_cast<std::size_t>(m_grid.columns) + static_cast<std::size_t>(column);
    const double cx = m_grid.left + (column + 0.5) * m_grid.cellWidth;
    const double cy = m_grid.bottom + (row + 0.5) * m_grid.cellHeight;
    const PP centre = {cx, cy};
    const PP point = {px, py};
    bool inside = m_inside[cell] != 0;
    bool onEdge = false;
    bool doubt = false;
    for (std::uint32_t k = m_starts[cell]; k < m_starts[cell + 1]; ++k) {
        const auto edge = static_cast<int>(m_edges[k]);
        const PP& a = polygon[edge];
        const PP& b = polygon[edge + 1 < n ? edge + 1 : 0];
        if (std::max(a.x, b.x) + kOffEdge >= px && std::min(a.x, b.x) - kOffEdge <= px &&
            std::max(a.y, b.y) + kOffEdge >= py && std::min(a.y, b.y) - kOffEdge <= py) {
            const double squared = SquaredDistance(a, b, px, py);
            if (squared < kOnEdge * kOnEdge)
                onEdge = true;
            else if (squared < kOffEdge * kOffEdge)
                doubt = true;
        }
        if (a.x == b.x && a.y == b.y) continue;
        // Does the edge part the point from the centre?
        const Sides ofCentre = SideOf(a, b, cx, cy);
        const double length = std::fabs(b.x - a.x) + std::fabs(b.y - a.y);
        const Sides ofPoint = SideOf(a, b, px, py);
        const Sides ofA = SideOf(centre, point, a.x, a.y);
        const Sides ofB = SideOf(centre, point, b.x, b.y);
        if (!ofA.Sure() || !ofB.Sure()) {
            doubt = true;
            continue;
        }
        if ((ofA.value > 0.0) == (ofB.value > 0.0)) continue;
        if (!ofCentre.Sure() || std::fabs(ofCentre.value) < kCentreDoubt * length || !ofPoint.Sure()) {
            doubt = true;
            continue;
        }
        if ((ofCentre.value > 0.0) != (ofPoint.value > 0.0)) inside = !inside;
    }
    if (onEdge) {
        answer = -1;
        return true;
    }
    answer = inside ? 1 : 0;
    return !doubt;
}

bool PolygonIndex::Crossings(const PP* polygon, int n, double x1, double y1, double x2, double y2,
                             std::vector<Crossing>& crossings) {
    if (!IsBuilt()) return false;
    const double length = std::fabs(x2 - x1) + std::fabs(y2 - y1);
    const double largest = std::max({m_largest, std::fabs(x1), std::fabs(y1), std::fabs(x2), std::fabs(y2)});
    if (!(largest <= kLargestCoordinate)) return false;
    // The meeting point that Cross_P computes lies on the segment within rounding, and beside the edge by at most what
    // rounding makes of the cross value, so the cells along the segment hold all edges that it can report.
    const double mini = std::fabs(geometry::state().mini);
    const double reach = length + m_size;
    // Edges of a length up to MINI meet nothing.
    const double margin = 4.0 * mini + 1e-14 * largest + 1e-14 * reach * reach / std::max(m_shortest, mini / 2.0);
    if (!(margin < std::min(m_grid.cellWidth, m_grid.cellHeight))) return false;

    crossings.clear();
    if (++m_query == 0) {
        std::fill(m_seen.begin(), m_seen.end(), 0U);
        m_query = 1;
    }
    const geometry::SidesOfBox sides(x1, y1, x2, y2);
    const auto columns = static_cast<std::size_t>(m_grid.columns);
    VisitCells({x1, y1}, {x2, y2}, margin, [&](int row, int column) {
        const std::size_t cell = static_cast<std::size_t>(row) * columns + static_cast<std::size_t>(column);
        for (std::uint32_t k = m_starts[cell]; k < m_starts[cell + 1]; ++k) {
            const std::uint32_t edge = m_edges[k];
            if (m_seen[edge] == m_query) continue;
            m_seen[edge] = m_query;
            const PP& a = polygon[edge];
            const PP& b = polygon[edge + 1 < static_cast<std::uint32_t>(n) ? edge + 1 : 0];
            if (sides.Miss(a.x, a.y, b.x, b.y)) continue;
            double cx = 0.0;
            double cy = 0.0;
            if (Cross_P(cx, cy, x1, y1, x2, y2, a.x, a.y, b.x, b.y) == 0) crossings.push_back({edge, cx, cy});
        }
    });
    std::sort(crossings.begin(), crossings.end(), [](const Crossing& a, const Crossing& b) { return a.edge < b.edge; });
    return true;
}

}  // namespace zm::draw
