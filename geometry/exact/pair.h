// Two doubles that are worked on at a time, x and y of a point: the vectors of the compiler, which every processor has
// or the compiler replaces.
#pragma once

#include <cstdint>

namespace zm::geometry {

typedef double Pair __attribute__((vector_size(16)));
typedef float FloatPair __attribute__((vector_size(8)));
typedef int IntPair __attribute__((vector_size(8)));
typedef std::int64_t PairMask __attribute__((vector_size(16)));  // of a comparison: all bits set where it holds

constexpr PairMask kBoth = {-1, -1};

/// x and y, and y and x: the sum twice.
inline Pair SumOfBoth(Pair pair) {
    return pair + Pair{pair[1], pair[0]};
}

/// Whether a comparison holds for both.
inline bool Both(PairMask mask) {
    return (mask[0] & mask[1]) != 0;
}

}  // namespace zm::geometry
