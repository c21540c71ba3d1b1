#include "tools/zenro/map/shapes.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <queue>

#include "zenromath/geometry.h"

namespace zm::tool {

std::vector<double> Crossings(const Shape& shape, double y) {
    std::vector<double> xs;
    for (const Chain& ring : shape.chains)
        for (std::size_t i = 0; i + 1 < ring.size(); ++i) {
            const double y1 = ring.y[i], y2 = ring.y[i + 1];
            if ((y1 > y) == (y2 > y)) continue;
            xs.push_back(ring.x[i] + (ring.x[i + 1] - ring.x[i]) * (y - y1) / (y2 - y1));
        }
    std::sort(xs.begin(), xs.end());
    return xs;
}

bool WidestStretch(const Shape& shape, double y, double& middle, double& width) {
    const std::vector<double> xs = Crossings(shape, y);
    width = -1.0;
    for (std::size_t i = 0; i + 1 < xs.size(); i += 2)
        if (xs[i + 1] - xs[i] > width) {
            width = xs[i + 1] - xs[i];
            middle = (xs[i] + xs[i + 1]) / 2.0;
        }
    return width > 0.0;
}

double LengthOf(const Chain& chain) {
    double length = 0.0;
    for (std::size_t i = 0; i + 1 < chain.size(); ++i)
        length += std::hypot(chain.x[i + 1] - chain.x[i], chain.y[i + 1] - chain.y[i]);
    return length;
}

void PointAlong(const Chain& chain, double distance, double& x, double& y, double& direction) {
    for (std::size_t i = 0; i + 1 < chain.size(); ++i) {
        const double dx = chain.x[i + 1] - chain.x[i], dy = chain.y[i + 1] - chain.y[i], d = std::hypot(dx, dy);
        if (distance > d && i + 2 < chain.size()) {
            distance -= d;
            continue;
        }
        const double t = d > 0.0 ? std::min(1.0, std::max(0.0, distance / d)) : 0.0;
        x = chain.x[i] + t * dx;
        y = chain.y[i] + t * dy;
        direction = std::atan2(dy, dx);
        return;
    }
    x = chain.x.empty() ? 0.0 : chain.x[0];
    y = chain.y.empty() ? 0.0 : chain.y[0];
    direction = 0.0;
}

std::vector<ChainPart> PartsIn(const Chain& chain, const Box& box) {
    std::vector<ChainPart> parts;
    double done = 0.0;
    for (std::size_t i = 0; i + 1 < chain.size(); ++i) {
        const double dx = chain.x[i + 1] - chain.x[i], dy = chain.y[i + 1] - chain.y[i], d = std::hypot(dx, dy);
        double from = 0.0, to = 1.0;  // of the segment
        const auto cut = [&](double at, double by, double low, double high) {
            if (by == 0.0) {
                if (at < low || at > high) to = -1.0;
                return;
            }
            const double first = (low - at) / by, second = (high - at) / by;
            from = std::max(from, std::min(first, second));
            to = std::min(to, std::max(first, second));
        };
        cut(chain.x[i], dx, box.x1, box.x2);
        cut(chain.y[i], dy, box.y1, box.y2);
        if (from <= to) {
            const double begin = done + from * d, end = done + to * d;
            if (!parts.empty() && begin <= parts.back().to)
                parts.back().to = end;
            else
                parts.push_back({begin, end});
        }
        done += d;
    }
    return parts;
}

bool Inside(const Chain& ring, double x, double y) {
    bool inside = false;
    for (std::size_t i = 0; i < ring.size(); ++i) {
        const std::size_t next = i + 1 < ring.size() ? i + 1 : 0;
        const double y1 = ring.y[i], y2 = ring.y[next];
        if ((y1 > y) == (y2 > y)) continue;
        if (ring.x[i] + (ring.x[next] - ring.x[i]) * (y - y1) / (y2 - y1) > x) inside = !inside;
    }
    return inside;
}

bool Inside(const Shape& shape, double x, double y) {
    bool inside = false;
    for (const Chain& ring : shape.chains)
        if (Inside(ring, x, y)) inside = !inside;
    return inside;
}

double TurnOf(const Chain& ring) {
    double twice = 0.0;
    for (std::size_t i = 0; i + 1 < ring.size(); ++i)
        twice += (ring.x[i] - ring.x[0]) * (ring.y[i + 1] - ring.y[0]) -
                 (ring.x[i + 1] - ring.x[0]) * (ring.y[i] - ring.y[0]);
    return twice;
}

double AreaOf(const Shape& shape) {
    double all = 0.0;
    for (std::size_t k = 0; k < shape.chains.size(); ++k)
        all += (k == 0 ? 0.5 : -0.5) * std::fabs(TurnOf(shape.chains[k]));
    return all;
}

Chain Reversed(const Chain& chain) {
    return {{chain.x.rbegin(), chain.x.rend()}, {chain.y.rbegin(), chain.y.rend()}};
}

Chain SmoothCurve(const Chain& chain) {
    Chain points = chain;
    const int n = static_cast<int>(points.size());
    std::vector<double> pairs(2 * (1 + 5 * points.size()));
    int count = 0;
    SplineToPoints(n, points.x.data(), points.y.data(), pairs.data(), &count);
    Chain curve;
    for (int i = 0; i < count; ++i) {
        curve.x.push_back(pairs[2 * static_cast<std::size_t>(i)]);
        curve.y.push_back(pairs[2 * static_cast<std::size_t>(i) + 1]);
    }
    return curve;
}

namespace {

// From a point to the nearest limit; negative outside.
double Clearance(const Shape& shape, double x, double y) {
    double least = std::numeric_limits<double>::infinity();
    for (const Chain& ring : shape.chains)
        for (std::size_t i = 0; i + 1 < ring.size(); ++i) {
            const double dx = ring.x[i + 1] - ring.x[i], dy = ring.y[i + 1] - ring.y[i], d2 = dx * dx + dy * dy;
            const double px = x - ring.x[i], py = y - ring.y[i];
            const double t = d2 > 0.0 ? std::clamp((px * dx + py * dy) / d2, 0.0, 1.0) : 0.0;
            const double ex = px - t * dx, ey = py - t * dy;
            least = std::min(least, ex * ex + ey * ey);
        }
    return Inside(shape, x, y) ? std::sqrt(least) : -std::sqrt(least);
}

// A square cell and the most that a point of it can be clear of the limit.
struct Cell {
    double x, y, half, clear, most;
    bool operator<(const Cell& other) const { return most < other.most; }
};

Cell CellAt(const Shape& shape, double x, double y, double half) {
    const double clear = Clearance(shape, x, y);
    return {x, y, half, clear, clear + half * 1.4142135623730951};
}

}  // namespace

// Cells are halved, the most promising first, until none can be better by a fiftieth.
double InnerPoint(const Shape& shape, double& x, double& y) {
    const Box box = BoxOf(shape.chains.front());
    const double width = box.x2 - box.x1, height = box.y2 - box.y1;
    x = (box.x1 + box.x2) / 2.0;
    y = (box.y1 + box.y2) / 2.0;
    const double half = std::min(width, height) / 2.0;
    if (!(half > 0.0)) return -1.0;
    Cell best = CellAt(shape, x, y, 0.0);
    std::priority_queue<Cell> cells;
    const double step = std::max(2.0 * half, std::max(width, height) / 32.0);
    for (double cx = box.x1 + step / 2; cx < box.x2 + step / 2; cx += step)
        for (double cy = box.y1 + step / 2; cy < box.y2 + step / 2; cy += step)
            cells.push(CellAt(shape, cx, cy, step / 2));
    constexpr int kMostCells = 400;
    for (int i = 0; i < kMostCells && !cells.empty(); ++i) {
        const Cell cell = cells.top();
        cells.pop();
        if (cell.clear > best.clear) best = cell;
        if (cell.most - best.clear <= half * 0.02) continue;
        const double h = cell.half / 2;
        for (const double dx : {-h, h})
            for (const double dy : {-h, h}) cells.push(CellAt(shape, cell.x + dx, cell.y + dy, h));
    }
    x = best.x;
    y = best.y;
    return best.clear;
}

Chain SeamedRing(const Shape& shape) {
    Chain ring = shape.chains.front();
    for (std::size_t h = 1; h < shape.chains.size(); ++h) {
        const Chain& hole = shape.chains[h];
        if (hole.size() < 4) continue;
        // The seam starts at the vertex nearest to the hole's first one.
        std::size_t nearest = 0;
        double least = std::numeric_limits<double>::infinity();
        for (std::size_t i = 0; i < ring.size(); ++i) {
            const double d = std::hypot(ring.x[i] - hole.x[0], ring.y[i] - hole.y[0]);
            if (d < least) {
                least = d;
                nearest = i;
            }
        }
        const auto splice = [&](std::vector<double>& target, const std::vector<double>& inner) {
            std::vector<double> piece(inner);
            piece.push_back(target[nearest]);
            target.insert(target.begin() + static_cast<std::ptrdiff_t>(nearest) + 1, piece.begin(), piece.end());
        };
        splice(ring.x, hole.x);
        splice(ring.y, hole.y);
    }
    return ring;
}

}  // namespace zm::tool
