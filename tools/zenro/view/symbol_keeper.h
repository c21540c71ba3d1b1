// The process that works for the window of symbols: it reads libraries, draws symbols, checks, compares and saves. It
// remembers nothing that the window would miss, so that another one can take its place at any time.
//
// Messages are JSON in frames (frames.h). From the window: {"do": "open" | "draw" | "check" | "save" | "compare", "id": N,
// "file": a library, "edits": [{"code": N, "text": T}], ...}. To it: {"is": "answer", "id": N, ...}, with "error" where
// something is wrong. A picture lies in slot 0 of the shared memory until the next question.
#pragma once

#include <string>

namespace zm::tool {

struct Context;

/// The library that ships with the program.
std::string ShippedSymbols();

/// Works for a window, whose shared memory is open as a file, until it goes away.
/// \param project  with the layers that give colours and widths; empty: the default one
void KeepSymbols(const std::string& project, int shared, Context& context);

}  // namespace zm::tool
