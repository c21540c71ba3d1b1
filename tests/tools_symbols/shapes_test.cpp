// The shapes of the readable source, as records of the file.
#include "tools/symbols/shapes.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace zm::tool::symbols {
namespace {

using testing::Each;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::ResultOf;
using testing::StartsWith;

std::vector<std::string> Records(const std::string& line) {
    std::vector<std::string> records;
    EXPECT_EQ(ExpandShape(line, records), "");
    return records;
}

struct ShapeCase {
    const char* name;
    const char* line;
    std::vector<std::string> records;
};
void PrintTo(const ShapeCase& c, std::ostream* out) {
    *out << c.name;
}

class Shape : public testing::TestWithParam<ShapeCase> {};

TEST_P(Shape, BecomesTheseRecords) {
    EXPECT_EQ(Records(GetParam().line), GetParam().records);
}

INSTANTIATE_TEST_SUITE_P(
    All, Shape,
    testing::Values(
        ShapeCase{"a_record_stays_as_it_is", "3 0,0 1.50", {"3 0,0 1.50"}},
        ShapeCase{"a_line_of_two_points_is_a_segment", "line 0,0 1,2", {"1 0,0 1,2"}},
        ShapeCase{"a_line_of_three_points_is_a_polyline", "line 0,0 1,2 3,4.5", {"2 0,0 1,2 3,4.5"}},
        ShapeCase{"closed_repeats_the_first_point", "closed 0,0 1,0 0,1", {"2 0,0 1,0 0,1 0,0"}},
        ShapeCase{"rect_goes_round", "rect -1,-2 1,2", {"2 -1,-2 1,-2 1,2 -1,2 -1,-2"}},
        ShapeCase{"circle", "circle 1,0 0.5", {"3 1,0 0.5"}},
        ShapeCase{"arc_has_its_ends_as_points", "arc 0,0 1 0 90", {"4 0,0 1,0 0,1"}},
        ShapeCase{"dot", "dot 0.25,0", {"5 0.25,0"}},
        ShapeCase{"ngon_begins_at_its_angle", "ngon 0,0 1 4 0", {"2 1,0 0,1 -1,0 0,-1 1,0"}},
        ShapeCase{"star_has_two_radii", "star 0,0 2 1 2 0", {"2 2,0 0,1 -2,0 0,-1 2,0"}},
        ShapeCase{"disc_is_rings_to_the_middle", "disc 0,0 0.25", {"3 0,0 0.25", "3 0,0 0.15", "3 0,0 0.05"}},
        ShapeCase{"both_mirrors_at_the_y_axis", "both line 1,0 2,3", {"1 1,0 2,3", "1 -1,0 -2,3"}},
        ShapeCase{
            "a_mirrored_arc_stays_counter_clockwise", "both arc 2,0 1 0 90", {"4 2,0 3,0 2,1", "4 -2,0 -2,1 -3,0"}},
        ShapeCase{"turned_copies_about_the_origin",
                  "turned 4 line 1,0 2,0",
                  {"1 1,0 2,0", "1 0,1 0,2", "1 -1,0 -2,0", "1 0,-1 0,-2"}},
        ShapeCase{"at_moves_what_was_turned", "turned 2 line 1,0 2,0 at 10,20", {"1 11,20 12,20", "1 9,20 8,20"}}),
    [](const auto& info) { return std::string(info.param.name); });

TEST(Shape, FillLeavesNoGapWiderThanTheStep) {
    const std::vector<std::string> records = Records("fill 0,0 1,0 1,0.35 0,0.35");
    ASSERT_EQ(records.size(), 2u);
    EXPECT_EQ(records[0], "2 0,0 1,0 1,0.35 0,0.35 0,0");
    EXPECT_EQ(records[1], "2 0,0.087 1,0.087 1,0.175 0,0.175 0,0.262 1,0.262");
}

TEST(Shape, FillOfANotchedFigureStaysInside) {
    // Above 1 the figure has two arms; no stroke crosses the gap between them.
    for (const std::string& record : Records("fill 0,0 3,0 3,2 2,2 2,1 1,1 1,2 0,2"))
        if (record[0] == '1') {
            EXPECT_TRUE(record.find("1 0,1") == 0 || record.find("1 2,1") == 0) << record;
        }
}

TEST(Shape, LongChainsAreCutBelowTheReadersLine) {
    const std::vector<std::string> records = Records("wave -10.125,0 10.125,0 1.375 20");
    ASSERT_GT(records.size(), 3u);
    for (const std::string& record : records) EXPECT_LE(record.size(), 150u);
    // The next record begins where the one before ended.
    const std::string last = records[0].substr(records[0].rfind(' ') + 1);
    EXPECT_THAT(records[1], StartsWith("2 " + last + " "));
}

TEST(Shape, NumbersHaveNoNeedlessZerosAndNoMinusZero) {
    EXPECT_EQ(FileNumber(1.5), "1.5");
    EXPECT_EQ(FileNumber(-0.0001), "0");
    EXPECT_EQ(FileNumber(2.0), "2");
    EXPECT_EQ(FileNumber(100.0), "100");
    EXPECT_EQ(FileNumber(0.1239), "0.124");
}

struct FaultCase {
    const char* name;
    const char* line;
    const char* fault;
};
void PrintTo(const FaultCase& c, std::ostream* out) {
    *out << c.name;
}

class ShapeFault : public testing::TestWithParam<FaultCase> {};

TEST_P(ShapeFault, IsNamed) {
    std::vector<std::string> records;
    EXPECT_EQ(ExpandShape(GetParam().line, records), GetParam().fault);
    EXPECT_THAT(records, IsEmpty());
}

INSTANTIATE_TEST_SUITE_P(
    All, ShapeFault,
    testing::Values(FaultCase{"an_unknown_shape", "blob 0,0 1", "there is no shape \"blob\""},
                    FaultCase{"a_word_that_is_no_number", "line 0,0 x", "\"x\" is neither a point nor a number"},
                    FaultCase{"a_missing_radius", "circle 0,0", "\"circle\" does not take 1 points and 0 numbers"},
                    FaultCase{"a_line_of_one_point", "line 0,0", "\"line\" does not take 1 points and 0 numbers"},
                    FaultCase{"turned_without_a_count", "turned line 0,0 1,1", "\"turned\" needs a count"},
                    FaultCase{"a_prefix_alone", "both", "no shape is named"},
                    FaultCase{"at_without_a_point", "dot 0,0 at", "\"at\" needs one point"}),
    [](const auto& info) { return std::string(info.param.name); });

TEST(Shape, AnEmptyLineIsNothing) {
    EXPECT_THAT(Records(""), IsEmpty());
    EXPECT_THAT(Records("   \t"), IsEmpty());
}

}  // namespace
}  // namespace zm::tool::symbols
