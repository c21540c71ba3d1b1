// The drawing context: its life, the view, rotation, paper scale.
#include <gtest/gtest.h>

#include <cmath>

#include "draw/access.h"
#include "tests/draw/fixture.h"

namespace {

using zm::test::Lines;

class Context : public zm::test::DrawTest {
 protected:
    int px = 0, py = 0;
};

TEST_F(Context, TheFirstOneBecomesTheWorkingContext) {
    CTqDraw first(3);
    EXPECT_EQ(TqDC, &first);
    EXPECT_EQ(first.GetTqDCType(), 3);
    EXPECT_TRUE(host.boxes.empty());
}

TEST_F(Context, ASecondOneShowsAMessageAndLeavesTheFirst) {
    CTqDraw first;
    CTqDraw second(1);
    EXPECT_EQ(TqDC, &first);
    ASSERT_EQ(host.boxes.size(), 1u);
    EXPECT_EQ(host.boxes[0].text, "fatal error TqDC redefined");
    EXPECT_EQ(host.boxes[0].title, "Zenro Info");
}

TEST_F(Context, ADestroyedOneStaysPublished) {
    auto first = std::make_unique<CTqDraw>();
    const CTqDraw* address = first.get();
    alignas(CTqDraw) unsigned char other[sizeof(CTqDraw)];
    first.reset();
    EXPECT_EQ(TqDC, address);
    auto* second = new (other) CTqDraw();
    EXPECT_EQ(TqDC, address);
    ASSERT_EQ(host.boxes.size(), 1u);
    EXPECT_EQ(host.boxes[0].text, "fatal error TqDC redefined");
    second->~CTqDraw();
}

TEST_F(Context, SelectingReturnsThePreviousAndTakesNull) {
    CTqDraw first;
    EXPECT_EQ(SelectWorkingTqDC(nullptr), &first);
    EXPECT_EQ(SelectWorkingTqDC(&first), nullptr);
}

TEST_F(Context, ItsDestructorFreesTheLayers) {
    LoadLayers();
    EXPECT_EQ(GetColorNo1(120), 4);
    { CTqDraw dc; }
    EXPECT_EQ(GetColorNo1(120), 0);
}

TEST_F(Context, IsDrawableOnceItHasAView) {
    CTqDraw dc;
    EXPECT_EQ(dc.Drawable(), 0);
    dc.SetViewDrawDC(&device, 1, 0, 0, 10, 10, 0);
    EXPECT_EQ(dc.Drawable(), 1);
    EXPECT_EQ(dc.GetHdc(), &device);
    dc.ResetHdc(nullptr);
    EXPECT_EQ(dc.GetHdc(), nullptr);
}

TEST_F(Context, MapsTheUpperRightOfTheViewIntoIt) {
    CTqDraw& dc = MakeContext(0);
    EXPECT_EQ(dc.GetViewPos(80.0, 60.0, px, py), 1);
    EXPECT_EQ(px, 800);
    EXPECT_EQ(py, 0);
    EXPECT_EQ(dc.GetViewPos(80.1, 60.0, px, py), 0);
    EXPECT_EQ(px, 801);
    EXPECT_EQ(py, 0);
}

TEST_F(Context, LimitsAFarPointBeforeTheFlip) {
    CTqDraw& dc = MakeContext(0);
    EXPECT_EQ(dc.GetViewPos(4000.0, 10.0, px, py), 0);
    EXPECT_EQ(px, 30000);
    dc.SetViewDrawDC(&device, 10.0, 0.0, 0.0, 800, 600, 1);
    EXPECT_EQ(dc.GetViewPos(4000.0, 10.0, px, py), 0);
    EXPECT_EQ(px, 800 - 30000);
}

TEST_F(Context, TurnsTheViewWithFlip) {
    CTqDraw& dc = MakeContext(0);
    dc.SetViewDrawDC(&device, 10.0, 5.0, 7.0, 800, 600, 1);
    double x = 0, y = 0;
    dc.GetSurveyPos(x, y, 0, 0);
    EXPECT_DOUBLE_EQ(x, 85.0);
    EXPECT_DOUBLE_EQ(y, 7.0);
    for (double survey = 6.0; survey < 60.0; survey += 3.7) {
        dc.GetViewPos(survey, survey, px, py);
        dc.GetSurveyPos(x, y, px, py);
        EXPECT_NEAR(x, survey, 0.1);  // one pixel
        EXPECT_NEAR(y, survey, 0.1);
    }
}

TEST_F(Context, GivesTheViewAreaInAnOrderOfItsOwn) {
    CTqDraw& dc = MakeContext(0);
    double xmin = 0, ymin = 0, xmax = 0, ymax = 0;
    dc.GetViewArea(xmin, ymin, xmax, ymax);
    EXPECT_DOUBLE_EQ(xmin, 0.0);
    EXPECT_DOUBLE_EQ(ymin, 0.0);
    EXPECT_DOUBLE_EQ(xmax, 80.0);
    EXPECT_DOUBLE_EQ(ymax, 60.0);
    dc.SetCutArea();
    double left = 0, top = 0, right = 0, bottom = 0;
    dc.GetCutArea(left, top, right, bottom);
    EXPECT_DOUBLE_EQ(left, 0.0);
    EXPECT_DOUBLE_EQ(top, 60.0);
    EXPECT_DOUBLE_EQ(right, 80.0);
    EXPECT_DOUBLE_EQ(bottom, 0.0);
    EXPECT_DOUBLE_EQ(dc.GetPixelsByRealen(2.5), 25.0);
    EXPECT_DOUBLE_EQ(dc.GetRealenByPixels(25), 2.5);
}

TEST_F(Context, RotatesOnlyFromATenThousandthOn) {
    CTqDraw& dc = MakeContext(0);
    dc.SetRotateMoveP(0.00009, 0.00009, 0.00009);
    EXPECT_EQ(dc.IsRM(), 0);
    dc.SetRotateMoveP(0.0, 5.0, 0.0);
    EXPECT_EQ(dc.IsRM(), 1);
    double x = 3.0, y = 4.0;
    dc.GetRMCoord(x, y);
    EXPECT_EQ(x, 3.0);  // a zero angle moves nothing
    EXPECT_EQ(y, 4.0);
    dc.SetRotateMoveP(90.0, 1.0, 1.0);
    dc.GetRMCoord(x, y);
    EXPECT_NEAR(x, -2.0, 1e-12);
    EXPECT_NEAR(y, 3.0, 1e-12);
}

TEST_F(Context, StoresTheNeedOfRotationForItsCallers) {
    CTqDraw& dc = MakeContext(0);
    EXPECT_EQ(dc.IsNeedRotate(), 0);
    dc.SetNeedRotate(7);
    EXPECT_EQ(dc.IsNeedRotate(), 7);
}

TEST_F(Context, TurnsNoListOfOnePointIntoPixels) {
    CTqDraw& dc = MakeContext(0);
    CArray<CPoint, CPoint&> points;
    CPoint kept(7, 8);
    points.Add(kept);
    double xy[] = {1, 2, 3, 4};
    EXPECT_EQ(dc.ToIntPoints(1, xy, &points), 0);
    ASSERT_EQ(points.GetSize(), 1);
    EXPECT_EQ(points[0].x, 7);
    EXPECT_EQ(dc.ToIntPoints(2, xy, &points), 2);
    EXPECT_EQ(points[1].x, 30);
    EXPECT_EQ(points[1].y, 560);
}

TEST_F(Context, RepairsThePaperScaleWhenItIsAskedFor) {
    EXPECT_EQ(setgscale(0.0), 1000.0);
    EXPECT_EQ(_To01mm(10), 0.0);
    EXPECT_EQ(getcurgscale(), 1000.0);
    EXPECT_DOUBLE_EQ(_To01mm(10), 1.0);
}

TEST_F(Context, MeasuresTenthsOfAMillimetreOnPaper) {
    setgscale(500.0);
    EXPECT_DOUBLE_EQ(_To01mm(10), 0.5);
    EXPECT_EQ(_For01mm(0.5), 10);
    EXPECT_EQ(_For01mm(-0.26), -5);  // toward zero
}

TEST_F(Context, ReadsTheSelectedPenAndLeavesItSelected) {
    CTqDraw& dc = MakeContext(0);
    HPEN old = nullptr;
    const HPEN pen = dc.SetPen(2, 5, 0x123456u, old);
    const tagLOGPEN description = dc.GetCurLogpen();
    EXPECT_EQ(description.lopnStyle, 2u);
    EXPECT_EQ(description.lopnWidth.x, 5);
    EXPECT_EQ(description.lopnColor, 0x123456u);
    EXPECT_EQ(zm::device::SelectObject(&device, old), pen);
    zm::device::DeleteObject(pen);
}

}  // namespace
