// Seeded random numbers for property tests. The seed is printed with every failure.
#pragma once

#include <cstdint>
#include <random>

namespace zm::test {

/// The seed of this run: the environment variable ZM_TEST_SEED, by default 20240607.
std::uint64_t Seed();

class Random {
 public:
    explicit Random(std::uint64_t salt = 0) : m_engine(Seed() + salt) {}
    /// A double in [low, high).
    double Real(double low, double high) {
        return low + (high - low) * (static_cast<double>(m_engine() >> 11) * 0x1p-53);
    }
    /// An integer in [low, high].
    int Int(int low, int high) {
        return low + static_cast<int>(m_engine() % (static_cast<std::uint64_t>(high) - low + 1));
    }
    std::uint64_t Bits() { return m_engine(); }

 private:
    std::mt19937_64 m_engine;
};

}  // namespace zm::test

/// Names the seed in every failure of the scope.
#define ZM_TRACE_SEED() SCOPED_TRACE(testing::Message() << "ZM_TEST_SEED=" << zm::test::Seed())
