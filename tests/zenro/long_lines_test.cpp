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

// A line of a metre of paper would have a hundred thousand marks, and a damaged library may ask for millions.
TEST_F(LongLines, OfAPatternTooFineToBeSeenAreDrawnPlain) {
    m_zenro.File("fine.dat", "*7 LC\n+0.005 -0.005\n*8 LC\n+0.05 -0.05\n");
    const auto draw = [&](int symbol) {
        return DrawFile("in.geojson", Collection(LineFeature("[40512000,3456050],[40512100,3456050]", "\"a\":1")),
                        "* -> symbol " + std::to_string(symbol),
                        {"--scale", "500", "--sheet", "40512000,3456000,40512100,3456100", "--symbols", "./fine.dat"});
    };
    const Outcome fine = draw(7);
    EXPECT_EQ(fine.status, 4);
    EXPECT_NE(fine.err.find("symbol 7: its pattern repeats within 0.05 mm; its lines are drawn plain."),
              std::string::npos)
        << fine.err;
    EXPECT_EQ(Count(Recording(), "Line2:"), 1) << Recording().substr(0, 1000);
    const Outcome coarse = draw(8);
    EXPECT_EQ(coarse.status, 0) << coarse.err;
    EXPECT_GT(Count(Recording(), "Line2:"), 1000);
}

TEST_F(LongLines, OfTenMetresOfPaperAreDrawnAsTheyStand) {
    const Outcome end = DrawLine("[40509600,3456050],[40514500,3456050]", 240);
    EXPECT_EQ(end.status, 0) << end.err;
    EXPECT_GT(Count(Recording(), "Line2:"), 10);
}

// A contour with one wrong vertex, which no extent shows where the sheet is given.
TEST_F(LongLines, HaveTheLabelsAndLettersThatAreOnTheSheet) {
    const auto draw = [&](const char* last, const std::string& rules) {
        const std::string line = std::string("[40512010,3456050],[40512090,3456050],[40512090,") + last + "]";
        return DrawFile("in.geojson", Collection(LineFeature(line, "\"height\":40")), rules,
                        {"--scale", "500", "--sheet", "40512000,3456000,40512100,3456100"});
    };
    for (const char* last :
         {"3456090", "3456450", "400003456050"}) {  // the last: within the numbers of plane coordinates
        Outcome end = draw(last, "* -> symbol 381, height height, note #, label height\n");
        EXPECT_EQ(end.status, 0) << end.err;
        EXPECT_GE(Count(Recording(), "Text:"), 1) << last;
        EXPECT_EQ(end.err.find("found no room"), std::string::npos) << end.err;
        end = draw(last, "* -> symbol 346\n");
        EXPECT_EQ(end.status, 0) << end.err;
        EXPECT_GT(Count(Recording(), "Line2:"), 20) << last << ": letters of the cable";
    }
}

TEST_F(LongLines, AVertexThatIsNoPlaceIsNamedAndLeftOutWhereTheSheetIsGivenToo) {
    for (const char* symbol : {"381, height height, note #, label height", "346", "386", "250"}) {
        const Outcome end =
            DrawFile("in.geojson",
                     Collection(LineFeature("[40512010,3456050],[40512090,3456050],[7e297,3456051]", "\"height\":40")),
                     std::string("* -> symbol ") + symbol + "\n",
                     {"--scale", "500", "--sheet", "40512000,3456000,40512100,3456100"});
        EXPECT_EQ(end.status, 4) << symbol;
        EXPECT_NE(end.err.find("the vertex (7e+297, 3456051)"), std::string::npos) << end.err;
        EXPECT_GT(Count(Recording(), "Line2:"), 0) << symbol;
    }
}

}  // namespace
