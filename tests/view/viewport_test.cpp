// The part of the plane that a picture shows.
#include "tools/view/viewport.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

namespace {

using zm::view::Viewport;

Viewport Town() {
    Viewport v;
    v.x = 40512250.0;
    v.y = 3456250.0;
    v.pixel = 0.5;
    v.rotation = 30.0;
    v.size = QSizeF(800, 600);
    return v;
}

void ExpectNear(QPointF a, QPointF b, double tolerance) {
    EXPECT_NEAR(a.x(), b.x(), tolerance);
    EXPECT_NEAR(a.y(), b.y(), tolerance);
}

// Eastings have 8 digits before the point: 1e-7 m is what a double holds of them.
constexpr double kMetre = 1e-6;

}  // namespace

TEST(Viewport, ShowsItsMiddleInTheMiddleAndNorthUp) {
    Viewport v = Town();
    v.rotation = 0.0;
    ExpectNear(v.ToPlane({400, 300}), {40512250.0, 3456250.0}, kMetre);
    ExpectNear(v.ToPlane({400, 200}), {40512250.0, 3456300.0}, kMetre);
    ExpectNear(v.ToPlane({500, 300}), {40512300.0, 3456250.0}, kMetre);
}

TEST(Viewport, IsTurnedCounterClockwise) {
    Viewport v = Town();
    v.rotation = 90.0;  // what is east is shown at the top
    ExpectNear(v.ToScreen({40512300.0, 3456250.0}), {400, 200}, 1e-6);
}

TEST(Viewport, TakesPlacesThereAndBack) {
    const Viewport v = Town();
    ExpectNear(v.ToScreen(v.ToPlane({17, 523})), {17, 523}, 1e-6);
}

TEST(Viewport, ZoomLeavesThePlaceUnderTheCursor) {
    Viewport v = Town();
    const QPointF before = v.ToPlane({123, 456});
    v.ZoomAbout({123, 456}, 4.0);
    EXPECT_DOUBLE_EQ(v.pixel, 0.125);
    ExpectNear(v.ToPlane({123, 456}), before, kMetre);
}

TEST(Viewport, ZoomEndsAtItsLimits) {
    Viewport v = Town();
    for (int i = 0; i < 200; ++i) v.ZoomAbout({0, 0}, 2.0);
    EXPECT_DOUBLE_EQ(v.pixel, zm::view::kSmallestPixel);
    for (int i = 0; i < 200; ++i) v.ZoomAbout({0, 0}, 0.5);
    EXPECT_DOUBLE_EQ(v.pixel, zm::view::kLargestPixel);
}

TEST(Viewport, TurnLeavesThePlaceToo) {
    Viewport v = Town();
    const QPointF before = v.ToPlane({700, 20});
    v.TurnAbout({700, 20}, 170.0);
    EXPECT_DOUBLE_EQ(v.rotation, -160.0);
    ExpectNear(v.ToPlane({700, 20}), before, kMetre);
}

TEST(Viewport, PanMovesWhatIsUnderTheHand) {
    Viewport v = Town();
    const QPointF before = v.ToPlane({100, 100});
    v.Pan({40, -25});
    ExpectNear(v.ToPlane({140, 75}), before, kMetre);
}

TEST(Viewport, FitShowsAllCornersWhateverTheTurn) {
    for (const double turn : {0.0, 30.0, 90.0, -135.0}) {
        Viewport v = Town();
        v.rotation = turn;
        v.Fit(QRectF(QPointF(0, 0), QPointF(1000, 200)));
        double widest = 0.0;
        for (const QPointF corner : {QPointF(0, 0), QPointF(1000, 0), QPointF(1000, 200), QPointF(0, 200)}) {
            const QPointF p = v.ToScreen(corner);
            EXPECT_TRUE(QRectF(0, 0, 800, 600).contains(p)) << turn;
            widest = std::max({widest, std::fabs(p.x() - 400) / 400, std::fabs(p.y() - 300) / 300});
        }
        EXPECT_NEAR(widest, 1.0 / 1.08, 1e-9) << turn;  // a margin of 4 % on both sides
    }
}

TEST(Viewport, FitOfAPointKeepsTheScale) {
    Viewport v = Town();
    v.Fit(QRectF(QPointF(5, 6), QPointF(5, 6)));
    EXPECT_DOUBLE_EQ(v.pixel, 0.5);
    ExpectNear(v.ToPlane({400, 300}), {5, 6}, kMetre);
}

TEST(Viewport, ARectangleBecomesTheWhole) {
    Viewport v = Town();
    const QPointF middle = v.ToPlane({200, 150});
    v.ZoomTo(QRectF(100, 75, 200, 150));
    EXPECT_DOUBLE_EQ(v.pixel, 0.125);
    ExpectNear(v.ToPlane({400, 300}), middle, kMetre);
}

TEST(Viewport, AnOldPictureIsPlacedWhereItsMapIs) {
    const Viewport old = Town();
    Viewport now = old;
    now.ZoomAbout({11, 22}, 3.0);
    now.TurnAbout({500, 100}, 20.0);
    now.Pan({-70, 30});
    ExpectNear(old.To(now).map(QPointF(321, 234)), now.ToScreen(old.ToPlane({321, 234})), 1e-5);
}

TEST(Viewport, ALargerPictureCoversASmallPanAndNoLargeOne) {
    const Viewport drawn = Town().Larger(1.4);
    Viewport v = Town();
    EXPECT_TRUE(v.IsCoveredBy(drawn));
    v.Pan({150, 0});
    EXPECT_TRUE(v.IsCoveredBy(drawn));
    v.Pan({20, 0});
    EXPECT_FALSE(v.IsCoveredBy(drawn));
}

TEST(Viewport, AScaleIsOneOfTheScreen) {
    // At 96 pixels an inch a pixel is 0.2646 mm, at 1:1000 0.2646 m.
    EXPECT_NEAR(zm::view::PixelOfScale(1000.0, 96.0), 0.26458333, 1e-8);
    EXPECT_NEAR(zm::view::ScaleOfPixel(0.26458333333, 96.0), 1000.0, 1e-6);
}
