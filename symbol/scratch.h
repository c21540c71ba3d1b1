// Work arrays that are kept between calls, so that drawing a symbol allocates nothing.
#pragma once

#include <cstddef>
#include <memory>
#include <utility>
#include <vector>

namespace zm::symbol {

class ScratchPool {
 public:
    struct Block {
        std::unique_ptr<double[]> values;
        std::size_t size = 0;
    };
    /// A block of at least size values, taken out of the pool; empty if no memory can be had.
    Block Take(std::size_t size) noexcept;
    void GiveBack(Block block) noexcept;

 private:
    // As many as one call ever has at a time; further ones, of a call that came in during a message, are freed.
    static constexpr std::size_t kKept = 8;
    static constexpr std::size_t kLargest = std::size_t{1} << 20;  // larger blocks go back to the system at once
    Block m_free[kKept];
    std::size_t m_count = 0;
};

/// One work array of a call. It is the caller's own until the end of its scope, also where a message lets another call
/// in meanwhile.
class Scratch {
 public:
    explicit Scratch(std::size_t size);
    ~Scratch();
    Scratch(const Scratch&) = delete;
    Scratch& operator=(const Scratch&) = delete;
    /// Null if no memory can be had.
    double* data() const { return m_block.values.get(); }

 private:
    ScratchPool::Block m_block;
};

}  // namespace zm::symbol
