#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "tests/zenro/program.h"

namespace {

using zm::test::Count;
using zm::test::Outcome;
using zm::test::Program;

TEST(CoordToPlane, AgreesWithTheNationalSystem) {
    // PROJ 9.1: cs2cs EPSG:4490 EPSG:4528 gives 3375780.91391 40572000.19995.
    const Outcome r = Program().Run({"coord", "to-plane"}, "30.5 120.75 A1\n");
    EXPECT_EQ(r.status, 0);
    EXPECT_EQ(r.err, "");
    EXPECT_EQ(r.out,
              "# north_m east_m zone central_meridian_deg (2000 family, a 6378137 m)\n"
              "3375780.9139 40572000.1999 40 120 A1\n");
}

TEST(CoordToPlane, TakesPackedAnglesNamedAxesAndEitherOrder) {
    const Program zenro;
    const std::string expected = "3375780.9139 40572000.1999 40 120\n";
    EXPECT_NE(zenro.Run({"coord", "to-plane", "--angles", "packed"}, "30.30 120.45\n").out.find(expected),
              std::string::npos);
    EXPECT_NE(zenro.Run({"coord", "to-plane"}, "lon=120.75, lat=30.5\n").out.find(expected), std::string::npos);
    EXPECT_NE(zenro.Run({"coord", "to-plane", "--order", "lon,lat"}, "120.75;30.5\n").out.find(expected),
              std::string::npos);
}

TEST(CoordToPlane, KnowsSixDegreeZonesFreeMeridiansAndEastings) {
    const Program zenro;
    const auto east = [&](std::vector<std::string> more) {
        std::vector<std::string> arguments = {"coord", "to-plane", "--json"};
        arguments.insert(arguments.end(), more.begin(), more.end());
        return nlohmann::json::parse(zenro.Run(arguments, "30.5 120.75\n").out)["east_m"].get<double>();
    };
    EXPECT_DOUBLE_EQ(east({}), 40572000.1999);
    EXPECT_DOUBLE_EQ(east({"--easting", "offset"}), 572000.1999);
    EXPECT_DOUBLE_EQ(east({"--easting", "natural"}), 72000.1999);
    EXPECT_DOUBLE_EQ(east({"--meridian", "120", "--easting", "natural"}), 72000.1999);
    EXPECT_EQ(static_cast<int>(east({"--zone", "6"}) / 1e6), 21);
}

TEST(CoordToPlane, VerboseTellsHowTheTwoHistoricFormulasDiffer) {
    const auto j =
        nlohmann::json::parse(Program().Run({"coord", "to-plane", "--json", "--verbose"}, "30.5 120.75\n").out);
    EXPECT_NEAR(j["class_minus_free_mm"]["north"].get<double>(), 0.0296, 0.0005);  // the term 13072
}

TEST(CoordToGeo, UndoesToPlaneToTheLastPrintedDigit) {
    const Outcome r = Program().Run({"coord", "to-geo", "--decimals", "9"}, "3375780.91391 40572000.19995\n");
    EXPECT_EQ(r.status, 0);
    EXPECT_NE(r.out.find("\n30.500000000 120.750000000 120\n"), std::string::npos) << r.out;
}

TEST(CoordToGeo, GivesHistoricValuesOnRequestAndTheirDifference) {
    const Program zenro;
    const std::string input = "3375780.9139 40700000.0\n";
    EXPECT_NE(zenro.Run({"coord", "to-geo", "--historic", "class"}, input).out,
              zenro.Run({"coord", "to-geo"}, input).out);
    EXPECT_NE(zenro.Run({"coord", "to-geo", "--verbose"}, input).out.find("class-true_mm lat "), std::string::npos);
}

TEST(CoordToGeo, AnEastingWithoutZoneNeedsAMeridian) {
    const Program zenro;
    const Outcome without = zenro.Run({"coord", "to-geo"}, "3375780.9 572000.2\n");
    EXPECT_EQ(without.status, 1);
    EXPECT_NE(without.err.find("has no zone number; give --meridian"), std::string::npos);
    EXPECT_EQ(zenro.Run({"coord", "to-geo", "--meridian", "120"}, "3375780.9 572000.2\n").status, 0);
}

TEST(CoordZone, TellsBothZones) {
    const auto j = nlohmann::json::parse(Program().Run({"coord", "zone", "--json"}, "118.5\n").out);
    EXPECT_EQ(j["zone3"], 40);
    EXPECT_EQ(j["central_meridian3_deg"], 120);
    EXPECT_EQ(j["zone6"], 20);
    EXPECT_EQ(j["central_meridian6_deg"], 117);
}

TEST(CoordInput, BadLinesKeepTheirPlaceAreToldAndExitedWith4) {
    const Outcome r = Program().Run({"coord", "to-plane"}, "# head\n\n30.5 120.75\nhello\n95 120\n30.5 120.75 Q\n");
    EXPECT_EQ(r.status, 4);
    EXPECT_EQ(Count(r.out, "\n"), 5);  // head, and a line for each of the four
    EXPECT_NE(r.out.find("\nerror line 4: no point: \"hello\""), std::string::npos) << r.out;
    EXPECT_NE(r.err.find("warning: -:4: no point: \"hello\""), std::string::npos) << r.err;
    EXPECT_NE(r.err.find("-:5: latitude 95.000000 is beyond 90 degrees"), std::string::npos);
    EXPECT_EQ(r.out.substr(r.out.rfind("3375780")), "3375780.9139 40572000.1999 40 120 Q\n");
}

TEST(CoordInput, TheSameErrorAThousandTimesIsFiveLinesAndACount) {
    std::string input = "30 120\n";
    for (int i = 0; i < 1000; ++i) input += "nonsense\n";
    const Outcome r = Program().Run({"coord", "to-plane"}, input);
    EXPECT_EQ(r.status, 4);
    EXPECT_EQ(Count(r.err, "\n"), 6);
    EXPECT_NE(r.err.find("995 more like these"), std::string::npos);
}

TEST(CoordInput, NothingConvertedIsAFailure) {
    EXPECT_EQ(Program().Run({"coord", "to-plane"}, "").status, 1);
    EXPECT_EQ(Program().Run({"coord", "to-plane"}, "a b\n").status, 1);
}

TEST(CoordInput, AMissingFileIs3) {
    const Outcome r = Program().Run({"coord", "to-plane", "nowhere.txt"});
    EXPECT_EQ(r.status, 3);
    EXPECT_EQ(r.err, "error: nowhere.txt: cannot be opened: No such file or directory.\n");
}

TEST(CoordOutput, KeepsItsDecimalPointInEveryLocale) {
    const Program zenro;
    EXPECT_EQ(zenro.Run({"coord", "to-plane"}, "30.5 120.75\n", {"LC_ALL=de_DE.UTF-8"}).out,
              zenro.Run({"coord", "to-plane"}, "30.5 120.75\n").out);
}

TEST(Measure, ShowsAllMethodsBesideEachOther) {
    const auto j = nlohmann::json::parse(Program().Run({"measure", "distance", "--json"}, "30 110\n31 111\n").out);
    EXPECT_NEAR(j["results"]["ellipsoid"]["value"].get<double>(), 146730.257, 0.001);
    EXPECT_NEAR(j["results"]["ellipsoid_back"]["value"].get<double>(), 146647.199, 0.001);
    EXPECT_NEAR(j["results"]["geodesic"]["value"].get<double>(), 146647.199, 0.001);
    EXPECT_NEAR(j["results"]["ellipsoid"]["difference"].get<double>(), 83.058, 0.001);
}

TEST(Measure, AnAreaIsClosedHoweverItIsGiven) {
    const Program zenro;
    const std::string open = "30 110\n30 110.01\n30.01 110.01\n30.01 110\n";
    const auto value = [&](const std::string& input) {
        return nlohmann::json::parse(
                   zenro.Run({"measure", "area", "--json"}, input).out)["results"]["ellipsoid"]["value"]
            .get<double>();
    };
    EXPECT_NEAR(value(open), 1069521.173, 0.01);
    EXPECT_DOUBLE_EQ(value(open), value(open + "30 110\n"));
}

TEST(Measure, PointsOfSeveralZonesHaveNoMeasureInThePlane) {
    const std::string across = "39 118.4\n39 118.6\n39.1 118.6\n";
    for (const char* what : {"distance", "area"}) {
        const Outcome r = Program().Run({"measure", what, "--json"}, across);
        EXPECT_EQ(r.status, 4) << what;
        EXPECT_NE(r.err.find("more than one 3-degree zone"), std::string::npos) << r.err;
        const auto j = nlohmann::json::parse(r.out);
        EXPECT_TRUE(j["results"]["plane"]["value"].is_null());
        EXPECT_GT(j["results"]["ellipsoid"]["value"].get<double>(), 0.0);
    }
    EXPECT_NE(Program().Run({"measure", "area"}, across).out.find("3-degree zones                   - m2"),
              std::string::npos);
}

TEST(Measure, TooFewPointsAreAFailure) {
    EXPECT_EQ(Program().Run({"measure", "distance"}, "30 110\n").status, 1);
    EXPECT_EQ(Program().Run({"measure", "area"}, "30 110\n31 111\n30 110\n").status, 1);
}

TEST(MeasureLayer, PutsAreasAndLengthsOfBothWaysIntoFields) {
    const Program zenro;
    zenro.File("in.geojson",
               "{\"type\":\"FeatureCollection\",\"crs\":{\"type\":\"name\",\"properties\":{\"name\":"
               "\"urn:ogc:def:crs:EPSG::4490\"}},\"features\":[" +
                   zm::test::AreaFeature("[[110,30],[110.01,30],[110.01,30.01],[110,30.01],[110,30]]", "\"a\":1") +
                   "," + zm::test::LineFeature("[110,30],[111,31]", "\"a\":2") + "]}");
    const Outcome r = zenro.Run({"measure", "layer", "in.geojson", "-o", "out.geojson"});
    ASSERT_EQ(r.status, 0) << r.err;
    const auto j = nlohmann::json::parse(zm::test::ReadFile(zenro / "out.geojson"));
    const auto& area = j["features"][0]["properties"];
    const auto& line = j["features"][1]["properties"];
    EXPECT_EQ(area["a"], 1);
    // As measure area and measure distance give them for the same points.
    EXPECT_NEAR(area["area_m2"].get<double>(), 1069521.173, 0.05);
    EXPECT_NEAR(area["area_plane_m2"].get<double>() - area["area_m2"].get<double>(), area["area_diff_m2"].get<double>(),
                1e-6);
    EXPECT_NEAR(line["length_m"].get<double>(), 146647.199, 0.001);
    EXPECT_FALSE(line.contains("area_m2"));
    EXPECT_EQ(zenro.Run({"measure", "layer", "in.geojson", "-o", "out.xyz"}).status, 2);
}

TEST(MeasureLayer, AFeatureOfSeveralZonesHasNoFieldsOfThePlane) {
    const Program zenro;
    zenro.File("in.geojson",
               "{\"type\":\"FeatureCollection\",\"crs\":{\"type\":\"name\",\"properties\":{\"name\":"
               "\"urn:ogc:def:crs:EPSG::4490\"}},\"features\":[" +
                   zm::test::AreaFeature("[[118.4,39],[118.6,39],[118.6,39.1],[118.4,39]]", "\"a\":1") + "," +
                   zm::test::LineFeature("[118.6,39],[118.7,39]", "\"a\":2") + "]}");
    const Outcome r = zenro.Run({"measure", "layer", "in.geojson", "-o", "-.geojson"});
    EXPECT_EQ(r.status, 4);
    EXPECT_NE(r.err.find("feature 0: lies in more than one 3-degree zone"), std::string::npos) << r.err;
    const auto features = nlohmann::json::parse(r.out)["features"];
    EXPECT_NEAR(features[0]["properties"]["area_m2"].get<double>(), 96169551.8193, 1.0);
    EXPECT_TRUE(features[0]["properties"].value("area_plane_m2", nlohmann::json()).is_null());
    EXPECT_TRUE(features[0]["properties"].value("length_diff_m", nlohmann::json()).is_null());
    EXPECT_FALSE(features[1]["properties"].value("length_plane_m", nlohmann::json()).is_null());
}

}  // namespace
