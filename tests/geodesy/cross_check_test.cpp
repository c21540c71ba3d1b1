// The projection, distances and areas beside independent programs. The bounds are those of docs/geodesy/departures.md.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <string>
#include <vector>

#include "geodesy/state.h"
#include "tests/geodesy/programs.h"
#include "tests/support/random.h"
#include "zenromath/geodesy.h"

namespace {

using zm::test::Row;
using zm::test::RunProgram;

constexpr double kDegree = 3.141592653589793 / 180.0;
constexpr double kEarth = 6378137.0;  // metres; turns radians into metres on the ground

// The three ellipsoids with the flattening of the free functions (from b) and of the class (from e2).
struct EllipsoidCase {
    int selector;
    znCoordSysTypeConstants system;
    double a, b, e2;
    double FlatteningOfB() const { return (a - b) / a; }
    double FlatteningOfE2() const { return 1.0 - std::sqrt(1.0 - e2); }
};
constexpr EllipsoidCase kEllipsoids[] = {
    {54, znCoord54, 6378245.0, 6356863.01877305, 0.00669342162296594},
    {80, znCoord80, 6378140.0, 6356755.28815753, 0.006694384999588},
    {84, znCoord84G6, 6378137.0, 6356752.31414036, 0.0066943800229},
};

// One row of the table of departures: degrees from the meridian, millimetres on the ground, latitudes 0 to 80.
struct Departure {
    double l;
    double forwardNorth, forwardEast, classNorth, classEast;
    double backwardNorth, backwardEast, classBackNorth, classBackEast, trueNorth, trueEast;
};
constexpr Departure kDepartures[] = {
    //  l    forward      UTMtoGS      backward      GStoUTM      InverseOfForward
    {0.0, 0.06, 0.001, 0.07, 0.001, 0.06, 0.001, 102.0, 0.001, 0.06, 0.001},
    {0.5, 0.06, 0.001, 0.07, 0.001, 0.06, 0.001, 102.0, 0.87, 0.06, 0.001},
    {1.0, 0.06, 0.001, 0.07, 0.001, 0.06, 0.004, 102.0, 1.73, 0.06, 0.001},
    {1.5, 0.06, 0.002, 0.07, 0.002, 0.15, 0.03, 102.0, 2.6, 0.06, 0.002},
    {2.0, 0.06, 0.007, 0.07, 0.007, 0.82, 0.11, 102.0, 3.5, 0.06, 0.007},
    {3.0, 0.07, 0.10, 0.13, 0.10, 9.2, 0.77, 102.0, 5.0, 0.07, 0.10},
    {4.0, 0.38, 0.71, 0.44, 0.71, 52.0, 3.0, 102.0, 7.8, 0.38, 0.71},
};

std::string TransverseMercator(double a, double flattening) {
    return "TransverseMercatorProj -l 0 -k 1 -p 9 -e " + zm::numbers::Text("%.17g %.17g", a, flattening);
}

struct Truth {
    double B, l, x, y;
};

// Positions at the distances of the table, every degree of latitude from 0 to 80, with their true plane coordinates.
std::vector<Truth> TruthAt(double l, double a, double flattening) {
    std::vector<Row> rows;
    for (int degree = 0; degree <= 80; ++degree) rows.push_back({static_cast<double>(degree), l});
    const auto found = RunProgram(TransverseMercator(a, flattening), rows);
    std::vector<Truth> truth;
    for (std::size_t i = 0; i < found.size() && i < rows.size(); ++i)
        truth.push_back({rows[i][0] * kDegree, rows[i][1] * kDegree, found[i].at(1), found[i].at(0)});
    return truth;
}

struct Worst {
    double north = 0.0, east = 0.0;  // millimetres
    void Plane(const Truth& t, double x, double y) {
        north = std::max(north, std::abs(x - t.x) * 1000.0);
        east = std::max(east, std::abs(y - t.y) * 1000.0);
    }
    void Angles(const Truth& t, double B, double l) {
        north = std::max(north, std::abs(B - t.B) * kEarth * 1000.0);
        east = std::max(east, std::abs(l - t.l) * std::cos(t.B) * kEarth * 1000.0);
    }
};

TEST(CrossCheck, FreeFunctionsDepartFromTheTruthAsDocumented) {
    ZM_NEED_PROGRAM("TransverseMercatorProj", "geographiclib-tools");
    for (const EllipsoidCase& e : kEllipsoids) {
        for (const Departure& row : kDepartures) {
            const auto truth = TruthAt(row.l, e.a, e.FlatteningOfB());
            ASSERT_EQ(truth.size(), 81U);
            Worst there, back, trueBack;
            for (const Truth& t : truth) {
                double x = 0.0, y = 0.0, B = 0.0, l = 0.0;
                forward(e.selector, t.B, t.l, &x, &y, nullptr);
                there.Plane(t, x, y);
                backward(e.selector, t.x, t.y, &B, &l, nullptr);
                back.Angles(t, B, l);
                zm::InverseOfForward(e.selector, t.x, t.y, B, l);
                trueBack.Angles(t, B, l);
            }
            EXPECT_LE(there.north, row.forwardNorth) << e.selector << " at " << row.l;
            EXPECT_LE(there.east, row.forwardEast) << e.selector << " at " << row.l;
            EXPECT_LE(back.north, row.backwardNorth) << e.selector << " at " << row.l;
            EXPECT_LE(back.east, row.backwardEast) << e.selector << " at " << row.l;
            EXPECT_LE(trueBack.north, row.trueNorth) << e.selector << " at " << row.l;
            EXPECT_LE(trueBack.east, row.trueEast) << e.selector << " at " << row.l;
        }
    }
}

TEST(CrossCheck, CoordinateClassDepartsFromTheTruthAsDocumented) {
    ZM_NEED_PROGRAM("TransverseMercatorProj", "geographiclib-tools");
    for (const EllipsoidCase& e : kEllipsoids) {
        for (const Departure& row : kDepartures) {
            const auto truth = TruthAt(row.l, e.a, e.FlatteningOfE2());
            ASSERT_EQ(truth.size(), 81U);
            Worst there, back;
            for (const Truth& t : truth) {
                Coordinate_2Dsys point;
                point.setEllipse(e.system);
                point.B = t.B;
                point.L = t.l;
                point.UTMtoGS();
                there.Plane(t, point.GX, point.GY);
                point.GX = t.x;
                point.GY = t.y;
                point.GStoUTM();
                back.Angles(t, point.B, point.L);
            }
            EXPECT_LE(there.north, row.classNorth) << e.selector << " at " << row.l;
            EXPECT_LE(there.east, row.classEast) << e.selector << " at " << row.l;
            EXPECT_LE(back.north, row.classBackNorth) << e.selector << " at " << row.l;
            EXPECT_LE(back.east, row.classBackEast) << e.selector << " at " << row.l;
        }
    }
}

std::string Earth(const EllipsoidCase& e) {
    return zm::numbers::Text(" +a=%.17g +b=%.17g", e.a, e.b);
}

TEST(CrossCheck, ForwardAgreesWithCs2cs) {
    ZM_NEED_PROGRAM("cs2cs", "proj-bin");
    ZM_TRACE_SEED();
    zm::test::Random random(51);
    for (const EllipsoidCase& e : kEllipsoids) {
        std::vector<Row> rows;
        for (int i = 0; i < 500; ++i) rows.push_back({random.Real(114.0, 120.0), random.Real(0.0, 80.0)});
        const auto found = RunProgram("cs2cs -f %.9f +proj=longlat" + Earth(e) +
                                          " +no_defs +to +proj=tmerc +lon_0=117 +k=1" + Earth(e) + " +units=m +no_defs",
                                      rows);
        ASSERT_EQ(found.size(), rows.size());
        for (std::size_t i = 0; i < rows.size(); ++i) {
            double x = 0.0, y = 0.0;
            JWD_to_Gaosi(e.selector, rows[i][1] * kDegree, rows[i][0] * kDegree, 117.0 * kDegree, x, y);
            EXPECT_NEAR(x, found[i].at(1), 0.00007);
            EXPECT_NEAR(y, found[i].at(0), 0.00010);
        }
    }
}

TEST(CrossCheck, EarthCentredCoordinatesAgreeWithCs2cs) {
    ZM_NEED_PROGRAM("cs2cs", "proj-bin");
    ZM_TRACE_SEED();
    zm::test::Random random(52);
    for (const EllipsoidCase& e : kEllipsoids) {
        std::vector<Row> rows;
        for (int i = 0; i < 500; ++i)
            rows.push_back({random.Real(-89.0, 89.0), random.Real(-89.0, 89.0), random.Real(-500.0, 9000.0)});
        const auto found = RunProgram(
            "cs2cs -f %.9f +proj=longlat" + Earth(e) + " +no_defs +to +proj=geocent" + Earth(e) + " +no_defs", rows);
        ASSERT_EQ(found.size(), rows.size());
        for (std::size_t i = 0; i < rows.size(); ++i) {
            Coordinate_3Dsys point(rows[i][1] * kDegree, rows[i][0] * kDegree, rows[i][2], e.system);
            point.BLHtoXYZ();
            // The e2 of the class and b of the free functions agree to 1e-6 m.
            EXPECT_NEAR(point.getX(), found[i].at(0), 3e-6);
            EXPECT_NEAR(point.getY(), found[i].at(1), 3e-6);
            EXPECT_NEAR(point.getZ(), found[i].at(2), 3e-6);
            point.setXYZ(found[i][0], found[i][1], found[i][2]);
            point.XYZtoBLH();
            EXPECT_NEAR(point.getB() * kEarth, rows[i][1] * kDegree * kEarth, 0.0003);
            EXPECT_NEAR(point.getL() * kEarth, rows[i][0] * kDegree * kEarth, 3e-6);
        }
    }
}

double Distance(const Row& line, short method) {
    const Point3D points[] = {{line[1], line[0], 0.0}, {line[3], line[2], 0.0}};
    return DistandAreaInquiry(points, 2, method).GetDist();
}

std::string Geodesic() {
    return "GeodSolve -i -p 7 -e " + zm::numbers::Text("6378137 %.17g", 1.0 - std::sqrt(1.0 - 0.0066943800229));
}

// The largest departure in millimetres over the lines from GeodSolve.
double WorstDistance(const std::vector<Row>& lines, short method) {
    const auto found = RunProgram(Geodesic(), lines);
    EXPECT_EQ(found.size(), lines.size());
    double worst = 0.0;
    for (std::size_t i = 0; i < found.size(); ++i)
        worst = std::max(worst, std::abs(Distance(lines[i], method) - found[i].at(2)) * 1000.0);
    return worst;
}

// Lines of a length in degrees, between 18 and 54 degrees north, {B1, L1, B2, L2}; rising: the latitude's change.
std::vector<Row> Lines(double length, double rising) {
    zm::test::Random random(53);
    std::vector<Row> lines;
    for (int i = 0; i < 300; ++i) {
        const double B = random.Real(18.0, 54.0);
        const double L = random.Real(75.0, 134.0);
        lines.push_back({B, L, B + rising * length, L + random.Real(0.5, 1.0) * length});
    }
    return lines;
}

TEST(CrossCheck, DistancesTowardsFallingLatitudeAgreeWithGeodSolve) {
    ZM_NEED_PROGRAM("GeodSolve", "geographiclib-tools");
    ZM_TRACE_SEED();
    for (const double length : {0.01, 0.1, 1.0, 5.0}) {
        const double worst = WorstDistance(Lines(length, -0.5), 1);
        RecordProperty("falling_" + zm::numbers::Text("%g", length), zm::numbers::Text("%.6f", worst));
        EXPECT_LE(worst, 2.0) << length;  // millimetres; the step of 2e-10 rad of the iteration is 1.3 mm
    }
}

// Towards rising latitude the lost sense of travel costs up to 2 parts in 1000: most lines below some 35 degrees read
// long, those above it short.
TEST(CrossCheck, DistancesTowardsRisingLatitudeDepartByPartsInAThousand) {
    ZM_NEED_PROGRAM("GeodSolve", "geographiclib-tools");
    ZM_TRACE_SEED();
    const auto lines = Lines(1.0, 0.5);
    const auto found = RunProgram(Geodesic(), lines);
    ASSERT_EQ(found.size(), lines.size());
    double shortest = 0.0;
    double longest = 0.0;
    for (std::size_t i = 0; i < lines.size(); ++i) {
        const double excess = Distance(lines[i], 1) / found[i].at(2) - 1.0;
        shortest = std::min(shortest, excess);
        longest = std::max(longest, excess);
    }
    RecordProperty("longest", zm::numbers::Text("%.6f", longest));
    RecordProperty("shortest", zm::numbers::Text("%.6f", shortest));
    EXPECT_LT(longest, 0.002);
    EXPECT_GT(shortest, -0.002);
    EXPECT_GT(longest, 0.0005);
    EXPECT_LT(shortest, -0.0005);
}

TEST(CrossCheck, DistancesAlongMeridiansAgreeWithGeodSolve) {
    ZM_NEED_PROGRAM("GeodSolve", "geographiclib-tools");
    std::vector<Row> lines;
    for (double B = -80.0; B < 80.0; B += 1.0) lines.push_back({B, 117.0, B + 1.0, 117.0});
    EXPECT_LE(WorstDistance(lines, 1), 0.01);
}

TEST(CrossCheck, DistancesAlongParallelsAreTheParallelNotTheGeodesic) {
    ZM_NEED_PROGRAM("GeodSolve", "geographiclib-tools");
    std::vector<Row> lines;
    for (double B = 0.0; B < 60.0; B += 1.0) lines.push_back({B, 117.0, B, 117.1});
    const auto found = RunProgram(Geodesic(), lines);
    ASSERT_EQ(found.size(), lines.size());
    for (std::size_t i = 0; i < lines.size(); ++i) {
        const double excess = Distance(lines[i], 1) - found[i].at(2);
        EXPECT_GE(excess, -1e-6);
        EXPECT_LE(excess, 0.0012);  // s^3 tan^2 B / (24 R^2), 0.001 m at 60 degrees
    }
}

// Edges run straight in latitude and longitude; Planimeter's are geodesics, so each edge is given in 2,000 pieces.
TEST(CrossCheck, AreasAgreeWithPlanimeter) {
    ZM_NEED_PROGRAM("Planimeter", "geographiclib-tools");
    zm::geodesy::ResetState();
    const std::vector<Point3D> ring = {
        {117.1, 30.1, 0}, {117.2, 30.15, 0}, {117.25, 30.2, 0}, {117.05, 30.25, 0}, {117.1, 30.1, 0}};
    std::vector<Row> fine;
    for (std::size_t i = 0; i + 1 < ring.size(); ++i)
        for (int j = 0; j < 2000; ++j) {
            const double part = j / 2000.0;
            fine.push_back(
                {ring[i].y + part * (ring[i + 1].y - ring[i].y), ring[i].x + part * (ring[i + 1].x - ring[i].x)});
        }
    const auto found = RunProgram(
        "Planimeter -p 9 -e " + zm::numbers::Text("6378137 %.17g", 1.0 - std::sqrt(1.0 - 0.0066943800229)), fine);
    ASSERT_EQ(found.size(), 1U);
    const double truth = std::abs(found[0].at(2));
    DistandAreaInquiry inquiry(ring.data(), static_cast<int>(ring.size()), 1);
    EXPECT_NEAR(inquiry.GetArea(), truth, 0.05);  // of 1.5e8 square metres
    SetEllipseBLsecPrec(0.0);
    EXPECT_NEAR(TestmyCalEllipseArea(ring.data(), static_cast<int>(ring.size()), true, 6378137.0, 298.257222101, false),
                truth, 0.05);
    zm::geodesy::ResetState();
}

}  // namespace
