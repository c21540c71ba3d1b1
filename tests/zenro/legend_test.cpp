// The legend of a sheet: what it names, where it lies, that its samples are drawn as the map draws.
#include <gtest/gtest.h>

#include <cstdio>

#include "tests/zenro/draw_fixture.h"
#include "tools/kit/text.h"

namespace {

using namespace zm::test;

constexpr char kRules[] =
    "k = 1 -> symbol 17\n"
    "k = 2 -> symbol 206\n"
    "k = 3 -> outline 213, layer 213, label \"停\", note M, legend \"停车场\"\n"
    "k = 4 -> layer 40, note A, label name\n"
    "k = 5 -> symbol 20\n"
    "* -> skip\n";

class LegendOfASheet : public testing::Test {
 protected:
    std::string Draw(const std::vector<std::string>& more,
                     const std::string& sheet = "40512000,3456000,40512100,3456100",
                     const std::string& rules = kRules) {
        std::string row;  // of twelve kinds
        for (int i = 0; i < 12; ++i)
            row += "," + PointFeature(40512010 + 7.0 * i, 3456050, "\"k\":" + std::to_string(10 + i));
        m_zenro.File("in.geojson", Collection(PointFeature(40512020, 3456020, "\"k\":1") + "," +
                                              PointFeature(40512030, 3456020, "\"k\":1") + "," +
                                              LineFeature("[40512010,3456050],[40512090,3456050]", "\"k\":2") + "," +
                                              AreaFeature("[[40512040,3456060],[40512060,3456060],[40512060,3456080],"
                                                          "[40512040,3456080],[40512040,3456060]]",
                                                          "\"k\":3") +
                                              "," + PointFeature(40512070, 3456020, "\"k\":4,\"name\":\"甲\"") + "," +
                                              PointFeature(40512105, 3456020, "\"k\":5") + row));
        m_zenro.File("r.rules", rules);
        std::vector<std::string> arguments = {"draw", "in.geojson",  "--rules", "./r.rules", "--scale",
                                              "1000", "--overwrite", "--sheet", sheet};
        arguments.insert(arguments.end(), more.begin(), more.end());
        m_last = m_zenro.Run(arguments);
        EXPECT_EQ(m_last.status, 0) << m_last.err;
        return m_zenro.Has("a.svg") ? ReadFile(m_zenro / "a.svg") : std::string();
    }
    Program m_zenro;
    Outcome m_last;
};

// Width and height of the paper, millimetres.
std::pair<double, double> PaperOf(const std::string& svg) {
    double w = 0.0, h = 0.0;
    const std::size_t at = svg.find("<svg");
    const std::size_t width = svg.find("width=\"", at), height = svg.find("height=\"", at);
    std::sscanf(svg.c_str() + width, "width=\"%lf", &w);
    std::sscanf(svg.c_str() + height, "height=\"%lf", &h);
    return {w, h};
}

TEST_F(LegendOfASheet, NamesWhatLiesOnTheSheetAndNothingElse) {
    const std::string svg = Draw({"--legend", "-o", "a.svg"});
    EXPECT_EQ(Count(svg, ">图例<"), 1) << svg;
    EXPECT_EQ(Count(svg, ">高程点<"), 1);  // used twice, named once, by the note of its symbol
    EXPECT_EQ(Count(svg, ">围墙<"), 1);    // up to the bracket, which is of another run
    EXPECT_EQ(Count(svg, ">停车场<"), 1);  // the rule's own name
    EXPECT_EQ(Count(svg, ">停<"), 2);      // on the map and in the sample
    EXPECT_EQ(Count(svg, ">地类界<"), 0);
    EXPECT_EQ(Count(svg, ">水井<"), 0);  // outside the sheet, though within a symbol's reach
    EXPECT_EQ(Count(svg, ">甲<"), 1);    // lettering alone is in no legend
    EXPECT_EQ(Count(Draw({"-o", "a.svg"}), "图例"), 0);
}

TEST_F(LegendOfASheet, WidensThePaperAndLeavesTheMapWhereItWas) {
    const std::string without = Draw({"-o", "a.svg"}), with = Draw({"--legend", "-o", "a.svg"});
    const auto [w0, h0] = PaperOf(without);
    const auto [w1, h1] = PaperOf(with);
    EXPECT_NEAR(h1, h0, 1e-6);  // three rows beside a sheet of 100 mm
    EXPECT_GT(w1, w0 + 16.0 + 2.5);
    EXPECT_LT(w1, w0 + 70.0);
    const std::string crossing = without.substr(without.find("<path"), 200);
    EXPECT_NE(with.find(crossing), std::string::npos) << "the first stroke of the map has moved";
}

TEST_F(LegendOfASheet, IsBelowASheetThatIsTooLowForIt) {
    const std::string sheet = "40511800,3456045,40512300,3456055";
    std::string rules;
    for (int i = 0; i < 12; ++i)
        rules += "k = " + std::to_string(10 + i) + " -> symbol " + std::to_string(51 + i) + "\n";
    rules += "* -> skip\n";
    const auto [w0, h0] = PaperOf(Draw({"-o", "a.svg"}, sheet, rules));
    const auto [w1, h1] = PaperOf(Draw({"--legend", "-o", "a.svg"}, sheet, rules));
    EXPECT_NEAR(w1, w0, 1e-6);
    EXPECT_GT(h1, h0 + 9.0 + 7.0);
    EXPECT_LT(h1, h0 + 50.0);
}

TEST_F(LegendOfASheet, IsTheSameOnEveryOutput) {
    std::vector<std::string> more = {"--legend", "-o", "a.svg", "-o", "a.dwg", "-o", "a.rec"};
    if (ZENRO_HAS_QT) more.insert(more.end(), {"-o", "a.pdf", "-o", "a.png"});
    Draw(more);
    int lost = 0;
    const std::string gbk = zm::tool::ToLibraryText("停车场", '?', lost);
    EXPECT_EQ(Count(ReadFile(m_zenro / "a.rec"), gbk), 1);
    EXPECT_EQ(Count(ReadFile(m_zenro / "a.dwg"), gbk), 1);
}

TEST_F(LegendOfASheet, NeedsAFrameAndARightName) {
    m_zenro.File("in.geojson", Collection(PointFeature(40512020, 3456020, "\"k\":1")));
    EXPECT_EQ(m_zenro.Run({"draw", "in.geojson", "--legend", "--no-frame", "-o", "b.svg"}).status, 2);
    m_zenro.File("r.rules", "* -> symbol 17, legend name\n* -> symbol 17, legend \"{name}\"\n");
    const Outcome r = m_zenro.Run({"draw", "in.geojson", "--rules", "./r.rules", "-o", "b.svg"});
    EXPECT_EQ(r.status, 2);
    EXPECT_NE(r.err.find("r.rules:1: \"legend\" needs a name"), std::string::npos) << r.err;
}

}  // namespace
