// A drawing file in the window.
#pragma once

#include "tools/zenro/view/shown_map.h"

namespace zm::tool {

/// Reads a drawing of version 1006 or 1009. What of it is damaged is reported. Throws Failure.
std::unique_ptr<ShownMap> OpenDrawingMap(const std::string& file, Context& context);

}  // namespace zm::tool
