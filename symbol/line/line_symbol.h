// The laying of line-class symbols, for the interpreter and its tests.
#pragma once

namespace zm::symbol {

/// Lays a line-class symbol along a polyline: its pattern, or symbols on the vertices.
///
/// \param values, letters  20 numbers and letters as in LCBODY
/// \param tokenCount       tokens of the pattern, 0 to 16
/// \param x, y             n points, overwritten
/// \param flip             1: every symbol is turned by pi
/// \param sidesOff         not 0: the letters L, M, R and W are ignored
/// \param g                scale denominator
/// \param code             for messages and the block table
/// \return  2 after a full pass, 0 if n is below 2, else the result of a message
int LayLineSymbol(const double* values, const char* letters, int tokenCount, double* x, double* y, int n, int flip,
                  int sidesOff, double g, int code);

/// The same for a symbol in pattern mode, with n 2 or more and a count of tokens that is kept.
int LayPattern(const double* values, const char* letters, int tokenCount, double* x, double* y, int n, int flip,
               int sidesOff, double g, int code);

/// Places symbols on vertices and draws connecting lines between them. 1, or the result of a message.
int LayVertexSymbols(const double* values, const char* letters, const double* x, const double* y, int n, int flip,
                     double g, int code);

}  // namespace zm::symbol
