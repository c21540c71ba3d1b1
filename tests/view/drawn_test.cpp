// Drawings and recordings in the window: the same picture as the verbs that draw them, with layers and texts.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QImage>
#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <filesystem>
#include <fstream>

#include <nlohmann/json.hpp>

#include "tests/view/map_worker.h"
#include "tests/zenro/program.h"

namespace {

using namespace zm::test;
using nlohmann::json;
using testing::HasSubstr;

constexpr double kX = 40500000.0, kY = 3400000.0;

class ViewDrawn : public testing::Test {
 protected:
    void SetUp() override {
        const std::string rules =
            zenro.File("town.rules",
                       "[things : area]\nkind = 'house' -> layer 200, symbol 200, label name\n"
                       "[things : line]\n* -> symbol 250, layer 250\n[things : point]\n* -> symbol 17, layer 100\n");
        const std::string data = zenro.File(
            "things.geojson",
            Collection(AreaFeature("[[40500010,3400010],[40500030,3400010],[40500030,3400040],[40500010,3400040],"
                                   "[40500010,3400010]]",
                                   R"("kind":"house","name":"Town Hall")") +
                       "," + LineFeature("[40500000,3400050],[40500100,3400050]", R"("kind":"road")") + "," +
                       PointFeature(kX + 60, kY + 20, R"("kind":"tree")")));
        recording = (zenro / "town.rec").string();
        drawing = (zenro / "town.dwg").string();
        const Outcome r =
            zenro.Run({"draw", data, "--rules", rules, "--scale", "500", "--sheet", "40500000,3400000,40500100,3400100",
                       "--no-frame", "-o", recording, "-o", drawing});
        ASSERT_EQ(r.status, 0) << r.err;
    }
    static std::unique_ptr<MapWorker> Open(const std::string& file) {
        auto worker = std::make_unique<MapWorker>(std::vector<std::string>{file});
        worker->Await("ready");
        return worker;
    }
    static long Dark(const MapWorker& worker, const json& painted, int side) {
        const std::uint32_t* pixels = worker.Pixels(painted.at("slot"));
        long dark = 0;
        for (int i = 0; i < side * side; ++i) dark += (pixels[i] & 0xFFFFFF) != 0xFFFFFF;
        return dark;
    }
    static json LayerNamed(const json& layers, const std::string& part) {
        for (const json& layer : layers)
            if (layer.at("name").get<std::string>().find(part) != std::string::npos) return layer;
        return {};
    }

    Program zenro;
    std::string recording, drawing;
};

TEST_F(ViewDrawn, ARecordingIsShownAsReplayDrawsIt) {
    const std::string file = (zenro / "replayed.png").string();
    ASSERT_EQ(zenro.Run({"replay", recording, file, "--dpi", "127"}).status, 0);  // 200 mm are 1000 pixels
    const QImage sheet = QImage(QString::fromStdString(file)).convertToFormat(QImage::Format_RGB32);
    ASSERT_EQ(sheet.size(), QSize(1000, 1000));
    const auto worker = Open(recording);
    for (int round = 0; round < 2; ++round) {  // the second one is as the first
        const json painted = worker->Draw(kX + 50, kY + 50, 0.1, 1000, 1000, 500.0);
        const QImage view(reinterpret_cast<const uchar*>(worker->Pixels(painted.at("slot"))), 1000, 1000,
                          QImage::Format_RGB32);
        EXPECT_TRUE(view == sheet);
        EXPECT_GT(Dark(*worker, painted, 1000), 2000);
    }
}

TEST_F(ViewDrawn, ARecordingSaysItsScaleSheetAndLayers) {
    MapWorker worker({recording});
    const json ready = worker.Await("ready");
    EXPECT_EQ(ready.at("scale"), 500.0);
    EXPECT_EQ(ready.at("start"), (json{kX, kY, kX + 100, kY + 100}));
    EXPECT_TRUE(ready.at("drawn").get<bool>());
    const json layers = worker.Ask({{"do", "layers"}}).at("layers");
    EXPECT_TRUE(LayerNamed(layers, "250").is_object()) << layers;
    EXPECT_GT(LayerNamed(layers, "250").at("count"), 0);
}

TEST_F(ViewDrawn, ARecordingsLayersAreNamedByTheNotesOfTheirCodes) {
    const std::string symbols =
        zenro.File("own.dat", "*200 L \"a house\"\n*250 LC D0 A0\n+5 -2 G17\n*17 G\n3 0,0 1\n*$\n");
    MapWorker worker({recording, "--symbols=" + symbols});
    worker.Await("ready");
    std::vector<std::string> names;
    const json answer = worker.Ask({{"do", "layers"}});
    for (const json& layer : answer.at("layers")) names.push_back(layer.at("name"));
    EXPECT_THAT(names, testing::Contains("200 a house"));
    EXPECT_THAT(names, testing::Contains("250 道路"));  // no note: the layer of the project
}

TEST_F(ViewDrawn, AHiddenLayerIsNeitherDrawnNorFound) {
    for (const std::string& file : {recording, drawing}) {
        const auto worker = Open(file);
        const long all = Dark(*worker, worker->Draw(kX + 50, kY + 50, 0.25, 400, 400, 500.0), 400);
        const json layers = worker->Ask({{"do", "layers"}}).at("layers");
        json road;
        for (const json& layer : layers) {
            const std::string name = layer.at("name");
            if (name.find("250") != std::string::npos || name.find("道路") != std::string::npos) road = layer;
        }
        ASSERT_TRUE(road.is_object()) << layers;
        const json before = worker->Ask({{"do", "identify"}, {"x", kX + 50}, {"y", kY + 50}, {"reach", 3.0}});
        EXPECT_GT(before.at("count"), 0) << file;
        EXPECT_EQ(before.at("hits")[0].at("layer"), road.at("name"));
        worker->Send({{"do", "hide"}, {"layers", {road.at("index")}}, {"rules", json::array()}});
        const long fewer = Dark(*worker, worker->Draw(kX + 50, kY + 50, 0.25, 400, 400, 500.0), 400);
        EXPECT_GT(fewer, 0);
        EXPECT_LT(fewer, all) << file;
        EXPECT_EQ(worker->Ask({{"do", "identify"}, {"x", kX + 50}, {"y", kY + 50}, {"reach", 3.0}}).at("count"), 0);
    }
}

TEST_F(ViewDrawn, ATextAndAPositionAreFoundAndAVertexIsSnappedTo) {
    for (const std::string& file : {recording, drawing}) {
        const auto worker = Open(file);
        const json found = worker->Ask({{"do", "search"}, {"text", "town h"}}).at("found");
        ASSERT_FALSE(found.empty()) << file;
        EXPECT_NEAR(found[0].at("box")[0].get<double>(), kX + 20, 15.0);
        for (const char* text : {"3400050 40500060", "40500060 3400050", "X=3400050 Y=40500060"}) {
            const json place = worker->Ask({{"do", "search"}, {"text", text}}).at("found");
            ASSERT_EQ(place.size(), 1U) << text;
            EXPECT_EQ(place[0].at("box"), (json{kX + 60, kY + 50, kX + 60, kY + 50})) << text;
        }
        const json corner = worker->Ask({{"do", "snap"}, {"x", kX + 29}, {"y", kY + 39}, {"reach", 2.0}});
        ASSERT_TRUE(corner.contains("x")) << file;
        EXPECT_NEAR(corner.at("x").get<double>(), kX + 30, 0.01);
        EXPECT_NEAR(corner.at("y").get<double>(), kY + 40, 0.01);
    }
}

TEST_F(ViewDrawn, ADrawingShowsItsLinesWhereTheyAre) {
    const auto worker = Open(drawing);
    const json painted = worker->Draw(kX + 50, kY + 50, 0.25, 400, 400, 500.0);
    const std::uint32_t* pixels = worker->Pixels(painted.at("slot"));
    int columns = 0;  // the road along the northing 3400050, 3 m wide or less to both sides
    for (int x = 5; x < 395; ++x) {
        bool dark = false;
        for (int y = 185; y < 215; ++y) dark = dark || (pixels[y * 400 + x] & 0xFFFFFF) != 0xFFFFFF;
        columns += dark ? 1 : 0;
    }
    EXPECT_GT(columns, 380);
}

// By the index as by a walk over all.
TEST_F(ViewDrawn, AmongManyStrokesThoseAtAPlaceAreFound) {
    constexpr int kLines = 4000;
    std::vector<std::array<int, 4>> lines;
    std::uint32_t seed = 7;
    const auto next = [&](std::uint32_t below) {
        seed = seed * 1664525u + 1013904223u;
        return static_cast<int>((seed >> 8) % below);
    };
    std::string text = "# zenro recording 1, commands of the drawing context in GBK\nLayer:250\n";
    for (int i = 0; i < kLines; ++i) {
        const int x = next(1000), y = next(1000), length = next(40);
        lines.push_back({x, y, x + length, y});
        text += "Line2:" + std::to_string(x) + ":" + std::to_string(y) + ":" + std::to_string(x + length) + ":" +
                std::to_string(y) + "\n";
    }
    const auto worker = Open(zenro.File("many.rec", text));
    int found = 0;
    for (int i = 0; i < 60; ++i) {
        const double x = next(1000) + 0.5, y = next(1000), reach = 2.6;
        int wanted = 0;
        double nearest = reach;
        for (const auto& [x1, y1, x2, y2] : lines) {
            wanted += std::hypot(x - std::clamp(x, double(x1), double(x2)), y - y1) <= reach ? 1 : 0;
            nearest = std::min({nearest, std::hypot(x - x1, y - y1), std::hypot(x - x2, y - y2)});
        }
        const json hits = worker->Ask({{"do", "identify"}, {"x", x}, {"y", y}, {"reach", reach}});
        EXPECT_EQ(hits.at("count"), wanted) << x << " " << y;
        found += wanted;
        const json vertex = worker->Ask({{"do", "snap"}, {"x", x}, {"y", y}, {"reach", reach}});
        EXPECT_EQ(vertex.contains("x"), nearest < reach) << x << " " << y;
        if (!vertex.contains("x")) continue;
        EXPECT_NEAR(std::hypot(vertex.at("x").get<double>() - x, vertex.at("y").get<double>() - y), nearest, 1e-9);
    }
    EXPECT_GT(found, 20);
}

TEST_F(ViewDrawn, AMeasureIsOfThePlaneAlone) {
    const json m = Open(drawing)->Ask({{"do", "measure"}, {"xy", {kX, kY, kX + 30, kY, kX + 30, kY + 40}}});
    EXPECT_DOUBLE_EQ(m.at("length").get<double>(), 70.0);
    EXPECT_DOUBLE_EQ(m.at("area").get<double>(), 600.0);
    EXPECT_DOUBLE_EQ(m.at("perimeter").get<double>(), 120.0);
    EXPECT_FALSE(m.contains("ellipsoidLength"));
}

struct RefusedCase {
    const char *name, *file, *bytes, *why;
    int status;
};
void PrintTo(const RefusedCase& c, std::ostream* out) {
    *out << c.name;
}
class ViewRefused : public testing::TestWithParam<RefusedCase> {};
TEST_P(ViewRefused, SaysWhy) {
    const Program zenro;
    MapWorker worker({zenro.File(GetParam().file, GetParam().bytes)});
    EXPECT_EQ(worker.Wait(), GetParam().status);
    EXPECT_THAT(worker.LastWords(), HasSubstr(GetParam().why));
}
INSTANTIATE_TEST_SUITE_P(Files, ViewRefused,
                         testing::Values(RefusedCase{"another_version", "a.dwg", "AC1015......", "AC1015", 3},
                                         RefusedCase{"no_drawing", "a.dwg", "", "no drawing", 3},
                                         RefusedCase{"no_recording", "a.rec", "hello\n", "no command", 3}),
                         [](const auto& info) { return std::string(info.param.name); });

}  // namespace
