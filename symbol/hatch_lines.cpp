// Families of hatch lines. A line is known by its place u along one side of the box; the polygon's edges are sorted
// into the lines that can meet them, so that no edge is tested against a line that passes it by.
#include "symbol/hatch_lines.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>

#include "geometry/state.h"
#include "symbol/paper.h"
#include "symbol/scratch.h"

namespace zm::symbol {
namespace {

constexpr double kLeastExtent = 0.01;  // survey metres
constexpr double kMargin = 1.3;        // survey metres at every scale
constexpr double kSameAngle = 1e-6;    // of a fraction of pi
constexpr double kFlat = 1e-9;         // sine or cosine that turns a step into a division by zero
constexpr double kMostSteps = 1e9;     // across a box; a spacing that needs more counts as none
constexpr int kWindow = 128;           // lines worked on together
constexpr int kStoreDoubles = 4 * kMostSegments;

struct Box {
    double left, bottom, right, top;
    double width() const { return right - left; }
    double height() const { return top - bottom; }
};

// The clipped lines of one family.
struct Store {
    double* segments = nullptr;  // kStoreDoubles
    int count = 0;
};

// What the two families have in common: lines run from one side of the box to the opposite one, at u on the first side
// and u + run on the other.
struct Family {
    bool upright;  // from the bottom to the top, u along x; else from left to right, u along y
    double run;    // how far u shifts from side to side
    double step;   // of u, above 0
    double low;    // the ends of the box along u
    double high;
    double start;  // the box's middle along u
    double nearSide;
    double farSide;

    Point First(double u) const { return upright ? Point{u, nearSide} : Point{nearSide, u}; }
    Point Second(double u) const { return upright ? Point{u + run, farSide} : Point{farSide, u + run}; }
    // The u of the line through a point.
    double Through(double x, double y) const {
        const double slope = run / (farSide - nearSide);
        return upright ? x - (y - nearSide) * slope : y - (x - nearSide) * slope;
    }
};

bool MakeFamily(const Box& box, bool upright, double angle, double spacing, Family& family) {
    const double across = upright ? std::sin(angle) : std::cos(angle);
    const double along = upright ? std::cos(angle) : std::sin(angle);
    if (!(std::fabs(across) > kFlat)) return false;
    const double depth = upright ? box.height() : box.width();
    family.upright = upright;
    family.step = spacing / std::fabs(across);
    family.run = along * depth / across;
    family.low = upright ? box.left : box.bottom;
    family.high = upright ? box.right : box.top;
    family.start = (family.low + family.high) / 2.0;
    family.nearSide = upright ? box.bottom : box.left;
    family.farSide = upright ? box.top : box.right;
    const double reach = family.high - family.low + std::fabs(family.run);
    return family.step > 0.0 && reach / family.step < kMostSteps;
}

// As Point, but not set to anything when a window of lines is made.
struct Crossing {
    double x, y;
};

// Sorts the crossings along the line: neighbours that go the wrong way in x or in y change places.
void SortAlong(const Point& from, Crossing* p, int n) {
    for (int end = n - 1; end > 0; --end)
        for (int i = 0; i < end; ++i) {
            const Crossing& a = p[i];
            const Crossing& b = p[i + 1];
            if ((a.x - from.x) * (b.x - a.x) < 0.0 || (a.y - from.y) * (b.y - a.y) < 0.0) std::swap(p[i], p[i + 1]);
        }
}

// One family being drawn into its store.
class Filling {
 public:
    Filling(int n, const double* xy, const Family& family, double* edges, Store& store, LeftOut& leftOut);

    /// From the middle towards lower u, then from one step beside it towards higher u.
    void Run() {
        Pass(m_family.start, -m_family.step);
        Pass(m_family.start + m_family.step, m_family.step);
    }

 private:
    struct Line {
        Crossing crossings[kMostCrossings];
        int count;
        int met;  // crossings found, kept or not
    };

    void Pass(double first, double step);
    void CrossWindow(double first, double step, std::int64_t begin, int size);
    bool Append(double u, Line& line);
    double Place(double first, double step, std::int64_t k) const { return first + static_cast<double>(k) * step; }

    int m_n;
    const double* m_xy;
    const Family& m_family;
    double* m_edges;  // of each edge the range of u that may meet it
    Store& m_store;
    LeftOut& m_leftOut;
    double m_low;  // range of u of the polygon
    double m_high;
    double m_margin;  // by which a line may pass an edge and still count as meeting it
    int m_hits = 0;
    std::array<Line, kWindow> m_lines;
};

Filling::Filling(int n, const double* xy, const Family& family, double* edges, Store& store, LeftOut& leftOut)
    : m_n(n), m_xy(xy), m_family(family), m_edges(edges), m_store(store), m_leftOut(leftOut) {
    constexpr double kRounding = 1e-12;
    const double slope = std::fabs(family.run / (family.farSide - family.nearSide));
    double largest = std::fabs(family.nearSide) + std::fabs(family.farSide);
    const double first = family.Through(xy[0], xy[1]);
    m_low = m_high = first;
    double u = first;
    for (int i = 0; i < n; ++i) {
        const double next = i + 1 < n ? family.Through(xy[2 * i + 2], xy[2 * i + 3]) : first;
        m_edges[2 * i] = std::min(u, next);
        m_edges[2 * i + 1] = std::max(u, next);
        m_low = std::min(m_low, u);
        m_high = std::max(m_high, u);
        u = next;
    }
    largest += std::max(std::fabs(m_low), std::fabs(m_high));
    m_margin = (2.0 * std::fabs(geometry::state().mini) + kRounding * largest) * (1.0 + slope);
}

// Lines first, first + step ... until one misses the polygon and has left the box, or the cap is reached.
void Filling::Pass(double first, double step) {
    const auto beyond = [&](std::int64_t k) {
        const double end = Place(first, step, k) + m_family.run;
        return step < 0.0 ? end < m_family.low : end > m_family.high;
    };
    // The lines that can meet the polygon at all; those before and behind are misses.
    const double a = (step < 0.0 ? m_high + m_margin - first : m_low - m_margin - first) / step;
    const double b = (step < 0.0 ? m_low - m_margin - first : m_high + m_margin - first) / step;
    if (!(b >= 0.0) || !(b < 4.0 * kMostSteps)) return;
    std::int64_t k = std::max<std::int64_t>(static_cast<std::int64_t>(std::ceil(std::max(a, 0.0))), 0);
    const auto last = static_cast<std::int64_t>(std::floor(b));
    if (k > 0 && beyond(k - 1)) return;
    while (k <= last && m_hits < kMostHits) {
        const int size = static_cast<int>(std::min<std::int64_t>(kWindow, last - k + 1));
        CrossWindow(first, step, k, size);
        for (int i = 0; i < size && m_hits < kMostHits; ++i, ++k)
            if (!Append(Place(first, step, k), m_lines[static_cast<std::size_t>(i)]) && beyond(k)) return;
    }
    const double end = std::floor(((step < 0.0 ? m_low : m_high) - first) / step);
    if (m_hits >= kMostHits) m_leftOut.lines += std::max<std::int64_t>(static_cast<std::int64_t>(end) - k + 1, 0);
}

// The crossings of a run of lines, edge by edge in the order of the polygon.
void Filling::CrossWindow(double first, double step, std::int64_t begin, int size) {
    for (int i = 0; i < size; ++i)
        m_lines[static_cast<std::size_t>(i)].count = m_lines[static_cast<std::size_t>(i)].met = 0;
    const double origin = Place(first, step, begin);
    const double inverse = 1.0 / step;
    for (int i = 0; i < m_n; ++i) {
        const double p = (m_edges[2 * i] - m_margin - origin) * inverse;
        const double q = (m_edges[2 * i + 1] + m_margin - origin) * inverse;
        const double low = std::ceil(std::max(std::min(p, q), 0.0));
        const double high = std::min(std::floor(std::max(p, q)), size - 1.0);
        if (!(low <= high)) continue;
        const int j = i + 1 < m_n ? i + 1 : 0;
        for (int line = static_cast<int>(low); line <= static_cast<int>(high); ++line) {
            Line& at = m_lines[static_cast<std::size_t>(line)];
            const double u = Place(first, step, begin + line);
            const Point p0 = m_family.First(u);
            const Point p1 = m_family.Second(u);
            Crossing crossing = {};
            if (Cross_P(crossing.x, crossing.y, p0.x, p0.y, p1.x, p1.y, m_xy[2 * i], m_xy[2 * i + 1], m_xy[2 * j],
                        m_xy[2 * j + 1]) != 0)
                continue;
            ++at.met;
            if (at.count < kMostCrossings) at.crossings[at.count++] = crossing;
        }
    }
}

// Pairs up the crossings and appends the pieces inside. False if the line misses the polygon.
bool Filling::Append(double u, Line& line) {
    if (line.count == 0) return false;
    ++m_hits;
    if (line.met > line.count) ++m_leftOut.crossings;
    SortAlong(m_family.First(u), line.crossings, line.count);
    // An odd crossing, of a line through a vertex, is left without partner.
    for (int i = 0; i + 1 < line.count; i += 2) {
        if (m_store.count == kMostSegments) {
            m_leftOut.segments += (line.count - i) / 2;
            break;
        }
        double* segment = m_store.segments + 4 * m_store.count++;
        segment[0] = line.crossings[i].x;
        segment[1] = line.crossings[i].y;
        segment[2] = line.crossings[i + 1].x;
        segment[3] = line.crossings[i + 1].y;
    }
    return true;
}

bool IsWhole(double value) {
    return std::fabs(value - std::trunc(value)) < kSameAngle;
}

// Appends a store's segments while the count of points is below the limit.
void WriteStore(const Store& store, int limit, int& count, double* out) {
    for (int i = 0; i < store.count && count < limit; ++i, count += 2)
        std::copy_n(store.segments + 4 * i, 4, out + 2 * count);
}

Box BoxOf(int n, const double* xy) {
    Box box = {xy[0], xy[1], xy[0], xy[1]};
    for (int i = 1; i < n; ++i) {
        box.left = std::min(box.left, xy[2 * i]);
        box.right = std::max(box.right, xy[2 * i]);
        box.bottom = std::min(box.bottom, xy[2 * i + 1]);
        box.top = std::max(box.top, xy[2 * i + 1]);
    }
    return box;
}

}  // namespace

int GenerateHatchLines(int n, const double* xy, double a1, double d1, double a2, double d2, int type, int& count,
                       double* out, LeftOut& leftOut) {
    const int capacity = count;
    count = 0;
    if (n < 1 || xy == nullptr) return 0;
    Box box = BoxOf(n, xy);
    // Not-a-numbers fail here too.
    if (!(box.width() >= kLeastExtent) || !(box.height() >= kLeastExtent)) return 0;
    if (!std::isfinite(box.width()) || !std::isfinite(box.height())) return 0;
    box = {box.left - kMargin, box.bottom - kMargin, box.right + kMargin, box.top + kMargin};

    // Family A runs from the bottom to the top, family B from left to right.
    int mode = type == 2 ? 1 : 0;
    if (IsWhole(a1 / kPi) || IsWhole(2.0 * a2 / kPi)) {
        std::swap(a1, a2);
        std::swap(d1, d2);
        if (type == 2) mode = 2;
    }
    // A single family at 90 or 270 degrees has no run from left to right: it takes the other one.
    if (mode == 2 && std::fabs(std::cos(a2)) < kSameAngle) {
        mode = 1;
        a1 = a2;
        d1 = d2;
    }

    const Scratch work(2 * static_cast<std::size_t>(n) + 2 * kStoreDoubles);
    if (work.data() == nullptr) return 0;
    double* edges = work.data() + 2 * kStoreDoubles;
    Store a = {work.data(), 0};
    Store b = {work.data() + kStoreDoubles, 0};
    Family family;
    if (mode < 2 && MakeFamily(box, true, a1, d1, family)) Filling(n, xy, family, edges, a, leftOut).Run();
    if (mode % 2 == 0 && MakeFamily(box, false, a2, d2, family)) Filling(n, xy, family, edges, b, leftOut).Run();

    if (type == 1 || mode == 1) WriteStore(a, capacity - 12, count, out);
    if (type == 1 || mode == 2) WriteStore(b, capacity - 8, count, out);
    out[2 * count] = a.count;
    out[2 * count + 1] = b.count;
    return 1;
}

}  // namespace zm::symbol
