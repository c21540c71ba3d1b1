// Line and area symbols: the dispatch by kind, and plain lines as true curves.

#include "draw/state.h"
#include "symbol/line/expanded_line.h"
#include "symbol/line/special_lines.h"
#include "symbol/paper.h"
#include "symbol/scratch.h"
#include "symbol/texts.h"
#include "zenromath/runtime.h"
#include "zenromath/symbol.h"

namespace zm::symbol {
namespace {

constexpr int kLongestSmooth = 666;  // from here on a smooth curve is drawn as its points

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
    if (n > 0 && m > n)
        for (int i = 0; i < m; ++i) {
            x[i] = expanded[2 * i];
            y[i] = expanded[2 * i + 1];
        }
    DrawByKind(status, number, n, m, x, y, expanded, code);
    return 1;
}
