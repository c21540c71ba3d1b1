#include "symbol/scratch.h"

#include <new>

#include "symbol/state.h"

namespace zm::symbol {

ScratchPool::Block ScratchPool::Take(std::size_t size) noexcept {
    Block block;
    for (std::size_t i = 0; i < m_count; ++i)
        if (m_free[i].size >= size) {
            block = std::move(m_free[i]);
            m_free[i] = std::move(m_free[--m_count]);
            return block;
        }
    block.values.reset(new (std::nothrow) double[size]);
    block.size = block.values != nullptr ? size : 0;
    return block;
}

void ScratchPool::GiveBack(Block block) noexcept {
    if (block.values == nullptr || block.size > kLargest) return;
    if (m_count < kKept) {
        m_free[m_count++] = std::move(block);
        return;
    }
    for (Block& kept : m_free)
        if (kept.size < block.size) std::swap(kept, block);
}

Scratch::Scratch(std::size_t size) : m_block(state().scratch.Take(size)) {}

Scratch::~Scratch() {
    state().scratch.GiveBack(std::move(m_block));
}

}  // namespace zm::symbol
