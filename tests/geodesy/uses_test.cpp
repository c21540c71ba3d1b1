// Lists are projected in blocks, and footpoints found by the expansion, but where these do not hold.
#include "runtime/uses.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <functional>
#include <iterator>
#include <vector>

#include "zenromath/geodesy.h"

namespace {

using namespace zm::uses;

constexpr double kDegree = 3.141592653589793 / 180.0;
constexpr int kIag = 80;

class Uses : public testing::Test {
 protected:
    // 300 positions of a country; the last two are none of this world.
    Uses() : m_B(302), m_l(302), m_x(302), m_y(302), m_out(302), m_other(302) {
        for (std::size_t i = 0; i < 300; ++i) {
            m_B[i] = (20.0 + 0.1 * static_cast<double>(i)) * kDegree;
            m_l[i] = (static_cast<double>(i % 7) - 3.0) * 0.5 * kDegree;
        }
        m_B[300] = 1e9;
        m_B[301] = HUGE_VAL;
        zm::ForwardArray(kIag, 300, m_B.data(), m_l.data(), m_x.data(), m_y.data(), nullptr);
        m_x[300] = 1e18;
        m_x[301] = HUGE_VAL;
        Clear();
    }
    static void Clear() { std::fill(std::begin(counts), std::end(counts), 0); }
    // What was counted since, after a list of 300 positions and of these with the two.
    void ExpectBlocks(const std::function<void(std::size_t)>& project) {
        Clear();
        project(300);
        EXPECT_EQ(counts[listInBlock], 300u);
        EXPECT_EQ(counts[listAlone], 0u);
        Clear();
        project(302);
        EXPECT_EQ(counts[listInBlock], 300u);
        EXPECT_EQ(counts[listAlone], 2u);
    }

    std::vector<double> m_B, m_l, m_x, m_y, m_out, m_other;
};

TEST_F(Uses, ListsAreProjectedInBlocks) {
    double* out = m_out.data();
    double* other = m_other.data();
    ExpectBlocks([&](std::size_t n) { zm::ForwardArray(kIag, n, m_B.data(), m_l.data(), out, other, nullptr); });
    ExpectBlocks([&](std::size_t n) { zm::BackwardArray(kIag, n, m_x.data(), m_y.data(), out, other, nullptr); });
    ExpectBlocks([&](std::size_t n) { zm::InverseOfForwardArray(kIag, n, m_x.data(), m_y.data(), out, other); });
    ExpectBlocks([&](std::size_t n) { zm::UTMtoGSArray(znCoord80, 0, n, m_B.data(), m_l.data(), out, other); });
    ExpectBlocks([&](std::size_t n) { zm::GStoUTMArray(znCoord80, 0, n, m_x.data(), m_y.data(), out, other); });
}

TEST_F(Uses, AFootpointIsExpandedButBesideTheEquatorAndFarOff) {
    double B = 0.0, l = 0.0;
    for (std::size_t i = 0; i < 300; ++i) backward(kIag, m_x[i], m_y[i], &B, &l, nullptr);
    EXPECT_EQ(counts[footQuick], 300u);
    EXPECT_EQ(counts[footIterated], 0u);
    for (const double x : {0.0, 1e-6, -1e-6, 1e18}) backward(kIag, x, 1000.0, &B, &l, nullptr);
    EXPECT_EQ(counts[footQuick], 300u);
    EXPECT_EQ(counts[footIterated], 4u);
}

}  // namespace
