// Slopes between a crest and a foot line, index contours, heights beside scarps.
#include <gtest/gtest.h>

#include <cmath>
#include <map>
#include <sstream>
#include <tuple>

#include "runtime/text/numbers.h"
#include "tests/zenro/sheet_fixture.h"

namespace {

using namespace zm::test;

constexpr char kRules[] =
    "k = 1 -> symbol 387, crest id\n"
    "k = 2 -> symbol 213, foot id\n"
    "k = 3 -> symbol 380, height h\n"
    "k = 5 -> symbol 385, crest id\n"
    "k = 6 -> symbol 388, crest id\n";

class SlopeToScale : public SheetFixture {
 protected:
    void Draw(const std::string& features) { m_rec = Recording(features, kRules); }
    std::vector<std::vector<double>> Strokes() const { return SheetFixture::Strokes(m_rec); }
    std::string m_rec;
};

TEST_F(SlopeToScale, HasLongAndShortHachuresInTurn) {
    for (const bool same : {true, false}) {
        const std::string foot = same ? Points({{20, 40}, {80, 40}}) : Points({{80, 40}, {20, 40}});
        Draw(LineThrough({{20, 60}, {80, 60}}, "\"k\":1,\"id\":\"s7\"") + "," +
             LineFeature(foot, "\"k\":2,\"id\":\"s7\""));
        ASSERT_EQ(m_last.status, 0) << m_last.err;
        int whole = 0, half = 0;
        for (const auto& s : Strokes()) {
            if (std::fabs(s[0] - s[2]) > 0.01) continue;
            const double high = std::max(s[1], s[3]), low = std::min(s[1], s[3]);
            EXPECT_NEAR(high, 60.0, 0.01);
            if (std::fabs(low - 40.0) < 0.01) {
                ++whole;
            } else {
                EXPECT_NEAR(low, 50.0, 0.01);
                ++half;
            }
        }
        EXPECT_EQ(whole, 16) << same;  // every 4 mm of 60
        EXPECT_EQ(half, 15) << same;
    }
}

// Each short hachure ends in a ring of 0.6 mm, no long one does; also past a corner where hachures are left out.
TEST_F(SlopeToScale, ShortHachuresOfAReinforcedSlopeEndInRings) {
    Draw(LineThrough({{10, 90}, {50, 90}, {90, 90}, {90, 10}}, "\"k\":6,\"id\":\"s7\"") + "," +
         LineThrough({{10, 70}, {68, 70}, {70, 68}, {70, 10}}, "\"k\":2,\"id\":\"s7\""));
    ASSERT_EQ(m_last.status, 0) << m_last.err;
    const double chord = 2.0 * 0.3 * std::sin(3.141592653589793 / 12.0);
    std::vector<std::vector<double>> hachures, chords;
    for (const auto& s : Strokes()) {
        const double length = std::hypot(s[2] - s[0], s[3] - s[1]);
        if (std::fabs(length - chord) < 0.02) chords.push_back(s);
        if (length > 5.0 && length < 35.0 && std::max(s[0], s[2]) < 90.01 &&
            (std::fabs(s[1] - 90.0) < 0.01) != (std::fabs(s[0] - 90.0) < 0.01))
            hachures.push_back(s);
    }
    EXPECT_EQ(chords.size() % 12, 0u);
    ASSERT_GT(chords.size(), 12u * 10);
    int rings = 0;
    for (const auto& s : hachures) {
        const double length = std::hypot(s[2] - s[0], s[3] - s[1]);
        const bool ring = std::any_of(chords.begin(), chords.end(), [&](const std::vector<double>& c) {
            return std::hypot((c[0] + c[2]) / 2 - s[2], (c[1] + c[3]) / 2 - s[3]) < 0.7;
        });
        EXPECT_EQ(ring, length < 16.0) << s[0] << " " << s[1] << " " << length;
        rings += ring ? 1 : 0;
    }
    EXPECT_EQ(static_cast<std::size_t>(rings), chords.size() / 12);
}

TEST_F(SlopeToScale, ContoursStopBetweenCrestAndFoot) {
    Draw(LineThrough({{20, 60}, {80, 60}}, "\"k\":1,\"id\":\"s7\"") + "," +
         LineThrough({{20, 40}, {80, 40}}, "\"k\":2,\"id\":\"s7\"") + "," +
         LineThrough({{50.5, 5}, {50.5, 95}}, "\"k\":3,\"h\":10"));
    ASSERT_EQ(m_last.status, 0) << m_last.err;
    for (const auto& s : Strokes()) {
        const bool contour = std::fabs(s[0] - 50.5) < 0.01 && std::fabs(s[2] - 50.5) < 0.01;
        EXPECT_TRUE(!contour || std::max(s[1], s[3]) < 40.01 || std::min(s[1], s[3]) > 59.99) << s[1] << " " << s[3];
    }
}

TEST_F(SlopeToScale, HachuresNeverCross) {
    // Round a sharp corner, the foot inside: its shares lag behind those of the crest.
    Draw(LineThrough({{10, 90}, {50, 90}, {90, 90}, {90, 10}}, "\"k\":1,\"id\":\"s7\"") + "," +
         LineThrough({{10, 80}, {78, 80}, {80, 78}, {80, 10}, {70, 8}, {70, 30}}, "\"k\":2,\"id\":\"s7\""));
    ASSERT_EQ(m_last.status, 0) << m_last.err;
    std::vector<std::vector<double>> hachures;
    for (const auto& s : Strokes()) {
        const bool onCrest = std::fabs(s[1] - 90) < 0.01 || std::fabs(s[0] - 90) < 0.01;
        const bool along = (std::fabs(s[1] - s[3]) < 0.01 && std::fabs(s[1] - 90) < 0.01) ||
                           (std::fabs(s[0] - s[2]) < 0.01 && std::fabs(s[0] - 90) < 0.01);
        if (onCrest && !along) hachures.push_back(s);
    }
    EXPECT_GT(hachures.size(), 50u);
    const auto side = [](const std::vector<double>& a, double x, double y) {
        return (a[2] - a[0]) * (y - a[1]) - (a[3] - a[1]) * (x - a[0]);
    };
    for (const auto& a : hachures)
        for (const auto& b : hachures)
            EXPECT_FALSE(side(a, b[0], b[1]) * side(a, b[2], b[3]) < -1e-6 &&
                         side(b, a[0], a[1]) * side(b, a[2], a[3]) < -1e-6);
}

TEST_F(SlopeToScale, ACrestWithoutAFootIsDrawnByItsSymbolAndReported) {
    Draw(LineThrough({{20, 60}, {80, 60}}, "\"k\":1,\"id\":\"s7\"") + "," +
         LineThrough({{20, 40}, {80, 40}}, "\"k\":2,\"id\":\"s8\""));
    EXPECT_EQ(m_last.status, 0) << m_last.err;
    EXPECT_NE(m_last.err.find("s7"), std::string::npos) << m_last.err;
    int teeth = 0;
    for (const auto& s : Strokes()) teeth += std::fabs(s[0] - s[2]) < 0.01 && std::fabs(s[1] - s[3]) < 5.0 ? 1 : 0;
    EXPECT_GT(teeth, 15);
}

// A scarp has teeth from its crest to its foot, all of them whole.
TEST_F(SlopeToScale, AScarpHasWholeTeethAlone) {
    Draw(LineThrough({{20, 60}, {80, 60}}, "\"k\":5,\"id\":\"s7\"") + "," +
         LineThrough({{20, 52}, {80, 52}}, "\"k\":2,\"id\":\"s7\""));
    ASSERT_EQ(m_last.status, 0) << m_last.err;
    int whole = 0;
    for (const auto& s : Strokes()) {
        if (std::fabs(s[0] - s[2]) > 0.01) continue;
        EXPECT_NEAR(std::min(s[1], s[3]), 52.0, 0.01);
        ++whole;
    }
    EXPECT_EQ(whole, 31);
}

class IndexContours : public SheetFixture {
 protected:
    // The width of the pen in force for each level stroke, by its height on the sheet.
    static std::map<int, double> Widths(const std::string& rec) {
        std::map<int, double> widths;
        double width = 0.0;
        std::istringstream lines(rec);
        for (std::string line; std::getline(lines, line);) {
            const std::size_t reported = line.find("# pen_mm ");
            if (reported != std::string::npos) width = zm::numbers::ReadReal(line.c_str() + reported + 9, nullptr);
            const auto n = NumbersOf(line, "Line2");
            if (n.size() == 4) widths[static_cast<int>(std::lround(n[1] - 3456000))] = width;
        }
        return widths;
    }
    static std::string Contours(double first, double step) {
        std::string all;
        for (int i = 0; i < 12; ++i) {
            std::ostringstream height;
            height.imbue(std::locale::classic());
            height << first + i * step;
            all += (i > 0 ? "," : "") + LevelLine(0, 100, 10 + i * 5, "\"h\":" + height.str());
        }
        return all;
    }
};

TEST_F(IndexContours, AreEveryFifthFromZeroByTheIntervalOfTheRuleOrOfTheScale) {
    const std::string rule = "* -> symbol 380, index 381, height h, note I, label \"{h:.1f}\"";
    // 1:1000: every metre by the scale; 0.5 by the rule.
    for (const auto& [text, first, step] : {std::tuple{rule + "\n", 8.0, 1.0}, {rule + ", interval 0.5\n", 4.0, 0.5}}) {
        const std::string rec = Recording(Contours(first, step), text);
        ASSERT_EQ(m_last.status, 0) << m_last.err;
        EXPECT_EQ(m_last.err.find("intervals"), std::string::npos) << m_last.err;
        const auto widths = Widths(rec);
        ASSERT_EQ(widths.size(), 12u);
        for (const auto& [y, width] : widths) {
            const int fifths = (y - 10) / 5 + 8;  // intervals from zero
            EXPECT_DOUBLE_EQ(width, fifths % 5 == 0 ? 0.3 : 0.15) << y;
        }
        EXPECT_EQ(Count(rec, "Text:"), 2);  // index contours alone have a label
    }
    const std::string rec = Recording(Contours(8.25, 1.0), rule + "\n");
    EXPECT_NE(m_last.err.find("12 contours lie between the intervals of 1.00 m"), std::string::npos) << m_last.err;
    EXPECT_NE(m_last.err.find("8.25 m"), std::string::npos) << m_last.err;
}

class HeightOfAScarp : public SheetFixture {};

TEST_F(HeightOfAScarp, StandsOnItsLowerSideClearOfTheTeeth) {
    const std::string relief =
        LevelLine(0, 100, 35, "\"k\":1,\"h\":10") + "," + LevelLine(0, 100, 65, "\"k\":1,\"h\":12");
    for (const bool east : {true, false}) {
        const std::string rec = Recording(
            relief + "," +
                (east ? LevelLine(20, 80, 50, "\"k\":2,\"d\":1.84") : LevelLine(80, 20, 50, "\"k\":2,\"d\":1.84")),
            "k = 1 -> symbol 380, height h\nk = 2 -> symbol 385, note I, label \"{d:.1f}\", place beside\n");
        ASSERT_EQ(m_last.status, 0) << m_last.err;
        EXPECT_NE(rec.find(":1.8"), std::string::npos) << rec;
        std::istringstream lines(rec);
        int texts = 0;
        for (std::string line; std::getline(lines, line);) {
            const auto n = NumbersOf(line, "Text");
            if (n.size() < 3) continue;
            ++texts;
            EXPECT_LT(n[2] - 3456000, 50 - 1.4) << east;  // the top of the number
            EXPECT_GT(n[2] - 3456000, 50 - 3.5) << east;
            EXPECT_NEAR(n[1] - 40512000, 50, 8) << east;
        }
        EXPECT_EQ(texts, 1);
    }
}

}  // namespace
