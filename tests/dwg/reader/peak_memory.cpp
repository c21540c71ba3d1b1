// Replaces the allocation functions of the whole program.
#include "tests/dwg/reader/peak_memory.h"

#include <malloc.h>

#include <algorithm>
#include <cstdlib>
#include <new>

namespace {

#ifdef _WIN32
std::size_t SizeOf(void* memory) {
    return _msize(memory);
}
#else
std::size_t SizeOf(void* memory) {
    return malloc_usable_size(memory);
}
#endif

std::size_t held = 0, most = 0, marked = 0;

void* Allocate(std::size_t size) {
    void* memory = std::malloc(size != 0 ? size : 1);
    if (memory == nullptr) return nullptr;
    held += SizeOf(memory);
    most = std::max(most, held);
    return memory;
}

void Free(void* memory) {
    if (memory != nullptr) held -= SizeOf(memory);
    std::free(memory);
}

}  // namespace

void zm::test::MarkMemory() {
    most = marked = held;
}
std::size_t zm::test::PeakSinceMark() {
    return most - marked;
}

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
    Free(memory);
}
void operator delete(void* memory, std::size_t) noexcept {
    Free(memory);
}
void operator delete[](void* memory) noexcept {
    Free(memory);
}
void operator delete[](void* memory, std::size_t) noexcept {
    Free(memory);
}
