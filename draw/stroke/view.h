// The mapping of survey positions to device pixels, the view clip of pixel lines, and the box in which a stroke needs
// neither clip. Inline where every stroke on a device comes through.
#pragma once

#include <algorithm>
#include <cstring>

#include "draw/access.h"
#include "draw/numbers.h"
#include "geometry/exact/pair.h"

namespace zm::draw {

constexpr double kFarthestPixel = 30000.0;

struct Pixel {
    int x, y;
};

/// Truncated within what 16-bit device coordinates can take, with room for a flip: far-off points keep a direction
/// instead of wrapping. NaN goes to the lower limit.
inline int PixelCoordinate(double value) {
    return static_cast<int>(value > -kFarthestPixel ? std::min(value, kFarthestPixel) : -kFarthestPixel);
}

/// The pixel of a survey position, as GetViewPos gives it.
inline Pixel PixelOf(const CTqDraw& dc, double x, double y) {
    const int width = Access::ViewWidth(dc);
    const int height = Access::ViewHeight(dc);
    const Pixel pixel = {PixelCoordinate((x - Access::OriginX(dc)) * Access::Scale(dc)),
                         PixelCoordinate(height - (y - Access::OriginY(dc)) * Access::Scale(dc))};
    return Access::IsFlipped(dc) ? Pixel{width - pixel.x, height - pixel.y} : pixel;
}

/// Clips a line in pixels to the view, by one pass in whole numbers. False if nothing remains.
bool ClipToView(const CTqDraw& dc, Pixel& from, Pixel& to);

/// The rotation of a context (SetRotateMoveP), its cosine and sine taken once.
class Rotation {
 public:
    /// None.
    Rotation() = default;
    explicit Rotation(const CTqDraw& dc);

    bool IsActive() const { return m_active; }
    /// As GetRMCoord moves a point.
    geometry::Pair Of(geometry::Pair p) const {
        const double dx = p[0] - m_x;
        const double dy = p[1] - m_y;
        return geometry::Pair{m_cos * dx + m_x - m_sin * dy, m_sin * dx + m_y + m_cos * dy};
    }

 private:
    bool m_active = false;
    double m_cos = 1.0, m_sin = 0.0;
    double m_x = 0.0, m_y = 0.0;
};

/// The part of a device's view in which strokes are drawn as they are: neither the view nor the clip area touches them.
/// Nothing lies in that of a flipped view or of a clip polygon.
class ViewBox {
 public:
    /// None: nothing lies in it.
    ViewBox() : m_origin{}, m_scale{}, m_shift{}, m_low{}, m_high{} {}
    explicit ViewBox(const CTqDraw& dc);

    bool IsEmpty() const { return !geometry::Both(m_low < m_high); }
    /// The pixels of both ends, rotated before. False, with nothing set, where one is not in the box.
    bool Map(geometry::Pair from, geometry::Pair to, POINT* ends) const {
        const geometry::Pair a = PixelsOf(from);
        const geometry::Pair b = PixelsOf(to);
        if (!geometry::Both((a > m_low) & (a < m_high) & (b > m_low) & (b < m_high))) return false;
        PutPixel(a, ends);
        PutPixel(b, ends + 1);
        return true;
    }

    /// A position in pixels with all that lies after the point: truncated it is the pixel if it lies in the box.
    geometry::Pair PixelsOf(geometry::Pair position) const { return (position - m_origin) * m_scale + m_shift; }
    /// Whether everything up to so many pixels from there lies in the box, with pixels that are the next lower whole
    /// numbers as well.
    bool Holds(geometry::Pair pixels, double reach) const {
        const geometry::Pair least = pixels - reach;
        return geometry::Both((least > m_low) & (least >= geometry::Pair{0.0, 0.0}) & (pixels + reach < m_high));
    }
    /// The survey position of the view's lower left corner, and pixels for each unit of x and of y.
    geometry::Pair origin() const { return m_origin; }
    geometry::Pair scale() const { return m_scale; }

 private:
    static void PutPixel(geometry::Pair pixels, POINT* out) {
        const geometry::IntPair pixel = __builtin_convertvector(pixels, geometry::IntPair);
        static_assert(sizeof(pixel) == sizeof(*out));
        std::memcpy(out, &pixel, sizeof(pixel));
    }
    void ShrinkTo(const CTqDraw& dc);

    geometry::Pair m_origin, m_scale, m_shift;
    geometry::Pair m_low, m_high;  // pixels; the bounds themselves are out
};

}  // namespace zm::draw
