#include "runtime/files.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <filesystem>
#include <string>

#include "runtime/directory_names.h"
#include "runtime/gbk.h"
#include "tests/support/scratch.h"

namespace fs = std::filesystem;
using zm::files::ExtensionDot;
using zm::files::LastSeparator;
using zm::test::ScratchDir;
using zm::test::WriteFile;

namespace {

constexpr std::size_t kNone = std::string::npos;

// A path text in GBK, with backslashes, of a UTF-8 path.
std::string Text(const fs::path& path) {
    return zm::files::PathText(path);
}

std::string Content(const char* path, const char* mode = "rb") {
    std::FILE* file = zm::files::Open(path, mode);
    if (file == nullptr) return "(cannot be opened)";
    char bytes[64] = {};
    const std::size_t count = std::fread(bytes, 1, sizeof bytes, file);
    std::fclose(file);
    return {bytes, count};
}

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

TEST(FilesOpen, PrefersTheNameAsWritten) {
    const ScratchDir scratch;
    WriteFile(scratch / "a.txt", "small");
    WriteFile(scratch / "A.TXT", "capital");
    EXPECT_EQ(Content(Text(scratch / "a.txt").c_str()), "small");
    EXPECT_EQ(Content(Text(scratch / "A.TXT").c_str()), "capital");
    EXPECT_EQ(Content(Text(scratch / "A.txt").c_str()), "capital") << "the first in byte order of several";
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

// The administrator is refused nothing, so the test goes on as another user in a process of its own.
TEST(FilesOpenToRead, OpensForReadingWhereWriteAccessIsRefused) {
    const ScratchDir scratch;
    WriteFile(scratch / "template.dwg", "AC1009");
    fs::permissions(scratch.path(), fs::perms::all);
    fs::permissions(scratch / "template.dwg", fs::perms::owner_read | fs::perms::group_read | fs::perms::others_read);
    const std::string path = Text(scratch / "template.dwg");
    const pid_t child = ::fork();
    ASSERT_GE(child, 0);
    if (child == 0) {
        if (::geteuid() == 0 && ::seteuid(65534) != 0) ::_exit(9);
        if (zm::files::Open(path.c_str(), "rb+") != nullptr) ::_exit(1);
        std::FILE* file = zm::files::OpenToRead(path.c_str(), "rb+");
        char bytes[6];
        if (file == nullptr || std::fread(bytes, 1, 6, file) != 6) ::_exit(2);
        // A mode that would change the file stays refused.
        if (zm::files::OpenToRead(path.c_str(), "a+") != nullptr) ::_exit(3);
        ::_exit(0);
    }
    int status = 0;
    ::waitpid(child, &status, 0);
    EXPECT_EQ(WEXITSTATUS(status), 0);
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

TEST(FilesPathText, CountsTheCharactersThatGbkLacks) {
    int lost = -1;
    EXPECT_EQ(zm::files::PathText("/tmp/地图", &lost), "\\tmp\\\xB5\xD8\xCD\xBC");
    EXPECT_EQ(lost, 0);
    EXPECT_EQ(zm::files::PathText("/tmp/\xF0\x9F\x97\xBA", &lost), "\\tmp\\?");
    EXPECT_EQ(lost, 1);
}

TEST(WithoutCase, FoldsTheCapitalLettersThatGbkHas) {
    EXPECT_EQ(zm::files::WithoutCase("ABZ[@az"), "abz[@az");
    EXPECT_EQ(zm::files::WithoutCase("ΑΩ"), "αω");
    EXPECT_EQ(zm::files::WithoutCase("АЯЁ"), "аяё");
    EXPECT_EQ(zm::files::WithoutCase("ＡＺ图"), "ａｚ图");
    EXPECT_EQ(zm::files::WithoutCase("Ⅰ"), "ⅰ");
    EXPECT_EQ(zm::files::WithoutCase("\xC3"), "\xC3") << "half a character stays";
}
