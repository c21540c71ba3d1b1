// Patterns of linetypes from the text file "ACAD.LIN".
#pragma once

#include <cstdio>

#include "dwg/format/file_layout.h"

namespace zm::dwg {

struct LinePattern {
    int count = 0;                       // elements stored, at most 12
    double elements[kPatternSize] = {};  // positive a dash, negative a gap, 0 a dot
    double length = 0.0;                 // sum of their absolute values
    bool cut = false;                    // the file has more elements
};

enum class PatternResult {
    found,    // with at least one element
    missing,  // no entry that fits, or one without elements
    fault     // a name or element of 20 or more characters
};

/// Looks for the first entry whose name begins with the wanted name.
PatternResult ReadLinePattern(std::FILE* file, const char* wanted, LinePattern& pattern);

}  // namespace zm::dwg
