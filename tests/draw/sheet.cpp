#include "tests/draw/sheet.h"

#include <cmath>
#include <string>
#include <vector>

#include "draw/device.h"
#include "runtime/text/gbk.h"

namespace zm::test {
namespace {

constexpr COLORREF kBlack = 0x000000;
constexpr COLORREF kRed = 0x0000FF;
constexpr COLORREF kGreen = 0x008000;
constexpr COLORREF kBlue = 0xFF0000;
constexpr COLORREF kGrey = 0xA0A0A0;

// A text that the calls may write to, from UTF-8.
class Gbk {
 public:
    explicit Gbk(const char* utf8) : m_bytes(gbk::FromUtf8(utf8)) {}
    operator char*() { return m_bytes.data(); }

 private:
    std::string m_bytes;
};

void Caption(CTqDraw& dc, double x, double y, const char* utf8) {
    const CTQFont font(3.5, 1.75, 1, 0.0, 0);
    Gbk text(utf8);
    dc.textout(x, y, text, 0, 0);
}

void Frame(CTqDraw& dc, double x1, double y1, double x2, double y2) {
    const CTQPen pen(PS_SOLID, 0.1, kGrey);
    dc.drawrect(x1, y1, x2, y2);
}

void Pens(CTqDraw& dc) {
    Caption(dc, 5, 197, "Pens: seven styles, four widths");
    for (int style = 0; style < 7; ++style) {
        const double y = 188.0 - 4.0 * style;
        const double widths[] = {0.0, 0.3, 0.7, 1.4};
        for (int k = 0; k < 4; ++k) {
            const CTQPen pen(style, widths[k], kBlue);
            dc.line(5.0 + 22.0 * k, y, 24.0 + 22.0 * k, y + 1.0);
        }
    }
    double xy[] = {5, 160, 20, 158, 30, 160, 45, 156, 60, 160, 75, 158, 90, 160};
    const CTQPen pen(PS_DASHDOT, 0.4, kRed);
    dc.lines(7, xy);
}

void Fills(CTqDraw& dc) {
    Caption(dc, 100, 197, "Fills: solid, six hatches, pattern, outline; clip by rectangle and polygon");
    const CTQPen pen(PS_SOLID, 0.3, kBlack);
    device::SetBkMode(dc.GetHdc(), TRANSPARENT);
    for (int k = 0; k < 8; ++k) {
        const double x = 100.0 + 21.0 * k;
        double xy[] = {x, 176, x + 17, 176, x + 19, 190, x + 9, 184, x + 1, 191, x, 176};
        HBRUSH brush = k == 0 ? device::CreateSolidBrush(0x80FFFF) : device::CreateHatchBrush(k - 1, kRed);
        if (k == 7) {
            const std::uint16_t rows[8] = {0x00C3, 0x0081, 0, 0x0018, 0x0018, 0, 0x0081, 0x00C3};
            const HBITMAP bitmap = device::CreateBitmap(8, 8, 1, 1, rows);
            brush = device::CreatePatternBrush(bitmap);
            device::DeleteObject(bitmap);
            device::SetTextColor(dc.GetHdc(), kGreen);
        }
        dc.DrawPolygon(6, xy, brush);
        device::SetTextColor(dc.GetHdc(), kBlack);
        device::DeleteObject(brush);
    }
    const HBRUSH brush = device::CreateHatchBrush(HS_DIAGCROSS, kGreen);
    for (int k = 0; k < 2; ++k) {
        const double x = 100.0 + 60.0 * k;
        double xy[] = {x, 145, x + 50, 145, x + 50, 170, x, 170, x, 145};
        double px[] = {x + 5, x + 45, x + 55, x + 25, x + 10};
        double py[] = {140, 148, 165, 172, 160};
        if (k == 0)
            dc.SetCutArea(x + 8, 140, x + 44, 165);
        else
            dc.SetCutArea(5, px, py);
        dc.SetDoCut(k == 0 ? 1 : 2);
        dc.DrawPolygon(5, xy, brush);
        dc.SetDoCut(0);
    }
    device::DeleteObject(brush);
}

void Arcs(CTqDraw& dc) {
    Caption(dc, 5, 150, "Arcs: circles, pieces, dots, clipped");
    const CTQPen pen(PS_SOLID, 0.2, kBlack);
    for (int k = 1; k < 5; ++k) dc.drawarc(20.0, 132.0, 3.0 * k, 0.0, 0.0);
    for (int k = 0; k < 6; ++k) dc.drawarc(48.0, 132.0, 2.0 * (k + 1), k * 0.8, k * 0.8 + 1.5);
    dc.drawarc(64.0, 144.0, 88.0, 120.0, 88.0, 132.0, 76.0, 144.0);
    for (int k = 0; k < 10; ++k) dc.drawarc(64.0 + 2.0 * k, 118.0, 0.02 * k, 0.0, 0.0);
    Frame(dc, 8, 98, 40, 114);
    dc.SetCutArea(8, 98, 40, 114);
    dc.SetDoCut(1);
    for (int k = 0; k < 6; ++k) dc.drawarc(12.0 + 5.0 * k, 100.0 + 2.0 * k, 8.0, 0.0, 0.0);
    dc.SetDoCut(0);
    double x[] = {50, 85, 85, 68, 50};
    double y[] = {96, 96, 114, 102, 114};
    std::vector<double> outline;
    for (int i = 0; i <= 5; ++i) outline.insert(outline.end(), {x[i % 5], y[i % 5]});
    {
        const CTQPen grey(PS_SOLID, 0.1, kGrey);
        dc.lines(6, outline.data());
    }
    dc.SetCutArea(5, x, y);
    dc.SetDoCut(1);
    for (int k = 0; k < 6; ++k) dc.drawarc(68.0, 104.0, 3.0 + 3.0 * k, 0.3, 6.0);
    dc.SetDoCut(0);
}

void Lines(CTqDraw& dc) {
    Caption(dc, 100, 136, "Clip: rays at a rectangle and a polygon");
    Frame(dc, 110, 102, 140, 124);
    for (int kind = 0; kind < 2; ++kind) {
        const double cx = 125.0 + 60.0 * kind;
        if (kind == 0) {
            dc.SetCutArea(110, 102, 140, 124);
        } else {
            double x[] = {170, 200, 203, 186, 168};
            double y[] = {100, 102, 126, 112, 124};
            std::vector<double> outline;
            for (int i = 0; i <= 5; ++i) outline.insert(outline.end(), {x[i % 5], y[i % 5]});
            const CTQPen grey(PS_SOLID, 0.1, kGrey);
            dc.lines(6, outline.data());
            dc.SetCutArea(5, x, y);
        }
        dc.SetDoCut(1);
        const CTQPen pen(PS_SOLID, 0.15, kRed);
        for (int k = 0; k < 24; ++k) {
            const double a = k * 6.283185307179586 / 24;
            dc.line(cx, 108.0, cx + 24.0 * std::cos(a), 108.0 + 24.0 * std::sin(a));
        }
        dc.SetDoCut(0);
    }
    for (int k = 0; k < 4; ++k) dc.pixel(215.0 + 4.0 * k, 110.0, kBlue, k);
    const CTQPen pen(PS_SOLID, 0.2, kGreen);
    for (int k = 0; k < 9; ++k) {
        dc.SetRotateMoveP(10.0 * k, 245.0, 115.0);
        dc.drawrect(240.0, 112.0, 255.0, 118.0);
    }
    dc.SetRotateMoveP(0.0, 0.0, 0.0);
}

void Cross(CTqDraw& dc, double x, double y) {
    const CTQPen pen(PS_SOLID, 0.0, kRed);
    dc.line(x - 1.5, y, x + 1.5, y);
    dc.line(x, y - 1.5, x, y + 1.5);
}

void Texts(CTqDraw& dc) {
    Caption(dc, 5, 90, "Text: anchor modes at the crosses, level and turned");
    const char* const samples[] = {"测量Map", "测量Map", "测量Map", "测量Map", "测量Map", "12.35"};
    for (int mode = 0; mode < 6; ++mode)
        for (int turned = 0; turned < 2; ++turned) {
            const double x = 30.0 + 42.0 * mode;
            const double y = 72.0 - 24.0 * turned;
            CTQFont font(4.0, 2.0, 1, 30.0 * turned, 0);
            Gbk text(samples[mode]);
            double tx = x;
            double ty = y;
            dc.ResetStringPos(tx, ty, text, mode);
            dc.textout(tx, ty, text, 0, 0);
            double box[8];
            if (dc.Get4CC(tx, ty, box, text) != 0) {
                const CTQPen grey(PS_SOLID, 0.0, kGrey);
                for (int k = 0; k < 4; ++k) {
                    const int next = (k + 1) % 4;
                    dc.line(box[2 * k], box[2 * k + 1], box[2 * next], box[2 * next + 1]);
                }
            }
            Cross(dc, x, y);
        }
    Caption(dc, 5, 30, "Text along a direction; colours; narrow and wide");
    const double angles[] = {0.0, 0.4, 1.0, 1.5707963267948966, -0.5};
    for (int k = 0; k < 5; ++k) {
        CTQFont font(3.5, 1.8, 1, 0.0, 0);
        font._settextcolor(k + 2);
        Gbk text("长江 Yangtze");
        dc.textout(10.0 + 30.0 * k, 14.0, text, angles[k], 0.6);
    }
    const double widths[] = {1.0, 1.75, 3.0};
    for (int k = 0; k < 3; ++k) {
        const CTQFont font(3.5, widths[k], 1, 0.0, 0);
        Gbk text("黄河 River");
        dc.textout(190.0, 24.0 - 6.0 * k, text, 0, 0);
    }
}

// The same figure twice more at the right edge: kept inside a frame, and as placed by textRout.
void Placed(CTqDraw& dc) {
    Frame(dc, 230, 5, 275, 28);
    dc.SetCutArea(230, 5, 275, 28);
    dc.SetDoCut(1);
    const CTQFont font(3.5, 1.75, 1, 0.0, 0);
    Gbk right("kept in");
    double x = 274.0;
    double y = 27.5;
    dc.textRout(x, y, right, 0);
    Gbk low("kept 内");
    x = 231.0;
    y = 6.0;
    dc.textRout(x, y, low, 0);
    dc.SetDoCut(0);
}

}  // namespace

void DrawSheet(CTqDraw& dc) {
    Frame(dc, 1, 1, kSheetWidth - 1, kSheetHeight - 1);
    Pens(dc);
    Fills(dc);
    Arcs(dc);
    Lines(dc);
    Texts(dc);
    Placed(dc);
}

}  // namespace zm::test
