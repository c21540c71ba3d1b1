// What the worker of a window draws and answers.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QImage>
#include <algorithm>
#include <chrono>
#include <filesystem>

#include "runtime/text/numbers.h"
#include "tests/view/map_worker.h"
#include "tests/zenro/program.h"

namespace {

using namespace zm::test;
using nlohmann::json;
using testing::HasSubstr;

constexpr double kX = 40500000.0, kY = 3400000.0;

class ViewWorker : public testing::Test {
 protected:
    void SetUp() override {
        rules = zenro.File("town.rules",
                           "[things : area]\nkind = 'house' -> symbol 200, note J, label name\n"
                           "[things : line]\n* -> symbol 250, layer 250\n"
                           "[things : point]\nkind = 'tree' -> symbol 17, layer 100\n* -> skip\n");
        data = zenro.File(
            "things.geojson",
            Collection(AreaFeature("[[40500010,3400010],[40500030,3400010],[40500030,3400040],[40500010,3400040],"
                                   "[40500010,3400010]]",
                                   "\"kind\":\"house\",\"name\":\"Town Hall\",\"floors\":3") +
                       "," + LineFeature("[40500000,3400050],[40500100,3400050]", "\"kind\":\"road\"") + "," +
                       PointFeature(kX + 60, kY + 20, "\"kind\":\"tree\"")));
    }
    std::unique_ptr<MapWorker> Open(std::vector<std::string> more = {}) const {
        more.insert(more.end(), {"--rules=" + rules, "--scale=500", data});
        auto worker = std::make_unique<MapWorker>(more);
        worker->Await("ready");
        return worker;
    }
    static long Dark(const MapWorker& worker, const json& painted, int width, int height) {
        const std::uint32_t* pixels = worker.Pixels(painted.at("slot"));
        long dark = 0;
        for (int i = 0; i < width * height; ++i) dark += (pixels[i] & 0xFFFFFF) != 0xFFFFFF;
        return dark;
    }

    Program zenro;
    std::string rules, data;
};

// Of a file whose number of features is known.
TEST_F(ViewWorker, SaysHowMuchOfAFileItHasRead) {
    std::string features;
    for (int i = 0; i < 700; ++i)
        features += (i == 0 ? "" : ",") + PointFeature(kX + i % 100, kY + i / 100.0, "\"kind\":\"tree\"");
    MapWorker worker({"--rules=" + rules, "--scale=500", zenro.File("things.geojson", Collection(features))});
    const json reading = worker.Await("reading");
    EXPECT_EQ(reading["done"].get<int>() % 256, 0) << reading;
    EXPECT_GE(reading["done"].get<int>(), 256) << reading;
    EXPECT_EQ(reading["total"], 700) << reading;
    worker.Await("ready");
}

// The window sees by these steps that a process which works long does not hang.
TEST_F(ViewWorker, CountsWhatItBeginsAndEachFeatureThatItLooksAt) {
    const auto worker = Open();
    const auto steps = [&](const json& question) {
        const std::uint32_t before = worker->Head().steps;
        worker->Ask(question);
        return worker->Head().steps - before;
    };
    EXPECT_GE(steps({{"do", "ping"}}), 1u);
    EXPECT_GE(steps({{"do", "identify"}, {"x", kX + 50}, {"y", kY + 30}, {"reach", 100.0}}), 4u);
    EXPECT_GE(steps({{"do", "snap"}, {"x", kX + 50}, {"y", kY + 30}, {"reach", 100.0}}), 4u);
    const std::uint32_t before = worker->Head().steps;
    worker->Send({{"do", "hide"}, {"layers", json::array({0})}, {"rules", json::array()}});
    EXPECT_EQ(worker->Ask({{"do", "identify"}, {"x", kX + 20}, {"y", kY + 20}, {"reach", 1.0}}).at("count"), 0);
    EXPECT_GE(worker->Head().steps - before, 4u);
}

TEST_F(ViewWorker, SaysWhatTheMapIs) {
    MapWorker worker({"--rules=" + rules, "--scale=500", data});
    const json ready = worker.Await("ready");
    EXPECT_EQ(ready.at("features"), 3);
    EXPECT_EQ(ready.at("scale"), 500.0);
    EXPECT_EQ(ready.at("plane"), "2000 family, 3-degree zone 40, central meridian 120");
    EXPECT_EQ(ready.at("data"), (json{kX, kY + 10, kX + 100, kY + 50}));
    EXPECT_THAT(ready.at("files").dump(), HasSubstr("town.rules"));
}

// The picture of the window is the picture of draw, to the pixel.
TEST_F(ViewWorker, DrawsAsDrawDoes) {
    const std::string file = (zenro / "sheet.png").string();
    // 200 mm of paper at 127 dots an inch are 1000 pixels.
    ASSERT_EQ(zenro
                  .Run({"draw", data, "--rules", rules, "--scale", "500", "--sheet",
                        "40500000,3400000,40500100,3400100", "--no-frame", "--dpi", "127", "-o", file})
                  .status,
              0);
    const QImage sheet = QImage(QString::fromStdString(file)).convertToFormat(QImage::Format_RGB32);
    ASSERT_EQ(sheet.size(), QSize(1000, 1000));
    const auto worker = Open();
    const json painted = worker->Draw(kX + 50, kY + 50, 0.1, 1000, 1000, 500.0);
    EXPECT_TRUE(painted.at("labels").get<bool>());
    const QImage view(reinterpret_cast<const uchar*>(worker->Pixels(painted.at("slot"))), 1000, 1000,
                      QImage::Format_RGB32);
    EXPECT_TRUE(view == sheet);
    EXPECT_GT(Dark(*worker, painted, 1000, 1000), 2000);
}

TEST_F(ViewWorker, NamesTheFeatureTheRuleAndTheAttributes) {
    const auto worker = Open();
    const json answer = worker->Ask({{"do", "identify"}, {"x", kX + 20}, {"y", kY + 20}, {"reach", 1.0}});
    ASSERT_EQ(answer.at("count"), 1);
    const json& hit = answer.at("hits")[0];
    EXPECT_THAT(hit.at("where").get<std::string>(), HasSubstr("feature 0"));
    EXPECT_EQ(hit.at("kind"), "area");
    EXPECT_DOUBLE_EQ(hit.at("area").get<double>(), 600.0);  // 20 m by 30 m
    EXPECT_EQ(hit.at("rules")[0].at("line"), 2);
    EXPECT_EQ(hit.at("rules")[0].at("condition"), "kind = 'house'");
    EXPECT_EQ(hit.at("rules")[0].at("symbol"), 200);
    EXPECT_EQ(hit.at("rules")[0].at("label"), "Town Hall");
    EXPECT_THAT(hit.at("fields").dump(), HasSubstr("[\"floors\",\"3\"]"));  // a field that no rule asks for
    EXPECT_EQ(worker->Ask({{"do", "identify"}, {"x", kX + 80}, {"y", kY + 80}, {"reach", 1.0}}).at("count"), 0);
}

TEST_F(ViewWorker, CountsWhatEachRuleDraws) {
    const json layers = Open()->Ask({{"do", "layers"}}).at("layers");
    ASSERT_EQ(layers.size(), 1U);
    EXPECT_EQ(layers[0].at("count"), 3);
    ASSERT_EQ(layers[0].at("rules").size(), 3U);
    for (const json& rule : layers[0].at("rules")) EXPECT_EQ(rule.at("count"), 1) << rule;
    EXPECT_EQ(layers[0].at("rules")[0].at("code"), 200);
}

TEST_F(ViewWorker, WhatIsHiddenIsNeitherDrawnNorIdentified) {
    const auto worker = Open();
    const long all = Dark(*worker, worker->Draw(kX + 50, kY + 50, 0.25, 400, 400, 500.0), 400, 400);
    worker->Send({{"do", "hide"}, {"layers", json::array()}, {"rules", {0}}});
    const long some = Dark(*worker, worker->Draw(kX + 50, kY + 50, 0.25, 400, 400, 500.0), 400, 400);
    EXPECT_GT(some, 0);
    EXPECT_LT(some, all);
    EXPECT_EQ(worker->Ask({{"do", "identify"}, {"x", kX + 20}, {"y", kY + 20}, {"reach", 1.0}}).at("count"), 0);
    worker->Send({{"do", "hide"}, {"layers", {0}}, {"rules", json::array()}});
    EXPECT_EQ(Dark(*worker, worker->Draw(kX + 50, kY + 50, 0.25, 400, 400, 500.0), 400, 400), 0);
    worker->Send({{"do", "hide"}, {"layers", json::array()}, {"rules", json::array()}});
    EXPECT_EQ(Dark(*worker, worker->Draw(kX + 50, kY + 50, 0.25, 400, 400, 500.0), 400, 400), all);
}

struct SearchCase {
    const char *name, *text, *kind;
    double x, y;  // of the middle of what is found first
};
void PrintTo(const SearchCase& c, std::ostream* out) {
    *out << c.name;
}
class ViewSearch : public ViewWorker, public testing::WithParamInterface<SearchCase> {};

TEST_P(ViewSearch, Finds) {
    const auto worker = Open();
    const json found = worker->Ask({{"do", "search"}, {"text", GetParam().text}}).at("found");
    ASSERT_FALSE(found.empty());
    EXPECT_EQ(found[0].at("kind"), GetParam().kind);
    const json& box = found[0].at("box");
    EXPECT_NEAR((box[0].get<double>() + box[2].get<double>()) / 2, GetParam().x, 0.05);
    EXPECT_NEAR((box[1].get<double>() + box[3].get<double>()) / 2, GetParam().y, 0.05);
}
INSTANTIATE_TEST_SUITE_P(
    Texts, ViewSearch,
    testing::Values(
        SearchCase{"part_of_a_name_in_small_letters", "town h", "name", kX + 20, kY + 25},
        SearchCase{"code_of_a_symbol", "17", "code", kX + 60, kY + 20},
        SearchCase{"northing_and_easting", "3400050 40500050", "position", kX + 50, kY + 50},
        SearchCase{"easting_and_northing", "40500050, 3400050", "position", kX + 50, kY + 50},
        // The central meridian is where the easting is 500 km; the latitude by zenro coord to-geo, to 1e-7 degrees.
        SearchCase{"degrees", "30.7206175 120", "position", kX, kY},
        // One place in each form of coord; its degrees by zenro coord to-geo, other zones by to-plane.
        SearchCase{"decimal_degrees", "30.721068455 120.000522024", "position", kX + 50, kY + 50},
        SearchCase{"longitude_first", "120.000522024 30.721068455", "position", kX + 50, kY + 50},
        SearchCase{"packed_degrees", "30.431584644 120.000187928", "position", kX + 50, kY + 50},
        SearchCase{"blanks", "30 43 15.8464 120 00 01.8793", "position", kX + 50, kY + 50},
        SearchCase{"marks", "30°43'15.8464\" 120°00'01.8793\"", "position", kX + 50, kY + 50},
        SearchCase{"marks_longitude_first", "120°00′01.8793″，30°43′15.8464″", "position", kX + 50, kY + 50},
        SearchCase{"letters", "E120.000522024 N30.721068455", "position", kX + 50, kY + 50},
        SearchCase{"chinese", "东经120度00分1.8793秒 北纬30度43分15.8464秒", "position", kX + 50, kY + 50},
        SearchCase{"named_degrees", "lon=120.000522024 lat=30.721068455", "position", kX + 50, kY + 50},
        SearchCase{"named_metres", "east=40500050 north=3400050", "position", kX + 50, kY + 50},
        SearchCase{"as_the_line_below_has_it", "E 40500050.00  N 3400050.00", "position", kX + 50, kY + 50},
        SearchCase{"x_for_the_northing", "X=3400050 Y=40500050", "position", kX + 50, kY + 50},
        SearchCase{"easting_without_zone", "3400050 500050", "position", kX + 50, kY + 50},
        SearchCase{"easting_from_the_meridian", "3400050 50", "position", kX + 50, kY + 50},
        SearchCase{"easting_first_without_zone", "500050 3400050", "position", kX + 50, kY + 50},
        SearchCase{"zone_beside_it", "3403897.386 39787456.619", "position", kX + 50, kY + 50},
        SearchCase{"zone_of_6_degrees", "3403894.707 21212643.443", "position", kX + 50, kY + 50},
        SearchCase{"with_a_height", "3400050 40500050 12.5", "position", kX + 50, kY + 50},
        SearchCase{"line_of_a_list", "P7,HOUSE,500050,3400050,12.5", "position", kX + 50, kY + 50},
        SearchCase{"in_the_plane_far_from_the_data", "3700050 40500050", "position", kX + 50, kY + 300050},
        SearchCase{"degrees_far_from_the_data", "120 30.7", "position", kX, 3397714.256},
        SearchCase{"corner_of_a_sheet", "3400.00-500.00", "sheet", kX + 125.0, kY + 125.0}),
    [](const auto& info) { return std::string(info.param.name); });

TEST_F(ViewWorker, WhatATextMayMeanIsFoundOnceAndAtTheData) {
    const auto worker = Open();
    const auto found = [&](const char* text) { return worker->Ask({{"do", "search"}, {"text", text}}).at("found"); };
    EXPECT_EQ(found("30.43158 120.00019").size(), 1U);
    EXPECT_EQ(found("30.7210 120.0005").size(), 1U);
    EXPECT_EQ(found("3400050 40500050").size(), 1U);
    EXPECT_THAT(found("3400050 500050")[0].at("title").get<std::string>(),
                HasSubstr("3400050 500050 - E 40500050.000  N 3400050.000"));
}

TEST_F(ViewWorker, FindsNothingWhereThereIsNothing) {
    const auto worker = Open();
    for (const char* text : {"nowhere", "7 12", "3400050", "1,2,3", "30.7 north", "99.5 200.5"})
        EXPECT_TRUE(worker->Ask({{"do", "search"}, {"text", text}}).at("found").empty()) << text;
}

TEST_F(ViewWorker, MeasuresInThePlaneAndOnTheEllipsoid) {
    const json m = Open()->Ask({{"do", "measure"}, {"xy", {kX, kY, kX + 1000, kY, kX + 1000, kY + 500}}});
    EXPECT_DOUBLE_EQ(m.at("length").get<double>(), 1500.0);
    EXPECT_DOUBLE_EQ(m.at("area").get<double>(), 250000.0);
    EXPECT_NEAR(m.at("perimeter").get<double>(), 1500.0 + 1118.034, 1e-3);
    // At the central meridian the projection is true to 1e-8 within a kilometre.
    EXPECT_NEAR(m.at("ellipsoidLength").get<double>(), 1500.0, 1e-4);
    EXPECT_NEAR(m.at("ellipsoidArea").get<double>(), 250000.0, 0.05);
}

TEST_F(ViewWorker, SaysWhereAPlaceIsInDegrees) {
    const auto worker = Open();
    const json where = worker->Ask({{"do", "where"}, {"x", kX}, {"y", kY}});
    EXPECT_NEAR(where.at("lon").get<double>(), 120.0, 1e-9);
    EXPECT_THAT(where.at("text").get<std::string>(), HasSubstr("30°43'"));
    EXPECT_THAT(where.at("text").get<std::string>(), HasSubstr("E"));
}

TEST_F(ViewWorker, SnapsToTheNearestVertex) {
    const auto worker = Open();
    const json near = worker->Ask({{"do", "snap"}, {"x", kX + 29}, {"y", kY + 39}, {"reach", 3.0}});
    EXPECT_EQ(near.at("x"), kX + 30);
    EXPECT_EQ(near.at("y"), kY + 40);
    EXPECT_FALSE(worker->Ask({{"do", "snap"}, {"x", kX + 80}, {"y", kY + 80}, {"reach", 3.0}}).contains("x"));
}

TEST_F(ViewWorker, ANewerWishStopsTheOlderDrawing) {
    const auto worker = Open();
    worker->Want(kX + 50, kY + 50, 0.05, 2000, 2000, 500.0);
    const json painted = worker->Draw(kX + 50, kY + 50, 0.25, 400, 400, 500.0);
    EXPECT_EQ(painted.at("number"), 2);
}

TEST_F(ViewWorker, ATurnedViewShowsWhatLiesThere) {
    const auto worker = Open();
    // The line runs along the northing 3400050; turned by 90 degrees it stands upright in the middle.
    const json painted = worker->Draw(kX + 50, kY + 50, 0.25, 200, 400, 500.0, 90.0);
    const std::uint32_t* pixels = worker->Pixels(painted.at("slot"));
    int rows = 0;
    for (int y = 5; y < 395; ++y) {
        bool dark = false;
        for (int x = 95; x < 105; ++x) dark = dark || (pixels[y * 200 + x] & 0xFFFFFF) != 0xFFFFFF;
        rows += dark ? 1 : 0;
    }
    EXPECT_GT(rows, 380);
}

TEST_F(ViewWorker, FarOutSymbolsAreStrokesAndNothingIsLost) {
    const auto worker = Open();
    const json painted = worker->Draw(kX + 50, kY + 30, 20.0, 400, 400, 500.0);
    EXPECT_GT(Dark(*worker, painted, 400, 400), 3);
    EXPECT_LT(Dark(*worker, painted, 400, 400), 200);
}

// From two millimetres of paper in a pixel on. The marks are 40 millimetres long, so that they would be seen.
TEST_F(ViewWorker, FarOutPatternsArePlainLines) {
    const std::string symbols = zenro.File("own.dat", "*42 G\n1 0,-20 0,20\n*80 LC\n+6 G42 -2\n*$\n");
    const std::string fences = zenro.File("fences.rules", "* -> symbol 80, layer 250\n");
    const std::string lines =
        zenro.File("lines.geojson", Collection(LineFeature("[40500000,3400000],[40500300,3400000]", "")));
    MapWorker worker({"--rules=" + fences, "--symbols=" + symbols, "--scale=500", lines});
    worker.Await("ready");
    const auto rows = [&](double pixel) {
        const json painted = worker.Draw(kX + 150, kY, pixel, 400, 400, 500.0);
        const std::uint32_t* pixels = worker.Pixels(painted.at("slot"));
        int inked = 0;
        for (int y = 0; y < 400; ++y)
            inked += std::any_of(pixels + 400 * y, pixels + 400 * (y + 1),
                                 [](std::uint32_t one) { return (one & 0xFFFFFF) != 0xFFFFFF; })
                         ? 1
                         : 0;
        return inked;
    };
    EXPECT_NEAR(rows(0.95), 40.0 / 1.9, 3.0);
    EXPECT_LE(rows(1.05), 3);
}

// Two layers of crosses below a pixel at each of 50 by 50 places, 50 of each: one of each layer is drawn at a place.
TEST_F(ViewWorker, OfManyFeaturesBelowAPixelOneOfEachLayerIsDrawn) {
    std::string layers[2];
    for (int i = 0; i < 250000; ++i) {
        const double x = kX + 100 * (i / 2 % 50), y = kY + 100 * (i / 100 % 50) + i % 2 * 40;
        const auto at = [&](double by) { return zm::numbers::Text("[%.1f,%.1f]", x + by, y + by); };
        layers[i % 2] += (layers[i % 2].empty() ? "" : ",") + LineFeature(at(0) + "," + at(8), "");
    }
    const std::string one = zenro.File("one.geojson", Collection(layers[0]));
    const std::string other = zenro.File("other.geojson", Collection(layers[1]));
    const std::string plain = zenro.File("plain.rules", "* -> symbol 250, layer 250\n");
    MapWorker worker({"--rules=" + plain, "--scale=5000", one, other});
    EXPECT_EQ(worker.Await("ready").at("features"), 250000);
    const auto beats = [&](const json& painted) {
        EXPECT_EQ(painted.at("features"), 250000);
        return worker.Head().beat.exchange(0);
    };
    const auto dark = [&](const json& painted) { return Dark(worker, painted, 600, 600); };
    const json thin = worker.Draw(kX + 2500, kY + 2500, 9.9, 600, 600, 5000.0);
    EXPECT_LE(beats(thin), 2U * 2 * 2500);  // a look and a drawing of each
    const long seen = dark(thin);
    EXPECT_GT(seen, 5000);
    const json all = worker.Draw(kX + 2500, kY + 2500, 7.9, 700, 700, 5000.0);  // not below a pixel: each is drawn
    EXPECT_GE(beats(all), 2U * 250000);
    // Deep in, only what is there is looked at, by the index.
    const json deep = worker.Draw(kX + 2404, kY + 2404, 0.02, 400, 400, 500.0);
    EXPECT_LT(deep.at("features"), 2000);
    EXPECT_LT(worker.Head().beat.exchange(0), 2U * 2000);
    EXPECT_GT(Dark(worker, deep, 400, 400), 50);
}

TEST_F(ViewWorker, WrongRulesAreNamedWithFileAndLine) {
    const std::string bad = zenro.File("bad.rules", "[things]\n* -> symbol 250\nkind = -> symbol\n");
    MapWorker worker({"--rules=" + bad, data});
    EXPECT_EQ(worker.Wait(), 2);
}

TEST_F(ViewWorker, AWishWithoutNumbersIsRefusedAndHarmsNothing) {
    const auto worker = Open();
    worker->Send({{"do", "draw"}});
    const json refused = worker->Await("painted");
    EXPECT_FALSE(refused.at("whole").get<bool>());
    EXPECT_TRUE(refused.contains("error"));
    worker->Draw(kX + 50, kY + 50, 0.25, 400, 400, 500.0);
}

TEST_F(ViewWorker, EndsWithItsWindow) {
    const auto worker = Open();
    worker->CloseInput();
    EXPECT_EQ(worker->Wait(), 0);
}

}  // namespace
