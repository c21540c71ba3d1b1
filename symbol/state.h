// What symbol remembers between calls. The exported globals TheBody, nBody and TheLCBody are defined beside it.
#pragma once

#include <cstdio>
#include <memory>

#include "symbol/area/hatch_statistics.h"
#include "symbol/file/library.h"
#include "symbol/scratch.h"

namespace zm::symbol {

struct State {
    std::shared_ptr<Library> library;         // TsymbolInit; a symbol being drawn keeps its own
    int lastCode = 0;                         // the last code looked up; cleared by TsymbolInit only
    const char* const* blockTable = nullptr;  // SetSymbolBlockTable; the caller's
    const double* blockReach = nullptr;       // SetSymbolBlockReach; the caller's
    int frameSwitch = 0;                      // _LDExText draws a frame if it is on; nothing in the library sets it
    int colourCounter = 0;                    // rolling colour of brush and bitmap hatches, 0 to 7
    double lineOffsetX = 0.0;                 // AppendLineCor with a negative group
    double lineOffsetY = 0.0;
    int hachureNumber = 1;             // of the next point in hachureFile
    int hachureGroup = 0;              // of its records
    std::FILE* hachureFile = nullptr;  // DrawTriangleHachures writes here if set; nothing in the library sets it
    HatchCuts hatchCuts;               // what the hatch caps left out
    bool curveCutReported = false;     // messages about limits are shown once for a library
    bool arcPolylineCutReported = false;
    bool patternStuckReported = false;
    ScratchPool scratch;
};

namespace detail {
extern State theState;
}

/// The one instance. Inline, since every symbol placed asks for it.
inline State& state() {
    return detail::theState;
}

/// Sets every remembered value of this folder back to its start value, the exported globals included.
void ResetState();

}  // namespace zm::symbol
