#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstring>
#include <filesystem>
#include <string>

#include "runtime/profile/project.h"
#include "tests/support/family_dirs.h"
#include "tests/support/test_host.h"
#include "zenromath/runtime.h"

namespace fs = std::filesystem;
using testing::EndsWith;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StrEq;
using zm::test::FamilyDirs;
using zm::test::ReadFile;
using zm::test::WriteFile;

namespace {

class ZenroProfile : public testing::Test {
 protected:
    int Copy(const fs::path& from, const fs::path& to, const char* mode = nullptr) {
        std::string source = FamilyDirs::Text(from);
        std::string target = FamilyDirs::Text(to);
        std::string how = mode != nullptr ? mode : "";
        return filescopy(source.data(), target.data(), mode != nullptr ? how.data() : nullptr);
    }
    std::string Path(const char* name, int where) { return GetZenroINIPath(name, where).GetString(); }

    FamilyDirs dirs;
    zm::test::TestHost host;
};

}  // namespace

TEST_F(ZenroProfile, PathChoosesTheDirectoryByItsOwnTable) {
    EXPECT_EQ(Path("a.ini", 0), std::string(_LFPrjDir()) + "\\a.ini");
    EXPECT_EQ(Path("a.ini", 2), std::string(_LFModDir()) + "\\ZenroIni\\a.ini");
    EXPECT_EQ(Path("a.ini", 3), std::string(_LFWndDir()) + "\\a.ini");
    EXPECT_EQ(Path("a.ini", 1), std::string(_LFModDir()) + "\\a.ini");
    EXPECT_EQ(Path("a.ini", -1), std::string(_LFModDir()) + "\\a.ini");
    EXPECT_EQ(Path("a.ini", 99), std::string(_LFModDir()) + "\\a.ini");
}

TEST_F(ZenroProfile, PathReturnsAPathAsItStands) {
    EXPECT_EQ(Path("C:\\x\\a.ini", 0), "C:\\x\\a.ini");
    EXPECT_EQ(Path("x/a.ini", 3), "x/a.ini");
    EXPECT_EQ(Path("sub\\a.ini", 2), "sub\\a.ini");
    EXPECT_EQ(Path("/x\\a.ini", 0), "/x\\a.ini") << "the first backslash decides, not the slash before it";
}

TEST_F(ZenroProfile, PathTellsTwoLeadingSeparatorsFromOne) {
    EXPECT_EQ(Path("\\\\server\\a.ini", 0), "\\\\server\\a.ini");
    EXPECT_EQ(Path("//server/a.ini", 0), "//server/a.ini");
    EXPECT_EQ(Path("\\a.ini", 0), std::string(_LFPrjDir()) + "\\\\a.ini") << "two separators in a row";
    EXPECT_EQ(Path("/a.ini", 0), std::string(_LFPrjDir()) + "\\/a.ini");
}

TEST_F(ZenroProfile, PathTakesABackslashInsideACharacterForNoSeparator) {
    EXPECT_EQ(Path("x\x8F\x5C.ini", 0), std::string(_LFPrjDir()) + "\\x\x8F\x5C.ini");
}

TEST_F(ZenroProfile, PathOfNothingIsEmpty) {
    EXPECT_EQ(Path(nullptr, 0), "");
    EXPECT_EQ(Path("", 0), "");
}

TEST_F(ZenroProfile, PathBeyond255BytesIsRefusedWithAMessage) {
    EXPECT_EQ(Path(std::string(255, 'a').c_str(), 0), "");
    ASSERT_EQ(host.boxes.size(), 1u);
    EXPECT_THAT(host.boxes[0].text, HasSubstr("longer than 255 bytes"));
}

TEST_F(ZenroProfile, IntOfAMissingFileIsTheDefault) {
    EXPECT_EQ(GetZenroProfileInt("a", "k", 5, "none.ini", 0), 5u);
    EXPECT_EQ(GetZenroProfileInt("a", "k", -1, "none.ini", 0), 4294967295u);
    EXPECT_EQ(GetZenroProfileInt("a", "k", 5, nullptr, 0), 5u);
    EXPECT_THAT(host.boxes, IsEmpty());
}

TEST_F(ZenroProfile, SevenCallsReadAndWriteTheFileOfTheirDirectory) {
    EXPECT_EQ(WriteZenroProfileString("a", "k", "v", "x.ini", 2), 1u);
    EXPECT_EQ(ReadFile(dirs.Ini("x.ini")), "[a]\r\nk=v\r\n");
    unsigned char bytes[3] = {1, 2, 0xFF};
    EXPECT_EQ(WriteZenroProfileStruct("a", "s", bytes, 3, "x.ini", 2), 1);
    EXPECT_EQ(WriteZenroProfileSection("b", "n=7\0", "x.ini", 2), 1);
    EXPECT_EQ(ReadFile(dirs.Ini("x.ini")), "[a]\r\nk=v\r\ns=0102FF02\r\n[b]\r\nn=7\r\n");

    char text[32];
    EXPECT_EQ(GetZenroProfileString("A", "K", "def", text, sizeof text, "x.ini", 2), 1u);
    EXPECT_THAT(text, StrEq("v"));
    EXPECT_EQ(GetZenroProfileSection("a", text, sizeof text, "x.ini", 2), 15u);
    EXPECT_EQ(std::memcmp(text, "k=v\0s=0102FF02\0\0", 16), 0);
    unsigned char back[3] = {};
    EXPECT_EQ(GetZenroProfileStruct("a", "s", back, 3, "x.ini", 2), 1);
    EXPECT_EQ(back[2], 0xFF);
    EXPECT_EQ(GetZenroProfileInt("b", "n", 0, "x.ini", 2), 7u);
    EXPECT_EQ(GetZenroProfileInt("b", "n", 0, "x.ini", 1), 0u) << "another directory";
}

TEST_F(ZenroProfile, WritingIntoAMissingDirectoryFailsInSilence) {
    fs::remove_all(dirs.Ini());
    EXPECT_EQ(WriteZenroProfileString("a", "k", "v", "x.ini", 2), 0u);
    EXPECT_FALSE(fs::exists(dirs.Ini())) << "the directory is not made";
    EXPECT_THAT(host.boxes, IsEmpty());
}

TEST_F(ZenroProfile, BareNamesLeadToTheMachineDirectoryWhichIsMadeWhenFirstWrittenTo) {
    fs::remove_all(dirs.Machine());
    zm::runtime::StartProjectFiles();
    EXPECT_EQ(ReadFile(dirs.Machine("Zenro.ini")), "[Sure]\r\nSure=Sure\r\n");
}

// ---- filescopy ----

TEST_F(ZenroProfile, CopyTakesAllBytesOfWholeBlocksAndOfPartsOfThem) {
    for (const std::size_t size : {std::size_t{0}, std::size_t{1}, std::size_t{1023}, std::size_t{1024},
                                   std::size_t{1025}, std::size_t{4096}, std::size_t{100000}}) {
        std::string bytes(size, '\0');
        for (std::size_t i = 0; i < size; ++i) bytes[i] = static_cast<char>(i * 7 + i / 256);
        WriteFile(dirs.Project("from"), bytes);
        EXPECT_EQ(Copy(dirs.Project("from"), dirs.Project("to")), 1);
        EXPECT_EQ(ReadFile(dirs.Project("to")), bytes) << size;
    }
}

TEST_F(ZenroProfile, CopyOfAFileThatReportsNoSizeHasAllItsBytes) {
    const fs::path version = "/proc/version";
    std::error_code none;
    if (!fs::exists(version, none)) GTEST_SKIP() << "NOT CHECKED: this system has no file that reports size 0";
    ASSERT_EQ(fs::file_size(version), 0U);
    EXPECT_EQ(Copy(version, dirs.Project("to")), 1);
    EXPECT_GT(ReadFile(dirs.Project("to")).size(), 10U);
}

TEST_F(ZenroProfile, CopyWithAModeAddsToTheEnd) {
    WriteFile(dirs.Project("from"), "new");
    WriteFile(dirs.Project("to"), "old");
    EXPECT_EQ(Copy(dirs.Project("from"), dirs.Project("to"), "ab"), 1);
    EXPECT_EQ(ReadFile(dirs.Project("to")), "oldnew");
    EXPECT_EQ(Copy(dirs.Project("from"), dirs.Project("to"), "r+b"), 1);
    EXPECT_EQ(ReadFile(dirs.Project("to")), "oldnewnew");
    EXPECT_EQ(Copy(dirs.Project("from"), dirs.Project("to"), "wb"), 1);
    EXPECT_EQ(ReadFile(dirs.Project("to")), "new");
}

TEST_F(ZenroProfile, CopyTellsOfEitherFileWithTheSameWords) {
    EXPECT_EQ(Copy(dirs.Project("none"), dirs.Project("to")), 0);
    EXPECT_FALSE(fs::exists(dirs.Project("to")));
    WriteFile(dirs.Project("from"), "x");
    EXPECT_EQ(Copy(dirs.Project("from"), dirs.Project("none/to")), 0);
    ASSERT_EQ(host.boxes.size(), 2u);
    EXPECT_EQ(host.boxes[0].text, FamilyDirs::Text(dirs.Project("none")) + " no exist");
    EXPECT_EQ(host.boxes[1].text, FamilyDirs::Text(dirs.Project("none/to")) + " no exist");
}

TEST_F(ZenroProfile, CopyOfAFileToItselfLosesNothingAndEnds) {
    WriteFile(dirs.Project("from"), std::string(3000, 'x'));
    EXPECT_EQ(Copy(dirs.Project("from"), dirs.Project("from")), 0);
    EXPECT_EQ(fs::file_size(dirs.Project("from")), 3000u);
    EXPECT_EQ(host.boxes.size(), 1u);
    EXPECT_EQ(Copy(dirs.Project("from"), dirs.Project("from"), "ab"), 1);
    EXPECT_EQ(fs::file_size(dirs.Project("from")), 6000u);
}

#if !defined(_WIN32)
TEST_F(ZenroProfile, CopyTellsOfAFullDisk) {
    WriteFile(dirs.Project("from"), std::string(3000, 'x'));
    EXPECT_EQ(Copy(dirs.Project("from"), "/dev/full"), 0);
    ASSERT_EQ(host.boxes.size(), 1u);
    EXPECT_THAT(host.boxes[0].text, HasSubstr("could not be written"));
}
#endif

TEST_F(ZenroProfile, CopyOfNullNamesFails) {
    EXPECT_EQ(filescopy(nullptr, nullptr, nullptr), 0);
    WriteFile(dirs.Project("from"), "x");
    std::string from = FamilyDirs::Text(dirs.Project("from"));
    EXPECT_EQ(filescopy(from.data(), nullptr, nullptr), 0);
    EXPECT_EQ(host.boxes.size(), 2u);
}
