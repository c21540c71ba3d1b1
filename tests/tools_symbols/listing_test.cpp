// The symbols of a file as records and as text.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "own_library.h"
#include "tests/support/scratch.h"
#include "tools/symbols/symbols.h"

namespace zm::tool::symbols {
namespace {

using testing::HasSubstr;
using testing::Not;

constexpr char kFile[] =
    "free text\n"
    "*42 G \"\xBE\xAE\" well\n"
    "3 0,0 2\n"
    "1 0,0 1,1\n"
    "more text\n"
    "*7 LC D0 A0\n"
    "+5 G42\n"
    "*8 H 2 \"area\"\n"
    "1 45 10 135 10 42\n"
    "2 45 1\n"
    "\n"
    "*9 Y 3\n"
    "*5 L 4\n"
    "*6 E 12\n"
    "*$\n"
    "*10 L 0\n";

class Listing : public testing::Test {
 protected:
    Listing() {
        test::WriteFile(m_dir / "symbol.dat", kFile);
        m_symbols = ReadSymbols(test::LibraryPath(m_dir / "symbol.dat").c_str());
    }
    const Symbol& Of(int code) {
        for (const Symbol& symbol : m_symbols)
            if (symbol.code == code) return symbol;
        ADD_FAILURE() << "no code " << code;
        return m_symbols.front();
    }
    test::ScratchDir m_dir;
    std::vector<Symbol> m_symbols;
};

TEST_F(Listing, SymbolsComeByCodeAndNoneBehindTheEndLine) {
    std::vector<int> codes;
    for (const Symbol& symbol : m_symbols) codes.push_back(symbol.code);
    EXPECT_THAT(codes, testing::ElementsAre(5, 6, 7, 8, 9, 42));
}

TEST_F(Listing, AGraphicSymbolHasNoteSizeAndItsLinesWithoutTheTextBehind) {
    EXPECT_EQ(Of(42).kind, "G");
    EXPECT_EQ(Of(42).number, 2);
    EXPECT_EQ(Of(42).note, "井");
    EXPECT_DOUBLE_EQ(Of(42).size, 4.0);
    EXPECT_EQ(Of(42).firstLine, 2);
    EXPECT_EQ(Of(42).lastLine, 4);
    EXPECT_THAT(Of(42).source, testing::ElementsAre("*42 G \"井\" well", "3 0,0 2", "1 0,0 1,1"));
}

TEST_F(Listing, OtherKindsHaveTheirNumbersAndLines) {
    EXPECT_EQ(Of(7).kind, "LC");
    EXPECT_EQ(Of(7).number, 2);
    EXPECT_EQ(Of(7).lastLine, 7);
    EXPECT_EQ(Of(8).kind, "H");
    EXPECT_EQ(Of(8).number, 2);
    EXPECT_EQ(Of(8).lastLine, 10);
    EXPECT_EQ(Of(9).kind, "Y");
    EXPECT_EQ(Of(9).number, 3);
    EXPECT_EQ(Of(5).kind, "L");
    EXPECT_EQ(Of(5).number, 4);
    EXPECT_EQ(Of(6).kind, "E");
    EXPECT_EQ(Of(6).lastLine, Of(6).firstLine);
}

TEST_F(Listing, ListHasALineForEachAndCounts) {
    EXPECT_EQ(ListText(m_symbols, ""),
              "code kind  size/no  lines        note\n"
              "   5 L           4  13           \n"
              "   6 E          12  14           \n"
              "   7 LC          2  6-7          \n"
              "   8 H           2  8-10         area\n"
              "   9 Y           3  12           \n"
              "  42 G     4.00 mm  2-4          井\n"
              "6 symbols, E 1, G 1, H 1, L 1, LC 1, Y 1\n");
}

TEST_F(Listing, ListOfOneKind) {
    EXPECT_EQ(ListText(m_symbols, "LC"),
              "code kind  size/no  lines        note\n"
              "   7 LC          2  6-7          \n"
              "1 symbol, LC 1\n");
}

TEST_F(Listing, ShowTellsWhatUsesASymbol) {
    EXPECT_EQ(ShowText(m_symbols, 42),
              "code 42  井\n"
              "kind G, graphic symbol at a point, 4.00 mm, 2 records\n"
              "used by 7, 8, 9\n"
              "     2  *42 G \"井\" well\n"
              "     3  3 0,0 2\n"
              "     4  1 0,0 1,1\n");
}

TEST_F(Listing, ShowTellsWhatASymbolDrawsWith) {
    EXPECT_THAT(ShowText(m_symbols, 7), HasSubstr("draws with 42\n"));
    EXPECT_THAT(ShowText(m_symbols, 8), HasSubstr("draws with 42\n"));
    EXPECT_THAT(ShowText(m_symbols, 9), HasSubstr("draws with 834, 42\n"));
    EXPECT_THAT(ShowText(m_symbols, 5), Not(HasSubstr("draws with")));
}

TEST_F(Listing, ShowOfAnUnknownCodeIsEmpty) {
    EXPECT_EQ(ShowText(m_symbols, 10), "");
}

TEST_F(Listing, OfACodeThatStandsTwiceTheLaterOneCounts) {
    test::WriteFile(m_dir / "twice.dat", "*1 G\n3 0,0 1\n*1 G\n3 0,0 3\n3 0,0 2\n");
    const std::vector<Symbol> symbols = ReadSymbols(test::LibraryPath(m_dir / "twice.dat").c_str());
    ASSERT_EQ(symbols.size(), 1u);
    EXPECT_EQ(symbols[0].firstLine, 3);
    EXPECT_EQ(symbols[0].number, 2);
}

TEST_F(Listing, AMissingFileIsToldAndEmpty) {
    const std::string path = test::LibraryPath(m_dir / "no.dat");
    EXPECT_FALSE(CanRead(path.c_str()));
    EXPECT_TRUE(ReadSymbols(path.c_str()).empty());
    EXPECT_TRUE(CanRead(test::LibraryPath(m_dir / "symbol.dat").c_str()));
}

}  // namespace
}  // namespace zm::tool::symbols
