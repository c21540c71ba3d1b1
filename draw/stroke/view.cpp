#include "draw/stroke/view.h"

#include <cmath>
#include <cstdint>

namespace zm::draw {
namespace {

// Outcodes of a pixel.
constexpr int kLeft = 1;
constexpr int kRight = 2;
constexpr int kAbove = 4;
constexpr int kBelow = 8;

class ViewClip {
 public:
    ViewClip(int width, int height, Pixel from, Pixel to)
        : m_width(width),
          m_height(height),
          m_x1(from.x),
          m_y1(from.y),
          m_dx(Difference(to.x, from.x)),
          m_dy(Difference(to.y, from.y)) {}

    int Code(Pixel at) const {
        return (at.x < 0 ? kLeft : 0) + (at.x > m_width ? kRight : 0) + (at.y < 0 ? kAbove : 0) +
               (at.y > m_height ? kBelow : 0);
    }

    // Required: an end moves once, by the ends as they came in, and is not tested again: a line that misses the view
    // past a corner still draws its moved ends.
    void Move(Pixel& end, int code) const {
        switch (code) {
            case kLeft:
            case kLeft + kAbove:
            case kLeft + kBelow:
                end = {0, Sum(m_y1, Quotient(m_dy, m_x1, m_dx), -1)};
                MoveInHeight(end);
                break;
            case kRight:
            case kRight + kAbove:
            case kRight + kBelow:
                end = {m_width, Sum(m_y1, Quotient(Difference(m_width, m_x1), m_dy, m_dx), 1)};
                MoveInHeight(end);
                break;
            case kAbove:
                end = {Sum(m_x1, Quotient(Difference(0, m_dx), m_y1, m_dy), 1), 0};
                break;
            case kBelow:
                end = {Sum(m_x1, Quotient(Difference(m_height, m_y1), m_dx, m_dy), 1), m_height};
                break;
            default:
                break;
        }
    }

 private:
    void MoveInHeight(Pixel& end) const {
        if (end.y < 0)
            end = {Sum(m_x1, Quotient(m_dx, m_y1, m_dy), -1), 0};
        else if (end.y > m_height)
            end = {Sum(m_x1, Quotient(Difference(m_height, m_y1), m_dx, m_dy), 1), m_height};
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

}  // namespace

bool ClipToView(const CTqDraw& dc, Pixel& from, Pixel& to) {
    const ViewClip clip(Access::ViewWidth(dc), Access::ViewHeight(dc), from, to);
    const int c1 = clip.Code(from);
    const int c2 = clip.Code(to);
    if ((c1 & c2) != 0) return false;
    if (c1 != 0) clip.Move(from, c1);
    if (c2 != 0) clip.Move(to, c2);
    return true;
}

Rotation::Rotation(const CTqDraw& dc) {
    double angle = 0.0;
    m_active = dc.GetRotateMoveP(angle, m_x, m_y) != 0;
    if (!m_active) return;
    m_cos = std::cos(angle / kDegreesPerRadian);
    m_sin = std::sin(angle / kDegreesPerRadian);
}

// The pixel is 0 from above -1 on, and the last one up to below the next.
ViewBox::ViewBox(const CTqDraw& dc)
    : m_origin{Access::OriginX(dc), Access::OriginY(dc)},
      m_scale{Access::Scale(dc), -Access::Scale(dc)},
      m_shift{0.0, static_cast<double>(Access::ViewHeight(dc))},
      m_low{-1.0, -1.0},
      m_high{std::min<double>(Access::ViewWidth(dc), kFarthestPixel) + 1.0,
             std::min<double>(Access::ViewHeight(dc), kFarthestPixel) + 1.0} {
    const bool hasView = Access::ViewWidth(dc) >= 0 && Access::ViewHeight(dc) >= 0 && !Access::IsFlipped(dc);
    if (!hasView || (!Access::IsUnclipped(dc) && Access::IsPolygon(dc)))
        m_high = m_low;
    else if (!Access::IsUnclipped(dc))
        ShrinkTo(dc);
}

// To the clip rectangle: the mapping never turns the order of two positions, so what lies beyond the pixels of its
// edges, to the inside, has outcodes of 0.
void ViewBox::ShrinkTo(const CTqDraw& dc) {
    const geometry::Pair a = PixelsOf(geometry::Pair{Access::ClipXMin(dc), Access::ClipYMax(dc)});
    const geometry::Pair b = PixelsOf(geometry::Pair{Access::ClipXMax(dc), Access::ClipYMin(dc)});
    const geometry::Pair low = b < a ? b : a;
    const geometry::Pair high = a < b ? b : a;
    m_low = m_low < low ? low : m_low;
    // An edge that is NaN leaves nothing.
    m_high = low <= high ? (high < m_high ? high : m_high) : m_low;
}

}  // namespace zm::draw
