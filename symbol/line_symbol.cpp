// Line and area symbols: the dispatch by kind, the expansion of curves, plain and special lines.
#include "symbol/line_symbol.h"

#include <algorithm>
#include <cstring>

#include "draw/state.h"
#include "geometry/state.h"
#include "symbol/line_class.h"
#include "symbol/paper.h"
#include "symbol/scratch.h"
#include "symbol/state.h"
#include "symbol/texts.h"
#include "zenromath/host.h"
#include "zenromath/runtime.h"

namespace zm::symbol {
namespace {

constexpr int kSmoothCurve = 2;
constexpr int kArcChain = 3;
constexpr int kCircle = 4;
constexpr int kReverseCircle = 5;
constexpr int kLongestSmooth = 666;  // from here on a smooth curve is drawn as its points
constexpr int kCurvePoints = 4000;   // room of the scratch, and of the caller's arrays
constexpr int kArcPoints = 4001;     // the most that one arc or circle takes

// The one message about a curve that needs more room than there is.
void TellCurveCut() {
    if (state().curveCutTold) return;
    state().curveCutTold = true;
    _LMsg(texts::kCurveCut, nullptr, 0);
}

// The triples of a chain as true arcs, a straight rest as strokes.
int DrawArcChain(int n, const double* x, const double* y) {
    for (int i = 0; i + 2 < n; i += 2) {
        // In, three points; out, the centre and the ends in counter-clockwise order. The caller's points stay.
        Point p[3] = {{x[i], y[i]}, {x[i + 1], y[i + 1]}, {x[i + 2], y[i + 2]}};
        double r = 0.0;
        if (DRAWARC1(&p[0].x, &p[0].y, &p[1].x, &p[1].y, &p[2].x, &p[2].y, &r) != 0) {
            TqDC->drawarc(p[0].x - r, p[0].y + r, p[0].x + r, p[0].y - r, p[1].x, p[1].y, p[2].x, p[2].y);
        } else {
            Line(p[0], p[1]);
            Line(p[1], p[2]);
        }
    }
    if (n % 2 == 0) TqDC->line(x[n - 2], y[n - 2], x[n - 1], y[n - 1]);
    return 1;
}

// Plain lines of curved types are drawn as true curves. False where the points give none: result is not set, and the
// line type goes on as that of a polyline.
bool DrawTrueCurve(int n, double* x, double* y, int& lineType, int& result) {
    if (lineType == kArcChain && n > 2) {
        result = DrawArcChain(n, x, y);
        return true;
    }
    if (lineType != kCircle && lineType != kReverseCircle) return false;
    Point centre;
    double r = 0.0;
    if (n == 2) {
        centre = {x[1], y[1]};
        r = Distance(centre, {x[0], y[0]});
    } else if (n < 3 || theerP_circle_cr(x, y, centre.x, centre.y, r) == 0) {
        lineType = 1;
        return false;
    }
    result = TqDC->drawarc(centre.x, centre.y, r, 0.0, 0.0);
    return true;
}

bool IsCurve(int lineType) {
    return lineType >= kSmoothCurve && lineType <= kReverseCircle;
}

// Kinds that draw from the caller's arrays; the others take the expanded points.
bool DrawsFromArrays(int status, int number) {
    constexpr int kTicked = 12;
    return status == SymbolStatusLC || status == SymbolStatusY || (status == SymbolStatusE && number == kTicked);
}

// The arc through the first three points, or all the points where they give no arc. Returns the number of pairs.
int ExpandArc(int n, double* x, double* y, double* out, double prec) {
    int count = n;
    if (geometry::state().mini > prec) prec = 1000.0;
    int arc = -1;
    ArcToPoints(n, x, y, out, &arc, prec);
    if (arc >= 0) return arc;
    for (int i = 0; i < n; ++i) {
        out[2 * i] = x[i];
        out[2 * i + 1] = y[i];
    }
    return count;
}

}  // namespace

std::size_t ExpandedRoom(int n) {
    return 2 *
           (static_cast<std::size_t>(std::max(n, kCurvePoints)) + static_cast<std::size_t>(std::max(n, kArcPoints)));
}

int ExpandLinePoints(int n, int lineType, double* x, double* y, double* out, double g) {
    const int room = std::max(n, kCurvePoints);
    int m = n;
    if (lineType == kArcChain && n > 3) {
        m = 0;
        int left = n;
        for (; left > 2 && m < room; left -= 2, x += 2, y += 2)
            m += ExpandArc(left, x, y, out + 2 * m, g) - 1;  // the next piece begins on this one's last point
        ++m;
        if (left == 2 && m <= room) {
            out[2 * m] = x[1];
            out[2 * m + 1] = y[1];
            ++m;
        }
    } else {
        GOTOPOINTS(n, lineType, x, y, out, &m, g);
    }
    if (m > room) TellCurveCut();
    return std::min(m, room);
}

namespace {

// A line with ticks of 1 mm on the paper to its right, one at each vertex but the last.
int DrawTickedLine(int n, double* x, double* y) {
    TqDC->lines(n, x, y);
    if (n < 2) return 1;
    const Scratch offset(2 * static_cast<std::size_t>(n));
    double* px = offset.data();
    if (px == nullptr) return CurrentHost().ShowBox(texts::kOutOfMemory.gbk, texts::kOutOfMemoryTitle, MB_OK);
    double* py = px + n;
    const double tick = ScaleDenominator() / 1000.0;
    parallel(n, x, y, px, py, tick, 1);
    for (int i = 0; i < n - 1; ++i) {
        const Point from = {x[i], y[i]};
        Line(from, At(from, tick, Bearing(from, {px[i], py[i]})));
    }
    return 1;
}

void DrawByKind(int status, int number, int n, int m, double* x, double* y, double* expanded, int code) {
    switch (status) {
        case SymbolStatusLC:
            NewLC(x, y, m, code);
            break;
        case SymbolStatusL:
            TqDC->lines(m, expanded);
            break;
        case SymbolStatusE:
            if (number == 1) NewE(code, m, expanded);
            if (number == 12) DrawTickedLine(m, x, y);
            break;
        case SymbolStatusH:
            if (m > 2) DrawHatch(m, expanded, code);
            break;
        default:
            // Required: more than 3 points here, though drawcode itself takes 3.
            if (n > 3) drawcode(number, code, n, x, y, ScaleDenominator());
            break;
    }
}

}  // namespace
}  // namespace zm::symbol

int PROCESSALL(int n, double* x, double* y, int lineType, int code) {
    using namespace zm::symbol;
    if (zm::draw::NeedWorkingContext("PROCESSALL") == nullptr || getsymbody(code) == 0) return 0;
    const int status = TheHeadStatus();
    if (status < SymbolStatusLC || status > SymbolStatusY) return 0;
    if (n < 0 || x == nullptr || y == nullptr) n = 0;
    if (status == SymbolStatusL && lineType >= kArcChain && n > 0) {
        int result = 0;
        if (DrawTrueCurve(n, x, y, lineType, result)) return result;
    }
    const int number = TheHeadNumber();
    // Required: from 666 points on a smooth curve is drawn as its points.
    if (lineType == kSmoothCurve && n >= kLongestSmooth) lineType = 1;
    if (status == SymbolStatusY || (DrawsFromArrays(status, number) && !IsCurve(lineType))) {
        DrawByKind(status, number, n, n, x, y, nullptr, code);
        return 1;
    }
    const Scratch scratch(ExpandedRoom(n));
    double* expanded = scratch.data();
    if (expanded == nullptr) return _LMsg(texts::kNoScratch, nullptr, 0);
    const int m = ExpandLinePoints(n, lineType, x, y, expanded, ScaleDenominator());
    if (m > n)
        for (int i = 0; i < m; ++i) {
            x[i] = expanded[2 * i];
            y[i] = expanded[2 * i + 1];
        }
    DrawByKind(status, number, n, m, x, y, expanded, code);
    return 1;
}

int NewE(int /*code*/, int n, double* xy) {
    if (xy != nullptr && zm::draw::NeedWorkingContext("NewE") != nullptr) TqDC->lines(n, xy);
    return 1;
}

void _LDExText(double x, double y, char* text, int flags) {
    using zm::symbol::state;
    if (text == nullptr || zm::draw::NeedWorkingContext("_LDExText") == nullptr) return;
    if (TqDC->textRout(x, y, text, flags) == 0 || state().frameSwitch == 0) return;
    double corners[10];
    if (TqDC->Get4CC(x, y, corners, text) == 0) return;
    corners[8] = corners[0];
    corners[9] = corners[1];
    if (TqDC->IsRM() == 0) {
        TqDC->lines(5, corners);
        return;
    }
    // The corners are rotated already.
    double angle = 0.0;
    double cx = 0.0;
    double cy = 0.0;
    TqDC->GetRotateMoveP(angle, cx, cy);
    TqDC->SetRotateMoveP(0.0, 0.0, 0.0);
    TqDC->lines(5, corners);
    TqDC->SetRotateMoveP(angle, cx, cy);
}
