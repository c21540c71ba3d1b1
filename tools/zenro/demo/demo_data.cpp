#include "tools/zenro/demo/demo_data.h"

#include <algorithm>
#include <cmath>

#include "tools/kit/output_file.h"
#include "tools/zenro/demo/demo_canvas.h"
#include "tools/zenro/demo/demo_terrain.h"
#include "tools/zenro/demo/demo_town.h"

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
