// Profile files between processes, users and full disks: whole at every moment, read once.
#include <fcntl.h>
#include <grp.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/file.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <filesystem>
#include <string>
#include <thread>

#include "runtime/files/files.h"
#include "runtime/profile/profile.h"
#include "runtime/profile/profile_text.h"
#include "runtime/state.h"
#include "runtime/text/numbers.h"
#include "tests/runtime/profile_file.h"
#include "tests/support/random.h"
#include "tests/support/rounds.h"
#include "tests/support/scratch.h"
#include "tests/support/test_host.h"

namespace fs = std::filesystem;
using zm::numbers::Text;

namespace {

using zm::test::ProfileFile;

int Wait(pid_t child) {
    int status = 0;
    ::waitpid(child, &status, 0);
    return status;
}

// The content that a writer of the kill test leaves at every moment: two keys with the same number and a tail.
constexpr int kWrites = 10000;
const std::string kTail(3000, 't');

[[noreturn]] void WriteForever(const char* file, int from) {
    for (int i = from; i < from + kWrites; ++i) {
        zm::profile::Batch together;
        zm::profile::WriteString("a", "first", Text("%d", i).c_str(), file);
        zm::profile::WriteString("a", "tail", kTail.c_str(), file);
        zm::profile::WriteString("z", "last", Text("%d", i).c_str(), file);
    }
    ::_exit(0);
}

TEST_F(ProfileFile, AnotherProcessThatKeepsTheLockIsWaitedForFiveSecondsAndNamed) {
    zm::test::TestHost host;
    zm::test::WriteFile(path(), "[a]\r\nk=1\r\n");
    int ready[2];
    ASSERT_EQ(::pipe(ready), 0);
    const pid_t holder = ::fork();
    if (holder == 0) {
        const int directory = ::open(scratch().path().c_str(), O_RDONLY | O_DIRECTORY);
        ::flock(directory, LOCK_EX);
        if (::write(ready[1], "x", 1) != 1) ::_exit(1);
        ::pause();
        ::_exit(0);
    }
    char byte = 0;
    ASSERT_EQ(::read(ready[0], &byte, 1), 1);
    const auto start = std::chrono::steady_clock::now();
    EXPECT_FALSE(zm::profile::WriteString("a", "k", "2", file()));
    const std::chrono::duration<double> waited = std::chrono::steady_clock::now() - start;
    ::kill(holder, SIGKILL);
    Wait(holder);
    ::close(ready[0]);
    ::close(ready[1]);
    EXPECT_GE(waited.count(), 5.0);
    EXPECT_LT(waited.count(), 7.0);
    ASSERT_EQ(host.boxes.size(), 1u);
    EXPECT_NE(host.boxes[0].text.find(std::to_string(holder)), std::string::npos) << "who holds it";
    EXPECT_EQ(zm::test::ReadFile(path()), "[a]\r\nk=1\r\n");
}

TEST_F(ProfileFile, FilesOfOthersUnderFormerNamesOfNewFilesAreNoHindrance) {
    zm::test::WriteFile(scratch() / "victim", "precious");
    fs::create_symlink("victim", scratch() / ".设置.ini.new");
    ASSERT_EQ(::mkfifo((scratch() / ".设置.ini.0123456789abcdeg.new").c_str(), 0600), 0);
    EXPECT_TRUE(zm::profile::WriteString("a", "k", "1", file()));
    EXPECT_EQ(Get("a", "k"), "1");
    EXPECT_EQ(zm::test::ReadFile(scratch() / "victim"), "precious");
}

TEST_F(ProfileFile, WhatAKilledWriterLeftIsRemovedByTheNext) {
    zm::test::WriteFile(scratch() / ".设置.ini.0123456789abcdef.new", "half");
    zm::test::WriteFile(scratch() / ".other.ini.0123456789abcdef.new", "of another file");
    EXPECT_TRUE(zm::profile::WriteString("a", "k", "1", file()));
    EXPECT_FALSE(fs::exists(scratch() / ".设置.ini.0123456789abcdef.new"));
    EXPECT_TRUE(fs::exists(scratch() / ".other.ini.0123456789abcdef.new"));
}

TEST_F(ProfileFile, ATerabyteWithoutContentReadsAsMissingAndIsNotWrittenOver) {
    zm::test::WriteFile(path(), "[a]\r\nk=1\r\n");
    if (::truncate(path().c_str(), off_t{1} << 40) != 0) GTEST_SKIP() << "the file system has no files of a terabyte";
    EXPECT_EQ(Get("a", "k"), "*");
    EXPECT_FALSE(zm::profile::WriteString("a", "k", "2", file()));
    EXPECT_EQ(fs::file_size(path()), std::uintmax_t{1} << 40);
}

}  // namespace

// Asks for the 999 pen widths while no descriptor is left, so that nothing can be opened; how many are not as written.
int WrongPenWidthsWithoutDescriptors(const char* file) {
    rlimit before{};
    ::getrlimit(RLIMIT_NOFILE, &before);
    rlimit none = before;
    none.rlim_cur = 0;
    ::setrlimit(RLIMIT_NOFILE, &none);
    int wrong = 0;
    for (int i = 1; i <= 999; ++i)
        if (zm::profile::GetInt("PenWidth", Text("%d", i).c_str(), 255, file) != static_cast<unsigned>(i % 250))
            ++wrong;
    ::setrlimit(RLIMIT_NOFILE, &before);
    return wrong;
}

TEST_F(ProfileFile, AKilledWriterNeverLeavesAFileLostOrHalfWritten) {
    ZM_TRACE_SEED();
    zm::test::Random random(5);
    zm::test::WriteFile(path(), "[keep]\r\nme=1\r\n");
    zm::profile::WriteString("a", "first", "0", file());
    zm::profile::WriteString("z", "last", "0", file());
    int progress = 0;
    // A busy machine gives the writer little time: the rounds go on until it came far enough.
    for (int round = 0; round < zm::test::KillRounds(60) || (progress <= 60 && round < 5000); ++round) {
        const pid_t child = ::fork();
        ASSERT_GE(child, 0);
        if (child == 0) WriteForever(file(), progress + 1);
        std::this_thread::sleep_for(std::chrono::microseconds(random.Int(200, 15000)));
        ::kill(child, SIGKILL);
        Wait(child);
        // What stands there now is one whole state of the writer's.
        const zm::profile::Text text(zm::test::ReadFile(path()));
        EXPECT_EQ(text.Find("keep", "me"), "1");
        EXPECT_EQ(text.Find("a", "first"), text.Find("z", "last"));
        const std::string now(text.Find("a", "first"));
        EXPECT_TRUE(text.Find("a", "tail") == kTail || now == "0");
        EXPECT_GE(std::stoi(now), progress) << "a state that had been seen was lost";
        progress = std::stoi(now);
    }
    EXPECT_GT(progress, 60) << "the writer never came to write";
    zm::profile::WriteString("a", "first", "-1", file());
    EXPECT_EQ(Get("a", "first"), "-1") << "the lock of the killed is free";
    // Nothing is left behind but, at most, one file that was being written; the last write took that too.
    EXPECT_EQ(std::distance(fs::directory_iterator(scratch().path()), fs::directory_iterator()), 1);
}

TEST_F(ProfileFile, ProcessesThatWriteTheSameFileLoseNoKey) {
    constexpr int kProcesses = 4;
    constexpr int kKeys = 60;
    pid_t children[kProcesses];
    for (int p = 0; p < kProcesses; ++p) {
        children[p] = ::fork();
        ASSERT_GE(children[p], 0);
        if (children[p] != 0) continue;
        for (int k = 0; k < kKeys; ++k)
            if (!zm::profile::WriteString(Text("s%d", p % 2).c_str(), Text("k%d_%d", p, k).c_str(), "v", file()))
                ::_exit(1);
        ::_exit(0);
    }
    for (const pid_t child : children) EXPECT_EQ(Wait(child), 0);
    for (int p = 0; p < kProcesses; ++p)
        for (int k = 0; k < kKeys; ++k)
            EXPECT_EQ(Get(Text("s%d", p % 2).c_str(), Text("k%d_%d", p, k).c_str()), "v") << p << " " << k;
}

TEST_F(ProfileFile, BatchesOfTwoProcessesLoseNoKey) {
    const pid_t child = ::fork();
    ASSERT_GE(child, 0);
    for (int k = 0; k < 40; ++k) {
        zm::profile::Batch together;
        for (int i = 0; i < 5; ++i)
            zm::profile::WriteString("s", Text("%s%d_%d", child == 0 ? "c" : "p", k, i).c_str(), "v", file());
    }
    if (child == 0) ::_exit(0);
    EXPECT_EQ(Wait(child), 0);
    for (int k = 0; k < 40; ++k)
        for (int i = 0; i < 5; ++i) {
            EXPECT_EQ(Get("s", Text("c%d_%d", k, i).c_str()), "v");
            EXPECT_EQ(Get("s", Text("p%d_%d", k, i).c_str()), "v");
        }
}

TEST_F(ProfileFile, ReadersSeeWholeFilesWhileAnotherProcessWrites) {
    zm::profile::WriteString("a", "first", "0", file());
    zm::profile::WriteString("z", "last", "0", file());
    const pid_t child = ::fork();
    ASSERT_GE(child, 0);
    if (child == 0) WriteForever(file(), 1);
    for (int i = 0; i < 3000; ++i) {
        const zm::profile::Text text(zm::test::ReadFile(path()));
        ASSERT_EQ(text.Find("a", "first"), text.Find("z", "last"));
    }
    ::kill(child, SIGKILL);
    Wait(child);
}

// ---- The cache ----

TEST_F(ProfileFile, AChangeByAnotherProcessIsSeenAtTheNextRead) {
    zm::profile::WriteString("a", "k", "1", file());
    for (int i = 2; i < 40; ++i) {
        if (i % 4 == 0) Settle();
        const pid_t child = ::fork();
        ASSERT_GE(child, 0);
        if (child == 0) {
            // In place and of the same length, as an editor may write it; the name and the size do not change.
            zm::test::WriteFile(path(), Text("[a]\r\nk=%d\r\n", i % 10));
            ::_exit(0);
        }
        Wait(child);
        EXPECT_EQ(Get("a", "k"), Text("%d", i % 10));
    }
}

TEST_F(ProfileFile, ASettledFileIsNotOpenedAgainForEachKey) {
    std::string text = "[PenWidth]\r\n";
    for (int i = 1; i <= 999; ++i) text += Text("%d=%d\r\n", i, i % 250);
    zm::test::WriteFile(path(), text);
    Settle();
    EXPECT_EQ(zm::profile::GetInt("PenWidth", "1", 255, file()), 1u);
    EXPECT_EQ(WrongPenWidthsWithoutDescriptors(file()), 0);
}

TEST_F(ProfileFile, AFileWrittenThisMomentIsOpenedAHandfulOfTimesForAllItsKeys) {
    std::string text = "[PenWidth]\r\n";
    for (int i = 1; i <= 999; ++i) text += Text("%d=%d\r\n", i, i % 250);
    zm::test::WriteFile(path(), text);
    for (int i = 1; i <= 6; ++i) zm::profile::GetInt("PenWidth", Text("%d", i).c_str(), 255, file());
    EXPECT_EQ(WrongPenWidthsWithoutDescriptors(file()), 0);
}

TEST_F(ProfileFile, AMissingFileIsNotSearchedForAgainForEachKey) {
    EXPECT_EQ(Get("a", "k"), "*");
    Settle();
    EXPECT_EQ(Get("a", "k"), "*");
    rlimit before{};
    ::getrlimit(RLIMIT_NOFILE, &before);
    rlimit none = before;
    none.rlim_cur = 0;
    ::setrlimit(RLIMIT_NOFILE, &none);
    for (int i = 0; i < 100; ++i) EXPECT_EQ(Get("a", "k"), "*");
    ::setrlimit(RLIMIT_NOFILE, &before);
}

// ---- What stays with a rewritten file ----

TEST_F(ProfileFile, ModeOwnerAndLinksStay) {
    zm::test::WriteFile(scratch() / "real.ini", "[a]\r\n");
    ASSERT_EQ(::chmod((scratch() / "real.ini").c_str(), 0640), 0);
    const bool asRoot = ::geteuid() == 0;
    if (asRoot) {
        ASSERT_EQ(::chown((scratch() / "real.ini").c_str(), 1234, 2345), 0);
    }
    fs::create_symlink("real.ini", path());
    EXPECT_TRUE(zm::profile::WriteString("a", "k", "1", file()));
    EXPECT_TRUE(fs::is_symlink(path()));
    struct stat st {};
    ASSERT_EQ(::stat((scratch() / "real.ini").c_str(), &st), 0);
    EXPECT_EQ(st.st_mode & 07777, 0640u);
    if (asRoot) {
        EXPECT_EQ(st.st_uid, 1234u);
        EXPECT_EQ(st.st_gid, 2345u);
    }
    EXPECT_EQ(zm::test::ReadFile(scratch() / "real.ini"), "[a]\r\nk=1\r\n");
}

// Where the group cannot be kept, its rights are no other group's.
TEST_F(ProfileFile, AnotherGroupHasWhatOthersHave) {
    if (::geteuid() != 0) GTEST_SKIP() << "only the administrator can make a file of another user";
    zm::test::WriteFile(path(), "[a]\r\n");
    fs::permissions(scratch().path(), fs::perms::all);
    ASSERT_EQ(::chown(path().c_str(), 1234, 2345), 0);
    ASSERT_EQ(::chmod(path().c_str(), 06676), 0);
    const pid_t child = ::fork();
    ASSERT_GE(child, 0);
    if (child == 0) {
        if (::setgroups(0, nullptr) != 0 || ::setgid(65534) != 0 || ::setuid(65534) != 0) ::_exit(9);
        ::_exit(zm::profile::WriteString("a", "k", "1", file()) ? 0 : 1);
    }
    EXPECT_EQ(Wait(child), 0);
    struct stat st {};
    ASSERT_EQ(::stat(path().c_str(), &st), 0);
    EXPECT_EQ(st.st_uid, 65534u);
    EXPECT_EQ(st.st_mode & 07777, 0666u);
}

TEST_F(ProfileFile, ALinkToNothingIsFollowedToTheNewFile) {
    fs::create_symlink("real.ini", path());
    EXPECT_TRUE(zm::profile::WriteString("a", "k", "1", file()));
    EXPECT_TRUE(fs::is_symlink(path()));
    EXPECT_EQ(zm::test::ReadFile(scratch() / "real.ini"), "[a]\r\nk=1\r\n");
}

TEST_F(ProfileFile, AFailedWriteKeepsTheOldFile) {
    zm::test::WriteFile(path(), "[a]\r\nk=1\r\n");
    const pid_t child = ::fork();
    ASSERT_GE(child, 0);
    if (child == 0) {
        // No file of this process may grow beyond 4 bytes: what a full disk does to the new one.
        ::signal(SIGXFSZ, SIG_IGN);
        const rlimit small{4, 4};
        ::setrlimit(RLIMIT_FSIZE, &small);
        ::_exit(zm::profile::WriteString("a", "k", "2", file()) ? 1 : 0);
    }
    EXPECT_EQ(Wait(child), 0);
    EXPECT_EQ(zm::test::ReadFile(path()), "[a]\r\nk=1\r\n");
    EXPECT_EQ(std::distance(fs::directory_iterator(scratch().path()), fs::directory_iterator()), 1);
}

// ---- Places without access, and what is no file; as another user, since the administrator is refused nothing ----

TEST_F(ProfileFile, ReadOnlyAndUnreadablePlacesGiveDefaultsAndFailures) {
    zm::test::WriteFile(path(), "[a]\r\nk=1\r\n");
    fs::create_directory(scratch() / "open");
    zm::test::WriteFile(scratch() / "open/secret.ini", "[a]\r\nk=1\r\n");
    zm::test::WriteFile(scratch() / "open/readonly.ini", "[a]\r\nk=1\r\n");
    fs::permissions(scratch().path(), fs::perms(0755));
    fs::permissions(scratch() / "open", fs::perms(0777));
    fs::permissions(scratch() / "open/secret.ini", fs::perms(0000));
    fs::permissions(scratch() / "open/readonly.ini", fs::perms(0444));
    const std::string secret = zm::files::PathText(scratch() / "open/secret.ini");
    const std::string readOnly = zm::files::PathText(scratch() / "open/readonly.ini");
    const pid_t child = ::fork();
    ASSERT_GE(child, 0);
    if (child == 0) {
        if (::geteuid() == 0 && (::setgid(65534) != 0 || ::setuid(65534) != 0)) ::_exit(9);
        using namespace zm::profile;
        if (GetInt("a", "k", 9, file()) != 1) ::_exit(1);
        if (WriteString("a", "k", "2", file())) ::_exit(2);  // a directory that refuses new files
        if (GetInt("a", "k", 9, secret.c_str()) != 9) ::_exit(3);
        if (WriteString("a", "k", "2", secret.c_str())) ::_exit(4);  // what cannot be read is not written over
        if (GetInt("a", "k", 9, readOnly.c_str()) != 1) ::_exit(5);
        if (WriteString("a", "k", "2", readOnly.c_str())) ::_exit(6);  // a file that refuses to be written
        ::_exit(0);
    }
    const int status = Wait(child);
    EXPECT_EQ(WEXITSTATUS(status), 0);
    EXPECT_EQ(zm::test::ReadFile(scratch() / "open/readonly.ini"), "[a]\r\nk=1\r\n");
}

TEST_F(ProfileFile, DirectoriesAndPipesAreNoProfiles) {
    fs::create_directory(path());
    EXPECT_EQ(Get("a", "k"), "*");
    EXPECT_FALSE(zm::profile::WriteString("a", "k", "1", file()));
    const fs::path pipe = scratch() / "pipe.ini";
    ASSERT_EQ(::mkfifo(pipe.c_str(), 0666), 0);
    const std::string name = zm::files::PathText(pipe);
    EXPECT_EQ(zm::profile::GetInt("a", "k", 9, name.c_str()), 9u) << "and nobody waits for its other end";
    EXPECT_FALSE(zm::profile::WriteString("a", "k", "1", name.c_str()));
}
