// Strokes whose outlines the Qt device fills, beside the same strokes by QPainter's own stroker, drawn 16 times as large
// and brought down: where it strokes at the size of the image itself, it darkens pixels beside joints.
#include "platform/qt/stroke_outline.h"

#include <gtest/gtest.h>

#include <QImage>
#include <QPainter>
#include <QPainterPath>
#include <QPdfWriter>
#include <QTemporaryFile>
#include <cmath>
#include <functional>
#include <numbers>
#include <random>

#include "platform/device/arc_figure.h"
#include "runtime/uses.h"
#include "zenromath/qt.h"

namespace {

using zm::Stroke;
using zm::qt::OutlineChain;
using zm::qt::QtDevice;
using zm::qt::Rendering;

constexpr int kSide = 100;     // pixels
constexpr double kZoom = 0.1;  // ten units a pixel, as on a sheet
constexpr int kWidths[] = {15, 30, 80};

Stroke StrokeOf(int width, int style = PS_SOLID) {
    Stroke stroke;
    stroke.style = style;
    stroke.width = width;
    return stroke;
}

QImage Paper() {
    zm::qt::EnsureApplication();
    QImage image(kSide, kSide, QImage::Format_RGB32);
    image.fill(Qt::white);
    return image;
}

QImage ByDevice(const std::function<void(QtDevice&)>& draw) {
    QImage image = Paper();
    QtDevice device(&image, Rendering::smooth, 1.0, kZoom);
    draw(device);
    EXPECT_TRUE(device.Finish());
    return image;
}

QImage ByStroker(int width, const QPainterPath& path, int larger) {
    QImage large(kSide * larger, kSide * larger, QImage::Format_Grayscale8);
    large.fill(Qt::white);
    {
        QPainter painter(&large);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.scale(kZoom * larger, kZoom * larger);
        painter.setPen(QPen(Qt::black, width, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
        painter.drawPath(path);
    }
    QImage image = Paper();
    for (int y = 0; y < kSide; ++y)
        for (int x = 0; x < kSide; ++x) {
            int sum = 0;
            for (int row = y * larger; row < (y + 1) * larger; ++row)
                for (int i = 0; i < larger; ++i) sum += large.constScanLine(row)[x * larger + i];
            const int grey = sum / (larger * larger);
            image.setPixel(x, y, qRgb(grey, grey, grey));
        }
    return image;
}

// Grey of a pixel, 0 to 255; the largest difference of two images.
int Grey(const QImage& image, int x, int y) {
    return qGray(image.pixel(x, y));
}
int Furthest(const QImage& a, const QImage& b) {
    int most = 0;
    for (int y = 0; y < kSide; ++y)
        for (int x = 0; x < kSide; ++x) most = std::max(most, std::abs(Grey(a, x, y) - Grey(b, x, y)));
    return most;
}
double Ink(const QImage& image) {
    double ink = 0.0;
    for (int y = 0; y < kSide; ++y)
        for (int x = 0; x < kSide; ++x) ink += 255 - Grey(image, x, y);
    return ink / 255.0;
}
void ExpectAlike(const QImage& ours, int width, const QPainterPath& path) {
    const QImage wanted = ByStroker(width, path, 16);
    EXPECT_GT(Ink(wanted), 1.0);
    EXPECT_LE(Furthest(ours, wanted), 26);  // a tenth of a pixel's cover
    EXPECT_NEAR(Ink(ours), Ink(wanted), 0.02 * Ink(wanted) + 0.3);
}

// The middle of a pixel has its number in the device, and half more on paper.
QPainterPath PathOf(const std::vector<POINT>& points) {
    QPainterPath path(QPointF(points[0].x + 0.5, points[0].y + 0.5));
    for (const POINT& point : points) path.lineTo(point.x + 0.5, point.y + 0.5);
    return path;
}

void DrawChain(QtDevice& device, int width, const std::vector<POINT>& points) {
    for (std::size_t i = 1; i < points.size(); ++i) {
        const POINT ends[] = {points[i - 1], points[i]};
        device.Lines(StrokeOf(width), ends, 1);
    }
}

void ExpectChainAlike(int width, const std::vector<POINT>& points) {
    ExpectAlike(ByDevice([&](QtDevice& device) { DrawChain(device, width, points); }), width, PathOf(points));
}

// Each pixel is as dark as it should be, and no darker than so many times its cover.
void ExpectCovered(const QImage& ours, const QImage& wanted, int times) {
    for (int y = 0; y < kSide; ++y)
        for (int x = 0; x < kSide; ++x) {
            const int cover = 255 - Grey(wanted, x, y);
            ASSERT_GE(255 - Grey(ours, x, y), cover - 26);
            ASSERT_LE(255 - Grey(ours, x, y), std::min(255, times * cover) + 26);
        }
}

std::vector<POINT> Turning(int degrees) {
    const double angle = degrees * std::numbers::pi / 180.0;
    return {{150, 500},
            {500, 500},
            {500 + static_cast<LONG>(std::lround(330.0 * std::cos(angle))),
             500 + static_cast<LONG>(std::lround(330.0 * std::sin(angle)))}};
}

TEST(StrokeOutline, ChainsThatTurnAreAsTheStrokerDrawsThem) {
    for (const int width : kWidths)
        for (int turn = -150; turn <= 150; turn += 5) {
            SCOPED_TRACE(testing::Message() << "width " << width << ", turn " << turn);
            ExpectChainAlike(width, Turning(turn));
        }
}

// The two pieces lie upon each other, and pixels at their common edge are covered twice.
TEST(StrokeOutline, ChainsThatTurnBackAreCoveredAndNoMoreThanTheirEdgesDarker) {
    for (const int width : kWidths)
        for (const int turn : {-178, -170, -160, 160, 170, 178, 180}) {
            SCOPED_TRACE(testing::Message() << "width " << width << ", turn " << turn);
            const std::vector<POINT> points = Turning(turn);
            const QImage ours = ByDevice([&](QtDevice& device) { DrawChain(device, width, points); });
            const QImage wanted = ByStroker(width, PathOf(points), 16);
            ExpectCovered(ours, wanted, 2);
        }
}

// Nothing is missing, nothing is outside, where pieces far shorter than the stroke is wide lie upon each other.
TEST(StrokeOutline, WalksOfShortAndLongPiecesAreCovered) {
    std::mt19937 random(20240607);
    for (const int width : kWidths)
        for (const int step : {3, 12, 60, 250})
            for (int walk = 0; walk < 20; ++walk) {
                SCOPED_TRACE(testing::Message() << "width " << width << ", step " << step << ", walk " << walk);
                std::uniform_int_distribution<int> move(-step, step);
                std::vector<POINT> points{{500, 500}};
                for (int i = 0; i < 30; ++i)
                    points.push_back({std::clamp<LONG>(points.back().x + move(random), 100, 900),
                                      std::clamp<LONG>(points.back().y + move(random), 100, 900)});
                ExpectCovered(ByDevice([&](QtDevice& device) { DrawChain(device, width, points); }),
                              ByStroker(width, PathOf(points), 16), 30);
            }
}

// Bends that are narrower than the stroke, of pieces that each turn a little.
TEST(StrokeOutline, NarrowBendsAreFull) {
    for (const int width : {15, 80, 800})
        for (const double radius : {5.0, 25.0, 38.0, 370.0})
            for (const int pieces : {45, 80, 90}) {  // of 90 in a full turn
                SCOPED_TRACE(testing::Message() << "width " << width << ", radius " << radius << ", pieces " << pieces);
                std::vector<POINT> points;
                for (int i = 0; i <= pieces; ++i) {
                    const double angle = i * std::numbers::pi / 45.0;
                    points.push_back({500 + static_cast<LONG>(std::lround(radius * std::cos(angle))),
                                      500 + static_cast<LONG>(std::lround(radius * std::sin(angle)))});
                }
                ExpectCovered(ByDevice([&](QtDevice& device) { DrawChain(device, width, points); }),
                              ByStroker(width, PathOf(points), 16), 30);
            }
}

TEST(StrokeOutline, ARingThatIsClosedHasNoHole) {
    for (const int width : kWidths) ExpectChainAlike(width, {{200, 200}, {700, 250}, {600, 800}, {200, 200}});
}

TEST(StrokeOutline, SingleStrokesHaveRoundEnds) {
    for (const int width : kWidths) {
        ExpectChainAlike(width, {{200, 200}, {700, 500}});
        ExpectChainAlike(width, {{200, 200}, {201, 200}});
    }
}

TEST(StrokeOutline, AStrokeOfNoLengthIsADot) {
    const QImage dot = ByDevice([](QtDevice& device) { device.Line(StrokeOf(80), 500, 500, 500, 500); });
    EXPECT_NEAR(Ink(dot), std::numbers::pi * 16.0, 1.5);
    const QImage twice = ByDevice([](QtDevice& device) {
        device.Line(StrokeOf(80), 500, 500, 500, 500);
        device.Line(StrokeOf(80), 500, 500, 500, 500);
    });
    EXPECT_NEAR(Ink(twice), std::numbers::pi * 16.0, 1.5);
}

TEST(StrokeOutline, ArcsAreAsTheStrokerDrawsThem) {
    struct Case {
        RECT box;
        POINT start, end;
    };
    const POINT right{2000, 500}, up{500, -1000}, left{-1000, 500}, slanted{900, 700};
    const Case kCases[] = {{{200, 200, 801, 801}, right, right},   {{480, 480, 541, 541}, right, right},
                           {{300, 300, 701, 701}, right, up},      {{300, 300, 701, 701}, up, right},
                           {{200, 350, 801, 651}, right, right},   {{200, 350, 801, 651}, slanted, left},
                           {{100, 490, 901, 511}, right, right},   {{495, 495, 506, 506}, right, right},
                           {{-4000, 100, 701, 900}, slanted, left}};
    for (const int width : kWidths)
        for (const Case& c : kCases) {
            SCOPED_TRACE(testing::Message() << "width " << width << ", case " << &c - kCases);
            const auto arc = zm::platform::FigureOfArc(c.box, c.start, c.end);
            const QRectF box(arc.cx - arc.rx + 0.5, arc.cy - arc.ry + 0.5, 2.0 * arc.rx, 2.0 * arc.ry);
            constexpr double kDegrees = 180.0 / std::numbers::pi;
            QPainterPath path;
            path.arcMoveTo(box, arc.start * kDegrees);
            path.arcTo(box, arc.start * kDegrees, arc.sweep * kDegrees);
            const QImage ours = ByDevice([&](QtDevice& device) { device.Arc(StrokeOf(width), c.box, c.start, c.end); });
            const double large = std::max(arc.rx, arc.ry), small = std::min(arc.rx, arc.ry);
            if (small * small <= width * large)  // bends are sharper than the stroke is wide: Qt strokes it
                EXPECT_EQ(Furthest(ours, ByStroker(width, path, 1)), 0);
            else
                ExpectAlike(ours, width, path);
        }
}

TEST(StrokeOutline, OtherFiguresBetweenAreDrawnWithTheirOwnPenAndBrush) {
    const QImage image = ByDevice([](QtDevice& device) {
        const POINT ends[] = {{100, 100}, {900, 100}};
        device.Lines(StrokeOf(30), ends, 1);
        const Stroke box = StrokeOf(30);
        device.Box(&box, zm::Fill{}, {300, 300, 700, 700});  // an empty one
        device.Arc(StrokeOf(30), {100, 800, 901, 821}, {2000, 810}, {2000, 810});
        device.Lines(StrokeOf(15, PS_DASH), ends, 1);
    });
    EXPECT_EQ(Grey(image, 50, 50), 255);
    EXPECT_EQ(Grey(image, 50, 30), 0);
    EXPECT_EQ(Grey(image, 50, 10), 0);
}

TEST(StrokeOutline, ThinStrokesTurnInCornersAndHaveSquareEnds) {
    std::vector<QPointF> outline;
    OutlineChain({2.0, 1.0, false}, {{0, 0}, {10, 0}}, outline);
    EXPECT_EQ(outline,
              (std::vector<QPointF>{{0, 1}, {10, 1}, {11, 1}, {11, -1}, {10, -1}, {0, -1}, {-1, -1}, {-1, 1}, {0, 1}}));
    OutlineChain({2.0, 1.0, false}, {{0, 0}, {0, 0}, {0, 0}}, outline);
    EXPECT_TRUE(outline.empty());
    OutlineChain({2.0, 1.0, false}, {}, outline);
    EXPECT_TRUE(outline.empty());
}

#ifdef ZM_COUNT_USES
TEST(StrokeOutline, IsTakenOnSmoothPixelsForSolidStrokesAndNowhereElse) {
    const POINT ends[] = {{100, 100}, {900, 100}, {100, 300}, {900, 300}};
    const auto taken = [&](const std::function<void()>& draw) {
        const std::uint64_t before = zm::uses::counts[zm::uses::strokeFilled];
        draw();
        return zm::uses::counts[zm::uses::strokeFilled] - before;
    };
    const auto on = [&](QPaintDevice* target, Rendering rendering, double zoom, const Stroke& stroke) {
        QtDevice device(target, rendering, 1.0, zoom);
        device.Lines(stroke, ends, 2);
        device.Arc(stroke, {200, 200, 801, 801}, {2000, 500}, {2000, 500});
        device.Finish();
    };
    QImage image = Paper();
    EXPECT_EQ(taken([&] { on(&image, Rendering::smooth, kZoom, StrokeOf(15)); }), 3u);
    EXPECT_EQ(taken([&] { on(&image, Rendering::smooth, kZoom, StrokeOf(10)); }), 0u);  // Qt has a short way of its own
    EXPECT_EQ(taken([&] { on(&image, Rendering::smooth, kZoom, StrokeOf(15, PS_DASH)); }), 0u);
    EXPECT_EQ(taken([&] { on(&image, Rendering::pixels, 1.0, StrokeOf(15)); }), 0u);
    QTemporaryFile file;
    ASSERT_TRUE(file.open());
    QPdfWriter page(&file);
    EXPECT_EQ(taken([&] { on(&page, Rendering::smooth, 1.0, StrokeOf(15)); }), 0u);  // strokes stay strokes
}

// What a device counts of a zigzag and, beside it, of three steps of a curve that hardly turns.
struct Taken {
    std::uint64_t plotted, inRuns, single, chained;
    bool operator==(const Taken&) const = default;
};
void PrintTo(const Taken& taken, std::ostream* out) {
    *out << taken.plotted << ' ' << taken.inRuns << ' ' << taken.single << ' ' << taken.chained;
}

TEST(ThinStrokes, AreSetPixelByPixelOnAnImageAndGoToThePainterSingly) {
    const POINT ends[] = {{10, 10}, {30, 30}, {30, 30}, {50, 10},                       // turns off
                          {10, 50}, {30, 52}, {30, 52}, {50, 55}, {50, 55}, {70, 59}};  // goes on
    const auto on = [&](QPaintDevice* target, Rendering rendering, const Stroke& stroke) {
        const auto* c = zm::uses::counts;
        using namespace zm::uses;
        const Taken before = {c[strokePlotted], c[strokeInRuns], c[strokeSingle], c[strokeChained]};
        QtDevice device(target, rendering);
        device.Lines(stroke, ends, 5);
        device.Finish();
        return Taken{c[strokePlotted] - before.plotted, c[strokeInRuns] - before.inRuns,
                     c[strokeSingle] - before.single, c[strokeChained] - before.chained};
    };
    QImage image = Paper();
    EXPECT_EQ(on(&image, Rendering::pixels, StrokeOf(1)), (Taken{5, 0, 0, 0}));
    EXPECT_EQ(on(&image, Rendering::pixels, StrokeOf(1, PS_DASH)), (Taken{0, 5, 0, 0}));
    QImage grey = image.convertToFormat(QImage::Format_Grayscale8);
    EXPECT_EQ(on(&grey, Rendering::pixels, StrokeOf(1)), (Taken{0, 5, 0, 0}));
    QImage small = image.copy(0, 0, 60, 60);  // the last stroke leaves it
    EXPECT_EQ(on(&small, Rendering::pixels, StrokeOf(1)), (Taken{4, 1, 0, 0}));
    EXPECT_EQ(on(&image, Rendering::smooth, StrokeOf(1)), (Taken{0, 0, 2, 1}));
    EXPECT_EQ(on(&image, Rendering::smooth, StrokeOf(1, PS_DASH)), (Taken{0, 0, 0, 2}));
}

// Figures take turns with a few pens.
TEST(KeptPens, AreMadeOnceWhereFiguresTakeTurnsWithFew) {
    QImage image = Paper();
    const auto made = [&](int pens) {
        const auto* c = zm::uses::counts;
        const std::uint64_t before = c[zm::uses::penMade], kept = c[zm::uses::penKept];
        QtDevice device(&image, Rendering::smooth);
        const POINT ends[] = {{10, 10}, {30, 30}};
        for (int i = 0; i < 10 * pens; ++i) device.Lines(StrokeOf(i % pens + 1), ends, 1);
        device.Finish();
        return std::pair(c[zm::uses::penMade] - before, c[zm::uses::penKept] - kept);
    };
    using Taken = std::pair<std::uint64_t, std::uint64_t>;
    EXPECT_EQ(made(2), Taken(2, 18));
    EXPECT_EQ(made(4), Taken(4, 36));
    EXPECT_GT(made(100).first, 100u);  // more than are kept
}
#endif

}  // namespace
