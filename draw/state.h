// What draw remembers between calls, one copy for all contexts.
#pragma once

#include <unordered_set>

#include "zenromath/draw.h"

namespace zm::draw {

struct State {
    double paperScale = 1000.0;  // map scale denominator; setgscale, getcurgscale
    int charHeightLimit = 0;     // device pixels, 0 is no limit; _SetHdcCharHLimit
    double initialAngle = 0.0;   // degrees; SetInitRotateAngle
    LOGFONTA currentFont{};      // the last font description, its width halved; textout draws double-byte text with it
    COLORREF lastPenColor = 0;   // the last real colour given to a CTQPen
    int firstCharacter = 1;      // written into the "Text:" command
    std::unordered_set<const CTqDraw*> contexts;  // those that exist; TqDC may be none of them
};

State& state();

/// Sets every remembered value of this folder back to its start value, and TqDC to null. Contexts that exist stay.
void ResetState();

/// TqDC, null if it is null or its context was destroyed.
CTqDraw* WorkingContext();

/// The same; where there is none, an internal error names the caller.
CTqDraw* NeedWorkingContext(const char* caller);

}  // namespace zm::draw
