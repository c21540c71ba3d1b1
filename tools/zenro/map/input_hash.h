// The hash by which a series knows that a sheet need not be drawn again.
#pragma once

#include <string>
#include <string_view>

#include "tools/zenro/map/draw_job.h"
#include "tools/zenro/map/page.h"
#include "tools/zenro/store/feature_store.h"

namespace zm::tool {

/// The hash of all that a drawing follows from: the features that the sheet needs, rules, symbols, notes, project,
/// blocks, page, options and the version of the program.
std::string HashOfInput(const DrawJob& job, const Rules& rules, const Page& page, FeatureStore& store,
                        std::string_view version);

}  // namespace zm::tool
