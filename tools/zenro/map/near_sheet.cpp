#include "tools/zenro/map/near_sheet.h"

#include <algorithm>

namespace zm::tool {
namespace {

// Narrows the stretch [from, to] of a way to where start + t * run lies between low and high. False if it is nowhere.
bool Narrow(double start, double run, double low, double high, double& from, double& to) {
    if (run == 0.0) return start >= low && start <= high;
    const double a = (low - start) / run, b = (high - start) / run;
    from = std::max(from, std::min(a, b));
    to = std::min(to, std::max(a, b));
    return from <= to;
}

}  // namespace

// After Liang and Barsky, segment by segment.
std::vector<Chain> PiecesWithin(const Chain& chain, const Box& box) {
    std::vector<Chain> pieces;
    Chain piece;
    const auto add = [&piece](double x, double y) {
        piece.x.push_back(x);
        piece.y.push_back(y);
    };
    const auto end = [&] {
        if (piece.size() > 1) pieces.push_back(std::move(piece));
        piece = {};
    };
    for (std::size_t i = 0; i + 1 < chain.size(); ++i) {
        const double x = chain.x[i], y = chain.y[i], dx = chain.x[i + 1] - x, dy = chain.y[i + 1] - y;
        double from = 0.0, to = 1.0;
        if (!Narrow(x, dx, box.x1, box.x2, from, to) || !Narrow(y, dy, box.y1, box.y2, from, to)) {
            end();
            continue;
        }
        if (from > 0.0) end();
        if (piece.size() == 0) from > 0.0 ? add(x + from * dx, y + from * dy) : add(x, y);
        to < 1.0 ? add(x + to * dx, y + to * dy) : add(chain.x[i + 1], chain.y[i + 1]);
        if (to < 1.0) end();
    }
    end();
    return pieces;
}

}  // namespace zm::tool
