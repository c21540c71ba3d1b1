// What geometry remembers between calls.
#pragma once

#include <cstddef>

class Find4H;

namespace zm::geometry {

/// Memory that a call leaves allocated for the next one.
struct Scratch {
    double* values = nullptr;
    std::size_t size = 0;
};

struct State {
    double mini = 1e-08;               // the tolerance MINI; SetMINI
    Find4H* currentHeights = nullptr;  // the height table made last; Find4H
    bool armed = false;                // does _LDBsyncelev ask it?
    Scratch straightened;              // pairs of the form of MulArc2Straight with two output arrays
};

namespace detail {
extern State theState;
}

/// The one instance. Inline, since the tolerance is read in the innermost functions.
inline State& state() {
    return detail::theState;
}

/// Sets every remembered value of this folder back to its start value.
void ResetState();

}  // namespace zm::geometry
