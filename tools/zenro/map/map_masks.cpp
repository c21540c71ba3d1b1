#include "tools/zenro/map/map_masks.h"

#include <algorithm>
#include <cmath>

#include "tools/zenro/map/symbol_extent.h"

namespace zm::tool {
namespace {

constexpr double kNarrowestRoad = 0.6;                        // millimetres from edge to edge
constexpr double kAtTheEdge = 0.1;                            // millimetres from the edge of the sheet
constexpr double kAroundLetters = 0.4, kAroundSymbols = 0.2;  // millimetres kept clear

bool Within(int code, int first, int last) {
    return first <= code && code <= last;
}

bool IsBuilding(const Rule& rule) {
    return Within(rule.symbol, 200, 205) || Within(rule.symbol, 580, 589);
}

// Shores and pools: contours end there.
bool IsWater(const Rule& rule) {
    return Within(rule.symbol, 500, 502) || Within(rule.symbol, 508, 510);
}

// The strip that the teeth of a scarp take, to the right of its direction.
Shape ToothStrip(const Chain& chain, double width) {
    Shape strip;
    strip.kind = GeometryKind::area;
    strip.chains.push_back(chain);
    Chain& ring = strip.chains.front();
    const std::size_t n = chain.size();
    for (std::size_t k = n; k-- > 0;) {
        const std::size_t a = k > 0 ? k - 1 : 0, b = k + 1 < n ? k + 1 : n - 1;
        const double dx = chain.x[b] - chain.x[a], dy = chain.y[b] - chain.y[a], d = std::hypot(dx, dy);
        if (d <= 0.0) continue;
        ring.x.push_back(chain.x[k] + dy / d * width);
        ring.y.push_back(chain.y[k] - dx / d * width);
    }
    ring.x.push_back(chain.x[0]);
    ring.y.push_back(chain.y[0]);
    return strip;
}

}  // namespace

void MapMasks::Take(const Shape& shape, const Use& use, const Page& page) {
    const Rule& rule = *use.rule;
    const Chain& chain = shape.chains.front();
    if (shape.kind == GeometryKind::line && use.roadWidth > 0.0)
        roads.Add(chain, std::max(use.roadWidth, page.Ground(kNarrowestRoad)), rule, use.storey);
    if (rule.path) m_alongRoads.try_emplace(std::max(*rule.path, m_leastBeside), page);
    if (shape.kind == GeometryKind::line && rule.sea > 0) {
        sea.Add(chain);
        seaRule = &rule;
    }
    if (use.hasHeight && shape.kind != GeometryKind::area) sense.Add(chain, use.height);
    if (use.hasHeight && shape.kind == GeometryKind::line && IsContour(rule) && chain.size() > 3 &&
        chain.x.front() == chain.x.back() && chain.y.front() == chain.y.back())
        m_rings.push_back({chain, use.height});
    if (shape.kind == GeometryKind::area && (IsBuilding(rule) || IsWater(rule))) {
        contours.Add(shape);
        if (IsBuilding(rule))
            for (Masks* masks : {&fills, &crosses, &m_buildings}) masks->Add(shape);
    }
    if (shape.kind == GeometryKind::line && !use.slope.empty()) {
        rule.isCrest ? slopes.AddCrest(use.slope, chain) : slopes.AddFoot(use.slope, chain);
        return;
    }
    if (shape.kind == GeometryKind::line && IsScarp(rule) && shape.chains.front().size() > 1) {
        m_scarps.push_back(shape.chains.front());
    }
    if (shape.kind != GeometryKind::point || ExtentOfSymbol(rule.symbol).empty()) return;
    const Box& extent = ExtentOfSymbol(rule.symbol);
    const double x = shape.chains.front().x[0], y = shape.chains.front().y[0], around = kAroundSymbols;
    const Box box{x + page.Ground(extent.x1 - around), y + page.Ground(extent.y1 - around),
                  x + page.Ground(extent.x2 + around), y + page.Ground(extent.y2 + around)};
    fills.Add(box);
    contours.Add(box);
    crosses.Add(box);
}

std::vector<Chain> MapMasks::BelowDecks(std::vector<Chain> pieces, int storey) const {
    for (const auto& [above, deck] : decks) {
        if (above <= storey) continue;
        std::vector<Chain> open;
        for (const Chain& piece : pieces)
            for (Chain& part : deck.Outside(piece)) open.push_back(std::move(part));
        pieces = std::move(open);
    }
    return pieces;
}

std::vector<Chain> MapMasks::OffRoads(const Chain& path, double beside) const {
    if (m_inRoads.empty()) return {path};
    beside = std::max(beside, m_leastBeside);
    const Masks& alongRoads = m_alongRoads.at(beside);
    const double least = std::max(m_leastPath, 3.0 * beside);  // what only crosses the strip is shorter
    std::vector<Chain> pieces;
    for (const Chain& outside : m_inRoads.Outside(path)) {
        const std::vector<ChainSpan> away = alongRoads.SpansOutside(outside);
        if (away.empty()) continue;
        const ChainSpan whole{{}, {outside.size() - 2, 1.0}};
        const auto isNear = [&](const ChainPlace& from, const ChainPlace& to) {
            return LengthOf(PieceOf(outside, {from, to})) <= least;
        };
        ChainSpan span{isNear(whole.from, away.front().from) ? whole.from : away.front().from, away.front().to};
        for (std::size_t i = 1; i < away.size(); ++i) {
            if (!isNear(span.to, away[i].from)) {
                pieces.push_back(PieceOf(outside, span));
                span.from = away[i].from;
            }
            span.to = away[i].to;
        }
        if (isNear(span.to, whole.to)) span.to = whole.to;
        pieces.push_back(PieceOf(outside, span));
    }
    return pieces;
}

// An innermost ring has no other contour inside. The tick is where the ring is lowest on the sheet and points to the
// side where the ground falls: outwards on a summit, inwards in a hollow.
void MapMasks::Finish(const Page& page) {
    unpairedSlopes = slopes.Build();
    for (const Shape& area : slopes.areas()) {
        contours.Add(area);
        fills.Add(area);
        limits.Add(area);
    }
    for (Chain& crest : slopes.LoneCrests())
        if (crest.size() > 1) m_scarps.push_back(std::move(crest));
    for (Chain& scarp : m_scarps) {
        if (sense.UpperSide(scarp) < 0) {
            std::reverse(scarp.x.begin(), scarp.x.end());
            std::reverse(scarp.y.begin(), scarp.y.end());
        }
        const Shape strip = ToothStrip(scarp, page.Ground(1.4));
        contours.Add(strip);
        fills.Add(strip);
    }
    sea.Build(page.sheet, page.Ground(kAtTheEdge));
    roads.Build(page.Ground(1.0));
    for (const auto& [storey, deck] : roads.decks()) decks.try_emplace(storey, page).first->second.Add(deck);
    roadsThroughBuildings = roads.KeepOff(m_buildings, page);
    for (const Shape& area : roads.areas()) {
        contours.Add(area);
        fills.Add(area);
        limits.Add(area);
        if (!m_alongRoads.empty()) m_inRoads.Add(area);
    }
    for (auto& [beside, masks] : m_alongRoads)
        for (const Shape& area : roads.AreasWith(beside)) masks.Add(area);
    for (const Ring& ring : m_rings) {
        const Shape inside{GeometryKind::area, {ring.chain}};
        const bool innermost = std::none_of(m_rings.begin(), m_rings.end(), [&](const Ring& other) {
            return &other != &ring && Inside(inside, other.chain.x[0], other.chain.y[0]);
        });
        if (!innermost) continue;
        std::size_t lowest = 0;
        for (std::size_t i = 0; i < ring.chain.size(); ++i)
            if (ring.chain.y[i] < ring.chain.y[lowest]) lowest = i;
        const std::size_t n = ring.chain.size() - 1, before = (lowest + n - 1) % n, after = (lowest + 1) % n;
        const double direction =
            std::atan2(ring.chain.y[after] - ring.chain.y[before], ring.chain.x[after] - ring.chain.x[before]);
        const int side = sense.Uphill(ring.chain.x[lowest], ring.chain.y[lowest], direction, ring.height);
        if (side != 0)
            slopeTicks.push_back(
                {ring.chain.x[lowest], ring.chain.y[lowest], direction - side * 3.141592653589793 / 2.0});
    }
}

void MapMasks::Take(const std::vector<PlacedLabel>& labels, TqNoteLayBase& notes, const Page& page) {
    for (const PlacedLabel& label : labels)
        for (const TurnedBox& box : BoxesOf(label, notes, page.Ground(kAroundLetters))) {
            lettering.Add(box);
            contours.Add(box);
            fills.Add(box);
            crosses.Add(box);
        }
}

}  // namespace zm::tool
