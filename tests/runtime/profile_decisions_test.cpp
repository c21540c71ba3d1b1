// What the profile service does where the documentation of the format is silent or a recorded result is in doubt;
// docs/runtime/profile-files.md gives the reasons.
#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <string_view>

#include "runtime/files/files.h"
#include "runtime/profile/profile.h"
#include "tests/support/scratch.h"

namespace fs = std::filesystem;
using namespace std::string_literals;

namespace {

class ProfileDecision : public testing::Test {
 protected:
    void Put(const std::string& bytes) { zm::test::WriteFile(m_path, bytes); }
    std::string Bytes() { return fs::exists(m_path) ? zm::test::ReadFile(m_path) : "(no file)"; }
    const char* file() const { return m_text.c_str(); }

    // The value, or the list with its zeros shown as bars.
    std::string Get(const char* section, const char* key, const char* def = "*", unsigned int size = 256) {
        std::string buffer(size + 2, '#');
        const unsigned int count = zm::profile::GetString(section, key, def, buffer.data(), size, file());
        return std::to_string(count) + ":" + Shown(buffer, size, count);
    }
    std::string Section(const char* section, unsigned int size = 256) {
        std::string buffer(size + 2, '#');
        const unsigned int count = zm::profile::GetSection(section, buffer.data(), size, file());
        return std::to_string(count) + ":" + Shown(buffer, size, count);
    }
    bool Set(const char* section, const char* key, const char* value) {
        return zm::profile::WriteString(section, key, value, file());
    }

 private:
    static std::string Shown(std::string buffer, unsigned int size, unsigned int count) {
        EXPECT_EQ(buffer.substr(size), "##") << "written past the buffer";
        std::string shown = buffer.substr(0, std::min(count + 2, size));
        for (char& c : shown)
            if (c == '\0') c = '|';
        while (shown.ends_with('#')) shown.pop_back();
        return shown;
    }
    zm::test::ScratchDir m_scratch;
    fs::path m_path = m_scratch / "a.ini";
    std::string m_text = zm::files::PathText(m_path);
};

}  // namespace

TEST_F(ProfileDecision, DeletingWhatDoesNotExistSucceedsAndMakesNoFile) {
    EXPECT_TRUE(Set("a", "k", nullptr));
    EXPECT_TRUE(Set("a", nullptr, nullptr));
    EXPECT_TRUE(zm::profile::WriteSection("a", nullptr, file()));
    EXPECT_TRUE(zm::profile::WriteSection("a", "\0", file()));
    EXPECT_EQ(Bytes(), "(no file)");
}

TEST_F(ProfileDecision, CommentsBetweenTheKeysGoWithASectionAndThoseBehindTheLastKeyStay) {
    Put("[a]\r\n; one\r\nk=1\r\n; two\r\nl=2\r\n\r\n; of b\r\n[b]\r\nm=3\r\n");
    EXPECT_TRUE(Set("a", nullptr, nullptr));
    EXPECT_EQ(Bytes(), "\r\n; of b\r\n[b]\r\nm=3\r\n");
    Put("[a]\r\n; one\r\nk=1\r\n; of b\r\n[b]\r\nm=3\r\n");
    EXPECT_TRUE(zm::profile::WriteSection("a", "\0", file()));
    EXPECT_EQ(Bytes(), "[a]\r\n; of b\r\n[b]\r\nm=3\r\n");
    EXPECT_TRUE(zm::profile::WriteSection("a", "x=1\0y=2\0", file()));
    EXPECT_EQ(Bytes(), "[a]\r\nx=1\r\ny=2\r\n; of b\r\n[b]\r\nm=3\r\n");
}

TEST_F(ProfileDecision, AListThatDoesNotFitEndsInTwoZeros) {
    Put("[north]\r\n[s]\r\n");
    EXPECT_EQ(Get(nullptr, nullptr, "*", 6), "4:nort||");
    EXPECT_EQ(Get(nullptr, nullptr, "*", 2), "0:||");
    EXPECT_EQ(Get(nullptr, nullptr, "*", 1), "0:|");
}

TEST_F(ProfileDecision, AListThatFitsToTheByteIsWhole) {
    Put("[north]\r\n[s]\r\nkey=value\r\n");
    EXPECT_EQ(Get(nullptr, nullptr, "*", 9), "8:north|s||");
    EXPECT_EQ(Get(nullptr, nullptr, "*", 8), "6:north|||") << "one byte less is cut";
    EXPECT_EQ(Section("s", 11), "10:key=value||");
}

TEST_F(ProfileDecision, AListOfKeysWithoutKeysIsTheDefault) {
    Put("[a]\r\n[b]\r\nword\r\n");
    EXPECT_EQ(Get("a", nullptr), "1:*|");
    EXPECT_EQ(Get("b", nullptr), "1:*|");
    EXPECT_EQ(Get("none", nullptr), "1:*|");
    EXPECT_EQ(Get(nullptr, nullptr), "4:a|b||");
    Put("; nothing\r\n");
    EXPECT_EQ(Get(nullptr, nullptr), "0:||") << "sections have no default";
}

TEST_F(ProfileDecision, AnEmptySectionNameMeansTheLinesBeforeTheFirstHeader) {
    Put("k=1\r\n[]\r\nk=2\r\n[a]\r\nk=3\r\n");
    EXPECT_EQ(Get("", "k"), "1:1|");
    EXPECT_EQ(Get("  ", "k"), "1:1|");
    EXPECT_EQ(Get(nullptr, nullptr), "2:a||") << "brackets with nothing in them name no section";
    EXPECT_TRUE(Set("", "l", "4"));
    EXPECT_EQ(Bytes(), "k=1\r\nl=4\r\n[]\r\nk=2\r\n[a]\r\nk=3\r\n");
}

TEST_F(ProfileDecision, AnEmptyKeyNameIsLeftOutOfLists) {
    Put("[a]\r\n=w\r\nz=\r\n");
    EXPECT_EQ(Get("a", nullptr), "2:z||") << "an empty name would end the list";
    EXPECT_EQ(Get("a", ""), "1:w|");
    EXPECT_EQ(Section("a"), "6:=w|z=||");
}

TEST_F(ProfileDecision, ACutMayPartATwoByteCharacterAndCountsBytes) {
    Put("[\xB5\xC0]\r\nk=\xB5\xC0\xC2\xB7\r\n");
    EXPECT_EQ(Get("\xB5\xC0", "k", "*", 4), "3:\xB5\xC0\xC2|");
    EXPECT_EQ(Get(nullptr, nullptr, "*", 3), "1:\xB5||");
}

TEST_F(ProfileDecision, AHeaderWithSeveralClosingBracketsGoesToTheLast) {
    Put("[b]c] tail\r\nk=2\r\n[[d]]\r\nk=3\r\n");
    EXPECT_EQ(Get("b]c", "k"), "1:2|");
    EXPECT_EQ(Get("b", "k"), "1:*|");
    EXPECT_EQ(Get("[d]", "k"), "1:3|");
}

TEST_F(ProfileDecision, BlanksAroundNamesDoNotCountWhoeverGivesThem) {
    Put("[ a\t]\r\n k =1\r\n");
    EXPECT_EQ(Get("a", "k"), "1:1|");
    EXPECT_EQ(Get("\ta ", " k "), "1:1|");
    EXPECT_TRUE(Set(" a", "k\t", "2"));
    EXPECT_EQ(Bytes(), "[ a\t]\r\nk=2\r\n");
    EXPECT_TRUE(Set(" b ", " m ", "3"));
    EXPECT_EQ(Bytes(), "[ a\t]\r\nk=2\r\n[b]\r\nm=3\r\n");
}

TEST_F(ProfileDecision, LeadingBlanksOfAWrittenValueAreDroppedAndTrailingOnesStay) {
    EXPECT_TRUE(Set("a", "k", " \t x  "));
    EXPECT_EQ(Bytes(), "[a]\r\nk=x  \r\n");
    EXPECT_EQ(Get("a", "k"), "1:x|");
}

TEST_F(ProfileDecision, ValuesThatReadBackTheSameAreNotWrittenAgain) {
    Put("[a]\r\nk = x \r\n");
    EXPECT_TRUE(Set("a", "k", " x"));
    EXPECT_EQ(Bytes(), "[a]\r\nk = x \r\n");
}

TEST_F(ProfileDecision, ItemsOfAReplacedSectionStandAsTheyWereGiven) {
    EXPECT_TRUE(zm::profile::WriteSection("t", ";c\0k = v \0word\0", file()));
    EXPECT_EQ(Bytes(), "[t]\r\n;c\r\nk = v \r\nword\r\n");
    EXPECT_EQ(Section("t"), "9:k=v|word||") << "what was read can be written and read again";
}

TEST_F(ProfileDecision, OnlyTheFirstOfSeveralSectionsOfANameIsTouched) {
    Put("[a]\r\nk=1\r\n[A]\r\nk=2\r\nm=3\r\n");
    EXPECT_TRUE(Set("a", "m", nullptr));
    EXPECT_EQ(Bytes(), "[a]\r\nk=1\r\n[A]\r\nk=2\r\nm=3\r\n");
    EXPECT_TRUE(zm::profile::WriteSection("a", "x=1\0", file()));
    EXPECT_EQ(Bytes(), "[a]\r\nx=1\r\n[A]\r\nk=2\r\nm=3\r\n");
}

TEST_F(ProfileDecision, NumbersHaveLowerCasePrefixesOfTheirBase) {
    Put("[n]\r\nx=0x1F\r\nX=1\r\no=0o17\r\nb=-0b101\r\nu=0X1F\r\nq=\"12\"\r\ne=\r\n");
    EXPECT_EQ(zm::profile::GetInt("n", "x", 99, file()), 31u);
    EXPECT_EQ(zm::profile::GetInt("n", "o", 99, file()), 15u);
    EXPECT_EQ(static_cast<int>(zm::profile::GetInt("n", "b", 99, file())), -5);
    EXPECT_EQ(zm::profile::GetInt("n", "u", 99, file()), 0u);
    EXPECT_EQ(zm::profile::GetInt("n", "q", 99, file()), 12u);
    EXPECT_EQ(zm::profile::GetInt("n", "e", 99, file()), 0u);
}

TEST_F(ProfileDecision, NumbersBeyond32BitsAreTakenModulo) {
    Put("[n]\r\na=9999999999\r\nb=4294967297\r\n");
    EXPECT_EQ(zm::profile::GetInt("n", "a", 0, file()), 1410065407u);
    EXPECT_EQ(zm::profile::GetInt("n", "b", 0, file()), 1u);
}

TEST_F(ProfileDecision, NullNamesFindNothingAndWriteNothing) {
    Put("[a]\r\nk=1\r\n");
    EXPECT_EQ(zm::profile::GetInt(nullptr, "k", 9, file()), 0u);
    EXPECT_EQ(zm::profile::GetInt("a", nullptr, 9, file()), 0u);
    EXPECT_FALSE(Set(nullptr, "k", "v"));
    EXPECT_FALSE(zm::profile::GetStruct("a", nullptr, nullptr, 0, file()));
    EXPECT_EQ(zm::profile::GetString("a", "k", "*", nullptr, 5, file()), 0u);
    EXPECT_EQ(zm::profile::GetInt("a", "k", 9, nullptr), 9u);
    EXPECT_EQ(zm::profile::GetInt("a", "k", 9, ""), 9u);
    EXPECT_FALSE(zm::profile::WriteString("a", "k", "v", ""));
}

TEST_F(ProfileDecision, BuffersAndStructsOfNoSizeReceiveNothing) {
    Put("[a]\r\nk=00\r\nf=FF\r\n");
    EXPECT_EQ(Get("a", "k", "*", 0), "0:");
    EXPECT_EQ(Section("a", 0), "0:");
    EXPECT_EQ(Section("a", 1), "0:|");
    EXPECT_TRUE(zm::profile::GetStruct("a", "k", nullptr, 0, file()));
    EXPECT_FALSE(zm::profile::GetStruct("a", "f", nullptr, 0, file()));
    char byte = 1;
    EXPECT_TRUE(zm::profile::WriteStruct("a", "n", &byte, 0, file()));
    EXPECT_EQ(Get("a", "n"), "2:00|");
}

TEST_F(ProfileDecision, BytesThatAreNoCharactersStayAsTheyAre) {
    Put("[s\xB2]\r\nk=1\r\n[u]\r\nq=\x81\x30\xFF\x80\r\n");
    EXPECT_EQ(Get("u", "q"), "4:\x81\x30\xFF\x80|");
    EXPECT_EQ(Get(nullptr, nullptr), "2:u||") << "the closing bracket is the second half of a character";
    EXPECT_TRUE(Set("u", "n", "1"));
    EXPECT_EQ(Bytes(), "[s\xB2]\r\nk=1\r\n[u]\r\nq=\x81\x30\xFF\x80\r\nn=1\r\n");
}

TEST_F(ProfileDecision, ControlCharactersAreBlanksOrBytes) {
    Put("[a]\r\n\vk=\fv\v\r\nz=a\0b\r\n\x1A"s);
    EXPECT_EQ(Get("a", "k"), "1:v|");
    EXPECT_EQ(Get("a", "z"), "1:a|") << "a zero ends the line for the reader";
    EXPECT_TRUE(Set("a", "n", "1"));
    EXPECT_EQ(Bytes(), "[a]\r\n\vk=\fv\v\r\nz=a\0b\r\n\x1A\r\nn=1\r\n"s) << "and stays in the file";
}

TEST_F(ProfileDecision, TheMarkOfUtf8IsText) {
    Put("\xEF\xBB\xBF[a]\r\nk=v\r\n[b]\r\nk=w\r\n");
    EXPECT_EQ(Get("a", "k"), "1:*|");
    EXPECT_EQ(Get("b", "k"), "1:w|");
}

TEST_F(ProfileDecision, Utf16FilesStayWhatTheyAre) {
    Put("\xFF\xFE[\0a\0]\0\n\0k\0=\0\x2D\x4E"s);
    EXPECT_EQ(Get("a", "k"), "2:\xD6\xD0|");
    EXPECT_TRUE(Set("a", "n", "\xD6\xD0"));
    EXPECT_EQ(Bytes(), "\xFF\xFE[\0a\0]\0\n\0k\0=\0\x2D\x4E\r\0\n\0n\0=\0\x2D\x4E\r\0\n\0"s);
}

TEST_F(ProfileDecision, LineEndsOfTheFileStayAndNewLinesHaveBoth) {
    Put("[a]\nk=1\nl=2");
    EXPECT_TRUE(Set("a", "k", "9"));
    EXPECT_EQ(Bytes(), "[a]\nk=9\nl=2");
    EXPECT_TRUE(Set("a", "m", "3"));
    EXPECT_EQ(Bytes(), "[a]\nk=9\nl=2\r\nm=3\r\n");
}

TEST_F(ProfileDecision, ANewKeyGoesBehindTheLastKeyBeforeTheCommentsThatFollow) {
    Put("[a]\r\nk=1\r\n\r\n; of b\r\n[b]\r\nl=2\r\n");
    EXPECT_TRUE(Set("a", "n", "3"));
    EXPECT_EQ(Bytes(), "[a]\r\nk=1\r\nn=3\r\n\r\n; of b\r\n[b]\r\nl=2\r\n");
}

TEST_F(ProfileDecision, AWordWithoutEqualsSignBecomesTheKeyThatIsWritten) {
    Put("[a]\r\nword\r\nk=1\r\n");
    EXPECT_EQ(Get("a", "word"), "1:*|");
    EXPECT_TRUE(Set("a", "word", "v"));
    EXPECT_EQ(Bytes(), "[a]\r\nword=v\r\nk=1\r\n");
    EXPECT_EQ(Get("a", "word"), "1:v|");
}

TEST_F(ProfileDecision, WhatWouldReadBackAsSomethingElseIsRefused) {
    EXPECT_FALSE(Set("a", "k", "x\n[b]"));
    EXPECT_FALSE(Set("a\n", "k", "x"));
    EXPECT_FALSE(Set("a", "k=l", "x"));
    EXPECT_FALSE(Set("a", ";k", "x"));
    EXPECT_FALSE(Set("a", "[k]", "x"));
    EXPECT_FALSE(zm::profile::WriteSection("a", "k=1\n\0", file()));
    EXPECT_FALSE(zm::profile::WriteSection("a", "[b]\0", file()));
    EXPECT_EQ(Bytes(), "(no file)");
    EXPECT_TRUE(Set("a", "[k", "x"));
    EXPECT_EQ(Get("a", "[k"), "1:x|");
}

TEST_F(ProfileDecision, TrailingBlanksOfADefaultAreDropped) {
    EXPECT_EQ(Get("a", "k", "dd  "), "2:dd|");
    EXPECT_EQ(Get("a", "k", " dd"), "3: dd|");
    EXPECT_EQ(Get("a", "k", nullptr), "0:|");
}

TEST_F(ProfileDecision, NamesDifferInCaseOfAsciiOnlyAndNeverInSecondBytes) {
    // 0x81 0x41 and 0x81 0x61 are two characters, though 0x41 and 0x61 are a capital and a small letter.
    Put("[a]\r\n\x81\x41=1\r\n\x81\x61=2\r\nKey=3\r\n");
    EXPECT_EQ(Get("A", "\x81\x61"), "1:2|");
    EXPECT_EQ(Get("A", "\x81\x41"), "1:1|");
    EXPECT_EQ(Get("A", "kEY"), "1:3|");
}
