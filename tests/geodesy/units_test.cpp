#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <ostream>

#include "zenromath/geodesy.h"

namespace {

struct UnitCase {
    const char* name;
    int code;
    double base;  // metres or square metres of one unit
};
void PrintTo(const UnitCase& c, std::ostream* out) {
    *out << c.name;
}

// Metres of each unit, from the definitions of the units.
constexpr UnitCase kLengths[] = {
    {"mile", 0, 1609.344},
    {"kilometre", 1, 1000.0},
    {"inch", 2, 0.0254},
    {"foot", 3, 0.3048},
    {"yard", 4, 0.9144},
    {"millimetre", 5, 0.001},
    {"centimetre", 6, 0.01},
    {"metre", 7, 1.0},
    {"survey_foot", 8, 0.30480060960121920},
    {"nautical_mile", 9, 1853.2},
    {"twip", 10, 1.7638888888888889e-05},
    {"point", 11, 3.5277777777777778e-04},
    {"point_again", 12, 3.5277777777777778e-04},
    {"degree_on_the_equator", 13, 111319.5},
    {"unknown_14_is_metres", 14, 1.0},
    {"unknown_29_is_metres", 29, 1.0},
    {"link", 30, 0.201168},
    {"chain", 31, 20.1168},
    {"rod", 32, 5.0292},
    {"unknown_33_is_metres", 33, 1.0},
    {"negative_is_metres", -1, 1.0},
    {"lowest_integer_is_metres", std::numeric_limits<int>::min(), 1.0},
};
class LengthUnits : public testing::TestWithParam<UnitCase> {};
TEST_P(LengthUnits, ConvertToAndFromMetres) {
    const UnitCase& c = GetParam();
    const auto unit = static_cast<znCoordUnitConstants>(c.code);
    double result = 0.0;
    EXPECT_EQ(ScaleUnitConvert(unit, znUnitMeter, 3.0, result), 1);
    EXPECT_DOUBLE_EQ(result, 3.0 * c.base);
    EXPECT_EQ(ScaleUnitConvert(znUnitMeter, unit, 3.0, result), 1);
    EXPECT_DOUBLE_EQ(result, 3.0 / c.base);
    EXPECT_DOUBLE_EQ(ScaleUnitCase(c.code, 7, 3.0), 3.0 * c.base);
    EXPECT_DOUBLE_EQ(LengthValue(3.0, c.code).metres, 3.0 * c.base);
}
INSTANTIATE_TEST_SUITE_P(All, LengthUnits, testing::ValuesIn(kLengths),
                         [](const auto& info) { return std::string(info.param.name); });

constexpr UnitCase kAreas[] = {
    {"square_mile", 14, 2589988.110336},
    {"square_kilometre", 15, 1e6},
    {"square_inch", 16, 0.00064516},
    {"square_foot", 17, 0.09290304},
    {"square_yard", 18, 0.83612736},
    {"square_millimetre", 19, 1e-6},
    {"square_centimetre", 20, 1e-4},
    {"square_metre", 21, 1.0},
    {"square_survey_foot", 22, 0.092903411613274823},
    {"square_nautical_mile", 23, 3434350.24},
    {"square_twip", 24, 3.1113040123456790e-10},
    {"square_point", 25, 1.2445216049382716e-07},
    {"square_point_again", 26, 1.2445216049382716e-07},
    {"square_degree_on_the_equator", 27, 12392031080.25},
    {"acre", 28, 4046.8564224},
    {"hectare", 29, 10000.0},
    {"unknown_13_is_square_metres", 13, 1.0},
    {"unknown_30_is_square_metres", 30, 1.0},
    {"unknown_32_is_square_metres", 32, 1.0},
    {"square_link", 33, 0.040468564224},
    {"square_chain", 34, 404.68564224},
    {"square_rod", 35, 25.29285264},
    {"square_rod_again", 36, 25.29285264},
    {"rood", 37, 1011.7141056},
    {"mu", 38, 666.6666666666666},
    {"unknown_39_is_square_metres", 39, 1.0},
    {"negative_is_square_metres", -5, 1.0},
};
class AreaUnits : public testing::TestWithParam<UnitCase> {};
TEST_P(AreaUnits, ConvertToAndFromSquareMetres) {
    const UnitCase& c = GetParam();
    const auto unit = static_cast<znAreaUnitConstants>(c.code);
    double result = 0.0;
    EXPECT_EQ(AreaUnitConvert(unit, znAreaSquareMeter, 3.0, result), 1);
    EXPECT_DOUBLE_EQ(result, 3.0 * c.base);
    EXPECT_EQ(AreaUnitConvert(znAreaSquareMeter, unit, 3.0, result), 1);
    EXPECT_DOUBLE_EQ(result, 3.0 / c.base);
    EXPECT_DOUBLE_EQ(AreaValue(3.0, c.code).metres, 3.0 * c.base);
}
INSTANTIATE_TEST_SUITE_P(All, AreaUnits, testing::ValuesIn(kAreas),
                         [](const auto& info) { return std::string(info.param.name); });

TEST(ScaleUnitConvert, EqualSurveyFeetStillPassThroughMetres) {
    // The two directions use different factors, so that some number changes in its last bits.
    bool moved = false;
    for (int i = 1; i <= 1000; ++i) {
        double result = 0.0;
        ScaleUnitConvert(znUnitSurveyFoot, znUnitSurveyFoot, i, result);
        EXPECT_DOUBLE_EQ(result, i);
        moved = moved || result != i;
    }
    EXPECT_TRUE(moved);
}

TEST(ScaleUnitConvert, MetresAndUnknownCodesChangeNothing) {
    for (const int from : {7, 14, 29, 33, -1, 1000000})
        for (const int to : {7, 20, 33, -7}) EXPECT_EQ(ScaleUnitCase(from, to, 123.456), 123.456);
}

TEST(AreaUnitConvert, AcreToRoodIsFourTimes) {
    double result = 0.0;
    AreaUnitConvert(znAreaAcre, znAreaRood, 2.5, result);
    EXPECT_DOUBLE_EQ(result, 10.0);
}

TEST(AreaUnitConvert, MuToHectareIsAFifteenth) {
    double result = 0.0;
    AreaUnitConvert(znAreaMu, znAreaHectare, 30.0, result);
    EXPECT_DOUBLE_EQ(result, 2.0);
}

struct QuickCase {
    const char* name;
    int target;
    double perBase;  // of 1000 metres, of 1000 square metres
};
void PrintTo(const QuickCase& c, std::ostream* out) {
    *out << c.name;
}

// Required factors, rounded where the units' own tables are exact: mile 1609.3, chain 20.117.
constexpr QuickCase kQuickLengths[] = {
    {"mile", 0, 0.62138818119679367},
    {"kilometre", 1, 1.0},
    {"inch", 2, 39370.078740157480},
    {"foot", 3, 3280.8398950131234},
    {"yard", 4, 1093.6132983377078},
    {"millimetre", 5, 1e6},
    {"centimetre", 6, 1e5},
    {"metre", 7, 1000.0},
    {"nautical_mile", 9, 0.53960716598316426},
    {"chain", 31, 49.709201173137146},
};
class QuickLengths : public testing::TestWithParam<QuickCase> {};
TEST_P(QuickLengths, RewriteByRoundedFactors) {
    LengthValue length(1.0, znUnitKilometer);
    EXPECT_EQ(length.QuickConvert(GetParam().target), 1);
    EXPECT_DOUBLE_EQ(length.value, GetParam().perBase);
    EXPECT_EQ(length.unit, GetParam().target);
    EXPECT_EQ(length.metres, 1000.0);
}
INSTANTIATE_TEST_SUITE_P(All, QuickLengths, testing::ValuesIn(kQuickLengths),
                         [](const auto& info) { return std::string(info.param.name); });

constexpr QuickCase kQuickAreas[] = {
    {"square_mile", 14, 0.00038610038610038610},
    {"square_kilometre", 15, 0.001},
    {"square_inch", 16, 1550003.1000062000},
    {"square_foot", 17, 10763.915051182415},
    {"square_yard", 18, 1196.0291831120679},
    {"square_millimetre", 19, 1e9},
    {"square_centimetre", 20, 1e7},
    {"square_metre", 21, 1000.0},
    {"acre", 28, 0.24711346758513800},
    {"hectare", 29, 0.1},
    {"mu", 38, 1.4999999250000037},
};
class QuickAreas : public testing::TestWithParam<QuickCase> {};
TEST_P(QuickAreas, RewriteByRoundedFactors) {
    AreaValue area(1000.0, znAreaSquareMeter);
    EXPECT_EQ(area.QuickConvert(GetParam().target), 1);
    EXPECT_DOUBLE_EQ(area.value, GetParam().perBase);
    EXPECT_EQ(area.unit, GetParam().target);
    EXPECT_EQ(area.metres, 1000.0);
}
INSTANTIATE_TEST_SUITE_P(All, QuickAreas, testing::ValuesIn(kQuickAreas),
                         [](const auto& info) { return std::string(info.param.name); });

TEST(QuickConvert, LeavesTheRecordAloneForOtherTargets) {
    for (const int target : {8, 10, 13, 30, 32, -1, 99}) {
        LengthValue length(5.0, znUnitFoot);
        EXPECT_EQ(length.QuickConvert(target), 0);
        EXPECT_EQ(length.value, 5.0);
        EXPECT_EQ(length.unit, 3);
    }
    for (const int target : {13, 22, 30, 37, 39, -1}) {
        AreaValue area(5.0, znAreaAcre);
        EXPECT_EQ(area.QuickConvert(target), 0);
        EXPECT_EQ(area.value, 5.0);
        EXPECT_EQ(area.unit, 28);
    }
}

TEST(LengthValue, SettingTheValueRecomputesTheMetres) {
    LengthValue length(0.0, znUnitChain);
    length.SetValue(2.0);
    EXPECT_EQ(length.value, 2.0);
    EXPECT_EQ(length.unit, 31);
    EXPECT_DOUBLE_EQ(length.metres, 40.2336);
}

TEST(Units, NotANumberAndInfinityComeThrough) {
    EXPECT_TRUE(std::isnan(ScaleUnitCase(0, 31, std::numeric_limits<double>::quiet_NaN())));
    EXPECT_EQ(ScaleUnitCase(0, 31, std::numeric_limits<double>::infinity()), std::numeric_limits<double>::infinity());
}

}  // namespace
