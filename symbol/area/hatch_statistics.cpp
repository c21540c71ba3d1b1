#include "symbol/area/hatch_statistics.h"

#include "symbol/state.h"

namespace zm::symbol {

const HatchCuts& CurrentHatchCuts() {
    return state().hatchCuts;
}

void ResetHatchCuts() {
    state().hatchCuts = HatchCuts{};
}

}  // namespace zm::symbol
