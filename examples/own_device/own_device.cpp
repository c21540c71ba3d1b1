// A device of one's own: it adds up the ink of a map instead of drawing it.
#include <zenromath.h>
#include <zenromath/device.h>

#include <cmath>
#include <cstdio>

namespace {

class Ink : public zm::Device {
 public:
    double millimetres() const { return m_pixels / 10.0; }
    int Line(const zm::Stroke&, int x1, int y1, int x2, int y2) override {
        m_pixels += std::hypot(x2 - x1, y2 - y1);
        return 1;
    }
    COLORREF Dot(int, int, COLORREF color) override { return color; }
    int Arc(const zm::Stroke&, const RECT& box, POINT, POINT) override {
        m_pixels += 3.14159 * (box.right - box.left);
        return 1;
    }
    int Box(const zm::Stroke*, const zm::Fill&, const RECT&) override { return 1; }
    int FillRegion(const zm::Region&, const zm::Fill&) override { return 1; }
    int Text(const zm::TextStyle&, int, int, std::string_view) override { return 1; }

 private:
    double m_pixels = 0.0;
};

}  // namespace

int main() {
    Ink ink;
    CTqDraw dc(0);
    dc.SetViewDrawDC(&ink, 10.0, 0.0, 0.0, 1000, 1000, 0);  // 10 pixels a metre, which at 1:1000 is a millimetre
    dc.SetCutArea();
    dc.SetDoCut(1);
    dc.line(10.0, 10.0, 40.0, 50.0);
    dc.line(-100.0, 20.0, 200.0, 20.0);  // reaches beyond the view and is cut
    std::printf("%.1f mm of ink\n", ink.millimetres());
    SelectWorkingTqDC(nullptr);
    return 0;
}
