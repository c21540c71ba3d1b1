// The sea by its shore line.
#include <gtest/gtest.h>

#include <cmath>

#include "tests/zenro/sheet_fixture.h"
#include "tools/zenro/map/sea.h"
#include "tools/zenro/map/shapes.h"

namespace {

using namespace zm::test;
using zm::tool::Chain;

constexpr zm::tool::Box kSheet{0, 0, 100, 100};

// Whether a place is water.
bool IsSea(const zm::tool::Sea& sea, double x, double y) {
    for (const auto& area : sea.areas())
        if (Inside(area, x, y)) return true;
    return false;
}

double Area(const zm::tool::Sea& sea) {
    double all = 0.0;
    for (const auto& area : sea.areas()) all += AreaOf(area);
    return all;
}

TEST(Sea, LiesOnTheRightOfItsShore) {
    zm::tool::Sea east, west;
    east.Add({{40, 40}, {-20, 120}});  // northwards: land in the west
    west.Add({{40, 40}, {120, -20}});
    east.Build(kSheet, 0.1);
    west.Build(kSheet, 0.1);
    EXPECT_NEAR(Area(east), 6000.0, 1e-6);
    EXPECT_TRUE(IsSea(east, 70, 50));
    EXPECT_FALSE(IsSea(east, 20, 50));
    EXPECT_NEAR(Area(west), 4000.0, 1e-6);
    EXPECT_TRUE(IsSea(west, 20, 50));
}

TEST(Sea, HasIslandsAndBaysFromPiecesInAnyOrder) {
    zm::tool::Sea sea;
    sea.Add({{60, 60, 120}, {30, 80, 80}});                 // a bay in the south-east, second piece
    sea.Add({{70, 80, 80, 70, 70}, {20, 20, 30, 30, 20}});  // an island in it, anticlockwise
    sea.Add({{60, 60}, {-20, 30}});
    sea.Build(kSheet, 0.1);
    ASSERT_FALSE(sea.fault());
    EXPECT_NEAR(Area(sea), 40.0 * 80.0 - 100.0, 1e-6);
    EXPECT_TRUE(IsSea(sea, 90, 50));
    EXPECT_FALSE(IsSea(sea, 75, 25));
    EXPECT_FALSE(IsSea(sea, 30, 50));
    EXPECT_FALSE(IsSea(sea, 90, 90));
}

TEST(Sea, FillsTheSheetAboutAnIslandAndALagoonInside) {
    zm::tool::Sea sea;
    sea.Add({{30, 70, 70, 30, 30}, {30, 30, 70, 70, 30}});
    sea.Add({{45, 45, 55, 55, 45}, {45, 55, 55, 45, 45}});  // clockwise: water inside
    sea.Build(kSheet, 0.1);
    ASSERT_FALSE(sea.fault());
    EXPECT_TRUE(IsSea(sea, 5, 5));
    EXPECT_FALSE(IsSea(sea, 35, 35));
    EXPECT_TRUE(IsSea(sea, 50, 50));
    EXPECT_NEAR(Area(sea), 10000.0 - 1600.0 + 100.0, 1e-6);
}

TEST(Sea, TwoShoresMakeAStraitOrTwoSeas) {
    zm::tool::Sea strait, seas;
    strait.Add({{40, 40}, {-20, 120}});
    strait.Add({{60, 60}, {120, -20}});
    strait.Build(kSheet, 0.1);
    EXPECT_NEAR(Area(strait), 2000.0, 1e-6);
    EXPECT_TRUE(IsSea(strait, 50, 50));
    seas.Add({{40, 40}, {120, -20}});
    seas.Add({{60, 60}, {-20, 120}});
    seas.Build(kSheet, 0.1);
    EXPECT_NEAR(Area(seas), 8000.0, 1e-6);
    EXPECT_FALSE(IsSea(seas, 50, 50));
}

TEST(Sea, IsNotFilledWhereItsShoreEndsOnTheSheetOrTurnsRound) {
    zm::tool::Sea open, turned, island;
    open.Add({{40, 40}, {-20, 60}});
    open.Build(kSheet, 0.1);
    ASSERT_TRUE(open.fault());
    EXPECT_DOUBLE_EQ(open.fault()->y, 60.0);
    EXPECT_TRUE(open.areas().empty());
    turned.Add({{40, 40}, {-20, 120}});
    turned.Add({{60, 60}, {-20, 120}});  // water on the right of one is land on the left of the other
    turned.Build(kSheet, 0.1);
    EXPECT_TRUE(turned.fault());
    EXPECT_TRUE(turned.areas().empty());
    island.Add({{40, 40}, {-20, 120}});
    island.Add({{10, 20, 20, 10, 10}, {10, 10, 20, 20, 10}});  // an island on dry land
    island.Build(kSheet, 0.1);
    EXPECT_TRUE(island.fault());
}

TEST(Sea, AShoreBesideTheSheetSaysNothing) {
    zm::tool::Sea sea;
    sea.Add({{120, 120}, {-20, 120}});
    sea.Build(kSheet, 0.1);
    EXPECT_FALSE(sea.fault());
    EXPECT_TRUE(sea.areas().empty());
}

class SeaOnASheet : public SheetFixture {};

TEST_F(SeaOnASheet, IsFilledUnderAllElseAndToldWhereItCannotBe) {
    const std::string rules = "k = 1 -> symbol 300, sea 500\n";
    Recording(LineThrough({{40, -20}, {40, 120}}, "\"k\":1"), rules, {"--no-frame", "-o", "a.svg"});
    ASSERT_EQ(m_last.status, 0) << m_last.err;
    EXPECT_NE(ReadFile(m_zenro / "a.svg").find("#e6f5fc"), std::string::npos);
    Recording(LineThrough({{40, -20}, {40, 60}}, "\"k\":1"), rules, {"--no-frame", "-o", "a.svg"});
    EXPECT_EQ(m_last.status, 4);
    EXPECT_NE(m_last.err.find("40512040.00, 3456060.00"), std::string::npos) << m_last.err;
    EXPECT_EQ(ReadFile(m_zenro / "a.svg").find("#e6f5fc"), std::string::npos);
}

}  // namespace
