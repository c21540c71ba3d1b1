// A clip polygon of many vertices is asked by its index, one of few by its edges.
#include "runtime/uses.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <iterator>
#include <vector>

#include "tests/draw/fixture.h"
#include "zenromath/draw.h"

namespace {

using namespace zm::uses;

class Uses : public zm::test::DrawTest {
 protected:
    // A ring of radius 100 about (1000, 1000).
    void SetRing(int vertices, double stretch = 1.0) {
        std::vector<double> x, y;
        for (int i = 0; i < vertices; ++i) {
            const double angle = 6.283185307179586 * i / vertices;
            x.push_back((1000.0 + 100.0 * std::cos(angle)) * stretch);
            y.push_back((1000.0 + 100.0 * std::sin(angle)) * stretch);
        }
        m_area.setcutarea(vertices, x.data(), y.data());
        std::fill(std::begin(counts), std::end(counts), 0);
    }
    // 400 points and as many segments about the ring.
    void Ask(double stretch = 1.0) {
        for (int i = 0; i < 400; ++i) {
            const double x = (900.3 + i % 20 * 9.7) * stretch, y = (901.1 + i / 20 * 9.6) * stretch;
            m_area.cutpoint(x, y);
            double x1 = x, y1 = y, x2 = x + 40.0 * stretch, y2 = y + 33.0 * stretch;
            m_area.cutline(x1, y1, x2, y2);
        }
    }
    CCutArea m_area{1};
};

TEST_F(Uses, ARingOfManyVerticesIsAskedByItsIndex) {
    SetRing(500);
    Ask();
    EXPECT_GE(counts[pointByIndex], 400u);
    EXPECT_LE(counts[pointByEdges], counts[pointByIndex] / 50);
    EXPECT_EQ(counts[segmentByIndex], 400u);
    EXPECT_EQ(counts[segmentByEdges], 0u);
}

TEST_F(Uses, ARingOfFewVerticesAndOneFarOutHaveNoIndex) {
    SetRing(23);
    Ask();
    EXPECT_EQ(counts[pointByIndex] + counts[segmentByIndex], 0u);
    EXPECT_GE(counts[pointByEdges], 400u);
    EXPECT_EQ(counts[segmentByEdges], 400u);
    SetRing(500, 1e5);  // 1e8 m
    Ask(1e5);
    EXPECT_EQ(counts[pointByIndex] + counts[segmentByIndex], 0u);
}

TEST_F(Uses, APointAtNearlyTheHeightOfAVertexAndASegmentFromFarAreAskedByTheEdges) {
    SetRing(500);
    m_area.cutpoint(1000.0, 1000.0 + 1e-7);  // a vertex is at 1000
    EXPECT_EQ(counts[pointByIndex], 0u);
    EXPECT_EQ(counts[pointByEdges], 1u);
    double x1 = 1e6, y1 = 1e6, x2 = 1000.0, y2 = 1000.0;
    m_area.cutline(x1, y1, x2, y2);
    EXPECT_EQ(counts[segmentByIndex], 1u);
    x1 = 6e7, y1 = 1000.5, x2 = 1000.0, y2 = 1000.5;
    m_area.cutline(x1, y1, x2, y2);
    EXPECT_EQ(counts[segmentByIndex], 1u);
    EXPECT_EQ(counts[segmentByEdges], 1u);
}

}  // namespace
