#include "geometry/state.h"

namespace zm::geometry {

State detail::theState;

void ResetState() {
    delete[] state().straightened.values;
    state() = State{};
}

}  // namespace zm::geometry
