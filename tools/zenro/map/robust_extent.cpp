#include "tools/zenro/map/robust_extent.h"

#include <algorithm>
#include <cmath>

namespace zm::tool {
namespace {

constexpr std::size_t kBetween = 16;  // vertices of a chain that are sampled besides its extremes
constexpr std::size_t kFew = 50;
constexpr double kFarOfFew = 1000.0, kFarOfMany = 20.0;  // in widths of the rest
constexpr std::size_t kRare = 1000;                      // one stray in so many

// Settles one axis: what lies outside low and high is a stray's, first and last are the extremes of the rest.
void SettleAxis(std::vector<double>& samples, double limit, double grain, double& low, double& high, double& first,
                double& last) {
    samples.erase(std::remove_if(samples.begin(), samples.end(), [&](double v) { return std::fabs(v) > limit; }),
                  samples.end());
    std::sort(samples.begin(), samples.end());
    low = -limit;
    high = limit;
    const std::size_t n = samples.size();
    if (n >= 5) {
        const std::size_t rare = std::max<std::size_t>(1, n / kRare);
        const double from = samples[rare], to = samples[n - 1 - rare];
        const double far = (n < kFew ? kFarOfFew : kFarOfMany) * std::max(to - from, grain);
        low = std::max(low, from - far);
        high = std::min(high, to + far);
    }
    for (const double v : samples)
        if (v >= low && v <= high) {
            first = std::min(first, v);
            last = std::max(last, v);
        }
    std::vector<double>().swap(samples);
}

}  // namespace

void RobustExtent::Add(std::size_t n, const double* x, const double* y) {
    // The extremes and some vertices between them, each vertex once, so that a stray counts as one.
    std::size_t least[2] = {n, n}, largest[2] = {n, n};
    std::vector<std::size_t> chosen;
    const std::size_t step = std::max<std::size_t>(1, n / kBetween);
    for (std::size_t i = 0; i < n; ++i) {
        if (!std::isfinite(x[i]) || !std::isfinite(y[i])) continue;
        const double* axes[2] = {x, y};
        for (int k = 0; k < 2; ++k) {
            if (least[k] == n || axes[k][i] < axes[k][least[k]]) least[k] = i;
            if (largest[k] == n || axes[k][i] > axes[k][largest[k]]) largest[k] = i;
        }
        if (i % step == 0) chosen.push_back(i);
    }
    if (least[0] == n) return;
    chosen.insert(chosen.end(), {least[0], least[1], largest[0], largest[1]});
    std::sort(chosen.begin(), chosen.end());
    chosen.erase(std::unique(chosen.begin(), chosen.end()), chosen.end());
    for (const std::size_t i : chosen) {
        m_xs.push_back(x[i]);
        m_ys.push_back(y[i]);
    }
}

bool RobustExtent::Middle(double& x, double& y) {
    if (m_xs.empty()) return false;
    const auto middle = [](std::vector<double>& samples) {
        const auto at = samples.begin() + static_cast<std::ptrdiff_t>(samples.size() / 2);
        std::nth_element(samples.begin(), at, samples.end());
        return *at;
    };
    x = middle(m_xs);
    y = middle(m_ys);
    return true;
}

void RobustExtent::Settle(double limitX, double limitY, double grain) {
    SettleAxis(m_xs, limitX, grain, m_lowX, m_highX, m_x1, m_x2);
    SettleAxis(m_ys, limitY, grain, m_lowY, m_highY, m_y1, m_y2);
    if (m_y1 > m_y2) m_x1 = 1e300, m_x2 = -1e300;
}

bool RobustExtent::IsStray(double x, double y) const {
    return !(x >= m_lowX && x <= m_highX && y >= m_lowY && y <= m_highY);  // true also for NaN
}

}  // namespace zm::tool
