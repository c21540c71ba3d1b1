#include "runtime/text/numbers.h"

#include <gtest/gtest.h>

#include <clocale>
#include <cmath>

namespace {

// Puts a locale with a decimal comma in force, where the machine has one.
class CommaLocale {
 public:
    CommaLocale() : m_previous(std::setlocale(LC_ALL, nullptr)) {
        for (const char* name : {"de_DE.UTF-8", "fr_FR.UTF-8"})
            if (std::setlocale(LC_ALL, name) != nullptr) {
                inForce = true;
                return;
            }
    }
    ~CommaLocale() { std::setlocale(LC_ALL, m_previous.c_str()); }
    CommaLocale(const CommaLocale&) = delete;
    CommaLocale& operator=(const CommaLocale&) = delete;
    bool inForce = false;

 private:
    std::string m_previous;
};

TEST(Numbers, PrintAPointUnderACommaLocale) {
    const CommaLocale comma;
    if (!comma.inForce) GTEST_SKIP() << "no locale with a decimal comma on this machine: generate de_DE.UTF-8";
    EXPECT_EQ(zm::numbers::Text("%.2f %d", 1.5, 7), "1.50 7");
    EXPECT_DOUBLE_EQ(zm::numbers::ReadReal("2.75"), 2.75);
    EXPECT_STREQ(std::localeconv()->decimal_point, ",");
}

TEST(Numbers, PrintStopsAtTheBuffer) {
    char buffer[4];
    EXPECT_EQ(zm::numbers::Print(buffer, sizeof buffer, "%d", 123456), 6);
    EXPECT_STREQ(buffer, "123");
}

struct ReadCase {
    const char* name;
    const char* text;
    double value;
    int used;
};
void PrintTo(const ReadCase& c, std::ostream* out) {
    *out << c.name;
}
constexpr ReadCase kReadCases[] = {
    {"plain", "1.5", 1.5, 3},
    {"blanks_before_are_passed", " \t-2", -2.0, 4},
    {"plus_sign", "+3e2x", 300.0, 4},
    {"plus_then_minus_is_no_number", "+-3", 0.0, 0},
    {"comma_ends_the_number", "1,5", 1.0, 1},
    {"no_number", "abc", 0.0, 0},
    {"empty", "", 0.0, 0},
    {"too_small_is_zero", "1e-999", 0.0, 6},
    {"hexadecimal_is_not_read", "0x10", 0.0, 1},
};
class ReadReal : public testing::TestWithParam<ReadCase> {};
TEST_P(ReadReal, GivesValueAndEnd) {
    const char* end = nullptr;
    EXPECT_EQ(zm::numbers::ReadReal(GetParam().text, &end), GetParam().value);
    EXPECT_EQ(end - GetParam().text, GetParam().used);
}
INSTANTIATE_TEST_SUITE_P(Numbers, ReadReal, testing::ValuesIn(kReadCases),
                         [](const auto& info) { return std::string(info.param.name); });

TEST(Numbers, TooLargeIsInfinity) {
    EXPECT_TRUE(std::isinf(zm::numbers::ReadReal("1e999")));
}

}  // namespace
