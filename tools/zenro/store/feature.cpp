#include "tools/zenro/store/feature.h"

#include <algorithm>
#include <cmath>

namespace zm::tool {
namespace {

// Liang and Barsky: does a segment share a point with a box?
bool SegmentTouches(double ax, double ay, double bx, double by, const Box& box) {
    double from = 0.0, to = 1.0;
    const auto cut = [&](double direction, double room) {
        if (direction == 0.0) return room >= 0.0;
        const double t = room / direction;
        if (direction < 0.0)
            from = std::max(from, t);
        else
            to = std::min(to, t);
        return from <= to;
    };
    const double dx = bx - ax, dy = by - ay;
    return cut(-dx, ax - box.x1) && cut(dx, box.x2 - ax) && cut(-dy, ay - box.y1) && cut(dy, box.y2 - ay);
}

bool ChainTouches(const Chain& chain, const Box& box) {
    if (chain.size() == 1) return BoxOf(chain).Meets(box);
    for (std::size_t i = 0; i + 1 < chain.size(); ++i)
        if (SegmentTouches(chain.x[i], chain.y[i], chain.x[i + 1], chain.y[i + 1], box)) return true;
    return false;
}

// Even-odd over all rings.
bool IsInside(const Shape& area, double x, double y) {
    bool inside = false;
    for (const Chain& ring : area.chains)
        for (std::size_t i = 0; i + 1 < ring.size(); ++i) {
            if ((ring.y[i] > y) == (ring.y[i + 1] > y)) continue;
            const double t = (y - ring.y[i]) / (ring.y[i + 1] - ring.y[i]);
            if (x < ring.x[i] + t * (ring.x[i + 1] - ring.x[i])) inside = !inside;
        }
    return inside;
}

}  // namespace

void Box::Add(double x, double y) {
    x1 = std::min(x1, x);
    y1 = std::min(y1, y);
    x2 = std::max(x2, x);
    y2 = std::max(y2, y);
}

void Box::Add(const Box& other) {
    x1 = std::min(x1, other.x1);
    y1 = std::min(y1, other.y1);
    x2 = std::max(x2, other.x2);
    y2 = std::max(y2, other.y2);
}

bool Box::Meets(const Box& other) const {
    return !empty() && !other.empty() && x1 <= other.x2 && other.x1 <= x2 && y1 <= other.y2 && other.y1 <= y2;
}

Box Box::Widened(double by) const {
    return {x1 - by, y1 - by, x2 + by, y2 + by};
}

Box BoxOf(const Chain& chain) {
    Box box;
    for (std::size_t i = 0; i < chain.size(); ++i) box.Add(chain.x[i], chain.y[i]);
    return box;
}

bool Touches(const Shape& shape, const Box& box) {
    if (shape.chains.empty() || !BoxOf(shape.chains.front()).Meets(box)) return false;
    for (const Chain& chain : shape.chains)
        if (ChainTouches(chain, box)) return true;
    return shape.kind == GeometryKind::area && IsInside(shape, (box.x1 + box.x2) / 2, (box.y1 + box.y2) / 2);
}

std::vector<const Use*> UsesOf(const Feature& feature, GeometryKind kind) {
    std::vector<const Use*> uses;
    for (const Use& use : feature.uses) {
        if (use.rule->kind != GeometryKind::any && use.rule->kind != kind) continue;
        if (!use.rule->skip) uses.push_back(&use);
        if (!use.rule->also) break;
    }
    return uses;
}

}  // namespace zm::tool
