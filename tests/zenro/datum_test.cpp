// A change of datum happens by an operation made for the place, or not at all.
#include <nlohmann/json.hpp>

#include "tests/zenro/draw_fixture.h"

namespace {

using namespace zm::test;
using Datum = DrawFixture;

std::string LineAt(const char* from, const char* to) {
    return LineFeature(std::string("[") + from + "],[" + to + "]", "\"a\":1");
}

TEST_F(Datum, OutsideEveryAreaOfUseItIsRefusedWithWhatToDo) {
    // Operations from Beijing 1954 exist for the Tarim basin and some sea areas; none for the city of Beijing.
    const Outcome r = DrawFile("in.geojson", InDegrees(LineAt("116.40,39.90", "116.41,39.91"), 4214), "* -> symbol 250",
                               {"--system", "2000"});
    EXPECT_EQ(r.status, 3);
    EXPECT_NE(r.err.find("error: in.geojson: no operation that is known changes Beijing 1954 to the 2000 family"),
              std::string::npos)
        << r.err;
    EXPECT_NE(r.err.find("--datum keep"), std::string::npos);
    EXPECT_FALSE(m_zenro.Has("out.rec"));
}

TEST_F(Datum, AnOperationIsNamedWithCodeAreaAndAccuracy) {
    const Outcome r = DrawFile("in.geojson", InDegrees(LineAt("83.00,40.00", "83.01,40.01"), 4214), "* -> symbol 250",
                               {"--system", "2000"});
    EXPECT_EQ(r.status, 0) << r.err;
    // PROJ 9.1: projinfo -s EPSG:4214 -t EPSG:4326 --bbox 83,40,83.1,40.1
    EXPECT_NE(
        r.err.find("Beijing 1954 to WGS 84 (4) (EPSG:15921), made for China - south and west Tarim basin, good to 1 m"),
        std::string::npos)
        << r.err;
}

TEST_F(Datum, DataThatReachesBeyondTheAreaIsOutsideIt) {
    const Outcome r = DrawFile("in.geojson", InDegrees(LineAt("83.00,40.00", "116.40,39.90"), 4214), "* -> symbol 250",
                               {"--system", "2000", "--scale", "10000000"});
    EXPECT_EQ(r.status, 3) << r.err;
}

TEST_F(Datum, ParametersOfTheUsersAreTaken) {
    const Outcome r = DrawFile(
        "in.geojson", InDegrees(LineAt("116.40,39.90", "116.41,39.91"), 4214), "* -> symbol 250",
        {"--system", "2000", "--source", "+proj=longlat +ellps=krass +towgs84=15.8,-154.4,-82.3,0,0,0,0 +type=crs"});
    EXPECT_EQ(r.status, 0) << r.err;
    EXPECT_NE(r.err.find("by the parameters that its system carries"), std::string::npos) << r.err;
}

TEST_F(Datum, KeptNumbersAreReported) {
    const Outcome r = DrawFile("in.geojson", InDegrees(LineAt("116.40,39.90", "116.41,39.91"), 4214), "* -> symbol 250",
                               {"--system", "2000", "--datum", "keep"});
    EXPECT_EQ(r.status, 0) << r.err;
    EXPECT_NE(r.err.find("note: in.geojson: no change of datum"), std::string::npos) << r.err;
}

TEST_F(Datum, OneCauseIsOneLineForAllLayers) {
    for (const char* name : {"a.geojson", "b.geojson", "c.geojson"})
        m_zenro.File(name, InDegrees(LineAt("120.75,30.50", "120.751,30.501"), 0));
    m_zenro.File("r.rules", "* -> symbol 250");
    const Outcome r = m_zenro.Run(
        {"draw", "a.geojson", "b.geojson", "c.geojson", "--rules", "./r.rules", "-o", "out.rec", "--scale", "1000"});
    EXPECT_EQ(r.status, 0);
    EXPECT_EQ(r.err,
              "note: a.geojson and 2 more: positions on WGS 84 are taken as the 2000 family without a change of datum; "
              "the two agree within a metre or so.\n");
}

TEST_F(Datum, TheWidthOfZonesIsDecidedOnceTheScaleIsKnown) {
    const auto plane = [&](const char* from, const char* to) {
        return nlohmann::json::parse(
            DrawFile("in.geojson", InDegrees(LineAt(from, to), 4490), "* -> symbol 250", {"--json"}).out);
    };
    const auto small = plane("118.60,30.50", "118.62,30.52");
    EXPECT_LE(small["scale"], 10000.0);
    EXPECT_EQ(small["plane"], "2000 family, 3-degree zone 40, central meridian 120");
    const auto large = plane("118.60,30.50", "119.90,31.90");
    EXPECT_GT(large["scale"], 10000.0);
    EXPECT_EQ(large["plane"], "2000 family, 6-degree zone 20, central meridian 117");
}

}  // namespace
