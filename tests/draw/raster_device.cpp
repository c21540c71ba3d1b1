#include "tests/draw/raster_device.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>

#include "platform/device/arc_figure.h"
#include "platform/device/dashes.h"

namespace zm::test {
namespace {

std::int64_t CeilDiv(std::int64_t a, std::int64_t b) {
    return a / b + (a % b > 0 ? 1 : 0);
}

// a + b * k / n, rounded to the nearest, half way to the smaller.
int Nearest(int a, std::int64_t b, std::int64_t k, std::int64_t n) {
    return a + static_cast<int>(CeilDiv(2 * b * k - n, 2 * n));
}

// Is the step of a line drawn under its dashes?
bool IsStroke(int style, int step) {
    const auto dashes = platform::DashesOf(style);
    if (dashes.empty()) return true;
    int sum = 0;
    for (const int length : dashes) sum += length;
    step %= sum;
    for (std::size_t i = 0; i < dashes.size(); ++i) {
        if (step < dashes[i]) return i % 2 == 0;
        step -= dashes[i];
    }
    return false;
}

}  // namespace

COLORREF RasterDevice::At(int x, int y) const {
    if (x < 0 || y < 0 || x >= m_width || y >= m_height) return CLR_INVALID;
    return m_pixels[Size(m_width, y) + static_cast<std::size_t>(x)];
}

void RasterDevice::Set(int x, int y, COLORREF color) {
    if (x < 0 || y < 0 || x >= m_width || y >= m_height) return;
    m_pixels[Size(m_width, y) + static_cast<std::size_t>(x)] = color;
}

// One pixel, or for a wide pen a disc.
void RasterDevice::Stamp(const Stroke& stroke, int x, int y) {
    if (stroke.width <= 1) return Set(x, y, stroke.color);
    const double radius = stroke.width / 2.0;
    const double middle = stroke.width % 2 == 0 ? -0.5 : 0.0;
    const int reach = stroke.width / 2 + 1;
    for (int dy = -reach; dy <= reach; ++dy)
        for (int dx = -reach; dx <= reach; ++dx)
            if (std::hypot(dx - middle, dy - middle) <= radius) Set(x + dx, y + dy, stroke.color);
}

int RasterDevice::Line(const Stroke& stroke, int x1, int y1, int x2, int y2) {
    const std::int64_t dx = static_cast<std::int64_t>(x2) - x1;
    const std::int64_t dy = static_cast<std::int64_t>(y2) - y1;
    const bool flat = std::llabs(dx) >= std::llabs(dy);
    const std::int64_t steps = std::max(std::llabs(dx), std::llabs(dy));
    Stroke gap = stroke;
    gap.color = stroke.gapColor;
    for (std::int64_t k = 0; k < steps; ++k) {
        const int x = flat ? x1 + static_cast<int>(dx > 0 ? k : -k) : Nearest(x1, dx, k, steps);
        const int y = flat ? Nearest(y1, dy, k, steps) : y1 + static_cast<int>(dy > 0 ? k : -k);
        if (IsStroke(stroke.style, static_cast<int>(k)))
            Stamp(stroke, x, y);
        else if (stroke.opaqueGaps)
            Stamp(gap, x, y);
    }
    if (stroke.width > 1) Stamp(stroke, x2, y2);
    return 1;
}

COLORREF RasterDevice::Dot(int x, int y, COLORREF color) {
    if (At(x, y) == CLR_INVALID) return CLR_INVALID;
    Set(x, y, color);
    return color;
}

int RasterDevice::Arc(const Stroke& stroke, const RECT& box, POINT start, POINT end) {
    if (box.left == box.right || box.top == box.bottom) return 1;
    const auto arc = platform::FigureOfArc(box, start, end);
    const int samples = static_cast<int>(8.0 * (arc.rx + arc.ry + 2.0) * arc.sweep);
    POINT last = {0, 0};
    for (int i = 0; i <= samples; ++i) {
        const double angle = arc.start + arc.sweep * i / samples;
        const POINT now = {static_cast<int>(std::lround(arc.X(angle))), static_cast<int>(std::lround(arc.Y(angle)))};
        if (i > 0 && (now.x != last.x || now.y != last.y)) Stamp(stroke, last.x, last.y);
        last = now;
    }
    return 1;
}

int RasterDevice::Box(const Stroke* stroke, const Fill& fill, const RECT& box) {
    const int left = std::min(box.left, box.right);
    const int right = std::max(box.left, box.right) - 1;
    const int top = std::min(box.top, box.bottom);
    const int bottom = std::max(box.top, box.bottom) - 1;
    // A box of one pixel draws nothing: its outline is a line of no length.
    if (left > right || top > bottom || (left == right && top == bottom)) return 1;
    FillRegion(Region::Rectangle(left, top, right + 1, bottom + 1), fill);
    if (stroke == nullptr) return 1;
    const int inset = stroke->style == PS_INSIDEFRAME ? stroke->width / 2 : 0;
    const int l = left + inset;
    const int t = top + inset;
    const int r = right - inset;
    const int b = bottom - inset;
    Stroke solid = *stroke;
    solid.style = stroke->style == PS_INSIDEFRAME ? PS_SOLID : stroke->style;
    Line(solid, l, t, r + 1, t);
    Line(solid, r, t, r, b + 1);
    Line(solid, r, b, l - 1, b);
    Line(solid, l, b, l, t - 1);
    return 1;
}

int RasterDevice::FillRegion(const Region& region, const Fill& fill) {
    if (fill.kind == Fill::Kind::none) return 1;
    for (const RECT& r : region.Rectangles())
        for (int y = std::max<int>(r.top, 0); y < std::min<int>(r.bottom, m_height); ++y)
            for (int x = std::max<int>(r.left, 0); x < std::min<int>(r.right, m_width); ++x) {
                if (fill.Inked(x, y))
                    Set(x, y, fill.color);
                else if (fill.opaque)
                    Set(x, y, fill.background);
            }
    return 1;
}

int RasterDevice::Text(const TextStyle& style, int x, int y, std::string_view text) {
    const int width = style.font.lfWidth != 0 ? std::abs(style.font.lfWidth) : 1;
    const int height = style.font.lfHeight != 0 ? std::abs(style.font.lfHeight) : 1;
    Fill fill;
    fill.color = style.color;
    return FillRegion(Region::Rectangle(x, y, x + width * static_cast<int>(text.size()), y + height), fill);
}

}  // namespace zm::test
