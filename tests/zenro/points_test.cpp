// Points as surveyors have them, and the ranges in which a result is right.
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "runtime/text/gbk.h"
#include "tests/zenro/program.h"
#include "tools/zenro/coord/angle_text.h"

namespace {

using namespace zm::test;
using zm::tool::AngleForm;
using zm::tool::AngleText;

struct AngleCase {
    const char* name;
    const char* text;
    AngleForm form;
    double degrees;
};
void PrintTo(const AngleCase& c, std::ostream* out) {
    *out << c.name;
}
constexpr AngleCase kAngles[] = {
    {"decimal", "120.75", AngleForm::decimal, 120.75},
    {"marks", "120°45'00.0\"", AngleForm::decimal, 120.75},
    {"marks_and_letter", "120°45'00\"E", AngleForm::decimal, 120.75},
    {"letter_before", "E120°45'", AngleForm::decimal, 120.75},
    {"blanks_and_west", "120° 45' 00\" W", AngleForm::decimal, -120.75},
    {"typographic_marks", "30°30′36″", AngleForm::decimal, 30.51},
    {"chinese", "东经120度45分0秒", AngleForm::decimal, 120.75},
    {"chinese_north", "北纬30度30分", AngleForm::decimal, 30.5},
    {"letters_for_marks", "120d45m0s", AngleForm::decimal, 120.75},
    {"colons", "120:45:00", AngleForm::decimal, 120.75},
    {"dashes", "120-45-00", AngleForm::decimal, 120.75},
    {"south", "30.5S", AngleForm::decimal, -30.5},
    {"negative", "-30°30'", AngleForm::decimal, -30.5},
    {"decimal_minutes", "30°30.6'", AngleForm::decimal, 30.51},
    {"packed", "120.45", AngleForm::packed, 120.75},
    {"packed_whole", "120", AngleForm::packed, 120.0},
    {"three_numbers", "120 45 00", AngleForm::dms, 120.75},
    {"exponent", "1.2075e2", AngleForm::decimal, 120.75},
};
class Angle : public testing::TestWithParam<AngleCase> {};
TEST_P(Angle, IsReadInAllCommonSpellings) {
    std::string_view text = GetParam().text;
    const AngleText angle = zm::tool::TakeAngle(text, GetParam().form);
    EXPECT_EQ(angle.wrong, "");
    EXPECT_NEAR(angle.degrees, GetParam().degrees, 1e-12);
    EXPECT_EQ(text, "");
}
INSTANTIATE_TEST_SUITE_P(Spellings, Angle, testing::ValuesIn(kAngles),
                         [](const auto& info) { return std::string(info.param.name); });

struct WrongAngle {
    const char* text;
    AngleForm form;
    const char* why;
};
TEST(Angle, PartsOfSixtyAndMoreAreRefused) {
    for (const WrongAngle& c : {WrongAngle{"30.60", AngleForm::packed, "60 minutes"},
                                {"30.5960", AngleForm::packed, "60 seconds"},
                                {"30.6", AngleForm::packed, "60 minutes"},
                                {"30°60'", AngleForm::decimal, "60.00 minutes"},
                                {"30:10:60", AngleForm::decimal, "60.00 seconds"},
                                {"30.5°10'", AngleForm::decimal, "degrees with a fraction"},
                                {"-30°S", AngleForm::decimal, "a sign and a letter"},
                                {"abc", AngleForm::decimal, "no number"}}) {
        std::string_view text = c.text;
        EXPECT_NE(zm::tool::TakeAngle(text, c.form).wrong.find(c.why), std::string::npos) << c.text;
    }
}

TEST(Angle, IsWrittenWithoutSixtySeconds) {
    EXPECT_EQ(zm::tool::AngleAs(29.99999999999, AngleForm::dms, 4), "30°00'00.0000\"");
    EXPECT_EQ(zm::tool::AngleAs(-0.5, AngleForm::dms, 0), "-0°30'00\"");
    EXPECT_EQ(zm::tool::AngleAs(120.7512345, AngleForm::dms, 3), "120°45'04.444\"");
}

constexpr char kPoint[] = "3375780.9139 40572000.1999";

TEST(Points, DegreesMinutesAndSecondsComeInAndGoOut) {
    const Program zenro;
    EXPECT_NE(zenro.Run({"coord", "to-plane"}, "N30°30'00\" E120°45'00\" A1\n").out.find(kPoint), std::string::npos);
    EXPECT_NE(zenro.Run({"coord", "to-plane"}, "120:45:00E, 30:30:00N\n").out.find(kPoint), std::string::npos);
    EXPECT_NE(zenro.Run({"coord", "to-plane", "--angles", "dms"}, "30 30 00 120 45 00\n").out.find(kPoint),
              std::string::npos);
    EXPECT_NE(zenro.Run({"coord", "to-geo", "--angles", "dms", "--decimals", "4"}, std::string(kPoint) + "\n")
                  .out.find("30°30'00.0000\" 120°45'00.0000\" 120"),
              std::string::npos);
}

TEST(Points, ColumnsComeInAnyStatedOrder) {
    const Program zenro;
    const auto out = [&](const char* columns, const char* line) {
        const Outcome r = zenro.Run({"coord", "to-plane", "--columns", columns}, line);
        EXPECT_EQ(r.status, 0) << r.err;
        return r.out;
    };
    EXPECT_NE(out("no,lon,lat,h", "7,120.75,30.5,12.25\n").find("7 3375780.9139 40572000.1999 40 120 12.25\n"),
              std::string::npos);
    EXPECT_NE(out("no,code,lat,lon", "P1\tK3\t30.5\t120.75\n").find("P1 K3 3375780.9139"), std::string::npos);
    EXPECT_NE(out("-,lat,-,lon", "9 30.5 x 120.75\n").find(kPoint), std::string::npos);
    EXPECT_NE(out("no,code,lat,lon", "P1,,30.5,120.75\n").find("P1 3375780.9139"), std::string::npos);
    const auto j = nlohmann::json::parse(
        zenro.Run({"coord", "to-geo", "--json", "--columns", "no,n,e,h"}, "A 3375780.9139 40572000.1999 5.5\n").out);
    EXPECT_EQ(j["no"], "A");
    EXPECT_EQ(j["height_m"], 5.5);
}

TEST(Points, HeadingsMarksOfByteOrderAndGbkAreKnown) {
    const Program zenro;
    const Outcome named = zenro.Run({"coord", "to-plane"}, "\xEF\xBB\xBF点号,经度,纬度\nA,120.75,30.5\n");
    EXPECT_EQ(named.status, 0) << named.err;
    EXPECT_NE(named.out.find("A 3375780.9139 40572000.1999"), std::string::npos) << named.out;
    EXPECT_NE(named.err.find("note: -:1: is taken as a line of headings"), std::string::npos);
    const Outcome gbk = zenro.Run({"coord", "to-plane", "--columns", "no,lat,lon", "--encoding", "GBK"},
                                  zm::gbk::FromUtf8("桥头 30.5 120.75\n"));
    EXPECT_NE(gbk.out.find("桥头 3375780.9139"), std::string::npos) << gbk.out;
}

struct RangeCase {
    const char* name;
    std::vector<std::string> arguments;
    const char* line;
    const char* message;
};
void PrintTo(const RangeCase& c, std::ostream* out) {
    *out << c.name;
}
const RangeCase kRanges[] = {
    {"latitude", {"to-plane"}, "95 20", "beyond 90 degrees"},
    {"swapped", {"to-plane"}, "120.75 30.5", "the axes are swapped: give --order lon,lat"},
    {"packed_minutes", {"to-plane", "--angles", "packed"}, "30.60 120.45", "packed degrees with 60 minutes"},
    {"decimal_commas", {"to-plane"}, "30,5 120,75", "decimal commas; write 30.5 for 30,5"},
    {"leftover", {"to-plane"}, "30.5 120.75 12.5", "a third number, \"12.5\", after the position"},
    {"far",
     {"to-plane", "--meridian", "105"},
     "30.5 120.75",
     "15.75 degrees from the central meridian; the projection ends at 10"},
    {"zone", {"to-geo"}, "3375780.9 140572000.2", "has the zone number 140; there are zones 1 to 120"},
    {"zone_of_6", {"to-geo", "--zone", "6"}, "3375780.9 61572000.2", "there are zones 1 to 60 of 6 degrees"},
    {"swapped_plane", {"to-geo"}, "40572000.2 3375780.9", "the axes are swapped"},
    {"columns", {"to-plane", "--columns", "no,lat,lon"}, "A 30.5", "only 2 of 3 columns"},
    {"number", {"to-geo", "--columns", "n,e"}, "3375780,9;40572000,2", "\"3375780,9\" is no number"},
};
class Range : public testing::TestWithParam<RangeCase> {};
TEST_P(Range, IsRefusedWithoutAResult) {
    std::vector<std::string> arguments = {"coord"};
    arguments.insert(arguments.end(), GetParam().arguments.begin(), GetParam().arguments.end());
    const Outcome r = Program().Run(arguments, std::string(GetParam().line) + "\n");
    EXPECT_EQ(r.status, 1);
    EXPECT_NE(r.err.find(GetParam().message), std::string::npos) << r.err;
    EXPECT_NE(r.out.find("error line 1: "), std::string::npos) << r.out;
}
INSTANTIATE_TEST_SUITE_P(Refused, Range, testing::ValuesIn(kRanges),
                         [](const auto& info) { return std::string(info.param.name); });

TEST(Range, TheErrorOfTheSeriesIsReported) {
    const Program zenro;
    const Outcome near = zenro.Run({"coord", "to-plane", "--meridian", "120"}, "30.5 123.0\n");
    EXPECT_EQ(near.err, "");
    const Outcome far = zenro.Run({"coord", "to-plane", "--meridian", "120"}, "30.5 128.0\n");
    EXPECT_EQ(far.status, 0);
    EXPECT_NE(far.err.find("8.00 degrees from the central meridian, where the series is off by "), std::string::npos)
        << far.err;
}

TEST(Range, AZoneOfTheOtherWidthIsReported) {
    const Outcome r = Program().Run({"coord", "to-geo", "--zone", "6"}, "3375780.9 40572000.2\n");
    EXPECT_NE(r.err.find("for a zone of China give --zone 3."), std::string::npos) << r.err;
}

TEST(Columns, WrongListsAreToldWithStatus2) {
    const Program zenro;
    for (const char* wrong : {"no,code", "lat", "lat,lon,n", "lat,lon,colour", "n,e"})
        EXPECT_EQ(zenro.Run({"coord", "to-plane", "--columns", wrong}, "1 2 3\n").status, 2) << wrong;
}

}  // namespace
