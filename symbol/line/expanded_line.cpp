#include "symbol/line/expanded_line.h"

#include <algorithm>

#include "geometry/state.h"
#include "symbol/state.h"
#include "symbol/texts.h"
#include "zenromath/geometry.h"
#include "zenromath/runtime.h"

namespace zm::symbol {
namespace {

constexpr int kCurvePoints = 4000;  // room of the scratch, and of the caller's arrays
constexpr int kArcPoints = 4001;    // the most that one arc or circle takes

// The one message about a curve that needs more room than there is.
void TellCurveCut() {
    if (state().curveCutReported) return;
    state().curveCutReported = true;
    _LMsg(texts::kCurveCut, nullptr, 0);
}

// The arc through the first three points, or all the points where they give no arc. Returns the number of pairs.
int ExpandArc(int n, double* x, double* y, double* out, double prec) {
    int count = n;
    if (geometry::state().mini > prec) prec = 1000.0;
    int arc = -1;
    ArcToPoints(n, x, y, out, &arc, prec);
    if (arc >= 0) return arc;
    for (int i = 0; i < n; ++i) {
        out[2 * i] = x[i];
        out[2 * i + 1] = y[i];
    }
    return count;
}

}  // namespace

std::size_t ExpandedRoom(int n) {
    return 2 *
           (static_cast<std::size_t>(std::max(n, kCurvePoints)) + static_cast<std::size_t>(std::max(n, kArcPoints)));
}

int ExpandLinePoints(int n, int lineType, double* x, double* y, double* out, double g) {
    const int room = std::max(n, kCurvePoints);
    int m = n;
    if (lineType == kArcChain && n > 3) {
        m = 0;
        int left = n;
        for (; left > 2 && m < room; left -= 2, x += 2, y += 2)
            m += ExpandArc(left, x, y, out + 2 * m, g) - 1;  // the next piece begins on this one's last point
        ++m;
        if (left == 2 && m <= room) {
            out[2 * m] = x[1];
            out[2 * m + 1] = y[1];
            ++m;
        }
    } else {
        GOTOPOINTS(n, lineType, x, y, out, &m, g);
    }
    if (m > room) TellCurveCut();
    return std::min(m, room);
}

}  // namespace zm::symbol
