// A drawing of one text of map data by one text of rules.
#pragma once

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/zenro/program.h"

namespace zm::test {

class DrawFixture : public testing::Test {
 protected:
    /// Draws a file of this name and content, at the scale that suits it unless more says otherwise; the recording is
    /// out.rec.
    Outcome DrawFile(const std::string& name, const std::string& bytes, const std::string& rules,
                     std::vector<std::string> more = {}) {
        m_zenro.File(name, bytes);
        m_zenro.File("r.rules", rules);
        std::vector<std::string> arguments = {"draw", name,      "--rules",     "./r.rules",
                                              "-o",   "out.rec", "--overwrite", "--no-frame"};
        arguments.insert(arguments.end(), more.begin(), more.end());
        return m_zenro.Run(arguments);
    }
    std::string Recording() const { return ReadFile(m_zenro / "out.rec"); }
    Program m_zenro;
};

/// GeoJSON in longitude and latitude of a system, by its EPSG number; 0 names none.
inline std::string InDegrees(const std::string& features, int epsg) {
    const std::string crs = epsg == 0 ? std::string()
                                      : "\"crs\":{\"type\":\"name\",\"properties\":{\"name\":\"urn:ogc:def:crs:EPSG::" +
                                            std::to_string(epsg) + "\"}},";
    return "{\"type\":\"FeatureCollection\",\"name\":\"things\"," + crs + "\"features\":[" + features + "]}";
}

}  // namespace zm::test
