// Real drawings of versions 1006 and 1009, which are no part of the project: the environment variable ZM_DRAWINGS names
// their folder, else it is looked for beside the source tree. Each has a list of what stands in it.
#pragma once

#include <filesystem>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

namespace zm::test {

struct RealDrawing {
    std::string name;  // of the file, without folder and extension
    std::filesystem::path path;
    std::vector<std::uint8_t> bytes;
    std::vector<nlohmann::json> list;  // header, tables, entities, in the order of the file

    /// The lines of the list that are of a kind ("layer", "entity" ...).
    std::vector<nlohmann::json> Of(const std::string& record) const;
};

/// Where the drawings are; empty where there are none.
std::filesystem::path RealDrawingsFolder();
/// All of them, by name; none where the folder is missing.
const std::vector<RealDrawing>& RealDrawings();

}  // namespace zm::test

/// At the begin of a test that needs the real drawings: skips it loudly where there are none.
#define ZM_NEED_REAL_DRAWINGS()           \
    if (zm::test::RealDrawings().empty()) \
    GTEST_SKIP() << "no real drawings: set ZM_DRAWINGS to the folder that holds them and their lists in expected/"
