// Fills of areas as SOLID entities, where rules ask for them.
#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <ctime>
#include <random>

#include "tests/zenro/draw_fixture.h"
#include "tools/zenro/map/trapezoids.h"
#include "zenromath/dwg_reader.h"

namespace {

using namespace zm::test;
using zm::DrawingEntity;
using zm::DrawingFile;

using Ring = std::vector<std::array<double, 2>>;

constexpr double kX = 40512000.0, kY = 3456000.0;

std::string TextOf(const Ring& ring) {
    std::string text;
    char point[64];
    for (const auto& [x, y] : ring) {
        std::snprintf(point, sizeof point, "%s[%ld.%03d,%ld.%03d]", text.empty() ? "" : ",", static_cast<long>(x),
                      static_cast<int>(std::lround((x - std::floor(x)) * 1000.0)) % 1000, static_cast<long>(y),
                      static_cast<int>(std::lround((y - std::floor(y)) * 1000.0)) % 1000);
        text += point;
    }
    return "[" + text + "]";
}

// Whole millimetres, so that the file has the same numbers.
double Rounded(double v) {
    return std::floor(v * 8.0) / 8.0;
}

bool IsOdd(const std::vector<Ring>& rings, double x, double y) {
    bool odd = false;
    for (const Ring& ring : rings)
        for (std::size_t i = 0; i + 1 < ring.size(); ++i) {
            const auto& [x1, y1] = ring[i];
            const auto& [x2, y2] = ring[i + 1];
            if ((y1 > y) != (y2 > y) && x < x1 + (x2 - x1) * (y - y1) / (y2 - y1)) odd = !odd;
        }
    return odd;
}

double DistanceFromLimit(const Ring& ring, double x, double y) {
    double least = 1e9;
    for (std::size_t i = 0; i + 1 < ring.size(); ++i) {
        const double dx = ring[i + 1][0] - ring[i][0], dy = ring[i + 1][1] - ring[i][1];
        const double t =
            std::clamp(((x - ring[i][0]) * dx + (y - ring[i][1]) * dy) / (dx * dx + dy * dy + 1e-30), 0.0, 1.0);
        least = std::min(least, std::hypot(ring[i][0] + t * dx - x, ring[i][1] + t * dy - y));
    }
    return least;
}

class Solids : public DrawFixture {
 protected:
    // Draws areas on a sheet of 100 by 80 m and takes the SOLIDs, their corners in order around each.
    std::vector<Ring> SolidsOf(const std::string& areas, const std::string& rules = "* -> symbol 500, solid 141") {
        m_last = DrawFile("in.geojson", Collection(areas), rules,
                          {"--sheet", "40512000,3456000,40512100,3456080", "-o", "out.dwg", "-o", "out.dxf"});
        const std::string bytes = ReadFile(m_zenro / "out.dwg");
        const DrawingFile drawing(std::vector<std::uint8_t>(bytes.begin(), bytes.end()));
        EXPECT_TRUE(drawing.Prove().sound());
        std::vector<Ring> solids;
        drawing.ForEachEntity([&](const DrawingEntity& entity) {
            if (entity.kind != "SOLID") return true;
            EXPECT_EQ(entity.color, 141);
            EXPECT_EQ(entity.thickness.value_or(0.0), 0.0);
            const auto& p = entity.points;
            solids.push_back(
                {{p[0].x, p[0].y}, {p[1].x, p[1].y}, {p[3].x, p[3].y}, {p[2].x, p[2].y}, {p[0].x, p[0].y}});
            return true;
        });
        return solids;
    }
    // Each point of the sheet inside lies in one SOLID, each other in none.
    void ExpectCovered(const std::vector<Ring>& rings, const std::vector<Ring>& solids) {
        std::mt19937 random(7);
        for (int i = 0; i < 4000; ++i) {
            const double x = kX - 20.0 + random() % 140000 * 0.001, y = kY - 20.0 + random() % 120000 * 0.001;
            double near =
                std::min({std::fabs(x - kX), std::fabs(x - kX - 100.0), std::fabs(y - kY), std::fabs(y - kY - 80.0)});
            for (const Ring& ring : rings) near = std::min(near, DistanceFromLimit(ring, x, y));
            if (near < 0.005) continue;
            const bool onSheet = x > kX && x < kX + 100.0 && y > kY && y < kY + 80.0;
            // Level sides of neighbours: a point is counted by one of them.
            long covering = 0;
            for (const Ring& solid : solids) covering += IsOdd({solid}, x, y);
            ASSERT_EQ(covering, onSheet && IsOdd(rings, x, y)) << x - kX << " " << y - kY;
        }
    }
    Outcome m_last;
};

TEST_F(Solids, CoverAnAreaLessItsHolesWithinTheSheet) {
    const std::vector<Ring> rings = {
        {{kX - 10, kY + 10}, {kX + 60, kY + 5}, {kX + 120, kY + 60}, {kX + 30, kY + 95}, {kX - 10, kY + 10}},
        {{kX + 20, kY + 20}, {kX + 40, kY + 20}, {kX + 30, kY + 40}, {kX + 20, kY + 20}},
        {{kX + 50, kY + 30}, {kX + 60, kY + 30}, {kX + 60, kY + 35}, {kX + 50, kY + 35}, {kX + 50, kY + 30}}};
    const std::vector<Ring> solids =
        SolidsOf(AreaFeature(TextOf(rings[0]) + "," + TextOf(rings[1]) + "," + TextOf(rings[2]), "\"c\":1"));
    EXPECT_EQ(m_last.status, 0) << m_last.err;
    EXPECT_GT(solids.size(), 5u);
    EXPECT_LT(solids.size(), 30u);
    ExpectCovered(rings, solids);
    EXPECT_EQ(Count(ReadFile(m_zenro / "out.dxf"), "\nSOLID"), static_cast<int>(solids.size()));
}

TEST_F(Solids, ARectangleIsOneAndOutsideTheSheetIsNone) {
    const std::string square =
        "[[40512010,3456010],[40512020,3456010],[40512020,3456030],[40512010,3456030],[40512010,3456010]]";
    EXPECT_EQ(SolidsOf(AreaFeature(square, "\"c\":1")).size(), 1u);
    const std::string outside = "[[40512101,3456010],[40512110,3456010],[40512110,3456030],[40512101,3456010]]";
    EXPECT_EQ(SolidsOf(AreaFeature(square, "\"c\":1") + "," + AreaFeature(outside, "\"c\":1")).size(), 1u);
}

TEST_F(Solids, CoverRingsThatCrossThemselves) {
    std::mt19937 random(3);
    for (int round = 0; round < 6; ++round) {
        Ring ring;
        const int corners = 4 + round * 7;
        for (int i = 0; i < corners; ++i) {
            const double x = kX - 15.0 + Rounded(random() % 130000 * 0.001);
            ring.push_back({x, kY - 15.0 + Rounded(random() % 110000 * 0.001)});
        }
        ring.push_back(ring.front());
        SCOPED_TRACE(corners);
        ExpectCovered({ring}, SolidsOf(AreaFeature(TextOf(ring), "\"c\":1")));
    }
}

TEST_F(Solids, AreSeenInThePictureOfTheDrawingInTheirColour) {
    SolidsOf(AreaFeature("[[40512010,3456010],[40512020,3456010],[40512020,3456030],[40512010,3456010]]", "\"c\":1"));
    ASSERT_EQ(m_zenro.Run({"dwg", "draw", "out.dwg", "out.svg"}).status, 0);
    EXPECT_NE(ReadFile(m_zenro / "out.svg").find("fill=\"#7fdfff\""), std::string::npos);
}

TEST_F(Solids, AreThereWhereRulesAskAlone) {
    const std::string square =
        "[[40512010,3456010],[40512020,3456010],[40512020,3456030],[40512010,3456030],[40512010,3456010]]";
    EXPECT_TRUE(SolidsOf(AreaFeature(square, "\"c\":1"), "* -> symbol 500").empty());
    EXPECT_TRUE(SolidsOf(LineFeature("[40512010,3456010],[40512020,3456010]", "\"c\":1"), "* -> symbol 200, solid 141")
                    .empty());
    SolidsOf(AreaFeature(square, "\"c\":1"), "* -> symbol 500, solid 256");
    EXPECT_EQ(m_last.status, 2);
    EXPECT_NE(m_last.err.find("1 to 255"), std::string::npos) << m_last.err;
}

// Parts of one slanted side, of neighbours with vertices of their own, differ by what coordinates are rounded by; these
// took up to a minute.
TEST(Trapezoids, OfSidesThatLieOnEachOtherAreFewAndSoonFound) {
    std::mt19937 random(7);
    const auto part = [&] { return random() % 10000 * 1e-4; };
    for (int round = 0; round < 2000; ++round) {
        const double x = 40512000 + part() * 1000, y = 3456000 + part() * 1000;
        const double dx = (part() - 0.5) * (round % 3 == 0 ? 1e-3 : 300), dy = 500 * part() + 1e-3;
        zm::tool::Shape shape;
        shape.kind = zm::tool::GeometryKind::area;
        for (int side = 0; side < 4; ++side) {
            const double from = part(), to = part(), out = (side % 2 == 0 ? -1 : 1) * (100 * part() + 1);
            const int pieces = 1 + static_cast<int>(random() % 8);
            zm::tool::Chain ring;
            const auto add = [&](double along, double away) {
                ring.x.push_back(x + dx * along + away);
                ring.y.push_back(y + dy * along);
            };
            for (int i = 0; i <= pieces; ++i) add(from + (to - from) * i / pieces, 0);
            add(to, out);
            add(from, out);
            add(from, 0);
            shape.chains.push_back(ring);
        }
        const std::clock_t start = std::clock();
        EXPECT_LT(zm::tool::TrapezoidsOf(shape, {}).size(), 100u);
        ASSERT_LT(std::clock() - start, CLOCKS_PER_SEC) << round;
    }
}

}  // namespace
