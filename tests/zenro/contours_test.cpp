// zenro contours beside the contours of GDAL, and on terrain whose contours are known.
#include <gtest/gtest.h>

#include <gdal_alg.h>
#include <gdal_priv.h>
#include <ogrsf_frmts.h>

#include <cmath>
#include <map>
#include <set>

#include "runtime/text/numbers.h"
#include "tests/zenro/program.h"
#include "tools/kit/exit_codes.h"
#include "tools/zenro/relief/terrain.h"

namespace {

using namespace zm::tool;
using namespace zm::test;

constexpr int kSide = 40;  // points of the grid

double HeightAt(double x, double y) {
    return 20.0 + 6.0 * std::sin(x / 5.3) + 5.0 * std::cos(y / 7.1) + 0.07 * x;
}

std::vector<TerrainPoint> Grid() {
    std::vector<TerrainPoint> points;
    for (int y = 0; y < kSide; ++y)
        for (int x = 0; x < kSide; ++x) points.push_back({x * 1.0, y * 1.0, HeightAt(x, y)});
    return points;
}

// Where contours cross the lines of the grid, by height: there the diagonals of the triangles have no part.
using Crossings = std::map<double, std::set<std::pair<long, long>>>;

void AddCrossing(Crossings& all, double height, double x, double y) {
    const bool onGrid = std::fabs(x - std::round(x)) < 1e-7 || std::fabs(y - std::round(y)) < 1e-7;
    if (onGrid) all[height].insert({std::lround(x * 1e5), std::lround(y * 1e5)});
}

Crossings OfGdal(double interval) {
    GDALAllRegister();
    GDALDriver* memory = GetGDALDriverManager()->GetDriverByName("MEM");
    GDALDatasetUniquePtr raster(memory->Create("", kSide, kSide, 1, GDT_Float64, nullptr));
    double transform[6] = {-0.5, 1, 0, -0.5, 0, 1};  // pixel centres are the points of the grid
    raster->SetGeoTransform(transform);
    for (int y = 0; y < kSide; ++y)
        for (int x = 0; x < kSide; ++x) {
            double h = HeightAt(x, y);
            EXPECT_EQ(raster->GetRasterBand(1)->RasterIO(GF_Write, x, y, 1, 1, &h, 1, 1, GDT_Float64, 0, 0), CE_None);
        }
    GDALDatasetUniquePtr vectors(
        GetGDALDriverManager()->GetDriverByName("Memory")->Create("", 0, 0, 0, GDT_Unknown, nullptr));
    OGRLayer* layer = vectors->CreateLayer("c", nullptr, wkbLineString, nullptr);
    OGRFieldDefn field("h", OFTReal);
    EXPECT_EQ(layer->CreateField(&field), OGRERR_NONE);
    EXPECT_EQ(GDALContourGenerate(raster->GetRasterBand(1), interval, 0.0, 0, nullptr, FALSE, 0.0, layer, -1, 0,
                                  nullptr, nullptr),
              CE_None);
    Crossings all;
    for (const OGRFeatureUniquePtr& feature : *layer)
        for (const OGRPoint& p : *feature->GetGeometryRef()->toLineString())
            if (p.getX() > -1e-9 && p.getX() < kSide - 1 + 1e-9 && p.getY() > -1e-9 && p.getY() < kSide - 1 + 1e-9)
                AddCrossing(all, feature->GetFieldAsDouble(0), p.getX(), p.getY());
    return all;
}

TEST(Contours, CrossTheLinesOfAGridWhereThoseOfGdalDo) {
    const double interval = 0.7;
    Crossings ours;
    for (const ContourLine& line : ContoursOf(Triangulate(Grid(), {}), interval))
        for (std::size_t i = 0; i < line.x.size(); ++i) AddCrossing(ours, line.height, line.x[i], line.y[i]);
    const Crossings theirs = OfGdal(interval);
    ASSERT_GT(theirs.size(), 20u);
    long compared = 0, missing = 0;
    for (const auto& [height, places] : theirs) {
        const auto level = ours.lower_bound(height - 1e-9);
        ASSERT_TRUE(level != ours.end() && std::fabs(level->first - height) < 1e-9) << height;
        for (const auto& [x, y] : places) {
            // Rounded places may differ by one unit.
            bool found = false;
            for (long dx = -2; dx <= 2; ++dx)
                for (long dy = -2; dy <= 2; ++dy) found = found || level->second.count({x + dx, y + dy}) != 0;
            ++compared;
            missing += found ? 0 : 1;
        }
    }
    EXPECT_GT(compared, 1500);
    EXPECT_EQ(missing, 0);
}

TEST(Contours, OfAPlaneAreStraightAndHaveTheHigherGroundOnTheRight) {
    std::vector<TerrainPoint> points;
    for (int i = 0; i < 200; ++i) {
        const double x = std::fmod(i * 61.8, 100.0), y = std::fmod(i * 38.1, 100.0);
        points.push_back({x, y, x / 10.0});
    }
    for (const double x : {0.0, 100.0})
        for (const double y : {0.0, 100.0}) points.push_back({x, y, x / 10.0});
    const auto lines = ContoursOf(Triangulate(points, {}), 1.0);
    ASSERT_GE(lines.size(), 9u);
    for (const ContourLine& line : lines) {
        for (const double x : line.x) EXPECT_NEAR(x, line.height * 10.0, 1e-9);
        if (line.height > 0.5 && line.height < 9.5) {
            EXPECT_GT(line.y.back(), line.y.front()) << line.height;
        }
        EXPECT_EQ(line.index, line.height == 0.0 || line.height == 5.0 || line.height == 10.0);
    }
}

TEST(Contours, ABreakLineIsKeptAsAnEdge) {
    // A ridge of height 10 across flat ground of height 0, its points far apart: without it no contour runs along it.
    std::vector<TerrainPoint> points;
    for (int x = 0; x <= 100; x += 5)
        for (const int y : {0, 40, 60, 100}) points.push_back({x * 1.0, y * 1.0, 0.0});
    const BreakLine ridge = {{0, 50, 10}, {100, 50, 10}};
    const Terrain terrain = Triangulate(points, {ridge});
    EXPECT_GT(terrain.added, 0);
    std::set<std::pair<int, int>> edges;
    for (const auto& t : terrain.triangles)
        for (std::size_t i = 0; i < 3; ++i)
            edges.insert({std::min(t[i], t[(i + 1) % 3]), std::max(t[i], t[(i + 1) % 3])});
    double covered = 0.0;
    for (const auto& [a, b] : edges) {
        const TerrainPoint p = terrain.points[static_cast<std::size_t>(a)],
                           q = terrain.points[static_cast<std::size_t>(b)];
        if (p.y == 50.0 && q.y == 50.0) covered += std::fabs(q.x - p.x);
    }
    EXPECT_NEAR(covered, 100.0, 1e-9);
    for (const ContourLine& line : ContoursOf(terrain, 4.0))
        if (line.height == 8.0)
            for (std::size_t i = 0; i < line.y.size(); ++i)
                if (line.x[i] > 6.0 && line.x[i] < 94.0) {
                    EXPECT_NEAR(std::fabs(line.y[i] - 50.0), 2.0, 0.6);
                }
}

TEST(Contours, CrossingBreakLinesAndTooFewPointsAreRefused) {
    EXPECT_THROW(Triangulate({{0, 0, 0}, {1, 1, 1}}, {}), Failure);
    EXPECT_THROW(Triangulate({{0, 0, 0}, {1, 1, 1}, {2, 2, 1}}, {}), Failure);
}

TEST(ContoursVerb, WritesLinesWithHeightsAndIndex) {
    const Program zenro;
    std::string points;
    for (int i = 0; i < 400; ++i) {
        const double x = std::fmod(i * 61.8, 100.0), y = std::fmod(i * 38.1, 100.0);
        points += (i > 0 ? "," : "") +
                  PointFeature(40512000 + x, 3456000 + y,
                               "\"h\":" + zm::numbers::Text("%.6f", 30.0 - std::hypot(x - 50, y - 50) / 3));
    }
    zenro.File("p.geojson", Collection(points));
    const Outcome r = zenro.Run({"contours", "p.geojson", "-o", "c.geojson", "--interval", "1", "--field", "h"});
    ASSERT_EQ(r.status, 0) << r.err;
    const std::string text = ReadFile(zenro / "c.geojson");
    EXPECT_GT(Count(text, "\"LineString\""), 15);
    EXPECT_NE(text.find("\"height\": 25.0"), std::string::npos);
    EXPECT_GE(Count(text, "\"index\": 1"), 3);
    EXPECT_EQ(zenro.Run({"contours", "p.geojson", "-o", "c.geojson", "--interval", "1", "--field", "h"}).status, 5);
    EXPECT_EQ(zenro.Run({"contours", "p.geojson", "-o", "d.geojson", "--interval", "1"}).status, 1);
    EXPECT_EQ(zenro.Run({"contours", "p.geojson", "-o", "c.what", "--interval", "1", "--field", "h"}).status, 2);
    EXPECT_EQ(zenro.Run({"contours", "none.geojson", "-o", "d.geojson", "--interval", "1"}).status, 3);
}

TEST(ContoursVerb, AFormatOfSeveralFilesIsPutInPlaceWhole) {
    const Program zenro;
    zenro.File("p.geojson", Collection(PointFeature(40512010, 3456010, "\"h\":10") + "," +
                                       PointFeature(40512090, 3456010, "\"h\":12") + "," +
                                       PointFeature(40512050, 3456090, "\"h\":18")));
    std::vector<std::string> contours = {"contours", "p.geojson", "--interval", "1", "--field", "h", "-o"};
    const auto to = [&](const std::string& output, bool overwrite) {
        std::vector<std::string> arguments = contours;
        arguments.push_back(output);
        if (overwrite) arguments.push_back("--overwrite");
        return zenro.Run(arguments).status;
    };
    EXPECT_EQ(to("c.shp", false), 0);
    for (const char* part : {"c.shp", "c.shx", "c.dbf", "c.prj"}) EXPECT_TRUE(zenro.Has(part)) << part;
    EXPECT_EQ(to("c.shp", false), 5);
    EXPECT_EQ(to("c.shp", true), 0);
    EXPECT_EQ(to("-.shp", false), 2);
    EXPECT_TRUE(zenro.Unfinished().empty());
}

}  // namespace
