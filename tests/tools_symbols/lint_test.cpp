// What lint finds, each with its line.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "own_library.h"
#include "tests/support/random.h"
#include "tests/support/scratch.h"
#include "tests/support/test_host.h"
#include "tools/symbols/picture.h"
#include "tools/symbols/symbols.h"
#include "zenromath/symbol.h"

namespace zm::tool::symbols {
namespace {

std::vector<std::string> LintOf(const std::string& bytes) {
    const test::ScratchDir dir;
    test::WriteFile(dir / "symbol.dat", bytes);
    std::vector<std::string> texts;
    for (const Finding& finding : Lint(test::LibraryPath(dir / "symbol.dat").c_str()))
        texts.push_back(FindingText("f", finding));
    return texts;
}

struct LintCase {
    const char* name;
    std::string file;
    std::vector<std::string> findings;
};
void PrintTo(const LintCase& c, std::ostream* out) {
    *out << c.name;
}

class LintFile : public testing::TestWithParam<LintCase> {};

TEST_P(LintFile, GivesTheseFindings) {
    EXPECT_EQ(LintOf(GetParam().file), GetParam().findings);
}

// 5 is a graphic symbol that the cases may place.
const std::string kDot = "*5 G\n5 0,0\n";

INSTANTIATE_TEST_SUITE_P(
    Clean, LintFile,
    testing::Values(LintCase{"an_empty_file", "", {}}, LintCase{"the_end_line_alone", "*$\n", {}},
                    LintCase{"free_text_between_records", "text\n" + kDot + "# text\n\n*6 L 0\n*$\nwhatever\n", {}},
                    LintCase{"carriage_returns", "*5 G\r\n5 0,0\r\n*6 LC\r\n+1 G5\r\n*$\r\n", {}},
                    LintCase{"a_full_pattern", kDot + "*6 LC D0 A0 I0 C0\nM W1 +1 G5 +1\n", {}},
                    LintCase{"vertex_symbols", kDot + "*6 LC D2 A1 I0.5 C3\nG5 G5\n", {}},
                    LintCase{"an_upright_grid", kDot + "*6 H 0\n1 0 2 90 2 5\n", {}},
                    LintCase{"vertical_lines", "*6 H 0\n2 90 2\n", {}},
                    LintCase{"a_bitmap_with_its_rows", "*6 H 0\n4 1 0 0 0\n00FF00FF 00FF00FF\n", {}},
                    LintCase{"the_next_colour_of_the_cycle",
                             "*6 H 0\n3 0 -1\n",
                             {"f:2: code 6: numbers are missing: the line draws nothing, or less than it says."}},
                    LintCase{"the_default_grid_symbol", "*830 G\n5 0,0\n*6 H 0\n1\n", {}}),
    [](const auto& info) { return std::string(info.param.name); });

INSTANTIATE_TEST_SUITE_P(
    Reading, LintFile,
    testing::Values(
        LintCase{"a_code_above_999",
                 "*1000 G\n5 0,0\n",
                 {"f:1: code 1000: codes are 1 to 999; this header is skipped with the lines after it."}},
        LintCase{"a_header_without_code",
                 "*G\n",
                 {"f:1: this header has no code, so it is skipped with the lines after it."}},
        LintCase{"an_unknown_kind",
                 "*1 Q\n",
                 {"f:1: code 1: the kind is none of G, H, L, LC, E, Y; the code draws as a plain line."}},
        LintCase{"a_missing_kind",
                 kDot + "*6\n5 0,0\n",
                 {"f:3: code 6: doubtful: the header has no kind, so that of the one before is taken; write it."}},
        LintCase{"a_code_that_stands_twice",
                 kDot + kDot,
                 {"f:3: code 5: the code was defined above; this definition counts, that one is out of reach."}},
        LintCase{"operator_12",
                 "*1 G\n12 0,0\n5 0,0\n",
                 {"f:2: code 1: operators are 1 to 5; this line draws nothing and shows a message at loading."}},
        LintCase{
            "operator_7", "*1 G\n7 0,0\n5 0,0\n", {"f:2: code 1: operators 6 to 9 are accepted and draw nothing."}},
        LintCase{"an_empty_line_in_a_body",
                 "*1 G\n5 0,0\n\n5 1,1\n",
                 {"f:3: code 1: an empty line in a body repeats the operator before without coordinates; remove it.",
                  "f:3: code 1: numbers are missing: the line draws nothing, or less than it says."}},
        LintCase{"a_segment_without_end",
                 "*1 G\n1 2,2\n",
                 {"f:2: code 1: a segment with one point is drawn to the far corner (-100 m, -100 m) of the paper."}},
        LintCase{"an_arc_with_five_numbers",
                 "*1 G\n4 0,0 1,0 0\n",
                 {"f:2: code 1: numbers are missing: the line draws nothing, or less than it says."}},
        LintCase{"text_inside_a_body",
                 "*1 G\n5 0,0\nremark\n5 1,1\n",
                 {"f:3: code 1: this line ends the body, so line 4 is not read."}},
        LintCase{"an_unknown_hatch_entry",
                 "*1 H 0\n9 1\n",
                 {"f:2: code 1: hatch entries are of type 1 to 4; this one draws nothing."}},
        LintCase{"a_header_for_a_pattern",
                 "*1 LC\n*2 L 0\n",
                 {"f:2: code 1: there is a header where the pattern of the LC symbol above belongs."}},
        LintCase{"a_doubled_blank_in_a_pattern",
                 "*1 LC\n+1  -1\n",
                 {"f:2: code 1: a leading or doubled blank ends the pattern; the tokens after it are lost."}},
        LintCase{"17_tokens",
                 "*1 LC\n+1 -1 +1 -1 +1 -1 +1 -1 +1 -1 +1 -1 +1 -1 +1 -1 +1\n",
                 {"f:2: code 1: a pattern has at most 16 tokens; those after them are lost."}},
        LintCase{
            "a_header_behind_the_end_line", "*$\n*1 L 0\n", {"f:2: line 1 ends the file; this header is not read."}}),
    [](const auto& info) { return std::string(info.param.name); });

INSTANTIATE_TEST_SUITE_P(
    Lost, LintFile,
    testing::Values(
        LintCase{"operator_0_names_the_record_that_is_lost",
                 "*1 G\n5 0,0\n0 1,1\n3 0,0 2\n",
                 {"f:3: code 1: an operator of 0 or below leaves an end mark that is not counted, so the symbol loses "
                  "its record in line 4: \"3 0,0 2\"."}},
        LintCase{"two_of_them_lose_two_records",
                 "*1 G\n0\n-3\n5 0,0\n5 1,1\n5 2,2\n",
                 {"f:2: code 1: an operator of 0 or below leaves an end mark that is not counted, so the symbol loses "
                  "its record in line 6: \"5 2,2\".",
                  "f:3: code 1: an operator of 0 or below leaves an end mark that is not counted, so the symbol loses "
                  "its record in line 5: \"5 1,1\"."}},
        LintCase{"behind_all_records_it_loses_none",
                 "*1 G\n5 0,0\n0\n",
                 {"f:3: code 1: doubtful: an operator of 0 or below leaves an end mark that is not counted."}},
        LintCase{
            "a_symbol_without_records", "*1 G\n*2 L 0\n", {"f:1: code 1: the symbol has no record and draws nothing."}},
        LintCase{"metres_for_millimetres",
                 "*1 G\n3 0,0 500\n",
                 {"f:1: code 1: doubtful: the symbol is 1000 mm large; lengths are millimetres on paper."}},
        LintCase{"a_sweep_below_zero",
                 "*1 G\n2 -10000000,-90000 0,0 1,1\n",
                 {"f:2: code 1: a sweep of -90 degrees draws the chord alone; exchange the two points and turn the "
                  "sign."}},
        LintCase{"special_line_7", "*1 E 7\n", {"f:1: code 1: special lines are 1 and 12; number 7 draws nothing."}},
        LintCase{"ornament_21", "*1 Y 21\n", {"f:1: code 1: ornament 21 draws nothing."}},
        LintCase{"ornament_40", "*1 Y 40\n", {"f:1: code 1: ornament 40 draws nothing."}},
        LintCase{
            "an_ornament_without_what_it_leans_on",
            "*1 Y 3\n",
            {"f:1: code 1: doubtful: the ornament draws with code 834, which the file does not have: a plain line "
             "is drawn instead.",
             "f:1: code 1: the ornament places code 42, which is no graphic symbol of this file: it is missing, or "
             "a dot."}},
        LintCase{
            "an_ornament_that_leans_on_a_point",
            "*834 G\n5 0,0\n*1 Y 34\n",
            {"f:3: code 1: the ornament draws with code 834, which is no line symbol: these strokes are missing."}},
        LintCase{
            "a_note_cut_at_a_backslash_byte",
            "*1 L 0 \"\x81\x5C\x81\x40\"\n",
            {"f:1: code 1: the note is cut inside a character whose second byte is a backslash; use another word."}}),
    [](const auto& info) { return std::string(info.param.name); });

INSTANTIATE_TEST_SUITE_P(
    Patterns, LintFile,
    testing::Values(
        LintCase{"lengths_of_zero",
                 "*1 LC\n+0 -0\n",
                 {"f:2: code 1: doubtful: +0 has no length.", "f:2: code 1: doubtful: -0 has no length.",
                  "f:2: code 1: the lengths add up to nothing: the pattern never gets on along the line."}},
        LintCase{"lengths_too_short_to_be_seen",
                 "*1 LC\n+0.01 -0.02\n",
                 {"f:2: code 1: doubtful: the pattern repeats every 0.03 mm, which cannot be seen: zenro draws a plain "
                  "line."}},
        LintCase{"lengths_just_long_enough", "*1 LC\n+0.03 -0.02\n", {}},
        LintCase{"a_length_below_zero", "*1 LC\n+5 --1\n", {"f:2: code 1: a length below 0 in --1 steps backwards."}},
        LintCase{"a_symbol_alone",
                 kDot + "*1 LC\nG5\n",
                 {"f:4: code 1: ten tokens without a length in a row: the line ends with a message at its first "
                  "segment."}},
        LintCase{"an_unknown_letter",
                 "*1 LC\n+1 x2\n",
                 {"f:2: code 1: doubtful: \"x\" means nothing: it takes a place and draws nothing."}},
        LintCase{"a_symbol_that_is_not_there",
                 "*1 LC\n+1 G9\n",
                 {"f:2: code 1: G9 places a code that the file does not have: nothing, or a dot."}},
        LintCase{"a_pattern_that_places_itself",
                 "*1 LC\n+1 G1\n",
                 {"f:2: code 1: G1 places a code that is no graphic symbol: nothing, or a dot."}},
        LintCase{"a_symbol_code_with_a_fraction",
                 kDot + "*1 LC\n+1 G5.5\n",
                 {"f:4: code 1: doubtful: the code of G5.5 is cut to a whole number."}},
        LintCase{"a_companion_without_width",
                 "*1 LC\nL +1 -1\n",
                 {"f:2: code 1: L, M and R need a width W above 0: there is no companion."}},
        LintCase{"two_narrow_companions_on_a_solid_line",
                 "*1 LC\nM W0.02 +1\n",
                 {"f:2: code 1: M on a solid line with W0.02 draws nothing at all at 1:500."}},
        LintCase{"a_width_without_a_side",
                 "*1 LC\nW1 +1\n",
                 {"f:2: code 1: doubtful: W without L, M or R draws a companion on the left."}},
        LintCase{"two_sides",
                 "*1 LC\nL R W1 +1\n",
                 {"f:2: code 1: doubtful: of several tokens L, M, R the last one counts."}},
        LintCase{"vertex_mode_with_too_few_symbols",
                 kDot + "*1 LC D2 A0\nG5\n",
                 {"f:4: code 1: D2 needs 2 tokens G: a message is shown and nothing is drawn."}},
        LintCase{"vertex_mode_with_another_letter",
                 kDot + "*1 LC D2 A0\nG5 P\n",
                 {"f:4: code 1: D2 needs 2 tokens G: a message is shown and nothing is drawn."}},
        LintCase{"vertex_mode_without_d",
                 kDot + "*1 LC X1 A0\nG5\n",
                 {"f:3: code 1: doubtful: header token 1 is X1 where D is expected.",
                  "f:3: code 1: doubtful: vertex symbols without the letter D: no connecting line is drawn."}},
        LintCase{"an_angle_of_2", kDot + "*1 LC D1 A2\nG5\n", {"f:3: code 1: doubtful: A is 0 or 1; A2 counts as 0."}}),
    [](const auto& info) { return std::string(info.param.name); });

INSTANTIATE_TEST_SUITE_P(
    Hatches, LintFile,
    testing::Values(
        LintCase{
            "steps_that_divide_by_zero",
            kDot + "*1 H 0\n1 90 2 0 2 5\n",
            {"f:4: code 1: the angles 90 and 0 divide a step by zero, so the entry places nothing; an upright grid "
             "is written 0 and 90."}},
        LintCase{"parallel_families",
                 kDot + "*1 H 0\n1 45 2 225 2 5\n",
                 {"f:4: code 1: the two families are parallel, so the entry places nothing."}},
        LintCase{"a_spacing_of_zero",
                 kDot + "*1 H 0\n1 45 0 135 2 5\n2 45 0\n",
                 {"f:4: code 1: spacings of 0 and 2 place nothing; both have to be above 0.",
                  "f:5: code 1: a spacing of 0 draws no lines."}},
        LintCase{"a_grid_of_a_missing_symbol",
                 "*1 H 0\n1 45 2 135 2 5\n",
                 {"f:2: code 1: code 5 is no graphic symbol of this file: the entry places nothing, or dots."}},
        LintCase{"an_entry_behind_a_brush",
                 "*1 H 0\n3 0 1 2 3\n2 45 1\n",
                 {"f:3: code 1: entries after a first brush or bitmap are not looked at."}},
        LintCase{"a_brush_behind_lines",
                 "*1 H 0\n2 45 1\n3 0 1 2 3\n",
                 {"f:3: code 1: a brush or bitmap after another entry draws nothing; put it first."}},
        LintCase{"a_hatch_without_entries",
                 "*1 H 0\n*$\n",
                 {"f:1: code 1: doubtful: the hatch has no entry: only the outline is drawn."}},
        LintCase{"a_bitmap_without_rows",
                 "*1 H 0\n4 1 0 0 0\n*$\n",
                 {"f:3: code 1: numbers are missing: the line draws nothing, or less than it says."}},
        LintCase{
            "brush_style_9", "*1 H 0\n3 9 1 2 3\n", {"f:2: code 1: doubtful: brush styles are 0 to 6; 9 draws as 1."}},
        LintCase{"a_colour_above_255",
                 "*1 H 0\n3 0 300 2 3\n",
                 {"f:2: code 1: doubtful: a colour has parts from 0 to 255; of 300 the low byte counts."}},
        LintCase{"outline_style_9",
                 "*1 H 9\n2 45 1\n",
                 {"f:1: code 1: doubtful: pen styles of the outline are 0 to 6, here 9."}}),
    [](const auto& info) { return std::string(info.param.name); });

TEST(LintFile, ALineTooLongIsToldFirst) {
    std::string line = "2";
    for (int i = 0; i < 60; ++i) line += " 1,1";
    const std::vector<std::string> findings = LintOf("*1 G\n" + line + "\n");
    ASSERT_FALSE(findings.empty());
    EXPECT_EQ(findings.front(),
              "f:2: code 1: the line is longer than 179 bytes and is read as several lines; shorten it.");
}

// The record that lint names is the one that the interpreter does not draw.
TEST(LintFile, TheRecordNamedAsLostIsNotDrawn) {
    struct Case {
        const char* file;
        const char* lost;
        double largest;  // radius of the circles that are drawn
    };
    const Case cases[] = {
        {"*1 G\n3 0,0 1\n0 1,1\n3 0,0 2\n", "\"3 0,0 2\"", 1.0},
        {"*1 G\n3 0,0 1\n0\n-3\n3 0,0 2\n", "\"3 0,0 2\"", 1.0},
        {"*1 G\n0\n3 0,0 1\n3 0,0 2\n3 0,0 3\n", "\"3 0,0 3\"", 2.0},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.file);
        EXPECT_THAT(LintOf(c.file).front(), testing::HasSubstr(c.lost));
        const test::ScratchDir dir;
        test::WriteFile(dir / "symbol.dat", c.file);
        {
            const test::TestHost host;
            TsymbolInit(test::LibraryPath(dir / "symbol.dat").c_str());
        }
        const Picture picture = TakePicture(1000.0, 0.1, [] { insert(0, 0, 0, 1); });
        EXPECT_NEAR(picture.width, 2.0 * c.largest + 0.1, 0.02);
    }
}

TEST(LintFile, ShowsNothingWhileItReads) {
    test::TestHost host;
    EXPECT_EQ(LintOf("*1 G\n12 0,0\n0 0,0\n").size(), 3u);
    EXPECT_TRUE(host.boxes.empty());
    EXPECT_EQ(host.beeps, 0);
}

TEST(LintFile, ALibraryTooLargeIsToldWhereReadingStops) {
    std::string file;
    for (int i = 0; i < 1001; ++i) file += "*" + std::to_string(i % 900 + 1) + " L 0\n";
    const std::vector<std::string> findings = LintOf(file);
    ASSERT_FALSE(findings.empty());
    EXPECT_EQ(findings.back(),
              "f:1001: the library is too large: reading stops here, and what follows does not exist.");
}

TEST(LintFile, AMissingFileGivesNoFindings) {
    EXPECT_TRUE(Lint("no\\such\\file.dat").empty());
}

TEST(LintFile, TakesAnyBytes) {
    ZM_TRACE_SEED();
    test::Random random(7);
    const char* const pieces[] = {"*",
                                  "1",
                                  "12 ",
                                  "G",
                                  "LC ",
                                  "H ",
                                  "Y 3",
                                  "\n",
                                  "\n",
                                  " ",
                                  ",",
                                  "-1",
                                  "+5",
                                  "W",
                                  "M ",
                                  "0,0",
                                  "2 ",
                                  "4 ",
                                  "\"",
                                  "\x81\x5C",
                                  "*$",
                                  "1e30",
                                  "nan",
                                  "\r\n",
                                  "-10000000,-90000 ",
                                  "99999999999",
                                  std::string_view("\0", 1).data()};
    for (int run = 0; run < 400; ++run) {
        std::string file;
        for (int i = random.Int(0, 120); i > 0; --i) file += pieces[random.Int(0, std::size(pieces) - 1)];
        if (random.Int(0, 3) == 0)
            for (int i = random.Int(1, 9); i > 0; --i) file += static_cast<char>(random.Int(0, 255));
        const test::ScratchDir dir;
        test::WriteFile(dir / "symbol.dat", file);
        const std::string path = test::LibraryPath(dir / "symbol.dat");
        const int lines = static_cast<int>(std::count(file.begin(), file.end(), '\n')) + 1;
        for (const Finding& finding : Lint(path.c_str())) {
            EXPECT_GE(finding.line, 1);
            EXPECT_LE(finding.line, lines);
            EXPECT_FALSE(finding.text.empty());
        }
        for (const Symbol& symbol : ReadSymbols(path.c_str())) {
            EXPECT_LE(symbol.lastLine, lines);
            EXPECT_FALSE(ShowText({symbol}, symbol.code).empty());
        }
    }
}

}  // namespace
}  // namespace zm::tool::symbols
