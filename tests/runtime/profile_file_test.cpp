// Profile files as files: whole at every moment, shared between processes, read once, damaged in every way.
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <filesystem>
#include <string>
#include <thread>

#include "runtime/files.h"
#include "runtime/numbers.h"
#include "runtime/profile.h"
#include "runtime/profile_text.h"
#include "runtime/state.h"
#include "tests/support/random.h"
#include "tests/support/scratch.h"

namespace fs = std::filesystem;
using zm::numbers::Text;

namespace {

class ProfileFile : public testing::Test {
 protected:
    ProfileFile() { zm::runtime::ResetState(); }
    const char* file() const { return m_text.c_str(); }
    const fs::path& path() const { return m_path; }
    const zm::test::ScratchDir& scratch() const { return m_scratch; }
    std::string Get(const char* section, const char* key) {
        char buffer[256];
        zm::profile::GetString(section, key, "*", buffer, sizeof buffer, file());
        return buffer;
    }
    // Lets the file grow old enough that its stamp tells every further change.
    static void Settle() { std::this_thread::sleep_for(std::chrono::milliseconds(40)); }
    static int Wait(pid_t child) {
        int status = 0;
        ::waitpid(child, &status, 0);
        return status;
    }

 private:
    zm::test::ScratchDir m_scratch;
    fs::path m_path = m_scratch / "设置.ini";
    std::string m_text = zm::files::PathText(m_path);
};

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
    for (int round = 0; round < 60 || (progress <= 60 && round < 5000); ++round) {
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

TEST_F(ProfileFile, ARemovedFileIsSeenAtTheNextRead) {
    zm::profile::WriteString("a", "k", "1", file());
    Settle();
    EXPECT_EQ(Get("a", "k"), "1");
    fs::remove(path());
    EXPECT_EQ(Get("a", "k"), "*");
    zm::test::WriteFile(path(), "[a]\nk=2\n");
    EXPECT_EQ(Get("a", "k"), "2");
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

TEST_F(ProfileFile, ManyFilesReadInTurnsAllAnswer) {
    for (int i = 0; i < 20; ++i) zm::test::WriteFile(scratch() / Text("%d.ini", i), Text("[a]\nk=%d\n", i));
    for (int round = 0; round < 3; ++round)
        for (int i = 0; i < 20; ++i) {
            const std::string name = zm::files::PathText(scratch() / Text("%d.ini", i));
            EXPECT_EQ(zm::profile::GetInt("a", "k", 99, name.c_str()), static_cast<unsigned>(i));
        }
}

// ---- Batches ----

TEST_F(ProfileFile, ABatchWritesOnceAndReadsSeeWhatItHolds) {
    {
        zm::profile::Batch together;
        EXPECT_TRUE(zm::profile::WriteString("a", "k", "1", file()));
        EXPECT_FALSE(fs::exists(path()));
        EXPECT_EQ(Get("a", "k"), "1");
        EXPECT_TRUE(zm::profile::WriteString("a", "l", "2", file()));
        {
            const zm::profile::Batch inner;
            zm::profile::WriteString("a", "m", "3", file());
        }
        EXPECT_EQ(zm::test::ReadFile(path()), "[a]\r\nk=1\r\n") << "an inner batch waits for the outer";
        EXPECT_TRUE(together.Commit());
        EXPECT_EQ(zm::test::ReadFile(path()), "[a]\r\nk=1\r\nl=2\r\nm=3\r\n");
    }
    EXPECT_TRUE(zm::profile::WriteString("a", "k", "4", file()));
    EXPECT_EQ(Get("a", "k"), "4");
}

TEST_F(ProfileFile, ABatchTellsOfAFileThatCannotBeWritten) {
    const std::string bad = zm::files::PathText(scratch() / "none" / "a.ini");
    zm::profile::Batch together;
    EXPECT_TRUE(zm::profile::WriteString("a", "k", "1", file()));
    zm::profile::WriteString("a", "k", "1", bad.c_str());
    EXPECT_FALSE(together.Commit());
    EXPECT_EQ(Get("a", "k"), "1");
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

// ---- Damaged files ----

TEST_F(ProfileFile, AnEmptyFileGivesDefaultsAndTakesKeys) {
    zm::test::WriteFile(path(), "");
    EXPECT_EQ(Get("a", "k"), "*");
    EXPECT_TRUE(zm::profile::WriteString("a", "k", "1", file()));
    EXPECT_EQ(zm::test::ReadFile(path()), "[a]\r\nk=1\r\n");
}

TEST_F(ProfileFile, AFileOf100MegabytesIsReadAndWritten) {
    std::string text = "[a]\r\nk=1\r\n[big]\r\n";
    const std::string line = "; " + std::string(998, 'x') + "\r\n";
    while (text.size() < 100u << 20) text += line;
    text += "[z]\r\nk=2\r\n";
    zm::test::WriteFile(path(), text);
    EXPECT_EQ(Get("a", "k"), "1");
    EXPECT_EQ(Get("z", "k"), "2");
    EXPECT_TRUE(zm::profile::WriteString("z", "k", "3", file()));
    EXPECT_EQ(Get("z", "k"), "3");
    EXPECT_EQ(fs::file_size(path()), text.size());
}

TEST_F(ProfileFile, AFileOf30MillionBlankLinesIsReadAndWritten) {
    zm::test::WriteFile(path(), "[a]\nk=1\n" + std::string(30'000'000, '\n') + "[z]\nk=2\n");
    EXPECT_EQ(Get("z", "k"), "2");
    EXPECT_TRUE(zm::profile::WriteString("a", "l", "3", file()));
    EXPECT_EQ(Get("a", "l"), "3");
    EXPECT_EQ(zm::test::ReadFile(path()).substr(0, 13), "[a]\nk=1\nl=3\r\n");
}

TEST_F(ProfileFile, ALineOf10MegabytesIsReadAndCut) {
    zm::test::WriteFile(path(), "[a]\r\nk=" + std::string(10u << 20, 'x') + "\r\nl=2");
    EXPECT_EQ(Get("a", "k"), std::string(255, 'x'));
    EXPECT_EQ(Get("a", "l"), "2");
}

TEST_F(ProfileFile, NoiseIsKeptByteForByteAroundWhatIsWritten) {
    ZM_TRACE_SEED();
    zm::test::Random random(9);
    for (int round = 0; round < 200; ++round) {
        std::string noise(static_cast<std::size_t>(random.Int(0, 400)), '\0');
        for (char& c : noise)
            c = random.Int(0, 3) == 0 ? "[]=;\"'\r\n \t\\k"[random.Int(0, 11)] : static_cast<char>(random.Int(0, 255));
        if (noise.starts_with("\xFF\xFE")) noise[0] = 'x';
        zm::test::WriteFile(path(), noise);
        ASSERT_TRUE(zm::profile::WriteString("new section", "key", "value", file()));
        const std::string after = zm::test::ReadFile(path());
        const std::string end = noise.empty() || noise.ends_with('\n') ? "" : "\r\n";
        EXPECT_EQ(after, noise + end + "[new section]\r\nkey=value\r\n");
        EXPECT_EQ(Get("new section", "key"), "value");
        ASSERT_TRUE(zm::profile::WriteString("new section", nullptr, nullptr, file()));
        EXPECT_EQ(zm::test::ReadFile(path()), noise + end);
    }
}

TEST_F(ProfileFile, WritingAnyKeysAndReadingThemBackGivesTheLastValueOfEach) {
    ZM_TRACE_SEED();
    zm::test::Random random(11);
    std::map<std::string, std::string> expected;
    for (int i = 0; i < 1500; ++i) {
        const std::string section = Text("s%d", random.Int(0, 3));
        const std::string key = Text("k%d", random.Int(0, 20));
        if (random.Int(0, 5) == 0) {
            zm::profile::WriteString(section.c_str(), key.c_str(), nullptr, file());
            expected.erase(section + "/" + key);
        } else {
            const std::string value = Text("%d", random.Int(-1000, 1000));
            zm::profile::WriteString(section.c_str(), key.c_str(), value.c_str(), file());
            expected[section + "/" + key] = value;
        }
    }
    for (int s = 0; s <= 3; ++s)
        for (int k = 0; k <= 20; ++k) {
            const auto found = expected.find(Text("s%d/k%d", s, k));
            EXPECT_EQ(Get(Text("s%d", s).c_str(), Text("k%d", k).c_str()),
                      found != expected.end() ? found->second : "*");
        }
}
