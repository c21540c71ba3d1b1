#include "tests/symbol/allocation.h"

#include <atomic>
#include <cstdint>
#include <cstdlib>
#include <new>

namespace {

std::atomic<std::size_t> g_count{0};
std::atomic<std::size_t> g_refused{SIZE_MAX};

void* Allocate(std::size_t size) {
    ++g_count;
    if (size >= g_refused) return nullptr;
    return std::malloc(size != 0 ? size : 1);
}

}  // namespace

// The array and nothrow forms of the library come down to these.
void* operator new(std::size_t size) {
    if (void* memory = Allocate(size)) return memory;
    throw std::bad_alloc();
}
void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
    return Allocate(size);
}
void* operator new[](std::size_t size) {
    return operator new(size);
}
void* operator new[](std::size_t size, const std::nothrow_t&) noexcept {
    return Allocate(size);
}
void operator delete(void* memory) noexcept {
    std::free(memory);
}
void operator delete(void* memory, std::size_t) noexcept {
    std::free(memory);
}
void operator delete[](void* memory) noexcept {
    std::free(memory);
}
void operator delete[](void* memory, std::size_t) noexcept {
    std::free(memory);
}

std::size_t zm::test::Allocations() {
    return g_count;
}

zm::test::NoMemory::NoMemory(std::size_t size) {
    g_refused = size;
}

zm::test::NoMemory::~NoMemory() {
    g_refused = SIZE_MAX;
}
