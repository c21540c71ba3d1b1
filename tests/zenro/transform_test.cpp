// zenro coord transform: zone to zone, and with parameters datum to datum.
#include <gtest/gtest.h>

#include <cmath>
#include <nlohmann/json.hpp>
#include <sstream>

#include "tests/zenro/program.h"
#include "tools/zenro/coord/datum_parameters.h"

namespace {

using namespace zm::test;
using namespace zm::tool;

std::string LastLine(const std::string& text) {
    const std::size_t end = text.find_last_not_of('\n');
    return text.substr(text.rfind('\n', end) + 1, end - text.rfind('\n', end));
}

TEST(Transform, GoesFromZoneToZoneAndWidthToWidth) {
    const Program zenro;
    // PROJ 9.1: 30.5 120.75 in EPSG:4528, 4527 (zone 39, meridian 117) and 4499 (6-degree zone 21, meridian 123).
    const Outcome zone = zenro.Run({"coord", "transform", "--to-meridian", "117"}, "3375780.91391 40572000.19995\n");
    EXPECT_EQ(zone.status, 0) << zone.err;
    const Outcome back = zenro.Run({"coord", "transform", "--from-meridian", "117", "--columns", "no,n,e,h"},
                                   "P " + LastLine(zone.out) + " 12.5\n");
    EXPECT_EQ(back.out, "P 3375780.9139 40572000.2000 12.5\n") << back.err;
    const Outcome six = zenro.Run({"coord", "transform", "--to-zone", "6"}, "3375780.91391 40572000.19995\n");
    EXPECT_EQ(LastLine(six.out), "3377695.2203 21283975.2954");
}

TEST(Transform, AChangeOfFamilyWithoutParametersIsRefused) {
    const Outcome r = Program().Run({"coord", "transform", "--from", "54", "--to", "2000"}, "3375780.9 40572000.2\n");
    EXPECT_EQ(r.status, 2);
    EXPECT_NE(r.err.find("the datum changes; give --seven, --four, or --common"), std::string::npos) << r.err;
}

TEST(Transform, SevenParametersAgreeWithProj) {
    const Program zenro;
    // echo "30.5 120.75 0" | cct -d 9 "+proj=pipeline +step +proj=axisswap +order=2,1 +step +proj=unitconvert +xy_in=deg
    //   +xy_out=rad +step +proj=cart +ellps=krass +step +proj=helmert +x=15.8 +y=-154.4 +z=-82.3 +rx=0.5 +ry=-0.3 +rz=1.2
    //   +s=2.5 +convention=position_vector +step +inv +proj=cart +a=6378137 +b=6356752.31414036 +step
    //   +proj=unitconvert +xy_in=rad +xy_out=deg +step +proj=axisswap +order=2,1"
    const std::vector<std::string> run = {
        "coord", "transform", "--from", "54",         "--to", "2000",    "--from-form",
        "geo",   "--to-form", "geo",    "--decimals", "9",    "--seven", "15.8,-154.4,-82.3,0.5,-0.3,1.2,2.5"};
    std::vector<std::string> with = run;
    with.insert(with.end(), {"--rotation", "position-vector"});
    EXPECT_EQ(zenro.Run(with, "30.5 120.75\n").out, "30.500102703 120.751097696\n");
    EXPECT_EQ(zenro.Run(run, "30.5 120.75\n").status, 2);  // which way the rotations go must be said
    with.back() = "coordinate-frame";
    EXPECT_NE(zenro.Run(with, "30.5 120.75\n").out, "30.500102703 120.751097696\n");
}

TEST(Estimate, SevenParametersComeBackFromTheirOwnPoints) {
    SevenParameters known;
    known.shift = {15.8, -154.4, -82.3};
    known.rotation = {0.5, -0.3, 1.2};
    known.ppm = 2.5;
    std::vector<CommonPoint> points;
    for (const double latitude : {30.0, 31.5, 33.0})
        for (const double longitude : {118.0, 121.0}) {
            CommonPoint p;
            p.from = EarthCentred(54, latitude, longitude, 20.0 * latitude);
            p.to = known.Apply(p.from);
            points.push_back(p);
        }
    SevenParameters found;
    ASSERT_TRUE(Estimate(points, found));
    for (int i = 0; i < 3; ++i) {
        EXPECT_NEAR(found.shift[i], known.shift[i], 1e-4);
        EXPECT_NEAR(found.rotation[i], known.rotation[i], 1e-6);
    }
    EXPECT_NEAR(found.ppm, known.ppm, 1e-6);
    points.resize(2);
    EXPECT_FALSE(Estimate(points, found));
}

TEST(Estimate, PointsOnOneLineTellNoSevenParameters) {
    std::vector<CommonPoint> points(4);
    for (int i = 0; i < 4; ++i) points[i].from = points[i].to = {1e6 + 1000.0 * i, 2e6 + 2000.0 * i, 3e6 + 500.0 * i};
    SevenParameters found;
    EXPECT_FALSE(Estimate(points, found));
}

TEST(EarthCentred, ComesBackToTheLastDigits) {
    for (const double latitude : {-89.0, -30.0, 0.0, 44.9, 45.1, 60.0, 89.9})
        for (const double longitude : {-170.0, 0.0, 120.0}) {
            double B = 0.0, L = 0.0, h = 0.0;
            FromEarthCentred(84, EarthCentred(84, latitude, longitude, 1234.5), B, L, h);
            EXPECT_NEAR(B, latitude, 1e-12);
            EXPECT_NEAR(L, longitude, 1e-12);
            EXPECT_NEAR(h, 1234.5, 1e-7);
        }
}

TEST(Transform, FourParametersAreEstimatedAndTheirResidualsShown) {
    const Program zenro;
    // Turned by 90 degrees, 1000 to the north: n' = 1000 - e, e' = n; the last point is off by 3 cm.
    zenro.File("common.txt", "A 0 0 1000 0\nB 100 0 1000 100\nC 100 100 900 100\nD 0 100 900.03 0\n");
    const Outcome r = zenro.Run({"coord", "transform", "--common", "common.txt", "--estimate", "four"}, "50 50 X\n");
    EXPECT_EQ(r.status, 0) << r.err;
    EXPECT_NE(r.out.find("# four parameters: north 1000."), std::string::npos) << r.out;
    EXPECT_NE(r.out.find("# residual of D: north 15.0 mm, east "), std::string::npos) << r.out;
    EXPECT_NE(r.out.find("# mean residual "), std::string::npos);
    EXPECT_EQ(LastLine(r.out).substr(0, 4), "950.") << r.out;
    zenro.File("two.txt", "A 0 0 1000 0\nB 100 0 1000 100\n");
    EXPECT_NE(zenro.Run({"coord", "transform", "--common", "two.txt", "--estimate", "four"}, "50 50\n")
                  .out.find("no residual shows a wrong one"),
              std::string::npos);
    zenro.File("one.txt", "A 0 0 1000 0\n");
    EXPECT_EQ(zenro.Run({"coord", "transform", "--common", "one.txt", "--estimate", "four"}, "50 50\n").status, 1);
    zenro.File("bad.txt", "A 0 0 1000\n");
    EXPECT_EQ(zenro.Run({"coord", "transform", "--common", "bad.txt", "--estimate", "four"}, "50 50\n").status, 3);
}

TEST(Transform, WholeDataSetsKeepHeightsAttributesAndNames) {
    const Program zenro;
    std::string data =
        Collection(LineFeature("[40512010,3456010,5.5],[40512090,3456070,6.5]", "\"名称\":\"清溪路\",\"a\":7"));
    zenro.File("in.geojson", data);
    const Outcome r = zenro.Run({"coord", "transform", "in.geojson", "-o", "out.geojson", "--to-meridian", "117"});
    ASSERT_EQ(r.status, 0) << r.err;
    const auto j = nlohmann::json::parse(ReadFile(zenro / "out.geojson"));
    const auto& feature = j["features"][0];
    EXPECT_EQ(feature["properties"]["名称"], "清溪路");
    EXPECT_EQ(feature["properties"]["a"], 7);
    EXPECT_EQ(feature["geometry"]["coordinates"][1][2], 6.5);
    // The same point through the point form.
    const Outcome point = zenro.Run({"coord", "transform", "--to-meridian", "117"}, "3456010 40512010\n");
    double north = 0.0, east = 0.0;
    std::istringstream(point.out) >> north >> east;
    EXPECT_NEAR(feature["geometry"]["coordinates"][0][1].get<double>(), north, 2e-4);
    EXPECT_NEAR(feature["geometry"]["coordinates"][0][0].get<double>(), east, 2e-4);
    EXPECT_EQ(zenro.Run({"coord", "transform", "in.geojson", "-o", "out.geojson"}).status, 5);  // exists
    EXPECT_EQ(zenro.Run({"coord", "transform", "in.geojson", "-o", "o.geojson", "--to", "54"}).status, 2);
}

TEST(Transform, ADataSetGetsTheSystemOfItsZone) {
    const Program zenro;
    zenro.File("in.geojson", Collection(LineFeature("[40512010,3456010],[40512090,3456070]", "\"a\":7")));
    ASSERT_EQ(zenro.Run({"coord", "transform", "in.geojson", "-o", "six.geojson", "--to-zone", "6"}).status, 0);
    const std::string six = ReadFile(zenro / "six.geojson");
    EXPECT_NE(six.find("EPSG::4499"), std::string::npos) << six;  // 2000 family, 6-degree zone 21
    EXPECT_NE(six.find("[ 212"), std::string::npos) << six;       // 120.1 E lies 2.9 degrees west of 123
    ASSERT_EQ(zenro.Run({"coord", "transform", "in.geojson", "-o", "geo.geojson", "--to-form", "geo"}).status, 0);
    EXPECT_NE(ReadFile(zenro / "geo.geojson").find("EPSG::4490"), std::string::npos);
}

}  // namespace
