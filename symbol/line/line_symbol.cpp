#include "symbol/line/line_symbol.h"

#include <algorithm>

#include "draw/state.h"
#include "symbol/file/library.h"
#include "symbol/line/pattern_limits.h"
#include "symbol/paper.h"
#include "zenromath/symbol.h"

namespace zm::symbol {
int LayLineSymbol(const double* values, const char* letters, int tokenCount, double* x, double* y, int n, int flip,
                  int sidesOff, double g, int code) {
    if (values[19] > kVertexMode) return LayVertexSymbols(values, letters, x, y, n, flip, g, code);
    if (n < 2 || x == nullptr || y == nullptr) return 0;
    return LayPattern(values, letters, std::clamp(tokenCount, 0, kPatternTokens), x, y, n, flip, sidesOff, g, code);
}

}  // namespace zm::symbol

int NewLC(double* x, double* y, int n, int code) {
    if (zm::draw::NeedWorkingContext("NewLC") == nullptr) return 0;
    // A copy, since each placed symbol replaces the current one.
    const LCBODY symbol = TheLCBody;
    return zm::symbol::LayLineSymbol(symbol.value, symbol.code, TheHeadNumber(), x, y, n, 0, 0,
                                     zm::symbol::ScaleDenominator(), code);
}
