// Line coordinate text and hachures.
#include <gmock/gmock.h>

#include <clocale>
#include <cmath>
#include <limits>

#include "symbol/ornaments/hachures.h"
#include "tests/symbol/symbol_test.h"

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

class LineCor : public zm::test::DrawingTest {
 protected:
    LineCor() : m_path(m_scratch / "line.cor"), m_file(zm::test::OpenFile(m_path, "wb")) {}
    ~LineCor() override {
        if (m_file != nullptr) std::fclose(m_file);
    }
    std::string Text() {
        std::fclose(m_file);
        m_file = nullptr;
        return zm::test::ReadFile(m_path);
    }
    std::filesystem::path m_path;
    std::FILE* m_file;
};

TEST_F(LineCor, WritesARecordWithTheOffsetAdded) {
    int no = 5;
    EXPECT_EQ(0, AppendLineCor(10, 20, 0, 0, no, -1, m_file));
    EXPECT_EQ(5, no);
    EXPECT_EQ(7, AppendLineCor(1, 1, 2, 2, no, 7, m_file));
    EXPECT_EQ(7, no);
    EXPECT_EQ("  7 2 1\n5 11.000 21.000 9999.0 \n6 12.000 22.000 9999.0 \n", Text());
}

TEST_F(LineCor, OffsetStaysUntilTheNext) {
    int no = 1;
    AppendLineCor(10, 20, 0, 0, no, -1, m_file);
    AppendLineCor(0, 0, 0, 0, no, -1, m_file);
    AppendLineCor(1, 2, 3, 4, no, 1234, m_file);
    EXPECT_EQ("1234 2 1\n1 1.000 2.000 9999.0 \n2 3.000 4.000 9999.0 \n", Text());
}

TEST_F(LineCor, HasADecimalPointInEveryLocale) {
    const std::string before = std::setlocale(LC_ALL, nullptr);
    std::setlocale(LC_ALL, "de_DE.UTF-8");
    int no = 1;
    AppendLineCor(1.5, 2.5, 3.5, 4.5, no, 1, m_file);
    std::setlocale(LC_ALL, before.c_str());
    EXPECT_EQ("  1 2 1\n1 1.500 2.500 9999.0 \n2 3.500 4.500 9999.0 \n", Text());
}

TEST_F(LineCor, WithoutAFileWritesNothing) {
    int no = 3;
    EXPECT_EQ(0, AppendLineCor(1, 2, 3, 4, no, 1, nullptr));
    EXPECT_EQ(3, no);
}

TEST_F(LineCor, HachuresDivideTheHeightIntoWholeSteps) {
    zm::symbol::HachureState state{.spacing = 2.9};
    // Height 12 over the base: four steps of 3.
    EXPECT_EQ(1, zm::symbol::DrawTriangleHachures(state, {10, 14}, {4, 2}, {20, 2}, 0));
    EXPECT_NEAR(3.0, state.spacing, 1e-9);  // the height comes from the triangle's sides
    EXPECT_NEAR(0.25, state.ratio, 1e-12);
    EXPECT_THAT(Recorded(),
                ElementsAre("Line2:5.500000:5.000000:17.500000:5.000000", "Line2:7.000000:8.000000:15.000000:8.000000",
                            "Line2:8.500000:11.000000:12.500000:11.000000"));
}

TEST_F(LineCor, HachuresKeepTheRatioOfTheFirstTriangle) {
    zm::symbol::HachureState state{.spacing = 5.9};
    zm::symbol::DrawTriangleHachures(state, {0, 12}, {0, 0}, {10, 0}, 0);
    Recorded();
    EXPECT_EQ(1, zm::symbol::DrawTriangleHachures(state, {0, 4}, {0, 0}, {10, 0}, 1));
    EXPECT_THAT(Recorded(), ElementsAre("Line2:0.000000:2.000000:5.000000:2.000000"));
}

TEST_F(LineCor, HachuresOfATriangleTooLowOrWithTheStopFlagDrawNothing) {
    zm::symbol::HachureState state{.spacing = 11.9};
    EXPECT_EQ(0, zm::symbol::DrawTriangleHachures(state, {0, 12}, {0, 0}, {10, 0}, 0));
    EXPECT_TRUE(state.first);
    state.spacing = 3.0;
    state.stop = true;
    EXPECT_EQ(0, zm::symbol::DrawTriangleHachures(state, {0, 12}, {0, 0}, {10, 0}, 0));
    EXPECT_THAT(Recorded(), IsEmpty());
}

TEST_F(LineCor, HachuresGoToTheFileWhereOneIsSet) {
    zm::symbol::HachureState state{.spacing = 5.9};
    zm::symbol::state().hachureFile = m_file;
    zm::symbol::state().hachureGroup = 4;
    EXPECT_EQ(1, zm::symbol::DrawTriangleHachures(state, {0, 12}, {0, 0}, {10, 0}, 0));
    EXPECT_THAT(Recorded(), IsEmpty());
    EXPECT_EQ("  4 2 1\n1 0.000 6.000 9999.0 \n2 5.000 6.000 9999.0 \n", Text());
}

TEST_F(LineCor, HachuresOfOddNumbersEnd) {
    constexpr double kNan = std::numeric_limits<double>::quiet_NaN();
    constexpr double kInf = std::numeric_limits<double>::infinity();
    for (const double v : {kNan, kInf, 0.0, -3.0, 1e-300, 1e-7}) {
        zm::symbol::HachureState state{.spacing = v};
        zm::symbol::DrawTriangleHachures(state, {0, 12}, {0, 0}, {10, 0}, 0);
        zm::symbol::HachureState other{.spacing = 1.0};
        zm::symbol::DrawTriangleHachures(other, {0, v}, {0, 0}, {v, 0}, 0);
        Recorded();
    }
    SUCCEED();
}

}  // namespace
