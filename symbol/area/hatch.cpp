// Hatch symbols: the entries of the current symbol, one after the other, and the outline.
#include <cmath>

#include "draw/state.h"
#include "draw/stroke/stream.h"
#include "geometry/exact/crossing.h"
#include "symbol/area/hatch_fill.h"
#include "symbol/area/hatch_lines.h"
#include "symbol/file/library.h"
#include "symbol/paper.h"
#include "symbol/point/repeated_symbol.h"
#include "symbol/scratch.h"
#include "symbol/state.h"
#include "symbol/texts.h"
#include "zenromath/config.h"
#include "zenromath/dwg.h"
#include "zenromath/runtime.h"

namespace zm::symbol {
namespace {

constexpr int kNeverThinned = 824;      // code
constexpr double kThinningBelow = 2.0;  // pixels per unit
constexpr double kLeastPixels = 5.0;    // spacing when thinned
constexpr double kClosed = 1e-6;        // survey metres, first and last point
constexpr int kNextColour = -1;
constexpr int kColours = 8;      // of the rolling counter
constexpr int kFirstColour = 2;  // its place in the palette

enum EntryType { kGrid = 1, kParallels = 2, kBrush = 3, kBitmap = 4 };

// Spacings in survey metres, directions in radians.
struct Families {
    double a1, d1, a2, d2;
};

// Required: the counter is stepped first, so the cycle begins with the palette's entry 3.
COLORREF NextColour() {
    state().colourCounter = (state().colourCounter + 1) % kColours;
    unsigned long* palette = nullptr;
    Get_SysColor(palette);
    return static_cast<COLORREF>(palette[state().colourCounter + kFirstColour]);
}

// Zoomed far out the lines thin out and keep some pixels between them.
void Thin(Families& f) {
    const double k = TqDC->GetPixelsByRealen(1.0);
    if (!(k < kThinningBelow)) return;
    f.d1 /= k;
    f.d2 /= k;
    if (k * f.d1 < kLeastPixels) {
        f.d2 *= kLeastPixels / k / f.d1;
        f.d1 = kLeastPixels / k;
    }
}

double Radians(float degrees) {
    return degrees / 180.0 * kPi;
}

void DrawGrid(const double* out, int points, int symbol) {
    const int first = Truncated(out[2 * points]);
    const int second = Truncated(out[2 * points + 1]);
    const double* other = out + 4 * first;
    constexpr geometry::Pair kUpright = {1.0, 0.0};
    draw::StrokeStream stream;
    RepeatedSymbol marks(stream);
    for (int i = 0; i < first; ++i) {
        const double* s = out + 4 * i;
        const geometry::SidesOfBox sides(s[0], s[1], s[2], s[3]);
        for (int j = 0; j < second; ++j) {
            const double* t = other + 4 * j;
            if (sides.Miss(t[0], t[1], t[2], t[3])) continue;
            double x = 0.0;
            double y = 0.0;
            if (Cross_P(x, y, s[0], s[1], s[2], s[3], t[0], t[1], t[2], t[3]) != 0) continue;
            const geometry::Pair at = {x, y};
            marks.Place({at, at + kUpright, true, kUpright}, symbol);
        }
    }
    stream.Flush();
}

void CountLeftOut(int code, int points, const LeftOut& leftOut) {
    if (leftOut.lines + leftOut.segments + leftOut.crossings == 0) return;
    HatchCut& cut = state().hatchCuts.codes[static_cast<std::size_t>(code < kLastCode ? code : kLastCode)];
    const auto drawn = static_cast<std::uint64_t>(points / 2);
    ++cut.polygons;
    cut.drawn += drawn;
    cut.wanted += drawn + static_cast<std::uint64_t>(leftOut.lines + leftOut.segments);
    cut.crossings += static_cast<std::uint64_t>(leftOut.crossings);
}

class Hatch {
 public:
    // Made while the hatch is the current symbol; its body and its number of entries stay known here.
    Hatch(int n, double* xy, int code)
        : m_n(n), m_xy(xy), m_code(code), m_entries(TheHeadNumber()), m_body(CurrentBody()), m_g(ScaleDenominator()) {}

    int Draw();

 private:
    int TypeAt(int at) const { return at < m_body.size ? Truncated(m_body.records[at].op.op) : 0; }
    // The leading record is there also where no entry follows.
    int PenStyle() const { return Truncated(m_body.records[0].op.op) % 7; }
    int Fill(int type) const;
    bool DrawEntries(double* out) const;
    void DrawEntry(int at, double* out) const;
    void DrawOutline() const;

    int m_n;
    double* m_xy;
    int m_code;
    int m_entries;
    Body m_body;
    double m_g;
};

int Hatch::Draw() {
    // Required: the entities that follow carry the code as elevation and thickness; readers of the file tell hatches by
    // it.
    if (OnDwg()) _LDBsetelev(m_code, m_code);
    const int type = TypeAt(1);
    if (type == kBrush || type == kBitmap) return Fill(type);
    {
        const Scratch scratch(static_cast<std::size_t>(HatchRoom(kHatchCapacity)));
        if (scratch.data() == nullptr) return _LMsg(texts::kNoHatchScratch, nullptr, 0);
        if (!DrawEntries(scratch.data())) return _LMsg(texts::kShortHatch, nullptr, 0);
    }
    DrawOutline();
    return 1;
}

// A first entry of brush or bitmap is the whole symbol.
int Hatch::Fill(int type) const {
    if (m_body.size < (type == kBrush ? 3 : 4)) return _LMsg(texts::kShortHatch, nullptr, 0);
    const SYMBODY::Raw brush = m_body.records[2].raw;
    const COLORREF colour = brush.second == kNextColour ? NextColour() : static_cast<COLORREF>(brush.second);
    if (type == kBrush) return FillBrushPolygon(m_n, m_xy, PenStyle(), brush.first, colour);
    const SYMBODY::Raw rows = m_body.records[3].raw;
    return FillPatternPolygon(m_n, m_xy, PenStyle(), brush.first, colour, static_cast<std::uint32_t>(rows.first),
                              static_cast<std::uint32_t>(rows.second));
}

// False where the body ends before the entries that the head counts.
bool Hatch::DrawEntries(double* out) const {
    int at = 1;
    for (int left = m_entries; left > 0; --left) {
        if (at < 0 || at >= m_body.size) return false;
        DrawEntry(at, out);
        if (left == 1) break;
        // The symbols of a grid have taken its place.
        getsymbody(m_code);
        at = NextRecord(m_body, at);
    }
    return true;
}

void Hatch::DrawEntry(int at, double* out) const {
    const int type = TypeAt(at);
    if ((type != kGrid && type != kParallels) || at + (type == kGrid ? 3 : 1) >= m_body.size) return;
    const auto record = [&](int i) { return m_body.records[at + i].point; };
    Families f = {Radians(record(1).x), record(1).y * m_g, 0.0, 0.0};
    int symbol = 0;
    if (type == kGrid) {
        f.a2 = Radians(record(2).x);
        f.d2 = record(2).y * m_g;
        symbol = Truncated(record(3).x);
    }
    // Required: this one code keeps its spacing at every zoom.
    if (m_code != kNeverThinned && !OnDwg()) Thin(f);
    int points = kHatchCapacity;
    LeftOut leftOut;
    if (GenerateHatchLines(m_n, m_xy, f.a1, f.d1, f.a2, f.d2, type, points, out, leftOut) == 0) return;
    CountLeftOut(m_code, points, leftOut);
    if (type == kGrid) {
        DrawGrid(out, points, symbol);
        return;
    }
    draw::StrokeStream stream;
    for (const double* end = out + 2 * static_cast<std::ptrdiff_t>(points); out != end; out += 4)
        stream.Line(geometry::Pair{out[0], out[1]}, geometry::Pair{out[2], out[3]});
    stream.Flush();
}

void Hatch::DrawOutline() const {
    const tagLOGPEN current = TqDC->GetCurLogpen();
    const CTQPen pen(PenStyle(), static_cast<int>(current.lopnWidth.x), DWORD{current.lopnColor});
    TqDC->lines(m_n, m_xy);
    const double* last = m_xy + 2 * (static_cast<std::ptrdiff_t>(m_n) - 1);
    if (std::fabs(m_xy[0] - last[0]) > kClosed || std::fabs(m_xy[1] - last[1]) > kClosed)
        TqDC->line(last[0], last[1], m_xy[0], m_xy[1]);
}

}  // namespace
}  // namespace zm::symbol

int DrawHatch(int n, double* xy, int code) {
    using namespace zm::symbol;
    if (n < 3 || xy == nullptr || zm::draw::NeedWorkingContext("DrawHatch") == nullptr) return 0;
    if (getsymbody(code) == 0 || TheHeadStatus() != SymbolStatusH) return 0;
    return Hatch(n, xy, code).Draw();
}
