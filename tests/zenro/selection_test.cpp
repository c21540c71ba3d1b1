// Which part of the data is drawn, and by which names data is found.
#include <nlohmann/json.hpp>

#include "tests/zenro/draw_fixture.h"

namespace {

using namespace zm::test;

class Selection : public DrawFixture {
 protected:
    void SetUp() override {
        m_zenro.File("r.rules", "* -> symbol 17");
        std::string points;
        for (int i = 0; i < 10; ++i)
            points += (i > 0 ? "," : "") + PointFeature(40512010 + 8 * i, 3456050, "\"a\":" + std::to_string(i));
        m_data = Collection(points);
        m_zenro.File("in.geojson", m_data);
    }
    bool Shell(const std::string& command) {
        return std::system(("cd '" + m_zenro.folder().string() + "' && " + command + " >/dev/null 2>&1").c_str()) == 0;
    }
    // The number of shapes drawn, or minus the status.
    int Shapes(const std::string& input, std::vector<std::string> more = {}, const std::string& standardInput = {}) {
        std::vector<std::string> arguments = {"draw",    input,         "--rules", "./r.rules", "-o",
                                              "out.rec", "--overwrite", "--scale", "1000",      "--json"};
        arguments.insert(arguments.end(), more.begin(), more.end());
        m_last = m_zenro.Run(arguments, standardInput);
        return m_last.status == 0 ? nlohmann::json::parse(m_last.out)["shapes"].get<int>() : -m_last.status;
    }
    std::string m_data;
    Outcome m_last;
};

TEST_F(Selection, WhereSqlAndLimitChooseFeatures) {
    EXPECT_EQ(Shapes("in.geojson"), 10);
    EXPECT_EQ(Shapes("in.geojson", {"--where", "a > 6"}), 3);
    EXPECT_EQ(Shapes("in.geojson", {"--limit", "4"}), 4);
    EXPECT_EQ(Shapes("in.geojson", {"--where", "a > 6", "--limit", "2"}), 2);
    EXPECT_EQ(Shapes("in.geojson", {"--sql", "SELECT * FROM things WHERE a < 2"}), 2) << m_last.err;
}

TEST_F(Selection, WrongFiltersAreToldWithStatus2) {
    EXPECT_EQ(Shapes("in.geojson", {"--where", "b > 6"}), -2);
    EXPECT_NE(m_last.err.find("--where \"b > 6\" does not fit in.geojson: things"), std::string::npos) << m_last.err;
    EXPECT_EQ(Shapes("in.geojson", {"--sql", "SELEKT"}), -2);
    EXPECT_EQ(Shapes("in.geojson", {"--layer", "roads"}), -3);
    EXPECT_NE(m_last.err.find("no layer fits --layer; there are in.geojson: things"), std::string::npos) << m_last.err;
}

TEST_F(Selection, ExplainSaysWhichRuleDrawsAFeature) {
    m_zenro.File("r.rules", "a > 6 -> symbol 18\n* -> symbol 17, label a\n");
    const Outcome r = m_zenro.Run({"draw", "in.geojson", "--rules", "./r.rules", "-o", "out.rec", "--explain", "8"});
    EXPECT_NE(r.out.find("in.geojson: things: feature 8, point: ./r.rules:1: a > 6 -> symbol 18, layer 18\n"),
              std::string::npos)
        << r.out;
    EXPECT_NE(m_zenro.Run({"draw", "in.geojson", "--rules", "./r.rules", "-o", "b.rec", "--explain", "99"})
                  .err.find("no rule draws a feature of this number"),
              std::string::npos);
}

TEST_F(Selection, RulesCheckCountsWhatEachRuleTakes) {
    m_zenro.File("r.rules", "a > 6 -> symbol 18\nb = 1 -> symbol 19\na < 3 -> skip\n[* : line]\n* -> symbol 250\n");
    const Outcome r = m_zenro.Run({"rules", "check", "./r.rules", "in.geojson", "--json"});
    EXPECT_EQ(r.status, 4);  // four features that no rule takes
    const auto rules = nlohmann::json::parse(r.out)["rules"];
    EXPECT_EQ(rules[0]["points"], 3);
    EXPECT_EQ(rules[1]["points"], 0);
    EXPECT_EQ(rules[3]["lines"], 0);
    EXPECT_NE(r.err.find("the condition \"b = 1\" asks for a field that no layer has"), std::string::npos) << r.err;
    EXPECT_NE(r.err.find("no rule fits it"), std::string::npos);
}

// They are for data of many kinds: nobody has to mend them for what his own data lacks.
TEST_F(Selection, RulesOfTheProgramDoNotWarnOfFieldsThatAreNotThere) {
    const Outcome draw = m_zenro.Run({"draw", "in.geojson", "--rules", "osm", "-o", "b.rec"});
    EXPECT_EQ(draw.err.find("no layer has"), std::string::npos) << draw.err;
    m_zenro.File("own.rules", "highway = 1 -> symbol 18\n");
    const Outcome own = m_zenro.Run({"draw", "in.geojson", "--rules", "./own.rules", "-o", "c.rec"});
    EXPECT_NE(own.err.find("no layer has"), std::string::npos) << own.err;
}

TEST_F(Selection, RulesCheckSaysOfPlaneNumbersInASystemOfDegreesWhatDrawSays) {
    std::string degrees = m_data;
    const std::size_t code = degrees.find("EPSG::4528");
    ASSERT_NE(code, std::string::npos);
    m_zenro.File("degrees.geojson", degrees.replace(code, 10, "EPSG::4490"));
    const Outcome draw = m_zenro.Run({"draw", "degrees.geojson", "--rules", "./r.rules", "-o", "a.rec", "--quiet"});
    const Outcome check = m_zenro.Run({"rules", "check", "./r.rules", "degrees.geojson", "--quiet"});
    EXPECT_EQ(check.status, 3);
    EXPECT_EQ(check.err, draw.err);
    EXPECT_NE(check.err.find("give --source with the right system, EPSG:4528"), std::string::npos) << check.err;
    EXPECT_EQ(m_zenro.Run({"rules", "check", "./r.rules", "degrees.geojson", "--source", "EPSG:4528"}).status, 0);
}

TEST_F(Selection, StdinIsAnInput) {
    EXPECT_EQ(Shapes("-", {}, m_data), 10) << m_last.err;
    EXPECT_EQ(Shapes("-", {}, ""), -3);
}

TEST_F(Selection, LayersOfAGeoPackageAreNamedBehindAColon) {
    if (!Shell(
            "ogr2ogr -f GPKG t.gpkg in.geojson -nln 'points' && ogr2ogr -update -f GPKG t.gpkg in.geojson -nln others "
            "-where 'a<3'"))
        GTEST_SKIP() << "NOT CHECKED: ogr2ogr is missing";
    EXPECT_EQ(Shapes("t.gpkg"), 13) << m_last.err;
    EXPECT_EQ(Shapes("t.gpkg:others"), 3) << m_last.err;
    EXPECT_EQ(Shapes("t.gpkg", {"--layer", "poi*"}), 10) << m_last.err;
    EXPECT_EQ(Shapes("t.gpkg:nothing"), -3);
    EXPECT_NE(m_last.err.find("no layer \"nothing\" in it; it has points, others"), std::string::npos) << m_last.err;
}

TEST_F(Selection, AZipNeedsNoPrefix) {
    if (!Shell("mkdir d && cp in.geojson d/ && python3 -m zipfile -c town.zip d/ && mv in.geojson gone"))
        GTEST_SKIP() << "NOT CHECKED: python3 is missing";
    EXPECT_EQ(Shapes("town.zip"), 10) << m_last.err;
}

}  // namespace
