// Features as they are drawn: their parts in the plane, and the rules that fit them.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "tools/zenro/map/rules.h"

namespace zm::tool {

/// A chain of points, or the points of a ring whose last point equals its first.
struct Chain {
    std::vector<double> x, y;
    std::size_t size() const { return x.size(); }
};

/// One part of a feature: a point, a line, or an area by its outer ring and its holes.
struct Shape {
    GeometryKind kind = GeometryKind::point;
    std::vector<Chain> chains;
};

/// How one rule draws a feature.
struct Use {
    const Rule* rule = nullptr;
    std::string label, under;  // GBK
    double angle = 0.0;        // radians, counter-clockwise from east
    double height = 0.0;
    bool hasHeight = false;
    std::string slope;       // what a crest and its foot have in common; empty: neither
    double roadWidth = 0.0;  // ground metres; 0: no road by its middle line
    int storey = 0;          // 0 on the ground, above it on bridges, below it in tunnels
};

struct Feature {
    std::string where;  // "roads.geojson: roads: feature 12", for reports
    std::vector<Shape> shapes;
    std::vector<Use> uses;  // the rules that fit, in the order of the file; kinds are still to be asked
};

/// A box in the plane.
struct Box {
    double x1 = 1e300, y1 = 1e300, x2 = -1e300, y2 = -1e300;
    bool empty() const { return x1 > x2; }
    void Add(double x, double y);
    void Add(const Box& other);
    bool Meets(const Box& other) const;
    /// The box with so much more on each side.
    Box Widened(double by) const;
};
Box BoxOf(const Chain& chain);

/// True if a shape and a box share a point: not by their boxes alone. A shape with coordinates that are no numbers
/// shares none.
bool Touches(const Shape& shape, const Box& box);

/// The rules that fit a shape of a kind, in their order, up to the first that does not say "also".
std::vector<const Use*> UsesOf(const Feature& feature, GeometryKind kind);

}  // namespace zm::tool
