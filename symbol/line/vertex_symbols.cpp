// Line-class symbols in vertex mode.
#include <cmath>

#include "symbol/line/line_symbol.h"
#include "symbol/paper.h"
#include "symbol/point/block_names.h"
#include "symbol/texts.h"
#include "zenromath/dwg.h"
#include "zenromath/runtime.h"
#include "zenromath/symbol.h"

namespace zm::symbol {
namespace {

constexpr int kCount = 19;  // slots of the header tokens
constexpr int kTurn = 18;
constexpr int kInset = 17;
constexpr int kColour = 16;
constexpr double kNoLength = 0.0001;

void DrawConnection(const double* values, const char* letters, Point a, Point b, const Polar& leg, double inset) {
    if (letters[kInset] == 'I') {
        const double dx = inset * std::cos(leg.bearing);
        const double dy = inset * std::sin(leg.bearing);
        a = {a.x + dx, a.y + dy};
        b = {b.x - dx, b.y - dy};
    }
    if (letters[kColour] == 'C' && OnDwg()) _LDBsetcolor(Truncated(values[kColour]));
    Line(a, b);
}

}  // namespace

int LayVertexSymbols(const double* values, const char* letters, const double* x, const double* y, int n, int flip,
                     double g, int code) {
    if (x == nullptr || y == nullptr) n = 0;
    if (OnDwg() && BlockName(code) != nullptr)
        for (int i = n - 1; i >= 0; --i)
            if (TqDC->cutpoint(x[i], y[i]) != 0) insert(x[i], y[i], 0.0, code);
    for (int i = 0; i < 3; ++i)
        if (values[kCount] >= i + 1 && letters[i] != 'G') return _LMsg(texts::kBadVertexSymbol, nullptr, 0);
    const int count = Truncated(values[kCount] + 0.001);
    const double inset = g * values[kInset];
    for (int i = 0; i < n - 1; ++i) {
        const Point a = {x[i], y[i]};
        const Point b = {x[i + 1], y[i + 1]};
        const Polar leg = PolarOf(a, b);
        const double angle = values[kTurn] == 1.0 ? Turned(leg.bearing, flip) : 0.0;
        insert(a.x, a.y, angle, Truncated(values[0]));
        if (count > 1) insert(b.x, b.y, angle, Truncated(values[1]));
        if (count == 3) insert((a.x + b.x) / 2.0, (a.y + b.y) / 2.0, angle, Truncated(values[2]));
        if (letters[kCount] == 'D' && leg.distance > kNoLength) DrawConnection(values, letters, a, b, leg, inset);
    }
    return 1;
}

}  // namespace zm::symbol
