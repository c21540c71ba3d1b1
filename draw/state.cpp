#include "draw/state.h"

#include <unordered_set>

#include "zenromath/runtime.h"

CTqDraw* TqDC = nullptr;

namespace zm::draw {
namespace {

std::unordered_set<const CTqDraw*>& Contexts() {
    static std::unordered_set<const CTqDraw*> contexts;
    return contexts;
}

}  // namespace

constinit State detail::theState;
constinit const CTqDraw* detail::theKnown = nullptr;

void ResetState() {
    state() = State{};
    TqDC = nullptr;
}

void AddContext(const CTqDraw* context) {
    Contexts().insert(context);
}

void ForgetContext(const CTqDraw* context) {
    Contexts().erase(context);
    if (detail::theKnown == context) detail::theKnown = nullptr;
}

CTqDraw* detail::FindWorkingContext() {
    if (TqDC == nullptr || Contexts().count(TqDC) == 0) return nullptr;
    theKnown = TqDC;
    return TqDC;
}

CTqDraw* detail::TellMissingContext(const char* caller) {
    _LErr(1, "no working drawing context", "draw", caller);
    return nullptr;
}

}  // namespace zm::draw
