// The writer's operations that are internal to the library: one function for each kind of entity. The drawing context
// and the symbol interpreter are the callers. The exported part is in zenromath/dwg.h.
//
// Coordinates go into the file unchanged, survey metres. Angles are degrees, counter-clockwise. Each call writes its
// record with the current attributes.
// With no session open a call shows one message and does nothing. An entity with a coordinate that is no finite number
// is left out and reported once.
#pragma once

#include "geometry/elevation.h"
#include "zenromath/dwg.h"

/// A line; the heights of its ends are those found at each end.
void _LDBline(double x1, double y1, double x2, double y2);

/// A polyline: POLYLINE, a VERTEX for each point with the height found there, SEQEND.
/// \param xy  n points as x, y, x, y ...; no point (n of 0 or less, or a null array) gives POLYLINE and SEQEND alone
void _LDBpolyline(const double* xy, int n);

/// A polyline whose first and last height are stored with it; those between are stored nowhere.
/// \param xyz  n points as x, y, z, x, y, z ...
void _LDBpolyline3d(const double* xyz, int n);

void _LDBpoint(double x, double y);

/// \param start, end  degrees
void _LDBarc(double x, double y, double radius, double start, double end);
void _LDBcircle(double x, double y, double radius);

/// Text in the current style.
/// \param justification  1 left, 2 middle, 3 right; 4 to 9 only for vertical text with Chinese characters
/// \param x, y           the place, on the baseline
/// \param height         survey metres
/// \param angle          degrees
/// \param text           GBK, ends with a zero byte; null is an empty text
void _LDBtext(int justification, double x, double y, double height, double angle, const char* text);

/// The decimal text of an integer.
void _LDBinttext(int justification, double x, double y, double height, double angle, int value);

/// The text of a real by "%.12g".
void _LDBrealtext(int justification, double x, double y, double height, double angle, double value);

/// Text stretched by its width factor from the first point to the second.
void _LDBfittext(double x1, double y1, double x2, double y2, double height, const char* text);

void _LDBtrace(double x1, double y1, double x2, double y2, double x3, double y3, double x4, double y4);
void _LDBsolid(double x1, double y1, double x2, double y2, double x3, double y3, double x4, double y4);
void _LDBface3d(double x1, double y1, double z1, double x2, double y2, double z2, double x3, double y3, double z3,
                double x4, double y4, double z4);

/// A reference to the block that the file name + ".dwg" defines; the file is copied at the first reference to it.
/// \param name  without extension; compared exactly with the blocks of the drawing
void _LDBinsert(double x, double y, double xScale, double yScale, double angle, const char* name);

namespace zm::dwg {
/// Whether _LDBinsert will find a block, or report what it lacks: false where blocks are imported and this one, with a
/// message the first time, cannot be had; the caller then draws in its place what it can.
bool BlockAtHand(const char* name);
}  // namespace zm::dwg
