#include "draw/state.h"

#include <utility>

#include "zenromath/runtime.h"

CTqDraw* TqDC = nullptr;

namespace zm::draw {

State& state() {
    static State s;
    return s;
}

void ResetState() {
    auto contexts = std::move(state().contexts);
    state() = State{};
    state().contexts = std::move(contexts);
    TqDC = nullptr;
}

CTqDraw* WorkingContext() {
    return TqDC != nullptr && state().contexts.count(TqDC) != 0 ? TqDC : nullptr;
}

CTqDraw* NeedWorkingContext(const char* caller) {
    CTqDraw* context = WorkingContext();
    if (context == nullptr) _LErr(1, "no working drawing context", "draw", caller);
    return context;
}

}  // namespace zm::draw
