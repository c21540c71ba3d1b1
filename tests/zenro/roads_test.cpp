// Roads by their middle lines: bridges over roads, tunnels, and where edges end.
#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <thread>

#include "runtime/uses.h"
#include "tests/zenro/sheet_fixture.h"
#include "tools/zenro/map/road_network.h"

namespace {

using namespace zm::test;

constexpr char kRules[] =
    "b = 1 -> storey 1\n"
    "t = 1 -> storey -1\n"
    "k = 1 -> layer 264, road 10, level 6\n"
    "k = 2 -> layer 266, road 6, level 5\n"
    "k = 3 -> symbol 300\n"
    "k = 5 -> symbol 200, level 4\n"
    "k = 6 -> symbol 200, path\n"
    "k = 7 -> symbol 200\n"
    "k = 8 -> symbol 200, path 2.5\n"
    "k = 4 -> symbol 380, height h\n";

class Roads : public SheetFixture {
 protected:
    using Box = std::vector<double>;  // x1, y1, x2, y2
    // The length of the strokes along a direction whose middle lies in a box.
    static double Length(const std::string& rec, const Box& box, bool level) {
        double length = 0.0;
        for (const auto& s : Strokes(rec)) {
            const double mx = (s[0] + s[2]) / 2, my = (s[1] + s[3]) / 2;
            if (mx < box[0] || my < box[1] || mx > box[2] || my > box[3]) continue;
            if (std::fabs(level ? s[1] - s[3] : s[0] - s[2]) < 0.01) length += std::hypot(s[2] - s[0], s[3] - s[1]);
        }
        return length;
    }
};

// A road of 10 m that crosses one of 6 m, in one storey or above it.
TEST_F(Roads, ABridgeGoesOnOverARoadThatStopsBesideIt) {
    const std::string below = LineThrough({{50, 10}, {50, 90}}, "\"k\":2");
    for (const bool bridge : {true, false}) {
        const std::string rec =
            Recording(LevelLine(0, 100, 50, bridge ? "\"k\":1,\"b\":1" : "\"k\":1") + "," + below, kRules);
        ASSERT_EQ(m_last.status, 0) << m_last.err;
        const double rails = Length(rec, {0, 44.9, 100, 55.1}, true);
        EXPECT_NEAR(rails, bridge ? 200.0 : 2 * (100.0 - 6.0), 0.2) << bridge;
        // 0.2 mm of paper beside the bridge is 0.2 m.
        EXPECT_NEAR(Length(rec, {46.9, 0, 53.1, 100}, false), 2 * (80.0 - 10.0 - (bridge ? 0.4 : 0.0)), 0.2) << bridge;
        EXPECT_NEAR(Length(rec, {46.9, 45.1, 53.1, 54.9}, false), 0.0, 0.01) << bridge;
    }
}

TEST_F(Roads, ABridgeOpensIntoTheRoadsAtItsEndsAndHasWings) {
    const std::string rec =
        Recording(LevelLine(0, 40, 50, "\"k\":1") + "," + LevelLine(40, 60, 50, "\"k\":1,\"b\":1") + "," +
                      LevelLine(60, 100, 50, "\"k\":1") + "," + LineThrough({{50, 10}, {50, 90}}, "\"k\":2"),
                  kRules);
    // Both kerbs and rails run through without a gap, and nothing closes the ends of the bridge.
    EXPECT_NEAR(Length(rec, {0, 44.9, 100, 45.1}, true), 100.0, 0.2);
    EXPECT_NEAR(Length(rec, {0, 54.9, 100, 55.1}, true), 100.0, 0.2);
    EXPECT_NEAR(Length(rec, {39, 45.2, 41, 54.8}, false) + Length(rec, {59, 45.2, 61, 54.8}, false), 0.0, 0.05);
    int wings = 0;
    for (const auto& s : Strokes(rec)) {
        const double dx = s[2] - s[0], dy = s[3] - s[1];
        if (std::fabs(std::fabs(dx) - std::fabs(dy)) > 0.02 || std::hypot(dx, dy) < 0.5) continue;
        EXPECT_NEAR(std::hypot(dx, dy), 1.0, 0.05);
        EXPECT_TRUE(std::max(s[1], s[3]) > 55.5 || std::min(s[1], s[3]) < 44.5);  // outside the road
        EXPECT_TRUE(std::min(s[0], s[2]) > 59.9 || std::max(s[0], s[2]) < 40.1);  // beyond the bridge
        ++wings;
    }
    EXPECT_EQ(wings, 4);
}

TEST_F(Roads, ATunnelIsDashedBetweenItsPortalsAndBreaksNothing) {
    const std::string rec =
        Recording(LevelLine(0, 20, 50, "\"k\":1") + "," + LevelLine(20, 80, 50, "\"k\":1,\"t\":1") + "," +
                      LevelLine(80, 100, 50, "\"k\":1") + "," + LineThrough({{50, 10}, {50, 90}}, "\"k\":2") + "," +
                      LineThrough({{35, 10}, {35, 90}}, "\"k\":4,\"h\":10"),
                  kRules);
    // Dashes of 2.0 with gaps of 1.0, but not in the road above.
    const double dashes = Length(rec, {20, 44.9, 80, 45.1}, true);
    EXPECT_GT(dashes, 30.0);
    EXPECT_LT(dashes, 42.0);
    EXPECT_NEAR(Length(rec, {47.1, 44.9, 52.9, 55.1}, true), 0.0, 0.1);
    EXPECT_NEAR(Length(rec, {46.9, 0, 53.1, 100}, false), 160.0, 0.3);  // the road above is whole
    EXPECT_NEAR(Length(rec, {34.9, 0, 35.1, 100}, false), 80.0, 0.1);   // and so is the contour
    EXPECT_NEAR(Length(rec, {19.9, 44, 20.1, 56}, false), 10.0, 0.1);   // the face of a portal
    EXPECT_NEAR(Length(rec, {79.9, 44, 80.1, 56}, false), 10.0, 0.1);
}

TEST_F(Roads, WaterStopsUnderABridge) {
    const std::string rec = Recording(
        LevelLine(0, 100, 50, "\"k\":1,\"b\":1") + "," + LineThrough({{30, 10}, {30, 90}}, "\"k\":3"), kRules);
    EXPECT_NEAR(Length(rec, {29.9, 44.9, 30.1, 55.1}, false), 0.0, 0.01);
    EXPECT_NEAR(Length(rec, {29.9, 0, 30.1, 100}, false), 80.0 - 10.4, 0.1);
}

// A bridge that ends at the side of a road opens into it, and the road's other side is whole.
TEST_F(Roads, ABridgeThatEndsAtAStreetOpensIntoIt) {
    const std::string rec = Recording(LineThrough({{0, 50}, {50, 50}, {100, 50}}, "\"k\":1") + "," +
                                          LineThrough({{50, 50}, {50, 90}}, "\"k\":2,\"b\":1"),
                                      kRules);
    EXPECT_NEAR(Length(rec, {0, 44.9, 100, 45.1}, true), 100.0, 0.1);
    EXPECT_NEAR(Length(rec, {0, 54.9, 100, 55.1}, true), 94.0, 0.3);
    EXPECT_NEAR(Length(rec, {46.9, 45.2, 53.1, 54.8}, false), 0.0, 0.05);  // no rails inside the street
    EXPECT_NEAR(Length(rec, {46.9, 55, 53.1, 91}, false), 2 * 35.0, 0.2);
}

// The width of a road is assumed, a house was measured: the edge that runs through its corner is not drawn.
TEST_F(Roads, AnEdgeGivesWayToAHouse) {
    const std::string house = AreaWithin({{30, 53}, {60, 53}, {60, 70}, {30, 70}, {30, 53}}, "\"k\":5");
    const std::string rec = Recording(LevelLine(0, 100, 50, "\"k\":1") + "," + house, kRules);
    ASSERT_EQ(m_last.status, 0) << m_last.err;
    EXPECT_NEAR(Length(rec, {0, 54.9, 100, 55.1}, true), 70.0, 0.1);
    EXPECT_NEAR(Length(rec, {30, 54.9, 60, 55.1}, true), 0.0, 0.01);
    EXPECT_NEAR(Length(rec, {0, 44.9, 100, 45.1}, true), 100.0, 0.1);
    EXPECT_NEAR(Length(rec, {29, 52.9, 61, 53.1}, true), 30.0, 0.1);  // the wall in the road
    EXPECT_EQ(m_last.err.find("run through buildings"), std::string::npos) << m_last.err;
}

// Where the road itself runs through the house there is a passage, which the report says.
TEST_F(Roads, ARoadThroughAHouseIsAPassage) {
    const std::string house = AreaWithin({{30, 30}, {60, 30}, {60, 70}, {30, 70}, {30, 30}}, "\"k\":5");
    const std::string rec = Recording(LevelLine(0, 100, 50, "\"k\":1") + "," + house, kRules);
    EXPECT_EQ(m_last.status, 0) << m_last.err;
    EXPECT_NE(m_last.err.find("roads that run through buildings: 1;"), std::string::npos) << m_last.err;
    for (const double y : {45.0, 55.0}) {
        EXPECT_NEAR(Length(rec, {0, y - 0.1, 30, y + 0.1}, true), 30.0, 0.1);
        EXPECT_NEAR(Length(rec, {60, y - 0.1, 100, y + 0.1}, true), 40.0, 0.1);
        EXPECT_NEAR(Length(rec, {30, y - 0.1, 60, y + 0.1}, true), 20.0, 2.0);  // dashes 2.0, gaps 1.0
    }
    EXPECT_NEAR(Length(rec, {29.9, 29, 30.1, 71}, false), 40.0, 0.1);  // its walls are whole
}

// What a bridge or a tunnel has above or below it is no passage.
TEST_F(Roads, ABridgeOverAHouseIsNoPassage) {
    const std::string house = AreaWithin({{30, 30}, {60, 30}, {60, 70}, {30, 70}, {30, 30}}, "\"k\":5");
    const std::string rec = Recording(LevelLine(0, 100, 50, "\"k\":1,\"b\":1") + "," + house, kRules);
    EXPECT_EQ(m_last.err.find("run through buildings"), std::string::npos) << m_last.err;
    EXPECT_NEAR(Length(rec, {0, 44.9, 100, 45.1}, true), 100.0, 0.1);
}

// The edges are at y 45 and 55. A path along the road beside its edge and one in it are not drawn, one farther away is;
// one that crosses the road stops at its edges.
TEST_F(Roads, APathIsDrawnWhereItLeavesTheRoad) {
    const std::string road = LevelLine(0, 100, 50, "\"k\":1") + ",";
    const auto drawn = [&](const std::string& path, const Box& box, bool level) {
        const double length = Length(Recording(road + path, kRules), box, level);
        EXPECT_EQ(m_last.status, 0) << m_last.err;
        return length;
    };
    EXPECT_NEAR(drawn(LevelLine(10, 90, 55.5, "\"k\":6"), {0, 55.4, 100, 55.6}, true), 0.0, 0.01);
    EXPECT_NEAR(drawn(LevelLine(10, 90, 52, "\"k\":6"), {0, 51.9, 100, 52.1}, true), 0.0, 0.01);
    EXPECT_NEAR(drawn(LevelLine(10, 90, 56, "\"k\":6"), {0, 55.9, 100, 56.1}, true), 80.0, 0.01);
    const std::string across = LineThrough({{30, 10}, {30, 90}}, "\"k\":6");
    EXPECT_NEAR(drawn(across, {29.9, 0, 30.1, 100}, false), 70.0, 0.01);
    EXPECT_NEAR(drawn(across, {29.9, 45.1, 30.1, 54.9}, false), 0.0, 0.01);
    // It comes down to the road, runs along it for 20 m and leaves it again: both ways are whole up to the edge.
    const std::string along = LineThrough({{30, 90}, {30, 55.4}, {50, 55.4}, {50, 90}}, "\"k\":6");
    EXPECT_NEAR(drawn(along, {0, 55.3, 100, 55.5}, true), 0.0, 0.01);
    EXPECT_NEAR(drawn(along, {29.9, 55.1, 50.1, 91}, false), 2 * (90 - 55.8), 0.01);
    // One of 2 m along the edge stays whole.
    const std::string brief = LineThrough({{30, 90}, {30, 55.4}, {31, 55.4}, {31, 90}}, "\"k\":6");
    EXPECT_NEAR(drawn(brief, {0, 55.3, 100, 55.5}, true), 1.0, 0.01);
    // Without the word, and on a bridge, it is a line as others.
    EXPECT_NEAR(drawn(LevelLine(10, 90, 52, "\"k\":7"), {0, 51.9, 100, 52.1}, true), 80.0, 0.01);
    EXPECT_NEAR(drawn(LevelLine(10, 90, 52, "\"k\":6,\"b\":1"), {0, 51.9, 100, 52.1}, true), 80.0, 0.01);
}

// Pavements that are given beside a road whose width is assumed.
TEST_F(Roads, APathNamesHowFarFromARoadItIsStillAlongIt) {
    const auto drawn = [&](const std::string& path, const Box& box, bool level) {
        const double length = Length(Recording(LevelLine(0, 100, 50, "\"k\":1") + "," + path, kRules), box, level);
        EXPECT_EQ(m_last.status, 0) << m_last.err;
        return length;
    };
    EXPECT_NEAR(drawn(LevelLine(10, 90, 57.4, "\"k\":8"), {0, 57.3, 100, 57.5}, true), 0.0, 0.01);
    EXPECT_NEAR(drawn(LevelLine(10, 90, 57.6, "\"k\":8"), {0, 57.5, 100, 57.7}, true), 80.0, 0.01);
    // Another rule keeps its own distance on the same sheet.
    EXPECT_NEAR(drawn(LevelLine(10, 90, 57.4, "\"k\":8") + "," + LevelLine(10, 90, 57.4, "\"k\":6"),
                      {0, 57.3, 100, 57.5}, true),
                80.0, 0.01);
    // It crosses the strip beside the road at a slant for less than three times its width: whole up to the edge.
    const std::string across = LineThrough({{30, 10}, {30, 90}}, "\"k\":8");
    EXPECT_NEAR(drawn(across, {29.9, 0, 30.1, 100}, false), 70.0, 0.01);
    const std::string brief = LineThrough({{30, 90}, {30, 57}, {33, 57}, {33, 90}}, "\"k\":8");
    EXPECT_NEAR(drawn(brief, {0, 56.9, 100, 57.1}, true), 3.0, 0.01);
}

TEST_F(Roads, APathNeedsMetres) {
    m_zenro.File("in.geojson", Collection(LevelLine(0, 10, 50, "\"k\":1")));
    for (const std::string value : {"-1", "51", "near", "nan"}) {
        m_zenro.File("r.rules", "k = 1 -> symbol 247, path " + value + "\n");
        const Outcome wrong = m_zenro.Run({"rules", "check", "./r.rules", "in.geojson"});
        EXPECT_EQ(wrong.status, 2) << value;
        EXPECT_NE(wrong.err.find("\"path\" needs metres up to 50 beside roads, or no value, not \"" + value + "\"."),
                  std::string::npos)
            << wrong.err;
    }
}

#ifdef ZM_COUNT_USES
// Unions, what hides each storey, and outlines with the areas that they are of.
TEST(RoadNetwork, IsMadeOnAllCoresWhereThereIsMoreThanOnePieceOfWork) {
    namespace uses = zm::uses;
    const zm::tool::Rule wide, narrow;
    const auto build = [&](std::initializer_list<const zm::tool::Rule*> rules) {
        zm::tool::RoadNetwork network;
        double y = 0.0;
        for (const zm::tool::Rule* rule : rules) network.Add({{0.0, 100.0}, {y += 50.0, y}}, 6.0, *rule);
        uses::counts[uses::workShared] = uses::counts[uses::workAlone] = 0;
        network.Build(1.0);
        for (const zm::tool::Rule* rule : rules) EXPECT_FALSE(network.EdgesOf(*rule).ground.empty());
    };
    const bool many = std::thread::hardware_concurrency() > 1;
    build({&wide, &narrow});
    EXPECT_EQ(uses::counts[uses::workShared], many ? 2u + 3u : 0u);
    EXPECT_EQ(uses::counts[uses::workAlone], many ? 1u : 6u);
    build({&wide});
    EXPECT_EQ(uses::counts[uses::workShared], many ? 2u : 0u);
    EXPECT_EQ(uses::counts[uses::workAlone], many ? 2u : 4u);
}
#endif

}  // namespace
