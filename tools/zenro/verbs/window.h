// A window of the Qt module, opened for a verb.
#pragma once

#include <string>
#include <vector>

#include "tools/kit/qt_bridge.h"

namespace zm::tool {

struct Context;

/// Opens one of the module's windows and waits for its end. Throws Failure with what it ended for.
/// \param options  for the process that works for the window: without what concerns the window alone
void ShowInWindow(int (*ZenroQtBridge::*show)(const ZenroQtMap*, char*, std::size_t),
                  const std::vector<std::string>& inputs, const std::vector<std::string>& options,
                  const std::string& picture, const std::string& log, Context& context);

}  // namespace zm::tool
