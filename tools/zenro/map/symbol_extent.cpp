#include "tools/zenro/map/symbol_extent.h"

#include <algorithm>
#include <array>

#include "tools/zenro/map/codes.h"
#include "tools/zenro/map/library_session.h"
#include "zenromath/device.h"
#include "zenromath/draw.h"
#include "zenromath/symbol.h"

namespace zm::tool {
namespace {

constexpr int kStage = 8000;  // device units, the origin in its middle
constexpr int kMiddle = kStage / 2;
constexpr double kUnits = 50.0;  // a millimetre

// Keeps nothing but the rectangle around what is drawn.
class ExtentDevice : public Device {
 public:
    int Line(const Stroke&, int x1, int y1, int x2, int y2) override {
        Add(x1, y1);
        Add(x2, y2);
        return 1;
    }
    COLORREF Dot(int x, int y, COLORREF color) override {
        Add(x, y);
        return color;
    }
    // The whole ellipse: an arc of a symbol's outline reaches nearly as far.
    int Arc(const Stroke&, const RECT& box, POINT, POINT) override {
        Add(box.left, box.top);
        Add(box.right, box.bottom);
        return 1;
    }
    int Box(const Stroke*, const Fill&, const RECT& box) override { return Arc({}, box, {}, {}); }
    int FillRegion(const Region& region, const Fill&) override {
        for (const RECT& r : region.Rectangles()) Arc({}, r, {}, {});
        return 1;
    }
    int Text(const TextStyle&, int, int, std::string_view) override { return 1; }

    tool::Box Taken() {
        const tool::Box taken = m_box;
        m_box = {};
        return taken;
    }

 private:
    void Add(int x, int y) { m_box.Add((x - kMiddle) / kUnits, (kMiddle - y) / kUnits); }
    tool::Box m_box;
};

std::array<Box, kCodes>& Extents() {
    static std::array<Box, kCodes> extents;
    return extents;
}

}  // namespace

void MeasureSymbols() {
    ExtentDevice device;
    const double scale = getcurgscale();
    setgscale(1000.0);
    SelectWorkingTqDC(nullptr);
    {
        CTqDraw context(0);
        context.SetViewDrawDC(&device, kUnits, -kMiddle / kUnits, -kMiddle / kUnits, kStage, kStage, 0);
        for (int code = 1; code < kCodes; ++code) {
            Extents()[static_cast<std::size_t>(code)] = {};
            const SymbolKind kind = KindOfSymbol(code);
            if (!kind.known || kind.status != SymbolStatusG) continue;
            insert(0.0, 0.0, 0.0, code);
            Extents()[static_cast<std::size_t>(code)] = device.Taken();
        }
    }
    SelectWorkingTqDC(nullptr);
    setgscale(scale);
}

const Box& ExtentOfSymbol(int code) {
    static const Box kNone;
    return code > 0 && code < kCodes ? Extents()[static_cast<std::size_t>(code)] : kNone;
}

}  // namespace zm::tool
