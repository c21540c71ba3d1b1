// Replaces the allocation functions of the whole program.
#include "tests/geometry/counted_memory.h"

#include <cstdlib>
#include <new>

namespace {

int allocations = 0;
bool memoryLacks = false;

void* Allocate(std::size_t size) noexcept {
    ++allocations;
    return memoryLacks ? nullptr : std::malloc(size != 0 ? size : 1);
}

}  // namespace

int zm::test::Allocations() {
    return allocations;
}
zm::test::WithoutMemory::WithoutMemory() {
    memoryLacks = true;
}
zm::test::WithoutMemory::~WithoutMemory() {
    memoryLacks = false;
}

void* operator new(std::size_t size) {
    if (void* memory = Allocate(size)) return memory;
    throw std::bad_alloc();
}
void* operator new[](std::size_t size) {
    return operator new(size);
}
void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
    return Allocate(size);
}
void* operator new[](std::size_t size, const std::nothrow_t&) noexcept {
    return Allocate(size);
}
void operator delete(void* memory) noexcept {
    std::free(memory);
}
void operator delete[](void* memory) noexcept {
    std::free(memory);
}
void operator delete(void* memory, std::size_t) noexcept {
    std::free(memory);
}
void operator delete[](void* memory, std::size_t) noexcept {
    std::free(memory);
}
