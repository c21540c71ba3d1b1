// Profile files as files: batches, many at a time, and damaged in every way.
#include <filesystem>
#include <map>
#include <string>

#include "runtime/text/numbers.h"
#include "tests/runtime/profile_file.h"
#include "tests/support/random.h"

namespace fs = std::filesystem;
using zm::numbers::Text;
using zm::test::ProfileFile;

TEST_F(ProfileFile, ARemovedFileIsSeenAtTheNextRead) {
    zm::profile::WriteString("a", "k", "1", file());
    Settle();
    EXPECT_EQ(Get("a", "k"), "1");
    fs::remove(path());
    EXPECT_EQ(Get("a", "k"), "*");
    zm::test::WriteFile(path(), "[a]\nk=2\n");
    EXPECT_EQ(Get("a", "k"), "2");
}

TEST_F(ProfileFile, ManyFilesReadInTurnsAllAnswer) {
    for (int i = 0; i < 20; ++i) zm::test::WriteFile(scratch() / Text("%d.ini", i), Text("[a]\nk=%d\n", i));
    for (int round = 0; round < 3; ++round)
        for (int i = 0; i < 20; ++i) {
            const std::string name = zm::files::PathText(scratch() / Text("%d.ini", i));
            EXPECT_EQ(zm::profile::GetInt("a", "k", 99, name.c_str()), static_cast<unsigned>(i));
        }
}

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
