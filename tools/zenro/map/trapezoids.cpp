#include "tools/zenro/map/trapezoids.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <utility>

namespace zm::tool {
namespace {

constexpr double kLowest = 1e-7;  // metres; lower slabs are not cut again, and their trapezoids are left out
// How far two edges must change sides to count as crossing: metres, and parts of the largest coordinate. It is more than what
// coordinates are rounded by, which would else cut edges that lie on each other into slabs without end.
constexpr double kApart = 1e-6, kApartParts = 1e-14;
constexpr std::size_t kLimit = 1;  // the mark of the limit's edges; those of the area have 0

struct Edge {
    double x1, y1, x2, y2;  // upwards
    std::size_t of;
    double At(double y) const { return y <= y1 ? x1 : y >= y2 ? x2 : x1 + (x2 - x1) * ((y - y1) / (y2 - y1)); }
};

void AddEdges(const Chain& ring, std::size_t of, double low, double high, std::vector<Edge>& edges) {
    for (std::size_t i = 0; i + 1 < ring.size(); ++i) {
        Edge e{ring.x[i], ring.y[i], ring.x[i + 1], ring.y[i + 1], of};
        if (e.y1 > e.y2) e = {e.x2, e.y2, e.x1, e.y1, of};
        if (e.y1 < e.y2 && e.y2 > low && e.y1 < high) edges.push_back(e);
    }
}

// Goes upwards through slabs in which no edge begins, ends or crosses another.
class Sweep {
 public:
    Sweep(std::vector<Edge> edges, bool limited) : m_edges(std::move(edges)), m_limited(limited) {}

    std::vector<Trapezoid> Run() {
        for (const Edge& e : m_edges)
            m_apart = std::max({m_apart, std::fabs(e.x1) * kApartParts, std::fabs(e.x2) * kApartParts});
        std::sort(m_edges.begin(), m_edges.end(), [](const Edge& a, const Edge& b) { return a.y1 < b.y1; });
        std::vector<double> ys;
        for (const Edge& e : m_edges) {
            ys.push_back(e.y1);
            ys.push_back(e.y2);
        }
        std::sort(ys.begin(), ys.end());
        ys.erase(std::unique(ys.begin(), ys.end()), ys.end());
        std::size_t next = 0;
        for (std::size_t i = 0; i + 1 < ys.size(); ++i) {
            std::erase_if(m_active, [&](const Crossed& c) { return m_edges[c.edge].y2 <= ys[i]; });
            for (; next < m_edges.size() && m_edges[next].y1 <= ys[i]; ++next) m_active.push_back({next, 0.0, 0.0});
            Slabs(ys[i], ys[i + 1]);
        }
        return std::move(m_found);
    }

 private:
    struct Crossed {
        std::size_t edge;
        double low, high;  // x at both ends of the slab
    };

    // Cuts a slab where edges cross in it.
    void Slabs(double y1, double y2) {
        while (y1 < y2) {
            double top = y2;
            for (;;) {
                Order(y1, top);
                const double crossing = LowestCrossing(y1, top);
                if (!(crossing < top)) break;
                top = crossing;
            }
            Emit(y1, top);
            y1 = top;
        }
    }

    void Order(double y1, double y2) {
        for (Crossed& c : m_active) {
            c.low = m_edges[c.edge].At(y1);
            c.high = m_edges[c.edge].At(y2);
        }
        std::sort(m_active.begin(), m_active.end(), [](const Crossed& a, const Crossed& b) {
            const double left = a.low + a.high, right = b.low + b.high;
            return left < right || (left == right && a.edge < b.edge);
        });
    }

    // Neighbours in the middle of the slab that are the other way round at an end of it cross; y2 where none do.
    double LowestCrossing(double y1, double y2) const {
        double lowest = y2;
        if (y2 - y1 <= kLowest) return lowest;
        for (std::size_t i = 0; i + 1 < m_active.size(); ++i) {
            const double low = m_active[i + 1].low - m_active[i].low, high = m_active[i + 1].high - m_active[i].high;
            if ((low >= -m_apart && high >= -m_apart) || low == high) continue;
            lowest = std::min(lowest, y1 + std::clamp(low / (low - high), 0.0, 1.0) * (y2 - y1));
        }
        return std::max(lowest, y1 + kLowest);
    }

    void Emit(double y1, double y2) {
        bool inArea = false, inLimit = !m_limited;
        const Crossed* left = nullptr;
        std::map<std::pair<std::size_t, std::size_t>, std::size_t> above;
        for (const Crossed& c : m_active) {
            bool& side = m_edges[c.edge].of == kLimit ? inLimit : inArea;
            side = !side;
            if (inArea && inLimit) {
                left = &c;
            } else if (left != nullptr) {
                Put({y1, left->low, c.low, y2, left->high, c.high}, {left->edge, c.edge}, above);
                left = nullptr;
            }
        }
        m_below = std::move(above);
    }

    // One between the edges of one below is that one made taller.
    void Put(const Trapezoid& t, std::pair<std::size_t, std::size_t> edges,
             std::map<std::pair<std::size_t, std::size_t>, std::size_t>& above) {
        const auto same = m_below.find(edges);
        if (same != m_below.end()) {
            Trapezoid& taller = m_found[same->second];
            taller.y2 = t.y2;
            taller.left2 = t.left2;
            taller.right2 = t.right2;
            above.insert(*same);
        } else if (t.right1 - t.left1 > m_apart || t.right2 - t.left2 > m_apart) {
            above.emplace(edges, m_found.size());
            m_found.push_back(t);
        }
    }

    std::vector<Edge> m_edges;
    bool m_limited;
    double m_apart = kApart;
    std::vector<Crossed> m_active;
    std::map<std::pair<std::size_t, std::size_t>, std::size_t> m_below;  // by their edges
    std::vector<Trapezoid> m_found;
};

}  // namespace

std::vector<Trapezoid> TrapezoidsOf(const Shape& area, const Chain& limit) {
    const bool limited = limit.size() > 3;
    double low = -1e300, high = 1e300;
    if (limited) {
        low = *std::min_element(limit.y.begin(), limit.y.end());
        high = *std::max_element(limit.y.begin(), limit.y.end());
    }
    std::vector<Edge> edges;
    for (const Chain& ring : area.chains) AddEdges(ring, 0, low, high, edges);
    AddEdges(limit, kLimit, low, high, edges);
    std::vector<Trapezoid> found = Sweep(std::move(edges), limited).Run();
    std::erase_if(found, [](const Trapezoid& t) { return t.y2 - t.y1 <= kLowest; });
    return found;
}

}  // namespace zm::tool
