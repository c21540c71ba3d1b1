// zenro draw on small data whose figure is known.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <nlohmann/json.hpp>
#include <set>
#include <sstream>

#include "tests/support/recorded_numbers.h"
#include "tests/zenro/program.h"

namespace {

using namespace zm::test;

// A drawing of one GeoJSON text by one rules text.
class Draw : public testing::Test {
 protected:
    Outcome Run(const std::string& data, const std::string& rules, std::vector<std::string> more) {
        m_zenro.File("in.geojson", data);
        m_zenro.File("r.rules", rules);
        std::vector<std::string> arguments = {"draw", "in.geojson", "--rules", "./r.rules", "--overwrite"};
        if (std::find(more.begin(), more.end(), "--scale") == more.end())
            arguments.insert(arguments.end(), {"--scale", "1000"});
        arguments.insert(arguments.end(), more.begin(), more.end());
        return m_zenro.Run(arguments);
    }
    std::string Recording(const std::string& data, const std::string& rules, std::vector<std::string> more = {}) {
        more.insert(more.end(), {"-o", "out.rec", "--no-frame", "--sheet", "40512000,3456000,40512100,3456100"});
        m_last = Run(data, rules, more);
        return ReadFile(m_zenro / "out.rec");
    }
    Program m_zenro;
    Outcome m_last;
};

const std::string kDiagonal = Collection(LineFeature("[40512010,3456010],[40512090,3456070]", "\"a\":1"));

TEST_F(Draw, ALineReachesTheRecordingAsItStands) {
    const std::string rec = Recording(kDiagonal, "* -> symbol 250");
    EXPECT_EQ(m_last.status, 0) << m_last.err;
    EXPECT_NE(rec.find("Layer:250\n"), std::string::npos);
    EXPECT_NE(rec.find("Line2:40512010.000000:3456010.000000:40512090.000000:3456070.000000\n"), std::string::npos)
        << rec;
}

TEST_F(Draw, TheSheetClipsTheFigure) {
    const std::string data = Collection(LineFeature("[40511900,3456050],[40512200,3456050]", "\"a\":1"));
    EXPECT_NE(Recording(data, "* -> symbol 250")
                  .find("Line2:40512000.000000:3456050.000000:40512100.000000:3456050.000000\n"),
              std::string::npos);
}

TEST_F(Draw, AClipAreaClipsTheFigure) {
    m_zenro.File("clip.geojson",
                 Collection(AreaFeature(
                     "[[40512020,3456000],[40512060,3456000],[40512060,3456100],[40512020,3456100],[40512020,3456000]]",
                     "\"a\":1")));
    const std::string data = Collection(LineFeature("[40512001,3456050],[40512099,3456050]", "\"a\":1"));
    const std::string rec = Recording(data, "* -> symbol 250", {"--clip", "clip.geojson"});
    EXPECT_NE(rec.find("Line2:40512060.000000:3456050.000000:40512020.000000:3456050.000000\n"), std::string::npos)
        << rec;
}

TEST_F(Draw, RotationTurnsTheMapAboutTheMiddleOfTheSheet) {
    const std::string data = Collection(LineFeature("[40512050,3456050],[40512080,3456050]", "\"a\":1"));
    EXPECT_NE(Recording(data, "* -> symbol 250", {"--rotate", "90"})
                  .find("Line2:40512050.000000:3456050.000000:40512050.000000:3456080.000000\n"),
              std::string::npos);
}

TEST_F(Draw, TheFirstRuleThatFitsDrawsAndAlsoAsksFurther) {
    const std::string rules = "a = 1 -> symbol 250, also\na = 1 -> symbol 200\n* -> symbol 300\n";
    const std::string rec = Recording(kDiagonal, rules);
    EXPECT_NE(rec.find("Layer:250\n"), std::string::npos);
    EXPECT_NE(rec.find("Layer:200\n"), std::string::npos);
    EXPECT_EQ(rec.find("Layer:300\n"), std::string::npos);
}

TEST_F(Draw, ARuleForOtherScalesTakesNothing) {
    const std::string rules = "* -> scales -2000, symbol 250\n* -> scales 5000-, symbol 200\n";
    const std::string large = Recording(kDiagonal, rules);
    EXPECT_NE(large.find("Layer:250\n"), std::string::npos);
    EXPECT_EQ(large.find("Layer:200\n"), std::string::npos);
    const std::string small = Recording(kDiagonal, rules, {"--scale", "5000"});
    EXPECT_EQ(small.find("Layer:250\n"), std::string::npos);
    EXPECT_NE(small.find("Layer:200\n"), std::string::npos);
    const Outcome between = Run(kDiagonal, rules, {"-o", "out.svg", "--overwrite", "--scale", "3000"});
    EXPECT_EQ(between.status, 6);
    EXPECT_NE(between.err.find("no rule draws a feature of the data at 1:3000"), std::string::npos) << between.err;
    const Outcome check = m_zenro.Run({"rules", "check", "./r.rules", "in.geojson", "--scale", "5000", "--json"});
    EXPECT_NE(check.out.find("\"lines\": 0"), std::string::npos) << check.out << check.err;
    EXPECT_NE(check.out.find("\"lines\": 1"), std::string::npos);
}

TEST_F(Draw, LevelsDecideWhatIsDrawnFirst) {
    const std::string data = Collection(LineFeature("[40512010,3456010],[40512090,3456070]", "\"a\":1") + "," +
                                        LineFeature("[40512010,3456020],[40512090,3456080]", "\"a\":2"));
    const std::string rec = Recording(data, "a = 1 -> symbol 250, level 8\na = 2 -> symbol 200, level 1\n");
    EXPECT_LT(rec.find("Layer:200\n"), rec.find("Layer:250\n"));
}

TEST_F(Draw, HeightsStandInTheDwgFile) {
    EXPECT_EQ(Run(Collection(LineFeature("[40512010,3456010],[40512090,3456070]", "\"h\":12.5")),
                  "* -> symbol 250, height h", {"-o", "out.dwg", "--no-frame"})
                  .status,
              0);
    EXPECT_NE(m_zenro.Run({"dwg", "dump", "out.dwg", "--json"}).out.find("12.5"), std::string::npos);
}

// A sheet that nobody cut to round numbers, as a view of a window: the numbers of its corners are long.
TEST_F(Draw, NumbersOfAFrameWithOddCornersKeepApartAndInside) {
    const auto frame = [&](const std::string& sheet) {
        Run(Collection(LineFeature("[40512010,3456010],[40512090,3456070]", "\"a\":1")), "* -> symbol 250",
            {"-o", "out.rec", "--sheet", sheet});
        return ReadFile(m_zenro / "out.rec");
    };
    const std::string odd = frame("40511885.123,3455972.377,40512613.288,3456520.311");
    EXPECT_EQ(Count(odd, ":11.900\n"), 0);  // 15 mm from the corner with 40511.885
    EXPECT_EQ(Count(odd, ":12.600\n"), 0);
    EXPECT_EQ(Count(odd, ":12.000\n"), 2);
    EXPECT_EQ(Count(odd, ":2.50:40511.885\n"), 2);
    EXPECT_EQ(Count(odd, ":3456.520\n"), 2);
    EXPECT_EQ(Count(odd, ":2.50:3456.520\n"), 0);  // smaller, between the neat line and the frame
    const std::string round = frame("40511880,3456000,40512580,3456500");
    EXPECT_EQ(Count(round, ":2.50:3456.50\n"), 2) << round;
    EXPECT_EQ(Count(round, ":11.90\n"), 2);
}

TEST_F(Draw, AllOutputsHaveTheSameFigure) {
    const std::string data = Collection(
        LineFeature("[40512010,3456010],[40512090,3456070]", "\"a\":1,\"name\":\"清溪路\"") + "," +
        PointFeature(40512050, 3456080, "\"a\":1,\"name\":\"D7\"") + "," +
        AreaFeature("[[40512010,3456080],[40512030,3456080],[40512030,3456095],[40512010,3456095],[40512010,3456080]]",
                    "\"a\":2,\"name\":\"混2\""));
    const Outcome r = Run(data,
                          "[* : point]\n* -> symbol 6, note #, label name\n[* : line]\n* -> symbol 241, note D, label "
                          "name, place spread\n[* : area]\n* -> symbol 200, note J, label name\n",
                          {"-o", "out.rec", "-o", "out.dwg", "-o", "out.svg"});
    EXPECT_EQ(r.status, 0) << r.err;
    EXPECT_EQ(r.out, "out.rec\nout.dwg\nout.svg\n");
    const std::string rec = ReadFile(m_zenro / "out.rec"), svg = ReadFile(m_zenro / "out.svg");
    const std::string dump = m_zenro.Run({"dwg", "dump", "out.dwg"}).out;
    const int texts = Count(rec, "\nText:");
    EXPECT_GT(texts, 10);
    EXPECT_EQ(Count(svg, "<text"), texts);
    EXPECT_EQ(Count(dump, "TEXT"), texts);
    for (const char* name : {"清", "溪", "路", "D7"}) EXPECT_NE(dump.find(name), std::string::npos) << name;
    EXPECT_EQ(m_zenro.Run({"dwg", "check", "out.dwg"}).status, 0);
}

TEST_F(Draw, TheSameRunGivesTheSameBytes) {
    const std::vector<std::string> more = {"-o", "a.svg", "-o", "a.dwg", "-o", "a.rec"};
    Run(kDiagonal, "* -> symbol 241", more);
    const std::string svg = ReadFile(m_zenro / "a.svg"), dwg = ReadFile(m_zenro / "a.dwg"),
                      rec = ReadFile(m_zenro / "a.rec");
    Run(kDiagonal, "* -> symbol 241", more);
    EXPECT_EQ(ReadFile(m_zenro / "a.svg"), svg);
    EXPECT_EQ(ReadFile(m_zenro / "a.dwg"), dwg);
    EXPECT_EQ(ReadFile(m_zenro / "a.rec"), rec);
}

TEST_F(Draw, PngAndPdfComeFromTheQtModule) {
#if ZENRO_HAS_QT
    const Outcome r = Run(kDiagonal, "* -> symbol 241", {"-o", "a.png", "-o", "a.pdf", "--dpi", "100"});
    EXPECT_EQ(r.status, 0) << r.err;
    EXPECT_EQ(ReadFile(m_zenro / "a.png").substr(1, 3), "PNG");
    EXPECT_EQ(ReadFile(m_zenro / "a.pdf").substr(0, 5), "%PDF-");
#else
    GTEST_SKIP() << "built without Qt: PNG and PDF are not tested";
#endif
}

TEST_F(Draw, APdfHasTheSameBytesTwiceWhereTheDateIsGiven) {
#if ZENRO_HAS_QT
    m_zenro.File("in.geojson", kDiagonal);
    for (const char* name : {"a.pdf", "b.pdf"}) {
        const Outcome r =
            m_zenro.Run({"draw", "in.geojson", "-o", name, "--title", "T", "--quiet"}, "", {"SOURCE_DATE_EPOCH=86400"});
        ASSERT_EQ(r.status, 0) << r.err;
    }
    EXPECT_EQ(ReadFile(m_zenro / "a.pdf"), ReadFile(m_zenro / "b.pdf"));
    EXPECT_NE(ReadFile(m_zenro / "a.pdf").find("/CreationDate (D:19700102000000"), std::string::npos);
#else
    GTEST_SKIP() << "built without Qt: PNG and PDF are not tested";
#endif
}

TEST_F(Draw, JsonTellsWhatCameOfIt) {
    const Outcome r = Run(kDiagonal, "* -> symbol 241", {"-o", "a.svg", "--json"});
    const auto j = nlohmann::json::parse(r.out);
    EXPECT_EQ(j["outputs"][0]["path"], "a.svg");
    EXPECT_EQ(j["outputs"][0]["bytes"], std::filesystem::file_size(m_zenro / "a.svg"));
    EXPECT_EQ(j["scale"], 1000.0);
    EXPECT_EQ(j["shapes"], 1);
    EXPECT_EQ(j["skipped"], 0);
    EXPECT_EQ(j["plane"], "2000 family, 3-degree zone 40, central meridian 120");
}

// ---- the way to the plane ----

std::string Degrees(const std::string& feature, const std::string& crs) {
    return "{\"type\":\"FeatureCollection\"," +
           (crs.empty() ? "" : "\"crs\":{\"type\":\"name\",\"properties\":{\"name\":\"" + crs + "\"}},") +
           "\"features\":[" + feature + "]}";
}
const std::string kLongLat =
    "{\"type\":\"Feature\",\"properties\":{\"a\":1},\"geometry\":{\"type\":\"LineString\","
    "\"coordinates\":[[120.75,30.5],[120.751,30.5]]}}";

TEST_F(Draw, DegreesComeToTheNationalPlaneByTheLibrarysOwnProjection) {
    const Outcome r =
        Run(Degrees(kLongLat, "urn:ogc:def:crs:EPSG::4490"), "* -> symbol 250", {"-o", "a.rec", "--no-frame"});
    EXPECT_EQ(r.status, 0);
    EXPECT_EQ(r.err, "");
    EXPECT_NE(ReadFile(m_zenro / "a.rec").find("Line2:40572000.1999"), std::string::npos);
    EXPECT_NE(ReadFile(m_zenro / "a.rec").find(":3375780.9139"), std::string::npos);
}

TEST_F(Draw, ADatumTakenForTheFamilysIsReported) {
    const Outcome r = Run(Degrees(kLongLat, ""), "* -> symbol 250", {"-o", "a.rec"});
    EXPECT_EQ(r.status, 0);
    EXPECT_NE(r.err.find("WGS 84 are taken as the 2000 family without a change of datum"), std::string::npos) << r.err;
}

TEST_F(Draw, AChangeOfDatumIsToldAndCanBeRefused) {
    // In the Tarim basin, for which PROJ knows operations.
    std::string line = kLongLat;
    line.replace(line.find("[[120.75,30.5],[120.751,30.5]]"), 30, "[[83.0,40.0],[83.001,40.0]]");
    const std::string beijing = Degrees(line, "urn:ogc:def:crs:EPSG::4214");
    const Outcome shifted = Run(beijing, "* -> symbol 250", {"-o", "a.rec", "--system", "2000", "--no-frame"});
    EXPECT_EQ(shifted.status, 0);
    EXPECT_NE(shifted.err.find("change of datum: Beijing 1954 to the 2000 family"), std::string::npos) << shifted.err;
    const std::string moved = ReadFile(m_zenro / "a.rec");
    const Outcome kept =
        Run(beijing, "* -> symbol 250", {"-o", "a.rec", "--system", "2000", "--datum", "keep", "--no-frame"});
    EXPECT_NE(kept.err.find("no change of datum"), std::string::npos) << kept.err;
    EXPECT_NE(ReadFile(m_zenro / "a.rec"), moved);
}

TEST_F(Draw, TheDatasOwnFamilyAndZoneAreTheDefault) {
    EXPECT_EQ(nlohmann::json::parse(
                  Run(Degrees(kLongLat, "urn:ogc:def:crs:EPSG::4214"), "* -> symbol 250", {"-o", "a.rec", "--json"})
                      .out)["plane"],
              "54 family, 3-degree zone 40, central meridian 120");
    EXPECT_EQ(nlohmann::json::parse(Run(Degrees(kLongLat, "urn:ogc:def:crs:EPSG::4490"), "* -> symbol 250",
                                        {"-o", "a.rec", "--json", "--zone", "6"})
                                        .out)["plane"],
              "2000 family, 6-degree zone 21, central meridian 123");
}

// ---- bad input ----

TEST_F(Draw, MissingEmptyTruncatedAndBinaryFilesAre3) {
    const std::string whole = kDiagonal;
    m_zenro.File("empty.geojson", "");
    m_zenro.File("cut.geojson", whole.substr(0, whole.size() / 2));
    std::string binary;
    for (int i = 0; i < 4096; ++i) binary += static_cast<char>(i * 7);
    m_zenro.File("binary.shp", binary);
    m_zenro.File("text.txt", "no map at all\n");
    for (const char* name : {"missing.geojson", "empty.geojson", "cut.geojson", "binary.shp", "text.txt", "."}) {
        const Outcome r = m_zenro.Run({"draw", name, "-o", "a.svg"});
        EXPECT_EQ(r.status, 3) << name << ": " << r.err;
        EXPECT_NE(r.err.find(name), std::string::npos) << r.err;
        EXPECT_FALSE(m_zenro.Has("a.svg"));
    }
}

TEST_F(Draw, MissingAndWrongRulesAreReported) {
    m_zenro.File("in.geojson", kDiagonal);
    EXPECT_EQ(m_zenro.Run({"draw", "in.geojson", "-o", "a.svg", "--rules", "no.rules"}).status, 3);
    const Outcome wrong = Run(kDiagonal, "\n* -> symbol x\n", {"-o", "a.svg"});
    EXPECT_EQ(wrong.status, 2);
    EXPECT_NE(wrong.err.find("r.rules:2: \"symbol\" needs a whole number"), std::string::npos);
    const Outcome filter = Run(kDiagonal, "a = = 1 -> symbol 250\n", {"-o", "a.svg"});
    EXPECT_EQ(filter.status, 2);
    EXPECT_NE(filter.err.find("r.rules:1: the condition \"a = = 1\" is no attribute filter"), std::string::npos)
        << filter.err;
}

TEST_F(Draw, ARuleOnAFieldThatALayerLacksIsPassedOver) {
    const std::string rec = Recording(kDiagonal, "nofield = 1 -> symbol 200\n* -> symbol 250\n");
    EXPECT_EQ(m_last.status, 0);
    EXPECT_NE(rec.find("Layer:250"), std::string::npos);
}

TEST_F(Draw, FeaturesWithoutGeometryAreSkippedAndExitedWith4) {
    const std::string empty = "{\"type\":\"Feature\",\"properties\":{\"a\":1},\"geometry\":null}";
    const std::string data = Collection(LineFeature("[40512010,3456010],[40512090,3456070]", "\"a\":1") + "," + empty);
    const Outcome r = Run(data, "* -> symbol 250", {"-o", "a.rec"});
    EXPECT_EQ(r.status, 4);
    EXPECT_NE(r.err.find("in.geojson: things: feature 1: has no geometry; it is not drawn."), std::string::npos)
        << r.err;
    Recording(data, "* -> symbol 250");
    EXPECT_EQ(m_last.status, 0) << "it is on no sheet";
}

TEST_F(Draw, CoordinatesThatAreNoNumbersAreSkipped) {
    m_zenro.File("in.csv", "id;WKT\n1;LINESTRING(10 10,90 70)\n2;LINESTRING(nan 10,20 20)\n3;POINT(50 50)\n");
    m_zenro.File("r.rules", "[* : line]\n* -> symbol 250\n[* : point]\n* -> symbol 17\n");
    const Outcome r = m_zenro.Run({"draw", "in.csv", "--rules", "./r.rules", "-o", "a.rec", "--scale", "1000"});
    EXPECT_EQ(r.status, 4) << r.err;
    EXPECT_NE(r.err.find("feature 2: "), std::string::npos) << r.err;
    EXPECT_NE(ReadFile(m_zenro / "a.rec").find("Line2:10.000000:10.000000:90.000000:70.000000"), std::string::npos);
}

TEST_F(Draw, FeaturesThatNoRuleFitsAreCounted) {
    std::string many;
    for (int i = 0; i < 100; ++i) many += "," + PointFeature(40512050, 3456050, "\"a\":9");
    Recording(Collection(LineFeature("[40512010,3456010],[40512090,3456070]", "\"a\":1") + many),
              "a = 1 -> symbol 250");
    EXPECT_EQ(m_last.status, 4);
    EXPECT_EQ(Count(m_last.err, "no rule fits it"), 5);
    EXPECT_NE(m_last.err.find("features that no rule fits: 95 more like these."), std::string::npos);
    Recording(Collection(LineFeature("[40512010,3456010],[40512090,3456070]", "\"a\":1") + many),
              "a = 1 -> symbol 250\n* -> skip");
    EXPECT_EQ(m_last.status, 0);
}

TEST_F(Draw, UnknownCodesAndWrongKindsOfSymbolsAreReported) {
    Recording(kDiagonal, "* -> symbol 777");
    EXPECT_EQ(m_last.status, 4);
    EXPECT_NE(m_last.err.find("symbol 777 is not in the symbol library"), std::string::npos);
    Recording(kDiagonal, "* -> symbol 824");
    EXPECT_EQ(m_last.status, 4);
    EXPECT_NE(m_last.err.find("symbol 824 fills areas"), std::string::npos);
    Recording(Collection(PointFeature(40512050, 3456050, "\"a\":1")), "* -> symbol 250");
    EXPECT_EQ(m_last.status, 4);
    EXPECT_NE(m_last.err.find("symbol 250 is no point symbol"), std::string::npos);
    Recording(kDiagonal, "* -> symbol 726");
    EXPECT_EQ(m_last.status, 4);
    EXPECT_NE(m_last.err.find("needs 4 to 120 points, not 2"), std::string::npos);
}

TEST_F(Draw, CharactersOutsideGbkAreToldAndReplacedByOption) {
    const std::string data = Collection(PointFeature(40512050, 3456050, "\"name\":\"A\xF0\x9F\x98\x80\""));
    const std::string rec = Recording(data, "* -> symbol 17, label name", {"--replace", "#"});
    EXPECT_EQ(m_last.status, 0);
    EXPECT_NE(m_last.err.find("has 1 characters that GBK lacks"), std::string::npos) << m_last.err;
    EXPECT_NE(rec.find(":A#\n"), std::string::npos) << rec;
}

TEST_F(Draw, ASheetThatMeetsNoDataHasAStatusOfItsOwn) {
    const Outcome r = Run(kDiagonal, "* -> symbol 250", {"-o", "a.svg", "--sheet", "1,1,100,100"});
    EXPECT_EQ(r.status, 6);
    EXPECT_NE(
        r.err.find("nothing drawn: the sheet meets no data, which lies in 40512010.0,3456010.0,40512090.0,3456070.0"),
        std::string::npos)
        << r.err;
    EXPECT_FALSE(m_zenro.Has("a.svg"));
}

TEST_F(Draw, NoFeaturesAtAllAreAFailure) {
    EXPECT_EQ(Run(Collection(""), "* -> symbol 250", {"-o", "a.svg"}).status, 1);
}

TEST_F(Draw, ASheetTooLargeForPaperIsWrongUsage) {
    const std::string data = Collection(LineFeature("[40512010,3456010],[40602090,3456070]", "\"a\":1"));
    const Outcome r = Run(data, "* -> symbol 250", {"-o", "a.svg"});
    EXPECT_EQ(r.status, 2);
    EXPECT_NE(r.err.find("m of paper at 1:1000"), std::string::npos);
}

TEST_F(Draw, ASheetBeyondSenseIsWrongUsageAndNamed) {
    const std::string data = Collection(LineFeature("[40512010,3456010],[40512090,3456070]", "\"a\":1"));
    const std::pair<const char*, const char*> cases[] = {
        {"0,0,1e-7,1e-7", "the sheet would be 1e-07 mm of paper at 1:1000; give a larger --sheet"},
        {"40512010,3456010,40512090,3456010.5", "the sheet would be 0.5 mm of paper at 1:1000"},
        {"0,0,1e300,1e300", "--sheet: 1e+300 is no plane coordinate"},
        {"-1e300,0,10,10", "--sheet: 1e+300 is no plane coordinate"},
        {"0,-1e13,10,10", "--sheet: 1e+13 is no plane coordinate"}};
    for (const auto& [sheet, words] : cases) {
        const Outcome r = Run(data, "* -> symbol 250", {"-o", "a.svg", "--sheet", sheet});
        EXPECT_EQ(r.status, 2) << sheet;
        EXPECT_NE(r.err.find(words), std::string::npos) << r.err;
        EXPECT_LT(r.err.size(), 300u);
        EXPECT_FALSE(m_zenro.Has("a.svg"));
    }
    // A point alone has a sheet, turned or not.
    const Outcome turned = Run(Collection(PointFeature(40512010, 3456010, "\"a\":1")), "* -> symbol 17",
                               {"-o", "a.svg", "--rotate", "30"});
    EXPECT_EQ(turned.status, 0) << turned.err;
}

// What is beyond the numbers of zones, of codes and of kinds of lines is none of them.
TEST_F(Draw, WildNumbersOfSystemsAndLibrariesDoNotHurt) {
    const std::string line = Collection(LineFeature("[40512010,3456010],[40512090,3456070]", "\"a\":1"));
    for (const char* easting : {"1e300", "-1e300", "5e9", "2147483648000000"}) {
        const Outcome r =
            Run(line, "* -> symbol 250",
                {"-o", "a.svg", "--source",
                 std::string("+proj=tmerc +lat_0=0 +lon_0=120 +k=1 +ellps=GRS80 +units=m +x_0=") + easting});
        EXPECT_GE(r.status, 0);
        EXPECT_LT(r.status, 10) << r.err;
    }
    const std::string area = Collection(
        AreaFeature("[[40512010,3456010],[40512090,3456010],[40512050,3456070],[40512010,3456010]]", "\"a\":1"));
    m_zenro.File("wild.dat",
                 "*7 LC\nG1e300 G-1e300 +1 -1\n*8 H 1e300\n1 45 1e-30 135 1e-30 1e300\n*9 H -1e300\n2 45 1e-30\n"
                 "*10 H 1\n1e300 45 10\n*11 H 0\n1 45 10 135 10 1e300\n");
    for (const std::string code : {"8", "9", "10", "11"}) {
        const Outcome r = Run(area, "* -> symbol " + code, {"-o", "a.svg", "--symbols", "./wild.dat"});
        EXPECT_LT(r.status, 10) << r.err;
        EXPECT_EQ(r.err.find("its lines are within 0.05 mm of each other") != std::string::npos,
                  code == "8" || code == "9")
            << code << r.err;
    }
    for (const char* verb : {"lint", "list"}) EXPECT_LT(m_zenro.Run({"symbols", verb, "./wild.dat"}).status, 10);
}

TEST_F(Draw, AMillionVerticesHeightsAndMeasuresDoNotHurt) {
    std::ostringstream line;
    for (int i = 0; i < 1000000; ++i) {
        line << (i > 0 ? "," : "") << "[" << 40512010 + i % 80 << "," << 3456010 + (i * 7) % 80;
        line << "," << i % 10 << "]";
    }
    EXPECT_EQ(Run(Collection(LineFeature(line.str(), "\"a\":1")), "* -> symbol 241", {"-o", "a.dwg"}).status, 0);
    EXPECT_EQ(m_zenro.Run({"dwg", "check", "a.dwg"}).status, 0);
    m_zenro.File("in.csv",
                 "id;WKT\n1;LINESTRING ZM(10 10 5 1,90 70 6 2)\n2;MULTIPOINT Z((20 20 1),(30 30 "
                 "2))\n3;GEOMETRYCOLLECTION(POINT(40 40),LINESTRING(1 1,2 2))\n4;CURVEPOLYGON(CIRCULARSTRING(50 50,60 "
                 "60,70 50,60 40,50 50))\n");
    m_zenro.File("r.rules", "[* : line]\n* -> symbol 250\n[* : point]\n* -> symbol 17\n[* : area]\n* -> symbol 200\n");
    const Outcome r = m_zenro.Run({"draw", "in.csv", "--rules", "./r.rules", "-o", "a.rec", "--scale", "1000",
                                   "--sheet", "0,0,100,100", "--json"});
    EXPECT_EQ(r.status, 0) << r.err;
    EXPECT_EQ(nlohmann::json::parse(r.out)["shapes"], 6);
}

TEST_F(Draw, HolesAreKeptFree) {
    const std::string data = Collection(
        AreaFeature("[[40512010,3456010],[40512090,3456010],[40512090,3456090],[40512010,3456090],[40512010,3456010]],"
                    "[[40512040,3456040],[40512060,3456040],[40512060,3456060],[40512040,3456060],[40512040,3456040]]",
                    "\"a\":1"));
    const std::string rec = Recording(data, "* -> symbol 823");  // level lines
    int inside = 0, lines = 0;
    std::istringstream all(rec);
    for (std::string one; std::getline(all, one);) {
        const auto line = zm::test::NumbersOf(one, "Line2");
        if (line.size() != 4 || line[1] != line[3]) continue;
        ++lines;
        if (line[1] > 3456041 && line[1] < 3456059 && line[0] < 40512039 && line[2] > 40512061) ++inside;
    }
    EXPECT_GT(lines, 10);
    EXPECT_EQ(inside, 0);
}

TEST_F(Draw, LabelsDoNotStandOnEachOther) {
    std::string points;
    for (int i = 0; i < 30; ++i)
        points +=
            (i > 0 ? "," : "") + PointFeature(40512050 + i * 0.2, 3456050, "\"name\":\"P" + std::to_string(i) + "\"");
    const std::string rec = Recording(Collection(points), "* -> symbol 17, note #, label name");
    EXPECT_LT(Count(rec, "\nText:"), 30);
    EXPECT_NE(m_last.err.find("labels found no room"), std::string::npos);
}

TEST_F(Draw, ALargeAreaIsFilledWhole) {
    // 1200 m across at 1:1000 with 1 mm between lines: more than the 494 lines of a pass of the library's own hatches.
    const std::string data = Collection(AreaFeature(
        "[[40512000,3456000],[40513200,3456000],[40513200,3457200],[40512000,3457200],[40512000,3456000]]", "\"a\":1"));
    const Outcome r = Run(data, "* -> symbol 824", {"-o", "a.rec", "--no-frame"});
    EXPECT_EQ(r.status, 0) << r.err;
    EXPECT_NEAR(Count(ReadFile(m_zenro / "a.rec"), "Line2:"), 1697 + 4, 2);  // the diagonal of 1697 m, and four sides
}

TEST_F(Draw, ChineseNamesOfFilesAndDirectoriesWork) {
    std::filesystem::create_directory(m_zenro / "测区");
    m_zenro.File("测区/数据.geojson", kDiagonal);
    const Outcome r = m_zenro.Run({"draw", "测区/数据.geojson", "-o", "测区/图.dwg", "-o", "测区/图.svg"});
    EXPECT_EQ(r.status, 0) << r.err;
    EXPECT_EQ(m_zenro.Run({"dwg", "check", "测区/图.dwg"}).status, 0);
}

TEST_F(Draw, APathThatTheLibraryCannotBeToldStillWorksForDwg) {
    std::filesystem::create_directory(m_zenro / "\xF0\x9F\x98\x80");
    m_zenro.File("in.geojson", kDiagonal);
    const Outcome r = m_zenro.Run({"draw", "in.geojson", "-o", "\xF0\x9F\x98\x80/a.dwg"});
    EXPECT_EQ(r.status, 0) << r.err;
    EXPECT_EQ(m_zenro.Run({"draw", "in.geojson", "-o", "b.dwg"}).status, 0);
    EXPECT_EQ(ReadFile(m_zenro / "\xF0\x9F\x98\x80/a.dwg"), ReadFile(m_zenro / "b.dwg"));
}

TEST_F(Draw, OwnSymbolsNotesAndLayersAreUsed) {
    m_zenro.File("my.dat", "*250 LC A0 A0 A0 A0 \"dashes\"\n+5 -5\n*$\n");
    m_zenro.File("my.ini", "[LayerSet]\nLayers=1\nLayer1=ROADS 1 999 4 1\n");
    const Outcome r = Run(kDiagonal, "* -> symbol 250",
                          {"-o", "a.dwg", "-o", "a.rec", "--no-frame", "--symbols", "my.dat", "--project", "my.ini"});
    EXPECT_EQ(r.status, 0) << r.err;
    EXPECT_EQ(Count(ReadFile(m_zenro / "a.rec"), "Line2:"), 10);  // 100 m in dashes of 5 m every 10 m
    EXPECT_NE(m_zenro.Run({"dwg", "info", "a.dwg"}).out.find("ROADS"), std::string::npos);
    m_zenro.File("my.cod",
                 "[NOTE CLASS]\nTOTAL=1\nC01=0,NAMES,4,3,50,25,2,1,1,memo\n[FONT NAME]\n1=My Face,Mine,Romans,0,\n");
    const Outcome notes =
        Run(Collection(PointFeature(40512050, 3456050, "\"name\":\"D7\"")), "* -> symbol 17, label name",
            {"-o", "a.rec", "--no-frame", "--notes", "my.cod", "--sheet", "40512000,3456000,40512100,3456100"});
    EXPECT_EQ(notes.status, 0) << notes.err;
    EXPECT_NE(ReadFile(m_zenro / "a.rec").find("Font:50:25:"), std::string::npos);
    EXPECT_NE(ReadFile(m_zenro / "a.rec").find(":My Face"), std::string::npos);
}

// ---- a real town, where it is at hand ----

TEST_F(Draw, ARealTownComesOutInAllForms) {
    const char* named = std::getenv("ZM_MONACO");
    if (named == nullptr) GTEST_SKIP() << "NOT CHECKED: ZM_MONACO names no folder with the map of a town";
    const std::filesystem::path town = named;
    ASSERT_TRUE(std::filesystem::exists(town / "lines.geojson")) << town;
    std::vector<std::string> arguments = {"draw"};
    for (const char* layer : {"areas", "lines", "points"})
        arguments.push_back((town / (std::string(layer) + ".geojson")).string());
    for (const char* more : {"--rules", "osm", "--scale", "2000", "--sheet", "2613400,4844000,2616100,4847400", "-o",
                             "t.dwg", "-o", "t.rec", "-o", "t.svg", "--json"})
        arguments.push_back(more);
    const Outcome r = m_zenro.Run(arguments);
    EXPECT_EQ(r.status, 0) << r.err;
    const auto j = nlohmann::json::parse(r.out);
    EXPECT_GT(j["shapes"].get<int>(), 2000);
    EXPECT_GT(j["labels"].get<int>(), 100);
    EXPECT_EQ(m_zenro.Run({"dwg", "check", "t.dwg"}).status, 0);
}

TEST_F(Draw, DataBeyondTheProjectionIsNoEmptySheet) {
    m_zenro.File("wide.geojson", "{\"type\":\"FeatureCollection\",\"features\":[" +
                                     AreaFeature("[[73,40],[135,48],[110,18],[73,40]]", "\"a\":1") + "]}");
    const Outcome drawn = m_zenro.Run({"draw", "wide.geojson", "-o", "wide.svg"});
    EXPECT_EQ(drawn.status, 1);
    EXPECT_NE(drawn.err.find("Give data of a smaller region"), std::string::npos) << drawn.err;
    EXPECT_FALSE(m_zenro.Has("wide.svg"));
}

}  // namespace
