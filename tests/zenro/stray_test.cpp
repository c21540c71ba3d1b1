// One wrong number does not spoil a map, and numbers that do not fit their system are recognised.
#include <nlohmann/json.hpp>

#include "runtime/text/numbers.h"
#include "tests/zenro/draw_fixture.h"
#include "tools/zenro/map/axes_check.h"
#include "tools/zenro/map/robust_extent.h"

namespace {

using namespace zm::test;
using Stray = DrawFixture;

// Twenty lines in a square of 100 m, and one more vertex at the end of the last.
std::string Lines(const std::string& last) {
    std::string features;
    for (int i = 0; i < 20; ++i) {
        const std::string y = std::to_string(3456005 + i * 4);
        features += (i > 0 ? "," : "") +
                    LineFeature("[40512010," + y + "],[40512090," + y + "]" + (i == 19 ? last : ""), "\"a\":1");
    }
    return features;
}

struct StrayCase {
    const char* name;
    const char* vertex;
};
void PrintTo(const StrayCase& c, std::ostream* out) {
    *out << c.name;
}
constexpr StrayCase kStrays[] = {
    {"at_zero", ",[0,0]"}, {"at_1e30", ",[1e30,3456085]"}, {"in_another_zone", ",[39512050,3456085]"}};
class StrayVertex : public Stray, public testing::WithParamInterface<StrayCase> {};
TEST_P(StrayVertex, IsNamedAndLeftOutAndTheMapStays) {
    const Outcome r =
        DrawFile("in.geojson", Collection(Lines(GetParam().vertex)), "* -> symbol 250", {"--json", "--scale", "1000"});
    ASSERT_EQ(r.status, 4) << r.err;
    EXPECT_NE(r.err.find("warning: in.geojson: things: feature 19: the vertex ("), std::string::npos) << r.err;
    const auto j = nlohmann::json::parse(r.out);
    EXPECT_EQ(j["shapes"], 20);
    EXPECT_LT(j["sheet"][2].get<double>() - j["sheet"][0].get<double>(), 200.0);
    EXPECT_NE(Recording().find("Line2:40512010.000000:3456081.000000:40512090.000000:3456081.000000"),
              std::string::npos);
}
INSTANTIATE_TEST_SUITE_P(All, StrayVertex, testing::ValuesIn(kStrays),
                         [](const auto& info) { return std::string(info.param.name); });

TEST_F(Stray, TheZoneComesFromTheMiddleNotFromAPointAtZero) {
    std::string points;
    for (int i = 0; i < 60; ++i)
        points += "{\"type\":\"Feature\",\"properties\":{},\"geometry\":{\"type\":\"Point\",\"coordinates\":[" +
                  zm::numbers::Text("%.4f", 120.7 + i * 1e-4) + ",30.5]}},";
    points += "{\"type\":\"Feature\",\"properties\":{},\"geometry\":{\"type\":\"Point\",\"coordinates\":[0,0]}}";
    const Outcome r = DrawFile("in.geojson", InDegrees(points, 4490), "* -> symbol 17", {"--json"});
    EXPECT_EQ(r.status, 4) << r.err;
    EXPECT_EQ(nlohmann::json::parse(r.out)["plane"], "2000 family, 3-degree zone 40, central meridian 120");
    EXPECT_NE(r.err.find("feature 60: the vertex (0, 0)"), std::string::npos) << r.err;
}

TEST(RobustExtent, KeepsFarPlacesThatAreNotAlone) {
    zm::tool::RobustExtent extent;
    for (int i = 0; i < 100; ++i) {
        const double x = i < 95 ? i : 90000 + i, y = i;
        extent.Add(1, &x, &y);
    }
    extent.Settle(1e9, 1e9, 100.0);
    EXPECT_EQ(extent.x2(), 90099.0);
    EXPECT_FALSE(extent.IsStray(90050.0, 50.0));
}

TEST(RobustExtent, FewVerticesAreNeverStraysOfEachOther) {
    zm::tool::RobustExtent extent;
    for (const double x : {0.0, 1.0, 1e6}) {
        const double y = 0.0;
        extent.Add(1, &x, &y);
    }
    extent.Settle(1e9, 1e9, 100.0);
    EXPECT_EQ(extent.x2(), 1e6);
}

using Axes = DrawFixture;

TEST_F(Axes, SwappedDegreesAreRefusedAndTheOptionNamedWorks) {
    const std::string data = InDegrees(LineFeature("[30.5,120.75],[30.501,120.751]", "\"a\":1"), 4490);
    const Outcome r = DrawFile("in.geojson", data, "* -> symbol 250", {"--scale", "1000"});
    EXPECT_EQ(r.status, 3);
    EXPECT_NE(r.err.find("its axes are swapped, latitude before longitude, as in (30.5010, 120.7510); give --axes "
                         "north,east"),
              std::string::npos)
        << r.err;
    EXPECT_EQ(DrawFile("in.geojson", data, "* -> symbol 250", {"--scale", "1000", "--axes", "north,east"}).status, 0);
    EXPECT_NE(Recording().find("Line2:40572000.1999"), std::string::npos);
}

TEST_F(Axes, PlaneNumbersUnderASystemOfDegreesAreRefusedWithTheirSystem) {
    const std::string data = InDegrees(LineFeature("[40512010,3456010],[40512090,3456070]", "\"a\":1"), 0);
    const Outcome r = DrawFile("in.geojson", data, "* -> symbol 250", {"--scale", "1000"});
    EXPECT_EQ(r.status, 3);
    EXPECT_NE(r.err.find("give --source with the right system, EPSG:4528."), std::string::npos) << r.err;
    EXPECT_EQ(DrawFile("in.geojson", data, "* -> symbol 250", {"--scale", "1000", "--source", "EPSG:4528"}).status, 0);
}

TEST_F(Axes, SwappedPlaneNumbersAreRefused) {
    const Outcome r =
        DrawFile("in.geojson", Collection(LineFeature("[3456010,40512010],[3456070,40512090]", "\"a\":1")),
                 "* -> symbol 250", {"--scale", "1000"});
    EXPECT_EQ(r.status, 3);
    EXPECT_NE(r.err.find("northing before easting"), std::string::npos) << r.err;
}

TEST_F(Axes, AZoneNumberThatTheSystemLacksIsRefused) {
    std::string data = Collection(LineFeature("[40512010,3456010],[40512090,3456070]", "\"a\":1"));
    data.replace(data.find("4528"), 4, "4549");
    const Outcome r = DrawFile("in.geojson", data, "* -> symbol 250", {"--scale", "1000"});
    EXPECT_EQ(r.status, 3);
    EXPECT_NE(r.err.find("have the zone number 40 in front"), std::string::npos) << r.err;
    EXPECT_NE(r.err.find("EPSG:4528"), std::string::npos) << r.err;
}

TEST_F(Axes, DataWithoutASystemIsToldWhatItLooksLike) {
    const Outcome degrees = DrawFile("in.csv", "id;WKT\n1;LINESTRING(120.75 30.5,120.751 30.501)\n", "* -> symbol 250",
                                     {"--scale", "1000", "--sheet", "120,30,121,31"});
    EXPECT_NE(degrees.err.find("warning: in.csv: it names no coordinate system, and its numbers look like degrees"),
              std::string::npos)
        << degrees.err;
    const Outcome swapped = DrawFile("in.csv", "id;WKT\n1;LINESTRING(3456010 40512010,3456070 40512090)\n",
                                     "* -> symbol 250", {"--scale", "1000"});
    EXPECT_EQ(swapped.status, 3);
    EXPECT_NE(swapped.err.find("--axes north,east, and --source EPSG:4528"), std::string::npos) << swapped.err;
}

TEST(WrongAxes, ANamelessWorldLooksLikeDegrees) {
    bool certain = true;
    EXPECT_NE(zm::tool::WrongAxes(nullptr, 20.0, 30.0, 360.0, 170.0, certain).find("look like degrees"),
              std::string::npos);
    EXPECT_FALSE(certain);
    EXPECT_EQ(zm::tool::WrongAxes(nullptr, 50.0, 50.0, 80.0, 60.0, certain), "");  // a local plane
}

TEST(LikelyPlane, NamesTheSystemOfAZoneNumber) {
    EXPECT_EQ(zm::tool::LikelyPlane(40512010), "EPSG:4528");  // 2000 family, 3-degree zone 40
    EXPECT_EQ(zm::tool::LikelyPlane(20512010), "EPSG:4498");  // 2000 family, 6-degree zone 20
    EXPECT_NE(zm::tool::LikelyPlane(512010).find("EPSG:4549"), std::string::npos);
}

}  // namespace
