// Lines so long that their patterns would have millions of marks.
#include "tests/zenro/draw_fixture.h"

namespace {

using namespace zm::test;

class LongLines : public DrawFixture {
 protected:
    Outcome DrawLine(const std::string& coordinates, int symbol) {
        return DrawFile("in.geojson", Collection(LineFeature(coordinates, "\"a\":1")),
                        "* -> symbol " + std::to_string(symbol),
                        {"--scale", "500", "--sheet", "40512000,3456000,40512100,3456100"});
    }
};

TEST_F(LongLines, AreCutToTheSheetAndReported) {
    const Outcome end = DrawLine("[32512000,3456050],[40512050,3456050],[48512000,3456051]", 240);
    EXPECT_EQ(end.status, 0);
    EXPECT_NE(end.err.find("a line of more than 100 m of paper is cut at the sheet"), std::string::npos) << end.err;
    EXPECT_EQ(end.err.find("never come forward"), std::string::npos) << end.err;
    EXPECT_GT(Count(Recording(), "Line2:"), 10);
}

TEST_F(LongLines, OfAHundredKilometresOfPaperOnTheSheetAreDrawnPlain) {
    constexpr int kVertices = 520000;
    std::string zigzag;
    for (int i = 0; i < kVertices; ++i)
        zigzag += std::string(i == 0 ? "" : ",") + "[405120" + (i % 2 == 0 ? "01" : "99") + "," +
                  std::to_string(3456001 + i % 90) + "]";
    const Outcome end = DrawLine(zigzag, 240);
    EXPECT_EQ(end.status, 4);
    EXPECT_NE(end.err.find("is drawn plain"), std::string::npos) << end.err;
    EXPECT_LT(Count(Recording(), "Line2:"), kVertices);
}

TEST_F(LongLines, OfTenMetresOfPaperAreDrawnAsTheyStand) {
    const Outcome end = DrawLine("[40509600,3456050],[40514500,3456050]", 240);
    EXPECT_EQ(end.status, 0) << end.err;
    EXPECT_GT(Count(Recording(), "Line2:"), 10);
}

}  // namespace
