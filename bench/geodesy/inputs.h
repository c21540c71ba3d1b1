// Fixed inputs of the geodesy benchmarks. 262,144 different ones, so that no branch is learned by heart.
#pragma once

#include <cstddef>
#include <random>
#include <vector>

namespace zm::bench {

constexpr std::size_t kInputs = std::size_t{1} << 18;
constexpr double kRadian = 3.141592653589793 / 180.0;

inline std::vector<double> Uniform(double low, double high, unsigned seed, std::size_t count = kInputs) {
    std::mt19937_64 engine(seed);
    std::uniform_real_distribution<double> among(low, high);
    std::vector<double> values(count);
    for (double& v : values) v = among(engine);
    return values;
}

}  // namespace zm::bench
