// A sheet of 100 m square at 1:1000, drawn to a recording.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "tests/support/recorded_numbers.h"
#include "tests/zenro/program.h"

namespace zm::test {

class SheetFixture : public testing::Test {
 protected:
    std::string Recording(const std::string& features, const std::string& rules,
                          std::vector<std::string> more = {"--no-frame"}) {
        m_zenro.File("in.geojson", Collection(features));
        m_zenro.File("r.rules", rules);
        std::vector<std::string> arguments = {"draw", "in.geojson", "--rules", "./r.rules",  "--scale",
                                              "1000", "-o",         "a.rec",   "--overwrite"};
        if (std::find(more.begin(), more.end(), "--sheet") == more.end())
            arguments.insert(arguments.end(), {"--sheet", "40512000,3456000,40512100,3456100"});
        arguments.insert(arguments.end(), more.begin(), more.end());
        m_last = m_zenro.Run(arguments);
        return ReadFile(m_zenro / "a.rec");
    }
    /// The strokes, metres from the lower left corner: x1, y1, x2, y2.
    static std::vector<std::vector<double>> Strokes(const std::string& rec) {
        std::vector<std::vector<double>> strokes;
        std::istringstream lines(rec);
        for (std::string line; std::getline(lines, line);) {
            const std::vector<double> n = NumbersOf(line, "Line2");
            if (n.size() != 4) continue;
            strokes.push_back({n[0] - 40512000, n[1] - 3456000, n[2] - 40512000, n[3] - 3456000});
        }
        return strokes;
    }
    Program m_zenro;
    Outcome m_last;
};

/// Metres from the lower left corner as coordinates of GeoJSON.
inline std::string Points(const std::vector<std::pair<double, double>>& points) {
    std::ostringstream text;
    text.imbue(std::locale::classic());
    text.precision(12);
    const char* comma = "";
    for (const auto& [x, y] : points) {
        text << comma << "[" << 40512000 + x << "," << 3456000 + y << "]";
        comma = ",";
    }
    return text.str();
}

inline std::string LineThrough(const std::vector<std::pair<double, double>>& points, const std::string& properties) {
    return LineFeature(Points(points), properties);
}

inline std::string AreaWithin(const std::vector<std::pair<double, double>>& ring, const std::string& properties) {
    return AreaFeature("[" + Points(ring) + "]", properties);
}

inline std::string LevelLine(double x1, double x2, double y, const std::string& properties) {
    return LineThrough({{x1, y}, {x2, y}}, properties);
}

}  // namespace zm::test
