// Descriptions of fonts with their face names in GBK, and as the system has them.
#pragma once

#include "zenromath/platform.h"

namespace zm::win32 {

LOGFONTW WideFont(const LOGFONTA& font);
LOGFONTA GbkFont(const LOGFONTW& font);

}  // namespace zm::win32
