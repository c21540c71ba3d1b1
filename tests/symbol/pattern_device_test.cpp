// Patterns on a device: the calls of each step, pixel by pixel, though symbols are turned once for many places.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <functional>
#include <limits>
#include <string>
#include <utility>
#include <vector>

#include "draw/stroke/stream.h"
#include "geometry/exact/pair.h"
#include "geometry/exact/turn.h"
#include "symbol/point/point_symbol.h"
#include "symbol/point/repeated_symbol.h"
#include "tests/support/random.h"
#include "tests/symbol/pattern_steps.h"
#include "tests/symbol/symbol_test.h"
#include "zenromath/geometry.h"
#include "zenromath/null_device.h"

namespace {

using zm::geometry::Pair;
using zm::test::LayStepByStep;
using zm::test::Random;
using zm::test::Token;

/// Keeps what it is asked to draw; calls back once, at a stroke.
class PixelDevice : public zm::NullDevice {
 public:
    using Call = std::array<int, 5>;

    int Line(const zm::Stroke&, int x1, int y1, int x2, int y2) override {
        calls.push_back({0, x1, y1, x2, y2});
        if (drawn && --countdown == 0) std::exchange(drawn, nullptr)();
        return 1;
    }
    COLORREF Dot(int x, int y, COLORREF color) override {
        calls.push_back({1, x, y, 0, 0});
        return color;
    }
    int Arc(const zm::Stroke&, const RECT& box, POINT, POINT) override {
        calls.push_back({2, box.left, box.top, box.right, box.bottom});
        return 1;
    }

    std::vector<Call> Taken() { return std::exchange(calls, {}); }

    std::vector<Call> calls;
    std::function<void()> drawn;
    int countdown = 0;
};

// 42: a marker of three strokes. 43: more than strokes. 44: more strokes than are turned at once. 45: one point, where
// the terminator is the other. 46: no strokes at all. 47:
// one polyline. 48: farther than any device.
constexpr char kSymbols[] =
    "*42 G\n1 -0.2,0 0.2,0\n1 0,-0.2 0,0.2\n1 -0.2,-0.2 0.3,0.1\n"
    "*43 G\n1 0,0 0.5,0\n3 0.5,0.5 0.25\n5 0,0\n"
    "*44 G\n1 0,0 1,0\n1 0,0 1,1\n1 0,0 0,1\n1 0,0 -1,1\n1 0,0 -1,0\n1 0,0 -1,-1\n1 0,0 0,-1\n1 0,0 1,-1\n"
    "1 1,0 1,1\n1 1,1 0,1\n1 0,1 -1,1\n1 -1,1 -1,0\n1 -1,0 -1,-1\n1 -1,-1 0,-1\n1 0,-1 1,-1\n1 1,-1 1,0\n1 0,0 2,0\n"
    "*45 G\n1 0.1,0.2\n"
    "*46 G\n*47 G\n2 0,0 1,0 1,1 0,1 0,2 1,2\n*48 G\n1 0,0 1e30,0\n";

void PlaceAlone(double x, double y, zm::geometry::Turn& turn, int code) {
    zm::draw::StrokeStream stream;
    zm::symbol::PlaceSymbol(stream, x, y, turn, code);
    stream.Flush();
}

struct Pattern {
    const char* text;
    std::vector<Token> tokens;
};
const std::vector<Pattern>& Patterns() {
    static const std::vector<Pattern> patterns = {
        {"+0.6 -0.2 G42 -0.2", {{'+', 0.6}, {'-', 0.2}, {'G', 42}, {'-', 0.2}}},
        {"G42 G42 +1.5 -0.5 P -1 G43 -0.25",
         {{'G', 42}, {'G', 42}, {'+', 1.5}, {'-', 0.5}, {'P', 0}, {'-', 1}, {'G', 43}, {'-', 0.25}}},
        {"-0.3 G42 -0.3 G44 +0.2 G45 G46 G47 G48 G999",
         {{'-', 0.3},
          {'G', 42},
          {'-', 0.3},
          {'G', 44},
          {'+', 0.2},
          {'G', 45},
          {'G', 46},
          {'G', 47},
          {'G', 48},
          {'G', 999}}}};
    return patterns;
}

struct View {
    const char* name;
    double x, y;   // of its lower left corner
    double scale;  // pixels for a survey unit
    bool square;   // legs along the axes, of whole lengths: everything lies on the edge of some pixel
    int type = 0;
    bool flipped = false, clipped = false, rotated = false;
};
void PrintTo(const View& view, std::ostream* out) {
    *out << view.name;
}

class RepeatedSymbols : public zm::test::DrawingTest {
 protected:
    PixelDevice m_pixels;
};

class PatternsOnADevice : public zm::test::DrawingTest, public testing::WithParamInterface<View> {
 protected:
    void BeginView() {
        const View& view = GetParam();
        CTqDraw& dc = Begin(view.type, view.scale);
        dc.SetViewDrawDC(&m_pixels, view.scale, view.x, view.y, 800, 600, view.flipped ? 1 : 0);
        if (view.clipped) dc.SetCutArea(view.x + 5.0, view.y + 5.0, view.x + 30.0, view.y + 20.0);
        dc.SetDoCut(view.clipped ? 1 : 0);
        if (view.rotated) dc.SetRotateMoveP(30.0, view.x, view.y);
    }
    PixelDevice m_pixels;
};

TEST_P(PatternsOnADevice, DrawWhatEachStepDraws) {
    ZM_TRACE_SEED();
    const View& view = GetParam();
    Random random(95);
    for (const Pattern& pattern : Patterns()) {
        Load(std::string(kSymbols) + "*80 LC\n" + pattern.text + "\n*$\n");
        BeginView();
        std::size_t calls = 0;
        for (int round = 0; round < 200; ++round) {
            std::vector<double> x = {view.x + random.Int(-5, std::min(60, static_cast<int>(800.0 / view.scale)))};
            std::vector<double> y = {view.y + random.Int(-5, std::min(50, static_cast<int>(600.0 / view.scale)))};
            for (int legs = random.Int(1, 5); legs > 0; --legs) {
                const bool level = random.Int(0, 2) != 0;
                const double angle = random.Real(0.0, 6.3), length = random.Int(0, 1) != 0 ? 10.0 : random.Real(0, 20);
                x.push_back(x.back() + (view.square ? level ? random.Int(-9, 9) : 0 : length * std::cos(angle)));
                y.push_back(y.back() + (view.square ? level ? 0 : random.Int(-9, 9) : length * std::sin(angle)));
            }
            m_pixels.Taken();
            const auto [toldX, toldY] = LayStepByStep(pattern.tokens, x, y, 1000.0);
            const auto reported = m_pixels.Taken();
            const auto* body = TheBody;
            calls += reported.size();
            getsymbody(80);
            NewLC(x.data(), y.data(), static_cast<int>(x.size()), 80);
            ASSERT_EQ(m_pixels.Taken(), reported) << pattern.text << " round " << round;
            ASSERT_EQ(x, toldX);
            ASSERT_EQ(y, toldY);
            ASSERT_EQ(TheBody, body);
        }
        EXPECT_GT(calls, 1000u);
    }
}
INSTANTIATE_TEST_SUITE_P(Views, PatternsOnADevice,
                         testing::Values(View{"of_a_projection", 512340.25, 3391230.5, 10.0, false},
                                         View{"of_a_local_system", 500.0, 1200.0, 10.0, false},
                                         View{"about_the_origin", 0.0, 0.0, 10.0, false},
                                         View{"far_out", 1e11, -1e11, 10.0, false},
                                         View{"square", 0.0, 0.0, 10.0, true},
                                         View{"square_of_a_projection", 512340.0, 3391230.0, 20.0, true},
                                         View{"square_seen_flipped", 0.0, 0.0, 10.0, true, 0, true},
                                         View{"close", 512340.0, 3391230.0, 97.3, false},
                                         View{"of_dots", 512340.0, 3391230.0, 1.3, false},
                                         View{"monochrome", 512340.0, 3391230.0, 10.0, false, 2},
                                         View{"flipped", 512340.0, 3391230.0, 10.0, false, 0, true},
                                         View{"clipped", 512340.0, 3391230.0, 10.0, false, 0, false, true},
                                         View{"rotated", 512340.0, 3391230.0, 10.0, false, 0, false, false, true}),
                         [](const auto& info) { return std::string(info.param.name); });

// A caller may put anything into the records; they are those of the file again where the symbol is looked up anew.
TEST_F(RepeatedSymbols, WithAnEndThatIsNoNumberDrawTheirOtherStrokesUntilTheyAreRebuilt) {
    const std::vector<Token> tokens = {{'-', 0.7}, {'G', 42}};
    Load(std::string(kSymbols) + "*80 LC\n-0.7 G42\n*$\n");
    Begin(0).SetViewDrawDC(&m_pixels, 20.0, 0.0, 0.0, 800, 600, 0);
    for (const float bad : {std::numeric_limits<float>::quiet_NaN(), std::numeric_limits<float>::infinity()}) {
        getsymbody(42);
        TheBody[2].point.x = bad;
        const std::vector<double> fromX = {10.013, 20.0}, fromY = {10.007, 17.0};
        std::vector<double> x = fromX, y = fromY;
        m_pixels.Taken();
        LayStepByStep(tokens, x, y, 1000.0);
        EXPECT_EQ(m_pixels.Taken().size(), 2u * 17u);
        getsymbody(80);
        x = fromX, y = fromY;
        LayStepByStep(tokens, x, y, 1000.0);
        const auto rebuilt = m_pixels.Taken();
        EXPECT_EQ(rebuilt.size(), 3u * 17u);
        getsymbody(80);
        x = fromX, y = fromY;
        NewLC(x.data(), y.data(), 2, 80);
        EXPECT_EQ(m_pixels.Taken(), rebuilt);
    }
}

// Within the tolerance of its end a leg has the bearing 0.
TEST_F(RepeatedSymbols, WithinTheToleranceOfAVertexAreNotTurned) {
    const double before = SetMINI(0.5);
    const std::vector<Token> tokens = {{'-', 0.7}, {'G', 42}};
    Load(std::string(kSymbols) + "*80 LC\n-0.7 G42\n*$\n");
    Begin(0).SetViewDrawDC(&m_pixels, 20.0, 0.0, 0.0, 800, 600, 0);
    for (const double angle : {0.0, 0.5, 2.0, 3.5, 5.0, 7.0})
        for (const double length : {9.5, -9.5}) {
            std::vector<double> x = {15.013, 15.013 + length * (angle == 7.0 ? 1.0 : std::cos(angle))};
            std::vector<double> y = {15.013, 15.013 + length * (angle == 7.0 ? 0.0 : std::sin(angle))};
            m_pixels.Taken();
            LayStepByStep(tokens, x, y, 1000.0);
            const auto reported = m_pixels.Taken();
            EXPECT_EQ(reported.size(), 39u);
            getsymbody(80);
            NewLC(x.data(), y.data(), 2, 80);
            EXPECT_EQ(m_pixels.Taken(), reported) << angle << ' ' << length;
        }
    SetMINI(before);
}

// Where the direction differs from that of the leg as far as it may, the ends of a large symbol go to the pixels of the
// leg.
TEST_F(RepeatedSymbols, OfANearbyDirectionHaveThePixelsOfTheirOwn) {
    ZM_TRACE_SEED();
    Random random(96);
    Load("*42 G\n1 -100,-70 100,70\n1 0,-100 0,100\n1 -100,0 100,0\n*$\n");
    Begin(0).SetViewDrawDC(&m_pixels, 20.0, 512000.0, 3391000.0, 10000, 10000, 0);
    int differing = 0;
    for (int round = 0; round < 20000; ++round) {
        const Pair at = {512000.0 + random.Real(200.0, 300.0), 3391000.0 + random.Real(200.0, 300.0)};
        const double angle = random.Real(0.0, 6.3);
        const Pair to = at + 10.0 * Pair{std::cos(angle), std::sin(angle)};
        const Pair off = 0.99e-7 * Pair{random.Real(-1.0, 1.0), random.Real(-1.0, 1.0)};
        zm::draw::StrokeStream stream;
        zm::symbol::RepeatedSymbol symbol(stream);
        symbol.Place({at, to, true, Pair{std::cos(angle), std::sin(angle)} + off}, 42);
        stream.Flush();
        const auto placed = m_pixels.Taken();
        zm::geometry::Turn turn(zm::geometry::LegOf(to - at));
        PlaceAlone(at[0], at[1], turn, 42);
        ASSERT_EQ(placed, m_pixels.Taken()) << "round " << round;
        PlaceAlone(at[0], at[1], turn, 42);
        const auto own = m_pixels.Taken();
        zm::geometry::Turn other(std::atan2(std::sin(angle) + off[1], std::cos(angle) + off[0]));
        PlaceAlone(at[0], at[1], other, 42);
        if (own != m_pixels.Taken()) ++differing;
    }
    EXPECT_GT(differing, 0) << "the direction makes no difference: this tests nothing";
}

// A grid of marks is laid in a row too. Where an area clips, though nothing lies outside, each is placed alone.
TEST_F(RepeatedSymbols, OfAGridHaveThePixelsOfEachPlacedAlone) {
    Load(std::string(kSymbols) +
         "*60 H 1\n1 35 2.3 125 3.1 42\n*61 H 1\n1 0 2 90 3 42\n*62 H 1\n1 35 5 125 5 43\n*$\n");
    for (const int code : {60, 61, 62})
        for (const double offset : {0.0, 512000.0}) {
            std::vector<PixelDevice::Call> calls[2];
            for (const int clipped : {0, 1}) {
                CTqDraw& dc = Begin(0);
                dc.SetViewDrawDC(&m_pixels, 10.0, offset - 5.0, offset - 5.0, 500, 500, 0);
                dc.SetCutArea(offset - 1e6, offset - 1e6, offset + 1e6, offset + 1e6);
                dc.SetDoCut(clipped);
                double star[] = {offset,        offset,        offset + 60.0, offset + 3.0,
                                 offset + 40.0, offset + 45.0, offset + 4.0,  offset + 30.0};
                EXPECT_NE(DrawHatch(4, star, code), 0);
                calls[clipped] = m_pixels.Taken();
            }
            EXPECT_GT(calls[0].size(), 100u);
            EXPECT_EQ(calls[0], calls[1]) << code << ' ' << offset;
        }
}

// A line of 400 strokes, 100 rounds of a dash and a marker, at one of whose strokes the application does something.
class PatternOnTheWay : public zm::test::DrawingTest {
 protected:
    PatternOnTheWay() { Load(std::string(kSymbols) + "*80 LC\n+0.6 -0.2 G42 -0.2\n*$\n"); }

    std::vector<PixelDevice::Call> Lay(int stroke = 0, const std::function<void()>& act = {}) {
        Begin(0).SetViewDrawDC(&m_pixels, 10.0, 0.0, 0.0, 8000, 6000, 0);
        m_pixels.drawn = act;
        m_pixels.countdown = stroke;
        double x[] = {310.0, 310.0 + 99.9 * std::cos(0.3)};
        double y[] = {310.0, 310.0 + 99.9 * std::sin(0.3)};
        getsymbody(80);
        EXPECT_EQ(NewLC(x, y, 2, 80), 2);
        return m_pixels.Taken();
    }
    static constexpr int kOnTheWay = 64;  // strokes that may be gathered when it happens

    PixelDevice m_pixels;
};

TEST_F(PatternOnTheWay, GoesOnInTheViewThatTheApplicationSets) {
    const auto plain = Lay();
    ASSERT_EQ(plain.size(), 400u);
    for (const int stroke : {1, 10, 100}) {
        const auto calls = Lay(stroke, [&] { m_dc->SetViewDrawDC(&m_pixels, 10.0, -100.0, 0.0, 8000, 6000, 0); });
        ASSERT_EQ(calls.size(), plain.size());
        int still = 0;
        for (std::size_t i = 0; i < calls.size(); ++i) {
            const int shift = calls[i][1] - plain[i][1];
            ASSERT_EQ(calls[i][3] - plain[i][3], shift);
            ASSERT_EQ(calls[i][2], plain[i][2]);
            ASSERT_EQ(shift, still == static_cast<int>(i) && shift == 0 ? 0 : 1000) << i;
            if (shift == 0) ++still;
        }
        EXPECT_GE(still, stroke);
        EXPECT_LE(still, stroke + kOnTheWay);
    }
}

TEST_F(PatternOnTheWay, GoesOnWithTheSymbolsThatTheApplicationLoads) {
    for (const int stroke : {1, 10, 100}) {
        const auto calls = Lay(stroke, [&] { Load("*42 G\n1 0,0 1,0\n*80 LC\n-1\n*$\n"); });
        // A dash and three strokes for a while, then a dash and one.
        EXPECT_LT(calls.size(), 400u);
        EXPECT_GE(calls.size(), 200u + static_cast<std::size_t>(stroke) / 2u);
        Load(std::string(kSymbols) + "*80 LC\n+0.6 -0.2 G42 -0.2\n*$\n");
    }
}

TEST_F(PatternOnTheWay, GoesOnWhenTheApplicationLooksUpAnotherSymbol) {
    const auto plain = Lay();
    for (const int stroke : {1, 10, 100}) EXPECT_EQ(Lay(stroke, [] { getsymbody(43); }), plain);
}

TEST_F(PatternOnTheWay, GoesOnWithTheRecordsThatTheApplicationPutsInTheBodysPlace) {
    // Circles, each with a point more than it takes: of the same length as strokes.
    SYMBODY own[12];
    for (int i = 0; i < 12; i += 4) {
        own[i].op = {3.0F, 0.0005F};
        own[i + 1].point = {0.0F, 0.0F};
        own[i + 2].point = {0.001F, 0.0F};
        own[i + 3].point = {-100.0F, -100.0F};
    }
    const auto calls = Lay(1, [&] {
        getsymbody(42);
        TheBody = own;
        nBody = 12;
    });
    const auto isCircle = [](const PixelDevice::Call& call) { return call[0] == 2; };
    EXPECT_GT(std::count_if(calls.begin(), calls.end(), isCircle), 200);
}

TEST_F(PatternOnTheWay, EndsWithItsContext) {
    for (const int stroke : {1, 10, 100}) {
        const auto calls = Lay(stroke, [&] {
            m_dc.reset();
            SelectWorkingTqDC(nullptr);
        });
        EXPECT_GE(calls.size(), static_cast<std::size_t>(stroke));
        EXPECT_LE(calls.size(), static_cast<std::size_t>(stroke + kOnTheWay));
        m_host.boxes.clear();
    }
}

}  // namespace
