// Fixed inputs of the benchmarks of geometry.
#pragma once

#include <cmath>
#include <cstdint>
#include <random>
#include <vector>

namespace zm::bench {

inline double Uniform(std::mt19937_64& engine, double low, double high) {
    return low + (high - low) * (static_cast<double>(engine() >> 11) * 0x1p-53);
}

struct Line {
    std::vector<double> x, y;
    int n() const { return static_cast<int>(x.size()); }
    std::vector<double> Pairs() const {
        std::vector<double> pairs;
        for (std::size_t i = 0; i < x.size(); ++i) {
            pairs.push_back(x[i]);
            pairs.push_back(y[i]);
        }
        return pairs;
    }
};

/// A line that wanders to the right by steps of about 10 m, with turns of up to 60 degrees.
inline Line WanderingLine(int n, std::uint64_t seed) {
    std::mt19937_64 engine(seed);
    Line line;
    double x = 500000.0;
    double y = 3300000.0;
    for (int i = 0; i < n; ++i) {
        line.x.push_back(x);
        line.y.push_back(y);
        const double bearing = Uniform(engine, -1.0, 1.0);
        const double length = Uniform(engine, 5.0, 15.0);
        x += length * std::cos(bearing);
        y += length * std::sin(bearing);
    }
    return line;
}

/// A star-shaped ring around the origin, radii from 50 to 100.
inline Line StarRing(int n, std::uint64_t seed) {
    std::mt19937_64 engine(seed);
    Line ring;
    for (int i = 0; i < n; ++i) {
        const double bearing = 6.283185307179586 * i / n;
        const double r = Uniform(engine, 50.0, 100.0);
        ring.x.push_back(r * std::cos(bearing));
        ring.y.push_back(r * std::sin(bearing));
    }
    return ring;
}

}  // namespace zm::bench
