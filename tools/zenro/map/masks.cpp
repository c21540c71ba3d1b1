#include "tools/zenro/map/masks.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "tools/zenro/map/cells.h"

namespace zm::tool {
namespace {

constexpr double kMostCells = 250000.0;  // of one box; what is larger is looked at in every place
constexpr double kFarthestCell = 1e9;

// The part of the first segment at which the second crosses it; below 0 if it does not.
double CrossingOf(double x1, double y1, double dx, double dy, double u1, double v1, double u2, double v2) {
    const double eu = u2 - u1, ev = v2 - v1, det = dx * ev - dy * eu;
    if (std::fabs(det) < 1e-300) return -1.0;
    const double t = ((u1 - x1) * ev - (v1 - y1) * eu) / det, s = ((u1 - x1) * dy - (v1 - y1) * dx) / det;
    return t >= 0.0 && t <= 1.0 && s >= 0.0 && s <= 1.0 ? t : -1.0;
}

}  // namespace

// False, with nothing done, where they are too many.
template <class Work>
bool Masks::ForCells(const Box& box, const Work& work) const {
    const double c1 = std::floor(box.x1 / m_cell), c2 = std::floor(box.x2 / m_cell);
    const double r1 = std::floor(box.y1 / m_cell), r2 = std::floor(box.y2 / m_cell);
    const double farthest = std::max({std::fabs(c1), std::fabs(c2), std::fabs(r1), std::fabs(r2)});
    if (!(farthest < kFarthestCell && (c2 - c1 + 1.0) * (r2 - r1 + 1.0) <= kMostCells)) return false;
    for (auto c = static_cast<long long>(c1); c <= static_cast<long long>(c2); ++c)
        for (auto r = static_cast<long long>(r1); r <= static_cast<long long>(r2); ++r) work(KeyOfCell(c, r));
    return true;
}

// The buckets that have what lies in a box.
template <class Work>
void Masks::ForBuckets(const Box& box, const Work& work) const {
    work(m_wide);
    const bool few = ForCells(box, [&](std::uint64_t key) {
        const auto found = m_buckets.find(key);
        if (found != m_buckets.end()) work(found->second);
    });
    if (few) return;
    for (const auto& [key, bucket] : m_buckets) work(bucket);
}

void Masks::Add(const Shape& area) {
    if (area.chains.empty() || area.chains.front().size() < 4) return;
    const auto number = static_cast<std::uint32_t>(m_areas.size());
    m_areas.push_back(area);
    if (!ForCells(BoxOf(area.chains.front()), [&](std::uint64_t key) { m_buckets[key].areas.push_back(number); }))
        m_wide.areas.push_back(number);
    for (const Chain& ring : area.chains)
        for (std::size_t i = 0; i + 1 < ring.size(); ++i) {
            const Edge edge{ring.x[i], ring.y[i], ring.x[i + 1], ring.y[i + 1]};
            zm::tool::Box box;
            box.Add(edge.x1, edge.y1);
            box.Add(edge.x2, edge.y2);
            if (!ForCells(box, [&](std::uint64_t key) { m_buckets[key].edges.push_back(edge); }))
                m_wide.edges.push_back(edge);
        }
}

void Masks::Add(const TurnedBox& box) {
    const double c = std::cos(box.radians), s = std::sin(box.radians);
    Shape area;
    area.kind = GeometryKind::area;
    area.chains.emplace_back();
    Chain& ring = area.chains.front();
    const double u[] = {0.0, box.length, box.length, 0.0, 0.0}, v[] = {0.0, 0.0, box.height, box.height, 0.0};
    for (int i = 0; i < 5; ++i) {
        ring.x.push_back(box.x + u[i] * c - v[i] * s);
        ring.y.push_back(box.y + u[i] * s + v[i] * c);
    }
    Add(area);
}

void Masks::Add(const Box& box) {
    Add(TurnedBox{box.x1, box.y1, box.x2 - box.x1, box.y2 - box.y1, 0.0});
}

bool Masks::Covers(double x, double y) const {
    bool covers = false;
    ForBuckets({x, y, x, y}, [&](const Bucket& bucket) {
        covers = covers || std::any_of(bucket.areas.begin(), bucket.areas.end(),
                                       [&](std::uint32_t number) { return zm::tool::Inside(m_areas[number], x, y); });
    });
    return covers;
}

bool Masks::Meets(const Box& box) const {
    return Covers((box.x1 + box.x2) / 2, (box.y1 + box.y2) / 2) || LimitMeets(box);
}

bool Masks::LimitMeets(const Box& box) const {
    bool meets = false;
    ForBuckets(box, [&](const Bucket& bucket) {
        if (meets) return;
        for (const Edge& e : bucket.edges) {
            if (std::max(e.x1, e.x2) < box.x1 || std::min(e.x1, e.x2) > box.x2 || std::max(e.y1, e.y2) < box.y1 ||
                std::min(e.y1, e.y2) > box.y2)
                continue;
            // The edge's box meets; so does the edge if its line has corners of the box on both sides.
            int left = 0, right = 0;
            for (const double x : {box.x1, box.x2})
                for (const double y : {box.y1, box.y2})
                    ((e.x2 - e.x1) * (y - e.y1) - (e.y2 - e.y1) * (x - e.x1) > 0.0 ? left : right) += 1;
            if (left > 0 && right > 0) meets = true;
        }
    });
    return meets;
}

void Masks::Crossings(double x1, double y1, double x2, double y2, std::vector<double>& at) const {
    at.clear();
    Box box;
    box.Add(x1, y1);
    box.Add(x2, y2);
    ForBuckets(box, [&](const Bucket& bucket) {
        for (const Edge& e : bucket.edges) {
            const double t = CrossingOf(x1, y1, x2 - x1, y2 - y1, e.x1, e.y1, e.x2, e.y2);
            if (t >= 0.0) at.push_back(t);
        }
    });
    std::sort(at.begin(), at.end());
}

std::vector<ChainSpan> Masks::SpansOutside(const Chain& chain) const {
    if (chain.size() < 2) return {};
    const ChainPlace end{chain.size() - 2, 1.0};
    if (m_areas.empty()) return {{{}, end}};
    std::vector<ChainSpan> spans;
    ChainPlace from;
    bool covered = Covers(chain.x[0], chain.y[0]);
    std::vector<double> at;
    for (std::size_t i = 0; i + 1 < chain.size(); ++i) {
        const double x1 = chain.x[i], y1 = chain.y[i], dx = chain.x[i + 1] - x1, dy = chain.y[i + 1] - y1;
        Crossings(x1, y1, chain.x[i + 1], chain.y[i + 1], at);
        for (std::size_t k = 0; k < at.size(); ++k) {
            const double t = at[k], next = k + 1 < at.size() ? at[k + 1] : 1.0;
            if (next - t < 1e-9 && k + 1 < at.size()) continue;
            const bool after = Covers(x1 + dx * (t + next) / 2, y1 + dy * (t + next) / 2);
            if (after == covered) continue;
            if (covered)
                from = {i, t};
            else
                spans.push_back({from, {i, t}});
            covered = after;
        }
    }
    if (!covered) spans.push_back({from, end});
    return spans;
}

std::vector<Chain> Masks::Outside(const Chain& chain) const {
    if (m_areas.empty() || chain.size() < 2) return {chain};
    std::vector<Chain> pieces;
    for (const ChainSpan& span : SpansOutside(chain)) pieces.push_back(PieceOf(chain, span));
    return pieces;
}

std::vector<Chain> Masks::Inside(const Chain& chain) const {
    std::vector<Chain> pieces;
    if (m_areas.empty() || chain.size() < 2) return pieces;
    ChainPlace from;
    const auto add = [&](const ChainPlace& to) {
        if (std::pair(from.corner, from.part) < std::pair(to.corner, to.part))
            pieces.push_back(PieceOf(chain, {from, to}));
    };
    for (const ChainSpan& open : SpansOutside(chain)) {
        add(open.from);
        from = open.to;
    }
    add({chain.size() - 2, 1.0});
    return pieces;
}

Chain PieceOf(const Chain& chain, const ChainSpan& span) {
    Chain piece;
    const auto add = [&](const ChainPlace& at) {
        const std::size_t i = at.corner;
        const bool corner = at.part == 0.0 || at.part == 1.0;
        const std::size_t k = at.part == 1.0 ? i + 1 : i;
        piece.x.push_back(corner ? chain.x[k] : chain.x[i] + (chain.x[i + 1] - chain.x[i]) * at.part);
        piece.y.push_back(corner ? chain.y[k] : chain.y[i] + (chain.y[i + 1] - chain.y[i]) * at.part);
    };
    add(span.from);
    for (std::size_t i = span.from.corner + 1; i <= span.to.corner; ++i) add({i, 0.0});
    add(span.to);
    return piece;
}

}  // namespace zm::tool
