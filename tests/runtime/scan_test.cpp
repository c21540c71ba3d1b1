// Fields of a line.
#include "runtime/text/scan.h"

#include <gtest/gtest.h>

using namespace zm;
using zm::scan::Scanner;

namespace {

struct IntCase {
    const char* name;
    const char* text;
    bool found;
    int value;
};
void PrintTo(const IntCase& c, std::ostream* out) {
    *out << c.name;
}
class ScannerInt : public testing::TestWithParam<IntCase> {};
TEST_P(ScannerInt, ReadsAsTheConversionDoes) {
    int value = -99;
    EXPECT_EQ(GetParam().found, Scanner(GetParam().text).Int(value));
    EXPECT_EQ(GetParam().value, value);
}
INSTANTIATE_TEST_SUITE_P(Texts, ScannerInt,
                         testing::Values(IntCase{"plain", "12", true, 12}, IntCase{"blanks_ahead", " \t12", true, 12},
                                         IntCase{"text_behind", "12abc", true, 12}, IntCase{"plus", "+5", true, 5},
                                         IntCase{"minus", "-5", true, -5}, IntCase{"sign_alone", "-", false, -99},
                                         IntCase{"sign_apart", "- 5", false, -99}, IntCase{"empty", "", false, -99},
                                         IntCase{"word", "x", false, -99},
                                         IntCase{"beyond", "99999999999999999999999", true, 2147483647},
                                         IntCase{"below", "-99999999999999999999999", true, -2147483647 - 1},
                                         IntCase{"a_code_and_32_bits", "4294967308", true, 2147483647}),
                         [](const auto& info) { return std::string(info.param.name); });

// Colours in settings are written without a sign.
TEST(Fields, KeepTheLow32BitsOfNumbers) {
    int number = 0;
    EXPECT_TRUE(scan::Fields("4294967295").Int(number));
    EXPECT_EQ(number, -1);
    EXPECT_TRUE(scan::Fields("-4294967301").Int(number));
    EXPECT_EQ(number, -5);
}

TEST(Fields, GoOnBehindAZeroByte) {
    scan::Fields fields(std::string_view("a\0b 7", 5));
    std::string_view word;
    int number = 0;
    char byte = 0;
    EXPECT_TRUE(fields.Word(word));
    EXPECT_EQ(word, std::string_view("a\0b", 3));
    EXPECT_FALSE(fields.Literal('7'));
    EXPECT_TRUE(fields.Int(number));
    EXPECT_EQ(number, 7);
    EXPECT_TRUE(fields.AtEnd());
    EXPECT_FALSE(fields.Byte(byte));
    EXPECT_FALSE(fields.Word(word));
}

TEST(ScannerPair, NeedsItsCommaDirectlyBehindTheFirstNumber) {
    float x = 7.0F;
    float y = 7.0F;
    EXPECT_TRUE(Scanner(" 1.5, -2e1").Pair(x, y));
    EXPECT_EQ(1.5F, x);
    EXPECT_EQ(-20.0F, y);
    EXPECT_FALSE(Scanner("1 ,2").Pair(x, y));
    EXPECT_FALSE(Scanner("1,").Pair(x, y));
    EXPECT_FALSE(Scanner(",2").Pair(x, y));
    EXPECT_EQ(1.5F, x);
}

TEST(ScannerHex, TakesAPrefixAndLimitsTo32Bits) {
    std::uint32_t value = 0;
    EXPECT_TRUE(Scanner(" 0xFf").Hex(value));
    EXPECT_EQ(255U, value);
    EXPECT_TRUE(Scanner("123456789a").Hex(value));
    EXPECT_EQ(0xFFFFFFFFU, value);
    EXPECT_FALSE(Scanner("xyz").Hex(value));
    EXPECT_TRUE(Scanner("0x").Hex(value));
    EXPECT_EQ(0U, value);
}

TEST(LeadingNumber, IsZeroWhereNoneStands) {
    EXPECT_EQ(-2.5, zm::scan::LeadingNumber("-2.5mm"));
    EXPECT_EQ(0.5, zm::scan::LeadingNumber(".5"));
    EXPECT_EQ(0.0, zm::scan::LeadingNumber(""));
    EXPECT_EQ(0.0, zm::scan::LeadingNumber("."));
    EXPECT_EQ(0.0, zm::scan::LeadingNumber("inf"));
}

}  // namespace
