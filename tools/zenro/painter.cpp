#include "tools/zenro/painter.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "tools/zenro/labels.h"
#include "zenromath/draw.h"
#include "zenromath/dwg.h"
#include "zenromath/symbol.h"

namespace zm::tool {
namespace {

constexpr int kDwg = 1;
constexpr std::size_t kCurveRoom = 4000;  // PROCESSALL's curves take no more
constexpr double kReach = 15.0;           // millimetres of paper that a symbol may reach beyond its feature
constexpr std::size_t kMaxOrnament = 120;

}  // namespace

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

Painter::Painter(const Page& page, Report& report) : m_page(page), m_report(report), m_reach(page.sheet) {
    const double reach = page.Ground(kReach);
    m_reach.x1 -= reach;
    m_reach.y1 -= reach;
    m_reach.x2 += reach;
    m_reach.y2 += reach;
}

SymbolKind Painter::KindOf(int code) {
    if (code < 1 || code > 999) return {};
    signed char& status = m_status[static_cast<std::size_t>(code)];
    if (status == 0) {
        const SymbolKind kind = KindOfSymbol(code);
        status = kind.known ? static_cast<signed char>(kind.status) : static_cast<signed char>(-1);
    }
    return {status > 0, status > 0 ? status : static_cast<int>(SymbolStatusL)};
}

std::vector<const Use*> Painter::UsesOf(const Feature& feature, GeometryKind kind) {
    std::vector<const Use*> uses;
    for (const Use& use : feature.uses) {
        if (use.rule->kind != GeometryKind::any && use.rule->kind != kind) continue;
        if (!use.rule->skip) uses.push_back(&use);
        if (!use.rule->also) break;
    }
    return uses;
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
    constexpr float kGrid = 1.0F, kLineFamily = 2.0F;
    constexpr float kDense = 0.005F;  // metres of paper between the symbols of a grid
    if (rule.symbol <= 0 || KindOfSymbol(rule.symbol).status != SymbolStatusH) return false;
    if (TheBody == nullptr || nBody < 3) return false;
    return TheBody[1].op.op == kLineFamily || (TheBody[1].op.op == kGrid && TheBody[2].point.y < kDense);
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

void Painter::DrawUse(const Shape& shape, const Use& use, const Feature& feature) {
    const Rule& rule = *use.rule;
    const CTQPen pen(rule.layer, rule.penStyle, rule.penValue);
    const bool dwg = TqDC->GetTqDCType() == kDwg;
    if (dwg) _LDBsetelev(use.hasHeight ? use.height : 0.0, 0.0);
    if (rule.symbol > 0) {
        const SymbolKind kind = KindOf(rule.symbol);
        if (!kind.known)
            m_report.Skip("unknown symbol codes", feature.where + ": symbol " + std::to_string(rule.symbol) +
                                                      " is not in the symbol library; lines are drawn plain.");
        DrawSymbol(shape, use, kind.status, feature.where);
    }
    // A hatch leaves its code as elevation and thickness of what follows.
    if (dwg) _LDBsetelev(use.hasHeight ? use.height : 0.0, 0.0);
    if (rule.outline > 0)
        for (const Chain& ring : shape.chains) DrawChain(ring, rule.lineType, rule.outline);
}

void Painter::DrawSymbol(const Shape& shape, const Use& use, int status, const std::string& where) {
    const int code = use.rule->symbol;
    if (status == SymbolStatusG) return PlaceSymbol(shape, use);
    if (shape.kind == GeometryKind::point) {
        m_report.Skip("line symbols for points", where + ": symbol " + std::to_string(code) +
                                                     " is no point symbol; nothing is drawn for a point.");
        return;
    }
    if (status == SymbolStatusH) {
        if (shape.kind == GeometryKind::area) return DrawHatched(shape, code);
        m_report.Skip("fills for lines",
                      where + ": symbol " + std::to_string(code) + " fills areas; nothing is drawn for a line.");
        return;
    }
    for (const Chain& chain : shape.chains) {
        if (status == SymbolStatusY)
            DrawOrnament(chain, shape.kind == GeometryKind::area, use, where);
        else
            DrawChain(chain, use.rule->lineType, code);
    }
}

void Painter::DrawChain(const Chain& chain, int lineType, int code) {
    const std::size_t n = chain.size();
    if (n < 2) return;
    const std::size_t room = std::max(n, kCurveRoom);
    if (m_x.size() < room) {
        m_x.resize(room);
        m_y.resize(room);
    }
    std::copy(chain.x.begin(), chain.x.end(), m_x.begin());
    std::copy(chain.y.begin(), chain.y.end(), m_y.begin());
    PROCESSALL(static_cast<int>(n), m_x.data(), m_y.data(), lineType, code);
}

void Painter::DrawHatched(const Shape& shape, int code) {
    DrawChain(shape.chains.size() > 1 ? SeamedRing(shape) : shape.chains.front(), 1, code);
}

void Painter::DrawOrnament(const Chain& chain, bool ring, const Use& use, const std::string& where) {
    Chain points = chain;
    if (ring && points.size() > 1) {  // the corners, each once
        points.x.pop_back();
        points.y.pop_back();
    }
    if (points.size() < 4 || points.size() > kMaxOrnament) {
        m_report.Skip("ornaments with a wrong number of points",
                      where + ": symbol " + std::to_string(use.rule->symbol) + " needs 4 to 120 points, not " +
                          std::to_string(points.size()) + "; nothing is drawn.");
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
    insert(x, y, angle, use.rule->symbol);
}

}  // namespace zm::tool
