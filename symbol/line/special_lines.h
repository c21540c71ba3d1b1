// Special lines, the kind E.
#pragma once

namespace zm::symbol {

/// Special line number 12: a line with ticks of 1 mm on the paper to its right, one at each vertex but the last.
/// 1, or the result of a message.
int DrawTickedLine(int n, double* x, double* y);

}  // namespace zm::symbol
