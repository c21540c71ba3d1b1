// Strokes on a device: the short way of those that lie in the view, and runs of strokes.
#include "draw/strokes.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <functional>
#include <limits>
#include <memory>
#include <utility>
#include <vector>

#include "tests/draw/fixture.h"
#include "tests/support/random.h"

namespace {

using zm::test::Lines;
using zm::test::Random;

class Strokes : public zm::test::DrawTest {};

// Coordinates in and about the view of 80 by 60 units, many of them on its edges or within a pixel of them.
double NearAnEdge(Random& random, double far) {
    const double edge = random.Int(0, 1) * far;
    switch (random.Int(0, 4)) {
        case 0:
            return edge;
        case 1:
            return edge + random.Real(-0.2, 0.2);
        case 2:
            return edge + random.Int(-2, 2) * 0.1;
        case 3:
            return random.Real(-30.0, far + 30.0);
        default:
            return random.Real(0.0, far);
    }
}

std::array<double, 4> RandomStroke(Random& random) {
    return {NearAnEdge(random, 80.0), NearAnEdge(random, 60.0), NearAnEdge(random, 80.0), NearAnEdge(random, 60.0)};
}

TEST_F(Strokes, AboutTheEdgesOfTheViewHaveThePixelsThatTheMappingTells) {
    ZM_TRACE_SEED();
    CTqDraw& dc = MakeContext(0);
    Random random(71);
    for (int i = 0; i < 4000; ++i) {
        const auto [sx1, sy1, sx2, sy2] = RandomStroke(random);
        device.Clear();
        dc.line(sx1, sy1, sx2, sy2);
        const Lines byLine = device.lines();
        int x1 = 0, y1 = 0, x2 = 0, y2 = 0;
        dc.GetViewPos(sx1, sy1, x1, y1);
        dc.GetViewPos(sx2, sy2, x2, y2);
        device.Clear();
        dc.line(x1, y1, x2, y2);
        ASSERT_EQ(byLine, device.lines()) << sx1 << ' ' << sy1 << ' ' << sx2 << ' ' << sy2;
    }
}

TEST_F(Strokes, OfAViewLargerThanDeviceCoordinatesKeepTheirLimit) {
    CTqDraw& dc = MakeContext(0);
    dc.SetViewDrawDC(&device, 10.0, 0.0, 0.0, 50000, 50000, 0);
    dc.line(1.0, 4999.0, 4000.0, 4998.0);
    EXPECT_EQ(device.lines(), (Lines{"MoveToEx 10 10", "LineTo 30000 20"}));
}

TEST_F(Strokes, OfATurnedViewAreTurned) {
    CTqDraw& dc = MakeContext(0);
    dc.SetViewDrawDC(&device, 10.0, 0.0, 0.0, 800, 600, 1);
    dc.line(1.0, 1.0, 2.0, 3.0);
    EXPECT_EQ(device.lines(), (Lines{"MoveToEx 790 10", "LineTo 780 30"}));
}

TEST_F(Strokes, ThatAreNoNumbersAreNotDrawn) {
    CTqDraw& dc = MakeContext(0);
    for (const double bad : {std::numeric_limits<double>::quiet_NaN(), HUGE_VAL, -HUGE_VAL})
        for (int place = 0; place < 4; ++place) {
            double v[] = {1.0, 1.0, 2.0, 2.0};
            v[place] = bad;
            EXPECT_EQ(dc.line(v[0], v[1], v[2], v[3]), 0);
        }
    EXPECT_EQ(device.lines(), Lines{});
}

// The settings of a context under which a run of strokes is drawn.
struct Setting {
    const char* name;
    int type;
    bool clipped, rotated, flipped;
};
void PrintTo(const Setting& setting, std::ostream* out) {
    *out << setting.name;
}

class RunsOfStrokes : public Strokes, public testing::WithParamInterface<Setting> {};

TEST_P(RunsOfStrokes, ReachTheSinkAsOneLineAfterAnother) {
    ZM_TRACE_SEED();
    const Setting& setting = GetParam();
    CTqDraw& dc = MakeContext(setting.type);
    dc.SetViewDrawDC(&device, 10.0, 0.0, 0.0, 800, 600, setting.flipped ? 1 : 0);
    if (setting.clipped) dc.SetCutArea(20.0, 10.0, 60.0, 50.0);
    dc.SetDoCut(setting.clipped ? 1 : 0);
    if (setting.rotated) dc.SetRotateMoveP(30.0, 40.0, 30.0);
    Random random(72);
    for (const int count : {0, 1, 31, 32, 33, 64, 200}) {
        std::vector<double> ends;
        for (int i = 0; i < count; ++i)
            for (const double v : RandomStroke(random)) ends.push_back(v);
        if (count > 33) ends[7] = std::numeric_limits<double>::quiet_NaN();
        device.Clear();
        writer.calls.clear();
        zm::draw::DrawStrokes(ends.data(), count);
        const Lines run = device.lines(), recorded = Recorded(dc), written = writer.calls;
        device.Clear();
        writer.calls.clear();
        for (std::size_t i = 0; i < ends.size(); i += 4) dc.line(ends[i], ends[i + 1], ends[i + 2], ends[i + 3]);
        EXPECT_EQ(run, device.lines());
        EXPECT_EQ(recorded, Recorded(dc));
        EXPECT_EQ(written, writer.calls);
        EXPECT_GE(run.size() + recorded.size() + written.size(), count > 30 ? 10u : 0u);
    }
}
INSTANTIATE_TEST_SUITE_P(
    Settings, RunsOfStrokes,
    testing::Values(Setting{"a_device", 0, false, false, false}, Setting{"a_monochrome_device", 2, false, false, false},
                    Setting{"a_clipped_device", 0, true, false, false},
                    Setting{"a_rotated_device", 0, false, true, false},
                    Setting{"a_flipped_device", 0, false, false, true}, Setting{"a_recording", 3, false, false, false},
                    Setting{"a_clipped_recording", 3, true, true, false}, Setting{"a_drawing", 1, false, false, false},
                    Setting{"a_clipped_drawing", 1, true, true, false}),
    [](const auto& info) { return std::string(info.param.name); });

// A device of the application that calls back where strokes arrive.
class CallingDevice : public zm::Device {
 public:
    void Moved(int, int) override {
        if (moved) std::exchange(moved, nullptr)();
    }
    int Line(const zm::Stroke&, int, int, int, int) override {
        ++lines;
        if (drawn) std::exchange(drawn, nullptr)();
        return 1;
    }
    COLORREF Dot(int, int, COLORREF color) override { return color; }
    int Arc(const zm::Stroke&, const RECT&, POINT, POINT) override { return 1; }
    int Box(const zm::Stroke*, const zm::Fill&, const RECT&) override { return 1; }
    int FillRegion(const zm::Region&, const zm::Fill&) override { return 1; }
    int Text(const zm::TextStyle&, int, int, std::string_view) override { return 1; }

    std::function<void()> moved, drawn;
    int lines = 0;
};

constexpr double kTwoStrokes[] = {1, 1, 2, 2, 2, 2, 3, 3};

TEST_F(Strokes, OnADeviceThatIsGoneAreNotDrawn) {
    CTqDraw& dc = MakeContext(0);
    {
        CallingDevice calling;
        dc.ResetHdc(&calling);
        zm::draw::DrawStrokes(kTwoStrokes, 2);
        EXPECT_EQ(calling.lines, 2);
    }
    zm::draw::DrawStrokes(kTwoStrokes, 2);
    EXPECT_EQ(dc.line(1.0, 1.0, 2.0, 2.0), 0);
    EXPECT_EQ(device.lines(), Lines{});
}

TEST_F(Strokes, EndWithADeviceThatEndsWhereItIsMovedTo) {
    CTqDraw& dc = MakeContext(0);
    auto calling = std::make_unique<CallingDevice>();
    dc.ResetHdc(calling.get());
    calling->moved = [&] { calling.reset(); };
    zm::draw::DrawStrokes(kTwoStrokes, 2);
    EXPECT_EQ(calling, nullptr);
    EXPECT_EQ(dc.line(1.0, 1.0, 2.0, 2.0), 0);
}

TEST_F(Strokes, GoOnOnTheContextThatTheApplicationPutsInTheOldOnesPlace) {
    CTqDraw& dc = MakeContext(0);
    CallingDevice calling;
    dc.ResetHdc(&calling);
    std::vector<double> ends;
    for (int i = 0; i < 100; ++i) ends.insert(ends.end(), {1.0, 1.0, 2.0, 2.0 + 0.1 * i});
    std::unique_ptr<CTqDraw> other;
    calling.drawn = [&] {
        context.reset();
        SelectWorkingTqDC(nullptr);
        other = std::make_unique<CTqDraw>(3);
    };
    zm::draw::DrawStrokes(ends.data(), 100);
    // What was on its way to the device arrives there.
    EXPECT_EQ(static_cast<std::size_t>(calling.lines) + Recorded(*other).size(), 100u);
    EXPECT_LE(calling.lines, zm::draw::StrokeRow::kMost);
}

TEST_F(Strokes, EndWithTheWorkingContext) {
    CTqDraw& dc = MakeContext(0);
    CallingDevice calling;
    dc.ResetHdc(&calling);
    const std::vector<double> ends(400, 1.0);
    calling.drawn = [&] { context.reset(); };
    zm::draw::DrawStrokes(ends.data(), 100);
    EXPECT_LE(calling.lines, zm::draw::StrokeRow::kMost);
}

zm::geometry::Pair At(double x, double y) {
    return zm::geometry::Pair{x, y};
}

TEST_F(Strokes, OfARowReachTheDeviceTogetherInTheirOrder) {
    MakeContext(0);
    zm::draw::StrokeRow row;
    row.Line(At(1.0, 1.0), At(2.0, 1.0));
    row.Line(At(3.0, 1.0), At(4.0, 1.0));
    EXPECT_EQ(device.lines(), Lines{});
    // What crosses the edge of the view is clipped, and not before those that wait.
    row.Line(At(-1.0, 1.0), At(5.0, 1.0));
    const Lines three = {"MoveToEx 10 590", "LineTo 20 590",  "MoveToEx 30 590",
                         "LineTo 40 590",   "MoveToEx 0 590", "LineTo 50 590"};
    EXPECT_EQ(device.lines(), three);
    row.Line(At(6.0, 1.0), At(7.0, 1.0));
    EXPECT_EQ(device.lines(), three);
    row.Flush();
    EXPECT_EQ(device.lines().size(), 8u);
    EXPECT_EQ(device.lines().back(), "LineTo 70 590");
    row.Flush();
    EXPECT_EQ(device.lines().size(), 8u);
}

TEST_F(Strokes, OfARowGoOutWhereThereIsNoMoreRoom) {
    MakeContext(0);
    zm::draw::StrokeRow row;
    const unsigned turn = row.turn();
    for (int i = 0; i < zm::draw::StrokeRow::kMost; ++i) row.Line(At(1.0, 1.0), At(2.0, 1.0));
    EXPECT_EQ(device.lines(), Lines{});
    EXPECT_EQ(row.turn(), turn);
    row.Line(At(1.0, 1.0), At(3.0, 1.0));
    EXPECT_EQ(device.lines().size(), 2u * zm::draw::StrokeRow::kMost);
    EXPECT_NE(row.turn(), turn);
    row.MakeRoom(zm::draw::StrokeRow::kMost);
    EXPECT_EQ(device.lines().back(), "LineTo 30 590");
}

TEST_F(Strokes, ThatArePutInARowAsPixelsStandAmongTheOthers) {
    MakeContext(0);
    zm::draw::StrokeRow row;
    row.Line(At(1.0, 1.0), At(2.0, 1.0));
    ASSERT_TRUE(row.IsOpen());
    row.MakeRoom(2);
    POINT* ends = row.next();
    for (int i = 0; i < 4; ++i) ends[i] = {100 + i, 200 + i};
    row.Take(2);
    row.Line(At(3.0, 1.0), At(4.0, 1.0));
    row.Flush();
    EXPECT_EQ(device.lines(), (Lines{"MoveToEx 10 590", "LineTo 20 590", "MoveToEx 100 200", "LineTo 101 201",
                                     "MoveToEx 102 202", "LineTo 103 203", "MoveToEx 30 590", "LineTo 40 590"}));
}

TEST_F(Strokes, OfARowGoToARecordingAtOnceAndToWhateverTakesItsPlace) {
    CTqDraw& dc = MakeContext(3);
    zm::draw::StrokeRow row;
    EXPECT_FALSE(row.IsOpen());
    row.Line(At(1.0, 1.0), At(2.0, 1.0));
    row.Line(At(1.0, 1.0), At(3.0, 1.0));
    EXPECT_EQ(Recorded(dc).size(), 2u);
    // Another kind of context, one of the same kind, none.
    context.reset();
    SelectWorkingTqDC(nullptr);
    MakeContext(0);
    row.Line(At(1.0, 1.0), At(2.0, 1.0));
    row.Flush();
    EXPECT_EQ(device.lines(), (Lines{"MoveToEx 10 590", "LineTo 20 590"}));
    context.reset();
    SelectWorkingTqDC(nullptr);
    row.Line(At(1.0, 1.0), At(2.0, 1.0));
    row.Flush();
    EXPECT_EQ(device.lines().size(), 2u);
    CTqDraw& other = MakeContext(3);
    row.Line(At(1.0, 1.0), At(2.0, 1.0));
    EXPECT_EQ(Recorded(other).size(), 1u);
}

TEST_F(Strokes, OfARowGoToTheContextThatWorksNowAndNotToTheOneBefore) {
    CTqDraw& before = MakeContext(3);
    zm::draw::StrokeRow row;
    row.Line(At(1.0, 1.0), At(2.0, 1.0));
    SelectWorkingTqDC(nullptr);
    CTqDraw now(3);
    row.Line(At(1.0, 1.0), At(3.0, 1.0));
    row.Line(At(1.0, 1.0), At(4.0, 1.0));
    EXPECT_EQ(Recorded(now).size(), 2u);
    EXPECT_EQ(Recorded(before).size(), 1u);
}

TEST_F(Strokes, OfARowKeepTheirOrderWhereTheContextIsNoLongerClipped) {
    CTqDraw& dc = MakeContext(0);
    dc.SetCutArea(0.0, 0.0, 80.0, 60.0);
    dc.SetDoCut(1);
    zm::draw::StrokeRow row;
    row.Line(At(1.0, 1.0), At(2.0, 1.0));
    EXPECT_EQ(device.lines().size(), 2u);
    dc.SetDoCut(0);
    ASSERT_TRUE(row.IsOpen());
    row.Line(At(3.0, 1.0), At(4.0, 1.0));
    EXPECT_EQ(device.lines().size(), 2u);
    row.Line(At(-1.0, 1.0), At(5.0, 1.0));
    row.Flush();
    EXPECT_EQ(device.lines(), (Lines{"MoveToEx 10 590", "LineTo 20 590", "MoveToEx 30 590", "LineTo 40 590",
                                     "MoveToEx 0 590", "LineTo 50 590"}));
}

}  // namespace
