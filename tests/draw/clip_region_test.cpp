// Cutting a segment into pieces with an in-or-out mark.
#include <gtest/gtest.h>

#include <memory>
#include <vector>

#include "tests/draw/fixture.h"
#include "zenromath/draw.h"

namespace {

struct Piece {
    double first[2];
    double second[2];
    int mark;
};

class RegionCut : public zm::test::DrawTest {
 protected:
    std::vector<Piece> Cut(double x1, double y1, double x2, double y2) {
        CObArray list;
        result = area.rgncutline(x1, y1, x2, y2, &list);
        std::vector<Piece> pieces;
        for (int i = 0; i < list.GetSize(); ++i) {
            const std::unique_ptr<zm::RegionPiece> p(reinterpret_cast<zm::RegionPiece*>(list.GetAt(i)));
            pieces.push_back({{p->first[0], p->first[1]}, {p->second[0], p->second[1]}, p->mark});
        }
        return pieces;
    }
    void SetSquare() {
        double x[] = {0, 10, 10, 0};
        double y[] = {0, 0, 10, 10};
        area.setcutarea(4, x, y);
    }
    CCutArea area{1};
    int result = -1;
};

TEST_F(RegionCut, AddsNothingWithTheSwitchOff) {
    SetSquare();
    area.set_docut(0);
    EXPECT_TRUE(Cut(1, 1, 2, 2).empty());
    EXPECT_EQ(result, 0);
}

TEST_F(RegionCut, MarksASegmentInsideAPolygonWithOne) {
    SetSquare();
    const auto pieces = Cut(1, 1, 2, 2);
    ASSERT_EQ(pieces.size(), 1u);
    EXPECT_EQ(pieces[0].mark, 1);
    EXPECT_TRUE(host.boxes.empty());
}

TEST_F(RegionCut, MarksTheFarPieceFirstAndCopiesXTwice) {
    SetSquare();
    const auto pieces = Cut(5, 5, 15, 6);
    ASSERT_EQ(pieces.size(), 2u);
    EXPECT_EQ(pieces[0].mark, 1);
    EXPECT_EQ(pieces[1].mark, 0);
    EXPECT_EQ(pieces[0].first[0], 15.0);
    EXPECT_EQ(pieces[0].first[1], 15.0);
    EXPECT_NEAR(pieces[0].second[0], 10.0, 1e-12);
    EXPECT_NEAR(pieces[0].second[1], 10.0, 1e-12);
    EXPECT_EQ(pieces[1].second[0], 5.0);
    EXPECT_EQ(pieces[1].second[1], 5.0);
    EXPECT_TRUE(host.boxes.empty());
}

TEST_F(RegionCut, AlternatesTheMarksThroughAConvexPolygon) {
    SetSquare();
    const auto pieces = Cut(-5, 5, 15, 6);
    ASSERT_EQ(pieces.size(), 3u);
    EXPECT_EQ(pieces[0].mark, 0);
    EXPECT_EQ(pieces[1].mark, 1);
    EXPECT_EQ(pieces[2].mark, 0);
}

TEST_F(RegionCut, MarksTheInsideOfARectangleWithZero) {
    area.setcutarea(0, 0, 10, 10);
    const auto pieces = Cut(1, 1, 2, 2);
    ASSERT_EQ(pieces.size(), 1u);
    EXPECT_EQ(pieces[0].mark, 0);
    EXPECT_TRUE(host.boxes.empty());
}

TEST_F(RegionCut, ReportsARectangleWithTheFirstEndInsideAndTheSecondToTheLeft) {
    area.setcutarea(0, 0, 10, 10);
    EXPECT_EQ(Cut(5, 5, -5, 5).size(), 1u);
    EXPECT_EQ(result, 1);
    ASSERT_EQ(host.boxes.size(), 1u);
    EXPECT_NE(host.boxes[0].text.find("in out err"), std::string::npos);
    EXPECT_NE(host.boxes[0].text.find("OrderLines"), std::string::npos);
}

TEST_F(RegionCut, MovesAnOuterEndOfARectangleAlongTheSegmentOfTheLastClip) {
    area.setcutarea(0, 0, 10, 10);
    double x1 = -10, y1 = 0, x2 = 20, y2 = 15;  // its slope is one half
    area.cutline(x1, y1, x2, y2);
    const auto pieces = Cut(5, 5, -5, 20);  // outcodes 0 and 9
    ASSERT_EQ(pieces.size(), 1u);
    EXPECT_EQ(pieces[0].first[0], 0.0);  // on the left side, at y 5, and not where its own line would meet it
    EXPECT_EQ(pieces[0].second[0], 5.0);
}

TEST_F(RegionCut, AppendsToTheListAndTakesNoListAtAll) {
    SetSquare();
    CObArray list;
    area.rgncutline(1, 1, 2, 2, &list);
    area.rgncutline(1, 1, 2, 2, &list);
    EXPECT_EQ(list.GetSize(), 2);
    for (int i = 0; i < 2; ++i) delete reinterpret_cast<zm::RegionPiece*>(list.GetAt(i));
    EXPECT_EQ(area.rgncutline(1, 1, 2, 2, nullptr), 0);
}

}  // namespace
