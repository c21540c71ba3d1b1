// The memory of this test program: how often it was asked for, and a scope in which there is none.
#pragma once

namespace zm::test {

/// How many times memory was asked for since the program began.
int Allocations();

class [[nodiscard]] WithoutMemory {
 public:
    WithoutMemory();
    ~WithoutMemory();
    WithoutMemory(const WithoutMemory&) = delete;
    WithoutMemory& operator=(const WithoutMemory&) = delete;
};

}  // namespace zm::test
