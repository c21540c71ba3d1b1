#include "draw/state.h"

#include <algorithm>
#include <utility>

#include "zenromath/runtime.h"

CTqDraw* TqDC = nullptr;

namespace zm::draw {

constinit State detail::theState;

void ResetState() {
    State fresh;
    fresh.contexts = std::move(state().contexts);
    state() = std::move(fresh);
    TqDC = nullptr;
}

void AddContext(const CTqDraw* context) {
    state().contexts.push_back(context);
}

void ForgetContext(const CTqDraw* context) {
    State& now = state();
    std::erase(now.contexts, context);
    if (now.known == context) now.known = nullptr;
}

CTqDraw* detail::FindWorkingContext() {
    const auto& contexts = state().contexts;
    if (TqDC == nullptr || std::find(contexts.begin(), contexts.end(), TqDC) == contexts.end()) return nullptr;
    state().known = TqDC;
    return TqDC;
}

CTqDraw* detail::TellMissingContext(const char* caller) {
    _LErr(1, "no working drawing context", "draw", caller);
    return nullptr;
}

}  // namespace zm::draw
