// The one header of platform drawing operations.
//
// Each keeps its known name. An HDC is a zm::Device, on Windows also a device context of the system, for GDI to draw on;
// handles are GDI's objects there and elsewhere the library's own. A null or stale dc or handle makes an operation fail,
// with the failure value of each, and nothing else. Device pixels, y down. Texts are GBK bytes. Colours are 0x00BBGGRR.
#pragma once

#include "zenromath/platform.h"

namespace zm::device {

/// Sets the current position; previous, if not null, receives the old one. Non-zero if done.
ZM_API int MoveToEx(HDC dc, int x, int y, POINT* previous);
/// Draws from the current position to (x, y) with the selected pen and moves the position there; the last pixel is left
/// out. Non-zero if drawn.
ZM_API int LineTo(HDC dc, int x, int y);
/// MoveToEx and LineTo in one.
ZM_API int DrawLine(HDC dc, int x1, int y1, int x2, int y2);
/// The same for each pair of points: from the first to the second, from the third to the fourth ... The sum of the
/// results.
ZM_API int DrawLines(HDC dc, const POINT* ends, int lines);
/// Sets one pixel; the colour set, CLR_INVALID on failure.
ZM_API COLORREF SetPixel(HDC dc, int x, int y, COLORREF color);
/// Outline with the selected pen, interior with the selected brush; the right column and the lower row are out.
ZM_API int Rectangle(HDC dc, int left, int top, int right, int bottom);
/// The part of the ellipse in the box counter-clockwise from the radial line through (xs, ys) to that through (xe, ye),
/// with the selected pen. The whole ellipse where both are the same.
ZM_API int Arc(HDC dc, int left, int top, int right, int bottom, int xs, int ys, int xe, int ye);
/// count bytes in the selected font, anchored at the top left corner.
ZM_API int TextOutA(HDC dc, int x, int y, const char* text, int count);
/// Formatted text in a rectangle; count -1 is the whole text; flags are the DT_ values. The height, 0 on failure.
ZM_API int DrawTextA(HDC dc, const char* text, int count, RECT* box, unsigned int flags);

ZM_API HPEN CreatePen(int style, int width, COLORREF color);
ZM_API HFONT CreateFontIndirectA(const LOGFONTA* font);
ZM_API HBRUSH CreateSolidBrush(COLORREF color);
/// style: HS_HORIZONTAL .. HS_DIAGCROSS, else null.
ZM_API HBRUSH CreateHatchBrush(int style, COLORREF color);
/// A bitmap of one plane and one bit a pixel, others give null. Each row is read as whole 16-bit words, the first byte
/// leftmost with its highest bit first; so eight rows widened to 32-bit words fill every second row with the first
/// four.
ZM_API HBITMAP CreateBitmap(int width, int height, unsigned int planes, unsigned int bitsPerPixel, const void* bits);
/// Tiles of the bitmap's first 8 by 8 pixels, fixed to the upper left corner of the device. Bit 1 takes the background
/// colour, bit 0 the text colour, both of the moment of filling. The bitmap may be deleted afterwards.
ZM_API HBRUSH CreatePatternBrush(HBITMAP bitmap);

/// Puts an object into the device context and returns the one that it replaces; null on failure, nothing is changed.
ZM_API HPEN SelectObject(HDC dc, HPEN pen);
ZM_API HFONT SelectObject(HDC dc, HFONT font);
ZM_API HBRUSH SelectObject(HDC dc, HBRUSH brush);

/// Deletes an object. One that is still selected somewhere goes when it is replaced there. Stock objects stay. Non-zero
/// if done, 0 for a null or stale handle.
ZM_API int DeleteObject(HPEN pen);
ZM_API int DeleteObject(HFONT font);
ZM_API int DeleteObject(HBRUSH brush);
ZM_API int DeleteObject(HRGN region);
ZM_API int DeleteObject(HBITMAP bitmap);

/// Copies the object's description, LOGPEN or LOGFONTA; the bytes copied, 0 on failure or if size is too small.
ZM_API int GetObjectA(HPEN pen, int size, void* description);
ZM_API int GetObjectA(HFONT font, int size, void* description);

/// Brushes and pens that always exist.
ZM_API HBRUSH WhiteBrush();
ZM_API HBRUSH NullBrush();
ZM_API HPEN BlackPen();
ZM_API HPEN NullPen();

/// Each sets a value and returns the one before; CLR_INVALID or 0 on failure.
ZM_API COLORREF SetTextColor(HDC dc, COLORREF color);
ZM_API COLORREF GetTextColor(HDC dc);
ZM_API COLORREF SetBkColor(HDC dc, COLORREF color);
/// mode: TRANSPARENT or OPAQUE.
ZM_API int SetBkMode(HDC dc, int mode);

/// mode: ALTERNATE or WINDING. Fewer than 2 points, no points or another mode give null.
ZM_API HRGN CreatePolygonRgn(const POINT* points, int count, int mode);
ZM_API HRGN CreateRectRgn(int left, int top, int right, int bottom);
/// Stores first combined with second in target, which may be one of them. second is not looked at for RGN_COPY.
/// \return NULLREGION, SIMPLEREGION, COMPLEXREGION; ERROR_REGION, with nothing done, for a bad handle or mode
ZM_API int CombineRgn(HRGN target, HRGN first, HRGN second, int mode);
ZM_API int FillRgn(HDC dc, HRGN region, HBRUSH brush);
/// The smallest rectangle around the region; its kind, ERROR_REGION on failure.
ZM_API int GetRgnBox(HRGN region, RECT* box);

}  // namespace zm::device
