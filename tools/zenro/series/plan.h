// A plan of sheets: a GeoPackage with one row a sheet, that QGIS reads, and the settings of the series.
#pragma once

#include <array>
#include <map>
#include <string>
#include <vector>

#include "tools/zenro/store/feature.h"

namespace zm::tool {

/// What has become of a sheet.
enum class SheetState { due, done, partly, empty, failed };
const char* NameOf(SheetState state);
/// False for a name that is none.
bool ReadState(const std::string& name, SheetState& state);

struct PlanSheet {
    std::string number, name;
    Chain outline;  // closed; longitude and latitude, in a plane of no known system its own coordinates
    Box box;        // in the plane; of a corner number
    std::array<std::string, 8> neighbours;  // NW, N, NE, W, E, SW, S, SE; of the plan's sheets or beyond
    long long features = 0;                 // by the index, some
    double cost = 0.0;                      // seconds, estimated
    SheetState state = SheetState::due;
    std::string reason;  // of a failure, or what was left out
    double seconds = 0.0;
    long long warnings = 0;
    std::string input;  // hash of what the drawing followed from
    std::string files;  // JSON: [{"path", "bytes", "sha256"}]
    long long run = 0;  // the run that gave the state; 0: none yet
    std::string node;   // where it was drawn
};

struct Plan {
    std::vector<PlanSheet> sheets;                // along a curve, so that neighbours are near in the list
    std::map<std::string, std::string> settings;  // of the series: the draw options and where they hold
};

/// Writes a plan whole, under a temporary name first. Throws Failure (kNoOutput).
void WritePlan(const std::string& path, const Plan& plan, bool overwrite);
/// Throws Failure (kNoInput) for what is no plan, is damaged or has numbers twice.
Plan ReadPlan(const std::string& path);

}  // namespace zm::tool
