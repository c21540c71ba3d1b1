// The pens of the layers that codes are in, for pictures of symbols by themselves.
#pragma once

#include <string>
#include <vector>

#include "tools/symbols/symbols.h"

namespace zm::tool {

/// Width and colour by code, 0 to 999, as the layers of a project have them. The project and its layers are the
/// library's from now on; empty: the default project.
std::vector<symbols::SheetOptions::Look> LooksOfLayers(const std::string& project);

}  // namespace zm::tool
