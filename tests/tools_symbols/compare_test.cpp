// Two libraries compared.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "own_library.h"
#include "tests/support/scratch.h"
#include "tools/symbols/symbols.h"

namespace zm::tool::symbols {
namespace {

constexpr char kFirst[] =
    "*42 G \"well\"\n"
    "2 0,0 2\n"
    "1 0,0 1,1\n"
    "1 1,1 2,2\n"
    "*7 LC D0 A0\n"
    "+5 G42\n"
    "*5 L 4\n"
    "*$\n";
constexpr char kSecond[] =
    "a text of its own\n"
    "*42 G \"well\"   \n"
    "2 0,0 2\n"
    "1 0,0 1,3\n"
    "1 1,1 2,2\n"
    "*7 LC D0 A0\n"
    "+5 G42\n"
    "*6 E 12\n"
    "*$\n";

class CompareLibraries : public testing::Test {
 protected:
    std::vector<Symbol> Read(const char* name, const std::string& bytes) {
        test::WriteFile(m_dir / name, bytes);
        return ReadSymbols(test::LibraryPath(m_dir / name).c_str());
    }
    test::ScratchDir m_dir;
};

TEST_F(CompareLibraries, NamesWhatIsChangedAndWhatOnlyOneHas) {
    const Comparison c = Compare(Read("a.dat", kFirst), Read("b.dat", kSecond));
    EXPECT_FALSE(c.same());
    ASSERT_EQ(c.changed.size(), 1U);
    EXPECT_EQ(c.changed[0].first.code, 42);
    ASSERT_EQ(c.onlyFirst.size(), 1U);
    EXPECT_EQ(c.onlyFirst[0].code, 5);
    ASSERT_EQ(c.onlySecond.size(), 1U);
    EXPECT_EQ(c.onlySecond[0].code, 6);
    EXPECT_EQ(c.alike, 1);  // 7
}

TEST_F(CompareLibraries, ShowsTheLinesThatGoAndCome) {
    const std::string text = ComparisonText(Compare(Read("a.dat", kFirst), Read("b.dat", kSecond)), "a", "b");
    EXPECT_EQ(text,
              "42 G well: changed\n"
              "  - 1 0,0 1,1\n"
              "  + 1 0,0 1,3\n"
              "5 L: only in a\n"
              "6 E: only in b\n"
              "1 changed, 1 only in a, 1 only in b, 1 alike\n");
}

TEST_F(CompareLibraries, OrderAndBlanksAtTheEndsOfLinesAreNoChange) {
    const Comparison c = Compare(Read("a.dat", "*5 L 4\n*42 G \"well\"\n1 0,0 1,1\n*$\n"),
                                 Read("b.dat", "*42 G \"well\" \n1 0,0 1,1\r\n*5 L 4\n*$\n"));
    EXPECT_TRUE(c.same());
    EXPECT_EQ(c.alike, 2);
}

TEST_F(CompareLibraries, AnEmptyOneHasNothing) {
    const Comparison c = Compare({}, Read("b.dat", kSecond));
    EXPECT_EQ(c.onlySecond.size(), 3U);
    EXPECT_FALSE(c.same());
    EXPECT_TRUE(Compare({}, {}).same());
}

}  // namespace
}  // namespace zm::tool::symbols
