// A polyline of a drawing with its vertices gathered, and the lines that it shows.
#pragma once

#include <vector>

#include "dwg/reader/record.h"

namespace zm::dwg::reader {

/// Flags of a POLYLINE.
constexpr int kClosedPolyline = 1, kSplineFitted = 4, kMesh = 16, kMeshClosedInN = 32, kFaces = 64;
/// Flags of a VERTEX.
constexpr int kFramePoint = 16, kFaceVertex = 128, kFacePoint = 64;

struct Polyline {
    Record head;
    std::vector<Record> vertices;
};

/// The lines of a polyline: one for a plain one, the rows and columns of a mesh, the edges of faces. Points are those of
/// the records; arcs are of chords of at most two degrees. The frame of a spline is left out unless asked for.
std::vector<std::vector<Point>> LinesOf(const Polyline& polyline, bool withFrame);

/// Points on an arc, its ends included. Angles in radians, counter-clockwise.
std::vector<Point> ArcPoints(const Point& centre, double radius, double from, double to);

}  // namespace zm::dwg::reader
