// Strokes on a device: the short way of those that lie in the view, and runs of strokes.
#include "draw/stroke/stream.h"

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
#include "zenromath/null_device.h"

namespace {

using zm::test::Lines;
using zm::test::Random;

class Strokes : public zm::test::DrawTest {};

// Coordinates in and about the view of 80 by 60 units, many of them on its edges or within a pixel of them.
double NearAnEdge(Random& random, double extent) {
    const double edge = random.Int(0, 1) * extent;
    switch (random.Int(0, 4)) {
        case 0:
            return edge;
        case 1:
            return edge + random.Real(-0.2, 0.2);
        case 2:
            return edge + random.Int(-2, 2) * 0.1;
        case 3:
            return random.Real(-30.0, extent + 30.0);
        default:
            return random.Real(0.0, extent);
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

// One stream of strokes, four values for each.
void StreamStrokes(const double* ends, std::size_t count) {
    zm::draw::StrokeStream stream;
    for (std::size_t i = 0; i < 4 * count; i += 4)
        stream.Line(zm::geometry::Pair{ends[i], ends[i + 1]}, zm::geometry::Pair{ends[i + 2], ends[i + 3]});
    stream.Flush();
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
        StreamStrokes(ends.data(), static_cast<std::size_t>(count));
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
class CallingDevice : public zm::NullDevice {
 public:
    void Moved(int, int) override {
        if (moved) std::exchange(moved, nullptr)();
    }
    int Line(const zm::Stroke&, int, int, int, int) override {
        ++lines;
        if (drawn) std::exchange(drawn, nullptr)();
        return 1;
    }

    std::function<void()> moved, drawn;
    int lines = 0;
};

constexpr double kTwoStrokes[] = {1, 1, 2, 2, 2, 2, 3, 3};

TEST_F(Strokes, OnADeviceThatIsGoneAreNotDrawn) {
    CTqDraw& dc = MakeContext(0);
    {
        CallingDevice calling;
        dc.ResetHdc(&calling);
        StreamStrokes(kTwoStrokes, 2);
        EXPECT_EQ(calling.lines, 2);
    }
    StreamStrokes(kTwoStrokes, 2);
    EXPECT_EQ(dc.line(1.0, 1.0, 2.0, 2.0), 0);
    EXPECT_EQ(device.lines(), Lines{});
}

TEST_F(Strokes, EndWithADeviceThatEndsWhereItIsMovedTo) {
    CTqDraw& dc = MakeContext(0);
    auto calling = std::make_unique<CallingDevice>();
    dc.ResetHdc(calling.get());
    calling->moved = [&] { calling.reset(); };
    StreamStrokes(kTwoStrokes, 2);
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
    StreamStrokes(ends.data(), 100);
    // What was on its way to the device arrives there.
    EXPECT_EQ(static_cast<std::size_t>(calling.lines) + Recorded(*other).size(), 100u);
    EXPECT_LE(calling.lines, zm::draw::StrokeStream::kMost);
}

TEST_F(Strokes, EndWithTheWorkingContext) {
    CTqDraw& dc = MakeContext(0);
    CallingDevice calling;
    dc.ResetHdc(&calling);
    const std::vector<double> ends(400, 1.0);
    calling.drawn = [&] { context.reset(); };
    StreamStrokes(ends.data(), 100);
    EXPECT_LE(calling.lines, zm::draw::StrokeStream::kMost);
}

// Writes down each stroke with the colour of its pen, and lets the application in at the first one.
class NotingDevice : public zm::NullDevice {
 public:
    int Line(const zm::Stroke& stroke, int x1, int y1, int x2, int y2) override {
        strokes.push_back({static_cast<int>(stroke.color), x1, y1, x2, y2});
        if (drawn) std::exchange(drawn, nullptr)();
        return 1;
    }
    std::function<void()> drawn;
    std::vector<std::array<int, 5>> strokes;
};

// A hand-over and three strokes of the next one, level from x = 1 to x = 2 m, while which the application does
// something at the first: what reached the device, its own strokes left out.
class StrokesAndACall : public Strokes {
 protected:
    static constexpr std::size_t kFirst = zm::draw::StrokeStream::kMost;
    using Stroke = std::array<int, 5>;

    const std::vector<Stroke>& Drawn(const std::function<void(CTqDraw&)>& act) {
        CTqDraw& dc = MakeContext(0);
        dc.ResetHdc(&m_noting);
        m_noting.drawn = [&dc, act] { act(dc); };
        std::vector<double> ends;
        for (std::size_t i = 0; i < kFirst + 3; ++i) ends.insert(ends.end(), {1.0, 10.0, 2.0, 10.0});
        StreamStrokes(ends.data(), kFirst + 3);
        return m_noting.strokes;
    }
    static std::vector<Stroke> Expected(const Stroke& first, std::size_t ofFirst, const Stroke& then,
                                        std::size_t ofThen = 3) {
        std::vector<Stroke> strokes(ofFirst, first);
        strokes.insert(strokes.end(), ofThen, then);
        return strokes;
    }
    static constexpr Stroke kPlain = {0, 10, 500, 20, 500};

    NotingDevice m_noting;
};

TEST_F(StrokesAndACall, HaveAnotherPenAtOnce) {
    const HPEN red = zm::device::CreatePen(PS_SOLID, 1, 0x0000FF);
    const auto drawn = Drawn([&](CTqDraw&) { zm::device::SelectObject(&m_noting, red); });
    EXPECT_EQ(drawn, Expected(kPlain, 1, {0x0000FF, 10, 500, 20, 500}, kFirst + 2));
    zm::device::SelectObject(&m_noting, zm::device::BlackPen());
    zm::device::DeleteObject(red);
}

TEST_F(StrokesAndACall, AreClippedFromTheNextHandOverOn) {
    EXPECT_EQ(Drawn([](CTqDraw& dc) {
                  dc.SetCutArea(1.5, 0.0, 50.0, 50.0);
                  dc.SetDoCut(1);
              }),
              Expected(kPlain, kFirst, {0, 15, 500, 20, 500}));
}

TEST_F(StrokesAndACall, AreClippedNoMoreFromTheNextHandOverOn) {
    CTqDraw& dc = MakeContext(0);
    dc.ResetHdc(&m_noting);
    dc.SetCutArea(1.5, 0.0, 50.0, 50.0);
    dc.SetDoCut(1);
    m_noting.drawn = [&] { dc.SetDoCut(0); };
    std::vector<double> ends;
    for (std::size_t i = 0; i < kFirst + 3; ++i) ends.insert(ends.end(), {1.0, 10.0, 2.0, 10.0});
    StreamStrokes(ends.data(), kFirst + 3);
    EXPECT_EQ(m_noting.strokes, Expected({0, 15, 500, 20, 500}, kFirst, kPlain));
}

TEST_F(StrokesAndACall, AreClippedByAPolygonFromTheNextHandOverOn) {
    EXPECT_EQ(Drawn([](CTqDraw& dc) {
                  double x[] = {1.25, 50.0, 50.0, 1.25}, y[] = {0.0, 0.0, 50.0, 50.0};
                  dc.SetCutArea(4, x, y);
                  dc.SetDoCut(1);
              }),
              Expected(kPlain, kFirst, {0, 12, 500, 20, 500}));
}

TEST_F(StrokesAndACall, AreRotatedFromTheNextHandOverOn) {
    EXPECT_EQ(Drawn([](CTqDraw& dc) { dc.SetRotateMoveP(180.0, 2.0, 10.0); }),
              Expected(kPlain, kFirst, {0, 30, 500, 20, 500}));
}

// The application's own stroke lies where it was drawn, between the first and the second of the hand-over.
TEST_F(StrokesAndACall, GoOnAfterWhatTheApplicationDrawsItself) {
    auto expected = Expected(kPlain, kFirst, kPlain);
    expected.insert(expected.begin() + 1, {0, 30, 300, 40, 300});
    EXPECT_EQ(Drawn([](CTqDraw& dc) { EXPECT_EQ(dc.line(3.0, 30.0, 4.0, 30.0), 1); }), expected);
}

TEST_F(StrokesAndACall, GoToTheRecordingThatWorksFromTheNextHandOverOn) {
    std::unique_ptr<CTqDraw> other;
    const auto drawn = Drawn([&](CTqDraw&) {
        SelectWorkingTqDC(nullptr);
        other = std::make_unique<CTqDraw>(3);
    });
    EXPECT_EQ(drawn, Expected(kPlain, kFirst, kPlain, 0));
    EXPECT_EQ(Recorded(*other).size(), 3u);
}

zm::geometry::Pair At(double x, double y) {
    return zm::geometry::Pair{x, y};
}

TEST_F(Strokes, OfAStreamReachTheDeviceTogetherInTheirOrder) {
    MakeContext(0);
    zm::draw::StrokeStream stream;
    stream.Line(At(1.0, 1.0), At(2.0, 1.0));
    stream.Line(At(3.0, 1.0), At(4.0, 1.0));
    // What crosses the edge of the view is clipped and waits too; what misses it is none.
    stream.Line(At(-1.0, 1.0), At(5.0, 1.0));
    stream.Line(At(-1.0, 1.0), At(-5.0, 1.0));
    stream.Line(At(6.0, 1.0), At(7.0, 1.0));
    EXPECT_EQ(device.lines(), Lines{});
    stream.Flush();
    const Lines four = {"MoveToEx 10 590", "LineTo 20 590", "MoveToEx 30 590", "LineTo 40 590",
                        "MoveToEx 0 590",  "LineTo 50 590", "MoveToEx 60 590", "LineTo 70 590"};
    EXPECT_EQ(device.lines(), four);
    EXPECT_EQ(stream.sum(), 4);
    stream.Flush();
    EXPECT_EQ(device.lines(), four);
}

TEST_F(Strokes, OfAStreamGoOutWhereThereIsNoMoreRoom) {
    MakeContext(0);
    zm::draw::StrokeStream stream;
    const unsigned turn = stream.turn();
    for (int i = 0; i < zm::draw::StrokeStream::kMost; ++i) stream.Line(At(1.0, 1.0), At(2.0, 1.0));
    EXPECT_EQ(device.lines(), Lines{});
    EXPECT_EQ(stream.turn(), turn);
    stream.Line(At(1.0, 1.0), At(3.0, 1.0));
    EXPECT_EQ(device.lines().size(), 2u * zm::draw::StrokeStream::kMost);
    EXPECT_NE(stream.turn(), turn);
    stream.MakeRoom(zm::draw::StrokeStream::kMost);
    EXPECT_EQ(device.lines().back(), "LineTo 30 590");
}

TEST_F(Strokes, ThatArePutInAStreamAsPixelsStandAmongTheOthers) {
    MakeContext(0);
    zm::draw::StrokeStream stream;
    stream.Line(At(1.0, 1.0), At(2.0, 1.0));
    ASSERT_NE(stream.Box(), nullptr);
    stream.MakeRoom(2);
    POINT* ends = stream.next();
    for (int i = 0; i < 4; ++i) ends[i] = {100 + i, 200 + i};
    stream.Take(2);
    stream.Line(At(3.0, 1.0), At(4.0, 1.0));
    stream.Flush();
    EXPECT_EQ(device.lines(), (Lines{"MoveToEx 10 590", "LineTo 20 590", "MoveToEx 100 200", "LineTo 101 201",
                                     "MoveToEx 102 202", "LineTo 103 203", "MoveToEx 30 590", "LineTo 40 590"}));
}

TEST_F(Strokes, OfAStreamGoToARecordingAtOnceAndToWhateverTakesItsPlace) {
    CTqDraw& dc = MakeContext(3);
    zm::draw::StrokeStream stream;
    EXPECT_EQ(stream.Box(), nullptr);
    stream.Line(At(1.0, 1.0), At(2.0, 1.0));
    stream.Line(At(1.0, 1.0), At(3.0, 1.0));
    EXPECT_EQ(Recorded(dc).size(), 2u);
    // Another kind of context, one of the same kind, none.
    context.reset();
    SelectWorkingTqDC(nullptr);
    MakeContext(0);
    stream.Line(At(1.0, 1.0), At(2.0, 1.0));
    stream.Flush();
    EXPECT_EQ(device.lines(), (Lines{"MoveToEx 10 590", "LineTo 20 590"}));
    context.reset();
    SelectWorkingTqDC(nullptr);
    stream.Line(At(1.0, 1.0), At(2.0, 1.0));
    stream.Flush();
    EXPECT_EQ(device.lines().size(), 2u);
    CTqDraw& other = MakeContext(3);
    stream.Line(At(1.0, 1.0), At(2.0, 1.0));
    EXPECT_EQ(Recorded(other).size(), 1u);
}

TEST_F(Strokes, OfAStreamGoToTheContextThatWorksNowAndNotToTheOneBefore) {
    CTqDraw& before = MakeContext(3);
    zm::draw::StrokeStream stream;
    stream.Line(At(1.0, 1.0), At(2.0, 1.0));
    SelectWorkingTqDC(nullptr);
    CTqDraw now(3);
    stream.Line(At(1.0, 1.0), At(3.0, 1.0));
    stream.Line(At(1.0, 1.0), At(4.0, 1.0));
    EXPECT_EQ(Recorded(now).size(), 2u);
    EXPECT_EQ(Recorded(before).size(), 1u);
}

// A clip rectangle leaves what lies in it as it is: the box of the view is only smaller.
TEST_F(Strokes, InAClipRectangleHaveTheBoxOfTheRectangle) {
    CTqDraw& dc = MakeContext(0);
    dc.SetCutArea(20.0, 10.0, 60.0, 50.0);
    dc.SetDoCut(1);
    const zm::draw::ViewBox box(dc);
    POINT ends[2];
    EXPECT_TRUE(box.Map(At(20.01, 10.01), At(59.99, 49.99), ends));
    EXPECT_FALSE(box.Map(At(19.99, 10.01), At(59.99, 49.99), ends));
    EXPECT_FALSE(box.Map(At(20.01, 10.01), At(60.01, 49.99), ends));
    EXPECT_FALSE(box.Map(At(20.01, 9.99), At(59.99, 49.99), ends));
    EXPECT_FALSE(box.Map(At(20.01, 10.01), At(59.99, 50.01), ends));
    // One wider than the view leaves the view's own box, the pixels of its edges included.
    dc.SetCutArea(-1e4, -1e4, 1e4, 1e4);
    EXPECT_TRUE(zm::draw::ViewBox(dc).Map(At(-0.09, -0.09), At(80.09, 60.09), ends));
    EXPECT_EQ(ends[0].x, 0);
    EXPECT_EQ(ends[0].y, 600);
    EXPECT_EQ(ends[1].x, 800);
    EXPECT_EQ(ends[1].y, 0);
    EXPECT_FALSE(zm::draw::ViewBox(dc).Map(At(-0.11, 0.0), At(1.0, 1.0), ends));
}

TEST_F(Strokes, InAClipRectangleThatIsNoNumberAndInAFlippedViewHaveNoBox) {
    CTqDraw& dc = MakeContext(0);
    dc.SetDoCut(1);
    dc.SetCutArea(std::numeric_limits<double>::quiet_NaN(), 10.0, 60.0, 50.0);
    EXPECT_TRUE(zm::draw::ViewBox(dc).IsEmpty());
    dc.SetCutArea();
    EXPECT_FALSE(zm::draw::ViewBox(dc).IsEmpty());
    dc.SetViewDrawDC(&device, 10.0, 0.0, 0.0, 800, 600, 1);
    EXPECT_TRUE(zm::draw::ViewBox(dc).IsEmpty());
    dc.SetViewDrawDC(&device, 10.0, 0.0, 0.0, -1, 600, 0);
    EXPECT_TRUE(zm::draw::ViewBox(dc).IsEmpty());
}

// Whatever box a rectangle gives, it holds nothing that the clip would touch.
TEST_F(Strokes, InTheBoxOfAClipRectangleAreNotTouchedByTheClip) {
    ZM_TRACE_SEED();
    Random random(73);
    CTqDraw& dc = MakeContext(0);
    int held = 0;
    for (int round = 0; round < 20000; ++round) {
        const double origin = random.Int(0, 1) != 0 ? 512340.25 : 0.0;
        const double scale = random.Int(0, 3) != 0 ? random.Real(0.5, 100.0) : 10.0;
        dc.SetViewDrawDC(&device, scale, origin, origin, 800, 600, 0);
        const auto edge = [&](double extent) { return origin + random.Real(-0.1, 1.1) * extent / scale; };
        const double x1 = edge(800.0), x2 = edge(800.0), y1 = edge(600.0), y2 = edge(600.0);
        dc.SetCutArea(x1, y1, x2, y2);
        dc.SetDoCut(1);
        const zm::draw::ViewBox box(dc);
        POINT ends[2];
        for (int i = 0; i < 20; ++i) {
            double x = random.Int(0, 1) != 0 ? (random.Int(0, 1) != 0 ? x1 : x2) : edge(800.0);
            double y = random.Int(0, 1) != 0 ? (random.Int(0, 1) != 0 ? y1 : y2) : edge(600.0);
            for (int step = random.Int(0, 2); step > 0; --step) x = std::nextafter(x, edge(800.0));
            for (int step = random.Int(0, 2); step > 0; --step) y = std::nextafter(y, edge(600.0));
            if (!box.Map(At(x, y), At(x, y), ends)) continue;
            ++held;
            EXPECT_EQ(zm::draw::Access::OutCode(dc, x, y), 0);
            int px = 0, py = 0;
            EXPECT_EQ(dc.GetViewPos(x, y, px, py), 1);
            EXPECT_EQ(ends[0].x, px);
            EXPECT_EQ(ends[0].y, py);
        }
    }
    EXPECT_GT(held, 20000);
}

}  // namespace
