#include "tools/zenro/map/layer_looks.h"

#include "tools/zenro/map/codes.h"
#include "tools/zenro/map/drawing_look.h"
#include "tools/zenro/map/library_session.h"
#include "zenromath/config.h"

namespace zm::tool {

std::vector<symbols::SheetOptions::Look> LooksOfLayers(const std::string& project) {
    NameProject(project);
    ReadLayers();
    std::vector<symbols::SheetOptions::Look> looks;
    looks.reserve(kCodes);
    for (int code = 0; code < kCodes; ++code)
        looks.push_back({GetPenWidth(code) * 0.01, PaletteColour(GetColorNo1(code))});
    return looks;
}

}  // namespace zm::tool
