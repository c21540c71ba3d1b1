// Filled polygons: the fill on a device, the outline everywhere.
#include <cmath>
#include <cstddef>
#include <stdexcept>

#include "draw/device.h"
#include "draw/stroke/sinks.h"
#include "draw/stroke/view.h"
#include "zenromath/draw.h"

using namespace zm;

namespace {

using Points = CArray<CPoint, CPoint&>;

constexpr double kSamePoint = 1e-6;  // metres; first and last point of a closed polygon

class ScopedRegion {
 public:
    explicit ScopedRegion(HRGN region) : m_region(region) {}
    ~ScopedRegion() { device::DeleteObject(m_region); }
    ScopedRegion(const ScopedRegion&) = delete;
    ScopedRegion& operator=(const ScopedRegion&) = delete;
    HRGN get() const { return m_region; }

 private:
    HRGN m_region;
};

bool IsClosed(int n, const double* xy) {
    const double* last = xy + 2 * (static_cast<std::ptrdiff_t>(n) - 1);
    return std::fabs(last[0] - xy[0]) <= kSamePoint && std::fabs(last[1] - xy[1]) <= kSamePoint;
}

HRGN PolygonRegion(Points& points) {
    return device::CreatePolygonRgn(points.GetData(), static_cast<int>(points.GetSize()), ALTERNATE);
}

HRGN ClipRectangle(const CTqDraw& dc) {
    double left = 0.0;
    double top = 0.0;
    double right = 0.0;
    double bottom = 0.0;
    dc.GetCutArea(left, top, right, bottom);
    // Required: the rectangle is not rotated, while the clip polygon is.
    const draw::Pixel topLeft = draw::PixelOf(dc, left, top);
    const draw::Pixel bottomRight = draw::PixelOf(dc, right, bottom);
    return device::CreateRectRgn(topLeft.x, topLeft.y, bottomRight.x, bottomRight.y);
}

HRGN ClipPolygon(const CTqDraw& dc) {
    int n = 0;
    PP* polygon = nullptr;
    dc.getcutarea(n, polygon);
    Points points;
    if (polygon == nullptr || dc.ToIntPoints(n, &polygon->x, &points) == 0)
        throw std::invalid_argument("DrawPolygon: the clipping switch is 2 and there is no clip polygon");
    return PolygonRegion(points);
}

void Fill(const CTqDraw& dc, int n, double* xy, HBRUSH brush) {
    Points points;
    if (dc.ToIntPoints(n, xy, &points) == 0) return;
    const ScopedRegion figure(PolygonRegion(points));
    if (dc.get_docut() == 0) {
        device::FillRgn(dc.GetHdc(), figure.get(), brush);
        return;
    }
    // Required: the switch decides and not the kind of the area, so a polygon area with the switch at 1 fills within
    // its bounding rectangle.
    const ScopedRegion clip(dc.get_docut() == 2 ? ClipPolygon(dc) : ClipRectangle(dc));
    if (device::CombineRgn(figure.get(), figure.get(), clip.get(), RGN_AND) > NULLREGION)
        device::FillRgn(dc.GetHdc(), figure.get(), brush);
}

}  // namespace

int CTqDraw::DrawPolygon(int n, double* xy, HBRUSH brush) {
    if (xy != nullptr && n > 3 && draw::SinkOf(m_type) == draw::Sink::device && IsClosed(n, xy))
        Fill(*this, n, xy, brush);
    return lines(n, xy);
}
