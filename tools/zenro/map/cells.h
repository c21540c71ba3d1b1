// Square cells of the plane, by whose keys things are found that lie near each other.
#pragma once

#include <algorithm>
#include <cmath>
#include <cstdint>

namespace zm::tool {

/// The column or row of a place, both in metres. Places beyond sense are in the last cells, NaN is in the first.
inline long long CellOf(double place, double cell) {
    constexpr double kFarthest = 1e15;
    const double number = std::floor(place / cell);
    return static_cast<long long>(number > -kFarthest ? std::min(number, kFarthest) : -kFarthest);
}

/// Cells 2^32 columns or rows apart share a key.
inline std::uint64_t KeyOfCell(long long column, long long row) {
    return static_cast<std::uint64_t>(column) << 32 ^ (static_cast<std::uint64_t>(row) & 0xFFFFFFFFU);
}

}  // namespace zm::tool
