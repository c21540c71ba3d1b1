// Families of hatch lines. A line is known by its place u along one side of the box; the polygon's edges are sorted
// into the lines that can meet them, so that no edge is tested against a line that passes it by.
#include "symbol/area/hatch_lines.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>

#include "geometry/exact/crossing.h"
#include "geometry/state.h"
#include "runtime/uses.h"
#include "symbol/paper.h"
#include "symbol/scratch.h"

namespace zm::symbol {
namespace {

constexpr double kLeastExtent = 0.01;  // survey metres
constexpr double kMargin = 1.3;        // survey metres at every scale
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

// One family. Its lines run from one side of the box to the opposite one, line j at u = start + j step on the first
// side and at u + run on the other.
struct Family {
    bool upright;  // from the bottom to the top, u along x; else from left to right, u along y
    double run;    // how far u shifts from side to side
    double slope;  // the same for a unit of the way
    double step;   // above 0
    double low;    // the ends of the box along u
    double high;
    double start;  // the box's middle along u
    double nearSide;
    double farSide;

    double Place(std::int64_t j) const { return start + static_cast<double>(j) * step; }
    Point First(double u) const { return upright ? Point{u, nearSide} : Point{nearSide, u}; }
    Point Second(double u) const { return upright ? Point{u + run, farSide} : Point{farSide, u + run}; }
    // The u of the line through a point.
    double Through(double x, double y) const {
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
    family.slope = family.run / depth;
    family.low = upright ? box.left : box.bottom;
    family.high = upright ? box.right : box.top;
    family.start = (family.low + family.high) / 2.0;
    family.nearSide = upright ? box.bottom : box.left;
    family.farSide = upright ? box.top : box.right;
    const double reach = family.high - family.low + std::fabs(family.run);
    return family.step > 0.0 && reach / family.step < kMostSteps;
}

// Sorts the crossings along the line: neighbours that go the wrong way in x or in y change places.
void SortAlong(const Point& from, geometry::MeetingPoint* p, int n) {
    for (int end = n - 1; end > 0; --end)
        for (int i = 0; i < end; ++i) {
            const geometry::MeetingPoint& a = p[i];
            const geometry::MeetingPoint& b = p[i + 1];
            if ((a.x - from.x) * (b.x - a.x) < 0.0 || (a.y - from.y) * (b.y - a.y) < 0.0) std::swap(p[i], p[i + 1]);
        }
}

// One family being drawn into its store.
class Filling {
 public:
    Filling(int n, const double* xy, const Family& family, double* edges, Store& store, LeftOut& leftOut);

    /// From the middle towards lower u, then from one step beside it towards higher u.
    void Run() {
        Pass(0, -1);
        Pass(1, 1);
    }

 private:
    struct Line {
        geometry::MeetingPoint crossings[kMostCrossings];
        int count;
        int met;  // crossings found, kept or not
    };

    void Pass(std::int64_t first, int direction);
    Line& At(std::int64_t j, int direction);
    void CrossWindow();
    bool Append(std::int64_t j, Line& line);

    int m_n;
    const double* m_xy;
    const Family& m_family;
    double* m_edges;  // of each edge the lowest and highest line number, as reals
    double m_margin = 0.0;
    Store& m_store;
    LeftOut& m_leftOut;
    std::int64_t m_first = 0;  // the lines that may meet the polygon
    std::int64_t m_last = -1;
    double m_low = 0.0;  // line numbers of the polygon itself
    double m_high = -1.0;
    int m_hits = 0;
    std::int64_t m_begin = 0;  // the lines whose crossings are known
    int m_size = 0;
    std::array<Line, kWindow> m_lines;
};

Filling::Filling(int n, const double* xy, const Family& family, double* edges, Store& store, LeftOut& leftOut)
    : m_n(n), m_xy(xy), m_family(family), m_edges(edges), m_store(store), m_leftOut(leftOut) {
    const double inverse = 1.0 / family.step;
    const auto number = [&](int i) { return (family.Through(xy[2 * i], xy[2 * i + 1]) - family.start) * inverse; };
    const double first = number(0);
    double low = first;
    double high = first;
    double here = first;
    for (int i = 0; i < n; ++i) {
        const double next = i + 1 < n ? number(i + 1) : first;
        m_edges[2 * i] = std::min(here, next);
        m_edges[2 * i + 1] = std::max(here, next);
        low = std::min(low, next);
        high = std::max(high, next);
        here = next;
    }
    // By so much a line may pass an edge and still count as meeting it: the tolerance of the meeting, and rounding.
    constexpr double kRounding = 1e-12;
    const double largest = std::fabs(family.nearSide) + std::fabs(family.farSide) + std::fabs(family.start) +
                           std::max(std::fabs(low), std::fabs(high)) * family.step;
    const double margin =
        (2.0 * std::fabs(geometry::state().mini) + kRounding * largest) * (1.0 + std::fabs(family.slope)) * inverse;
    if (!(std::fabs(low) < kMostSteps) || !(std::fabs(high) < kMostSteps) || !(margin < kMostSteps)) return;
    m_margin = margin;
    m_low = low;
    m_high = high;
    m_first = static_cast<std::int64_t>(std::ceil(low - margin));
    m_last = static_cast<std::int64_t>(std::floor(high + margin));
}

// Line after line in one direction, until one misses the polygon and has left the box, or the cap is reached.
void Filling::Pass(std::int64_t first, int direction) {
    const auto beyond = [&](std::int64_t j) {
        const double end = m_family.Place(j) + m_family.run;
        return direction < 0 ? end < m_family.low : end > m_family.high;
    };
    const auto inReach = [&](std::int64_t j) { return direction < 0 ? j >= m_first : j <= m_last; };
    // All lines ahead of the polygon are misses; they are passed over, unless one of them ends the pass.
    std::int64_t j = direction < 0 ? std::min(first, m_last) : std::max(first, m_first);
    if (!inReach(j) || (j != first && beyond(j - direction))) return;
    for (; inReach(j) && m_hits < kMostHits; j += direction)
        if (!Append(j, At(j, direction)) && beyond(j)) return;
    if (m_hits < kMostHits) return;
    const auto end = static_cast<std::int64_t>(direction < 0 ? std::ceil(m_low) : std::floor(m_high));
    m_leftOut.lines += std::max<std::int64_t>((end - j) * direction + 1, 0);
}

// The crossings of a line. They are found for a whole window of lines at once, all of them if they fit.
Filling::Line& Filling::At(std::int64_t j, int direction) {
    if (j < m_begin || j >= m_begin + m_size) {
        if (m_last - m_first < kWindow)
            m_begin = m_first;
        else
            m_begin = direction < 0 ? std::max(j - (kWindow - 1), m_first) : j;
        m_size = static_cast<int>(std::min<std::int64_t>(kWindow, m_last - m_begin + 1));
        CrossWindow();
    }
    return m_lines[static_cast<std::size_t>(j - m_begin)];
}

// Edge by edge in the order of the polygon, the closing edge last.
void Filling::CrossWindow() {
    for (int i = 0; i < m_size; ++i) {
        m_lines[static_cast<std::size_t>(i)].count = 0;
        m_lines[static_cast<std::size_t>(i)].met = 0;
    }
    // A line that passes both ends of an edge by more than this meets it; a tolerance of metres is no tolerance.
    const double beside = std::fabs(geometry::state().mini) < 1.0 ? m_margin : std::numeric_limits<double>::infinity();
    const auto begin = static_cast<double>(m_begin);
    const double end = begin + m_size - 1.0;
    for (int i = 0; i < m_n; ++i) {
        const double low = std::max(std::ceil(m_edges[2 * i] - m_margin), begin);
        const double high = std::min(std::floor(m_edges[2 * i + 1] + m_margin), end);
        if (!(low <= high)) continue;
        const double surelyFrom = m_edges[2 * i] + beside;
        const double surelyTo = m_edges[2 * i + 1] - beside;
        const int next = i + 1 < m_n ? i + 1 : 0;
        const auto last = static_cast<std::int64_t>(high);
        for (auto j = static_cast<std::int64_t>(low); j <= last; ++j) {
            const double u = m_family.Place(j);
            const Point p0 = m_family.First(u);
            const Point p1 = m_family.Second(u);
            const auto number = static_cast<double>(j);
            geometry::MeetingPoint crossing = {};
            const bool sure = number > surelyFrom && number < surelyTo;
            uses::Count(sure ? uses::hatchSure : uses::hatchAsked);
            if (sure)
                crossing = geometry::Meeting(p0.x, p0.y, p1.x, p1.y, m_xy[2 * i], m_xy[2 * i + 1], m_xy[2 * next],
                                             m_xy[2 * next + 1]);
            else if (Cross_P(crossing.x, crossing.y, p0.x, p0.y, p1.x, p1.y, m_xy[2 * i], m_xy[2 * i + 1],
                             m_xy[2 * next], m_xy[2 * next + 1]) != 0)
                continue;
            Line& line = m_lines[static_cast<std::size_t>(j - m_begin)];
            ++line.met;
            if (line.count < kMostCrossings) line.crossings[line.count++] = crossing;
        }
    }
}

// Pairs up the crossings and appends the pieces inside. False if the line misses the polygon.
bool Filling::Append(std::int64_t j, Line& line) {
    if (line.count == 0) return false;
    ++m_hits;
    if (line.met > line.count) ++m_leftOut.crossings;
    SortAlong(m_family.First(m_family.Place(j)), line.crossings, line.count);
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

// Whether the two families, half turns, run the other way round than they are written.
bool ChangePlaces(double a1, double a2) {
    return IsWholeHalfTurn(a1) || IsWholeHalfTurn(2.0 * a2);
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

bool GridDividesByZero(double a1, double a2) {
    if (ChangePlaces(a1 / 180.0, a2 / 180.0)) std::swap(a1, a2);
    return IsWholeHalfTurn(a1 / 180.0) || IsWholeHalfTurn((a2 - 90.0) / 180.0);
}

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

    // Family A runs from the bottom to the top, family B from left to right. Required: a single family has no second
    // angle, so it always changes places and runs as family B, up to its own vertical.
    int mode = type == 2 ? 1 : 0;
    if (ChangePlaces(a1 / kPi, a2 / kPi)) {
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
