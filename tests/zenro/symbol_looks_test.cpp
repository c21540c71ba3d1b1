// Looks of line symbols, and rules of the program, that are easily lost: a straight line of 80 m at 1:500.
#include <cmath>
#include <cstdio>
#include <sstream>

#include "tests/zenro/draw_fixture.h"

namespace {

using namespace zm::test;

struct Stroke {
    double x1, y1, x2, y2;  // metres from the sheet's south-west corner, x1 <= x2
    bool IsLevelAt(double y) const { return std::fabs(y1 - y) < 0.01 && std::fabs(y2 - y) < 0.01; }
};

class SymbolLooks : public DrawFixture {
 protected:
    /// By a rules file of the program, or the one here.
    std::vector<Stroke> StrokesOf(const std::string& rules, const std::string& properties) {
        m_zenro.File("in.geojson", Collection(LineFeature("[40512010,3456050],[40512090,3456050]", properties)));
        const Outcome end = m_zenro.Run({"draw", "in.geojson", "--rules", rules, "--scale", "500", "--sheet",
                                         "40512000,3456000,40512100,3456100", "--no-frame", "--overwrite", "-o",
                                         "out.rec", "--empty", "draw"});
        EXPECT_EQ(end.status, 0) << end.err;
        std::vector<Stroke> strokes;
        std::istringstream lines(Recording());
        for (std::string line; std::getline(lines, line);) {
            Stroke s{};
            if (std::sscanf(line.c_str(), "Line2:%lf:%lf:%lf:%lf", &s.x1, &s.y1, &s.x2, &s.y2) != 4) continue;
            if (s.x1 > s.x2) s = {s.x2, s.y2, s.x1, s.y1};
            strokes.push_back({s.x1 - 40512000, s.y1 - 3456000, s.x2 - 40512000, s.y2 - 3456000});
        }
        return strokes;
    }

    std::vector<Stroke> StrokesOfSymbol(int code) {
        m_zenro.File("r.rules", "* -> symbol " + std::to_string(code));
        return StrokesOf("./r.rules", "\"a\":1");
    }

    // Metres of level strokes at a height; strokes do not lie over each other.
    static double LengthAt(const std::vector<Stroke>& strokes, double y) {
        double length = 0.0;
        for (const Stroke& s : strokes)
            if (s.IsLevelAt(y)) length += s.x2 - s.x1;
        return length;
    }
};

TEST_F(SymbolLooks, ACartRoadHasOneSolidSideAndOneOfDashes) {
    const std::vector<Stroke> strokes = StrokesOfSymbol(245);
    EXPECT_NEAR(LengthAt(strokes, 50.0), 80.0, 0.01);
    EXPECT_NEAR(LengthAt(strokes, 50.4), 64.0, 0.01);  // 8 mm of each 10
}

TEST_F(SymbolLooks, AnElectrifiedRailwayHasThePiecesOfARailwayAndStrokesBetween) {
    const auto across = [](const std::vector<Stroke>& strokes) {
        std::vector<double> at;
        for (const Stroke& s : strokes)
            if (std::fabs(s.x1 - s.x2) < 1e-6 && std::fabs(std::fabs(s.y1 - s.y2) - 1.0) < 0.01) at.push_back(s.x1);
        return at;
    };
    const std::vector<Stroke> plain = StrokesOfSymbol(230), electrified = StrokesOfSymbol(231);
    ASSERT_GT(plain.size(), 100U);
    EXPECT_TRUE(across(plain).empty());
    const std::vector<double> at = across(electrified);
    ASSERT_EQ(at.size(), 16U);  // two in each 10 m
    for (std::size_t i = 0; i < at.size(); ++i) EXPECT_NEAR(at[i], (i % 2 == 0 ? 12.5 : 17.5) + 10.0 * (i / 2), 0.01);
    EXPECT_EQ(electrified.size(), plain.size() + at.size());
}

TEST_F(SymbolLooks, OfOsmPavementsAndCrossingsAreNoFootpaths) {
    const auto drawn = [&](const std::string& tags) {
        return !StrokesOf("osm", "\"highway\":\"footway\",\"other_tags\":\"" + tags + "\"").empty();
    };
    EXPECT_TRUE(drawn(R"(\"surface\"=>\"asphalt\")"));
    EXPECT_FALSE(drawn(R"(\"footway\"=>\"sidewalk\")"));
    EXPECT_FALSE(drawn(R"(\"footway\"=>\"crossing\",\"surface\"=>\"asphalt\")"));
}

}  // namespace
