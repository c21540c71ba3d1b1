// Layers, linetypes and text styles by name.
#include <algorithm>

#include "dwg/texts.h"
#include "dwg/writer/line_pattern.h"
#include "dwg/writer/output_file.h"
#include "dwg/writer/state.h"
#include "dwg/writer/writer.h"
#include "tests/dwg/drawing.h"
#include "tests/support/random.h"

namespace zm::test {
namespace {

using Layers = DrawingTest;
using Linetypes = DrawingTest;
using Styles = DrawingTest;

TEST_F(Layers, EitherCaseSelectsTheSameLayerAndTheNameGivenIsUpperCased) {
    Open();
    char lower[] = "road";
    char upper[] = "ROAD";
    _LDBsetlay(lower);
    EXPECT_STREQ(lower, "ROAD");
    EXPECT_EQ(dwg::state().now.layer, 1);
    _LDBsetlay(upper);
    EXPECT_EQ(dwg::state().now.layer, 1);
    EXPECT_EQ(Close().u32(56), 2u);
}

TEST_F(Layers, ASecondByteOfAChineseCharacterIsUpperCasedTooIfItLiesInTheRange) {
    Open();
    char name[] = "\x81\x61z";  // a two-byte character with the second byte "a"
    _LDBsetlay(name);
    EXPECT_STREQ(name, "\x81\x41Z");
    EXPECT_EQ(NameOf(Close().Layer(1)), "\x81\x41Z");
}

TEST_F(Layers, ALowerCaseEntryOfTheTemplateIsNeverFound) {
    std::string layers = drawingTemplate;
    std::string record("@lower");
    record += std::string(27, '\0') + U16(5) + U16(0);
    layers.insert(1347, record);
    layers.replace(56, 4, U32(2));
    for (const std::size_t field : {28, 36, 70, 80, 90})
        layers.replace(field, 4, U32(Drawing(drawingTemplate).u32(field) + 37));
    Write("acad.dwg", layers);
    Open();
    SetLay("lower");
    EXPECT_EQ(dwg::state().now.layer, 2);
    const Drawing drawing = Close();
    EXPECT_EQ(NameOf(drawing.Layer(1)), "lower");
    EXPECT_EQ(NameOf(drawing.Layer(2)), "LOWER");
}

TEST_F(Layers, OfTwoEntriesWithOneNameTheFirstIsSelected) {
    std::string layers = drawingTemplate;
    layers.insert(1347, layers.substr(1310, 37));
    layers.replace(56, 4, U32(2));
    for (const std::size_t field : {28, 36, 70, 80, 90})
        layers.replace(field, 4, U32(Drawing(drawingTemplate).u32(field) + 37));
    Write("acad.dwg", layers);
    Open();
    SetLay("ROAD");
    SetLay("0");
    EXPECT_EQ(dwg::state().now.layer, 0);
}

TEST_F(Layers, TheLastSelectionGivesTheRecordItsColourAndLinetype) {
    Open();
    _LDBsetcolor(2);
    SetLtype("3");
    SetLay("ROAD");
    _LDBsetcolor(6);
    SetLtype("1");
    SetLay("road");
    EXPECT_EQ(Hex(Close().Layer(1).substr(33)), "06000200");
}

TEST_F(Layers, SelectingATemplatesLayerRewritesItsColourAndLinetype) {
    Open();
    _LDBsetcolor(300);
    SetLtype("3");
    SetLay("0");
    EXPECT_EQ(Hex(Close().Layer(0).substr(33)), "2c010400");
}

TEST_F(Layers, ColourAndLinetypeSetBehindTheLayerDoNotReachItsRecord) {
    Open();
    SetLay("ROAD");
    _LDBsetcolor(6);
    SetLtype("1");
    EXPECT_EQ(Hex(Close().Layer(1).substr(33)), "07000000");
}

TEST_F(Layers, ANullNameGivesItsMessageAndKeepsTheCurrentLayer) {
    Open();
    SetLay("ROAD");
    _LDBsetlay(nullptr);
    EXPECT_EQ(Messages(), std::vector<std::string>{"lay name null"});
    EXPECT_EQ(dwg::state().now.layer, 1);
}

TEST_F(Layers, ANewRecordIsZeroBehindItsName) {
    Open();
    SetLay("ROAD");
    EXPECT_EQ(Hex(Close().Layer(1)), Hex("@ROAD" + std::string(28, '\0') + U16(7) + U16(0)));
}

TEST_F(Linetypes, AKnownOneIsSelectedAndNothingElseChanges) {
    std::filesystem::remove(dir / "ACAD.LIN");
    Open();
    SetLtype("continuous");
    EXPECT_EQ(dwg::state().now.linetype, 0);
    SetLtype("6");
    EXPECT_EQ(dwg::state().now.linetype, 7);
    EXPECT_EQ(Close().bytes(), drawingTemplate);
}

TEST_F(Linetypes, AnUnknownOneIsLoadedFromTheFile) {
    Open();
    char name[] = "dashed";
    _LDBsetltype(name);
    EXPECT_STREQ(name, "DASHED");
    EXPECT_EQ(dwg::state().now.linetype, 8);
    EXPECT_EQ(Hex(Close().Linetype(8)), Hex("@DASHED" + std::string(26, '\0') + "DASHED" + std::string(42, '\0') +
                                            "A\x02" + F64(0.75) + F64(0.5) + F64(-0.25) + std::string(80, '\0')));
}

TEST_F(Linetypes, TheStartOfALongerNameIsSatisfiedByThatEntryAndStoredUnderTheShorterName) {
    Open();
    SetLtype("BORD");
    SetLtype("BORDER");
    const Drawing drawing = Close();
    EXPECT_EQ(NameOf(drawing.Linetype(8)), "BORD");
    EXPECT_EQ(NameOf(drawing.Linetype(9)), "BORDER");
    EXPECT_EQ(drawing.Linetype(8).substr(82), drawing.Linetype(9).substr(82));
}

TEST_F(Linetypes, TheOrderOfTheFileDecidesBetweenTenAndOne) {
    std::string withoutOne = drawingTemplate;
    withoutOne.replace(1541 + 2 * 187 + 1, 1, "X");
    Write("acad.dwg", withoutOne);
    Open();
    SetLtype("1");  // "10" stands first in the file
    EXPECT_EQ(Hex(Close().Linetype(8).substr(82, 25)), Hex("\x02" + F64(13) + F64(10) + F64(-3)));
}

TEST_F(Linetypes, OneThatNobodyHasEndsTheProcessWithStatus13) {
    Open();
    EXPECT_EQ(StatusOf([] { SetLtype("nosuch"); }), 13);
    ASSERT_EQ(Messages().size(), 1u);
    std::string expected = dwg::texts::kNoLinetype.gbk;
    expected.replace(expected.find("%s"), 2, "NOSUCH");
    EXPECT_EQ(Messages()[0], expected);
}

TEST_F(Linetypes, AMissingFileIsToldBeforeTheProcessEnds) {
    std::filesystem::remove(dir / "ACAD.LIN");
    Open();
    EXPECT_EQ(StatusOf([] { SetLtype("DASHED"); }), 13);
    ASSERT_EQ(Messages().size(), 2u);
    EXPECT_EQ(Messages()[0], "CANNOT OPEN LINETYPE FILE!\n");
}

TEST_F(Linetypes, ANameOf20CharactersInTheFileEndsTheProcess) {
    Write("ACAD.LIN", "*ABCDEFGHIJKLMNOPQRST,20\nA,1\n*DASHED,x\nA,1\n");
    Open();
    EXPECT_EQ(StatusOf([] { SetLtype("DASHED"); }), 13);
    EXPECT_EQ(Messages(), std::vector<std::string>{dwg::texts::kLinetypeFault});
}

TEST_F(Linetypes, ANameOf19CharactersInTheFileIsAccepted) {
    Write("ACAD.LIN", "*ABCDEFGHIJKLMNOPQRS,19\nA,1\n");
    Open();
    SetLtype("ABCDEFGHIJKLMNOPQRS");
    EXPECT_EQ(NameOf(Close().Linetype(8)), "ABCDEFGHIJKLMNOPQRS");
}

TEST_F(Linetypes, ANullNameKeepsTheCurrentOne) {
    Open();
    SetLtype("1");
    _LDBsetltype(nullptr);
    EXPECT_EQ(dwg::state().now.linetype, 2);
    EXPECT_TRUE(host.boxes.empty());
}

TEST_F(Linetypes, APatternOfTwelveElementsIsStoredWhole) {
    Write("ACAD.LIN", "*TWELVE,x\nA,1,-2,3,-4,5,-6,7,-8,9,-10,11,-12\n");
    Open();
    SetLtype("TWELVE");
    const std::string record = Close().Linetype(8);
    EXPECT_EQ(record[82], 12);
    EXPECT_EQ(record.substr(83, 8), F64(78));
    EXPECT_EQ(record.substr(179), F64(-12));
    EXPECT_TRUE(host.boxes.empty());
}

TEST_F(Linetypes, APatternOfThirteenElementsIsCutAndReported) {
    Write("ACAD.LIN", "*LONG,x\nA,1,1,1,1,1,1,1,1,1,1,1,1,1\n");
    Open();
    SetLtype("LONG");
    const std::string record = Close().Linetype(8);
    EXPECT_EQ(record[82], 12);
    EXPECT_EQ(record.substr(83, 8), F64(12));
    EXPECT_EQ(Messages().size(), 1u);
}

// What the linetype file gives for a name.
struct PatternCase {
    const char* name;
    const char* file;
    const char* wanted;
    dwg::PatternResult result;
    std::vector<double> elements;
};
void PrintTo(const PatternCase& c, std::ostream* out) {
    *out << c.name;
}
const PatternCase kPatternCases[] = {
    {"carriage_returns_do_not_count", "*X,x\r\nA,1,-2\r\n", "X", dwg::PatternResult::found, {1, -2}},
    {"empty_pattern_is_missing", "*X,x\nA,\n", "X", dwg::PatternResult::missing, {}},
    {"empty_pattern_with_carriage_return_is_missing", "*X,x\r\nA,\r\n", "X", dwg::PatternResult::missing, {}},
    {"no_pattern_line_is_missing", "*X,x\n", "X", dwg::PatternResult::missing, {}},
    {"one_letter_for_a_pattern_is_missing", "*X,x\nA\n", "X", dwg::PatternResult::missing, {}},
    {"a_comma_at_the_end_adds_nothing", "*X,x\nA,1,-2,\n", "X", dwg::PatternResult::found, {1, -2}},
    {"an_empty_element_is_0", "*X,x\nA,1,,3\n", "X", dwg::PatternResult::found, {1, 0, 3}},
    {"the_two_characters_in_front_are_not_looked_at", "*X,x\nZZ1,-2\n", "X", dwg::PatternResult::found, {1, -2}},
    {"the_last_line_needs_no_end", "*X,x\nA,1,-2", "X", dwg::PatternResult::found, {1, -2}},
    {"a_name_without_comma_ends_with_its_line", "*X\nA,1\n", "X", dwg::PatternResult::found, {1}},
    {"an_element_of_20_characters_is_a_fault", "*X,x\nA,12345678901234567890\n", "X", dwg::PatternResult::fault, {}},
    {"an_element_of_19_characters_is_read", "*X,x\nA,1.00000000000000000\n", "X", dwg::PatternResult::found, {1}},
    {"names_in_lower_case_are_not_found", "*x,x\nA,1\n", "X", dwg::PatternResult::missing, {}},
    {"other_lines_are_skipped", "; *X\nX,1\n\n*X,x\nA,7\n", "X", dwg::PatternResult::found, {7}},
    {"an_empty_name_takes_the_first_entry", "*X,x\nA,7\n", "", dwg::PatternResult::found, {7}},
    {"an_empty_file_has_nothing", "", "X", dwg::PatternResult::missing, {}},
    {"words_are_0", "*X,x\nA,abc,2\n", "X", dwg::PatternResult::found, {0, 2}},
    {"exponents_are_read", "*X,x\nA,1e-2,.5\n", "X", dwg::PatternResult::found, {0.01, 0.5}},
};

class LinePatterns : public DrawingTest, public testing::WithParamInterface<PatternCase> {};

TEST_P(LinePatterns, AreReadByTheRules) {
    const PatternCase& c = GetParam();
    Write("pattern.lin", c.file);
    const dwg::FileOwner file(std::fopen("pattern.lin", "rb"));
    ASSERT_NE(file, nullptr);
    dwg::LinePattern pattern;
    ASSERT_EQ(dwg::ReadLinePattern(file.get(), c.wanted, pattern), c.result);
    if (c.result == dwg::PatternResult::found) {
        EXPECT_EQ(std::vector<double>(pattern.elements, pattern.elements + pattern.count), c.elements);
    }
}
INSTANTIATE_TEST_SUITE_P(File, LinePatterns, testing::ValuesIn(kPatternCases),
                         [](const auto& info) { return std::string(info.param.name); });

TEST_F(Linetypes, WhatALineHasBehind159CharactersIsALineOfItsOwn) {
    // The pattern line is cut at 159 characters: "A," and 52 elements of three characters, then a part of the next.
    std::string file = "*X,x\nA,";
    for (int i = 0; i < 60; ++i) file += "1.,";
    Write("pattern.lin", file + "\n");
    const dwg::FileOwner stream(std::fopen("pattern.lin", "rb"));
    dwg::LinePattern pattern;
    EXPECT_EQ(dwg::ReadLinePattern(stream.get(), "X", pattern), dwg::PatternResult::found);
    EXPECT_TRUE(pattern.cut);
}

TEST_F(Layers, ASelectionFindsWhatASearchFromTheFirstSlotFinds) {
    ZM_TRACE_SEED();
    Random random(6);
    std::vector<std::string> slots = {"0"};
    Open();
    for (int i = 0; i < 2000; ++i) {
        std::string name;
        for (int length = random.Int(0, 3); length > 0; --length) name += "aAbB\xC2"[random.Int(0, 4)];
        std::string upper = name;
        for (char& c : upper) c = c == 'a' ? 'A' : c == 'b' ? 'B' : c;
        auto found = std::find(slots.begin(), slots.end(), upper);
        if (found == slots.end()) found = slots.insert(found, upper);
        SetLay(name);
        ASSERT_EQ(dwg::state().now.layer, found - slots.begin()) << i;
    }
    const Drawing drawing = Close();
    ExpectSound(drawing);
    ASSERT_EQ(drawing.u32(56), slots.size());
    for (std::size_t i = 0; i < slots.size(); ++i) EXPECT_EQ(NameOf(drawing.Layer(i)), slots[i]);
}

struct StyleCase {
    int type;
    char flag;
    char generation;
};
void PrintTo(const StyleCase& c, std::ostream* out) {
    *out << c.type;
}
class StyleTypes : public DrawingTest, public testing::WithParamInterface<StyleCase> {};

TEST_P(StyleTypes, GiveFlagAndGeneration) {
    Open();
    SetStyle(GetParam().type, "S", "txt");
    const std::string record = Close().Style(1);
    EXPECT_EQ(record[0], GetParam().flag);
    EXPECT_EQ(record[57], GetParam().generation);
}
INSTANTIATE_TEST_SUITE_P(All, StyleTypes,
                         testing::Values(StyleCase{0, '@', 0}, StyleCase{1, 'D', 0}, StyleCase{2, '@', 2},
                                         StyleCase{3, '@', 4}, StyleCase{4, 'D', 2}, StyleCase{5, 'D', 4},
                                         StyleCase{6, '@', 6}, StyleCase{7, 'D', 6}, StyleCase{8, 0, 0},
                                         StyleCase{-1, 0, 0}),
                         [](const auto& info) {
                             return info.param.type < 0 ? std::string("negative") : std::to_string(info.param.type);
                         });

TEST_F(Styles, ATypeOf8LeavesTheKindOfAKnownStyle) {
    Open();
    SetStyle(4, "S", "txt");
    SetStyle(8, "S", "txt");
    const std::string record = Close().Style(1);
    EXPECT_EQ(record[0], 'D');
    EXPECT_EQ(record[57], 2);
}

TEST_F(Styles, ANewOneIsWrittenByteForByte) {
    Open();
    char name[] = "song";
    char font[] = "txt,hztxt";
    _LDBsetstyle(1, name, font, 0.8, 90);
    EXPECT_STREQ(name, "SONG");
    EXPECT_STREQ(font, "txt,hztxt");
    std::string expected = "DSONG" + std::string(28, '\0') + F64(0) + F64(0.8) + F64(90 * 3.14159265 / 180);
    expected += std::string(1, '\0') + F64(2.5) + "txt" + std::string(61, '\0') + "hztxt" + std::string(59, '\0');
    EXPECT_EQ(Hex(Close().Style(1)), Hex(expected));
    EXPECT_EQ(dwg::state().now.style, 1);
}

TEST_F(Styles, OneFontNameEmptiesTheBigFont) {
    Open();
    SetStyle(0, "S", "txt,hztxt");
    SetStyle(0, "S", "txt");
    const Drawing drawing = Close();
    EXPECT_STREQ(drawing.Style(1).c_str() + 66, "txt");
    EXPECT_STREQ(drawing.Style(1).c_str() + 130, "");
}

TEST_F(Styles, BytesBehindAFontsEndStayAsTheyWere) {
    Open();
    SetStyle(0, "S", "longfont,bigfont");
    SetStyle(0, "S", "txt,b");
    const std::string record = Close().Style(1);
    EXPECT_EQ(record.substr(66, 9), std::string("txt\0font\0", 9));
    EXPECT_EQ(record.substr(130, 8), std::string("b\0gfont\0", 8));
}

TEST_F(Styles, OnlyTheFirstCommaDividesTheFonts) {
    Open();
    SetStyle(0, "S", "a,b,c");
    const std::string record = Close().Style(1);
    EXPECT_STREQ(record.c_str() + 66, "a");
    EXPECT_STREQ(record.c_str() + 130, "b,c");
}

TEST_F(Styles, EveryCallRedefinesAKnownStyle) {
    Open();
    SetStyle(0, "STANDARD", "new", 0.5, 18);
    const Drawing drawing = Close();
    EXPECT_EQ(drawing.u32(66), 1u);
    EXPECT_EQ(drawing.Style(0).substr(41, 16), F64(0.5) + F64(18 * 3.14159265 / 180));
    EXPECT_STREQ(drawing.Style(0).c_str() + 66, "new");
}

TEST_F(Styles, ANewOneTakesItsLastHeightFromTheFirstNotFromTheLast) {
    std::string styles = drawingTemplate;
    std::string second = styles.substr(1347, 194);
    second.replace(1, 8, "SECOND\0\0", 8).replace(58, 8, F64(9.5));
    styles.insert(1541, second);
    styles.replace(66, 4, U32(2));
    for (const std::size_t field : {28, 36, 80, 90})
        styles.replace(field, 4, U32(Drawing(drawingTemplate).u32(field) + 194));
    Write("acad.dwg", styles);
    Open();
    SetStyle(0, "THIRD", "txt");
    SetStyle(0, "SECOND", "txt");
    const Drawing drawing = Close();
    EXPECT_EQ(drawing.Style(2).substr(58, 8), F64(2.5));
    EXPECT_EQ(drawing.Style(1).substr(58, 8), F64(2.5));
}

TEST_F(Styles, NullTextsAreSafe) {
    Open();
    _LDBsetstyle(0, nullptr, nullptr, 1, 0);
    char name[] = "S";
    _LDBsetstyle(0, name, nullptr, 1, 0);
    const Drawing drawing = Close();
    EXPECT_EQ(drawing.u32(66), 2u);
    EXPECT_STREQ(drawing.Style(1).c_str() + 66, "");
}

}  // namespace
}  // namespace zm::test
