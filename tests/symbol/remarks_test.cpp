// What the reader of the symbol file notices, for those who write one.
#include <gmock/gmock.h>

#include "symbol/file/symbol_file.h"
#include "tests/symbol/symbol_test.h"

using testing::ElementsAre;
using testing::IsEmpty;
using zm::symbol::Remark;

namespace zm::symbol {
void PrintTo(const RemarkAt& r, std::ostream* out) {
    *out << "line " << r.line << " code " << r.code << " remark " << static_cast<int>(r.what);
}
bool operator==(const RemarkAt& a, const RemarkAt& b) {
    return a.line == b.line && a.code == b.code && a.what == b.what;
}
}  // namespace zm::symbol

namespace {

using zm::symbol::RemarkAt;

class Remarks : public zm::test::LibraryTest {
 protected:
    std::vector<RemarkAt> Of(const std::string& text) {
        zm::test::WriteFile(m_scratch / "x.dat", text);
        std::FILE* file = zm::test::OpenFile(m_scratch / "x.dat", "rb");
        zm::symbol::Library library;
        std::vector<RemarkAt> remarks;
        zm::symbol::SymbolFileReader(file, library, &remarks).Read();
        std::fclose(file);
        return remarks;
    }
};

TEST_F(Remarks, OfAFileWithoutFaultsAreNone) {
    EXPECT_THAT(Of("free text\n*12 G /note\n1 0,0 1,1\n2 0,0 1,1\n3 0,0 1\n4 0,0 1,0 0,1\n5 1,1\n*13 H 1\n2 45 3\n"
                   "4 1 1 2 3\nff 0\n*14 LC D1 A0\nG12\n*15 L 1\n*16 E 12\n*17 Y 3\n*$\n"),
                IsEmpty());
}

TEST_F(Remarks, OfHeaders) {
    EXPECT_THAT(Of("*\n*x G\n*1000 L 1\n*5 Q\n*6\n*7 L 1\n*7 L 2\n*$\n"),
                ElementsAre(RemarkAt{1, 0, Remark::kHeaderWithoutCode}, RemarkAt{2, 0, Remark::kHeaderWithoutCode},
                            RemarkAt{3, 1000, Remark::kCodeOutOfRange}, RemarkAt{4, 5, Remark::kUnknownKind},
                            RemarkAt{5, 6, Remark::kKindOfHeaderBefore}, RemarkAt{5, 6, Remark::kUnknownKind},
                            RemarkAt{7, 7, Remark::kCodeTwice}));
}

TEST_F(Remarks, OfDrawingLines) {
    EXPECT_THAT(Of("*12 G\n5 1,1\n0 1\n6 1,1\n10 1\n1 1,1\n1\n 2 1,1 2,2\n2 1,1  2,2\n2 -10000000,-100000 0,0 1,1\n"
                   "3 1,1\n4 1,1\n5 x\n\nend\n*$\n"),
                ElementsAre(RemarkAt{3, 12, Remark::kOperatorLosesRecord}, RemarkAt{4, 12, Remark::kOperatorIgnored},
                            RemarkAt{5, 12, Remark::kUnknownOperator}, RemarkAt{6, 12, Remark::kSegmentWithoutEnd},
                            RemarkAt{7, 12, Remark::kNumbersMissing}, RemarkAt{8, 12, Remark::kPolylineIndented},
                            RemarkAt{8, 12, Remark::kNumbersMissing}, RemarkAt{9, 12, Remark::kPairTwice},
                            RemarkAt{10, 12, Remark::kSweepEndsBody}, RemarkAt{11, 12, Remark::kNumbersMissing},
                            RemarkAt{12, 12, Remark::kNumbersMissing}, RemarkAt{13, 12, Remark::kNumbersMissing},
                            RemarkAt{14, 12, Remark::kOperatorRepeated}, RemarkAt{14, 12, Remark::kNumbersMissing},
                            RemarkAt{15, 12, Remark::kBodyEndedByText}));
}

TEST_F(Remarks, OfHatches) {
    EXPECT_THAT(Of("*12 H 1\n7 1\n3 1\n4 1 1 2 3\nx\n\n*$\n"),
                ElementsAre(RemarkAt{2, 12, Remark::kUnknownHatchEntry}, RemarkAt{3, 12, Remark::kNumbersMissing},
                            RemarkAt{5, 12, Remark::kNumbersMissing}, RemarkAt{6, 12, Remark::kBodyEndedByText}));
}

TEST_F(Remarks, OfGridsWithALevelFamilyAfterTheChangeOfPlaces) {
    // 45 and 0: the second is level, changes places and would run from the bottom to the top. 0 and 90 is the good way.
    EXPECT_THAT(Of("*5 G\n5 1,1\n*12 H 1\n1 45 2 0 2 5\n1 0 2 90 2 5\n1 90 2 0 2 5\n1 45 2 135 2 5\n1 0 2 45 2 5\n"
                   "1 90 2 90 2 5\n2 0 2\n2 90 2\n*$\n"),
                ElementsAre(RemarkAt{4, 12, Remark::kGridDividesByZero}, RemarkAt{6, 12, Remark::kGridDividesByZero},
                            RemarkAt{9, 12, Remark::kGridDividesByZero}));
}

TEST_F(Remarks, OfPatterns) {
    EXPECT_THAT(Of("*12 LC\n*13 L 1\n*14 LC\n\n*15 LC\n+1  -2\n*16 LC\n+1 +12345678901234567890\n*17 LC\n"
                   "+1 +1 +1 +1 +1 +1 +1 +1 +1 +1 +1 +1 +1 +1 +1 +1 +1\n*$\n"),
                ElementsAre(RemarkAt{2, 12, Remark::kHeaderTakenAsPattern}, RemarkAt{4, 14, Remark::kPatternEmpty},
                            RemarkAt{6, 15, Remark::kPatternEndedByBlank}, RemarkAt{8, 16, Remark::kTokenTooLong},
                            RemarkAt{10, 17, Remark::kTooManyTokens}));
}

TEST_F(Remarks, OfLongLinesAndTheEndOfTheTables) {
    std::string headers;
    for (int i = 0; i < 1000; ++i) headers += "*5 L 1\n";
    const auto remarks = Of(std::string(200, 'x') + "\n" + headers + "*6 L 1\n*$\n");
    ASSERT_EQ(1U + 999U + 1U, remarks.size());
    EXPECT_EQ((RemarkAt{1, 0, Remark::kLineSplit}), remarks.front());
    EXPECT_EQ((RemarkAt{1002, 0, Remark::kLibraryTooLarge}), remarks.back());
}

}  // namespace
