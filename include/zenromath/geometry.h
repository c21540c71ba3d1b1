// The exported interface of geometry: lines, arcs, curves, parallel lines, triangle strips, heights, matrices.
//
// Coordinates are doubles, in metres on the ground wherever they come from a survey: x to the right, y up. A polyline
// or polygon is two parallel arrays of x and y; where a function says "pairs" it is one array x, y, x, y. The caller
// owns every array. Angles are radians, counter-clockwise from the first axis.
//
// Nothing here checks its numbers: a not-a-number or an infinity goes through the formulas and comes out as one. A null
// array counts as one without elements, and a count below 0 as 0. Unless an entry says otherwise nothing is shown to
// the user, nothing is allocated, and the work is linear in the number of points.
#pragma once

#include "zenromath/platform.h"

// ---------------------------------------------------------------------------------------------------------------------
// Points, lines and angles

/// Sets the tolerance MINI of the plane geometry, process-wide, 1e-08 at start.
///
/// \param tolerance  any value; nothing is checked
/// \return           the previous tolerance, so that a caller can put it back
///
/// It is used by XYSA, Cross_P, VertAnglePoint, DRAWARC1 and GOTOPOINTS, and by all that is built on them. The other
/// functions have fixed thresholds of their own.
ZM_API double SetMINI(double tolerance);

/// Polar to rectangular: x = r cos angle, y = r sin angle.
///
/// \param[out] x, y  unchanged if the result is 0
/// \return           1, or 0 if r <= 0
ZM_API int ptor(double& x, double& y, double r, double angle);

/// Rectangular to polar.
///
/// \param[out] r      the length, always written
/// \param[out] angle  from -pi to pi; unchanged if the result is 0
/// \return            1, or 0 if the length is 0
ZM_API int rtop(double x, double y, double& r, double& angle);

/// Both directions of the polar step from (x0, y0), with a bearing measured by arc cosine.
///
/// \param x, y   the other point: read if flag is 0, else written
/// \param s, a   distance and bearing: written if flag is 0, else read
/// \param flag   not 0: x = x0 + s cos a, y = y0 + s sin a.
///               0: s is the distance and a the bearing in [0, two-pi]; a is 0 where MINI >= s
///
/// The bearing comes from acos, so near 0 and pi it has only half of a double's digits. A null pointer: nothing is
/// done.
ZM_API void XYSA(double x0, double y0, double* x, double* y, double* s, double* a, char flag);

/// The meeting point of the lines 1-2 and 3-4.
///
/// \param[out] X, Y  the meeting point for the results 0 and 4, else unchanged
/// \return  0 the lines meet on both segments; 4 they meet outside at least one of them; -2 a segment has no length
///          (sum of its coordinate differences up to MINI); -3 the lines are parallel (determinant up to MINI)
///
/// 0 is the good case here. A touch within MINI of an end point, in any one coordinate, counts as on the segment in
/// that coordinate. The determinant is not scaled: short segments count as parallel sooner than long ones.
ZM_API int Cross_P(double& X, double& Y, double x1, double y1, double x2, double y2, double x3, double y3, double x4,
                   double y4);

/// The first segment of a polyline that the segment 1-2 meets, in the sense of Cross_P.
///
/// \param pairs      the polyline, n pairs
/// \param n          number of points; fewer than 2 are no polyline
/// \param[out] X, Y  the last meeting point computed, also one that did not count; unchanged if there was none
/// \return           the segment's number, the first is 1; 0 if none is met
ZM_API int norm_intersect(double x1, double y1, double x2, double y2, double* pairs, int n, double& X, double& Y);

/// How many sides of a box the infinite line through 1 and 2 meets.
///
/// \return  0 to 4; 2 for a line through the interior. A line through a corner may count one, two or no sides there,
///          since the ends of the sides are taken in or left out by fixed rules.
ZM_API int MyCrossRect(double x1, double y1, double x2, double y2, double left, double bottom, double right,
                       double top);

/// The foot of the perpendicular from a point on an infinite line.
///
/// \param in6        x1, y1, x2, y2 of the line, then x, y of the point
/// \param[out] out2  x, y of the foot; the line's first point if both its differences are below 1e-08
ZM_API void CHUIZU(double* in6, double* out2);

/// The distance from a point to the segment 1-2, its ends included.
ZM_API double PtDist2Line(double px, double py, double x1, double y1, double x2, double y2);

/// The least distance from a point to a polyline.
///
/// \param n     number of points; with 1 the distance to it
/// \param x, y  the polyline, read only
/// \return      the distance, 0 for a polyline without points
ZM_API double getdist(double px, double py, int n, double* x, double* y);

/// The nearest leg of a polyline, its nearest vertex, and the side on which the point lies.
///
/// \param n           number of points
/// \param x, y        the polyline, read only
/// \param[out] index  number from 0 of the nearer vertex of the nearest segment; the later one of two as near
/// \param[out] side   1 if the point lies to the left of that segment, else 0; unchanged for n < 2
/// \return            distance to the infinite line of the leg that the point faces; 0 for n < 2
///
/// Of segments as near the last one counts. At an inner vertex the bisector of the corner decides which leg the point
/// faces, unless the point lies inside the triangle of the corner.
ZM_API double GetDistBering(double px, double py, int n, double* x, double* y, int& index, int& side);

/// On which side of a turn c lies: the sign of the cross value of a - c and b - c.
///
/// \param tolerance  up to 1e-06 it applies to the cross value itself; a greater one is read as a sine: the cross value
///                   is first divided by the two lengths, unless their product is 1e-06 or less
/// \return           1 if a, b, c run counter-clockwise, -1 clockwise, 0 within the tolerance
ZM_API int AbcIsClockwise(double ax, double ay, double bx, double by, double cx, double cy, double tolerance);

/// Moves P on to the perpendicular erected at point 1 of the line 1-2; it keeps its side and its distance from 1.
///
/// \param px, py  the point, in and out; unchanged if the result is 0
/// \return        1, or 0 if MINI exceeds the line's length (or a pointer is null)
///
/// A point on the line (within MINI) goes to the right of the direction of travel.
ZM_API int VertAnglePoint(double x1, double y1, double x2, double y2, double* px, double* py);

/// A turn about a pivot, then a shift.
///
/// \param tx, ty     the shift
/// \param angle      the turn; positive turns from the second axis towards the first, which is clockwise
/// \param cx, cy     the pivot
/// \param[out] X, Y  where (x, y) comes to lie
/// \return           1 always
ZM_API int GrdbodyRotate(double tx, double ty, double angle, double cx, double cy, double x, double y, double& X,
                         double& Y);

/// Whether a point lies inside a polygon: the parity of a ray towards positive x.
///
/// \param x, y  vertices, two arrays of n, read only; the closing edge is implied
/// \return      1 inside, 0 outside
///
/// There is no rule for vertices: a ray through one meets both its edges. Edges whose y differ by less than 0.0001 are
/// left out. For a careful answer take PtInPolyEdge.
ZM_API int PtInPoly(double* x, double* y, int n, double px, double py);

/// Where a point lies with respect to a polygon, the boundary being a place of its own.
///
/// \param n       number of vertices; fewer than 3 are no polygon
/// \param x, y    vertices, two arrays of n, survey metres, read only; the closing edge is implied
/// \param px, py  the point
/// \return  1 inside, 0 outside or no polygon, -1 within 1e-7 of an edge
///
/// Callers that ask only whether a point is inside test for non-zero, so the boundary counts.
/// The tolerances are fixed, and MINI has no part in them. Nothing is shown to the user.
ZM_API int PtInPolyEdge(int n, double* x, double* y, double px, double py);

/// Reverses the order of n elements in place.
///
/// \param buffer  the elements
/// \param size    bytes of one element
/// \return        1, or 0 if the buffer is null or the size negative
ZM_API int reverse_line(void* buffer, int n, int size);

// ---------------------------------------------------------------------------------------------------------------------
// Arcs and circles
//
// prec: 0.002 * prec is the length of one step along an arc, so prec acts as a scale denominator; at 1000 a step is 2
// units long. A step is at most 15 degrees, and an arc or a circle at most 3999 steps, whatever prec is.

/// The circle through three points, by the bisectors of the two legs.
///
/// \param x, y            three points, read only
/// \param[out] cx, cy, r  centre and radius; unchanged if the result is 0
/// \return                1, or 0 if the points are collinear or coincide
ZM_API int theerP_circle_cr(double* x, double* y, double& cx, double& cy, double& r);

/// The circle through three points by the closed formula, with the ends put in order.
///
/// \param x1 .. y3  in: the three points. Out: 1 is the centre, and the arc runs counter-clockwise from 2 to 3,
/// whichever
///                  way the points were given
/// \param[out] r    the radius
/// \return          1, or 0 if the points are collinear (or a pointer is null), and then nothing is changed
ZM_API int DRAWARC1(double* x1, double* y1, double* x2, double* y2, double* x3, double* y3, double* r);

/// How many steps an arc takes and how long they are.
///
/// \param prec        see above; here it is taken as it is
/// \param radius      a radius of 0 gives the greatest step
/// \param sweep       the arc's angle; only its magnitude counts
/// \param[out] step   angle of one step, at most 0.2617993877991494 (15 degrees)
/// \param[out] count  number of steps, at most 3999
/// \return            the count before that limit, held to the range of int; 0 where it is not a number
ZM_API int ArcStepCount(double prec, double radius, double sweep, double* step, int* count);

/// Flattens the arc through the first three points.
///
/// \param n         number of points; with fewer than 3, or three on a line, nothing is written
/// \param x, y      the points, read only; those after the third have no part
/// \param out       receives pairs, up to 4000; the last one is exactly the third input point
/// \param outCount  receives the number of pairs
ZM_API void ArcToPoints(int n, double* x, double* y, double* out, int* outCount, double prec);

/// Flattens a full circle, starting at bearing 0 from the centre and not at an input point.
///
/// \param direction  1 counter-clockwise, -1 clockwise
/// \param n          2: the second point is the centre and the first lies on the circle. 3 or more: the circle through
///                   the first three. Fewer, or three on a line: nothing is written
/// \param out        receives pairs, up to 4000; the last one repeats the first
/// \param outCount   receives the number of pairs
ZM_API void CircleToPoints(int direction, int n, double* x, double* y, double* out, int* outCount, double prec);

/// Flattens a point list of mixed kinds: each run of equal codes by GOTOPOINTS.
///
/// \param n      number of points
/// \param x, y   the points, read only
/// \param codes  one character for each point, the digit of the kind of the run that starts there. A run holds from its
///               first point up to and including the next run's first; the last point's code is never read
/// \param out    receives pairs; for each run room for what GOTOPOINTS needs
/// \return       number of pairs written, 0 for n < 2
///
/// A run that comes out as fewer than two points (an arc of no sweep) is reported through _LErr, and the work goes on.
ZM_API int MulArc2Straight(int n, double* x, double* y, const char* codes, double* out, double prec);

/// The same, with two output arrays.
///
/// \param maxOut      room of outX and outY in points; what lies beyond is left out, and that is reported through _LMsg
/// \param outX, outY  receive the points
/// \return            number of points written; 0 if no scratch space can be had
///
/// The scratch space stays allocated for the next call.
ZM_API int MulArc2Straight(int n, double* x, double* y, const char* codes, int maxOut, double* outX, double* outY,
                           double prec);

// ---------------------------------------------------------------------------------------------------------------------
// Curve fitting

/// Turns a point list with a kind into the polyline to draw.
///
/// \param n         number of points
/// \param kind      2 fitted curve; 3 arc through three points; 4 circle, counter-clockwise; 5 circle, clockwise (both:
///                  two points are a point on it and the centre, three lie on it); any other: straight lines
/// \param x, y      the points, read only
/// \param out       receives pairs. Room: n pairs for straight lines, 1 + 5 (n - 1) for a curve, the greater of n and
///                  4001 for an arc or a circle
/// \param outCount  receives the number of pairs
/// \param prec      length of the steps, see arcs and circles; below MINI it counts as 1000
///
/// A list too short for its kind, or whose points give no circle, comes out as it is. A curve through one point has the
/// count 0.
ZM_API void GOTOPOINTS(int n, int kind, double* x, double* y, double* out, int* outCount, double prec);

/// The control points of the uniform cubic B-spline that passes through the given points.
///
/// \param x, y  elements 1 to n: points in, control points out. The first and the last stay; element 0 is not touched
/// \param n     number of points
///
/// Source: de Boor, A Practical Guide to Splines: at a knot the curve is (c[i-1] + 4 c[i] + c[i+1]) / 6; the system is
/// solved by elimination without pivoting.
ZM_API void bspline(double* x, double* y, int n);

/// The curve through all the points: five points for each span, whatever its length.
///
/// \param n         number of points: below 2 the count is 0; 2 are a straight piece
/// \param x, y      the points, read only
/// \param out       receives pairs, room for 1 + 5 (n - 1) of them. All of that room is used while the curve is made
/// \param outCount  receives the number of pairs
///
/// Ends closer than 0.02 in both coordinates make a closed curve, whose ends share their tangent.
ZM_API void SplineToPoints(int n, double* x, double* y, double* out, int* outCount);

// ---------------------------------------------------------------------------------------------------------------------
// Parallel lines

/// Offsets a polyline to one side, vertex for vertex, by the bisectors of its corners.
///
/// \param n           number of points
/// \param x, y        the polyline, read only; closed if its ends agree within 1e-08
/// \param outX, outY  receive n points; they must not be x and y themselves
/// \param dist        the distance; a negative one changes the side
/// \param side        1 to the right of the direction of travel, any other value to the left
/// \return            1, or 0 for n < 2, and then nothing is written
///
/// The mitre of a sharp corner is at most five times dist long. Points are not removed: a leg of no length counts as
/// one of bearing 0.
ZM_API int parallel(int n, double* x, double* y, double* outX, double* outY, double dist, int side);

// ---------------------------------------------------------------------------------------------------------------------
// Triangles and height search

/// Joins two polylines by a strip of triangles.
///
/// \param[out] triangles  vertex numbers, three for each triangle: point i of the first line has the number i, point j
///                        of the second n1 + j. Allocated here with new[]; the caller releases it with delete[]. Null
///                        on failure
/// \param pairs1, n1      the first line, n1 pairs, read only
/// \param pairs2, n2      the second line, n2 pairs, read only
/// \return                the number of triangles, n1 + n2 - 2, or 0 on failure
///
/// It fails where both diagonals of the next triangle are blocked by the lines or turn the wrong way, for two lines of
/// one point each, and where the list cannot be allocated. Every step looks along the rest of both lines, so the work
/// grows with the square of the number of points.
ZM_API int tqgettriln(int*& triangles, double* pairs1, int n1, double* pairs2, int n2);

/// A table of known point heights. While one is armed, DWG output takes the elevation of an entity from the point found
/// at its position.
///
/// At most one is meant to live at a time: a newer one takes over, and the end of any disarms.
class ZM_API Find4H {
 public:
    /// Saves the DWG elevation and takes over as the current table, disarmed. If there are points, it copies them and
    /// arms.
    ///
    /// \param n        number of points, 0 for an empty table
    /// \param x, y, h  positions and heights, arrays of n, read only; null arrays count as no points, and so do points
    ///                 for which memory lacks
    Find4H(int n, double* x, double* y, double* h);
    /// Disarms and puts back the elevation held at construction.
    ~Find4H();
    Find4H(const Find4H&) = delete;
    Find4H& operator=(const Find4H&) = delete;

    /// Appends points and arms.
    ///
    /// \param n        number of points
    /// \param x, y, h  arrays of n, read only
    /// \return         1, or 0 if memory lacks or an array is null; the table is then as before
    int AppendDate(int n, double* x, double* y, double* h);

    /// The height at a position: that of the first stored point with |dx| + |dy| < 0.1.
    ///
    /// \return  the height; 0.0 if no point lies so near or its height is above 9000.0
    ///
    /// The first question after many points came in sorts them into an index; from then on a question takes about the
    /// same time whatever the number of points.
    double FindH(double x, double y);

 private:
    class Index;

    bool Grow(int size);

    double* m_x;               // owned
    double* m_y;               // owned
    double* m_h;               // owned
    int m_n;                   // number of points
    double m_savedElevation;   // the DWG elevation at construction
    int m_capacity = 0;        // room of the arrays
    Index* m_index = nullptr;  // owned; answers for the points it was built from, null before the first question
};

// ---------------------------------------------------------------------------------------------------------------------
// Matrices: flat arrays in row-major order, element (i, j) of an r by c matrix at i * c + j

/// Inverts a matrix in place: Gauss-Jordan elimination with full pivoting.
///
/// \param a  the n by n matrix; holds the inverse afterwards, or is left half transformed on failure
/// \param n  0 or less: nothing to do
/// \return   a, or null on failure
///
/// It fails where the greatest remaining element is so small that adding it to 1.0 gives 1.0, whatever the scale of the
/// matrix: a message box of the application says so. Without memory, or for a null matrix, it fails without a box.
/// Source: the elimination in place of Stoer and Bulirsch, Introduction to Numerical Analysis, section 4.2.
ZM_API double* conversema(double* a, int n);

/// Multiplies the m by k matrix A by the k by n matrix B.
///
/// \param[out] C  the m by n product; neither A nor B. For k = 0 all zeros
/// \return        C
ZM_API double* mamulma(double* A, int m, int k, double* B, int n, double* C);

/// Transposes the r by c matrix A in place; it holds the c by r transpose afterwards.
///
/// \return  A; null if the scratch space for it cannot be had, and then A is unchanged
ZM_API double* turnmatrix(double* A, int r, int c);
