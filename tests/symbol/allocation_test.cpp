// What drawing allocates, and what happens without memory.
#include "tests/symbol/allocation.h"

#include <gmock/gmock.h>

#include <cmath>

#include "draw/device.h"
#include "platform/device/objects.h"
#include "symbol/texts.h"
#include "tests/symbol/symbol_test.h"

using testing::ElementsAre;
using testing::SizeIs;
using zm::test::Allocations;
using zm::test::NoMemory;

namespace {

class Allocation : public zm::test::DrawingTest {
 protected:
    Allocation() { Begin(0); }
    /// Allocations of a second call; the first may fill the pool of work arrays.
    template <class Call>
    std::size_t OfSecondCall(Call call) {
        call();
        const std::size_t before = Allocations();
        call();
        return Allocations() - before;
    }
};

constexpr char kLibrary[] =
    "*12 G\n1 -1,-1 1,-1\n1 1,-1 1,1\n1 1,1 -1,1\n1 -1,1 -1,-1\n1 -1,-1 1,1\n2 0,0 1,1 2,0\n"
    "2 -10000000,90000 0,0 1,0 -10000000,45000 2,2\n3 0,0 1\n4 0,0 1,0 0,1\n5 1,1\n"
    "*13 G\n5 0,0\n5 2,2\n*80 LC\n+4 -2\n*81 LC\nL W1 +4 -2 G12\n*82 LC D2 A1\nG12 G13\n*85 L 1\n*90 H 1\n2 45 3\n*$\n";

TEST_F(Allocation, OfATenStrokeSymbolIsNone) {
    Load(kLibrary);
    EXPECT_EQ(0U, OfSecondCall([] { insert(50.0, 50.0, 0.3, 12); }));
    EXPECT_GT(m_device.lines, 20);
}

TEST_F(Allocation, OfSymbolsInTurnIsNone) {
    Load(kLibrary);
    EXPECT_EQ(0U, OfSecondCall([] {
                  for (int i = 0; i < 100; ++i) {
                      insert(50.0, 50.0, 0.3, 12);
                      insert(50.0, 50.0, 0.3, 13);
                  }
              }));
}

TEST_F(Allocation, OfADashPatternAlongAMillionVerticesIsNone) {
    Load(kLibrary);
    Begin(0, 0.05);  // a view of 400 km
    constexpr int kVertices = 1000000;
    std::vector<double> x(kVertices), y(kVertices);
    const auto draw = [&] {
        for (std::size_t i = 0; i < x.size(); ++i) {
            x[i] = 0.3 * static_cast<double>(i);
            y[i] = i % 2 == 0 ? 0.0 : 0.2;
        }
        PROCESSALL(kVertices, x.data(), y.data(), 1, 80);
    };
    EXPECT_EQ(0U, OfSecondCall(draw));
    EXPECT_GT(m_device.lines, 100000);
}

TEST_F(Allocation, OfPatternsWithSymbolsAndCompanionsIsNone) {
    Load(kLibrary);
    std::vector<double> x(100), y(100);
    for (const int code : {81, 82}) {
        const auto draw = [&] {
            for (std::size_t i = 0; i < x.size(); ++i) {
                x[i] = 3.0 * static_cast<double>(i);
                y[i] = i % 2 == 0 ? 5.0 : 6.0;
            }
            PROCESSALL(100, x.data(), y.data(), 1, code);
        };
        EXPECT_EQ(0U, OfSecondCall(draw)) << code;
    }
}

TEST_F(Allocation, OfAPlainLineIsNone) {
    Load(kLibrary);
    std::vector<double> x = {1, 50, 90}, y = {1, 20, 3};
    EXPECT_EQ(0U, OfSecondCall([&] { PROCESSALL(3, x.data(), y.data(), 1, 85); }));
}

TEST_F(Allocation, FailureOfTheScratchIsReported) {
    Load(kLibrary);
    std::vector<double> x(4000, 1.0), y(4000, 2.0);
    {
        const NoMemory none(30000);
        EXPECT_EQ(0, PROCESSALL(3, x.data(), y.data(), 1, 85));
    }
    EXPECT_THAT(Messages(), ElementsAre("mem err"));
    EXPECT_EQ(0, m_device.lines);
}

TEST_F(Allocation, FailureInASolidPatternIsReported) {
    Load("*80 LC\n+4\n*$\n");
    std::vector<double> x(4000, 1.0), y(4000, 2.0);
    getsymbody(80);
    {
        const NoMemory none(30000);
        EXPECT_EQ(0, NewLC(x.data(), y.data(), 4000, 80));
    }
    EXPECT_THAT(Messages(), ElementsAre("mem err"));
}

TEST_F(Allocation, FailureInAHatchIsReported) {
    Load(kLibrary);
    std::vector<double> xy = {0, 0, 40, 0, 40, 40, 0, 40};
    {
        const NoMemory none(30000);
        EXPECT_EQ(0, DrawHatch(4, xy.data(), 90));
    }
    EXPECT_THAT(Messages(), ElementsAre("no space"));
}

#ifndef _WIN32  // there the system keeps the objects
// Destructors delete objects; an exception out of one would end the program. So many fit into no list that has room left.
TEST_F(Allocation, DeletingObjectsNeedsNone) {
    std::vector<HPEN> pens(5000);
    for (HPEN& pen : pens) pen = zm::device::CreatePen(PS_SOLID, 1, 7);
    const int before = zm::platform::ObjectCount();
    {
        const NoMemory none;
        for (const HPEN pen : pens) zm::device::DeleteObject(pen);
    }
    EXPECT_EQ(before - 5000, zm::platform::ObjectCount());
}
#endif

TEST_F(Allocation, FailureOfTheHatchLinesLeavesTheOutline) {
    Load(kLibrary);
    std::vector<double> xy;
    for (int i = 0; i < 5000; ++i) {
        const double a = i * 6.283185307179586 / 5000;
        xy.insert(xy.end(), {50.0 + 40.0 * std::cos(a), 50.0 + 40.0 * std::sin(a)});
    }
    DrawHatch(4, xy.data(), 90);  // the points of an entry are in the pool now
    m_device.lines = 0;
    {
        const NoMemory none(65000);
        EXPECT_EQ(1, DrawHatch(5000, xy.data(), 90));
    }
    EXPECT_GT(m_device.lines, 100);
    EXPECT_LE(m_device.lines, 5000);
}

TEST_F(Allocation, FailureOfTheTickedLineIsShownInABoxOfItsOwn) {
    Load("*14 E 12\n*$\n");
    std::vector<double> x(4000), y(4000);
    for (std::size_t i = 0; i < x.size(); ++i) x[i] = static_cast<double>(i);
    {
        const NoMemory none(30000);
        EXPECT_EQ(1, PROCESSALL(4000, x.data(), y.data(), 1, 14));
    }
    ASSERT_THAT(m_host.boxes, SizeIs(1));
    EXPECT_EQ(zm::symbol::texts::kOutOfMemory.gbk, m_host.boxes[0].text);
    EXPECT_EQ("SS", m_host.boxes[0].title);
}

TEST_F(Allocation, FailureOfTheTablesEndsTheProcess) {
    zm::test::WriteFile(m_scratch / "symbol.dat", "*12 G\n5 1,1\n*$\n");
    const std::string path = PathText("symbol.dat");
    int status = -1;
    {
        const NoMemory none(60000);
        try {
            TsymbolInit(path.c_str());
        } catch (const zm::test::ProcessEnded& end) {
            status = end.status;
        }
    }
    EXPECT_EQ(0, status);
    EXPECT_THAT(Messages(), ElementsAre("symwin space err"));
    EXPECT_EQ(0, IsTsymboled());
}

}  // namespace
