// Reading of the symbol file, and the lookup by code.
#include <gmock/gmock.h>

#include <algorithm>
#include <clocale>

#include "symbol/file/library.h"
#include "symbol/texts.h"
#include "tests/symbol/symbol_test.h"

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

using SymbolFile = zm::test::LibraryTest;

std::vector<float> Floats() {
    std::vector<float> values;
    for (int i = 0; i < nBody; ++i) {
        values.push_back(TheBody[i].point.x);
        values.push_back(TheBody[i].point.y);
    }
    return values;
}

std::string Repeat(const std::string& text, int times) {
    std::string all;
    for (int i = 0; i < times; ++i) all += text;
    return all;
}

TEST_F(SymbolFile, WithOnlyItsEndLineLeavesAllHeadsPlainLines) {
    Load("*$\n");
    for (int code = 1; code <= 999; ++code) ASSERT_THAT(HeadOf(code), ElementsAre(3, 0, 0)) << code;
    EXPECT_TRUE(m_host.boxes.empty());
}

TEST_F(SymbolFile, EmptyFileIsALibraryWithoutSymbols) {
    Load("");
    EXPECT_NE(0, IsTsymboled());
    EXPECT_THAT(HeadOf(12), ElementsAre(3, 0, 0));
}

TEST_F(SymbolFile, HeaderWithCodeAbove999IsSkippedAndItsBodyIsFreeText) {
    Load("*1000 G\n5 1,1\n*12 G\n5 2,2\n");
    EXPECT_THAT(HeadOf(12), ElementsAre(1, 0, 1));
    EXPECT_EQ(3, nBody);
}

TEST_F(SymbolFile, NoteBehindAQuotationMarkIsStoredWithoutIt) {
    Load("*12 G \"control point\n*$\n");
    EXPECT_STREQ("control point", Get_Symbol_Note(12));
    EXPECT_STREQ("null", Get_Symbol_Note(1000));
    EXPECT_STREQ("null", Get_Symbol_Note(0));
    EXPECT_STREQ("", Get_Symbol_Note(13));
}

TEST_F(SymbolFile, NoteEndsInsideACharacterWhoseSecondByteIsABackslash) {
    Load("*12 L 1 /\xB5\xE7\x81\\abc\n*$\n");
    EXPECT_STREQ("\xB5\xE7\x81", Get_Symbol_Note(12));
}

TEST_F(SymbolFile, SameCodeTwiceInARowRebuildsNothing) {
    Load("*12 G\n5 1,1\n*13 G\n1 0,0 1,1\n*$\n");
    getsymbody(12);
    TheBody = nullptr;
    nBody = -7;
    EXPECT_EQ(1, getsymbody(12));
    EXPECT_EQ(nullptr, TheBody);
    EXPECT_EQ(-7, nBody);
}

TEST_F(SymbolFile, ReturningToACodeRebuildsIt) {
    Load("*12 G\n5 1,1\n*13 G\n1 0,0 1,1\n*$\n");
    getsymbody(12);
    EXPECT_EQ(3, nBody);
    getsymbody(13);
    EXPECT_EQ(4, nBody);
    getsymbody(12);
    EXPECT_EQ(3, nBody);
    EXPECT_THAT(Floats(), ElementsAre(5.0F, 0.0F, 0.001F, 0.001F, -100.0F, -100.0F));
}

TEST_F(SymbolFile, CodeZeroReturnsZeroAndLeavesTheCurrentSymbol) {
    Load("*12 G\n5 1,1\n*$\n");
    getsymbody(12);
    EXPECT_EQ(0, getsymbody(0));
    EXPECT_EQ(0, getsymbody(-3));
    EXPECT_EQ(1, TheHeadStatus());
    EXPECT_EQ(3, nBody);
}

TEST_F(SymbolFile, CodeAbove999HasTheHeadOf999) {
    Load("*999 G\n5 1,1\n5 2,2\n*$\n");
    EXPECT_THAT(HeadOf(1500), ElementsAre(1, 0, 2));
    EXPECT_EQ(6, nBody);
    EXPECT_EQ(0.0, Get_G_Size(1500));
}

TEST_F(SymbolFile, SizeOfACircleIsItsDiameter) {
    Load("*12 G\n3 0,0 2\n*$\n");
    EXPECT_EQ(4.0, Get_G_Size(12));
}

TEST_F(SymbolFile, SizePoolsXAndY) {
    Load("*12 G\n1 1,1 3,9\n*13 G\n5 -3,20\n*$\n");
    EXPECT_EQ(8.0, Get_G_Size(12));
    EXPECT_EQ(23.0, Get_G_Size(13));  // the extent of neither axis
}

TEST_F(SymbolFile, GraphicSymbolWithoutCoordinatesHasASizeBelowZero) {
    Load("*12 G\n6 1,1\n*$\n");
    EXPECT_EQ(-199998.0, Get_G_Size(12));
    EXPECT_EQ(0.0, Get_G_Size(13));
}

TEST_F(SymbolFile, MissingIntegerOfAHeaderIsZero) {
    Load("*1 L\n*2 E\n*3 Y x\n*4 H\n2 45 3\n*$\n");
    EXPECT_THAT(HeadOf(1), ElementsAre(3, 0, 0));
    EXPECT_THAT(HeadOf(2), ElementsAre(4, 0, 0));
    EXPECT_THAT(HeadOf(3), ElementsAre(6, 0, 0));
    getsymbody(4);
    EXPECT_EQ(0.0F, TheBody[0].op.op);
}

TEST_F(SymbolFile, HeaderWithoutKindTakesThatOfTheHeaderBefore) {
    Load("*1 E 12\n*2\n*1000 Y 5\n*3 \n*$\n");
    EXPECT_THAT(HeadOf(2), ElementsAre(4, 0, 0));
    EXPECT_THAT(HeadOf(3), ElementsAre(6, 0, 0));  // also that of a header that was skipped
}

TEST_F(SymbolFile, EmptyLineRepeatsTheOperatorWithoutCoordinates) {
    Load("*12 G\n1 1,1 2,2\n\n5 3,3\n*$\n");
    EXPECT_THAT(HeadOf(12), ElementsAre(1, 0, 3));
    EXPECT_EQ(2.0, Get_G_Size(12));
    EXPECT_THAT(Floats(), ElementsAre(1.0F, 0.0F, 0.001F, 0.001F, 0.002F, 0.002F, -100.0F, -100.0F,  //
                                      1.0F, 0.0F, -100.0F, -100.0F,                                  //
                                      5.0F, 0.0F, 0.003F, 0.003F, -100.0F, -100.0F));
}

TEST_F(SymbolFile, EmptyLineAheadOfTheFirstOperatorIsNothing) {
    Load("*11 G\n5 1,1\n*12 G\n\n5 3,3\n*$\n");
    EXPECT_THAT(HeadOf(12), ElementsAre(1, 3, 1));
}

TEST_F(SymbolFile, LineWithoutNumberEndsABody) {
    Load("*12 G\n5 3,3\nthe rest is text\n5 4,4\n*$\n");
    EXPECT_THAT(HeadOf(12), ElementsAre(1, 0, 1));
}

TEST_F(SymbolFile, EmptyLineEndsAHatch) {
    Load("*12 H 1\n2 45 3\n\n2 90 3\n*$\n");
    EXPECT_THAT(HeadOf(12), ElementsAre(5, 0, 1));
}

TEST_F(SymbolFile, OperatorAboveNineIsToldWithTheCodeOfTheSymbol) {
    Load("*65 G\n5 1,1\n10 2,2\n5 3,3\n*$\n");
    EXPECT_THAT(Messages(), ElementsAre("symbol.dat code=65 err"));
    EXPECT_THAT(HeadOf(65), ElementsAre(1, 0, 2));
    EXPECT_EQ(6, nBody);
}

TEST_F(SymbolFile, OperatorZeroLeavesItsTerminatorUncountedAndTheLastRecordIsLost) {
    Load("*65 G\n5 1,1\n0 2,2\n5 3,3\n*$\n");
    EXPECT_THAT(Messages(), ElementsAre("symbol.dat code=65 err"));
    EXPECT_THAT(HeadOf(65), ElementsAre(1, 0, 2));
    EXPECT_THAT(Floats(), ElementsAre(5.0F, 0.0F, 0.001F, 0.001F, -100.0F, -100.0F, -100.0F, -100.0F));
}

TEST_F(SymbolFile, SweepOfMinus100DegreesOrLessCountsAsTerminator) {
    Load("*91 G\n2 -10000000,-100000 0,0 2,0\n5 1,1\n*92 G\n2 -10000000,-99000 0,0 2,0\n5 1,1\n*$\n");
    getsymbody(91);
    EXPECT_EQ(5, nBody);
    getsymbody(92);
    EXPECT_EQ(8, nBody);
}

TEST_F(SymbolFile, DoubledBlankReadsAPairTwice) {
    Load("*12 G\n2 1,1  2,2\n*$\n");
    getsymbody(12);
    EXPECT_THAT(Floats(), ElementsAre(2.0F, 0.0F, 0.001F, 0.001F, 0.002F, 0.002F, 0.002F, 0.002F, -100.0F, -100.0F));
}

TEST_F(SymbolFile, BlankAheadOfAPolylineReadsNoPoints) {
    Load("*12 G\n 2 1,1 2,2\n*$\n");
    getsymbody(12);
    EXPECT_THAT(Floats(), ElementsAre(2.0F, 0.0F, -100.0F, -100.0F));
}

TEST_F(SymbolFile, CarriageReturnsAreReadLikeLineFeeds) {
    const std::string unix_ends = "*12 G /note\n1 1,1 2,2\n\n5 1,1\n*13 LC D1 A0\n+5 -2\n*14 H 2\n2 45 3\n\n*$\n";
    std::string dos;
    for (const char c : unix_ends) dos += c == '\n' ? std::string("\r\n") : std::string(1, c);
    Load(dos);
    EXPECT_STREQ("note", Get_Symbol_Note(12));
    EXPECT_THAT(HeadOf(12), ElementsAre(1, 0, 3));
    EXPECT_THAT(HeadOf(13), ElementsAre(2, 0, 2));
    EXPECT_EQ('+', TheLCBody.code[0]);
    EXPECT_EQ(2.0, TheLCBody.value[1]);
    EXPECT_THAT(HeadOf(14), ElementsAre(5, 9, 1));
}

TEST_F(SymbolFile, NumbersAreReadWithAPointInEveryLocale) {
    const std::string before = std::setlocale(LC_ALL, nullptr);
    const char* comma = std::setlocale(LC_ALL, "de_DE.UTF-8");
    Load("*12 G\n5 1.5,2.5\n*13 LC\n+2.5\n*$\n");
    std::setlocale(LC_ALL, before.c_str());
    getsymbody(12);
    EXPECT_THAT(Floats(), ElementsAre(5.0F, 0.0F, 0.0015F, 0.0025F, -100.0F, -100.0F)) << (comma ? comma : "C");
    getsymbody(13);
    EXPECT_EQ(2.5, TheLCBody.value[0]);
}

TEST_F(SymbolFile, LineOf180BytesIsReadAsTwo) {
    // 179 bytes fit, the line feed included: the rest of the line is a line of its own.
    std::string line = "1 1,1 2,2";
    line.resize(179, ' ');
    Load("*12 G\n" + line + "5 3,3\n*$\n");
    EXPECT_THAT(HeadOf(12), ElementsAre(1, 0, 2));
    EXPECT_EQ(7, nBody);
}

TEST_F(SymbolFile, LineOf179BytesLeavesAnEmptyLine) {
    std::string line = "1 1,1 2,2";
    line.resize(178, ' ');
    Load("*12 G\n" + line + "\n*$\n");
    EXPECT_THAT(HeadOf(12), ElementsAre(1, 0, 1));
    line.resize(179, ' ');
    Load("*12 G\n" + line + "\n*$\n");
    EXPECT_THAT(HeadOf(12), ElementsAre(1, 0, 2));
}

TEST_F(SymbolFile, ZeroByteEndsALineOfText) {
    Load(std::string("*12 G\n5 1,1\0 *13\n*13 G\n5 2,2\n*$\n", 32));
    EXPECT_THAT(HeadOf(12), ElementsAre(1, 0, 1));
    EXPECT_THAT(HeadOf(13), ElementsAre(1, 3, 1));
}

TEST_F(SymbolFile, WordsLikeInfAreNoNumbers) {
    Load("*12 G\n5 inf,nan\n3 1,1 0x10\n*13 LC\n+inf -nan\n*$\n");
    getsymbody(12);
    EXPECT_THAT(Floats(), ElementsAre(5.0F, 0.0F, -100.0F, -100.0F, 3.0F, 0.0F, 0.001F, 0.001F, -100.0F, -100.0F));
    getsymbody(13);
    EXPECT_EQ(0.0, TheLCBody.value[0]);
    EXPECT_EQ(0.0, TheLCBody.value[1]);
}

TEST_F(SymbolFile, NumbersBeyondTheirRangeAreLimited) {
    Load("*12 G\n5 1e300,-1e300\n*13 L 99999999999\n*14 Y -99999999999\n*99999999999 G\n5 1,1\n*$\n");
    getsymbody(12);
    EXPECT_EQ(3.40282347e35F, TheBody[1].point.x);
    EXPECT_EQ(-3.40282347e35F, TheBody[1].point.y);
    EXPECT_THAT(HeadOf(13), ElementsAre(3, 0, 2147483647));
    EXPECT_THAT(HeadOf(14), ElementsAre(6, 0, -2147483647 - 1));
}

TEST_F(SymbolFile, SeventeenthTokenIsLeftOutAndReported) {
    Load("*12 LC\n+1 +2 +3 +4 +5 +6 +7 +8 +9 +10 +11 +12 +13 +14 +15 +16 -17\n*$\n");
    EXPECT_THAT(HeadOf(12), ElementsAre(2, 0, 16));
    EXPECT_EQ(16.0, TheLCBody.value[15]);
    EXPECT_EQ(0, TheLCBody.code[16]);
    EXPECT_EQ(0.0, TheLCBody.value[16]);
    EXPECT_THAT(Messages(),
                ElementsAre("symbol.dat code=12: a line pattern has at most 16 tokens; those after them are "
                            "left out. Shorten the pattern."));
}

TEST_F(SymbolFile, TokenOfMoreThan19CharactersIsLeftOutAndReported) {
    Load("*12 LC\n+1 -2345678901234567890 +3\n*13 LC\n+123456789012345678\n*$\n");
    EXPECT_THAT(HeadOf(12), ElementsAre(2, 0, 2));
    EXPECT_EQ(3.0, TheLCBody.value[1]);
    EXPECT_THAT(Messages(), ElementsAre("symbol.dat code=12: a token of the line pattern is longer than 19 characters "
                                        "and is left out. Shorten it."));
    EXPECT_THAT(HeadOf(13), ElementsAre(2, 1, 1));
    EXPECT_EQ(123456789012345678.0, TheLCBody.value[0]);
}

TEST_F(SymbolFile, LineBehindALineClassHeaderIsItsPatternWhateverItIs) {
    Load("*12 LC\n*13 L 3\n*14 L 4\n*$\n");
    EXPECT_THAT(HeadOf(12), ElementsAre(2, 0, 3));
    EXPECT_EQ('*', TheLCBody.code[0]);
    EXPECT_THAT(HeadOf(13), ElementsAre(3, 0, 0));
    EXPECT_THAT(HeadOf(14), ElementsAre(3, 0, 4));
}

TEST_F(SymbolFile, WithMoreThan8000RecordsStopsAtTheNextHeader) {
    Load("*1 G\n" + Repeat("5 1,1\n", 2666) + "*2 G\n" + Repeat("5 2,2\n", 100) + "*3 G\n5 3,3\n*$\n");
    EXPECT_THAT(Messages(), ElementsAre(zm::symbol::texts::kLibraryTooLarge.gbk));
    // The last symbol is read to its end, past the 8000.
    EXPECT_THAT(HeadOf(2), ElementsAre(1, 7998, 100));
    EXPECT_EQ(300, nBody);
    EXPECT_THAT(HeadOf(3), ElementsAre(3, 0, 0));
}

TEST_F(SymbolFile, With300LineClassesStopsAtTheNextHeader) {
    std::string text;
    for (int i = 1; i <= 301; ++i) text += "*" + std::to_string(i) + " LC\n+1\n";
    Load(text + "*400 G\n5 1,1\n*$\n");
    EXPECT_THAT(Messages(), ElementsAre(zm::symbol::texts::kLibraryTooLarge.gbk));
    EXPECT_THAT(HeadOf(300), ElementsAre(2, 299, 1));
    EXPECT_THAT(HeadOf(301), ElementsAre(3, 0, 0));
}

TEST_F(SymbolFile, With1000LineHeadersStopsAtTheNextHeader) {
    Load(Repeat("*5 L 1\n", 999) + "*6 E 12\n*7 L 3\n*$\n");
    EXPECT_THAT(Messages(), ElementsAre(zm::symbol::texts::kLibraryTooLarge.gbk));
    EXPECT_THAT(HeadOf(6), ElementsAre(4, 0, 12));
    EXPECT_THAT(HeadOf(7), ElementsAre(3, 0, 0));
}

TEST_F(SymbolFile, UnknownKindLeavesTheHeadAsItIs) {
    Load("*12 L 4\n*12 Q 7\n5 1,1\n*13 g\n5 1,1\n*$\n");
    EXPECT_THAT(HeadOf(12), ElementsAre(3, 0, 4));
    EXPECT_THAT(HeadOf(13), ElementsAre(3, 0, 0));
}

TEST_F(SymbolFile, HatchBitmapLineIsTakenWhateverItIs) {
    Load("*12 H 1\n4 1 1 2 3\n*13 L 4\n*14 L 5\n*$\n");
    EXPECT_THAT(HeadOf(12), ElementsAre(5, 0, 1));
    EXPECT_EQ(0, TheBody[3].raw.first);
    EXPECT_THAT(HeadOf(13), ElementsAre(3, 0, 0));
    EXPECT_THAT(HeadOf(14), ElementsAre(3, 0, 5));
}

TEST_F(SymbolFile, HatchNumbersMissingFromALineEndAreZeroForFills) {
    Load("*12 H 1\n3 2\n4\n1 2\n*$\n");
    EXPECT_THAT(HeadOf(12), ElementsAre(5, 0, 2));
    EXPECT_EQ(2, TheBody[2].raw.first);
    EXPECT_EQ(0, TheBody[2].raw.second);
    EXPECT_EQ(1, TheBody[5].raw.first);
    EXPECT_EQ(1, TheBody[6].raw.first);
    EXPECT_EQ(2, TheBody[6].raw.second);
}

TEST_F(SymbolFile, FileThatIsNotThereGivesWayToSymbolDat) {
    zm::test::WriteFile(m_scratch / "symbol.dat", "*12 L 5\n*$\n");
    zm::test::ScopedCurrentDir here(m_scratch.path());
    std::string project = PathText("project.x");
    std::string ext = "ini";
    _LFInit(project.data(), ext.data(), nullptr);
    EXPECT_EQ(1, TsymbolInit("nothing.dat"));
    EXPECT_THAT(HeadOf(12), ElementsAre(3, 0, 5));
    EXPECT_THAT(Messages(), ElementsAre("nothing.dat"));  // what the file finder reports
    EXPECT_EQ(1, TsymbolInit(nullptr));
    EXPECT_THAT(HeadOf(12), ElementsAre(3, 0, 5));
}

TEST_F(SymbolFile, WithoutAnyFileTheProcessEndsWithStatusZero) {
    zm::test::ScopedCurrentDir here(m_scratch.path());
    std::string project = PathText("project.x");
    std::string ext = "ini";
    _LFInit(project.data(), ext.data(), nullptr);
    try {
        TsymbolInit("nothing.dat");
        FAIL() << "it came back";
    } catch (const zm::test::ProcessEnded& end) {
        EXPECT_EQ(0, end.status);
    }
    EXPECT_THAT(Messages(), ElementsAre("nothing.dat", "symbol.dat"));
    EXPECT_EQ(0, IsTsymboled());
}

TEST_F(SymbolFile, SecondLibraryReplacesTheFirstAndItsCurrentSymbol) {
    Load("*12 G\n5 1,1\n*13 LC\n+5\n*$\n");
    getsymbody(13);
    getsymbody(12);
    Load("*12 G\n1 1,1 2,2\n*$\n");
    EXPECT_EQ(nullptr, TheBody);
    EXPECT_EQ(0, nBody);
    EXPECT_EQ(0, TheLCBody.code[0]);
    EXPECT_EQ(0, TheHeadStatus());
    getsymbody(12);
    EXPECT_EQ(4, nBody);
}

TEST_F(SymbolFile, ClosedLibraryAnswersEverythingWithNothing) {
    Load("*12 G /note\n5 1,1\n*$\n");
    getsymbody(12);
    TsymbolClose();
    EXPECT_EQ(0, IsTsymboled());
    EXPECT_EQ(3, nBody);  // the mirrors are not cleared
    EXPECT_EQ(0, getsymbody(12));
    EXPECT_EQ(0, getsymbody(13));
    EXPECT_EQ(0, TheHeadStatus());
    EXPECT_EQ(0.0, Get_G_Size(12));
    EXPECT_STREQ("null", Get_Symbol_Note(12));
    TsymbolClose();
}

TEST_F(SymbolFile, StatusOutsideItsRangeIsReported) {
    Load("*$\n");
    zm::symbol::state().library->heads[12].status = 7;
    zm::symbol::state().library->heads[13].status = 0;
    EXPECT_EQ(0, getsymbody(12));
    EXPECT_EQ(0, getsymbody(13));
    EXPECT_THAT(Messages(), ElementsAre("error symbol format", "error symbol format"));
}

TEST_F(SymbolFile, LookupKeepsTheBodyForKindsThatHaveNone) {
    Load("*12 G\n5 1,1\n*13 LC\n+5\n*14 L 9\n*$\n");
    getsymbody(12);
    getsymbody(13);
    getsymbody(14);
    EXPECT_EQ(3, nBody);
    EXPECT_EQ(5.0F, TheBody[0].op.op);
    EXPECT_EQ('+', TheLCBody.code[0]);
    EXPECT_EQ(2, zm::symbol::state().library->lineStyle);
}

TEST(SymbolTexts, AreTheGbkOfTheirReadableForm) {
    for (const auto& text : zm::symbol::texts::kAll) EXPECT_EQ(text.gbk, zm::gbk::FromUtf8(text.readable));
}

}  // namespace
