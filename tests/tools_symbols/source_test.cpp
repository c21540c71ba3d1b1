// The file made of readable source.
#include "tools/symbols/source.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "own_library.h"
#include "tests/support/scratch.h"

namespace zm::tool::symbols {
namespace {

TEST(Source, OwnLibraryIsWhatItsSourceGives) {
    std::vector<std::filesystem::path> paths;
    for (const auto& entry : std::filesystem::directory_iterator(test::SourceDir() / "data" / "symbols"))
        paths.push_back(entry.path());
    std::sort(paths.begin(), paths.end());
    ASSERT_FALSE(paths.empty());
    std::vector<std::string> sources;
    for (const auto& path : paths) sources.push_back(test::ReadFile(path));
    std::vector<SourceFault> faults;
    const std::string built = BuildSymbolFile(sources, faults);
    for (const SourceFault& fault : faults) ADD_FAILURE() << fault.line << ": " << fault.text;
    EXPECT_TRUE(built == test::ReadFile(test::OwnLibrary()))
        << "data/symbol.dat is not what data/symbols gives; build the target symbol_library";
}

TEST(Source, NotesBecomeGbkAndShapesRecords) {
    std::vector<SourceFault> faults;
    EXPECT_EQ(BuildSymbolFile({"# text\n*12 G \"井\" well\n\nrect 0,0 1,1\n", "*13 L 0 \"线\"\n"}, faults),
              "# text\n*12 G \"\xBE\xAE\" well\n2 0,0 1,0 1,1 0,1 0,0\n*13 L 0 \"\xCF\xDF\"\n*$\n");
    EXPECT_TRUE(faults.empty());
}

TEST(Source, LinesOfOtherKindsAreKept) {
    std::vector<SourceFault> faults;
    EXPECT_EQ(BuildSymbolFile({"*1 LC D0 A0\n+2 -1\n*2 H 0\n2 45 1\n"}, faults),
              "*1 LC D0 A0\n+2 -1\n*2 H 0\n2 45 1\n*$\n");
    EXPECT_TRUE(faults.empty());
}

TEST(Source, CarriageReturnsAreDropped) {
    std::vector<SourceFault> faults;
    EXPECT_EQ(BuildSymbolFile({"*1 G\r\ndot 0,0\r\n"}, faults), "*1 G\n5 0,0\n*$\n");
}

TEST(Source, FaultsNameTheirLine) {
    std::vector<SourceFault> faults;
    BuildSymbolFile({"*1 G\nblob 0,0\n", "*2 L 0 \"\xF0\x9F\x98\x80\"\n"}, faults);
    ASSERT_EQ(faults.size(), 2u);
    EXPECT_EQ(faults[0].line, 2);
    EXPECT_EQ(faults[0].text, "there is no shape \"blob\"");
    EXPECT_EQ(faults[1].line, 3);
    EXPECT_EQ(faults[1].text, "a character is not in the code page GBK");
}

}  // namespace
}  // namespace zm::tool::symbols
