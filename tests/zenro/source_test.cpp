#include "tools/zenro/map/source.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <fstream>

#include "runtime/uses.h"
#include "tests/support/scratch.h"
#include "tests/zenro/program.h"
#include "tools/zenro/map/cover.h"
#include "tools/zenro/map/shapes.h"

namespace {

using namespace zm::tool;

Chain Square(double x, double y, double side) {
    return {{x, x + side, x + side, x, x}, {y, y, y + side, y + side, y}};
}

TEST(SeamedRing, ReachesEachHoleOnceAndReturns) {
    Shape shape;
    shape.kind = GeometryKind::area;
    shape.chains = {Square(0, 0, 10), Square(4, 4, 2)};
    const Chain ring = SeamedRing(shape);
    ASSERT_EQ(ring.size(), 5u + 5u + 1u);
    EXPECT_EQ(ring.x.front(), ring.x.back());
    double area = 0.0;  // the hole runs the same way here, so its area adds; what counts is that nothing else does
    for (std::size_t i = 0; i + 1 < ring.size(); ++i) area += ring.x[i] * ring.y[i + 1] - ring.x[i + 1] * ring.y[i];
    EXPECT_DOUBLE_EQ(area / 2, 100.0 + 4.0);
}

TEST(InnerPoint, LiesInsideAHorseshoe) {
    Shape shape;
    shape.kind = GeometryKind::area;
    shape.chains = {{{0, 10, 10, 7, 7, 3, 3, 0, 0}, {0, 0, 10, 10, 3, 3, 10, 10, 0}}};
    double x = 0.0, y = 0.0;
    InnerPoint(shape, x, y);
    EXPECT_TRUE(y < 3.0 || x < 3.0 || x > 7.0) << x << " " << y;
}

TEST(PointAlong, FindsPlacesAndDirections) {
    const Chain chain{{0, 10, 10}, {0, 0, 10}};
    double x, y, direction;
    PointAlong(chain, 15.0, x, y, direction);
    EXPECT_DOUBLE_EQ(x, 10.0);
    EXPECT_DOUBLE_EQ(y, 5.0);
    EXPECT_DOUBLE_EQ(direction, std::acos(0.0));
    EXPECT_DOUBLE_EQ(LengthOf(chain), 20.0);
}

Page SmallPage() {
    Page page;
    page.sheet = Box{0, 0, 100, 100};
    return page;
}

TEST(Cover, KnowsFreeCoveredAndTakenPaper) {
    Cover cover(SmallPage());
    EXPECT_EQ(cover.Covered(10, 10, 20, 3, 0), 0.0);
    cover.MarkLine({{0, 100}, {11, 11}});
    EXPECT_GT(cover.Covered(10, 10, 20, 3, 0), 0.0);
    EXPECT_LT(cover.Covered(10, 10, 20, 3, 0), 0.5);
    EXPECT_EQ(cover.Covered(90, 10, 20, 3, 0), 2.0);  // leaves the sheet
    cover.MarkBox(10, 50, 20, 3, 0, Cover::label);
    EXPECT_EQ(cover.Covered(25, 52, 20, 3, 0), 2.0);
    EXPECT_EQ(cover.Covered(10, 60, 20, 3, 0), 0.0);
}

TEST(Cover, AnEmptyAreaAndAChainOfOnePointMarkNothing) {
    Cover cover(SmallPage());
    Shape shape;
    shape.chains = {Chain{}};
    cover.MarkArea(shape);
    cover.MarkLine({{5}, {5}});
    EXPECT_EQ(cover.Covered(0, 0, 99, 99, 0), 0.0);
}

TEST(Page, TurnsAboutTheMiddleOfTheSheetAndBack) {
    Page page = SmallPage();
    page.rotation = 90.0;
    double x = 60.0, y = 50.0;
    page.Turn(x, y);
    EXPECT_NEAR(x, 50.0, 1e-12);
    EXPECT_NEAR(y, 60.0, 1e-12);
    page.TurnBack(x, y);
    EXPECT_NEAR(x, 60.0, 1e-12);
}

TEST(Page, TheSheetIsWholeCentimetresOfPaper) {
    const Box sheet = SheetAround(Box{12.3, 45.6, 78.9, 123.4}, 1000.0);
    EXPECT_EQ(sheet.x1, 10.0);
    EXPECT_EQ(sheet.y1, 40.0);
    EXPECT_EQ(sheet.x2, 80.0);
    EXPECT_EQ(sheet.y2, 130.0);
    EXPECT_EQ(ScaleFor(Box{0, 0, 250, 250}), 500.0);
    EXPECT_EQ(ScaleFor(Box{0, 0, 1000, 10}), 2000.0);
}

// Features of so many lines in a file, read after the file has been replaced by one with a single line.
std::size_t ReadAfterAChange(int lines, std::size_t attribute = 1, int files = 1) {
    const zm::test::ScratchDir folder;
    SourceOptions options;
    for (int i = 0; i < files; ++i) options.inputs.push_back((folder.path() / std::to_string(i)).string() + ".geojson");
    const auto write = [&](int count) {
        std::string features;
        for (int i = 0; i < count; ++i)
            features += (i == 0 ? "" : ",") +
                        zm::test::LineFeature("[40512000,3456050],[40512001," + std::to_string(3456000 + i % 100) + "]",
                                              "\"a\":\"" + std::string(attribute, 'a') + "\"");
        for (const std::string& input : options.inputs)
            std::ofstream(input, std::ios::trunc) << zm::test::Collection(features);
    };
    write(lines);
    Report report;
    report.SetQuiet(true);
    const Rules rules = ParseRules("* -> symbol 250, label a\n", "r");
    Source source(options, rules, report);
    write(1);
    FeatureStore store(rules);
    source.Read(std::nullopt, store);
    return store.size();
}

// The look at the extent has read them all.
TEST(Source, ReadsAFileOfFewFeaturesOnce) {
    EXPECT_EQ(ReadAfterAChange(300), 300U);
    EXPECT_EQ(ReadAfterAChange(20000), 20000U);
}

TEST(Source, ReadsAFileOfManyFeaturesAgain) {
    EXPECT_EQ(ReadAfterAChange(20001), 1U);
}

// 64 MiB are kept, of all files together.
TEST(Source, ReadsAFileOfLongAttributesAgain) {
    constexpr std::size_t kLong = 2u << 20;
    EXPECT_EQ(ReadAfterAChange(31, kLong), 31U);
    EXPECT_EQ(ReadAfterAChange(33, kLong), 1U);
    EXPECT_EQ(ReadAfterAChange(16, kLong, 3), 16U + 1U + 1U);  // 32 MiB and a little each
}

#ifdef ZM_COUNT_USES
// A layer with an index is not read for the counts of sheets; both ways count the same.
TEST(Source, CountsByTheIndexWhereThereIsOne) {
    namespace uses = zm::uses;
    const zm::test::ScratchDir folder;
    std::string features;
    for (int i = 0; i < 40; ++i)
        features += (i == 0 ? "" : ",") + zm::test::PointFeature(40512000.0 + 50.0 * i, 3456050.0, "\"a\":1");
    const std::string plain = (folder.path() / "in.geojson").string(), indexed = (folder.path() / "in.gpkg").string();
    std::ofstream(plain) << zm::test::Collection(features);
    ASSERT_EQ(std::system(("ogr2ogr '" + indexed + "' '" + plain + "'").c_str()), 0);
    const std::vector<Box> sheets = {{40511975, 3456000, 40512525, 3456100}, {40512525, 3456000, 40514100, 3456100}};
    for (const std::string& input : {plain, indexed}) {
        SourceOptions options;
        options.inputs = {input};
        Report report;
        report.SetQuiet(true);
        const Rules rules = ParseRules("* -> symbol 17\n", "r");
        Source source(options, rules, report);
        uses::counts[uses::countByIndex] = uses::counts[uses::countByLook] = 0;
        EXPECT_EQ(source.CountIn(sheets, "", ""), (std::vector<long long>{11, 29}));
        EXPECT_EQ(uses::counts[uses::countByIndex], input == indexed ? 1u : 0u);
        EXPECT_EQ(uses::counts[uses::countByLook], input == indexed ? 0u : 1u);
    }
}
#endif

}  // namespace
