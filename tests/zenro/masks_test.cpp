// Masks that are much larger than a sheet, and lines that are.
#include "tools/zenro/map/masks.h"

#include <gtest/gtest.h>

#include <cmath>
#include <utility>
#include <vector>

#include "tools/zenro/map/cells.h"
#include "tools/zenro/map/page.h"

namespace {

using namespace zm::tool;

Chain ChainOf(std::vector<double> x, std::vector<double> y) {
    Chain chain;
    chain.x = std::move(x);
    chain.y = std::move(y);
    return chain;
}

class WideMasks : public testing::Test {
 protected:
    WideMasks() { page.scale = 1000.0; }
    static Shape Ring(std::vector<double> x, std::vector<double> y) {
        x.push_back(x.front());
        y.push_back(y.front());
        Shape shape;
        shape.kind = GeometryKind::area;
        shape.chains.push_back(ChainOf(std::move(x), std::move(y)));
        return shape;
    }
    Page page;
};

TEST_F(WideMasks, CoverWhatLiesInThem) {
    Masks masks(page);
    masks.Add(Ring({-1e12, 1e12, 0.0}, {-1e12, -1e12, 1e12}));
    masks.Add(Ring({2e12, 2e12 + 100.0, 2e12 + 100.0, 2e12}, {0.0, 0.0, 100.0, 100.0}));  // a small one far out
    EXPECT_TRUE(masks.Covers(0.0, 0.0));
    EXPECT_FALSE(masks.Covers(0.0, 1.5e12));
    EXPECT_TRUE(masks.Covers(2e12 + 50.0, 50.0));
    EXPECT_TRUE(masks.Meets({-10.0, -10.0, 10.0, 10.0}));
    EXPECT_FALSE(masks.Meets({-10.0, 1.5e12, 10.0, 1.5e12 + 10.0}));
    EXPECT_TRUE(masks.LimitMeets({-10.0, -1e12 - 10.0, 10.0, -1e12 + 10.0}));
    const auto outside = masks.Outside(ChainOf({0.0, 0.0}, {0.0, -3e12}));
    ASSERT_EQ(outside.size(), 1u);
    EXPECT_NEAR(outside[0].y.front(), -1e12, 1.0);
}

TEST_F(WideMasks, OfTheUsualSizeBreakLinesOfAnyLength) {
    Masks masks(page);
    masks.Add(Ring({100.0, 200.0, 200.0, 100.0}, {-50.0, -50.0, 50.0, 50.0}));
    const auto outside = masks.Outside(ChainOf({-1e9, 1e9}, {0.0, 0.0}));
    ASSERT_EQ(outside.size(), 2u);
    EXPECT_NEAR(outside[0].x.back(), 100.0, 1e-3);
    EXPECT_NEAR(outside[1].x.front(), 200.0, 1e-3);
    EXPECT_TRUE(masks.LimitMeets({-1e9, -1e9, 1e9, 1e9}));
}

TEST_F(WideMasks, OfNumbersBeyondSenseEndAtOnce) {
    Masks masks(page);
    masks.Add(Ring({-8.8e300, 8.8e300, 0.0}, {0.0, 0.0, 8.8e300}));
    masks.Covers(1.0, 1.0);
    masks.Outside(ChainOf({-8.8e300, 5.0}, {3.0, 8.8e300}));
    EXPECT_FALSE(masks.empty());
}

TEST(Cells, OfPlacesBeyondSenseAreTheLast) {
    EXPECT_EQ(CellOf(-0.5, 8.0), -1);
    EXPECT_EQ(CellOf(16.0, 8.0), 2);
    EXPECT_EQ(CellOf(8.8e300, 8.0), 1000000000000000);
    EXPECT_EQ(CellOf(-8.8e300, 8.0), -1000000000000000);
    EXPECT_EQ(CellOf(std::nan(""), 8.0), -1000000000000000);
    EXPECT_NE(KeyOfCell(1, -1), KeyOfCell(-1, 1));
}

}  // namespace
