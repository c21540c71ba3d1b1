// Letters in the gaps of pipelines and cables.
#include <gtest/gtest.h>

#include <cmath>

#include "tests/zenro/sheet_fixture.h"

namespace {

using namespace zm::test;

class LetteredLines : public SheetFixture {};

// The longest stroke of the letter for gas, 1.3 mm, is level where the letter stands upright.
TEST_F(LetteredLines, LettersTurnWithTheLineByNoMoreThan45Degrees) {
    constexpr double kDegree = 3.141592653589793 / 180.0;
    const std::vector<std::pair<double, double>> kTurns = {{0, 0},    {30, 30}, {44, 44},  {60, -30}, {90, 0},
                                                           {120, 30}, {180, 0}, {210, 30}, {270, 0},  {330, -30}};
    for (const auto& [direction, turn] : kTurns) {
        const double dx = 30 * std::cos(direction * kDegree), dy = 30 * std::sin(direction * kDegree);
        const std::string rec =
            Recording(LineThrough({{50 - dx, 50 - dy}, {50 + dx, 50 + dy}}, "\"k\":1"), "* -> symbol 334\n");
        ASSERT_EQ(m_last.status, 0) << m_last.err;
        int bars = 0;
        for (const auto& s : Strokes(rec)) {
            const double length = std::hypot(s[2] - s[0], s[3] - s[1]);
            const bool near_ = std::hypot((s[0] + s[2]) / 2 - 50, (s[1] + s[3]) / 2 - 50) < 1.4;
            EXPECT_TRUE(near_ || length > 1.9) << direction;  // nothing of the letter elsewhere
            if (!near_ || std::fabs(length - 1.3) > 0.01) continue;
            EXPECT_NEAR(std::atan2(s[3] - s[1], s[2] - s[0]) / kDegree, turn, 0.5) << direction;
            ++bars;
        }
        EXPECT_EQ(bars, 1) << direction;
    }
}

TEST_F(LetteredLines, AnOpticalCableHasItsWordEvery150MillimetresOfPaper) {
    std::string rec = Recording(LevelLine(5, 95, 50, "\"k\":1"), "* -> symbol 346\n");
    EXPECT_EQ(Count(rec, "PlineBgn") > 0, true);
    const auto gaps = [&] {
        // Where no stroke of the line is for 2.8 mm.
        std::vector<double> from;
        std::vector<std::pair<double, double>> pieces;
        for (const auto& s : Strokes(rec))
            if (std::fabs(s[1] - 50) < 1e-6 && std::fabs(s[3] - 50) < 1e-6)
                pieces.emplace_back(std::min(s[0], s[2]), std::max(s[0], s[2]));
        std::sort(pieces.begin(), pieces.end());
        double reached = 5.0;
        for (const auto& [a, b] : pieces) {
            if (a - reached > 2.5) from.push_back(reached);
            reached = std::max(reached, b);
        }
        return from.size();
    };
    EXPECT_EQ(gaps(), 1u);  // 90 mm
    rec = Recording(LevelLine(5, 455, 50, "\"k\":1"), "* -> symbol 346\n",
                    {"--no-frame", "--sheet", "40512000,3456000,40512460,3456100"});
    EXPECT_EQ(gaps(), 3u);  // 450 mm
}

}  // namespace
