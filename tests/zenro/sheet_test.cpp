// What gives way to what on a sheet: relief, roads, fills, margins.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <sstream>

#include "tests/zenro/sheet_fixture.h"

namespace {

using namespace zm::test;

class Sheet : public SheetFixture {};

TEST_F(Sheet, TeethOfAScarpLieOnTheLowerSideWhicheverWayItWasDrawn) {
    const std::string relief =
        LevelLine(0, 100, 35, "\"k\":1,\"h\":10") + "," + LevelLine(0, 100, 65, "\"k\":1,\"h\":12");
    for (const bool east : {true, false}) {
        const std::string scarp = east ? LevelLine(20, 80, 50, "\"k\":2") : LevelLine(80, 20, 50, "\"k\":2");
        const std::string rec =
            Recording(relief + "," + scarp, "k = 1 -> symbol 380, height h\nk = 2 -> symbol 385, layer 385\n");
        int teeth = 0;
        for (const auto& s : Strokes(rec)) {
            if (std::fabs(s[0] - s[2]) > 0.01) continue;
            ++teeth;
            EXPECT_LT(std::min(s[1], s[3]), 49.5) << east;
            EXPECT_LT(std::max(s[1], s[3]), 50.1) << east;
        }
        EXPECT_GT(teeth, 20) << east;
    }
}

TEST_F(Sheet, ContoursStopAtBuildings) {
    const std::string rec = Recording(
        LevelLine(0, 100, 50, "\"k\":1,\"h\":10") + "," +
            AreaFeature(
                "[[40512040,3456040],[40512060,3456040],[40512060,3456060],[40512040,3456060],[40512040,3456040]]",
                "\"k\":2"),
        "k = 1 -> symbol 380, height h\nk = 2 -> symbol 200\n");
    double drawn = 0.0;
    for (const auto& s : Strokes(rec)) {
        if (std::fabs(s[1] - 50) > 0.01 || std::fabs(s[3] - 50) > 0.01) continue;
        drawn += std::fabs(s[2] - s[0]);
        EXPECT_TRUE(std::max(s[0], s[2]) < 40.01 || std::min(s[0], s[2]) > 59.99);
    }
    EXPECT_NEAR(drawn, 80.0, 0.1);
}

TEST_F(Sheet, LabelsOfContoursHaveTheirHeadsUphillAndBreakTheLine) {
    for (const bool north : {true, false}) {
        const std::string rec = Recording(LevelLine(0, 100, 50, "\"k\":1,\"h\":10") + "," +
                                              LevelLine(0, 100, 60, north ? "\"k\":2,\"h\":11" : "\"k\":2,\"h\":9"),
                                          "k = 1 -> symbol 381, height h, note I, label \"{h:.0f}\"\n"
                                          "k = 2 -> symbol 380, height h\n");
        std::istringstream lines(rec);
        std::vector<double> font;
        for (std::string line; std::getline(lines, line);)
            if (line.rfind("Font:", 0) == 0) std::sscanf(line.c_str(), "Font:%*d:%*d:%lf", &font.emplace_back());
        ASSERT_EQ(font.size(), 1u) << rec;
        EXPECT_EQ(std::fabs(font[0]), north ? 0.0 : 1800.0);
        double drawn = 0.0;
        for (const auto& s : Strokes(rec))
            if (std::fabs(s[1] - 50) < 0.01) drawn += std::fabs(s[2] - s[0]);
        EXPECT_GT(drawn, 90.0);
        EXPECT_LT(drawn, 97.5);  // 2.6 mm of digits and 0.4 clear on both sides
    }
}

TEST_F(Sheet, RoadsThatCrossHaveNoLinesInsideTheJunction) {
    const std::string rec = Recording(
        LevelLine(10, 90, 50, "\"k\":1") + "," + LineFeature("[40512050,3456010],[40512050,3456090]", "\"k\":2"),
        "k = 1 -> layer 264, road 10, level 6\nk = 2 -> layer 266, road 6, level 5\n");
    double level = 0.0, upright = 0.0, ends = 0.0;
    for (const auto& s : Strokes(rec)) {
        const double mx = (s[0] + s[2]) / 2, my = (s[1] + s[3]) / 2, length = std::hypot(s[2] - s[0], s[3] - s[1]);
        EXPECT_FALSE(mx > 47.1 && mx < 52.9 && my > 45.1 && my < 54.9) << mx << " " << my;
        if (std::fabs(my - 45) < 0.01 || std::fabs(my - 55) < 0.01) level += length;
        if (std::fabs(mx - 47) < 0.01 || std::fabs(mx - 53) < 0.01) upright += length;
        if (std::fabs(mx - 10) < 0.01 || std::fabs(mx - 90) < 0.01) ends += length;
    }
    EXPECT_NEAR(level, 2 * (80 - 6), 0.1);
    EXPECT_NEAR(upright, 2 * (80 - 10), 0.1);
    EXPECT_NEAR(ends, 20.0, 0.1);  // closed where nothing goes on
}

TEST_F(Sheet, FillsDrawWholeSymbolsOnly) {
    const std::string rec = Recording(
        AreaFeature("[[40512005,3456005],[40512095,3456005],[40512095,3456095],[40512005,3456095],[40512005,3456005]]",
                    "\"k\":1"),
        "* -> symbol 539, outline 200, layer 539\n");
    int rings = 0;
    std::istringstream lines(rec);
    for (std::string line; std::getline(lines, line);) {
        const auto arc = NumbersOf(line, "Arc");
        if (arc.size() != 5) continue;
        ++rings;
        for (const int axis : {0, 1}) {
            const double at = arc[axis] - (axis == 0 ? 40512000 : 3456000);
            EXPECT_GT(at - arc[2], 5.4);
            EXPECT_LT(at + arc[2], 94.6);
        }
    }
    EXPECT_GT(rings, 20);
}

TEST_F(Sheet, MarginsComeFromAFileWithChineseKeys) {
    m_zenro.File("m.txt", "# 图廓\n图名 = 清溪镇\n密级 = 内部\n测量员 = 张三\n接图表 = 是\n等高距 = 0.5 m\nunit=队\n");
    const std::string line = LevelLine(0, 100, 50, "\"k\":1");
    Recording(line, "* -> symbol 250", {"--margins", "m.txt", "-o", "a.svg"});
    ASSERT_EQ(m_last.status, 0) << m_last.err;
    const std::string svg = ReadFile(m_zenro / "a.svg");
    for (const char* text : {">清溪镇<", ">内部<", ">测量员<", "队", "3456.1-512.1"})
        EXPECT_NE(svg.find(text), std::string::npos) << text;
    EXPECT_NE(svg.find("stroke-width=\"40\""), std::string::npos);  // the outer frame, 1.0 mm
    m_zenro.File("bad.txt", "图名 = a\n图明 = b\n");
    Recording(line, "* -> symbol 250", {"--margins", "bad.txt"});
    EXPECT_EQ(m_last.status, 2);
    EXPECT_NE(m_last.err.find("bad.txt:2: \"图明\" is no item of the margins"), std::string::npos) << m_last.err;
    Recording(line, "* -> symbol 250", {"--margins", "missing.txt"});
    EXPECT_EQ(m_last.status, 3);
}

TEST_F(Sheet, TheNumberOfACornerBelowZeroCanBeRead) {
    Recording(LevelLine(0, 100, 50, "\"k\":1"), "* -> symbol 250",
              {"--sheet", "-10,-20,90,80", "--empty", "draw", "-o", "a.svg"});
    ASSERT_EQ(m_last.status, 0) << m_last.err;
    EXPECT_NE(ReadFile(m_zenro / "a.svg").find(">(-0.02)-(-0.01)<"), std::string::npos);
}

// A house of 6 m about the upper arm of the cross, and one that leaves less than 1 mm of the right arm.
TEST_F(Sheet, GridCrossesStopAtHouses) {
    const std::vector<std::string> about = {"--sheet", "40511950,3455950,40512050,3456050"};
    const auto inside = [](const std::vector<double>& s) {
        return std::hypot(s[0], s[1]) < 5.1 && std::hypot(s[2], s[3]) < 5.1;
    };
    const std::string far = LevelLine(-40, -30, -40, "\"k\":1");
    const std::string rules = "k = 1 -> symbol 250\nk = 2 -> symbol 200\n";
    for (const bool houses : {false, true}) {
        const std::string up = AreaWithin({{-3, 2}, {3, 2}, {3, 8}, {-3, 8}, {-3, 2}}, "\"k\":2"),
                          right = AreaWithin({{0.5, -3}, {4.5, -3}, {4.5, 1}, {0.5, 1}, {0.5, -3}}, "\"k\":2");
        const std::string rec = Recording(houses ? far + "," + up + "," + right : far, rules, about);
        ASSERT_EQ(m_last.status, 0) << m_last.err;
        double level = 0.0, upright = 0.0;
        for (const auto& s : Strokes(rec)) {
            if (!inside(s)) continue;
            if (std::fabs(s[1]) < 0.01 && std::fabs(s[3]) < 0.01) level += std::fabs(s[2] - s[0]);
            if (std::fabs(s[0]) < 0.01 && std::fabs(s[2]) < 0.01) upright += std::fabs(s[3] - s[1]);
        }
        EXPECT_NEAR(level, houses ? 5.5 : 10.0, 0.01);
        EXPECT_NEAR(upright, houses ? 7.0 : 10.0, 0.01);
    }
}

// A house of 4 m on the centre leaves 3 mm of each arm; a wall across an arm leaves 2 mm beyond it.
TEST_F(Sheet, OfAGridCrossNothingIsLeftThatIsCutOffFromItsCentre) {
    const std::vector<std::string> about = {"--sheet", "40511950,3455950,40512050,3456050"};
    const std::string rules = "k = 1 -> symbol 250\nk = 2 -> symbol 200\n";
    const auto lengthOf = [&](const std::string& house) {
        const std::string rec = Recording(LevelLine(-40, -30, -40, "\"k\":1") + "," + house, rules, about);
        double length = 0.0;
        for (const auto& s : Strokes(rec))
            if ((std::fabs(s[1]) < 0.01 && std::fabs(s[3]) < 0.01 && std::fabs(s[0]) < 5.1 && std::fabs(s[2]) < 5.1) ||
                (std::fabs(s[0]) < 0.01 && std::fabs(s[2]) < 0.01 && std::fabs(s[1]) < 5.1 && std::fabs(s[3]) < 5.1))
                length += std::hypot(s[2] - s[0], s[3] - s[1]);
        return length;
    };
    EXPECT_NEAR(lengthOf(AreaWithin({{-2, -2}, {2, -2}, {2, 2}, {-2, 2}, {-2, -2}}, "\"k\":2")), 0.0, 0.01);
    EXPECT_NEAR(lengthOf(AreaWithin({{2, -1}, {3, -1}, {3, 1}, {2, 1}, {2, -1}}, "\"k\":2")), 17.0, 0.01);
}

// A tick of 5 mm at the neat line stops at a house, and where a house is at its foot there is none.
TEST_F(Sheet, TicksAtTheNeatLineStopAtHouses) {
    const std::vector<std::string> about = {"--sheet", "40511950,3455950,40512050,3456050"};
    const std::string rules = "k = 1 -> symbol 250\nk = 2 -> symbol 200\n";
    const auto lengthOf = [&](const std::string& house) {
        const std::string rec = Recording(LevelLine(-40, -30, -40, "\"k\":1") + house, rules, about);
        double length = 0.0;
        for (const auto& s : Strokes(rec))  // the tick upwards from the middle of the lower side
            if (std::fabs(s[0]) < 0.01 && std::fabs(s[2]) < 0.01 && std::max(s[1], s[3]) < -44.9)
                length += std::fabs(s[3] - s[1]);
        return length;
    };
    EXPECT_NEAR(lengthOf(""), 5.0, 0.01);
    EXPECT_NEAR(lengthOf("," + AreaWithin({{-4, -47}, {4, -47}, {4, -40}, {-4, -40}, {-4, -47}}, "\"k\":2")), 3.0,
                0.01);
    EXPECT_NEAR(lengthOf("," + AreaWithin({{-4, -55}, {4, -55}, {4, -48}, {-4, -48}, {-4, -55}}, "\"k\":2")), 0.0,
                0.01);
}

// Quarters and zones of use are drawn over whole blocks in OpenStreetMap; a limit on the sheet would be none on the land.
TEST_F(Sheet, QuartersOfOpenStreetMapHaveNoLimits) {
    const std::string house = AreaWithin({{40, 40}, {50, 40}, {50, 50}, {40, 50}, {40, 40}}, "\"building\":\"yes\"");
    for (const std::string use : {"residential", "commercial", "retail", "industrial", "military", "grass"}) {
        const std::string quarter =
            AreaWithin({{10, 10}, {90, 10}, {90, 90}, {10, 90}, {10, 10}}, "\"landuse\":\"" + use + "\"");
        m_zenro.File("in.geojson", Collection(quarter + "," + house));
        m_last = m_zenro.Run({"draw", "in.geojson", "--rules", "osm", "--scale", "1000", "--sheet",
                              "40512000,3456000,40512100,3456100", "--no-frame", "-o", "a.rec", "--overwrite"});
        ASSERT_EQ(m_last.status, 0) << m_last.err;
        int ofHouse = 0, others = 0;
        for (const auto& s : Strokes(ReadFile(m_zenro / "a.rec")))
            (s[0] > 39.9 && s[0] < 50.1 && s[1] > 39.9 && s[1] < 50.1 ? ofHouse : others) += 1;
        EXPECT_EQ(ofHouse, 4) << use;
        EXPECT_EQ(others > 0, use == "grass") << use;
    }
}

TEST_F(Sheet, TheNumberOfAStandardHasNoGapBeforeItsYear) {
    m_zenro.File("m.txt", "图式 = GB/T 20257.1—2017 图式。\n测绘说明 = 某某—某某\n");
    Recording(LevelLine(0, 100, 50, "\"k\":1"), "* -> symbol 250", {"--margins", "m.txt", "-o", "a.svg"});
    ASSERT_EQ(m_last.status, 0) << m_last.err;
    const std::string svg = ReadFile(m_zenro / "a.svg");
    EXPECT_NE(svg.find("GB/T 20257.1-2017"), std::string::npos);
    EXPECT_NE(svg.find("某某—某某"), std::string::npos);  // between full characters it stays
}

}  // namespace
