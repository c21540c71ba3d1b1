#include "runtime/files/files.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "runtime/files/directory_names.h"
#include "runtime/text/gbk.h"
#include "tests/runtime/path_text.h"
#include "tests/support/scratch.h"

namespace fs = std::filesystem;
using zm::files::ExtensionDot;
using zm::files::LastSeparator;
using zm::test::Content;
using zm::test::ScratchDir;
using zm::test::Text;
using zm::test::WriteFile;

namespace {

constexpr std::size_t kNone = std::string::npos;

}  // namespace

TEST(FilesOpen, FindsAFileThroughBackslashesAndChineseNames) {
    const ScratchDir scratch;
    fs::create_directory(scratch / "图库");
    WriteFile(scratch / "图库/符号.dat", "abc");
    const std::string text = Text(scratch / "图库/符号.dat");
    EXPECT_EQ(text.find('/'), kNone);
    EXPECT_EQ(Content(text.c_str()), "abc");
}

TEST(FilesOpen, AcceptsForwardSlashesFromCallers) {
    const ScratchDir scratch;
    WriteFile(scratch / "a.txt", "abc");
    std::string text = zm::gbk::FromUtf8((scratch / "a.txt").string());
    EXPECT_EQ(Content(text.c_str()), "abc");
}

TEST(FilesOpen, FallsBackToANameThatDiffersInCaseInEachComponent) {
    const ScratchDir scratch;
    fs::create_directories(scratch / "Maps/Sheet");
    WriteFile(scratch / "Maps/Sheet/Symbol.DAT", "abc");
    EXPECT_EQ(Content(Text(scratch / "MAPS/sheet/symbol.dat").c_str()), "abc");
}

TEST(FilesOpen, SeesAFileThatCameAfterTheFirstLook) {
    const ScratchDir scratch;
    EXPECT_EQ(Content(Text(scratch / "late.txt").c_str()), "(cannot be opened)");
    WriteFile(scratch / "LATE.txt", "abc");
    EXPECT_EQ(Content(Text(scratch / "late.txt").c_str()), "abc");
    fs::rename(scratch / "LATE.txt", scratch / "Late.txt");
    EXPECT_EQ(Content(Text(scratch / "late.txt").c_str()), "abc");
}

TEST(FilesOpen, MakesANewFileWithTheNameAsWrittenInADirectoryThatDiffersInCase) {
    const ScratchDir scratch;
    fs::create_directory(scratch / "Maps");
    std::FILE* file = zm::files::Open(Text(scratch / "MAPS/New.txt").c_str(), "wt");
    ASSERT_NE(file, nullptr);
    std::fclose(file);
    EXPECT_TRUE(fs::exists(scratch / "Maps/New.txt"));
}

TEST(FilesOpen, RefusesDirectoriesNullEmptyAndMissingNames) {
    const ScratchDir scratch;
    EXPECT_EQ(zm::files::Open(Text(scratch.path()).c_str(), "r"), nullptr);
    EXPECT_EQ(zm::files::Open(nullptr, "r"), nullptr);
    EXPECT_EQ(zm::files::Open("", "r"), nullptr);
    EXPECT_EQ(zm::files::Open("a", nullptr), nullptr);
    EXPECT_EQ(zm::files::Open(Text(scratch / "none").c_str(), "r"), nullptr);
}

TEST(FilesOpen, SurvivesANameOfManyThousandBytes) {
    const std::string name(100000, 'a');
    EXPECT_EQ(zm::files::Open(name.c_str(), "r"), nullptr);
}

TEST(FilesSeparators, AreNotFoundInsideTwoByteCharacters) {
    // 0x8F 0x5C is one character whose second byte is a backslash.
    EXPECT_EQ(LastSeparator("a\\\x8F\x5C"), 1u);
    EXPECT_EQ(LastSeparator("\x8F\x5C"), kNone);
    EXPECT_EQ(LastSeparator("a/b\\c"), 3u);
    EXPECT_EQ(LastSeparator("\\a/b"), 2u);
    EXPECT_EQ(LastSeparator(""), kNone);
}

TEST(FilesExtensionDot, CountsOnlyBehindTheLastSeparator) {
    EXPECT_EQ(ExtensionDot("d:\\p\\map.r1\\a"), kNone);
    EXPECT_EQ(ExtensionDot("a.b.c"), 3u);
    EXPECT_EQ(ExtensionDot("d:\\p.x\\a.ini"), 8u);
    EXPECT_EQ(ExtensionDot("noext"), kNone);
}

TEST(FilesPathText, CarriesTheCharactersThatGbkLacksByAnEscape) {
    int lost = -1;
    EXPECT_EQ(zm::files::PathText(u8"/tmp/地图", &lost), "\\tmp\\\xB5\xD8\xCD\xBC");
    EXPECT_EQ(lost, 0);
    EXPECT_EQ(zm::files::PathText(u8"/tmp/a\u00F1o", &lost),
              "\\tmp\\a\xFF"
              "F1\xFFo");
    EXPECT_EQ(lost, 0);
    EXPECT_EQ(zm::files::PathText(u8"/tmp/\U0001F5FA", &lost),
              "\\tmp\\\xFF"
              "1F5FA\xFF");
}

TEST(FilesPathText, OfAnyNameLeadsToTheSameFile) {
    const ScratchDir scratch;
    for (const char* name : {"a\u00F1o", "\xF0\x9F\x97\xBA", "\u5730\u00E7\u56FE"}) {
        fs::create_directory(scratch / name);
        WriteFile(scratch / name / "x.dat", name);
        EXPECT_EQ(Content(Text(scratch / name / "x.dat").c_str()), name);
    }
}

TEST(WithoutCase, FoldsTheCapitalLettersThatGbkHas) {
    EXPECT_EQ(zm::files::WithoutCase("ABZ[@az"), "abz[@az");
    EXPECT_EQ(zm::files::WithoutCase("ΑΩ"), "αω");
    EXPECT_EQ(zm::files::WithoutCase("АЯЁ"), "аяё");
    EXPECT_EQ(zm::files::WithoutCase("ＡＺ图"), "ａｚ图");
    EXPECT_EQ(zm::files::WithoutCase("Ⅰ"), "ⅰ");
    EXPECT_EQ(zm::files::WithoutCase("\xC3"), "\xC3") << "half a character stays";
}
