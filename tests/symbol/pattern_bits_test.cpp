// Patterns and turned symbols reach a drawing file with the bits that XYSA, step by step, gives them.
#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <vector>

#include "symbol/file/library.h"
#include "tests/support/random.h"
#include "tests/support/writer_trace.h"
#include "tests/symbol/pattern_steps.h"
#include "tests/symbol/symbol_test.h"

namespace {

using zm::test::LayStepByStep;
using zm::test::Random;
using zm::test::Token;

/// Keeps what reaches the writer as it is.
class NumberTrace : public zm::test::Trace {
 public:
    NumberTrace() : m_previous(zm::test::SetTrace(this)) {}
    ~NumberTrace() override { zm::test::SetTrace(m_previous); }
    NumberTrace(const NumberTrace&) = delete;
    NumberTrace& operator=(const NumberTrace&) = delete;

    void Line(double x1, double y1, double x2, double y2) override { calls.push_back({x1, y1, x2, y2}); }
    void Polyline(const double* xy, int n) override { calls.emplace_back(xy, xy + 2 * n); }
    void Point(double x, double y) override { calls.push_back({x, y}); }
    void Arc(double x, double y, double r, double start, double end) override {
        calls.push_back({x, y, r, start, end});
    }
    void Insert(double x, double y, double, double, double angle, const char*) override {
        calls.push_back({x, y, angle});
    }

    std::vector<std::vector<double>> calls;

 private:
    zm::test::Trace* m_previous;
};

class PatternBits : public zm::test::DrawingTest {
 protected:
    // Segments in a row, a polyline, a circle, an arc; a block in place of code 43.
    void LoadSymbols(const std::string& pattern) {
        Load(
            "*42 G\n1 0.3,0.4 1,-0.5\n1 0,0 0,1\n2 0,0 1,0 0.7,1.1\n3 0.5,0.5 0.25\n1 -1,0 1,0\n"
            "4 0,0 0.5,0 0,0.5\n*43 G\n5 0,0\n*80 LC\n" +
            pattern + "\n*$\n");
    }
    NumberTrace m_numbers;
};

struct Area {
    const char* name;
    double x, y;  // about here
    bool square;  // legs along the axes, of whole lengths
};
void PrintTo(const Area& area, std::ostream* out) {
    *out << area.name;
}

class PatternsInAnArea : public PatternBits, public testing::WithParamInterface<Area> {};

TEST_P(PatternsInAnArea, HaveTheBitsOfEachStep) {
    ZM_TRACE_SEED();
    Random random(81);
    const std::vector<Token> tokens = {{'+', 1.5}, {'-', 0.5}, {'G', 42.0}, {'-', 1.0}, {'G', 43.0}, {'-', 0.25}};
    LoadSymbols("+1.5 -0.5 G42 -1 G43 -0.25");
    Begin(1);
    std::vector<const char*> blocks(1000, nullptr);
    blocks[0] = "blocks";
    blocks[43] = "TREE";
    SetSymbolBlockTable(blocks.data());
    for (int round = 0; round < 300; ++round) {
        std::vector<double> x = {GetParam().x + random.Int(-9, 9)}, y = {GetParam().y + random.Int(-9, 9)};
        for (int legs = random.Int(1, 5); legs > 0; --legs) {
            const bool level = random.Int(0, 1) != 0;
            const double dx = random.Real(-20.0, 20.0), dy = random.Real(-20.0, 20.0);
            x.push_back(x.back() + (GetParam().square ? level ? random.Int(-9, 9) : 0 : dx));
            y.push_back(y.back() + (GetParam().square ? level ? 0 : random.Int(-9, 9) : dy));
        }
        m_numbers.calls.clear();
        const auto [toldX, toldY] = LayStepByStep(tokens, x, y, 1000.0);
        const auto reported = m_numbers.calls;
        m_numbers.calls.clear();
        getsymbody(80);
        NewLC(x.data(), y.data(), static_cast<int>(x.size()), 80);
        ASSERT_EQ(m_numbers.calls, reported) << "round " << round;
        ASSERT_EQ(x, toldX);
        ASSERT_EQ(y, toldY);
    }
}
INSTANTIATE_TEST_SUITE_P(Areas, PatternsInAnArea,
                         testing::Values(Area{"about_the_origin", 0.0, 0.0, false},
                                         Area{"of_a_local_system", 500.0, 1200.0, false},
                                         Area{"of_a_projection", 512345.25, 3391234.5, false},
                                         Area{"far_out", 1e12, -1e12, false},
                                         Area{"square_about_the_origin", 0.0, 0.0, true},
                                         Area{"square_of_a_projection", 512345.0, 3391234.0, true}),
                         [](const auto& info) { return std::string(info.param.name); });

TEST_F(PatternBits, ATurnedSymbolHasTheBitsOfItsCosineAndSine) {
    ZM_TRACE_SEED();
    Random random(82);
    Load("*42 G\n1 0.3,0.4 1,-0.5\n1 0,0 0,1\n*$\n");
    Begin(1);
    for (int round = 0; round < 500; ++round) {
        const double x = random.Real(-1e6, 1e6), y = random.Real(-1e6, 1e6), a = random.Real(-7.0, 7.0);
        m_numbers.calls.clear();
        insert(x, y, a, 42);
        ASSERT_EQ(m_numbers.calls.size(), 2u);
        for (std::size_t i = 0; i < 4; ++i) {
            const SYMBODY& point = TheBody[i < 2 ? 1 + i : 3 + i];
            const double u = point.point.x, v = point.point.y;
            const auto& stroke = m_numbers.calls[i / 2];
            ASSERT_EQ(stroke[i % 2 * 2], x + (u * std::cos(a) - v * std::sin(a)) * 1000.0);
            ASSERT_EQ(stroke[i % 2 * 2 + 1], y + (v * std::cos(a) + u * std::sin(a)) * 1000.0);
        }
    }
}

TEST_F(PatternBits, ManySegmentsInARowAreAllDrawnInTheirOrder) {
    std::string text = "*42 G\n";
    for (int i = 0; i < 100; ++i) {
        text += "1 0,0 " + std::to_string(i + 1) + ",0\n";
        if (i == 70) text += "5 9,9\n";
    }
    Load(text + "*$\n");
    Begin(1);
    insert(0.0, 0.0, 0.0, 42);
    ASSERT_EQ(m_numbers.calls.size(), 101u);
    for (std::size_t i = 0; i < 101; ++i) {
        const bool dot = i == 71;
        ASSERT_EQ(m_numbers.calls[i].size(), dot ? 2u : 4u) << i;
        EXPECT_NEAR(m_numbers.calls[i][dot ? 0 : 2], dot ? 9.0 : static_cast<double>(i < 71 ? i + 1 : i), 1e-4) << i;
    }
}

TEST_F(PatternBits, RecordsThatTheCallerPutsInTheBodysPlaceAreDrawn) {
    using zm::symbol::PointRecord;
    Load("*42 G\n1 0,0 1,0\n1 0,0 2,0\n*$\n");
    Begin(1);
    insert(0.0, 0.0, 0.0, 42);
    m_numbers.calls.clear();
    SYMBODY own[] = {PointRecord(5.0F, 0.0F), PointRecord(0.003F, 0.0F), zm::symbol::Terminator(),
                     PointRecord(1.0F, 0.0F), PointRecord(0.001F, 0.0F), PointRecord(0.002F, 0.0F),
                     zm::symbol::Terminator()};
    TheBody = own;
    nBody = 7;
    insert(0.0, 0.0, 0.0, 42);  // the code of the symbol before is not looked up again
    ASSERT_EQ(m_numbers.calls.size(), 2u);
    EXPECT_EQ(m_numbers.calls[0].size(), 2u);
    EXPECT_NEAR(m_numbers.calls[0][0], 3.0, 1e-6);
    EXPECT_NEAR(m_numbers.calls[1][2], 2.0, 1e-6);
}

TEST_F(PatternBits, SegmentsBehindThoseOfTheSymbolAreNotDrawn) {
    Load("*42 G\n1 0,0 1,0\n1 0,0 2,0\n*43 G\n1 0,0 3,0\n1 0,0 4,0\n*$\n");
    Begin(1);
    insert(0.0, 0.0, 0.0, 42);
    m_numbers.calls.clear();
    nBody = 16;  // those of the next symbol in the table too
    insert(0.0, 0.0, 0.0, 42);
    EXPECT_EQ(m_numbers.calls.size(), 2u);
}

TEST_F(PatternBits, ABodyThatTheCallerCutsShortIsDrawnAsFarAsItGoes) {
    Load("*42 G\n1 0,0 1,0\n1 0,0 2,0\n1 0,0 3,0\n*$\n");
    Begin(1);
    insert(0.0, 0.0, 0.0, 42);
    m_numbers.calls.clear();
    nBody = 7;  // the second segment has lost its terminator
    insert(0.0, 0.0, 0.0, 42);
    EXPECT_EQ(m_numbers.calls.size(), 2u);
    EXPECT_EQ(Messages(), (std::vector<std::string>{"cID error"}));
}

// Which floats count as -100 is decided by numbers; by the text they are those within 1e-5.
TEST(Terminator, IsEveryFloatWithin1em5OfMinus100) {
    for (float x = -100.001F; x < -99.999F; x = std::nextafter(x, 0.0F))
        ASSERT_EQ(zm::symbol::IsTerminator(zm::symbol::PointRecord(x, -100.0F)), std::fabs(x - -100.0) < 1e-5) << x;
    EXPECT_FALSE(zm::symbol::IsTerminator(zm::symbol::PointRecord(-100.0F, 0.0F)));
    EXPECT_FALSE(zm::symbol::IsTerminator(zm::symbol::PointRecord(std::nanf(""), -100.0F)));
}

}  // namespace
