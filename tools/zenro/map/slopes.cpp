#include "tools/zenro/map/slopes.h"

#include <algorithm>
#include <cmath>

#include "tools/zenro/map/shapes.h"

namespace zm::tool {
namespace {

constexpr double kApart = 2.0, kShortest = 2.0;  // millimetres of paper
constexpr double kApartReinforced = 3.0;
constexpr int kScarp = 385, kReinforcedScarp = 386;  // codes
constexpr double kMostHachures = 1e6;                // of one crest: a kilometre of paper and more
constexpr std::size_t kLookBack = 24;                // hachures that a new one is held against

bool IsScarpCode(int code) {
    return code == kScarp || code == kReinforcedScarp;
}

bool IsClosed(const Chain& chain) {
    return chain.size() > 3 && chain.x.front() == chain.x.back() && chain.y.front() == chain.y.back();
}

double Distance(const Chain& a, std::size_t i, const Chain& b, std::size_t j) {
    return std::hypot(a.x[i] - b.x[j], a.y[i] - b.y[j]);
}

// A ring that begins at the corner nearest to a point.
Chain BegunNear(const Chain& ring, double x, double y) {
    const std::size_t n = ring.size() - 1;
    std::size_t best = 0;
    for (std::size_t i = 1; i < n; ++i)
        if (std::hypot(ring.x[i] - x, ring.y[i] - y) < std::hypot(ring.x[best] - x, ring.y[best] - y)) best = i;
    Chain begun;
    for (std::size_t i = 0; i <= n; ++i) {
        begun.x.push_back(ring.x[(best + i) % n]);
        begun.y.push_back(ring.y[(best + i) % n]);
    }
    return begun;
}

Slope Paired(const Chain& crest, const Chain& foot) {
    Slope slope{crest, foot};
    if (IsClosed(crest) && IsClosed(foot)) {
        if ((TurnOf(crest) > 0.0) != (TurnOf(foot) > 0.0)) slope.foot = Reversed(foot);
        slope.foot = BegunNear(slope.foot, crest.x.front(), crest.y.front());
        return slope;
    }
    const std::size_t c = crest.size() - 1, f = foot.size() - 1;
    if (Distance(crest, 0, foot, f) + Distance(crest, c, foot, 0) <
        Distance(crest, 0, foot, 0) + Distance(crest, c, foot, f))
        slope.foot = Reversed(foot);
    return slope;
}

double SideOf(const Chain& a, double x, double y) {
    return (a.x[1] - a.x[0]) * (y - a.y[0]) - (a.y[1] - a.y[0]) * (x - a.x[0]);
}

bool Cross(const Chain& a, const Chain& b) {
    return SideOf(a, b.x[0], b.y[0]) * SideOf(a, b.x[1], b.y[1]) < 0.0 &&
           SideOf(b, a.x[0], a.y[0]) * SideOf(b, a.x[1], a.y[1]) < 0.0;
}

}  // namespace

std::vector<std::string> Slopes::Build() {
    std::vector<std::string> unpaired;
    for (const auto& [key, parts] : m_parts) {
        if (parts.crests.size() == 1 && parts.feet.size() == 1 && parts.crests[0].size() > 1 &&
            parts.feet[0].size() > 1)
            m_slopes.emplace(key, Paired(parts.crests[0], parts.feet[0]));
        else
            unpaired.push_back(key);
    }
    return unpaired;
}

const Slope* Slopes::Of(const std::string& key) const {
    const auto found = m_slopes.find(key);
    return found != m_slopes.end() ? &found->second : nullptr;
}

std::vector<Shape> Slopes::areas() const {
    std::vector<Shape> areas;
    for (const auto& [key, slope] : m_slopes) {
        Chain ring = slope.crest;
        const Chain back = Reversed(slope.foot);
        ring.x.insert(ring.x.end(), back.x.begin(), back.x.end());
        ring.y.insert(ring.y.end(), back.y.begin(), back.y.end());
        ring.x.push_back(ring.x.front());
        ring.y.push_back(ring.y.front());
        areas.push_back({GeometryKind::area, {ring}});
    }
    return areas;
}

std::vector<Chain> Slopes::LoneCrests() const {
    std::vector<Chain> crests;
    for (const auto& [key, parts] : m_parts)
        if (m_slopes.count(key) == 0) crests.insert(crests.end(), parts.crests.begin(), parts.crests.end());
    return crests;
}

std::vector<Hachure> HachuresOf(const Slope& slope, int code, const Page& page) {
    const double crest = LengthOf(slope.crest), foot = LengthOf(slope.foot);
    const double apart = page.Ground(code == kReinforcedScarp ? kApartReinforced : kApart);
    const int pieces = std::max(1, static_cast<int>(std::round(std::min(crest / apart, kMostHachures))));
    const int last = IsClosed(slope.crest) ? pieces - 1 : pieces;
    std::vector<Hachure> hachures;
    for (int i = 0; i <= last; ++i) {
        double x1 = 0.0, y1 = 0.0, x2 = 0.0, y2 = 0.0, direction = 0.0;
        PointAlong(slope.crest, crest * i / pieces, x1, y1, direction);
        PointAlong(slope.foot, foot * i / pieces, x2, y2, direction);
        const double length = std::hypot(x2 - x1, y2 - y1);
        if (!(length > 0.0)) continue;
        const bool whole = i % 2 == 0 || IsScarpCode(code);
        const double part = std::max(length, page.Ground(kShortest)) / length / (whole ? 1.0 : 2.0);
        Chain hachure{{x1, x1 + (x2 - x1) * part}, {y1, y1 + (y2 - y1) * part}};
        const std::size_t from = hachures.size() > kLookBack ? hachures.size() - kLookBack : 0;
        if (std::none_of(hachures.begin() + static_cast<std::ptrdiff_t>(from), hachures.end(),
                         [&](const Hachure& other) { return Cross(other.line, hachure); }))
            hachures.push_back({std::move(hachure), whole});
    }
    return hachures;
}

}  // namespace zm::tool
