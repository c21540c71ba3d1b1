#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "tests/support/random.h"
#include "zenromath/sheets.h"

using namespace zm::sheets;

namespace {

constexpr Division kDivisions[] = {{500, 50, 50},  {500, 40, 50},  {1000, 50, 50}, {1000, 40, 50},
                                   {2000, 50, 50}, {2000, 40, 50}, {5000, 40, 40}};

TEST(CornerNumbers, ReadBackToASheetThatHoldsThePoint) {
    zm::test::Random random;
    for (int i = 0; i < 20000; ++i) {
        const double x = random.Real(0.0, 6.0e6), y = random.Real(0.0, 8.0e5);
        for (const Division& d : kDivisions) {
            std::string number;
            PlaneBox s;
            ASSERT_EQ(CornerNumber(d, x, y, number), Refusal::none);
            ASSERT_EQ(ReadCorner(d, number, s), Refusal::none) << number;
            EXPECT_TRUE(s.south <= x + 1e-4 && x < s.north + 1e-4) << number;  // 0.1 mm: positions are rounded to it
            EXPECT_TRUE(s.west <= y + 1e-4 && y < s.east + 1e-4) << number;
            EXPECT_EQ(s.north - s.south, d.height * d.scale / 100.0);
            EXPECT_EQ(s.east - s.west, d.width * d.scale / 100.0);
        }
    }
}

TEST(CornerNumbers, AnOriginMovesTheGrid) {
    Division d{1000, 50, 50, 3300100.0, 500300.0};
    std::string number;
    ASSERT_EQ(CornerNumber(d, 3300650.0, 500250.0, number), Refusal::none);
    EXPECT_EQ(number, "3300.6-499.8");
    PlaneBox s;
    EXPECT_EQ(ReadCorner(d, "3300.5-499.8", s), Refusal::offGrid);
    d.originX = 3300150.0;  // half a decimal
    EXPECT_EQ(CornerNumber(d, 3300650.0, 500250.0, number), Refusal::origin);
}

TEST(CornerNumbers, ThereIsNoneBelowZero) {
    Neighbours around;
    ASSERT_EQ(CornerNeighbours(kDivisions[0], "0.00-0.25", around), Refusal::none);
    EXPECT_EQ(around, (Neighbours{"0.25-0.00", "0.25-0.25", "0.25-0.50", "0.00-0.00", "0.00-0.50", "", "", ""}));
    std::string number;
    EXPECT_EQ(CornerNumber(kDivisions[0], -0.001, 1.0, number), Refusal::negative);
    EXPECT_EQ(CornerNumber(kDivisions[0], std::numeric_limits<double>::quiet_NaN(), 1.0, number), Refusal::outside);
    EXPECT_EQ(CornerNumber(kDivisions[0], 1.0, 1e12, number), Refusal::outside);
}

TEST(CornerNumbers, TextsThatAreNoneAreRefused) {
    PlaneBox s;
    for (const char* text : {"", "-", "4845.50", "4845.50-614.50-1", "04845.50-614.50", "4845.50 -614.50",
                             "4845.5-614.5", "4845,50-614,50", "4845.50--614.50", "9999999.00-1.00", "4845.+0-614.50"})
        EXPECT_EQ(ReadCorner(kDivisions[0], text, s), Refusal::malformed) << text;
}

TEST(CornerCovers, BordersTakeInNothingBeyond) {
    std::vector<std::string> numbers;
    ASSERT_EQ(CornerCover(kDivisions[2], {1000.0, 2000.0, 2000.0, 2500.0}, numbers), Refusal::none);
    EXPECT_EQ(numbers, (std::vector<std::string>{"1.5-2.0", "1.0-2.0"}));
    EXPECT_EQ(CornerCover(kDivisions[2], {1000.0, 2000.0, 999.0, 2500.0}, numbers), Refusal::box);
    EXPECT_EQ(CornerCover(kDivisions[0], {0.0, 0.0, 1e6, 1e6}, numbers), Refusal::tooMany);
    EXPECT_EQ(CornerCover(kDivisions[2], {-1.0, 0.0, 1.0, 1.0}, numbers), Refusal::negative);
}

TEST(AreaNumbers, RunFromTheNorthWest) {
    std::string number;
    const PlaneBox area{0.0, 0.0, 2000.0, 3000.0};
    ASSERT_EQ(RunningNumber(kDivisions[2], area, 1999.0, 1.0, "", number), Refusal::none);
    EXPECT_EQ(number, "1");
    ASSERT_EQ(RowColumnNumber(kDivisions[2], area, 1.0, 2999.0, number), Refusal::none);
    EXPECT_EQ(number, "D-6");
    EXPECT_EQ(RowColumnNumber(kDivisions[2], area, 2000.0, 1.0, number), Refusal::outside);
    EXPECT_EQ(RowColumnNumber(kDivisions[2], {0.0, 0.0, 13500.0, 500.0}, 1.0, 1.0, number), Refusal::tooMany);
}

TEST(QuadrantNumbers, ReadBack) {
    zm::test::Random random;
    for (int i = 0; i < 20000; ++i) {
        const double x = random.Real(0.0, 6.0e6), y = random.Real(0.0, 8.0e5);
        for (const int scale : {5000, 2000, 1000, 500}) {
            std::string number;
            int found = 0;
            PlaneBox s;
            ASSERT_EQ(QuadrantNumber(x, y, scale, number), Refusal::none);
            ASSERT_EQ(ReadQuadrant(number, found, s), Refusal::none) << number;
            EXPECT_EQ(found, scale);
            EXPECT_TRUE(s.south <= x + 1e-4 && x < s.north + 1e-4 && s.west <= y + 1e-4 && y < s.east + 1e-4) << number;
            EXPECT_EQ(s.north - s.south, scale == 5000 ? 2000.0 : scale / 2.0);
        }
    }
    int scale = 0;
    PlaneBox s;
    for (const char* text : {"20-60-V", "20-60-", "20-60-I-", "20-60-I-I-I-I", "20-60-i", "20"})
        EXPECT_EQ(ReadQuadrant(text, scale, s), Refusal::malformed) << text;
}

}  // namespace
