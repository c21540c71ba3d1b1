#include "tools/zenro/map/rules.h"

#include <gtest/gtest.h>

#include "tools/kit/exit_codes.h"

namespace {

using namespace zm::tool;

Rules Parse(const std::string& text) {
    return ParseRules(text, "my.rules");
}

TEST(RulesFile, ReadsConditionAndSettings) {
    const Rules rules = Parse("[roads : line]\nclass = 'a' -> symbol 241, line 2, note D, label name, level 6\n");
    ASSERT_EQ(rules.rules.size(), 1u);
    const Rule& rule = rules.rules[0];
    EXPECT_EQ(rule.condition, "class = 'a'");
    EXPECT_EQ(rule.layerGlob, "roads");
    EXPECT_EQ(rule.kind, GeometryKind::line);
    EXPECT_EQ(rule.symbol, 241);
    EXPECT_EQ(rule.lineType, 2);
    EXPECT_EQ(rule.note, 'D');
    EXPECT_EQ(rule.level, 6);
    ASSERT_EQ(rule.label.size(), 1u);
    EXPECT_EQ(rule.label[0].text, "name");
    EXPECT_TRUE(rule.label[0].field);
}

TEST(RulesFile, TakesTheSymbolForTheLayerWhereNoneIsNamed) {
    EXPECT_EQ(Parse("* -> symbol 200").rules[0].layer, 200);
    EXPECT_EQ(Parse("* -> symbol 500, layer 300").rules[0].layer, 300);
    EXPECT_EQ(Parse("* -> outline 213").rules[0].layer, 213);
}

TEST(RulesFile, ReadsTheScalesThatARuleIsFor) {
    const Rule both = Parse("* -> scales 500-2000, symbol 1").rules[0];
    EXPECT_TRUE(both.IsFor(500));
    EXPECT_TRUE(both.IsFor(2000));
    EXPECT_FALSE(both.IsFor(499));
    EXPECT_FALSE(both.IsFor(2001));
    EXPECT_TRUE(both.IsFor(0)) << "no scale asks all rules";
    const Rule from = Parse("* -> scales 5000-, symbol 1").rules[0];
    EXPECT_FALSE(from.IsFor(2000));
    EXPECT_TRUE(from.IsFor(1e6));
    const Rule to = Parse("* -> scales - 2000, symbol 1").rules[0];
    EXPECT_TRUE(to.IsFor(10));
    EXPECT_FALSE(to.IsFor(5000));
    EXPECT_TRUE(Parse("* -> symbol 1").rules[0].IsFor(1e7));
    for (const char* wrong : {"2000", "-", "2000-500", "a-b", "0-500", "-500-1000", "nan-"})
        EXPECT_THROW(Parse(std::string("* -> symbol 1, scales ") + wrong), Failure) << wrong;
}

TEST(RulesFile, AStarIsEveryFeature) {
    EXPECT_EQ(Parse("* -> symbol 1").rules[0].condition, "");
}

TEST(RulesFile, TheArrowAndTheHashInsideQuotesBelongToTheCondition) {
    const Rules rules = Parse("tags LIKE '%\"a\"->\"b\" # c%' -> symbol 1  # a comment\n");
    EXPECT_EQ(rules.rules[0].condition, "tags LIKE '%\"a\"->\"b\" # c%'");
}

TEST(RulesFile, AHashCanBeANoteClass) {
    const Rules rules = Parse("# comment\n  # another\n* -> symbol 1, note #, label name\n* -> symbol 2, note #\n");
    ASSERT_EQ(rules.rules.size(), 2u);
    EXPECT_EQ(rules.rules[0].note, '#');
    EXPECT_EQ(rules.rules[1].note, '#');
}

TEST(RulesFile, ABackslashContinuesALine) {
    const Rules rules = Parse("a = 1 \\\n  AND b = 2 \\\n -> symbol 1\n\nc = 3 -> symbol 2");
    ASSERT_EQ(rules.rules.size(), 2u);
    EXPECT_EQ(rules.rules[0].condition, "a = 1  AND b = 2");
    EXPECT_EQ(rules.rules[0].line, 1);
    EXPECT_EQ(rules.rules[1].line, 5);
}

TEST(RulesFile, ALabelMixesTextAndFieldsWithDecimals) {
    const auto label = Parse("* -> symbol 1, label \"H={height:.2f} m, {name}\"").rules[0].label;
    ASSERT_EQ(label.size(), 4u);
    EXPECT_EQ(label[0].text, "H=");
    EXPECT_FALSE(label[0].field);
    EXPECT_EQ(label[1].text, "height");
    EXPECT_EQ(label[1].decimals, 2);
    EXPECT_EQ(label[2].text, " m, ");
    EXPECT_EQ(label[3].text, "name");
    EXPECT_EQ(label[3].decimals, -1);
}

TEST(RulesFile, AnAzimuthIsAnAngleClockwiseFromNorth) {
    EXPECT_TRUE(Parse("* -> symbol 1, azimuth dir").rules[0].azimuth);
    EXPECT_FALSE(Parse("* -> symbol 1, angle dir").rules[0].azimuth);
}

TEST(RulesFile, AreasAreDrawnBeforeLinesAndLinesBeforePoints) {
    const Rule rule = Parse("* -> symbol 1").rules[0];
    EXPECT_EQ(rule.LevelOf(GeometryKind::area), 3);
    EXPECT_EQ(rule.LevelOf(GeometryKind::line), 5);
    EXPECT_EQ(rule.LevelOf(GeometryKind::point), 7);
}

TEST(RulesFile, WindowsLineEndsAndAByteOrderMarkAreNoContent) {
    EXPECT_EQ(Parse("\xEF\xBB\xBF* -> symbol 7\r\n").rules[0].symbol, 7);
}

struct WrongCase {
    const char* name;
    const char* text;
    const char* message;  // what follows the file's name
};
void PrintTo(const WrongCase& c, std::ostream* out) {
    *out << c.name;
}

constexpr WrongCase kWrong[] = {
    {"no_arrow", "a = 1 symbol 3", ":1: a rule is CONDITION -> SETTINGS"},
    {"open_quote", "\na = 'x -> symbol 3", ":2: a quote is not closed"},
    {"no_condition", "-> symbol 3", ":1: nothing is before"},
    {"no_settings", "* ->", ":1: nothing follows"},
    {"unknown_word", "* -> colour 3", ":1: \"colour\" is unknown"},
    {"symbol_too_large", "* -> symbol 1000", ":1: \"symbol\" needs a whole number from 0 to 999, not \"1000\""},
    {"symbol_no_number", "* -> symbol road", ":1: \"symbol\" needs a whole number"},
    {"line_type_0", "* -> symbol 3, line 0", ":1: \"line\" needs a whole number from 1 to 5"},
    {"double_comma", "* -> symbol 3,, level 2", ":1: an empty place between commas"},
    {"comma_at_the_end", "* -> symbol 3,", ":1: an empty place between commas"},
    {"long_note", "* -> symbol 3, note AB", ":1: \"note\" needs the one character"},
    {"skip_with_value", "* -> skip 1", ":1: \"skip\" takes no value"},
    {"nothing_to_draw", "* -> level 3", ":1: a rule needs"},
    {"layer_alone", "* -> layer 430, value 7", ":1: \"layer\" alone draws nothing"},
    {"symbol_0_alone", "* -> symbol 0, layer 430", ":1: \"layer\" alone draws nothing"},
    {"section_open", "[roads", ":1: a section is"},
    {"section_kind", "[roads : curve]\n* -> symbol 1", ":1: \"curve\" is no kind of geometry"},
    {"section_empty", "[]", ":1: a section needs a layer name"},
    {"label_brace", "* -> symbol 1, label \"{name\"", ":1: a { of"},
    {"label_empty_brace", "* -> symbol 1, label \"{}\"", ":1: an empty {}"},
    {"label_format", "* -> symbol 1, label \"{h:.2e}\"", ":1: \".2e\" is no format"},
    {"under_without_label", "* -> symbol 1, under \"{h}\"", ":1: \"under\" needs a \"label\""},
    {"place", "* -> symbol 1, place here", ":1: \"here\" is no place"},
    {"ends_in_a_continuation", "* -> symbol 1\na = 1 \\", ":2: the last line ends with"},
    {"empty", "# nothing\n", ": no rule in it"},
};

class WrongRules : public testing::TestWithParam<WrongCase> {};
TEST_P(WrongRules, AreToldWithFileAndLine) {
    try {
        Parse(GetParam().text);
        FAIL() << "was accepted";
    } catch (const Failure& failure) {
        EXPECT_EQ(failure.status, kUsage);
        EXPECT_EQ(std::string(failure.what()).rfind(std::string("my.rules") + GetParam().message, 0), 0u)
            << failure.what();
    }
}
INSTANTIATE_TEST_SUITE_P(Rules, WrongRules, testing::ValuesIn(kWrong),
                         [](const auto& info) { return std::string(info.param.name); });

TEST(RulesFile, AZeroByteIsNoText) {
    EXPECT_THROW(Parse(std::string("* -> symbol 1\0", 15)), Failure);
}

TEST(LayerPattern, KnowsStarsAndQuestionMarksInEitherCase) {
    EXPECT_TRUE(FitsGlob("*", ""));
    EXPECT_TRUE(FitsGlob("road*", "Roads_2024"));
    EXPECT_TRUE(FitsGlob("*_2?24", "roads_2024"));
    EXPECT_FALSE(FitsGlob("road?", "road"));
    EXPECT_FALSE(FitsGlob("road", "roads"));
    EXPECT_TRUE(FitsGlob("*a*b*", "xxaxxbxx"));
}

}  // namespace
