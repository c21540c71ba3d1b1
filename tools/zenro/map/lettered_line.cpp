#include "tools/zenro/map/lettered_line.h"

#include <algorithm>
#include <cmath>
#include <map>

#include "tools/zenro/map/shapes.h"

namespace zm::tool {
namespace {

constexpr double kGap = 2.8, kShortest = 7.0;         // millimetres: of the gap; of a line with a letter
constexpr double kPipe = 120.0, kOpticalCable = 150;  // millimetres from letter to letter
constexpr double kMostLetters = 1e9;                  // of one line, however long; few of them are on a sheet
constexpr double kQuarter = 3.141592653589793 / 2.0;

// The part of a chain between two distances from its beginning.
Chain Part(const Chain& chain, double from, double to) {
    Chain part;
    const auto add = [&](double x, double y) {
        part.x.push_back(x);
        part.y.push_back(y);
    };
    double done = 0.0;
    for (std::size_t i = 0; i + 1 < chain.size() && done < to; ++i) {
        const double dx = chain.x[i + 1] - chain.x[i], dy = chain.y[i + 1] - chain.y[i], d = std::hypot(dx, dy);
        if (d > 0.0 && done + d > from) {
            const double t0 = std::max(0.0, from - done) / d, t1 = std::min(d, to - done) / d;
            if (part.size() == 0) add(chain.x[i] + t0 * dx, chain.y[i] + t0 * dy);
            add(chain.x[i] + t1 * dx, chain.y[i] + t1 * dy);
        }
        done += d;
    }
    return part;
}

}  // namespace

std::optional<LetteredLine> LetteredLineOf(int code) {
    constexpr int kOnTheGround = 330, kUnderground = 331, kCable = 345;
    static const std::map<int, LetteredLine> kLines = {
        {333, {kOnTheGround, 963, kPipe}},  {334, {kUnderground, 933, kPipe}}, {335, {kUnderground, 934, kPipe}},
        {336, {kUnderground, 930, kPipe}},  {338, {kUnderground, 931, kPipe}}, {339, {kUnderground, 932, kPipe}},
        {346, {kCable, 975, kOpticalCable}}};
    const auto found = kLines.find(code);
    return found != kLines.end() ? std::optional(found->second) : std::nullopt;
}

GappedLine WithGaps(const Chain& chain, double repeat, const Page& page) {
    GappedLine line;
    const double all = LengthOf(chain), gap = page.Ground(kGap);
    if (all < page.Ground(kShortest)) {
        line.pieces.push_back(chain);
        return line;
    }
    const double count = std::max(1.0, std::round(std::min(all / page.Ground(repeat), kMostLetters)));
    double from = 0.0, next = 0.0;
    for (const ChainPart& seen : PartsIn(chain, page.sheet.Widened(gap))) {
        const double last = std::min(std::floor(seen.to / all * count), count - 1.0);
        for (double i = std::max(next, std::floor(seen.from / all * count)); i <= last; ++i) {
            const double at = all * (i + 0.5) / count;
            double x = 0.0, y = 0.0, direction = 0.0;
            PointAlong(chain, at, x, y, direction);
            line.letters.push_back({x, y, std::remainder(direction, kQuarter)});
            line.pieces.push_back(Part(chain, from, at - gap / 2));
            from = at + gap / 2;
            next = i + 1.0;
        }
    }
    line.pieces.push_back(Part(chain, from, all));
    return line;
}

}  // namespace zm::tool
