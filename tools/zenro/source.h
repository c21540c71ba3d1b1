// Features from anything GDAL/OGR reads, taken to the plane and matched with the rules.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "tools/zenro/plane.h"
#include "tools/zenro/rules.h"

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
};

struct Feature {
    std::string where;  // "roads.geojson: roads: feature 12", for reports
    std::vector<Shape> shapes;
    std::vector<Use> uses;  // the rules that fit, in the order of the file; kinds are still to be asked
};

struct SourceOptions {
    std::vector<std::string> inputs;
    std::string encoding;    // of attributes, where the data does not tell or tells wrong
    char replacement = '?';  // for characters that GBK lacks
    PlaneOptions plane;
};

/// A box in the plane.
struct Box {
    double x1 = 1e300, y1 = 1e300, x2 = -1e300, y2 = -1e300;
    bool empty() const { return x1 > x2; }
    void Add(double x, double y);
    bool Meets(const Box& other) const;
};
Box BoxOf(const Chain& chain);

/// All inputs of a drawing.
class Source {
 public:
    /// Opens the inputs. Throws Failure (kNoInput) where one cannot be read, kUsage where a rule does not fit the data.
    Source(const SourceOptions& options, const Rules& rules, double scale, Report& report);
    ~Source();
    const TargetPlane& plane() const;
    /// The box of all data in the plane, by the layers' own extents; empty where there is none.
    const Box& box() const { return m_box; }
    /// The number of features, -1 where the data does not tell it cheaply.
    long long count() const { return m_count; }

    /// Calls work for each feature that a rule draws. Features are read and prepared once and kept as long as they
    /// are few; beyond that they are read anew at each call, so memory does not grow with the data.
    void ForEach(const std::function<void(const Feature&)>& work);
    /// The outer ring of the first area in a file, in the plane and open, for --clip.
    Chain ReadClipArea(const std::string& file);

 private:
    struct Layer;
    struct State;
    void Open(const std::string& input);
    void ReadAll(const std::function<void(const Feature&)>& work);
    bool Prepare(Layer& layer, void* feature, Feature& prepared);

    SourceOptions m_options;
    const Rules& m_rules;
    Report& m_report;
    std::unique_ptr<State> m_state;
    Box m_box;
    long long m_count = 0;
};

}  // namespace zm::tool
