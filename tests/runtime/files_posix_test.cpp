// Files where names tell capital letters from small ones and users have rights.
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <filesystem>
#include <string>

#include "runtime/files/files.h"
#include "tests/runtime/path_text.h"
#include "tests/support/scratch.h"

namespace fs = std::filesystem;
using zm::test::Content;
using zm::test::ScratchDir;
using zm::test::Text;
using zm::test::WriteFile;

TEST(FilesOpen, PrefersTheNameAsWritten) {
    const ScratchDir scratch;
    WriteFile(scratch / "a.txt", "small");
    WriteFile(scratch / "A.TXT", "capital");
    EXPECT_EQ(Content(Text(scratch / "a.txt").c_str()), "small");
    EXPECT_EQ(Content(Text(scratch / "A.TXT").c_str()), "capital");
    EXPECT_EQ(Content(Text(scratch / "A.txt").c_str()), "capital") << "the first in byte order of several";
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

TEST(FilesPathText, OfBytesThatAreNoUtf8LeadsToTheSameFile) {
    EXPECT_EQ(zm::files::PathText("/tmp/\xF1"), "\\tmp\\\xFFxF1\xFF");
    const ScratchDir scratch;
    const char* name = "\xF1\xFF";
    fs::create_directory(scratch / name);
    WriteFile(scratch / name / "x.dat", name);
    EXPECT_EQ(Content(Text(scratch / name / "x.dat").c_str()), name);
}
