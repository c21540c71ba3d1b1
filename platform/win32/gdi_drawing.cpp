// Drawing on the application's own device contexts: GDI. Texts are GBK and go to the system as wide characters, by the
// library's own table, so that the system's code page has no part in them.
#include <string>

#include "platform/device/native.h"
#include "platform/win32/covering_font.h"
#include "platform/win32/null_pens.h"
#include "platform/win32/wide.h"

namespace zm::device::native {

int MoveToEx(HDC dc, int x, int y, POINT* previous) {
    return ::MoveToEx(dc, x, y, previous);
}
int LineTo(HDC dc, int x, int y) {
    return ::LineTo(dc, x, y);
}
int DrawLine(HDC dc, int x1, int y1, int x2, int y2) {
    return ::MoveToEx(dc, x1, y1, nullptr) != 0 ? ::LineTo(dc, x2, y2) : 0;
}
int DrawLines(HDC dc, const POINT* ends, int lines) {
    int sum = 0;
    for (const POINT* from = ends; lines > 0; --lines, from += 2)
        sum += DrawLine(dc, from[0].x, from[0].y, from[1].x, from[1].y);
    return sum;
}
COLORREF SetPixel(HDC dc, int x, int y, COLORREF color) {
    return ::SetPixel(dc, x, y, color);
}
int Rectangle(HDC dc, int left, int top, int right, int bottom) {
    return ::Rectangle(dc, left, top, right, bottom);
}
int Arc(HDC dc, int left, int top, int right, int bottom, int xs, int ys, int xe, int ye) {
    return ::Arc(dc, left, top, right, bottom, xs, ys, xe, ye);
}
int PutText(HDC dc, int x, int y, std::string_view text) {
    const std::wstring wide = win32::Wide(text);
    const win32::CoveringFont font(dc, wide);
    return ::TextOutW(dc, x, y, wide.c_str(), static_cast<int>(wide.size()));
}
int PutParagraph(HDC dc, std::string_view text, RECT& box, unsigned int flags) {
    const std::wstring wide = win32::Wide(text);
    const win32::CoveringFont font(dc, wide);
    return ::DrawTextW(dc, wide.c_str(), static_cast<int>(wide.size()), &box, flags);
}

HPEN SelectObject(HDC dc, HPEN pen) {
    return win32::SelectPen(dc, pen);
}
HFONT SelectObject(HDC dc, HFONT font) {
    return static_cast<HFONT>(::SelectObject(dc, font));
}
HBRUSH SelectObject(HDC dc, HBRUSH brush) {
    return static_cast<HBRUSH>(::SelectObject(dc, brush));
}

COLORREF SetTextColor(HDC dc, COLORREF color) {
    return ::SetTextColor(dc, color);
}
COLORREF GetTextColor(HDC dc) {
    return ::GetTextColor(dc);
}
COLORREF SetBkColor(HDC dc, COLORREF color) {
    return ::SetBkColor(dc, color);
}
int SetBkMode(HDC dc, int mode) {
    return ::SetBkMode(dc, mode);
}

int FillRgn(HDC dc, HRGN region, HBRUSH brush) {
    return ::FillRgn(dc, region, brush);
}

}  // namespace zm::device::native
