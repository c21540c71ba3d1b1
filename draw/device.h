// The one header of platform drawing operations.
//
// Each keeps its known name and does what GDI does on Windows; elsewhere an HDC is a zm::Device and the handles are
// the library's own. All take any argument: a null or stale dc or handle makes the operation fail, with the failure
// value of each, and nothing else. Device pixels, y down. Texts are bytes in GBK. Colours are 0x00BBGGRR.
#pragma once

#include "zenromath/platform.h"

namespace zm::device {

/// Sets the current position; previous, if not null, receives the old one. Non-zero if done.
int MoveToEx(HDC dc, int x, int y, POINT* previous);
/// Draws from the current position to (x, y) with the selected pen and moves the position there; the last pixel is left
/// out. Non-zero if drawn.
int LineTo(HDC dc, int x, int y);
/// Sets one pixel; the colour set, CLR_INVALID on failure.
COLORREF SetPixel(HDC dc, int x, int y, COLORREF color);
/// Outline with the selected pen, interior with the selected brush; the right column and the lower row are out.
int Rectangle(HDC dc, int left, int top, int right, int bottom);
/// The part of the ellipse in the box counter-clockwise from the radial line through (xs, ys) to that through (xe, ye),
/// with the selected pen. The whole ellipse where both are the same.
int Arc(HDC dc, int left, int top, int right, int bottom, int xs, int ys, int xe, int ye);
/// count bytes in the selected font, anchored at the top left corner.
int TextOutA(HDC dc, int x, int y, const char* text, int count);
/// Formatted text in a rectangle; count -1 is the whole text; flags are the DT_ values. The height, 0 on failure.
int DrawTextA(HDC dc, const char* text, int count, RECT* box, unsigned int flags);

HPEN CreatePen(int style, int width, COLORREF color);
HFONT CreateFontIndirectA(const LOGFONTA* font);
HBRUSH CreateSolidBrush(COLORREF color);
/// style: HS_HORIZONTAL .. HS_DIAGCROSS, else null.
HBRUSH CreateHatchBrush(int style, COLORREF color);
/// A bitmap of one plane and one bit a pixel, others give null. Each row is read as whole 16-bit words, the first byte
/// leftmost with its highest bit first; so eight rows widened to 32-bit words fill every second row with the first
/// four.
HBITMAP CreateBitmap(int width, int height, unsigned int planes, unsigned int bitsPerPixel, const void* bits);
/// Tiles of the bitmap's first 8 by 8 pixels, fixed to the upper left corner of the device. Bit 1 takes the background
/// colour, bit 0 the text colour, both of the moment of filling. The bitmap may be deleted afterwards.
HBRUSH CreatePatternBrush(HBITMAP bitmap);

/// Puts an object into the device context and returns the one that it replaces; null on failure, nothing is changed.
HPEN SelectObject(HDC dc, HPEN pen);
HFONT SelectObject(HDC dc, HFONT font);
HBRUSH SelectObject(HDC dc, HBRUSH brush);

/// Deletes an object. One that is still selected somewhere goes when it is replaced there. Stock objects stay. Non-zero
/// if done, 0 for a null or stale handle.
int DeleteObject(HPEN pen);
int DeleteObject(HFONT font);
int DeleteObject(HBRUSH brush);
int DeleteObject(HRGN region);
int DeleteObject(HBITMAP bitmap);

/// Copies the object's description, LOGPEN or LOGFONTA; the bytes copied, 0 on failure or if size is too small.
int GetObjectA(HPEN pen, int size, void* description);
int GetObjectA(HFONT font, int size, void* description);

/// Brushes and pens that always exist.
HBRUSH WhiteBrush();
HBRUSH NullBrush();
HPEN BlackPen();
HPEN NullPen();

/// Each sets a value and returns the one before; CLR_INVALID or 0 on failure.
COLORREF SetTextColor(HDC dc, COLORREF color);
COLORREF GetTextColor(HDC dc);
COLORREF SetBkColor(HDC dc, COLORREF color);
/// mode: TRANSPARENT or OPAQUE.
int SetBkMode(HDC dc, int mode);

/// mode: ALTERNATE or WINDING. Fewer than 2 points, no points or another mode give null.
HRGN CreatePolygonRgn(const POINT* points, int count, int mode);
HRGN CreateRectRgn(int left, int top, int right, int bottom);
/// Stores first combined with second in target, which may be one of them. second is not looked at for RGN_COPY.
/// \return NULLREGION, SIMPLEREGION, COMPLEXREGION; ERROR_REGION, with nothing done, for a bad handle or mode
int CombineRgn(HRGN target, HRGN first, HRGN second, int mode);
int FillRgn(HDC dc, HRGN region, HBRUSH brush);
/// The smallest rectangle around the region; its kind, ERROR_REGION on failure.
int GetRgnBox(HRGN region, RECT* box);

}  // namespace zm::device
