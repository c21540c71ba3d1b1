// A surface of triangles through points of known height, with break lines kept as edges, and its contours.
#pragma once

#include <array>
#include <vector>

namespace zm::tool {

struct TerrainPoint {
    double x, y, z;
};
/// A line along which the surface bends: ridge, scarp, bank, kerb.
using BreakLine = std::vector<TerrainPoint>;

struct Terrain {
    std::vector<TerrainPoint> points;
    std::vector<std::array<int, 3>> triangles;
    long duplicates = 0;  // points that lie where another one does; the first counts
    long added = 0;       // points added on break lines so that all of them are edges
};

/// Triangulates (Delaunay). A break line that is no edge yet gets points in its middles until it is one.
/// Throws Failure (kFailed) where fewer than three points that are not in one line are given, or where a break line
/// cannot be kept, as two that cross at different heights.
Terrain Triangulate(const std::vector<TerrainPoint>& points, const std::vector<BreakLine>& breakLines);

struct ContourLine {
    double height;
    bool index;  // every fifth, counted from zero height
    std::vector<double> x, y;
};

/// The contours of a terrain at whole multiples of an interval, lines joined; closed ones end where they begin. The
/// higher ground lies to the right of their course.
std::vector<ContourLine> ContoursOf(const Terrain& terrain, double interval);

}  // namespace zm::tool
