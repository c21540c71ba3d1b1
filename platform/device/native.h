// Drawing on a device context that is none of the library's devices: GDI on Windows. Elsewhere there is no such thing,
// and each operation fails.
#pragma once

#include <string_view>

#include "zenromath/platform.h"

namespace zm::device::native {

#if defined(_WIN32)

int MoveToEx(HDC dc, int x, int y, POINT* previous);
int LineTo(HDC dc, int x, int y);
int DrawLine(HDC dc, int x1, int y1, int x2, int y2);
int DrawLines(HDC dc, const POINT* ends, int lines);
COLORREF SetPixel(HDC dc, int x, int y, COLORREF color);
int Rectangle(HDC dc, int left, int top, int right, int bottom);
int Arc(HDC dc, int left, int top, int right, int bottom, int xs, int ys, int xe, int ye);
int PutText(HDC dc, int x, int y, std::string_view text);
int PutParagraph(HDC dc, std::string_view text, RECT& box, unsigned int flags);
HPEN SelectObject(HDC dc, HPEN pen);
HFONT SelectObject(HDC dc, HFONT font);
HBRUSH SelectObject(HDC dc, HBRUSH brush);
COLORREF SetTextColor(HDC dc, COLORREF color);
COLORREF GetTextColor(HDC dc);
COLORREF SetBkColor(HDC dc, COLORREF color);
int SetBkMode(HDC dc, int mode);
int FillRgn(HDC dc, HRGN region, HBRUSH brush);

#else

inline int MoveToEx(HDC, int, int, POINT*) {
    return 0;
}
inline int LineTo(HDC, int, int) {
    return 0;
}
inline int DrawLine(HDC, int, int, int, int) {
    return 0;
}
inline int DrawLines(HDC, const POINT*, int) {
    return 0;
}
inline COLORREF SetPixel(HDC, int, int, COLORREF) {
    return CLR_INVALID;
}
inline int Rectangle(HDC, int, int, int, int) {
    return 0;
}
inline int Arc(HDC, int, int, int, int, int, int, int, int) {
    return 0;
}
inline int PutText(HDC, int, int, std::string_view) {
    return 0;
}
inline int PutParagraph(HDC, std::string_view, const RECT&, unsigned int) {
    return 0;
}
inline HPEN SelectObject(HDC, HPEN) {
    return nullptr;
}
inline HFONT SelectObject(HDC, HFONT) {
    return nullptr;
}
inline HBRUSH SelectObject(HDC, HBRUSH) {
    return nullptr;
}
inline COLORREF SetTextColor(HDC, COLORREF) {
    return CLR_INVALID;
}
inline COLORREF GetTextColor(HDC) {
    return CLR_INVALID;
}
inline COLORREF SetBkColor(HDC, COLORREF) {
    return CLR_INVALID;
}
inline int SetBkMode(HDC, int) {
    return 0;
}
inline int FillRgn(HDC, HRGN, HBRUSH) {
    return 0;
}

#endif

}  // namespace zm::device::native
