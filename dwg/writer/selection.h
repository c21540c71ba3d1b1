// Layers, linetypes and text styles by name.
#pragma once

#include "dwg/writer/session.h"

namespace zm::dwg {

/// Makes a layer current and gives its record the current colour and linetype; adds it if it is not there. The name is
/// upper-cased in place.
void SelectLayer(Session& session, char* name);

/// Makes a linetype current; loads it from "ACAD.LIN" if it is not there. The name is upper-cased in place.
void SelectLinetype(Session& session, char* name);

}  // namespace zm::dwg
