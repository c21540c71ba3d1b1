#include "tools/zenro/map/contour_sense.h"

#include <cmath>

#include "tools/zenro/map/cells.h"

namespace zm::tool {
namespace {

constexpr int kFirstContour = 380, kLastContour = 384;
constexpr int kReach = 3;  // cells around a point

}  // namespace

bool IsContour(const Rule& rule) {
    return rule.symbol >= kFirstContour && rule.symbol <= kLastContour;
}

bool IsScarp(const Rule& rule) {
    return (rule.symbol >= 385 && rule.symbol <= 390) || rule.symbol == 392 || rule.symbol == 398;
}

void ContourSense::Add(double x, double y, double height) {
    const long long column = CellOf(x, m_cell), row = CellOf(y, m_cell);
    m_known[KeyOfCell(column, row)].push_back({x, y, height});
}

void ContourSense::Add(const Chain& chain, double height) {
    if (!chain.x.empty()) Add(chain.x[0], chain.y[0], height);
    constexpr int kMostSteps = 1000;
    for (std::size_t i = 0; i + 1 < chain.size(); ++i) {
        const double dx = chain.x[i + 1] - chain.x[i], dy = chain.y[i + 1] - chain.y[i];
        const int steps = static_cast<int>(std::min(kMostSteps - 1.0, std::hypot(dx, dy) / m_cell * 4.0)) + 1;
        for (int k = 1; k <= steps; ++k) Add(chain.x[i] + dx * k / steps, chain.y[i] + dy * k / steps, height);
    }
}

bool ContourSense::Rise(double x, double y, double& gx, double& gy) const {
    const long long column = CellOf(x, m_cell), row = CellOf(y, m_cell);
    double w = 0, sx = 0, sy = 0, sh = 0, xx = 0, xy = 0, yy = 0, xh = 0, yh = 0;
    for (long long c = column - kReach; c <= column + kReach; ++c)
        for (long long r = row - kReach; r <= row + kReach; ++r) {
            const auto found = m_known.find(KeyOfCell(c, r));
            if (found == m_known.end()) continue;
            for (const Known& known : found->second) {
                const double dx = known.x - x, dy = known.y - y, p = 1.0 / (dx * dx + dy * dy + m_cell * m_cell / 4);
                w += p;
                sx += p * dx;
                sy += p * dy;
                sh += p * known.height;
                xx += p * dx * dx;
                xy += p * dx * dy;
                yy += p * dy * dy;
                xh += p * dx * known.height;
                yh += p * dy * known.height;
            }
        }
    if (!(w > 0.0)) return false;
    const double a = xx - sx * sx / w, b = xy - sx * sy / w, c = yy - sy * sy / w, u = xh - sx * sh / w,
                 v = yh - sy * sh / w, det = a * c - b * b;
    if (!(det > 1e-9 * a * c)) return false;
    gx = (u * c - v * b) / det;
    gy = (v * a - u * b) / det;
    return std::hypot(gx, gy) > 1e-6;
}

int ContourSense::UpperSide(const Chain& chain) const {
    double left = 0.0, all = 0.0;
    for (std::size_t i = 0; i + 1 < chain.size(); ++i) {
        const double dx = chain.x[i + 1] - chain.x[i], dy = chain.y[i + 1] - chain.y[i], d = std::hypot(dx, dy);
        double gx = 0.0, gy = 0.0;
        all += d;
        if (d <= 0.0 || !Rise((chain.x[i] + chain.x[i + 1]) / 2, (chain.y[i] + chain.y[i + 1]) / 2, gx, gy)) continue;
        left += (gy * dx - gx * dy) / std::hypot(gx, gy);  // the length times the part of the rise to the left
    }
    constexpr double kClear = 0.3;
    return left > kClear * all ? 1 : left < -kClear * all ? -1 : 0;
}

// Higher ground on a side speaks for it, lower ground for the other, the nearer the louder.
int ContourSense::Uphill(double x, double y, double direction, double height) const {
    const double nx = -std::sin(direction), ny = std::cos(direction);
    const long long column = CellOf(x, m_cell), row = CellOf(y, m_cell);
    double left = 0.0;
    for (long long c = column - kReach; c <= column + kReach; ++c)
        for (long long r = row - kReach; r <= row + kReach; ++r) {
            const auto found = m_known.find(KeyOfCell(c, r));
            if (found == m_known.end()) continue;
            for (const Known& known : found->second) {
                if (std::fabs(known.height - height) < 1e-6) continue;
                const double dx = known.x - x, dy = known.y - y, d2 = dx * dx + dy * dy + 1e-12;
                const double side = (dx * nx + dy * ny) / std::sqrt(d2);
                left += (known.height > height ? side : -side) / d2;
            }
        }
    return left > 0.0 ? 1 : left < 0.0 ? -1 : 0;
}

}  // namespace zm::tool
