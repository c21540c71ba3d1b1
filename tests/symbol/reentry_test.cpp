// A message lets the application draw while a symbol is being drawn.
#include <gmock/gmock.h>

#include <functional>

#include "symbol/scratch.h"
#include "tests/support/recorded_numbers.h"
#include "tests/symbol/symbol_test.h"

namespace {

// Calls back once in the first message.
class CallingHost : public zm::test::TestHost {
 public:
    int ShowBox(const char* text, const char* title, unsigned int type) override {
        const int answer = TestHost::ShowBox(text, title, type);
        if (call) std::exchange(call, nullptr)();
        return answer;
    }
    std::function<void()> call;
};

class Reentry : public zm::test::DrawingTest {
 protected:
    CallingHost m_calling;
};

TEST_F(Reentry, DuringAHatchLeavesItsLinesAlone) {
    // The grid's symbol has a body that ends early, so every crossing shows a message.
    Load("*42 G\n2 -10000000,-120000 0,0 1,0\n5 1,1\n*12 H 1\n1 0 10 90 10 42\n*13 H 1\n2 30 3\n*$\n");
    const auto hatch = [](double at, int code) {
        double xy[] = {at, at, at + 40, at, at + 40, at + 40, at, at + 40};
        return DrawHatch(4, xy, code);
    };
    EXPECT_EQ(1, hatch(0.0, 12));
    const auto alone = Recorded();
    m_calling.call = [&] { hatch(500.0, 13); };
    EXPECT_EQ(1, hatch(0.0, 12));
    std::vector<std::string> outer;
    std::size_t others = 0;
    bool inner = false;
    for (const auto& c : Recorded()) {
        if (const auto line = zm::test::NumbersOf(c, "Line2"); !line.empty()) inner = line[0] > 400.0;
        if (inner || c.starts_with("Pline")) {
            ++others;
            continue;
        }
        outer.push_back(c);
    }
    EXPECT_GT(others, 10U);
    std::vector<std::string> wanted;
    for (const auto& c : alone)
        if (!c.starts_with("Pline")) wanted.push_back(c);
    EXPECT_EQ(wanted, outer);
}

TEST_F(Reentry, ThatLoadsAnotherLibraryEndsWhatWasDrawn) {
    Load("*42 G\n2 -10000000,-120000 0,0 1,0\n5 1,1\n*12 H 1\n1 0 10 90 10 42\n2 45 3\n*80 LC\n-3 G42 -2\n*$\n");
    m_calling.call = [&] { Load("*12 L 1\n*$\n"); };
    std::vector<double> xy = {0, 0, 40, 0, 40, 40, 0, 40};
    DrawHatch(4, xy.data(), 12);
    Load("*42 G\n2 -10000000,-120000 0,0 1,0\n5 1,1\n*80 LC\n-3 G42 -2\n*$\n");
    m_calling.call = [] { TsymbolClose(); };
    std::vector<double> x(4000), y(4000);
    x[1] = 100.0;
    EXPECT_EQ(1, PROCESSALL(2, x.data(), y.data(), 1, 80));
}

TEST(ScratchPool, GivesEachTakerItsOwnArrayAndKeepsThemForTheNext) {
    zm::symbol::ResetState();
    double* outer = nullptr;
    {
        const zm::symbol::Scratch first(100);
        const zm::symbol::Scratch second(100);
        ASSERT_NE(nullptr, first.data());
        EXPECT_NE(first.data(), second.data());
        outer = first.data();
    }
    const zm::symbol::Scratch again(50);
    const zm::symbol::Scratch other(100);
    EXPECT_TRUE(again.data() == outer || other.data() == outer);
}

TEST(ScratchPool, SurvivesMoreTakersThanItKeeps) {
    zm::symbol::ResetState();
    {
        std::vector<std::unique_ptr<zm::symbol::Scratch>> all;
        for (std::size_t i = 0; i < 30; ++i) all.push_back(std::make_unique<zm::symbol::Scratch>(100 + i));
        for (const auto& scratch : all) scratch->data()[99] = 1.0;
    }
    const zm::symbol::Scratch again(129);
    ASSERT_NE(nullptr, again.data());
    again.data()[128] = 1.0;
}

}  // namespace
