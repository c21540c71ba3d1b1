#include "tools/zenro/map/painter.h"

#include <algorithm>
#include <cmath>
#include <tuple>
#include <utility>

#include "runtime/text/numbers.h"
#include "symbol/line/pattern_limits.h"
#include "tools/kit/text.h"
#include "tools/kit/translation.h"
#include "tools/zenro/map/contour_interval.h"
#include "tools/zenro/map/lettered_line.h"
#include "tools/zenro/map/map_pen.h"
#include "tools/zenro/map/near_sheet.h"
#include "tools/zenro/map/shapes.h"
#include "zenromath/draw.h"
#include "zenromath/dwg.h"
#include "zenromath/symbol.h"

namespace zm::tool {
namespace {

constexpr int kDwg = 1;
// Millimetres of paper that a pattern is laid along: as the line is, and at all.
constexpr double kLongestWhole = 1e5, kLongest = 1e8;
constexpr std::size_t kCurveRoom = 4000;  // PROCESSALL's curves take no more
constexpr std::size_t kMaxOrnament = 120;
constexpr std::size_t kLongestSmooth = 666;  // points; from there on the library draws a smooth curve as its points
constexpr int kLandUseLimit = 213, kPlainLine = 200;  // codes
constexpr int kBridge = 726, kTunnel = 252;           // layers of rails and tunnels
constexpr int kTunnelSide = 223;                      // dashes 2.0, gaps 1.0
constexpr int kReinforcedSlope = 388;
constexpr double kRingOfReinforcement = 0.3;  // millimetres, its radius
constexpr int kDotted = 2;                    // pen style

// The ring that marks a hachure of a reinforced slope.
Chain RingAtTheEnd(const Chain& hachure, double radius) {
    constexpr int kCorners = 12;
    const double direction = std::atan2(hachure.y[1] - hachure.y[0], hachure.x[1] - hachure.x[0]);
    const double x = hachure.x[1] + radius * std::cos(direction), y = hachure.y[1] + radius * std::sin(direction);
    Chain ring;
    for (int i = 0; i <= kCorners; ++i) {
        const double a = direction + i % kCorners * 2.0 * 3.141592653589793 / kCorners;
        ring.x.push_back(x + radius * std::cos(a));
        ring.y.push_back(y + radius * std::sin(a));
    }
    return ring;
}

// Railways, roads by their symbols, walls and water; not wires, pipes and boundaries.
bool GoesBelowBridges(int code) {
    return (206 <= code && code <= 329) || code == kLandUseLimit;
}

}  // namespace

Painter::Painter(const Page& page, Report& report, const MapMasks& masks)
    : m_page(page), m_masks(masks), m_report(report), m_reach(page.sheet.Widened(page.Ground(kSymbolReach))) {}

SymbolKind Painter::KindOf(int code) {
    if (code < 1 || code > 999) return {};
    signed char& status = m_status[static_cast<std::size_t>(code)];
    if (status == 0) {
        const SymbolKind kind = KindOfSymbol(code);
        status = kind.known ? static_cast<signed char>(kind.status) : static_cast<signed char>(-1);
    }
    return {status > 0, status > 0 ? status : static_cast<int>(SymbolStatusL)};
}

Shape Painter::Turned(const Shape& shape) const {
    Shape turned = shape;
    for (Chain& chain : turned.chains) m_page.Turn(chain);
    return turned;
}

bool Painter::OnSheet(const Shape& shape) const {
    return BoxOf(shape.chains.front()).Meets(m_reach);
}

bool Painter::FillsWithLines(const Rule& rule) {
    constexpr double kDense = 5.0;  // millimetres of paper between the symbols of ranks
    if (rule.symbol <= 0 || KindOf(rule.symbol).status != SymbolStatusH) return false;
    const FillForm& form = FormOf(rule.symbol);
    return std::any_of(form.parts.begin(), form.parts.end(), [](const FillPart& part) {
        return part.kind == FillPart::Kind::lines ||
               (part.kind == FillPart::Kind::ranks && part.step1 < kDense && part.step2 < kDense);
    });
}

const FillForm& Painter::FormOf(int code) {
    const auto found = m_forms.find(code);
    return found != m_forms.end() ? found->second : m_forms.emplace(code, FillFormOf(code)).first->second;
}

long Painter::Draw(const Feature& feature, int level) {
    long drawn = 0;
    for (const Shape& shape : feature.shapes) {
        const auto uses = UsesOf(feature, shape.kind);
        bool here = false;
        for (const Use* use : uses) here = here || use->rule->LevelOf(shape.kind) == level;
        if (!here) continue;
        const Shape turned = m_page.rotation != 0.0 ? Turned(shape) : Shape{};
        const Shape& drawnShape = m_page.rotation != 0.0 ? turned : shape;
        if (!OnSheet(drawnShape)) continue;
        for (const Use* use : uses)
            if (use->rule->LevelOf(shape.kind) == level) DrawUse(drawnShape, *use, feature);
        ++drawn;
    }
    return drawn;
}

void Painter::DrawRoads(int level) {
    for (const Rule* rule : m_masks.roads.rules()) {
        if (rule->LevelOf(GeometryKind::line) != level) continue;
        const RoadEdges& edges = m_masks.roads.EdgesOf(*rule);
        const auto draw = [&](const std::vector<Chain>& lines, int code, int layer, int style, int value) {
            if (lines.empty()) return;
            const MapPen pen(layer, style, value);
            for (const Chain& line : lines) DrawChain(line, 1, code);
        };
        draw(edges.ground, kPlainLine, rule->layer, rule->penStyle, rule->penValue);
        draw(edges.bridges, kPlainLine, kBridge, 0, 0);
        draw(edges.tunnels, kTunnelSide, kTunnel, 0, 0);
        draw(edges.portals, kPlainLine, kTunnel, 0, 0);
    }
}

void Painter::DrawSea() {
    if (m_masks.sea.areas().empty()) return;
    const int code = m_masks.seaRule->sea;
    const MapPen pen(code);
    for (const Shape& area : m_masks.sea.areas())
        for (const FillPart& part : FormOf(code).parts)
            if ((m_plain == 0.0 || part.kind == FillPart::Kind::solid) && !IsTooFine(part, code))
                DrawFill(area, part, m_page, m_masks.fills);
}

void Painter::DrawSlopeTicks() {
    constexpr int kTick = 178, kContour = 380;
    if (m_masks.slopeTicks.empty()) return;
    const MapPen pen(kContour);
    for (const auto& [x, y, downhill] : m_masks.slopeTicks)
        if (!m_masks.contours.Covers(x, y)) insert(x, y, downhill + 3.141592653589793 / 2.0, kTick);
}

void Painter::DrawSample(const Shape& shape, const Rule& rule) {
    Use use;
    use.rule = &rule;
    Feature sample;
    sample.where = "legend";
    DrawUse(shape, use, sample);
}

void Painter::DrawUse(const Shape& shape, const Use& use, const Feature& feature) {
    const Rule& rule = *use.rule;
    if (use.roadWidth > 0.0 && shape.kind == GeometryKind::line) return;  // with all roads
    const MapPen pen(IsIndexContour(use, m_page.scale) ? rule.index : rule.layer, rule.penStyle, rule.penValue);
    const bool dwg = TqDC->GetTqDCType() == kDwg;
    if (dwg) _LDBsetelev(use.hasHeight ? use.height : 0.0, 0.0);
    if (rule.solid > 0 && shape.kind == GeometryKind::area && m_plain == 0.0) FillWithSolids(shape, rule.solid, m_page);
    if (rule.symbol > 0) {
        const SymbolKind kind = KindOf(rule.symbol);
        if (!kind.known)
            m_report.Skip(N_("unknown symbol codes"),
                          Phrase("{0}: symbol {1} is not in the symbol library; lines are drawn plain.", feature.where,
                                 rule.symbol));
        DrawSymbol(shape, use, kind.status, feature.where);
    }
    if (rule.outline > 0) DrawOutline(shape, use);
}

// The limit of an area, each ring by itself. Land-use dots are drawn once between two areas.
void Painter::DrawOutline(const Shape& shape, const Use& use) {
    for (const Chain& ring : shape.chains)
        use.rule->outline == kLandUseLimit ? DrawLandUseLimit(ring) : DrawOpenParts(ring, use, use.rule->outline);
}

void Painter::DrawLandUseLimit(const Chain& ring) {
    const MapPen pen(kLandUseLimit);
    const auto cell = [](double v) { return std::llround(v * 100.0); };
    Chain piece;
    const auto end = [&] {
        for (const Chain& open : m_masks.limits.Outside(piece)) DrawChain(open, 1, kLandUseLimit);
        piece = {};
    };
    for (std::size_t i = 0; i + 1 < ring.size(); ++i) {
        std::array<long long, 4> key = {cell(ring.x[i]), cell(ring.y[i]), cell(ring.x[i + 1]), cell(ring.y[i + 1])};
        if (std::tie(key[2], key[3]) < std::tie(key[0], key[1])) key = {key[2], key[3], key[0], key[1]};
        if (!m_limits.insert(key).second) {
            end();
            continue;
        }
        if (piece.size() == 0) piece = {{ring.x[i]}, {ring.y[i]}};
        piece.x.push_back(ring.x[i + 1]);
        piece.y.push_back(ring.y[i + 1]);
    }
    end();
}

// A contour stops at lettering, buildings, roads and cliffs.
void Painter::DrawContour(const Chain& chain, const Use& use) {
    const Rule& rule = *use.rule;
    const int code = IsIndexContour(use, m_page.scale) ? rule.index : rule.symbol;
    const bool smooth = rule.lineType == 2 && chain.size() > 2 && chain.size() < kLongestSmooth;
    for (const Chain& piece : m_masks.contours.Outside(smooth ? SmoothCurve(chain) : chain)) DrawChain(piece, 1, code);
}

void Painter::DrawLettered(const Chain& chain, const LetteredLine& by) {
    const GappedLine line = WithGaps(chain, by.repeat, m_page);
    for (const Chain& piece : line.pieces) DrawChain(piece, 1, by.plain);
    if (m_plain > 0.0) return;
    for (const LetterSpot& letter : line.letters) insert(letter.x, letter.y, letter.turn, by.letter);
}

// The crest, and hachures down to the foot, which its own rule draws or does not. At a reinforced slope the short ones
// end in rings.
void Painter::DrawSlope(const Slope& slope, int code) {
    DrawChain(slope.crest, 1, kPlainLine);
    for (const auto& [line, whole] : HachuresOf(slope, code, m_page)) {
        TqDC->line(line.x[0], line.y[0], line.x[1], line.y[1]);
        if (code == kReinforcedSlope && !whole)
            DrawChain(RingAtTheEnd(line, m_page.Ground(kRingOfReinforcement)), 1, kPlainLine);
    }
}

void Painter::DrawSymbol(const Shape& shape, const Use& use, int status, const std::string& where) {
    const int code = use.rule->symbol;
    if (status == SymbolStatusG) return PlaceSymbol(shape, use);
    if (shape.kind == GeometryKind::point) {
        m_report.Skip(N_("line symbols for points"),
                      Phrase("{0}: symbol {1} is no point symbol; nothing is drawn for a point.", where, code));
        return;
    }
    if (status == SymbolStatusH) {
        if (shape.kind == GeometryKind::area) return DrawHatched(shape, *use.rule);
        m_report.Skip(N_("fills for lines"),
                      Phrase("{0}: symbol {1} fills areas; nothing is drawn for a line.", where, code));
        return;
    }
    for (const Chain& chain : shape.chains) {
        if (const Slope* slope = use.rule->isCrest ? m_masks.slopes.Of(use.slope) : nullptr)
            DrawSlope(*slope, code);
        else if (status == SymbolStatusY)
            DrawOrnament(chain, shape.kind == GeometryKind::area, use, where);
        else if (const auto lettered = LetteredLineOf(code))
            DrawLettered(use.rule->lineType == 2 && chain.size() > 2 ? SmoothCurve(chain) : chain, *lettered);
        else if (IsContour(*use.rule))
            DrawContour(chain, use);
        else if (IsScarp(*use.rule) && m_masks.sense.UpperSide(chain) < 0)
            DrawChain(Reversed(chain), use.rule->lineType, code);  // teeth lie to the right of a line's course
        else
            DrawOpenParts(chain, use, code);
    }
}

// What a bridge crosses stops at it, a path stops at roads; a smooth curve is drawn as its points there.
void Painter::DrawOpenParts(const Chain& chain, const Use& use, int code) {
    std::vector<Chain> pieces = {chain};
    if (use.rule->path && use.storey == 0) pieces = m_masks.OffRoads(chain, *use.rule->path);
    if (GoesBelowBridges(code)) pieces = m_masks.BelowDecks(pieces, use.storey);
    const bool whole = pieces.size() == 1 && pieces.front().x == chain.x && pieces.front().y == chain.y;
    for (const Chain& piece : pieces) DrawChain(piece, whole ? use.rule->lineType : 1, code);
}

bool Painter::IsTooFine(int code) {
    const auto found = m_tooFine.find(code);
    if (found != m_tooFine.end()) return found->second;
    const double cycle = CycleOfSymbol(code);
    return m_tooFine[code] = cycle > 0.0 && cycle < zm::symbol::kLeastCycle;
}

// A pattern along many kilometres of paper has millions of marks that nobody sees: what is so long is cut to the sheet
// and its surroundings, and what is too long there is drawn plain.
void Painter::DrawChain(const Chain& chain, int lineType, int code) {
    if (chain.size() < 2) return;
    if (m_plain > 0.0) return LayChain(chain, 1, kPlainLine);
    if (IsTooFine(code)) {
        m_report.Limit(N_("patterns too fine to be seen"),
                       Phrase("symbol {0}: its pattern repeats within {1} mm; its lines are drawn plain.", code,
                              numbers::Text("%g", zm::symbol::kLeastCycle)));
        return LayChain(chain, lineType, kPlainLine);
    }
    if (code == kPlainLine || LengthOf(chain) < m_page.Ground(kLongestWhole)) return LayChain(chain, lineType, code);
    for (const Chain& piece : PiecesWithin(chain, m_reach)) {
        const bool plain = LengthOf(piece) >= m_page.Ground(kLongest);
        const bool cut = piece.x != chain.x || piece.y != chain.y;
        LayChain(piece, cut ? 1 : lineType, plain ? kPlainLine : code);
        if (plain)
            m_report.Limit(
                N_("lines too long for their pattern"),
                Phrase("symbol {0}: a line of more than 100 km of paper is drawn plain; draw at a smaller scale.",
                       code));
        else if (cut)
            m_report.Note(Phrase(
                "symbol {0}: a line of more than 100 m of paper is cut at the sheet, where its pattern begins anew.",
                code));
    }
}

void Painter::LayChain(const Chain& chain, int lineType, int code) {
    const std::size_t n = chain.size();
    const std::size_t room = std::max(n, kCurveRoom);
    if (m_x.size() < room) {
        m_x.resize(room);
        m_y.resize(room);
    }
    std::copy(chain.x.begin(), chain.x.end(), m_x.begin());
    std::copy(chain.y.begin(), chain.y.end(), m_y.begin());
    PROCESSALL(static_cast<int>(n), m_x.data(), m_y.data(), lineType, code);
}

bool Painter::IsTooFine(const FillPart& part, int code) {
    if (part.kind != FillPart::Kind::lines && part.kind != FillPart::Kind::ranks) return false;
    const double apart = part.kind == FillPart::Kind::ranks ? std::min(part.step1, part.step2) : part.step1;
    if (!(apart > 0.0) || apart >= zm::symbol::kLeastCycle) return false;
    m_report.Limit(N_("patterns too fine to be seen"),
                   Phrase("symbol {0}: its lines are within {1} mm of each other; its areas are not filled.", code,
                          numbers::Text("%g", zm::symbol::kLeastCycle)));
    return true;
}

// What the library fills without limits of its own is drawn here; the outline is the rule's, or that of the symbol.
void Painter::DrawHatched(const Shape& shape, const Rule& rule) {
    const FillForm& form = FormOf(rule.symbol);
    for (const FillPart& part : form.parts) {
        if (m_plain > 0.0 && part.kind != FillPart::Kind::solid) continue;
        if (part.kind == FillPart::Kind::pattern) return DrawChain(SeamedRing(shape), 1, rule.symbol);
        if (IsTooFine(part, rule.symbol)) continue;
        DrawFill(shape, part, m_page, part.kind == FillPart::Kind::ranks ? m_masks.fills : m_masks.lettering);
    }
    if (rule.outline > 0) return;
    for (const Chain& ring : shape.chains)
        form.outlineStyle == kDotted ? DrawLandUseLimit(ring) : DrawChain(ring, 1, kPlainLine);
}

void Painter::DrawOrnament(const Chain& chain, bool ring, const Use& use, const std::string& where) {
    Chain points = chain;
    if (ring && points.size() > 1) {  // the corners, each once
        points.x.pop_back();
        points.y.pop_back();
    }
    if (points.size() < 4 || points.size() > kMaxOrnament) {
        m_report.Skip(N_("ornaments with a wrong number of points"),
                      Phrase("{0}: symbol {1} needs 4 to 120 points, not {2}; nothing is drawn.", where,
                             use.rule->symbol, points.size()));
        return;
    }
    DrawChain(points, 1, use.rule->symbol);
}

void Painter::PlaceSymbol(const Shape& shape, const Use& use) {
    const Chain& chain = shape.chains.front();
    double x = chain.x.front(), y = chain.y.front(), direction = 0.0, angle = use.angle;
    if (shape.kind == GeometryKind::area) {
        InnerPoint(shape, x, y);
    } else if (shape.kind == GeometryKind::line) {
        PointAlong(chain, LengthOf(chain) / 2.0, x, y, direction);
        if (use.rule->angleField.empty()) angle = direction;
    }
    if (!use.rule->angleField.empty()) angle += m_page.rotation * 3.141592653589793 / 180.0;
    if (m_plain > 0.0)
        TqDC->line(x, y, x + m_plain, y);
    else
        insert(x, y, angle, use.rule->symbol);
}

}  // namespace zm::tool
