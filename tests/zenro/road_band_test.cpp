// The area of a road about its middle line.
#include "tools/zenro/map/road_band.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <memory>
#include <random>

namespace {

using zm::tool::Chain;

struct Nearest {
    double distance;
    bool atAnEnd;  // of the line: what lies beyond a flat end
};

Nearest NearestOf(const Chain& line, double x, double y) {
    Nearest nearest{std::numeric_limits<double>::max(), false};
    for (std::size_t i = 0; i + 1 < line.size(); ++i) {
        const double dx = line.x[i + 1] - line.x[i], dy = line.y[i + 1] - line.y[i];
        const double t = std::clamp(((x - line.x[i]) * dx + (y - line.y[i]) * dy) / (dx * dx + dy * dy), 0.0, 1.0);
        const double d = std::hypot(line.x[i] + t * dx - x, line.y[i] + t * dy - y);
        if (d < nearest.distance) nearest = {d, (i == 0 && t == 0.0) || (i + 2 == line.size() && t == 1.0)};
    }
    return nearest;
}

// Lines that wind, turn back and have pieces shorter than the road is wide.
TEST(RoadBand, HasWhatIsNearerThanHalfTheWidth) {
    std::mt19937_64 engine(17);
    const auto real = [&](double low, double high) {
        return low + (high - low) * (static_cast<double>(engine() >> 11) * 0x1p-53);
    };
    const double half = 4.0;
    int inside = 0, outside = 0;
    for (int round = 0; round < 60; ++round) {
        Chain line;
        double x = 0.0, y = 0.0, direction = 0.0;
        const double longest = round % 3 == 0 ? 3.0 : 25.0, sharpest = round % 2 == 0 ? 0.5 : 3.1;
        for (int i = 0; i < 12; ++i) {
            line.x.push_back(x);
            line.y.push_back(y);
            direction += real(-sharpest, sharpest);
            const double length = real(0.2, longest);
            x += length * std::cos(direction);
            y += length * std::sin(direction);
        }
        OGRMultiPolygon all;
        zm::tool::AddBand(all, line, half);
        for (const OGRPolygon* polygon : all) EXPECT_TRUE(polygon->IsValid()) << round;
        const std::unique_ptr<OGRGeometry> band(all.UnionCascaded());
        ASSERT_NE(band, nullptr);
        for (int k = 0; k < 300; ++k) {
            const std::size_t corner = static_cast<std::size_t>(engine() % 12);
            const double px = line.x[corner] + real(-8.0, 8.0);
            const double py = line.y[corner] + real(-8.0, 8.0);
            const Nearest nearest = NearestOf(line, px, py);
            const OGRPoint point(px, py);
            if (nearest.distance > half * 1.0001) {
                EXPECT_FALSE(band->Contains(&point)) << round << " " << px << " " << py;
                ++outside;
            } else if (nearest.distance < half * 0.99 && !nearest.atAnEnd) {  // chords of 15 degrees
                EXPECT_TRUE(band->Contains(&point)) << round << " " << px << " " << py;
                ++inside;
            }
        }
    }
    EXPECT_GT(inside, 3000);
    EXPECT_GT(outside, 3000);
}

// A line of many corners on a curve is few polygons: what makes a sheet of a town quick.
TEST(RoadBand, AGentleCurveIsOnePolygon) {
    Chain curve;
    for (int i = 0; i <= 50; ++i) {
        curve.x.push_back(200.0 * std::cos(i * 0.02));
        curve.y.push_back(200.0 * std::sin(i * 0.02));
    }
    OGRMultiPolygon all;
    zm::tool::AddBand(all, curve, 4.0);
    EXPECT_EQ(all.getNumGeometries(), 1);
    EXPECT_NEAR(all.get_Area(), 200.0 * 1.0 * 8.0, 1.0);
}

}  // namespace
