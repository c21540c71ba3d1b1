// Data with national feature codes, drawn by the rules for them.
#include <gtest/gtest.h>

#include <sstream>

#include "tests/zenro/program.h"

namespace {

using namespace zm::test;

// One feature of each kind of geometry and class, its code as the data has it: text or a number.
std::string Data(const std::string& quote) {
    const auto properties = [&](const char* code, const char* more) {
        return "\"GB\":" + quote + code + quote + ",\"NAME\":\"清\",\"ELEV\":12.5" + more;
    };
    std::string features;
    int place = 0;
    const auto point = [&](const char* code) {
        features += (features.empty() ? "" : ",") +
                    PointFeature(40512005 + 9.0 * (place % 10), 3456005 + 9.0 * (place / 10), properties(code, ""));
        ++place;
    };
    const auto line = [&](const char* code) {
        std::ostringstream at;
        at.precision(12);
        const double x = 40512003 + 9.0 * (place % 10), y = 3456005 + 9.0 * (place / 10);
        at << "[" << x << "," << y << "],[" << x + 6 << "," << y << "]";
        features += "," + LineFeature(at.str(), properties(code, ""));
        ++place;
    };
    const auto area = [&](const char* code) {
        std::ostringstream at;
        at.precision(12);
        const double x = 40512003 + 9.0 * (place % 10), y = 3456002 + 9.0 * (place / 10);
        at << "[[" << x << "," << y << "],[" << x + 6 << "," << y << "],[" << x + 6 << "," << y + 6 << "],[" << x << ","
           << y + 6 << "],[" << x << "," << y << "]]";
        features += "," + AreaFeature(at.str(), properties(code, ""));
        ++place;
    };
    for (const char* code : {"110102", "110202", "110302", "110999", "260800", "510100", "720100", "340100", "820300"})
        point(code);
    for (const char* code : {"210101", "210200", "220201", "270101", "380201", "410101", "420100", "430501", "440300",
                             "510101", "520101", "640201", "710101", "710102", "760100"})
        line(code);
    for (const char* code :
         {"210101", "230102", "310301", "310302", "310600", "320100", "810301", "810401", "810501", "820300", "830100"})
        area(code);
    return Collection(features);
}

class FeatureCodes : public testing::TestWithParam<const char*> {};

TEST_P(FeatureCodes, EachIsDrawnByItsOwnRuleOrItsClass) {
    Program zenro;
    zenro.File("in.geojson", Data(GetParam()));
    const Outcome r = zenro.Run({"draw", "in.geojson", "--rules", "gb13923", "--scale", "1000", "--sheet",
                                 "40512000,3456000,40512100,3456100", "--legend", "-o", "a.svg"});
    EXPECT_EQ(r.status, 0) << r.err;
    EXPECT_EQ(r.err.find("warning"), std::string::npos) << r.err;
    const std::string svg = ReadFile(zenro / "a.svg");
    for (const char* name : {"三角点",     "水准点",     "卫星定位等级点", "导线点", "高程点", "时令河", "干堤",
                             "标准轨铁路", "国道",       "主干路",         "小路",   "首曲线", "计曲线", "水面",
                             "池塘",       "建筑中房屋", "棚房",           "稻田",   "果园",   "成林",   "人工绿地"})
        EXPECT_GE(Count(svg, ">" + std::string(name)), 1) << name;
    const Outcome check = zenro.Run({"rules", "check", "gb13923", "in.geojson"});
    EXPECT_EQ(check.status, 0) << check.out << check.err;
}

TEST_P(FeatureCodes, OneThatNoClassTakesIsToldAndCounted) {
    Program zenro;
    const std::string quote = GetParam();
    zenro.File("in.geojson",
               Collection(PointFeature(40512020, 3456020,
                                       "\"GB\":" + quote + "990000" + quote + ",\"NAME\":\"a\",\"ELEV\":1")));
    const Outcome r = zenro.Run({"draw", "in.geojson", "--rules", "gb13923", "--scale", "1000", "--sheet",
                                 "40512000,3456000,40512100,3456100", "--empty", "draw", "-o", "a.svg"});
    EXPECT_EQ(r.status, 4) << r.err;
}

INSTANTIATE_TEST_SUITE_P(TextAndNumber, FeatureCodes, testing::Values("\"", ""));

}  // namespace
