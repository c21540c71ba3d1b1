// Mapping to device pixels and the view clip of pixel lines. Inline: every stroke on a device comes through here.
#pragma once

#include <algorithm>
#include <cstdint>

#include "draw/access.h"
#include "draw/device.h"
#include "draw/numbers.h"
#include "draw/sinks.h"
#include "geometry/pair.h"

namespace zm::draw {

constexpr double kFarthestPixel = 30000.0;

struct Pixel {
    int x, y;
};

/// Truncated within what 16-bit device coordinates can take, with room for a flip: far-off points keep a direction
/// instead of wrapping. What is no number goes to the lower limit.
inline int PixelCoordinate(double value) {
    return static_cast<int>(value > -kFarthestPixel ? std::min(value, kFarthestPixel) : -kFarthestPixel);
}

/// The pixel of a survey position, as GetViewPos tells.
inline Pixel PixelOf(const CTqDraw& dc, double x, double y) {
    const int width = Access::ViewWidth(dc);
    const int height = Access::ViewHeight(dc);
    const Pixel pixel = {PixelCoordinate((x - Access::OriginX(dc)) * Access::Scale(dc)),
                         PixelCoordinate(height - (y - Access::OriginY(dc)) * Access::Scale(dc))};
    return Access::IsFlipped(dc) ? Pixel{width - pixel.x, height - pixel.y} : pixel;
}

// The view clip of pixel lines: one pass in whole numbers.
class ViewClip {
 public:
    ViewClip(int width, int height, int x1, int y1, int x2, int y2)
        : m_width(width), m_height(height), m_x1(x1), m_y1(y1), m_dx(Difference(x2, x1)), m_dy(Difference(y2, y1)) {}

    int Code(int x, int y) const {
        return (x < 0 ? 1 : 0) + (x > m_width ? 2 : 0) + (y < 0 ? 4 : 0) + (y > m_height ? 8 : 0);
    }

    // Required: an end moves once, by the ends as they came in, and is not tested again: a line that misses the view
    // past a corner still draws its moved ends.
    void Move(int& x, int& y, int code) const {
        switch (code) {
            case 1:
            case 5:
            case 9:
                x = 0;
                y = Sum(m_y1, Quotient(m_dy, m_x1, m_dx), -1);
                MoveInHeight(x, y);
                break;
            case 2:
            case 6:
            case 10:
                x = m_width;
                y = Sum(m_y1, Quotient(Difference(m_width, m_x1), m_dy, m_dx), 1);
                MoveInHeight(x, y);
                break;
            case 4:
                y = 0;
                x = Sum(m_x1, Quotient(Difference(0, m_dx), m_y1, m_dy), 1);
                break;
            case 8:
                y = m_height;
                x = Sum(m_x1, Quotient(Difference(m_height, m_y1), m_dx, m_dy), 1);
                break;
            default:
                break;
        }
    }

 private:
    void MoveInHeight(int& x, int& y) const {
        if (y < 0) {
            y = 0;
            x = Sum(m_x1, Quotient(m_dx, m_y1, m_dy), -1);
        } else if (y > m_height) {
            y = m_height;
            x = Sum(m_x1, Quotient(Difference(m_height, m_y1), m_dx, m_dy), 1);
        }
    }

    // Required: 32 bits throughout; what they cannot hold wraps.
    static int Wrapped(std::int64_t value) { return static_cast<int>(static_cast<std::uint32_t>(value)); }
    static int Difference(int a, int b) { return Wrapped(static_cast<std::int64_t>(a) - b); }
    static int Sum(int a, int b, int sign) { return Wrapped(a + static_cast<std::int64_t>(sign) * b); }
    // a * b / c, truncated toward zero. A c of 0 cannot come from ends whose codes share no bit, unless it wrapped.
    static int Quotient(int a, int b, int c) {
        const std::int64_t product = Wrapped(static_cast<std::int64_t>(a) * b);
        return c != 0 ? Wrapped(product / c) : 0;
    }

    int m_width, m_height;
    int m_x1, m_y1, m_dx, m_dy;
};

/// A line in pixels, clipped to the view. The result of the device, 0 if nothing remains.
inline int DrawPixelLine(const CTqDraw& dc, Pixel from, Pixel to) {
    const ViewClip clip(Access::ViewWidth(dc), Access::ViewHeight(dc), from.x, from.y, to.x, to.y);
    const int c1 = clip.Code(from.x, from.y);
    const int c2 = clip.Code(to.x, to.y);
    if ((c1 & c2) != 0) return 0;
    if (c1 != 0) clip.Move(from.x, from.y, c1);
    if (c2 != 0) clip.Move(to.x, to.y, c2);
    return device::DrawLine(Access::Device(dc), from.x, from.y, to.x, to.y);
}

/// A line between any survey positions, on the device; 0 where one is no finite number.
int DrawDistantLine(const CTqDraw& dc, double x1, double y1, double x2, double y2);

/// A line on whatever sink: rotated, clipped, forked. Apart, so that the common way saves no registers.
[[gnu::noinline]] int DrawLineAnywhere(CTqDraw& dc, double x1, double y1, double x2, double y2);

/// Whether there is nothing to rotate or to clip by an area, on a device: by far the most common.
inline bool IsPlainDevice(const CTqDraw& dc) {
    return !Access::IsRotated(dc) && Access::IsUnclipped(dc) && SinkOf(Access::Type(dc)) == Sink::device;
}

/// The mapping of strokes that lie in the view as they are, which most do.
class PlainView {
 public:
    /// No view at all: nothing lies in it.
    PlainView() : m_origin{}, m_scale{}, m_shift{}, m_limit{-1.0, -1.0} {}
    explicit PlainView(const CTqDraw& dc)
        : m_origin{Access::OriginX(dc), Access::OriginY(dc)},
          m_scale{Access::Scale(dc), -Access::Scale(dc)},
          m_shift{0.0, static_cast<double>(Access::ViewHeight(dc))},
          m_limit{Access::IsFlipped(dc) ? -1.0 : std::min<double>(Access::ViewWidth(dc), kFarthestPixel),
                  std::min<double>(Access::ViewHeight(dc), kFarthestPixel)} {}

    /// The pixels of both ends. False, with nothing set, where one may not be in the view.
    bool Map(geometry::Pair from, geometry::Pair to, POINT* ends) const {
        constexpr geometry::Pair kZero = {0.0, 0.0};
        const geometry::Pair a = PixelsOf(from);
        const geometry::Pair b = PixelsOf(to);
        if (!geometry::Both((a >= kZero) & (a <= m_limit) & (b >= kZero) & (b <= m_limit))) return false;
        ends[0] = {static_cast<int>(a[0]), static_cast<int>(a[1])};
        ends[1] = {static_cast<int>(b[0]), static_cast<int>(b[1])};
        return true;
    }

    /// A position in pixels with all that lies behind the point: truncated it is the pixel if it lies in the view.
    geometry::Pair PixelsOf(geometry::Pair position) const { return (position - m_origin) * m_scale + m_shift; }
    /// Whether everything up to so many pixels from there lies in the view.
    bool Holds(geometry::Pair pixels, double reach) const {
        const geometry::Pair least = pixels - reach;
        return geometry::Both((least >= geometry::Pair{0.0, 0.0}) & (pixels + reach <= m_limit));
    }
    /// The survey position of the view's lower left corner, and pixels for each unit of x and of y.
    geometry::Pair origin() const { return m_origin; }
    geometry::Pair scale() const { return m_scale; }

 private:
    geometry::Pair m_origin, m_scale, m_shift, m_limit;
};

/// A line between survey positions on the device; 0 where one is no finite number.
inline int DrawSurveyLine(const CTqDraw& dc, double x1, double y1, double x2, double y2) {
    POINT ends[2];
    if (PlainView(dc).Map(geometry::Pair{x1, y1}, geometry::Pair{x2, y2}, ends))
        return device::DrawLine(Access::Device(dc), ends[0].x, ends[0].y, ends[1].x, ends[1].y);
    return DrawDistantLine(dc, x1, y1, x2, y2);
}

}  // namespace zm::draw
