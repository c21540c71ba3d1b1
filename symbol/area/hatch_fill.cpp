#include "symbol/area/hatch_fill.h"

#include <array>
#include <memory>

#include "draw/device.h"
#include "symbol/paper.h"

namespace zm::symbol {
namespace {

struct DeleteHandle {
    using pointer = HBRUSH;
    void operator()(HBRUSH brush) const { device::DeleteObject(brush); }
};
using OwnedBrush = std::unique_ptr<HBRUSH, DeleteHandle>;

struct DeleteBitmap {
    using pointer = HBITMAP;
    void operator()(HBITMAP bitmap) const { device::DeleteObject(bitmap); }
};
using OwnedBitmap = std::unique_ptr<HBITMAP, DeleteBitmap>;

// The device's text colour, which a bitmap is filled with, for a scope.
class TextColour {
 public:
    TextColour(HDC dc, COLORREF colour) : m_dc(dc), m_previous(device::SetTextColor(dc, colour)) {}
    ~TextColour() { device::SetTextColor(m_dc, m_previous); }
    TextColour(const TextColour&) = delete;
    TextColour& operator=(const TextColour&) = delete;

 private:
    HDC m_dc;
    COLORREF m_previous;
};

HBRUSH BrushOf(int style, COLORREF colour) {
    constexpr std::array<int, 7> kStyles = {
        0, HS_BDIAGONAL, HS_CROSS, HS_DIAGCROSS, HS_FDIAGONAL, HS_HORIZONTAL, HS_VERTICAL};
    if (style == 0) return device::CreateSolidBrush(colour);
    const bool known = style > 0 && style < static_cast<int>(kStyles.size());
    return device::CreateHatchBrush(known ? kStyles[static_cast<std::size_t>(style)] : HS_BDIAGONAL, colour);
}

int OutlineWidth(int penStyle, const tagLOGPEN& current) {
    return penStyle != 0 ? 0 : static_cast<int>(current.lopnWidth.x);
}

}  // namespace

int FillBrushPolygon(int n, double* xy, int penStyle, int brushStyle, COLORREF colour) {
    const tagLOGPEN current = TqDC->GetCurLogpen();
    const CTQPen pen(penStyle, OutlineWidth(penStyle, current), DWORD{current.lopnColor});
    if (OnDwg()) return TqDC->lines(n, xy);
    const OwnedBrush brush(BrushOf(brushStyle, colour == kPenColour ? current.lopnColor : colour));
    TqDC->DrawPolygon(n, xy, brush.get());
    return 1;
}

int FillPatternPolygon(int n, double* xy, int penStyle, int /*brushStyle*/, COLORREF colour, std::uint32_t low,
                       std::uint32_t high) {
    const tagLOGPEN current = TqDC->GetCurLogpen();
    const CTQPen pen(penStyle, OutlineWidth(penStyle, current), DWORD{current.lopnColor});
    if (OnDwg()) return TqDC->lines(n, xy);
    // Required: each byte widened to 32 bits, so that the bitmap's rows take the first four, each with an empty one.
    std::array<std::uint32_t, 8> rows;
    for (std::size_t i = 0; i < rows.size(); ++i) rows[i] = (i < 4 ? low >> 8 * i : high >> 8 * (i - 4)) & 255U;
    const OwnedBitmap bitmap(device::CreateBitmap(8, 8, 1, 1, rows.data()));
    const OwnedBrush brush(device::CreatePatternBrush(bitmap.get()));
    const TextColour text(TqDC->GetHdc(), colour == kPenColour ? current.lopnColor : colour);
    TqDC->DrawPolygon(n, xy, brush.get());
    return 1;
}

}  // namespace zm::symbol
