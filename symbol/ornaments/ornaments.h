// The coded ornaments, for drawcode and its tests.
#pragma once

#include "symbol/paper.h"

namespace zm::symbol {

constexpr int kLeastControlPoints = 3;
constexpr int kMostControlPoints = 120;

// Codes of the symbols at both ends of a structure; the library has to define them.
constexpr int kFirstEnd = 93;
constexpr int kLastEnd = 95;

/// The point reached from a by going d along the direction to b and o to the left of it. Where a and b are one place,
/// or d and o are nothing, a message for each coordinate, and the result is b.
Point AlongPoint(const Point& a, const Point& b, double d, double o);
/// One coordinate of it, with at most one message.
double AlongX(const Point& a, const Point& b, double d, double o);
double AlongY(const Point& a, const Point& b, double d, double o);

/// A stroke with the thinnest pen of the last colour.
void ThinLine(const Point& a, const Point& b);

/// A stroke in a line symbol's code; 0 with nothing drawn where the code is no line-class or plain line symbol.
int CodedSegment(const Point& a, const Point& b, int code);

/// The fourth corner of a parallelogram: p1 + (p3 - p2).
Point CompleteParallelogram(const Point& p1, const Point& p2, const Point& p3);

/// Draws a row of the ornament table. points: n of them, at least 4.
void DrawCodedOrnament(int number, int n, const Point* points, double g);

}  // namespace zm::symbol
