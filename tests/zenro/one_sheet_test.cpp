// A sheet stands alone: what is read, reported and drawn follows from the sheet.
#include <gtest/gtest.h>

#include <chrono>
#include <nlohmann/json.hpp>
#include <thread>

#include "tests/zenro/program.h"

namespace {

using namespace zm::test;

constexpr char kRules[] = "* -> layer 250, symbol 250, label name\n";

std::string Points(const std::string& coordinates) {
    return "{\"type\":\"Feature\",\"properties\":{\"name\":\"n\"},\"geometry\":{\"type\":\"LineString\","
           "\"coordinates\":[" +
           coordinates + "]}}";
}

std::string Degrees(const std::string& features) {
    return "{\"type\":\"FeatureCollection\",\"features\":[" + features + "]}";
}

class OneSheet : public testing::Test {
 protected:
    void SetUp() override { m_zenro.File("r.rules", kRules); }
    Outcome Draw(std::vector<std::string> arguments) {
        arguments.insert(arguments.begin(), {"draw", "in.geojson", "--rules", "r.rules", "--quiet"});
        return m_zenro.Run(arguments);
    }
    Program m_zenro;
};

TEST_F(OneSheet, AnEastingOfAMillionAndMoreNamesItsZone) {
    const std::string here = Points("[120.001,30.001],[120.002,30.002]"), far = Points("[113,30],[113.1,30.1]");
    m_zenro.File("in.geojson", Degrees(here));
    const std::vector<std::string> sheet = {"--scale", "2000", "--sheet=40500000,3320000,40501000,3321000"};
    const auto with = [&](const char* out) {
        auto a = sheet;
        a.insert(a.end(), {"-o", out});
        return a;
    };
    ASSERT_EQ(Draw(with("one.svg")).status, 0);
    m_zenro.File("in.geojson", Degrees(far + "," + far + "," + far + "," + here));
    const Outcome whole = Draw(with("whole.svg"));
    ASSERT_EQ(whole.status, 0) << whole.err;
    EXPECT_EQ(ReadFile(m_zenro / "one.svg"), ReadFile(m_zenro / "whole.svg"));
    auto meridian = with("meridian.svg");
    meridian.insert(meridian.end(), {"--meridian", "120"});
    ASSERT_EQ(Draw(meridian).status, 0);
    EXPECT_EQ(ReadFile(m_zenro / "one.svg"), ReadFile(m_zenro / "meridian.svg"));
}

TEST_F(OneSheet, NothingIsToldOfFeaturesElsewhere) {
    const std::string here = LineFeature("[40512010,3456010],[40512090,3456080]", "\"name\":\"n\"");
    const std::string there = LineFeature("[40532010,3456010],[40532090,3456080]", "\"name\":\"A\xF0\x9F\x98\x80\"");
    m_zenro.File("in.geojson",
                 Collection(there + "," + here + ",{\"type\":\"Feature\",\"properties\":{},\"geometry\":null}"));
    const Outcome r = Draw({"-o", "a.svg", "--scale", "1000", "--sheet", "40512000,3456000,40512100,3456100"});
    EXPECT_EQ(r.status, 0) << r.err;
    EXPECT_EQ(r.err, "");
    EXPECT_EQ(Draw({"-o", "b.svg", "--scale", "1000", "--sheet", "40512000,3456000,40533000,3456100"}).status, 2);
    EXPECT_EQ(Draw({"-o", "c.svg", "--scale", "50000"}).status, 4);  // the whole: a feature without geometry
}

TEST_F(OneSheet, AnEmptyOneHasAStatusAndIsDrawnWhereThatIsAsked) {
    m_zenro.File("in.geojson", Collection(LineFeature("[40512010,3456010],[40512090,3456080]", "\"name\":\"n\"")));
    const std::vector<std::string> sheet = {"-o",   "a.svg",   "--scale",
                                            "1000", "--sheet", "40522000,3456000,40522100,3456100"};
    EXPECT_EQ(Draw(sheet).status, 6);
    EXPECT_FALSE(m_zenro.Has("a.svg"));
    auto draw = sheet;
    draw.insert(draw.end(), {"--empty", "draw", "--json"});
    const Outcome r = Draw(draw);
    EXPECT_EQ(r.status, 0) << r.err;
    EXPECT_TRUE(nlohmann::json::parse(r.out)["empty"].get<bool>());
    EXPECT_NE(ReadFile(m_zenro / "a.svg").find("<svg"), std::string::npos);
}

TEST_F(OneSheet, JsonTellsNumberTimeVersionAndHashes) {
    m_zenro.File("in.geojson", Collection(LineFeature("[40512010,3456010],[40512090,3456080]", "\"name\":\"n\"")));
    const std::vector<std::string> sheet = {
        "-o",       "a.svg", "--scale", "1000",       "--sheet", "40512000,3456000,40512100,3456100",
        "--number", "XX-8",  "--json",  "--overwrite"};
    const auto first = nlohmann::json::parse(Draw(sheet).out), second = nlohmann::json::parse(Draw(sheet).out);
    EXPECT_EQ(first["number"], "XX-8");
    EXPECT_GT(first["seconds"].get<double>(), 0.0);
    EXPECT_EQ(first["input_sha256"].get<std::string>().size(), 64u);
    EXPECT_EQ(first["input_sha256"], second["input_sha256"]);
    EXPECT_EQ(first["outputs"][0]["sha256"], second["outputs"][0]["sha256"]);
    m_zenro.File("in.geojson", Collection(LineFeature("[40512010,3456010],[40512090,3456081]", "\"name\":\"n\"")));
    EXPECT_NE(first["input_sha256"], nlohmann::json::parse(Draw(sheet).out)["input_sha256"]);
}

TEST_F(OneSheet, OutputsDrawnSideBySideAreThoseOfOneProcess) {
    m_zenro.File("in.geojson", Collection(LineFeature("[40512010,3456010],[40512090,3456080]", "\"name\":\"n\"") + "," +
                                          PointFeature(40512050, 3456050, "\"name\":\"p\"")));
    std::vector<std::string> forms = {"svg", "rec", "dwg", "dxf"};
    if (ZENRO_HAS_QT) forms.insert(forms.end(), {"pdf", "png"});
    for (const std::string name : {"one", "many"}) {
        std::vector<std::string> arguments = {"draw",    "in.geojson", "--rules", "r.rules",
                                              "--scale", "500",        "--jobs",  name == "one" ? "1" : "3"};
        arguments.insert(arguments.end(), {"--title", "t"});
        for (const std::string& form : forms) arguments.insert(arguments.end(), {"-o", name + "." + form});
        const Outcome r = m_zenro.Run(arguments);
        EXPECT_EQ(r.status, 4) << r.err;  // a line symbol for a point, in each of them; the first are shown
        EXPECT_GE(Count(r.err, "is no point symbol"), 3);
    }
    for (const std::string& form : forms) {
        const std::string one = ReadFile(m_zenro / ("one." + form));
        EXPECT_GT(one.size(), 500u) << form;
        EXPECT_TRUE(one == ReadFile(m_zenro / ("many." + form))) << form;
    }
}

// The sheet says all that a first look at the file would: neither extent nor number of its features is asked for.
TEST_F(OneSheet, AFileWithoutAnIndexIsReadOnce) {
    m_zenro.File("in.geojson", Collection(LineFeature("[40512010,3456010],[40512090,3456080]", "\"name\":\"n\"") + "," +
                                          LineFeature("[40522010,3456010],[40522090,3456080]", "\"name\":\"m\"")));
    m_zenro.File("in.csv",
                 "WKT,name\n\"LINESTRING(40512010 3456010,40512090 3456080)\",n\n"
                 "\"LINESTRING(40522010 3456010,40522090 3456080)\",m\n");
    ASSERT_EQ(std::system(("cd '" + m_zenro.folder().string() +
                           "' && ogr2ogr -f 'ESRI Shapefile' in.shp in.geojson && ogr2ogr -f GeoJSONSeq -a_srs '' "
                           "-t_srs EPSG:4490 in.geojsonl in.geojson")
                              .c_str()),
              0);
    const auto read = [&](std::vector<std::string> arguments) {
        arguments.insert(arguments.begin(), "draw");
        arguments.insert(arguments.end(), {"--rules", "./r.rules", "--quiet", "--json", "--overwrite", "-o", "a.svg"});
        const Outcome r = m_zenro.Run(arguments);
        EXPECT_EQ(r.status, 0) << arguments[1] << r.err;
        const auto j = r.status == 0 ? nlohmann::json::parse(r.out) : nlohmann::json();
        EXPECT_EQ(r.status == 0 ? j["features"].get<int>() : 0, 1) << arguments[1];
        return r.status == 0 ? j["features_read"].get<int>() : -1;
    };
    for (const char* input : {"in.geojson", "in.shp", "in.geojsonl", "in.csv"}) {
        EXPECT_EQ(read({input, "--scale", "1000", "--sheet", "40512000,3456000,40512100,3456100"}), 2) << input;
    }
    for (const char* input : {"in.geojson", "in.shp"})  // in their own plane
        EXPECT_EQ(read({input, "--scale", "1000", "--number", "3456.0-512.0"}), 2) << input;
    // No zone in the eastings, data in degrees: the plane follows from the place of the data.
    EXPECT_EQ(
        read({"in.geojsonl", "--scale", "1000", "--easting", "offset", "--sheet", "512000,3456000,512100,3456100"}), 4);
}

// A layer that gives nothing to the drawing has no part in its plane.
TEST_F(OneSheet, LayersWithoutFeaturesOrRulesDoNotChooseThePlane) {
    const std::string xian =
        "{\"type\":\"FeatureCollection\",\"crs\":{\"type\":\"name\",\"properties\":{\"name\":"
        "\"urn:ogc:def:crs:EPSG::2364\"}},\"features\":[";
    m_zenro.File("a.geojson", "{\"type\":\"FeatureCollection\",\"features\":[]}");
    m_zenro.File("b.geojson", Degrees(Points("[120.1,31.2],[120.2,31.3]")));
    m_zenro.File("in.geojson", xian + LineFeature("[40512010,3456010],[40512090,3456080]", "\"name\":\"n\"") + "]}");
    m_zenro.File("in.rules", "[a]\n* -> layer 250, symbol 250\n[in]\n* -> layer 250, symbol 250\n");
    const Outcome r =
        m_zenro.Run({"draw", "a.geojson", "b.geojson", "in.geojson", "--rules", "./in.rules", "--scale", "1000",
                     "--datum", "keep", "--sheet", "40512000,3456000,40512100,3456100", "--json", "-o", "a.svg"});
    ASSERT_EQ(r.status, 0) << r.err;
    EXPECT_EQ(nlohmann::json::parse(r.out)["plane"], "80 family, 3-degree zone 40, central meridian 120") << r.err;
}

// Numbers that are no places of their system are why a sheet is empty; the sheet alone does not show it.
TEST_F(OneSheet, AnEmptyOneSaysThatTheNumbersOfAFileAreNoPlaces) {
    const std::string line = LineFeature("[40512010,3456010],[40512090,3456080]", "\"name\":\"n\"");
    m_zenro.File("in.geojson", Degrees(line));  // metres, where degrees are said
    const Outcome metres = Draw({"-o", "a.svg", "--scale", "1000", "--sheet", "40512000,3456000,40512100,3456100"});
    EXPECT_EQ(metres.status, 3) << metres.err;
    EXPECT_NE(metres.err.find("give --source with the right system, EPSG:4528"), std::string::npos) << metres.err;
    m_zenro.File("in.geojson", Collection(line));
    const Outcome elsewhere = Draw({"-o", "a.svg", "--scale", "1000", "--sheet", "40522000,3456000,40522100,3456100"});
    EXPECT_EQ(elsewhere.status, 6);
    EXPECT_NE(elsewhere.err.find("which lies in 40512010.0,3456010.0,40512090.0,3456080.0"), std::string::npos)
        << elsewhere.err;
}

#if ZENRO_HAS_QT
TEST_F(OneSheet, APdfIsTheSameBytesAtEachTime) {
    m_zenro.File("in.geojson", Collection(LineFeature("[40512010,3456010],[40512090,3456080]", "\"name\":\"n\"")));
    ASSERT_EQ(Draw({"-o", "a.pdf", "--scale", "1000"}).status, 0);
    std::this_thread::sleep_for(std::chrono::milliseconds(1100));  // the date has seconds
    ASSERT_EQ(Draw({"-o", "b.pdf", "--scale", "1000"}).status, 0);
    const std::string a = ReadFile(m_zenro / "a.pdf");
    EXPECT_EQ(a, ReadFile(m_zenro / "b.pdf"));
    EXPECT_EQ(a.find("CreationDate"), std::string::npos);
}
#endif

TEST_F(OneSheet, AStandardNumberSaysWhatItCovers) {
    m_zenro.File("in.geojson", Degrees(Points("[114.5,39.3],[114.7,39.5]")));
    const Outcome r = Draw({"-o", "a.svg", "--number", "j50g015010", "--json"});
    ASSERT_EQ(r.status, 0) << r.err;
    const auto j = nlohmann::json::parse(r.out);
    EXPECT_EQ(j["number"], "J50G015010");
    EXPECT_EQ(j["scale"], 10000.0);
    // zenro coord to-plane of the corners 39 22'30" to 39 25', 114 33'45" to 114 37'30", zone 38
    EXPECT_NEAR(j["sheet"][0].get<double>(), 38548400, 400);
    EXPECT_NEAR(j["sheet"][2].get<double>() - j["sheet"][0].get<double>(), 5400, 60);
    EXPECT_NEAR(j["sheet"][3].get<double>() - j["sheet"][1].get<double>(), 4650, 60);
    EXPECT_EQ(Draw({"-o", "b.svg", "--number", "J50G097001"}).status, 2);
    EXPECT_EQ(Draw({"-o", "b.svg", "--number", "4360.5-549.1", "--scale", "1000"}).status, 2);  // off the grid
    const Outcome corner = Draw({"-o", "c.svg", "--number", "4360.5-549.0", "--scale", "1000", "--json"});
    ASSERT_EQ(corner.status, 6) << corner.err;  // read as a sheet: it is empty
}

}  // namespace
