// Numbers by their bits, for comparisons that allow no rounding.
#pragma once

#include <bit>
#include <cmath>
#include <cstdint>

namespace zm::test {

/// The same for all that is not a number, and for both zeros.
inline std::uint64_t Bits(double v) {
    return std::isnan(v) ? 0 : std::bit_cast<std::uint64_t>(v + 0.0);
}

}  // namespace zm::test
