// The library's projection beside PROJ's exact one, on random places.
#include <gtest/gtest.h>
#include <proj.h>

#include <cmath>
#include <sstream>

#include "runtime/text/numbers.h"
#include "tests/support/random.h"
#include "tests/zenro/program.h"
#include "tools/zenro/coord/series_error.h"

namespace {

using zm::test::Program;

class Places {
 public:
    double Between(double low, double high) { return low + (high - low) * m_random.Real(0.0, 1.0); }

 private:
    zm::test::Random m_random;
};

TEST(Proj, AgreesWithinATenthOfAMillimetreInAZone) {
    Places places;
    double worst = 0.0;
    for (int i = 0; i < 20000; ++i) {
        const int selector = i % 3 == 0 ? 54 : i % 3 == 1 ? 80 : 84;
        worst =
            std::fmax(worst, zm::tool::SeriesError(selector, places.Between(-55.0, 55.0), places.Between(-3.0, 3.0)));
    }
    EXPECT_LT(worst, 1e-4);  // metres
    RecordProperty("worst_mm", static_cast<int>(worst * 1e6));
}

TEST(Proj, TheProgramAgreesWithTheRegistersZones) {
    PJ_CONTEXT* context = proj_context_create();
    Places places;
    for (const auto& [zone, code] : {std::pair{40, 4528}, {35, 4523}, {45, 4533}}) {
        PJ* way = proj_create_crs_to_crs(context, "EPSG:4490", ("EPSG:" + std::to_string(code)).c_str(), nullptr);
        ASSERT_NE(way, nullptr);
        std::string input;
        std::vector<PJ_COORD> expected;
        for (int i = 0; i < 1000; ++i) {
            const double latitude = places.Between(18.0, 53.0), longitude = zone * 3 + places.Between(-1.49, 1.49);
            input += zm::numbers::Text("%.12f %.12f\n", latitude, longitude);
            expected.push_back(proj_trans(way, PJ_FWD, proj_coord(latitude, longitude, 0.0, 0.0)));
        }
        const auto r = Program().Run({"coord", "to-plane", "--decimals", "6"}, input);
        ASSERT_EQ(r.status, 0) << r.err;
        std::istringstream lines(r.out);
        std::string line;
        std::getline(lines, line);
        for (const PJ_COORD& e : expected) {
            double north = 0.0, east = 0.0;
            std::getline(lines, line);
            std::istringstream(line) >> north >> east;
            EXPECT_NEAR(north, e.v[0], 1e-4);  // the register's axes are north, east
            EXPECT_NEAR(east, e.v[1], 1e-4);
        }
        proj_destroy(way);
    }
    proj_context_destroy(context);
}

}  // namespace
