// Options of map data that several verbs have.
#pragma once

#include "tools/zenro/map/plane.h"
#include "tools/zenro/map/selection.h"
#include "tools/zenro/verbs/verbs.h"

namespace zm::tool {

void AddPlaneOptions(Verb verb, PlaneOptions& plane);
void AddSelectionOptions(Verb verb, Selection& selection);

}  // namespace zm::tool
