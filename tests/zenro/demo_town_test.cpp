// The demonstration town as a surveyor would hand it in: nothing lies on what it cannot lie on, names are where they
// belong.
#include <gtest/gtest.h>

#include <gdal_priv.h>
#include <ogrsf_frmts.h>

#include <algorithm>
#include <cmath>
#include <map>
#include <memory>
#include <sstream>
#include <vector>

#include "tests/support/recorded_numbers.h"
#include "tests/zenro/program.h"

namespace {

struct Thing {
    std::string kind, name;
    std::shared_ptr<OGRGeometry> where;
};

std::vector<Thing> Things(const std::string& layer, const std::string& kind) {
    GDALAllRegister();
    const std::string path = std::string(ZENRO_SOURCE_DIR) + "/data/demo/" + layer + ".geojson";
    const GDALDatasetUniquePtr data(GDALDataset::Open(path.c_str(), GDAL_OF_VECTOR | GDAL_OF_READONLY));
    std::vector<Thing> things;
    if (data == nullptr) return things;
    for (const auto& feature : *data->GetLayer(0)) {
        const std::string is = feature->GetFieldAsString("kind");
        if (!kind.empty() && is != kind) continue;
        const int name = feature->GetFieldIndex("name");
        things.push_back({is, name < 0 ? "" : feature->GetFieldAsString(name),
                          std::shared_ptr<OGRGeometry>(feature->GetGeometryRef()->clone())});
    }
    return things;
}

void NoneMeets(const std::vector<Thing>& some, const std::vector<Thing>& others) {
    ASSERT_FALSE(some.empty());
    ASSERT_FALSE(others.empty());
    for (const Thing& a : some)
        for (const Thing& b : others) {
            char* place = nullptr;
            if (a.where->Intersects(b.where.get())) a.where->exportToWkt(&place);
            EXPECT_EQ(place, nullptr) << a.kind << " on " << b.kind << ": " << place;
            CPLFree(place);
        }
}

TEST(DemoTown, TheBridgeHasItsNameOnIt) {
    const auto names = Things("names", "bridge"), bridges = Things("structures", "road_bridge");
    ASSERT_EQ(names.size(), 1u);
    ASSERT_EQ(bridges.size(), 1u);
    EXPECT_EQ(names[0].name, bridges[0].name);
    EXPECT_TRUE(bridges[0].where->Contains(names[0].where.get()));
}

TEST(DemoTown, NothingLiesOnWhatItCannotLieOn) {
    NoneMeets(Things("traffic", "path"), Things("structures", "steps"));
    NoneMeets(Things("traffic", "median"), Things("traffic", "crossing"));
    NoneMeets(Things("utilities", "pole"), Things("structures", "culvert"));
    NoneMeets(Things("terrain", "spot_height"), Things("structures", ""));
    NoneMeets(Things("terrain", "spot_height"), Things("vegetation", "greenhouse"));
    NoneMeets(Things("vegetation", "lawn"), Things("traffic", "car_park"));
    NoneMeets(Things("traffic", "filling_station"), Things("buildings", "house"));
    NoneMeets(Things("buildings", "fence"), Things("traffic", "railway"));
    NoneMeets(Things("traffic", "embankment"), Things("traffic", "railway"));
}

// Half circles of a revetment lie to the right of its course.
TEST(DemoTown, RevetmentsTurnToTheWater) {
    const auto rivers = Things("water", "river");
    const auto banks = Things("water", "revetment");
    ASSERT_FALSE(banks.empty());
    for (const Thing& bank : banks) {
        const auto* line = bank.where->toLineString();
        const int i = line->getNumPoints() / 2;
        const double dx = line->getX(i) - line->getX(i - 1), dy = line->getY(i) - line->getY(i - 1),
                     d = std::hypot(dx, dy);
        const OGRPoint beside((line->getX(i) + line->getX(i - 1)) / 2 + dy / d,
                              (line->getY(i) + line->getY(i - 1)) / 2 - dx / d);
        EXPECT_TRUE(std::any_of(rivers.begin(), rivers.end(), [&](const Thing& river) {
            return river.where->Contains(&beside);
        })) << beside.getX();
    }
}

// Neither the control point with its name nor the pagoda breaks the highest contour with a number.
TEST(DemoTown, TheHighestIndexContourIsWhole) {
    const zm::test::Program zenro;
    const std::string data = std::string(ZENRO_SOURCE_DIR) + "/data/demo/";
    zenro.File("r.rules",
               "kind = 'index_contour' AND height = 40 -> symbol 381, line 2, height height\n"
               "kind = 'triangulation' -> symbol 1, note #, label name, under \"{height:.2f}\"\n"
               "kind = 'pagoda' -> symbol 56, note M, label name\n* -> skip\n");
    const auto drawn = zenro.Run({"draw", data + "terrain.geojson", data + "control.geojson",
                                  data + "buildings.geojson", "--rules", "./r.rules", "--scale", "1000", "--no-frame",
                                  "--sheet", "40512000,3456000,40512200,3456200", "-o", "a.rec"});
    ASSERT_EQ(drawn.status, 0) << drawn.err;
    std::map<std::pair<long long, long long>, int> ends;
    std::istringstream lines(zm::test::ReadFile(zenro / "a.rec"));
    const auto onRing = [](double x, double y) {
        const double d = std::hypot(x - 40512083.0, y - 3456031.2);
        return d > 5.7 && d < 9.0;
    };
    for (std::string line; std::getline(lines, line);) {
        const auto n = zm::test::NumbersOf(line, "Line2");
        if (n.size() != 4 || !onRing(n[0], n[1]) || !onRing(n[2], n[3])) continue;
        for (const int i : {0, 2}) ++ends[{std::llround(n[i] * 100), std::llround(n[i + 1] * 100)}];
    }
    EXPECT_GT(ends.size(), 15u);
    for (const auto& [place, times] : ends)
        EXPECT_EQ(times % 2, 0) << place.first << " " << place.second << " is a loose end";
}

// A ditch begins at water, at a structure or at another ditch, and ends there or beyond the sheet.
TEST(DemoTown, DitchesGoSomewhere) {
    std::vector<Thing> ends = Things("structures", "");
    const auto ditches = Things("water", "ditch");
    ASSERT_GE(ditches.size(), 4u);
    for (const Thing& ditch : ditches) {
        const auto* line = ditch.where->toLineString();
        for (const int i : {0, line->getNumPoints() - 1}) {
            OGRPoint end;
            line->getPoint(i, &end);
            bool met = end.getY() <= 3456000.0;
            for (const Thing& structure : ends) met = met || structure.where->Distance(&end) < 2.0;
            for (const Thing& other : ditches)
                met = met || (other.where != ditch.where && other.where->Distance(&end) < 0.01);
            EXPECT_TRUE(met) << end.getX() << " " << end.getY();
        }
    }
}

// Lines of power and telephone end at a pole or a pylon, or beyond the sheet.
TEST(DemoTown, WiresEndAtPoles) {
    std::vector<Thing> poles = Things("utilities", "pole");
    for (const Thing& pylon : Things("utilities", "pylon")) poles.push_back(pylon);
    for (const char* kind : {"high_voltage_line", "distribution_line", "telephone_line"})
        for (const Thing& wire : Things("utilities", kind)) {
            const auto* line = wire.where->toLineString();
            OGRPoint end;
            line->getPoint(line->getNumPoints() - 1, &end);
            double nearest = 1e9;
            for (const Thing& pole : poles) nearest = std::min(nearest, pole.where->Distance(&end));
            EXPECT_LT(nearest, 0.01) << kind;
        }
}

}  // namespace
