#include "tests/symbol/pattern_steps.h"

#include "zenromath/draw.h"
#include "zenromath/geometry.h"
#include "zenromath/symbol.h"

namespace zm::test {

std::pair<std::vector<double>, std::vector<double>> LayStepByStep(const std::vector<Token>& tokens,
                                                                  std::vector<double> x, std::vector<double> y,
                                                                  double g) {
    const int n = static_cast<int>(x.size());
    std::size_t p = 0;
    int from = 0, i = 0;
    double rest = g * tokens[0].value / 1000.0;
    const auto advance = [&] {
        p = (p + 1) % tokens.size();
        rest = g * tokens[p].value / 1000.0;
    };
    const auto stroke = [&](double endX, double endY) {
        for (int v = from; v <= i; ++v) {
            const auto k = static_cast<std::size_t>(v);
            TqDC->line(x[k], y[k], v < i ? x[k + 1] : endX, v < i ? y[k + 1] : endY);
        }
    };
    while (i < n - 1) {
        const auto at = static_cast<std::size_t>(i);
        double d = 0.0, a = 0.0;
        XYSA(x[at], y[at], &x[at + 1], &y[at + 1], &d, &a, 0);
        const char letter = tokens[p].letter;
        if (letter != '+' && letter != '-') {
            if (letter == 'P') TqDC->pixel(x[at], y[at], 0, 1);
            if (letter == 'G') insert(x[at], y[at], a, static_cast<int>(tokens[p].value));
            advance();
            from = i;
        } else if (d < rest) {
            if (letter == '+' && i == n - 2) stroke(x[at + 1], y[at + 1]);
            rest -= d;
            ++i;
        } else {
            double endX = 0.0, endY = 0.0;
            XYSA(x[at], y[at], &endX, &endY, &rest, &a, 1);
            if (letter == '+') stroke(endX, endY);
            advance();
            if (rest == d) {
                ++i;
            } else {
                x[at] = endX;
                y[at] = endY;
            }
            from = i;
        }
    }
    return {std::move(x), std::move(y)};
}

}  // namespace zm::test
