// What a sheet costs and what it shows follow from its window, whatever else the source holds and wherever it keeps it.
#include <gdal_priv.h>
#include <gtest/gtest.h>
#include <ogrsf_frmts.h>

#include <algorithm>
#include <cmath>
#include <nlohmann/json.hpp>
#include <sstream>

#include "tests/support/random.h"
#include "tests/zenro/program.h"

namespace {

using namespace zm::test;

constexpr double kX = 40512000.0, kY = 3456000.0;

// A GeoPackage of columns by columns crosses of two lines, 20 m apart, in an order that no place has.
void WriteCrosses(const std::filesystem::path& path, int columns) {
    GDALAllRegister();
    GDALDriver* driver = GetGDALDriverManager()->GetDriverByName("GPKG");
    ASSERT_NE(driver, nullptr);
    GDALDataset* data = driver->Create(path.c_str(), 0, 0, 0, GDT_Unknown, nullptr);
    OGRSpatialReference system;
    system.importFromEPSG(4528);
    OGRLayer* layer = data->CreateLayer("crosses", &system, wkbLineString, nullptr);
    data->StartTransaction();
    const int count = columns * columns;
    for (int i = 0; i < count; ++i) {
        const int at = static_cast<int>((static_cast<long long>(i) * 7919) % count);
        const double x = kX + at % columns * 20.0, y = kY + at / columns * 20.0;
        for (const double up : {30.0, -30.0}) {
            OGRFeature* feature = OGRFeature::CreateFeature(layer->GetLayerDefn());
            OGRLineString line;
            line.addPoint(x, y);
            line.addPoint(x + 30.0, y + up);
            feature->SetGeometry(&line);
            // In both files the crosses near the corner have the same numbers.
            feature->SetFID(2LL * (at / columns * 10000 + at % columns) + (up > 0 ? 1 : 2));
            ASSERT_EQ(layer->CreateFeature(feature), OGRERR_NONE);
            OGRFeature::DestroyFeature(feature);
        }
    }
    data->CommitTransaction();
    GDALClose(data);
}

class SheetReading : public testing::Test {
 protected:
    void SetUp() override { m_zenro.File("r.rules", "* -> layer 250, symbol 250\n"); }
    nlohmann::json Sheet(const std::string& input, const std::string& output) {
        const Outcome r = m_zenro.Run({"draw", input, "--rules", "./r.rules", "--scale", "500", "--sheet",
                                       "40512000,3456000,40512100,3456100", "-o", output, "--title", "t", "--json"});
        EXPECT_EQ(r.status, 0) << r.err;
        return nlohmann::json::parse(r.out);
    }
    Program m_zenro;
};

TEST_F(SheetReading, TakesNoMoreFromALargerDatabase) {
    WriteCrosses(m_zenro / "small.gpkg", 11);
    WriteCrosses(m_zenro / "large.gpkg", 120);
    const auto small = Sheet("small.gpkg", "small.svg"), large = Sheet("large.gpkg", "large.svg");
    EXPECT_EQ(small["features"], large["features"]);
    EXPECT_EQ(small["features_read"], large["features_read"]);
    EXPECT_LE(large["features_read"].get<long long>(), large["features"].get<long long>() + 10);
    EXPECT_EQ(ReadFile(m_zenro / "small.svg"), ReadFile(m_zenro / "large.svg"));
}

TEST_F(SheetReading, DrawsInTheOrderOfTheLayerWhateverTheIndexGives) {
    WriteCrosses(m_zenro / "in.gpkg", 30);
    GDALDataset* in = GDALDataset::Open((m_zenro / "in.gpkg").c_str(), GDAL_OF_VECTOR);
    ASSERT_NE(in, nullptr);
    std::string features;
    std::ostringstream one;
    for (const auto& feature : in->GetLayer(0)) {
        const OGRLineString* line = feature->GetGeometryRef()->toLineString();
        one.str("");
        one.imbue(std::locale::classic());
        one << std::fixed << "[" << line->getX(0) << "," << line->getY(0) << "],[" << line->getX(1) << ","
            << line->getY(1) << "]";
        features += (features.empty() ? "" : ",") + LineFeature(one.str(), "");
    }
    GDALClose(in);
    m_zenro.File("in.geojson", Collection(features));
    Sheet("in.gpkg", "a.svg");
    Sheet("in.geojson", "b.svg");
    EXPECT_EQ(ReadFile(m_zenro / "a.svg"), ReadFile(m_zenro / "b.svg"));
}

// A view whose column "costly" cannot be had: SQLite has no sum so large. To ask for it ends the reading.
TEST_F(SheetReading, DoesNotAskForAttributesThatNoRuleUses) {
    WriteCrosses(m_zenro / "in.gpkg", 11);
    GDALDataset* data = GDALDataset::Open((m_zenro / "in.gpkg").c_str(), GDAL_OF_VECTOR | GDAL_OF_UPDATE);
    ASSERT_NE(data, nullptr);
    for (const char* statement :
         {"CREATE VIEW asked AS SELECT fid AS OGC_FID, geom, 'n' AS name, abs(-9223372036854775807 - 1) AS costly FROM "
          "crosses",
          "INSERT INTO gpkg_contents (table_name, identifier, data_type, srs_id) SELECT 'asked', 'asked', 'features', "
          "srs_id FROM gpkg_contents WHERE table_name = 'crosses'",
          "INSERT INTO gpkg_geometry_columns SELECT 'asked', column_name, geometry_type_name, srs_id, z, m FROM "
          "gpkg_geometry_columns WHERE table_name = 'crosses'"}) {
        CPLErrorReset();
        data->ReleaseResultSet(data->ExecuteSQL(statement, nullptr, "SQLITE"));
        ASSERT_EQ(std::string(CPLGetLastErrorMsg()), "");
    }
    GDALClose(data);
    const auto draw = [&](const char* rules) {
        m_zenro.File("r.rules", rules);
        const Outcome r = m_zenro.Run({"draw", "in.gpkg:asked", "--rules", "./r.rules", "--scale", "500", "--sheet",
                                       "40512000,3456000,40512100,3456100", "-o", "a.rec", "--json", "--overwrite"});
        return std::pair(r.status, r.err);
    };
    const auto spared = draw("name = 'n' -> layer 250, symbol 250, label name\n");
    EXPECT_EQ(spared.first, 0) << spared.second;
    const auto asked = draw("name = 'n' -> layer 250, symbol 250, label costly\n");
    EXPECT_NE(asked.first, 0);
    EXPECT_NE(asked.second.find("integer overflow"), std::string::npos) << asked.second;
}

// The places where strokes of a recording end on a line x = at or y = at.
std::vector<double> EndsOn(const std::string& recording, int axis, double at) {
    std::vector<double> ends;
    std::istringstream lines(recording);
    for (std::string line; std::getline(lines, line);) {
        if (line.rfind("Line2:", 0) != 0) continue;
        std::replace(line.begin(), line.end(), ':', ' ');
        std::istringstream numbers(line.substr(6));
        numbers.imbue(std::locale::classic());
        for (double p[2]; numbers >> p[0] >> p[1];)
            if (std::fabs(p[axis] - at) < 1e-4) ends.push_back(p[1 - axis]);
    }
    return ends;
}

TEST_F(SheetReading, NeighboursThatAreDrawnApartJoin) {
    ASSERT_EQ(m_zenro.Run({"demo", "town", "--data-only"}).status, 0);
    std::vector<std::string> inputs;
    for (const auto& entry : std::filesystem::directory_iterator(m_zenro / "town/data"))
        inputs.push_back(entry.path().string());
    std::sort(inputs.begin(), inputs.end());
    const auto draw = [&](double x, double y, const std::string& output) {
        const auto text = [](double v) { return std::to_string(std::llround(v)); };
        std::vector<std::string> arguments = {"draw"};
        arguments.insert(arguments.end(), inputs.begin(), inputs.end());
        arguments.insert(arguments.end(),
                         {"--rules", "demo", "--scale", "500", "--no-frame", "--overwrite", "-o", output, "--sheet",
                          text(x) + "," + text(y) + "," + text(x + 100) + "," + text(y + 100)});
        const Outcome r = m_zenro.Run(arguments);
        EXPECT_EQ(r.status % 4, 0) << r.err;
        return ReadFile(m_zenro / output);
    };
    constexpr double kApart = 0.05e-3 * 500;  // metres of ground
    std::size_t met = 0;
    for (const int axis : {0, 1})
        for (const double along : {0.0, 100.0, 300.0}) {
            const double x = kX + (axis == 0 ? 0.0 : along), y = kY + (axis == 0 ? along : 0.0);
            const double edge = axis == 0 ? x + 100 : y + 100;
            const auto one = EndsOn(draw(x, y, "a.rec"), axis, edge),
                       other = EndsOn(draw(axis == 0 ? x + 100 : x, axis == 0 ? y : y + 100, "b.rec"), axis, edge);
            met += one.size();
            for (const auto& [from, to] : {std::pair(&one, &other), std::pair(&other, &one)})
                for (const double end : *from)
                    EXPECT_TRUE(std::any_of(to->begin(), to->end(),
                                            [&, end = end](double v) { return std::fabs(v - end) <= kApart; }))
                        << "axis " << axis << ", edge " << edge << ", stroke at " << end;
        }
    EXPECT_GT(met, 50u);
}

}  // namespace
