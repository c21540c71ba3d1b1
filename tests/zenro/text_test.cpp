#include "tools/kit/text.h"

#include <gtest/gtest.h>

#include "tools/zenro/map/lettering.h"

namespace {

using namespace zm::tool;

TEST(Numbers, AreReadWholeAndWithAPointOnly) {
    double value = 0.0;
    EXPECT_TRUE(ReadReal("+12.5", value));
    EXPECT_EQ(value, 12.5);
    EXPECT_TRUE(ReadReal("-1e3", value));
    EXPECT_EQ(value, -1000.0);
    for (const char* wrong : {"", "1,5", "12 ", "nan", "inf", "0x10", "1.5m"})
        EXPECT_FALSE(ReadReal(wrong, value)) << wrong;
    EXPECT_EQ(value, -1000.0) << "half a number was taken";
    int whole = 0;
    EXPECT_TRUE(ReadWhole("-7", whole));
    EXPECT_EQ(whole, -7);
    EXPECT_FALSE(ReadWhole("7.0", whole));
    EXPECT_FALSE(ReadWhole("99999999999", whole));
    EXPECT_EQ(whole, -7);
}

TEST(Numbers, ANegativeZeroIsShownWithoutItsSign) {
    EXPECT_EQ(Fixed(-0.0004, 2), "0.00");
    EXPECT_EQ(Fixed(-0.006, 2), "-0.01");
}

TEST(LibraryText, KeepsChineseAndReplacesWhatGbkLacks) {
    int lost = 0;
    EXPECT_EQ(ToLibraryText("清溪", '?', lost), "\xC7\xE5\xCF\xAA");
    EXPECT_EQ(lost, 0);
    EXPECT_EQ(ToLibraryText("a\xF0\x9F\x98\x80z", '#', lost), "a#z");
    EXPECT_EQ(lost, 1);
}

TEST(LibraryText, ALetterWhoseAccentGbkLacksBecomesThePlainLetter) {
    int lost = 0;
    EXPECT_EQ(ToLibraryText("École ç", '?', lost), "Ecole c");
    EXPECT_EQ(lost, 2);
}

TEST(LibraryPath, HasBackslashesAndCarriesWhatGbkLacksByAnEscape) {
    EXPECT_EQ(LibraryPath("/a/清/b.dwg"), "\\a\\\xC7\xE5\\b.dwg");
    EXPECT_EQ(LibraryPath("/a/\xF0\x9F\x98\x80"),
              "\\a\\\xFF"
              "1F600\xFF");
    EXPECT_EQ(FromLibraryPath("\\a\\\xFF"
                              "1F600\xFF"),
              "/a/\xF0\x9F\x98\x80");
    EXPECT_EQ(LibraryPath("/" + std::string(300, 'x')), "");
}

TEST(Runs, OneByteCharactersOfAWideClassTakeTwoThirdsOfItsWidth) {
    Lettering wide;
    wide.height = 2.0;
    wide.width = 1.8;
    const auto runs = RunsOf("\xC7\xE5\x41\x42", wide);
    ASSERT_EQ(runs.size(), 2u);
    EXPECT_EQ(runs[0].width, 1.8);
    EXPECT_EQ(runs[0].characters(), 1);
    EXPECT_NEAR(runs[1].width, 1.17, 1e-12);  // 0.65 of it
    EXPECT_EQ(runs[1].characters(), 2);
    Lettering narrow = wide;
    narrow.width = 1.2;
    EXPECT_EQ(RunsOf("12.5", narrow)[0].width, 1.2);
}

TEST(Runs, AnAccentedLetterStaysInItsWord) {
    Lettering wide;
    wide.height = 2.0;
    wide.width = 2.0;
    EXPECT_EQ(RunsOf("D\xA8\xA6vote", wide).size(), 1u);  // Dévote
}

}  // namespace
