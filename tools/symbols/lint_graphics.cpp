// Lint of graphic symbols: what their records come to.
#include <cmath>

#include "tools/kit/translation.h"
#include "tools/symbols/lint.h"

namespace zm::tool::symbols {

namespace {

using zm::scan::Scanner;

constexpr double kLargeSymbol = 60.0;  // millimetres; none of the field's point symbols comes near it
constexpr double kMarkerSize = 1e6;    // beyond it the size is that of an arc polyline's marker, which counts in it
constexpr float kArcMarkerInFile = 1000.0F * zm::symbol::kArcMarker;

// A sweep below 0 appends no arc: only the chord is drawn.
void LintSweeps(const SymbolText& text, int code, std::vector<Finding>& findings) {
    for (int i = text.At(code).first + 1; i <= text.At(code).last; ++i) {
        Scanner record(text.Line(i).c_str());
        int op = 0;
        if (!record.Int(op) || op != 2) continue;
        float x = 0.0F, y = 0.0F;
        while (record.Pair(x, y))
            if (std::fabs(x - kArcMarkerInFile) < 1.0F && y < 0.0F)
                findings.push_back(
                    {i, code, Weight::lost,
                     Phrase("a sweep of {0} degrees draws the chord alone; exchange the two points and turn the sign",
                            Shown(y / 1000.0))});
    }
}

}  // namespace

void LintGraphics(const SymbolText& text, std::vector<Finding>& findings) {
    for (int code = 1; code < zm::symbol::kHeads; ++code) {
        if (!text.Is(code, SymbolStatusG)) continue;
        const int line = text.At(code).first;
        const double size = text.library.sizes[static_cast<std::size_t>(code)];
        if (text.Head(code).number == 0) {
            findings.push_back({line, code, Weight::lost, Phrase("the symbol has no record and draws nothing")});
        } else if (size > kLargeSymbol && size < kMarkerSize) {
            findings.push_back({line, code, Weight::doubtful,
                                Phrase("the symbol is {0} mm large; lengths are millimetres on paper", Shown(size))});
        }
        LintSweeps(text, code, findings);
    }
}

}  // namespace zm::tool::symbols
