// Codes of features and of symbols.
#pragma once

namespace zm::tool {

inline constexpr int kCodes = 1000;  // codes are 1 to 999

}  // namespace zm::tool
