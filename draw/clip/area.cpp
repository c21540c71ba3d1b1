// The clip area: its setting, and the clipping of points, segments, chains and arcs.
#include <algorithm>
#include <cmath>
#include <cstddef>

#include "draw/clip/polygon.h"
#include "draw/numbers.h"
#include "geometry/rectangle.h"
#include "geometry/state.h"
#include "zenromath/draw.h"
#include "zenromath/geometry.h"

using zm::draw::kDegreesPerRadian;

namespace {

// Outcodes of a point.
constexpr int kLeft = 1;
constexpr int kRight = 2;
constexpr int kBelow = 4;
constexpr int kAbove = 8;

// Outcodes of points that can be moved: a bit for each code of one side or of a corner.
constexpr unsigned kMovable = 1U << kLeft | 1U << kRight | 1U << kBelow | 1U << kAbove | 1U << (kLeft + kBelow) |
                              1U << (kLeft + kAbove) | 1U << (kRight + kBelow) | 1U << (kRight + kAbove);

constexpr double kSamePoint = 1e-8;  // metres; crossings of a polygon nearer than this in x and y are one

bool AreOpposite(int code1, int code2) {
    return code1 + code2 == kLeft + kRight || (code1 | code2) == kBelow + kAbove;
}

struct Boundary {
    double xmin, ymin, xmax, ymax;
};
struct Line {
    double x1, y1, dx, dy;
};

// Moves the end of a line that has this outcode to the boundary. One branch alone: both crossings are computed, since a
// wrong guess costs more than a division.
inline void MoveToBoundary(const Boundary& b, const Line& line, int code, double& x, double& y) {
    if ((kMovable >> code & 1U) == 0) return;
    const bool aside = (code & (kLeft | kRight)) != 0;
    const double sideX = (code & kLeft) != 0 ? b.xmin : b.xmax;
    const double sideY = (sideX - line.x1) * line.dy / line.dx + line.y1;
    const bool under = aside ? sideY < b.ymin : (code & kBelow) != 0;
    // Where the side is met beyond its ends, the level boundary there counts.
    const bool atLevel = !aside || sideY < b.ymin || sideY > b.ymax;
    const double levelY = under ? b.ymin : b.ymax;
    const double levelX = (levelY - line.y1) * line.dx / line.dy + line.x1;
    x = atLevel ? levelX : sideX;
    y = atLevel ? levelY : sideY;
}

}  // namespace

CCutArea::CCutArea(int docut)
    : m_docut(docut),
      m_xmin(0.0),
      m_xmax(0.0),
      m_ymin(0.0),
      m_ymax(0.0),
      m_lineX1(0.0),
      m_lineY1(0.0),
      m_lineX2(0.0),
      m_lineY2(0.0),
      m_polygon(nullptr),
      m_polygonSize(0),
      m_areaKind(0),
      m_rotateAngle(0.0) {}

CCutArea::~CCutArea() {
    ReleasePolygon();
}

void CCutArea::ReleasePolygon() {
    zm::draw::ReleasePolygon(m_polygon);
    m_polygon = nullptr;
}

int CCutArea::set_docut(int docut) {
    const int previous = m_docut;
    m_docut = docut;
    return previous;
}

int CCutArea::get_docut() const {
    return m_docut;
}

void CCutArea::setcutarea(double x1, double y1, double x2, double y2) {
    m_xmin = std::min(x1, x2);
    m_xmax = std::max(x1, x2);
    m_ymin = std::min(y1, y2);
    m_ymax = std::max(y1, y2);
    m_areaKind = 1;
    m_rotateAngle = 0.0;
}

void CCutArea::setcutarea(int n, double* x, double* y) {
    m_areaKind = 0;
    ReleasePolygon();
    if (n < 3 || x == nullptr || y == nullptr) return;  // Required: the size of the polygon before stays.
    m_polygonSize = n;
    m_polygon = zm::draw::MakePolygon(n, x, y);
    if (m_polygon == nullptr) return;  // no memory: kind 0, with the size n
    m_xmin = *std::min_element(x, x + n);
    m_xmax = *std::max_element(x, x + n);
    m_ymin = *std::min_element(y, y + n);
    m_ymax = *std::max_element(y, y + n);
    m_areaKind = 2;
    // The direction of the closing edge: for a turned rectangle given by its corners the turn of the rectangle.
    const double dx = x[n - 1] - x[0];
    const double dy = y[n - 1] - y[0];
    m_rotateAngle = dx * dy == 0.0 ? 0.0 : std::atan2(dy, dx) * kDegreesPerRadian;
}

void CCutArea::setcutarea(int n, double*) {
    // Required: the points are not read; the polygon takes what the scratch holds. Nothing in the library calls this
    // form, and it must not look as if it worked.
    std::vector<double> scratch(n > 0 ? 2 * static_cast<std::size_t>(n) : 0, 0.0);
    setcutarea(n, scratch.data(), scratch.data() + scratch.size() / 2);
}

void CCutArea::getcutarea(double& left, double& top, double& right, double& bottom) const {
    left = m_xmin;
    top = m_ymax;
    right = m_xmax;
    bottom = m_ymin;
}

int CCutArea::getcutarea(int& n, PP*& polygon) const {
    n = m_polygonSize;
    polygon = m_polygon;
    return m_areaKind;
}

double CCutArea::getrotateangle() const {
    return m_rotateAngle;
}

int CCutArea::incode(double x, double y) const {
    return (x < m_xmin ? kLeft : 0) + (x > m_xmax ? kRight : 0) + (y < m_ymin ? kBelow : 0) + (y > m_ymax ? kAbove : 0);
}

int CCutArea::cutpoint(double x, double y) {
    if (m_docut == 0) return 1;
    const bool inBox = x >= m_xmin && x <= m_xmax && y >= m_ymin && y <= m_ymax;
    if (!IsPolygon() || !inBox) return inBox ? 1 : 0;
    return zm::draw::PointInPolygon(m_polygon, m_polygonSize, x, y);
}

int CCutArea::cutline(double& x1, double& y1, double& x2, double& y2) {
    if (m_docut == 0) return 1;
    return IsPolygon() ? CutLineToPolygon(x1, y1, x2, y2) : CutLineToRectangle(x1, y1, x2, y2);
}

int CCutArea::CutLineToRectangle(double& x1, double& y1, double& x2, double& y2) {
    const int c1 = incode(x1, y1);
    const int c2 = incode(x2, y2);
    if ((c1 | c2) == 0) return 1;
    if ((c1 & c2) != 0) return 0;
    if (c1 != 0 && c2 != 0 && !AreOpposite(c1, c2) &&
        zm::geometry::SidesMet(x1, y1, x2, y2, m_xmin, m_ymin, m_xmax, m_ymax) < 2)
        return 0;
    m_lineX1 = x1;
    m_lineY1 = y1;
    m_lineX2 = x2;
    m_lineY2 = y2;
    const Boundary boundary = {m_xmin, m_ymin, m_xmax, m_ymax};
    const Line line = {m_lineX1, m_lineY1, m_lineX2 - m_lineX1, m_lineY2 - m_lineY1};
    if (c1 != 0) MoveToBoundary(boundary, line, c1, x1, y1);
    if (c2 != 0) MoveToBoundary(boundary, line, c2, x2, y2);
    return 1;
}

// Moves one end of the saved segment to the boundary.
void CCutArea::resetEN(double& x, double& y, int code) const {
    const Line line = {m_lineX1, m_lineY1, m_lineX2 - m_lineX1, m_lineY2 - m_lineY1};
    MoveToBoundary({m_xmin, m_ymin, m_xmax, m_ymax}, line, code, x, y);
}

// Required: one segment at most, between the first two distinct crossings in the order of the edges, also where both
// ends are inside a concave polygon; and with both ends outside a single crossing moves the first end with the result
// 0.
int CCutArea::CutLineToPolygon(double& x1, double& y1, double& x2, double& y2) {
    const int in1 = cutpoint(x1, y1);
    const int in2 = cutpoint(x2, y2);
    if (m_polygonSize < 1) return in1 & in2;
    const bool oneInside = (in1 != 0) != (in2 != 0);
    bool kept = false;
    double keptX = 0.0;
    double keptY = 0.0;
    bool done = false;
    // The crossings are those of the ends as they came.
    zm::draw::ForEachCrossing(m_polygon, m_polygonSize, x1, y1, x2, y2, [&](double cx, double cy) {
        if (oneInside) {
            (in1 != 0 ? x2 : x1) = cx;
            (in1 != 0 ? y2 : y1) = cy;
            done = true;
        } else if (!kept) {
            keptX = cx;
            keptY = cy;
            kept = true;
        } else if (std::fabs(cx - keptX) >= kSamePoint || std::fabs(cy - keptY) >= kSamePoint) {
            x2 = cx;
            y2 = cy;
            done = true;
        }
        return !done;
    });
    if (kept) {
        x1 = keptX;
        y1 = keptY;
    }
    return done ? 1 : in1 & in2;
}

int CCutArea::cutpolygon(double* x, double* y, int n) {
    if (m_docut == 0) return n;
    if (n < 1 || x == nullptr || y == nullptr) return 0;
    std::size_t written = 0;
    for (std::size_t i = 0; i < static_cast<std::size_t>(n); ++i) {
        double x1 = x[i];
        double y1 = y[i];
        double x2 = x[i + 1];
        double y2 = y[i + 1];
        if (cutline(x1, y1, x2, y2) == 0) continue;
        // Required: the pairs go into the arrays that are still being read, over points of later edges.
        x[written] = x1;
        y[written] = y1;
        x[written + 1] = x2;
        y[written + 1] = y2;
        written += 2;
    }
    return static_cast<int>(written / 2);
}
