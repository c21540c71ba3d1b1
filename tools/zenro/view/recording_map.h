// A recording in the window.
#pragma once

#include "tools/zenro/view/shown_map.h"

namespace zm::tool {

/// Reads a recording; its pens, layers and fonts are those of the job's project and note classes. Throws Failure.
std::unique_ptr<ShownMap> OpenRecordingMap(const std::string& file, const DrawJob& job, Context& context);

}  // namespace zm::tool
