// Counts what is allocated in this program, and refuses it on demand.
#pragma once

#include <cstddef>

namespace zm::test {

/// Allocations since the start of the program.
std::size_t Allocations();

/// While it lives, allocations of at least size bytes fail.
class NoMemory {
 public:
    explicit NoMemory(std::size_t size = 0);
    ~NoMemory();
    NoMemory(const NoMemory&) = delete;
    NoMemory& operator=(const NoMemory&) = delete;
};

}  // namespace zm::test
