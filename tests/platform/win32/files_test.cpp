// Files and profiles where Windows is different: long paths, code pages, rights, many keys.
#include <gtest/gtest.h>
#include <windows.h>

#include <fstream>
#include <string>

#include "runtime/files/files.h"
#include "runtime/files/system.h"
#include "runtime/profile/profile.h"
#include "runtime/text/numbers.h"
#include "tests/support/family_dirs.h"
#include "tests/support/scratch.h"
#include "tests/support/test_host.h"
#include "zenromath/runtime.h"

namespace fs = std::filesystem;
using zm::test::FamilyDirs;
using zm::test::ReadFile;
using zm::test::WriteFile;

TEST(WindowsProfiles, LieInFoldersWithChineseNamesUnderEveryCodePage) {
    const FamilyDirs dirs;
    fs::create_directory(dirs.Project("测量"));
    std::string name = FamilyDirs::Text(dirs.Project("测量")) + "\\map";
    std::string ext = ".ini";
    _LFInit(name.data(), ext.data(), nullptr);
    std::string section = "\xB2\xE2\xC1\xBF";
    std::string key = "\xB2\xE3";
    std::string value = "\xCB\xCE\xCC\xE5";
    EXPECT_NE(_LFWrtS(value.data(), key.data(), section.data()), 0);
    EXPECT_EQ(ReadFile(dirs.Project("测量") / "map.ini"), "[" + section + "]\r\n" + key + "=" + value + "\r\n");
    char read[16] = {};
    std::string none;
    EXPECT_EQ(_LFGetS(none.data(), read, sizeof read, key.data(), section.data()), 4);
    EXPECT_EQ(read, value);
}

TEST(WindowsProfiles, AThousandKeysOfABatchAreOneWrite) {
    const FamilyDirs dirs;
    const std::string file = FamilyDirs::Text(dirs.Project("keys.ini"));
    {
        zm::profile::Batch batch;
        for (int i = 0; i < 1000; ++i)
            EXPECT_TRUE(zm::profile::WriteString("keys", zm::numbers::Text("k%d", i).c_str(), "1", file.c_str()));
        EXPECT_FALSE(fs::exists(dirs.Project("keys.ini")));
        EXPECT_TRUE(batch.Commit());
    }
    EXPECT_EQ(zm::profile::GetInt("keys", "k999", 0, file.c_str()), 1u);
    EXPECT_EQ(zm::profile::GetInt("KEYS", "K0", 0, file.c_str()), 1u);
}

TEST(WindowsProfiles, TheSystemReadsWhatWasWritten) {
    const FamilyDirs dirs;
    const std::string file = FamilyDirs::Text(dirs.Project("shared.ini"));
    EXPECT_TRUE(zm::profile::WriteString("s", "k", "42", file.c_str()));
    EXPECT_EQ(GetPrivateProfileIntW(L"s", L"k", 0, dirs.Project("shared.ini").c_str()), 42u);
    WritePrivateProfileStringW(L"s", L"more", L"7", dirs.Project("shared.ini").c_str());
    WritePrivateProfileStringW(nullptr, nullptr, nullptr, dirs.Project("shared.ini").c_str());
    EXPECT_EQ(zm::profile::GetInt("s", "more", 0, file.c_str()), 7u);
}

TEST(WindowsProfiles, AFileThatMayNotBeWrittenStaysAndFails) {
    const FamilyDirs dirs;
    WriteFile(dirs.Project("fixed.ini"), "[s]\r\nk=1\r\n");
    SetFileAttributesW(dirs.Project("fixed.ini").c_str(), FILE_ATTRIBUTE_READONLY);
    EXPECT_FALSE(zm::profile::WriteString("s", "k", "2", FamilyDirs::Text(dirs.Project("fixed.ini")).c_str()));
    SetFileAttributesW(dirs.Project("fixed.ini").c_str(), FILE_ATTRIBUTE_NORMAL);
    EXPECT_EQ(ReadFile(dirs.Project("fixed.ini")), "[s]\r\nk=1\r\n");
}

TEST(WindowsFiles, PathsBeyondTheOldLimitAreReached) {
    const zm::test::ScratchDir scratch;
    fs::path folder = scratch.path();
    while (folder.native().size() < 300) {
        folder /= std::wstring(40, L'd');
        ASSERT_NE(CreateDirectoryW(zm::system::Reachable(folder).c_str(), nullptr), 0) << folder;
    }
    const fs::path file = folder / "测量.txt";
    EXPECT_EQ(zm::system::Reachable(file).native().substr(0, 4), L"\\\\?\\");
    EXPECT_TRUE(zm::system::ReplaceContent(file, "one"));
    EXPECT_TRUE(zm::system::ReplaceContent(file, "two"));
    std::string bytes;
    zm::system::FileStamp stamp;
    EXPECT_TRUE(zm::system::ReadWholeFile(file, bytes, stamp));
    EXPECT_EQ(bytes, "two");
    EXPECT_EQ(zm::system::Reachable("short.txt"), fs::path("short.txt"));
    DeleteFileW(zm::system::Reachable(file).c_str());
    for (; folder != scratch.path(); folder = folder.parent_path())
        RemoveDirectoryW(zm::system::Reachable(folder).c_str());
}

TEST(WindowsFiles, OpenForReadingWhereWriteAccessIsRefused) {
    const zm::test::ScratchDir scratch;
    WriteFile(scratch / "测量.dwg", "AC1009");
    const HANDLE other =
        CreateFileW((scratch / "测量.dwg").c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING, 0, nullptr);
    const std::string path = zm::files::PathText(scratch / "测量.dwg");
    EXPECT_EQ(zm::files::Open(path.c_str(), "rb+"), nullptr);
    std::FILE* file = zm::files::OpenToRead(path.c_str(), "rb+");
    ASSERT_NE(file, nullptr);
    char bytes[7] = {};
    EXPECT_EQ(std::fread(bytes, 1, 6, file), 6u);
    std::fclose(file);
    EXPECT_STREQ(bytes, "AC1009");
    EXPECT_EQ(zm::files::OpenToRead(path.c_str(), "a+"), nullptr);
    CloseHandle(other);
}
