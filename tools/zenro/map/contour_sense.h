// Which way a slope rises, by the contours and heights around.
#pragma once

#include <cstdint>
#include <unordered_map>
#include <vector>

#include "tools/zenro/map/page.h"

namespace zm::tool {

/// Whether a rule draws contours of any kind.
bool IsContour(const Rule& rule);
/// Scarps, slopes and cliffs, whose teeth lie on the lower side.
bool IsScarp(const Rule& rule);

class ContourSense {
 public:
    explicit ContourSense(const Page& page) : m_cell(page.Ground(8.0)) {}
    /// A contour, or a spot height as a chain of one point.
    void Add(const Chain& chain, double height);
    /// The side on which the ground rises at a point of a contour with a direction in radians: 1 left, -1 right,
    /// 0 unknown.
    int Uphill(double x, double y, double direction, double height) const;
    /// The side of a whole line on which the ground is higher, such as the top of a scarp; 0 where most of it does not
    /// tell clearly.
    int UpperSide(const Chain& chain) const;

 private:
    struct Known {
        double x, y, height;
    };
    void Add(double x, double y, double height);
    /// The direction in which the ground rises about a point, by the plane that fits best; false if unknown.
    bool Rise(double x, double y, double& gx, double& gy) const;

    double m_cell;
    std::unordered_map<std::uint64_t, std::vector<Known>> m_known;
};

}  // namespace zm::tool
