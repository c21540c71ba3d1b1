// What the window of the map and the process that draws it share: two pictures, and the number of the one that is
// wanted. The file behind the memory is made by the window and handed down open.
#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>

namespace zm::tool {

struct SharedHead {
    std::atomic<std::uint32_t> wanted;  // the number of the picture that is wanted; drawing of another one stops
    std::atomic<std::uint32_t> beat;    // counts features that were begun
    std::atomic<std::uint64_t> place;   // of the feature being drawn, kNoPlace between
    std::atomic<std::uint32_t>
        steps;  // of the process that keeps the map: counts what it begins, and long work's parts
};
static_assert(std::atomic<std::uint64_t>::is_always_lock_free);

constexpr std::uint64_t kNoPlace = ~std::uint64_t{0};
constexpr std::size_t kPixelsAt = 4096;                                // bytes of the head
constexpr std::size_t kMostPixels = std::size_t{40} << 20;             // of one picture
constexpr std::size_t kSharedBytes = kPixelsAt + 2 * 4 * kMostPixels;  // of which only what is used takes memory

/// The pixels of picture 0 or 1.
inline std::uint32_t* PixelsOf(void* shared, int slot) {
    return reinterpret_cast<std::uint32_t*>(static_cast<char*>(shared) + kPixelsAt) +
           static_cast<std::size_t>(slot) * kMostPixels;
}

}  // namespace zm::tool
