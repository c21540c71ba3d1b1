// The drawing operations: GDI on the caller's own device context.
#include "draw/device.h"

namespace zm::device {
namespace {

// CreateBitmap's handles of GDI objects go by one function for all kinds.
int Delete(HGDIOBJ object) {
    return ::DeleteObject(object);
}

}  // namespace

int MoveToEx(HDC dc, int x, int y, POINT* previous) {
    return ::MoveToEx(dc, x, y, previous);
}
int LineTo(HDC dc, int x, int y) {
    return ::LineTo(dc, x, y);
}
int DrawLine(HDC dc, int x1, int y1, int x2, int y2) {
    ::MoveToEx(dc, x1, y1, nullptr);
    return ::LineTo(dc, x2, y2);
}
void DrawLines(HDC dc, const POINT* ends, int lines) {
    for (int i = 0; i < lines; ++i) DrawLine(dc, ends[2 * i].x, ends[2 * i].y, ends[2 * i + 1].x, ends[2 * i + 1].y);
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
int TextOutA(HDC dc, int x, int y, const char* text, int count) {
    return ::TextOutA(dc, x, y, text, count);
}
int DrawTextA(HDC dc, const char* text, int count, RECT* box, unsigned int flags) {
    return ::DrawTextA(dc, text, count, box, flags);
}

HPEN CreatePen(int style, int width, COLORREF color) {
    return ::CreatePen(style, width, color);
}
HFONT CreateFontIndirectA(const LOGFONTA* font) {
    return ::CreateFontIndirectA(font);
}
HBRUSH CreateSolidBrush(COLORREF color) {
    return ::CreateSolidBrush(color);
}
HBRUSH CreateHatchBrush(int style, COLORREF color) {
    return ::CreateHatchBrush(style, color);
}
HBITMAP CreateBitmap(int width, int height, unsigned int planes, unsigned int bitsPerPixel, const void* bits) {
    return ::CreateBitmap(width, height, planes, bitsPerPixel, bits);
}
HBRUSH CreatePatternBrush(HBITMAP bitmap) {
    return ::CreatePatternBrush(bitmap);
}

HPEN SelectObject(HDC dc, HPEN pen) {
    return static_cast<HPEN>(::SelectObject(dc, pen));
}
HFONT SelectObject(HDC dc, HFONT font) {
    return static_cast<HFONT>(::SelectObject(dc, font));
}
HBRUSH SelectObject(HDC dc, HBRUSH brush) {
    return static_cast<HBRUSH>(::SelectObject(dc, brush));
}

int DeleteObject(HPEN pen) {
    return Delete(pen);
}
int DeleteObject(HFONT font) {
    return Delete(font);
}
int DeleteObject(HBRUSH brush) {
    return Delete(brush);
}
int DeleteObject(HRGN region) {
    return Delete(region);
}
int DeleteObject(HBITMAP bitmap) {
    return Delete(bitmap);
}

int GetObjectA(HPEN pen, int size, void* description) {
    return ::GetObjectA(pen, size, description);
}
int GetObjectA(HFONT font, int size, void* description) {
    return ::GetObjectA(font, size, description);
}

HBRUSH WhiteBrush() {
    return static_cast<HBRUSH>(::GetStockObject(WHITE_BRUSH));
}
HBRUSH NullBrush() {
    return static_cast<HBRUSH>(::GetStockObject(NULL_BRUSH));
}
HPEN BlackPen() {
    return static_cast<HPEN>(::GetStockObject(BLACK_PEN));
}
HPEN NullPen() {
    return static_cast<HPEN>(::GetStockObject(NULL_PEN));
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

HRGN CreatePolygonRgn(const POINT* points, int count, int mode) {
    return ::CreatePolygonRgn(points, count, mode);
}
HRGN CreateRectRgn(int left, int top, int right, int bottom) {
    return ::CreateRectRgn(left, top, right, bottom);
}
int CombineRgn(HRGN target, HRGN first, HRGN second, int mode) {
    return ::CombineRgn(target, first, second, mode);
}
int FillRgn(HDC dc, HRGN region, HBRUSH brush) {
    return ::FillRgn(dc, region, brush);
}
int GetRgnBox(HRGN region, RECT* box) {
    return ::GetRgnBox(region, box);
}

}  // namespace zm::device
