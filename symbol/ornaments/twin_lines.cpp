#include "symbol/ornaments/twin_lines.h"

#include "symbol/ornaments/ornaments.h"
#include "zenromath/symbol.h"

namespace zm::symbol {
namespace {

constexpr int kOffsetLine = 981;
constexpr int kVertexSymbol = 16;
constexpr int kBeginSymbol = 54;
constexpr int kEndSymbol = 984;

// One of the two lines: size points, at least 2.
struct Half {
    const Point* points;
    int size;
    const Point& first() const { return points[0]; }
    const Point& last() const { return points[size - 1]; }
    double bearingAtFirst() const { return Bearing(points[0], points[1]); }
    double bearingAtLast() const { return Bearing(points[size - 2], points[size - 1]); }
    void PutAtVertex(int i) const {
        insert(points[i].x, points[i].y, Bearing(points[i - 1], points[i + 1]), kVertexSymbol);
    }
};

void PutAtFirst(const Half& half, int code) {
    insert(half.first().x, half.first().y, half.bearingAtFirst(), code);
}

void PutAtLast(const Half& half, int code) {
    insert(half.last().x, half.last().y, half.bearingAtLast(), code);
}

void DrawHalf(const Half& half, bool coded) {
    for (int i = 0; i + 1 < half.size; ++i) {
        if (coded)
            CodedSegment(half.points[i], half.points[i + 1], kOffsetLine);
        else
            ThinLine(half.points[i], half.points[i + 1]);
    }
}

// The line offset by s along one half, from q at its beginning; q is left at the last inner vertex.
void DrawOffset(const Half& half, double s, Point& q) {
    for (int i = 1; i + 1 < half.size; ++i) {
        const Point r = AlongPoint(half.points[i], half.points[i + 1], 0.0, s);
        ThinLine(q, r);
        q = r;
        half.PutAtVertex(i);
    }
}

void DrawOffsets(const Half& first, const Half& second, double s) {
    Point q1 = AlongPoint(first.points[0], first.points[1], 0.0, s);
    const Point q2 = AlongPoint(first.last(), first.points[first.size - 2], 0.0, -s);
    Point q3 = AlongPoint(second.points[0], second.points[1], 0.0, s);
    const Point q4 = AlongPoint(second.last(), second.points[second.size - 2], 0.0, -s);
    ThinLine(first.first(), q1);
    ThinLine(first.last(), q2);
    ThinLine(q3, second.first());
    ThinLine(q4, second.last());
    DrawOffset(first, s, q1);
    DrawOffset(second, s, q3);
    ThinLine(q2, q1);
    ThinLine(q4, q3);
}

}  // namespace

void DrawTwinLines(int number, int n, const Point* points, double s) {
    const int m = n / 2;
    const Half first = {points, m};
    const Half second = {points + m, m};
    DrawHalf(first, number == 11);
    DrawHalf(second, number == 11);
    for (const Half& half : {first, second}) {
        PutAtFirst(half, kBeginSymbol);
        PutAtLast(half, kEndSymbol);
    }
    if (number == 11) {
        DrawOffsets(first, second, s);
        return;
    }
    if (number == 22) {
        PutAtFirst(first, kFirstEnd);
        PutAtFirst(second, kFirstEnd);
        PutAtLast(first, kLastEnd);
        PutAtLast(second, kLastEnd);
    }
    for (int i = 1; i + 1 < m; ++i) {
        first.PutAtVertex(i);
        second.PutAtVertex(i);
    }
}

}  // namespace zm::symbol
