// What the parts of the demonstration town are made with: seeded chance, shapes, and the files they go to.
#pragma once

#include <cmath>
#include <cstdint>
#include <functional>
#include <map>
#include <random>
#include <string>
#include <utility>
#include <vector>

namespace zm::tool::demo {

struct Pt {
    double x, y;
};
using Line = std::vector<Pt>;

/// A value of a feature: a text or a number.
using Attributes = std::vector<std::pair<std::string, std::string>>;
std::string Quoted(const std::string& text);
std::string Number(double value, int decimals);

class Canvas {
 public:
    explicit Canvas(std::uint64_t seed) : m_engine(seed) {}

    double Real(double low, double high) {
        return low + (high - low) * (static_cast<double>(m_engine() >> 11) * 0x1p-53);
    }
    int Int(int low, int high) {
        return low + static_cast<int>(m_engine() % static_cast<std::uint64_t>(high - low + 1));
    }

    void Point(const std::string& file, const std::string& kind, Pt p, const Attributes& more = {});
    void Polyline(const std::string& file, const std::string& kind, const Line& line, const Attributes& more = {});
    void Area(const std::string& file, const std::string& kind, const Line& ring, const Attributes& more = {},
              const std::vector<Line>& holes = {});

    /// The GeoJSON text of each file.
    std::map<std::string, std::string> Documents() const;

    /// Ground that is taken: houses keep off it.
    void Reserve(const Line& ring) { m_reserved.push_back(ring); }
    bool IsFree(const Line& ring, double distance) const;

 private:
    void Add(const std::string& file, const std::string& kind, const std::string& geometry, const Attributes& more);

    std::mt19937_64 m_engine;
    std::map<std::string, std::vector<std::string>> m_features;
    std::vector<Line> m_reserved;
};

Line Rectangle(double x1, double y1, double x2, double y2);
/// A rectangle by its middle, its sides and its direction in degrees.
Line Turned(Pt middle, double length, double width, double degrees);
Line Moved(const Line& line, double dx, double dy);
bool Inside(const Line& ring, Pt p);
/// The line beside a line, to the left of its course.
Line Beside(const Line& line, double distance);
/// A line without what lies outside a rectangle; the pieces.
std::vector<Line> Clipped(const Line& line, double x1, double y1, double x2, double y2);

}  // namespace zm::tool::demo
