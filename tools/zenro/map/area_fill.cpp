#include "tools/zenro/map/area_fill.h"

#include <algorithm>
#include <cmath>
#include <map>

#include "draw/device.h"
#include "runtime/truncated.h"
#include "tools/kit/angles.h"
#include "tools/zenro/map/recording.h"
#include "tools/zenro/map/symbol_extent.h"
#include "tools/zenro/map/trapezoids.h"
#include "zenromath/draw.h"
#include "zenromath/dwg.h"
#include "zenromath/symbol.h"

namespace zm::tool {
namespace {

constexpr int kDwg = 1, kMonochrome = 2, kRecording = 3;
constexpr int kNullPen = 5;
constexpr double kClear = 0.5;         // millimetres between a symbol of a fill and the limit
constexpr double kSmallest = 25.0;     // square millimetres; smaller areas have no symbol
constexpr double kSmall = 100.0;       // square millimetres; smaller areas have one
constexpr double kMostRanks = 4000.0;  // lines of ranks across an area

// The range of k for lines n . p = k step that meet a box.
void RangeOf(const Box& box, double nx, double ny, double step, double& first, double& last) {
    first = 1e300;
    last = -1e300;
    for (const double x : {box.x1, box.x2})
        for (const double y : {box.y1, box.y2}) {
            const double k = (nx * x + ny * y) / step;
            first = std::min(first, k);
            last = std::max(last, k);
        }
    first = std::floor(first);
    last = std::ceil(last);
}

// Draws symbols in ranks, and knows whether one fits.
class Ranks {
 public:
    Ranks(const Shape& shape, const FillPart& part, const Page& page, const Masks& masks)
        : m_shape(shape), m_part(part), m_page(page), m_masks(masks), m_limit(page) {
        m_limit.Add(shape);
        const Box e = ExtentOfSymbol(part.symbol);
        if (e.empty()) return;
        const double clear = kClear;
        m_extent = {page.Ground(e.x1 - clear), page.Ground(e.y1 - clear), page.Ground(e.x2 + clear),
                    page.Ground(e.y2 + clear)};
    }

    void Draw() {
        if (m_extent.empty()) return;
        const double area = AreaOf(m_shape) * 1e6 / (m_page.scale * m_page.scale);
        if (area < kSmallest) return;
        if (area < kSmall || (DrawGrid(0.0) == 0 && DrawGrid(0.5) == 0)) DrawInTheMiddle();
    }

 private:
    // Whole inside the limit and clear of what it gives way to; that the anchor is inside is known.
    bool Fits(double x, double y) const {
        const Box box{x + m_extent.x1, y + m_extent.y1, x + m_extent.x2, y + m_extent.y2};
        return !m_limit.LimitMeets(box) && !m_masks.Meets(box);
    }
    long DrawGrid(double shift);
    void DrawInTheMiddle() {
        double x = 0.0, y = 0.0;
        if (InnerPoint(m_shape, x, y) > 0.0 && Fits(x, y)) insert(x, y, 0.0, m_part.symbol);
    }

    const Shape& m_shape;
    const FillPart& m_part;
    const Page& m_page;
    const Masks& m_masks;
    Masks m_limit;
    Box m_extent;
};

// The crossings of both families of lines that lie inside, row by row.
long Ranks::DrawGrid(double shift) {
    const double d1 = m_page.Ground(m_part.step1), d2 = m_page.Ground(m_part.step2);
    const double n1x = -std::sin(m_part.angle1), n1y = std::cos(m_part.angle1);
    const double n2x = -std::sin(m_part.angle2), n2y = std::cos(m_part.angle2);
    const double det = n1x * n2y - n1y * n2x;
    if (!(d1 > 0.0) || !(d2 > 0.0) || std::fabs(det) < 1e-6) return 0;
    Box box = BoxOf(m_shape.chains.front());
    box = {std::max(box.x1, m_page.sheet.x1), std::max(box.y1, m_page.sheet.y1), std::min(box.x2, m_page.sheet.x2),
           std::min(box.y2, m_page.sheet.y2)};
    if (box.empty() || box.y1 > box.y2) return 0;
    double k1, k2, m1, m2;
    RangeOf(box, n1x, n1y, d1, k1, k2);
    RangeOf(box, n2x, n2y, d2, m1, m2);
    if (k2 - k1 > kMostRanks || m2 - m1 > kMostRanks) return 0;
    std::map<long long, std::vector<double>> rows;  // y in tenths of a millimetre of ground
    for (double k = k1; k <= k2; ++k)
        for (double m = m1; m <= m2; ++m) {
            const double a = (k + shift) * d1, b = (m + shift) * d2;
            const double x = (a * n2y - b * n1y) / det, y = (n1x * b - n2x * a) / det;
            if (x < box.x1 || x > box.x2 || y < box.y1 || y > box.y2) continue;
            rows[std::llround(y * 1e4)].push_back(x);
        }
    long drawn = 0;
    for (auto& [key, xs] : rows) {
        const double y = static_cast<double>(key) * 1e-4;
        const std::vector<double> limits = Crossings(m_shape, y);
        std::sort(xs.begin(), xs.end());
        for (const double x : xs) {
            const auto passed = std::lower_bound(limits.begin(), limits.end(), x) - limits.begin();
            if (passed % 2 == 0 || !Fits(x, y)) continue;
            insert(x, y, 0.0, m_part.symbol);
            ++drawn;
        }
    }
    return drawn;
}

// Lines of one family, turned level, cut by the rings and by what they give way to.
void DrawLines(const Shape& shape, const FillPart& part, const Page& page, const Masks& masks) {
    const double step = page.Ground(part.step1), c = std::cos(part.angle1), s = std::sin(part.angle1);
    if (!(step > 0.0)) return;
    Shape level = shape;
    for (Chain& ring : level.chains)
        for (std::size_t i = 0; i < ring.size(); ++i) {
            const double x = ring.x[i], y = ring.y[i];
            ring.x[i] = x * c + y * s;
            ring.y[i] = y * c - x * s;
        }
    const Box box = BoxOf(level.chains.front());
    double low = box.y1, high = box.y2;
    Box sheet;  // what of it lies on the sheet
    for (const double x : {page.sheet.x1, page.sheet.x2})
        for (const double y : {page.sheet.y1, page.sheet.y2}) sheet.Add(x * c + y * s, y * c - x * s);
    low = std::max(low, sheet.y1);
    high = std::min(high, sheet.y2);
    for (double k = std::ceil(low / step); k * step < high; ++k) {
        const double y = k * step;
        const std::vector<double> xs = Crossings(level, y);
        for (std::size_t i = 0; i + 1 < xs.size(); i += 2) {
            const Chain line{{xs[i] * c - y * s, xs[i + 1] * c - y * s}, {xs[i] * s + y * c, xs[i + 1] * s + y * c}};
            for (const Chain& piece : masks.Outside(line))
                TqDC->line(piece.x.front(), piece.y.front(), piece.x.back(), piece.y.back());
        }
    }
}

}  // namespace

FillForm FillFormOf(int code) {
    FillForm form;
    if (getsymbody(code) == 0 || TheHeadStatus() != SymbolStatusH || TheBody == nullptr) return form;
    constexpr int kGrid = 1, kLines = 2, kBrush = 3, kBitmap = 4;
    constexpr double kMillimetres = 1000.0;
    form.outlineStyle = Truncated(TheBody[0].op.op) % 7;
    int at = 1;
    for (int left = TheHeadNumber(); left > 0 && at + 1 < nBody; --left) {
        const int type = Truncated(TheBody[at].op.op);
        FillPart part;
        if (type == kBrush || type == kBitmap) {
            part.kind =
                type == kBrush && TheBody[at + 1].raw.second != -1 ? FillPart::Kind::solid : FillPart::Kind::pattern;
            part.colour = static_cast<COLORREF>(TheBody[at + 1].raw.second);
            form.parts.push_back(part);
            return form;
        }
        part.kind = type == kGrid ? FillPart::Kind::ranks : FillPart::Kind::lines;
        part.angle1 = static_cast<double>(TheBody[at + 1].point.x) * kDegree;
        part.step1 = static_cast<double>(TheBody[at + 1].point.y) * kMillimetres;
        if (type == kGrid && at + 3 < nBody) {
            part.angle2 = static_cast<double>(TheBody[at + 2].point.x) * kDegree;
            part.step2 = static_cast<double>(TheBody[at + 2].point.y) * kMillimetres;
            part.symbol = Truncated(TheBody[at + 3].point.x);
        } else if (type != kLines) {
            return form;
        }
        form.parts.push_back(part);
        at += (type == kGrid ? 4 : 2) + 1;  // each part ends with a terminator
    }
    return form;
}

void DrawFill(const Shape& shape, const FillPart& part, const Page& page, const Masks& masks) {
    if (part.kind == FillPart::Kind::ranks) Ranks(shape, part, page, masks).Draw();
    if (part.kind == FillPart::Kind::lines) DrawLines(shape, part, page, masks);
    if (part.kind != FillPart::Kind::solid) return;
    const Chain ring = SeamedRing(shape);
    std::vector<double> xy;
    xy.reserve(2 * ring.size());
    for (std::size_t i = 0; i < ring.size(); ++i) {
        xy.push_back(ring.x[i]);
        xy.push_back(ring.y[i]);
    }
    FillArea(xy, part.colour);
}

void FillWithSolids(const Shape& shape, int colour, const Page& page) {
    if (TqDC->GetTqDCType() != kDwg) return;
    const Box& s = page.sheet;
    Chain limit;
    if (TqDC->GetDoCut() != 0)
        limit = page.clip.empty() ? Chain{{s.x1, s.x2, s.x2, s.x1, s.x1}, {s.y1, s.y1, s.y2, s.y2, s.y1}}
                                  : page.ClippedArea().chains.front();
    for (const Trapezoid& t : TrapezoidsOf(shape, limit)) {
        const double corners[] = {t.left1, t.y1, t.right1, t.y1, t.right2, t.y2, t.left2, t.y2};
        dwg::PutSolid(corners, colour);
    }
}

void FillArea(const std::vector<double>& xy, COLORREF colour) {
    const int type = TqDC->GetTqDCType();
    if (xy.size() < 6) return;
    if (type == kRecording) TellArea(colour, xy);
    if (type == kRecording || type == kDwg || type == kMonochrome) return;
    std::vector<double> points(xy);
    const CTQPen none(kNullPen, 0, DWORD{0});
    HBRUSH brush = device::CreateSolidBrush(colour);
    TqDC->DrawPolygon(static_cast<int>(points.size() / 2), points.data(), brush);
    device::DeleteObject(brush);
}

}  // namespace zm::tool
