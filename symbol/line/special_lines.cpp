#include "symbol/line/special_lines.h"

#include "symbol/paper.h"
#include "symbol/scratch.h"
#include "symbol/texts.h"
#include "zenromath/host.h"
#include "zenromath/symbol.h"

namespace zm::symbol {

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

}  // namespace zm::symbol

int NewE(int /*code*/, int n, double* xy) {
    if (xy != nullptr && zm::draw::NeedWorkingContext("NewE") != nullptr) TqDC->lines(n, xy);
    return 1;
}
