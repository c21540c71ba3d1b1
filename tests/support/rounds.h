// How often tests that are left to chance go round.
#pragma once

#include <cstdlib>
#include <string>

namespace zm::test {

/// ZM_KILL_ROUNDS, which the nightly script sets; else so many.
inline int KillRounds(int usual) {
    const char* named = std::getenv("ZM_KILL_ROUNDS");
    return named != nullptr ? std::stoi(named) : usual;
}

}  // namespace zm::test
