#include "tools/zenro/demo_data.h"

#include <algorithm>
#include <cmath>

#include "tools/zenro/demo_canvas.h"
#include "tools/zenro/demo_terrain.h"
#include "tools/zenro/demo_town.h"
#include "tools/zenro/output_file.h"

namespace zm::tool {

std::vector<std::string> WriteDemoData(const std::filesystem::path& folder, std::uint64_t seed, bool overwrite) {
    demo::Canvas canvas(seed);
    demo::AddTown(canvas);
    demo::AddCountry(canvas);
    demo::AddTerrain(canvas);
    std::vector<std::string> names;
    for (const auto& [name, text] : canvas.Documents()) {
        names.push_back(name + ".geojson");
        WriteOutput(folder / names.back(), overwrite, text);
    }
    return names;
}

}  // namespace zm::tool
