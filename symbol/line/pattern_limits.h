// Limits of line-class symbols, which the linter goes by too.
#pragma once

namespace zm::symbol {

constexpr double kVertexMode = 0.001;  // the last header token above it: symbols on the vertices, no pattern
constexpr double kLeastWidth = 0.01;   // survey metres; companions narrower than this are not drawn
constexpr int kMarksInARow = 10;       // tokens without length before the pattern is given up
constexpr double kLeastCycle = 0.05;   // millimetres; zenro draws a pattern that repeats sooner plain

}  // namespace zm::symbol
