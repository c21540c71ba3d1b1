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

TEST(CoordInput, BadLinesAreSkippedToldAndExitedWith4) {
    const Outcome r = Program().Run({"coord", "to-plane"}, "# head\n\n30.5 120.75\nhello\n95 120\n30,5 120\n");
    EXPECT_EQ(r.status, 4);
    EXPECT_EQ(Count(r.out, "\n"), 3);  // head, the good line, and 30 with 5 as its longitude
    EXPECT_NE(r.err.find("-:4: no point: \"hello\""), std::string::npos);
    EXPECT_NE(r.err.find("-:5: latitude 95.000000 is beyond 90 degrees"), std::string::npos);
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
    EXPECT_EQ(r.err, "zenro: nowhere.txt: cannot be opened: No such file or directory.\n");
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

TEST(Measure, TooFewPointsAreAFailure) {
    EXPECT_EQ(Program().Run({"measure", "distance"}, "30 110\n").status, 1);
    EXPECT_EQ(Program().Run({"measure", "area"}, "30 110\n31 111\n30 110\n").status, 1);
}

}  // namespace
