// Regions as pixel sets: bands of rectangles, and beside them the outlines that they came from.
#include <algorithm>
#include <cstddef>

#include "zenromath/device.h"

namespace zm {
namespace {

using RectList = std::vector<RECT>;

// Corners are limited to this, so that products stay within 64 bits and a region within some megabytes. It is beyond
// what any view reaches: mapped points lie within 30000 pixels.
constexpr int kCoordinateLimit = 1 << 18;

int Limited(int value) {
    return std::clamp(value, -kCoordinateLimit, kCoordinateLimit);
}

// The smallest integer not below numerator / denominator; denominator positive.
std::int64_t CeilDiv(std::int64_t numerator, std::int64_t denominator) {
    const std::int64_t quotient = numerator / denominator;
    return quotient + (numerator % denominator > 0 ? 1 : 0);
}

// Collects rows of spans into bands: equal neighbours join.
class BandBuilder {
 public:
    /// Adds the spans (left and right in turn, rising) of all rows from top to bottom.
    void Add(int top, int bottom, const std::vector<int>& spans) {
        if (spans.empty() || top >= bottom) {
            m_bandStart = m_rectangles.size();
            return;
        }
        if (JoinsLastBand(top, spans)) {
            for (std::size_t i = m_bandStart; i < m_rectangles.size(); ++i) m_rectangles[i].bottom = bottom;
            return;
        }
        m_bandStart = m_rectangles.size();
        for (std::size_t i = 0; i + 1 < spans.size(); i += 2)
            m_rectangles.push_back({spans[i], top, spans[i + 1], bottom});
    }
    RectList Take() { return std::move(m_rectangles); }

 private:
    bool JoinsLastBand(int top, const std::vector<int>& spans) const {
        if (m_rectangles.size() - m_bandStart != spans.size() / 2) return false;
        for (std::size_t i = m_bandStart, s = 0; i < m_rectangles.size(); ++i, s += 2) {
            const RECT& r = m_rectangles[i];
            if (r.bottom != top || r.left != spans[s] || r.right != spans[s + 1]) return false;
        }
        return true;
    }

    RectList m_rectangles;
    std::size_t m_bandStart = 0;
};

struct Edge {
    int top, bottom;  // rows top <= y < bottom
    std::int64_t x, y, dx, dy;
    int turn;  // +1 downwards, -1 upwards

    int FirstPixelRightOf(int row) const { return static_cast<int>(CeilDiv(x * dy + (row - y) * dx, dy)); }
};

std::vector<Edge> EdgesOf(const std::vector<POINT>& points) {
    std::vector<Edge> edges;
    for (std::size_t i = 0; i < points.size(); ++i) {
        const POINT a = points[i];
        const POINT b = points[(i + 1) % points.size()];
        if (a.y == b.y) continue;
        const POINT& upper = a.y < b.y ? a : b;
        const POINT& lower = a.y < b.y ? b : a;
        edges.push_back({upper.y, lower.y, upper.x, upper.y, static_cast<std::int64_t>(lower.x) - upper.x,
                         static_cast<std::int64_t>(lower.y) - upper.y, a.y < b.y ? 1 : -1});
    }
    std::sort(edges.begin(), edges.end(), [](const Edge& a, const Edge& b) { return a.top < b.top; });
    return edges;
}

struct Crossing {
    int x;
    int turn;
};

// The spans of one row from its crossings; they are sorted here.
void SpansOf(std::vector<Crossing>& crossings, bool winding, std::vector<int>& spans) {
    std::sort(crossings.begin(), crossings.end(), [](const Crossing& a, const Crossing& b) { return a.x < b.x; });
    spans.clear();
    int sum = 0;
    int start = 0;
    for (const Crossing& crossing : crossings) {
        const bool was = winding ? sum != 0 : (sum & 1) != 0;
        sum += winding ? crossing.turn : 1;
        const bool is = winding ? sum != 0 : (sum & 1) != 0;
        if (!was && is) start = crossing.x;
        if (was && !is && start < crossing.x) {
            if (!spans.empty() && spans.back() == start)
                spans.back() = crossing.x;
            else
                spans.insert(spans.end(), {start, crossing.x});
        }
    }
}

// A pixel belongs to a row's span if its own point is not left of the span's left edge and left of its right edge.
RectList Scan(const Region::Outline& outline) {
    const std::vector<Edge> edges = EdgesOf(outline.points);
    BandBuilder bands;
    std::vector<const Edge*> active;
    std::vector<Crossing> crossings;
    std::vector<int> spans;
    std::size_t next = 0;
    int row = edges.empty() ? 0 : edges.front().top;
    while (next < edges.size() || !active.empty()) {
        if (active.empty() && edges[next].top > row) row = edges[next].top;
        while (next < edges.size() && edges[next].top <= row) active.push_back(&edges[next++]);
        crossings.clear();
        for (const Edge* edge : active) crossings.push_back({edge->FirstPixelRightOf(row), edge->turn});
        SpansOf(crossings, outline.winding, spans);
        bands.Add(row, row + 1, spans);
        ++row;
        std::erase_if(active, [row](const Edge* edge) { return edge->bottom <= row; });
    }
    return bands.Take();
}

bool Holds(bool first, bool second, int mode) {
    switch (mode) {
        case RGN_AND:
            return first && second;
        case RGN_OR:
            return first || second;
        case RGN_XOR:
            return first != second;
        case RGN_DIFF:
            return first && !second;
        default:
            return first;
    }
}

// One band of a rectangle list: [begin, end) all have the same top and bottom.
struct Band {
    std::size_t begin = 0;
    std::size_t end = 0;
};

Band BandAt(const RectList& list, std::size_t begin) {
    Band band{begin, begin};
    while (band.end < list.size() && list[band.end].top == list[begin].top) ++band.end;
    return band;
}

// Combines the spans of two bands; an empty band has no pixels.
void CombineSpans(const RectList& a, Band bandA, const RectList& b, Band bandB, int mode, std::vector<int>& spans) {
    spans.clear();
    std::size_t i = 2 * bandA.begin;
    std::size_t j = 2 * bandB.begin;
    const auto edgeOf = [](const RectList& list, std::size_t k) {
        return (k & 1U) == 0 ? list[k / 2].left : list[k / 2].right;
    };
    bool inA = false;
    bool inB = false;
    bool in = false;
    while (i < 2 * bandA.end || j < 2 * bandB.end) {
        const bool moreA = i < 2 * bandA.end;
        const bool moreB = j < 2 * bandB.end;
        int x = 0;
        if (moreA && moreB)
            x = std::min(edgeOf(a, i), edgeOf(b, j));
        else
            x = moreA ? edgeOf(a, i) : edgeOf(b, j);
        while (i < 2 * bandA.end && edgeOf(a, i) == x) {
            inA = !inA;
            ++i;
        }
        while (j < 2 * bandB.end && edgeOf(b, j) == x) {
            inB = !inB;
            ++j;
        }
        const bool now = Holds(inA, inB, mode);
        if (now != in) spans.push_back(x);
        in = now;
    }
}

RectList Combine(const RectList& a, const RectList& b, int mode) {
    std::vector<int> rows;
    for (const RectList* list : {&a, &b})
        for (const RECT& r : *list) rows.insert(rows.end(), {r.top, r.bottom});
    std::sort(rows.begin(), rows.end());
    rows.erase(std::unique(rows.begin(), rows.end()), rows.end());

    BandBuilder bands;
    std::vector<int> spans;
    Band bandA = BandAt(a, 0);
    Band bandB = BandAt(b, 0);
    for (std::size_t k = 0; k + 1 < rows.size(); ++k) {
        const int top = rows[k];
        while (bandA.begin < a.size() && a[bandA.begin].bottom <= top) bandA = BandAt(a, bandA.end);
        while (bandB.begin < b.size() && b[bandB.begin].bottom <= top) bandB = BandAt(b, bandB.end);
        const Band nowA = bandA.begin < a.size() && a[bandA.begin].top <= top ? bandA : Band{};
        const Band nowB = bandB.begin < b.size() && b[bandB.begin].top <= top ? bandB : Band{};
        CombineSpans(a, nowA, b, nowB, mode, spans);
        bands.Add(top, rows[k + 1], spans);
    }
    return bands.Take();
}

}  // namespace

struct Region::Data {
    std::vector<Outline> outlines;
    bool hasOutlines = true;
    // The pixels of a single outline are counted out when they are first asked for: a device that draws figures never
    // asks.
    mutable RectList rectangles;
    mutable bool counted = false;

    const RectList& Pixels() const {
        if (!counted) {
            rectangles = Scan(outlines.front());
            counted = true;
        }
        return rectangles;
    }
};

Region::Region()
    : m_data([] {
          auto data = std::make_shared<Data>();
          data->hasOutlines = false;
          data->counted = true;
          return data;
      }()) {}
Region::Region(std::shared_ptr<const Data> data) : m_data(std::move(data)) {}
Region::Region(const Region&) = default;
// What was moved from stays a region: the data are shared, not taken.
// NOLINTNEXTLINE(performance-move-constructor-init): a copy of the pointer is meant
Region::Region(Region&& other) noexcept : m_data(other.m_data) {}
Region& Region::operator=(const Region&) = default;
Region& Region::operator=(Region&& other) noexcept {
    m_data = other.m_data;
    return *this;
}
Region::~Region() = default;

Region Region::Polygon(const POINT* points, int count, int mode) {
    if (points == nullptr || count < 1) return {};
    auto data = std::make_shared<Data>();
    Outline outline;
    outline.points.assign(points, points + count);
    for (POINT& point : outline.points) point = {Limited(point.x), Limited(point.y)};
    outline.winding = mode == WINDING;
    data->outlines.push_back(std::move(outline));
    return Region(std::move(data));
}

Region Region::Rectangle(int left, int top, int right, int bottom) {
    const int l = Limited(std::min(left, right));
    const int r = Limited(std::max(left, right));
    const int t = Limited(std::min(top, bottom));
    const int b = Limited(std::max(top, bottom));
    auto data = std::make_shared<Data>();
    data->outlines.push_back({{{l, t}, {r, t}, {r, b}, {l, b}}, false});
    if (l < r && t < b) data->rectangles.push_back({l, t, r, b});
    data->counted = true;
    return Region(std::move(data));
}

Region Region::Combined(const Region& first, const Region& second, int mode) {
    if (mode == RGN_COPY) return first;
    auto data = std::make_shared<Data>();
    data->rectangles = Combine(first.Rectangles(), second.Rectangles(), mode);
    data->counted = true;
    data->hasOutlines = mode == RGN_AND && first.m_data->hasOutlines && second.m_data->hasOutlines;
    if (data->hasOutlines) {
        data->outlines = first.m_data->outlines;
        data->outlines.insert(data->outlines.end(), second.m_data->outlines.begin(), second.m_data->outlines.end());
    }
    return Region(std::move(data));
}

int Region::Kind() const {
    const RectList& pixels = m_data->Pixels();
    if (pixels.empty()) return NULLREGION;
    return pixels.size() == 1 ? SIMPLEREGION : COMPLEXREGION;
}

RECT Region::Box() const {
    const RectList& pixels = m_data->Pixels();
    if (pixels.empty()) return {0, 0, 0, 0};
    RECT box = pixels.front();
    for (const RECT& r : pixels) {
        box.left = std::min(box.left, r.left);
        box.right = std::max(box.right, r.right);
        box.bottom = std::max(box.bottom, r.bottom);
    }
    return box;
}

bool Region::Contains(int x, int y) const {
    const RectList& pixels = m_data->Pixels();
    auto at = std::partition_point(pixels.begin(), pixels.end(), [y](const RECT& r) { return r.bottom <= y; });
    for (; at != pixels.end() && at->top <= y; ++at)
        if (at->left <= x && x < at->right) return true;
    return false;
}

const std::vector<RECT>& Region::Rectangles() const {
    return m_data->Pixels();
}

const std::vector<Region::Outline>* Region::Outlines() const {
    return m_data->hasOutlines ? &m_data->outlines : nullptr;
}

}  // namespace zm
