#include "symbol/paper.h"

#include "draw/state.h"

namespace zm::symbol {

double ScaleDenominator() {
    return draw::state().paperScale;
}

}  // namespace zm::symbol
