// A window, of a map or of symbols, from its opening to its end.
#pragma once

#include <string>

#include "tools/kit/qt_bridge.h"

namespace zm::view {

/// Shows a map in a window until it is closed. \return the exit status of the program, with the reason where it is not 0
int ShowMap(const ZenroQtMap& map, std::string& reason);
/// The same for a symbol library.
int ShowSymbols(const ZenroQtMap& library, std::string& reason);

}  // namespace zm::view
