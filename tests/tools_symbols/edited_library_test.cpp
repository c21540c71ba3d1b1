// Symbols written anew in a library, and all else left as it is.
#include "tools/symbols/edited_library.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "own_library.h"
#include "tests/support/scratch.h"

namespace zm::tool::symbols {
namespace {

using testing::HasSubstr;

constexpr char kLibrary[] = "a remark\n*42 G \"well\"\n1 0,0 1,1\nfree text\n*5 L 4\n*$\nafter the end\n";

class EditLibrary : public testing::Test {
 protected:
    EditedLibrary Put(const std::string& bytes, const std::vector<Edit>& edits) {
        test::WriteFile(m_dir / "a.dat", bytes);
        m_fault.clear();
        return PutEdits(test::LibraryPath(m_dir / "a.dat").c_str(), bytes, edits, m_fault);
    }
    test::ScratchDir m_dir;
    std::string m_fault;
};

TEST_F(EditLibrary, PutsATextInThePlaceOfASymbol) {
    const EditedLibrary e = Put(kLibrary, {{42, "*42 G \"spring\"\n3 0,0 1\n3 0,0 2\n\n"}});
    EXPECT_EQ(e.bytes, "a remark\n*42 G \"spring\"\n3 0,0 1\n3 0,0 2\nfree text\n*5 L 4\n*$\nafter the end\n");
    ASSERT_EQ(e.places.size(), 1U);
    EXPECT_EQ(e.places[0].first, 2);
    EXPECT_EQ(e.places[0].count, 3);
    EXPECT_EQ(m_fault, "");
}

TEST_F(EditLibrary, WithoutEditsEachByteIsAsItWas) {
    EXPECT_EQ(Put(kLibrary, {}).bytes, kLibrary);
}

TEST_F(EditLibrary, ANewCodeComesBeforeTheEndLineAndABlankTextTakesOneOut) {
    EXPECT_EQ(Put(kLibrary, {{7, "*7 L 1"}, {42, " \n"}}).bytes,
              "a remark\nfree text\n*5 L 4\n*7 L 1\n*$\nafter the end\n");
}

TEST_F(EditLibrary, KeepsTheLineEndsOfTheFile) {
    EXPECT_EQ(Put("*5 L 4\r\n*6 L 4\r\n*$\r\n", {{6, "*6 L 5\n"}}).bytes, "*5 L 4\r\n*6 L 5\r\n*$\r\n");
}

TEST_F(EditLibrary, RefusesWhatWouldHarmOtherSymbols) {
    Put(kLibrary, {{5, "1 0,0 1,1"}});
    EXPECT_THAT(m_fault, HasSubstr("code 5: the first line is no header"));
    Put(kLibrary, {{5, "*5 L 4\n*$"}});
    EXPECT_THAT(m_fault, HasSubstr("line 2"));
    Put(kLibrary, {{5, "*5 L 4 \"\xF0\x9F\x8C\xB2\""}});
    EXPECT_THAT(m_fault, HasSubstr("GBK"));
    Put(kLibrary, {{5, "*5 L 4 " + std::string(200, 'x')}});
    EXPECT_THAT(m_fault, HasSubstr("longer than 179"));
}

TEST_F(EditLibrary, FindingsAreCountedFromTheHeader) {
    const std::vector<Finding> before = {{9, 8, Weight::lost, "line 9 is lost"}};
    const std::vector<Finding> after = {{4, 42, Weight::lost, "bad"},
                                        {11, 8, Weight::lost, "line 11 is lost"},
                                        {20, 8, Weight::doubtful, "leans on 42"}};
    const auto found = FindingsOf(before, after, {42, 3, 2});
    ASSERT_EQ(found.size(), 2U);
    EXPECT_EQ(found[0].line, 2);
    EXPECT_EQ(found[1].line, 0);  // of another symbol, and new
    EXPECT_EQ(found[1].code, 8);
}

}  // namespace
}  // namespace zm::tool::symbols
