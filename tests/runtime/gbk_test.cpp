#include "runtime/text/gbk.h"

#include <gtest/gtest.h>
#include <iconv.h>

#include <string>

#include "tests/support/random.h"

namespace {

// The system's conversion of one character; empty where it has none.
std::string BySystem(const char* from, const char* to, std::string in) {
    const iconv_t convert = iconv_open(to, from);
    if (convert == reinterpret_cast<iconv_t>(-1)) return "no iconv";
    char buffer[16];
    char* source = in.data();
    std::size_t left = in.size();
    char* target = buffer;
    std::size_t room = sizeof buffer;
    const bool done = iconv(convert, &source, &left, &target, &room) != static_cast<std::size_t>(-1) && left == 0;
    iconv_close(convert);
    return done ? std::string(buffer, target) : std::string();
}

TEST(Gbk, EveryTwoByteCharacterIsTheSystemsAndComesBack) {
    int characters = 0;
    for (int lead = 0x81; lead <= 0xFE; ++lead)
        for (int trail = 0; trail <= 0xFF; ++trail) {
            const std::string gbk = {static_cast<char>(lead), static_cast<char>(trail)};
            if (trail < 0x40 || trail == 0x7F || trail == 0xFF) {
                int invalid = 0;
                zm::gbk::ToUtf8(gbk, &invalid);
                EXPECT_GE(invalid, 1) << lead << ' ' << trail;
                continue;
            }
            const std::string expected = BySystem("CP936", "UTF-8", gbk);
            int invalid = 0;
            const std::string found = zm::gbk::ToUtf8(gbk, &invalid);
            if (expected.empty()) {
                EXPECT_GE(invalid, 1) << lead << ' ' << trail;
                continue;
            }
            ++characters;
            ASSERT_EQ(found, expected) << lead << ' ' << trail;
            ASSERT_EQ(zm::gbk::FromUtf8(found), gbk);
        }
    EXPECT_EQ(characters, 21791);
}

TEST(Gbk, EuroSignIsTheByte80) {
    EXPECT_EQ(zm::gbk::ToUtf8("\x80"), "\u20AC");
    EXPECT_EQ(zm::gbk::FromUtf8("\u20AC"), "\x80");
}

TEST(Gbk, AsciiStaysAsItIs) {
    std::string ascii;
    for (char c = 0; c < 127; ++c) ascii += c;
    EXPECT_EQ(zm::gbk::ToUtf8(ascii), ascii);
    EXPECT_EQ(zm::gbk::FromUtf8(ascii), ascii);
}

TEST(Gbk, HalfACharacterBecomesTheReplacementAlone) {
    int invalid = 0;
    EXPECT_EQ(zm::gbk::ToUtf8("a\xB0", &invalid), "a\uFFFD");
    EXPECT_EQ(invalid, 1);
    EXPECT_EQ(zm::gbk::ToUtf8("\xB0 b", &invalid), "\uFFFD b");
    EXPECT_EQ(invalid, 1);
    EXPECT_EQ(zm::gbk::ToUtf8("\xFF", &invalid), "\uFFFD");
}

TEST(Gbk, AnEscapeOfAPathBecomesItsCharacter) {
    EXPECT_EQ(zm::gbk::ToUtf8("a\xFF"
                              "F1\xFFo"),
              "a\u00F1o");
    EXPECT_EQ(zm::gbk::ToUtf8("\xFF"
                              "1F5FA\xFF"),
              "\U0001F5FA");
    EXPECT_EQ(zm::gbk::ToUtf8("\xFFxF1\xFF"), "\xF1");
    for (const char* none : {"\xFF", "\xFF\xFF",
                             "\xFF"
                             "G1\xFF",
                             "\xFF"
                             "F1",
                             "\xFF"
                             "110000\xFF",
                             "\xFFx1FF\xFF"}) {
        int invalid = 0;
        zm::gbk::ToUtf8(none, &invalid);
        EXPECT_GT(invalid, 0) << none;
    }
}

TEST(Gbk, CharactersOutsideTheCodePageAreCounted) {
    int lost = 0;
    EXPECT_EQ(zm::gbk::FromUtf8("a\U0001F600ñ中", &lost), "a??\xD6\xD0");
    EXPECT_EQ(lost, 2);
    EXPECT_EQ(zm::gbk::FromUtf8("ñ", &lost, '_'), "_");
}

TEST(Gbk, MalformedUtf8IsReplacedByteByByte) {
    int lost = 0;
    EXPECT_EQ(zm::gbk::FromUtf8("\xC0\x80", &lost), "??");
    EXPECT_EQ(lost, 2);
    EXPECT_EQ(zm::gbk::FromUtf8("\xE4\xB8", &lost), "??");
    EXPECT_EQ(zm::gbk::FromUtf8("\xED\xA0\x80", &lost), "???");  // a surrogate
}

TEST(Gbk, RandomBytesNeverFail) {
    ZM_TRACE_SEED();
    zm::test::Random random(1);
    for (int round = 0; round < 2000; ++round) {
        std::string bytes;
        for (int i = random.Int(0, 40); i > 0; --i) bytes += static_cast<char>(random.Int(0, 255));
        int invalid = 0;
        const std::string utf8 = zm::gbk::ToUtf8(bytes, &invalid);
        if (invalid == 0) {
            EXPECT_EQ(zm::gbk::FromUtf8(utf8), bytes);
        }
        zm::gbk::FromUtf8(bytes);
    }
}

}  // namespace
