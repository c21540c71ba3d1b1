// Degrees and radians.
#pragma once

namespace zm::tool {

constexpr double kDegree = 3.141592653589793 / 180.0;  // radians

}  // namespace zm::tool
