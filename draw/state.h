// What draw remembers between calls, one copy for all contexts.
#pragma once

#include <vector>

#include "zenromath/draw.h"

namespace zm::draw {

struct State {
    double paperScale = 1000.0;  // map scale denominator; setgscale, getcurgscale
    int charHeightLimit = 0;     // device pixels, 0 is no limit; _SetHdcCharHLimit
    double initialAngle = 0.0;   // degrees; SetInitRotateAngle
    LOGFONTA currentFont{};      // the last font description, its width halved; textout draws double-byte text with it
    COLORREF lastPenColor = 0;   // the last real colour given to a CTQPen
    int firstCharacter = 1;      // written into the "Text:" command

    std::vector<const CTqDraw*> contexts;  // those that exist; TqDC may be none of them
    const CTqDraw* known = nullptr;        // the one found last, as each symbol asks for it
};

namespace detail {
extern State theState;
CTqDraw* FindWorkingContext();
}  // namespace detail

/// The one instance. Inline, since every symbol placed asks for the scale.
inline State& state() {
    return detail::theState;
}

/// Sets every remembered value of this folder back to its start value, and TqDC to null. Contexts that exist stay.
void ResetState();

/// At the birth and the end of a context.
void AddContext(const CTqDraw* context);
void ForgetContext(const CTqDraw* context);

/// TqDC, null if it is null or its context was destroyed.
inline CTqDraw* WorkingContext() {
    return TqDC == state().known ? TqDC : detail::FindWorkingContext();
}

namespace detail {
CTqDraw* TellMissingContext(const char* caller);
}

/// The same; where there is none, an internal error names the caller.
inline CTqDraw* NeedWorkingContext(const char* caller) {
    CTqDraw* context = WorkingContext();
    return context != nullptr ? context : detail::TellMissingContext(caller);
}

}  // namespace zm::draw
