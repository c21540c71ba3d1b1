// Point lists of mixed kinds turned into one polyline.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <new>

#include "geometry/state.h"
#include "zenromath/geometry.h"
#include "zenromath/runtime.h"

namespace {

constexpr std::size_t kMostPointsOfAnArc = 4001;  // 4000 and one to spare

// The room in points that GOTOPOINTS may use for a run of n points.
std::size_t RoomFor(int kind, std::size_t n) {
    if (kind == 2) return std::max(n, 5 * n);
    return std::max(n, kMostPointsOfAnArc);
}

// Calls visit(start, end, kind) for each run, which holds the points start to end, both included.
template <class Visitor>
void ForEachRun(int n, const char* codes, Visitor visit) {
    int start = 0;
    char code = codes[0];
    for (int j = 1; j < n; ++j) {
        // The code of the last point is never read.
        if (j < n - 1 && codes[j] == code) continue;
        visit(start, j, code - '0');
        start = j;
        if (j < n - 1) code = codes[j];
    }
}

// Room in points for any one run of the list.
std::size_t RoomForARun(int n, const char* codes) {
    std::size_t room = 0;
    ForEachRun(n, codes, [&](int start, int end, int kind) {
        room = std::max(room, RoomFor(kind, static_cast<std::size_t>(end - start) + 1));
    });
    return room;
}

// The scratch space, grown to this many values; null if memory lacks.
double* ScratchOf(std::size_t values) {
    zm::geometry::Scratch& scratch = zm::geometry::state().straightened;
    if (scratch.size >= values) return scratch.values;
    double* grown = new (std::nothrow) double[values];
    if (grown == nullptr) return nullptr;
    delete[] scratch.values;
    scratch = {grown, values};
    return grown;
}

// Flattens run after run. placeFor(at) gives the array for the run whose first point is point `at` of the result, and
// take(array, at, count) is called with its points. The number of points of the result.
template <class PlaceFor, class Take>
std::int64_t FlattenRuns(int n, double* x, double* y, const char* codes, double prec, PlaceFor placeFor, Take take) {
    std::int64_t total = 0;
    ForEachRun(n, codes, [&](int start, int end, int kind) {
        double* out = placeFor(total);
        int yielded = 0;
        GOTOPOINTS(end - start + 1, kind, x + start, y + start, out, &yielded, prec);
        _LErr(yielded < 2, "Segment fitting points<2", "function", "MulArc2Straight");
        take(out, total, yielded);
        total += yielded - (end < n - 1 ? 1 : 0);  // the last point of a run is the first of the next
    });
    return total;
}

}  // namespace

int MulArc2Straight(int n, double* x, double* y, const char* codes, double* out, double prec) {
    if (n < 2 || x == nullptr || y == nullptr || codes == nullptr || out == nullptr) return 0;
    const auto placeFor = [&](std::int64_t at) { return out + 2 * at; };
    return static_cast<int>(FlattenRuns(n, x, y, codes, prec, placeFor, [](const double*, std::int64_t, int) {}));
}

int MulArc2Straight(int n, double* x, double* y, const char* codes, int maxOut, double* outX, double* outY,
                    double prec) {
    if (n < 2 || x == nullptr || y == nullptr || codes == nullptr || maxOut < 1) return 0;
    if (outX == nullptr || outY == nullptr) return 0;
    // Required: the scratch space is left allocated, callers work in loops; it serves the next call.
    double* pairs = ScratchOf(2 * RoomForARun(n, codes));
    if (pairs == nullptr) return 0;
    const auto take = [&](const double* run, std::int64_t at, int count) {
        for (int i = 0; i < count && at + i < maxOut; ++i) {
            outX[at + i] = run[2 * i];
            outY[at + i] = run[2 * i + 1];
        }
    };
    const std::int64_t total = FlattenRuns(
        n, x, y, codes, prec, [&](std::int64_t) { return pairs; }, take);
    if (total <= maxOut) return static_cast<int>(total);
    _LMsg("MulArc2Straight: the flattened line has more points than maxOut; the rest was left out.", nullptr, 0);
    return maxOut;
}
