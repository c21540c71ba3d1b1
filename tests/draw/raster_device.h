// A picture of pixels that tests draw on: the plain rules of a pixel device, with no antialiasing.
#pragma once

#include <cstdint>
#include <vector>

#include "zenromath/device.h"

namespace zm::test {

class RasterDevice : public Device {
 public:
    RasterDevice(int width, int height) : m_width(width), m_height(height), m_pixels(Size(width, height), kWhite) {}

    static constexpr COLORREF kWhite = 0xFFFFFF;
    int width() const { return m_width; }
    int height() const { return m_height; }
    /// CLR_INVALID outside.
    COLORREF At(int x, int y) const;

    int Line(const Stroke& stroke, int x1, int y1, int x2, int y2) override;
    COLORREF Dot(int x, int y, COLORREF color) override;
    int Arc(const Stroke& stroke, const RECT& box, POINT start, POINT end) override;
    int Box(const Stroke* stroke, const Fill& fill, const RECT& box) override;
    int FillRegion(const Region& region, const Fill& fill) override;
    /// A filled box of one cell for each byte.
    int Text(const TextStyle& style, int x, int y, std::string_view text) override;

 private:
    static std::size_t Size(int width, int height) {
        return static_cast<std::size_t>(width) * static_cast<std::size_t>(height);
    }
    void Set(int x, int y, COLORREF color);
    void Stamp(const Stroke& stroke, int x, int y);

    int m_width, m_height;
    std::vector<COLORREF> m_pixels;
};

}  // namespace zm::test
