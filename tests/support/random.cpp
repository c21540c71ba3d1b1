#include "tests/support/random.h"

#include <cstdlib>

std::uint64_t zm::test::Seed() {
    const char* text = std::getenv("ZM_TEST_SEED");
    return text != nullptr && *text != '\0' ? std::strtoull(text, nullptr, 10) : 20240607u;
}
