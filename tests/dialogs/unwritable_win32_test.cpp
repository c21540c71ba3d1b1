// Each table that a dialog saves, where nothing may be written: reported with the path, the old file whole.
#include <windows.h>

#include "tests/dialogs/unwritable.h"

namespace fs = std::filesystem;

TEST_P(Unwritable, AFileForReadingOnlyIsReportedWithThePathAndStays) {
    PutAll();
    const std::string before = Saved(File());
    const std::vector<std::string> entries = Entries();
    ASSERT_NE(SetFileAttributesW(File().c_str(), FILE_ATTRIBUTE_READONLY), 0);
    ExpectReported(MessageOfOk());
    SetFileAttributesW(File().c_str(), FILE_ATTRIBUTE_NORMAL);
    EXPECT_EQ(Saved(File()), before);
    EXPECT_EQ(Entries(), entries);
    EXPECT_EQ(MessageOfOk(), "");  // now it is saved
}

TEST_P(Unwritable, AFileThatAnotherProgramReadsAloneIsReportedWithThePathAndStays) {
    PutAll();
    const std::string before = Saved(File());
    const std::vector<std::string> entries = Entries();
    const HANDLE reader =
        CreateFileW(File().c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING, 0, nullptr);
    ASSERT_NE(reader, INVALID_HANDLE_VALUE);
    ExpectReported(MessageOfOk());
    CloseHandle(reader);
    EXPECT_EQ(Saved(File()), before);
    EXPECT_EQ(Entries(), entries);
}

TEST_P(Unwritable, AFolderWhereNoNewFileCanBeMadeIsReportedWithThePath) {
    PutAll();
    const std::string before = Saved(File());
    fs::path fresh = File();
    fresh += ".new";
    Block(fresh);
    ExpectReported(MessageOfOk());
    EXPECT_EQ(Saved(File()), before);
}

INSTANTIATE_TEST_SUITE_P(Tables, Unwritable, testing::ValuesIn(kTables),
                         [](const auto& info) { return std::string(info.param.name); });
