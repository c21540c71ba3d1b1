#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "tests/support/random.h"
#include "zenromath/sheets.h"

using namespace zm::sheets;

namespace {

constexpr int kAllScales[] = {1000000, 500000, 250000, 100000, 50000, 25000, 10000, 5000, 2000, 1000, 500};

TEST(Graticule, TheBorderOfADoubleBelongsToTheSheetNorthOfIt) {
    std::string number;
    // 39 degrees 40' as a double lies a little south of it.
    ASSERT_EQ(GraticuleNumber(39.0 + 40.0 / 60.0, 116.25, 50000, Style::code, number), Refusal::none);
    EXPECT_EQ(number, "J50E002010");
}

TEST(Graticule, EveryNumberReadsBackToASheetThatHoldsItsPoint) {
    zm::test::Random random;
    for (int i = 0; i < 20000; ++i) {
        const double latitude = random.Real(0.0, 59.99), longitude = random.Real(-180.0, 179.99);
        for (const int scale : kAllScales) {
            std::string number, again;
            GraticuleSheet s;
            const Style style = i % 2 == 0 ? Style::code : Style::ninth;
            ASSERT_EQ(GraticuleNumber(latitude, longitude, scale, style, number), Refusal::none);
            ASSERT_EQ(ReadGraticule(number, s), Refusal::none) << number;
            EXPECT_EQ(s.scale, scale);
            // 1e-8 degrees: positions are rounded to 1e-5 seconds.
            EXPECT_TRUE(s.south <= latitude + 1e-8 && latitude < s.north + 1e-8) << number;
            EXPECT_TRUE(s.west <= longitude + 1e-8 && longitude < s.east + 1e-8) << number;
            ASSERT_EQ(GraticuleNumber(s.south, s.west, scale, style, again), Refusal::none);
            EXPECT_EQ(again, number);
        }
    }
}

TEST(Graticule, NeighboursAreMutual) {
    zm::test::Random random;
    for (int i = 0; i < 2000; ++i)
        for (const int scale : kAllScales) {
            std::string number;
            ASSERT_EQ(GraticuleNumber(random.Real(0.0, 59.9), random.Real(-180.0, 179.9), scale, Style::code, number),
                      Refusal::none);
            Neighbours around, back;
            ASSERT_EQ(GraticuleNeighbours(number, around), Refusal::none);
            for (std::size_t k = 0; k < around.size(); ++k) {
                if (around[k].empty()) continue;
                ASSERT_EQ(GraticuleNeighbours(around[k], back), Refusal::none);
                EXPECT_EQ(back[7 - k], number) << around[k];
            }
        }
}

TEST(Graticule, ACoverOfASheetIsTheSheet) {
    GraticuleSheet s;
    ASSERT_EQ(ReadGraticule("J50H030019-7", s), Refusal::none);
    std::vector<std::string> numbers;
    ASSERT_EQ(GraticuleCover(s.south, s.west, s.north, s.east, 2000, Style::ninth, numbers), Refusal::none);
    EXPECT_EQ(numbers, std::vector<std::string>{"J50H030019-7"});
    ASSERT_EQ(GraticuleCover(s.south, s.west, s.south, s.west, 2000, Style::code, numbers), Refusal::none);
    EXPECT_EQ(numbers, std::vector<std::string>{"J50I090055"});
}

struct RefusedNumber {
    const char* number;
    Refusal refusal;
};
TEST(Graticule, NumbersThatAreNoneAreRefusedWithTheirReason) {
    constexpr RefusedNumber kCases[] = {
        {"", Refusal::malformed},
        {"J5", Refusal::malformed},
        {"J5O", Refusal::malformed},
        {"J50A001001", Refusal::malformed},
        {" J50", Refusal::malformed},
        {"J50I090055-3", Refusal::malformed},
        {"J50H030019-", Refusal::malformed},
        {"J50H030019-0", Refusal::malformed},
        {"J50H030019-x", Refusal::malformed},
        {"J50H193001-1", Refusal::range},
        {"J50E001000", Refusal::range},
        {"V50", Refusal::outside},
        {"Z50", Refusal::range},
        {"J50E+01001", Refusal::malformed},
        {"\xCA\xAE", Refusal::malformed},
    };
    for (const auto& c : kCases) {
        GraticuleSheet sheet;
        EXPECT_EQ(NameOf(ReadGraticule(c.number, sheet)), std::string(NameOf(c.refusal))) << c.number;
    }
}

TEST(Graticule, PositionsThatAreNoneAreOutside) {
    const double nan = std::numeric_limits<double>::quiet_NaN(), inf = std::numeric_limits<double>::infinity();
    std::string number = "kept";
    for (const double bad : {nan, inf, -inf, 1e300, 60.0, -1e-7, -90.0})
        EXPECT_EQ(GraticuleNumber(bad, 100.0, 500, Style::code, number), Refusal::outside) << bad;
    for (const double bad : {nan, inf, 180.0, -180.0000001, 1e300})
        EXPECT_EQ(GraticuleNumber(30.0, bad, 500, Style::code, number), Refusal::outside) << bad;
    EXPECT_EQ(number, "kept");
    EXPECT_EQ(GraticuleNumber(-1e-10, -180.0, 500, Style::code, number),
              Refusal::none);  // the border, as a double has it
    EXPECT_EQ(number, "A01K23040001");
}

TEST(Graticule, ACoverOfTooManySheetsIsRefused) {
    std::vector<std::string> numbers;
    EXPECT_EQ(GraticuleCover(0.0, -180.0, 59.9, 179.9, 500, Style::code, numbers), Refusal::tooMany);
    EXPECT_EQ(GraticuleCover(56.0, 174.0, 60.0, 180.0, 1000000, Style::code, numbers), Refusal::none);
    EXPECT_EQ(numbers, std::vector<std::string>{"O60"});
    EXPECT_EQ(GraticuleCover(60.0, 174.0, 60.0, 174.0, 1000000, Style::code, numbers), Refusal::outside);
}

}  // namespace
