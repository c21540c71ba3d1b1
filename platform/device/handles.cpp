// The operations on objects: made, described, combined and deleted in the library's own table.
#include <algorithm>
#include <climits>
#include <cstddef>
#include <cstring>

#include "draw/device.h"
#include "platform/device/object_table.h"
#include "platform/device/tiles.h"

using namespace zm::platform;

namespace {

using zm::Region;

template <class Description>
int CopyDescription(const Description& from, int size, void* to) {
    constexpr int kSize = static_cast<int>(sizeof(Description));
    if (to == nullptr || size < kSize) return 0;
    std::memcpy(to, &from, sizeof(Description));
    return kSize;
}

}  // namespace

namespace zm::platform {

bool Describe(HPEN pen, LOGPEN& description) {
    const Pen* object = FindAs<Pen>(pen);
    if (object != nullptr) description = object->description;
    return object != nullptr;
}

bool Describe(HFONT font, LOGFONTA& description) {
    const Font* object = FindAs<Font>(font);
    if (object != nullptr) description = object->description;
    return object != nullptr;
}

bool Describe(HBRUSH brush, Fill& fill) {
    const Brush* object = FindAs<Brush>(brush);
    if (object != nullptr) fill = object->fill;
    return object != nullptr;
}

bool Describe(HRGN region, Region& pixels) {
    const auto* object = FindAs<Region>(region);
    if (object != nullptr) pixels = *object;
    return object != nullptr;
}

}  // namespace zm::platform

namespace zm::device {

HPEN CreatePen(int style, int width, COLORREF color) {
    Pen pen;
    pen.description.lopnStyle = style >= PS_SOLID && style <= PS_INSIDEFRAME ? static_cast<UINT>(style) : PS_SOLID;
    pen.description.lopnWidth = {width < 0 && width > INT_MIN ? -width : std::max(width, 0), 0};
    pen.description.lopnColor = color;
    return reinterpret_cast<HPEN>(Add(pen));
}

HFONT CreateFontIndirectA(const LOGFONTA* font) {
    if (font == nullptr) return nullptr;
    Font made{*font};
    made.description.lfFaceName[LF_FACESIZE - 1] = '\0';
    return reinterpret_cast<HFONT>(Add(made));
}

HBRUSH CreateSolidBrush(COLORREF color) {
    Brush brush;
    brush.fill.kind = Fill::Kind::solid;
    brush.fill.color = color & 0xFFFFFF;
    return reinterpret_cast<HBRUSH>(Add(brush));
}

HBRUSH CreateHatchBrush(int style, COLORREF color) {
    if (style < HS_HORIZONTAL || style > HS_DIAGCROSS) return nullptr;
    Brush brush;
    brush.fill.kind = Fill::Kind::hatch;
    brush.fill.hatch = style;
    brush.fill.color = color & 0xFFFFFF;
    brush.fill.rows = kHatchRows[style];
    return reinterpret_cast<HBRUSH>(Add(brush));
}

HBITMAP CreateBitmap(int width, int height, unsigned int planes, unsigned int bitsPerPixel, const void* bits) {
    if (width < 1 || height < 1 || planes != 1 || bitsPerPixel != 1 || bits == nullptr) return nullptr;
    const Bitmap bitmap{TileOf(width, height, static_cast<const std::uint8_t*>(bits))};
    return reinterpret_cast<HBITMAP>(Add(bitmap));
}

HBRUSH CreatePatternBrush(HBITMAP bitmap) {
    const auto* source = FindAs<Bitmap>(bitmap);
    if (source == nullptr) return nullptr;
    Brush brush;
    brush.fill.kind = Fill::Kind::pattern;
    brush.fill.rows = source->rows;
    return reinterpret_cast<HBRUSH>(Add(brush));
}

int DeleteObject(HPEN pen) {
    return Delete(reinterpret_cast<HGDIOBJ>(pen)) ? 1 : 0;
}
int DeleteObject(HFONT font) {
    return Delete(reinterpret_cast<HGDIOBJ>(font)) ? 1 : 0;
}
int DeleteObject(HBRUSH brush) {
    return Delete(reinterpret_cast<HGDIOBJ>(brush)) ? 1 : 0;
}
int DeleteObject(HRGN region) {
    return Delete(reinterpret_cast<HGDIOBJ>(region)) ? 1 : 0;
}
int DeleteObject(HBITMAP bitmap) {
    return Delete(reinterpret_cast<HGDIOBJ>(bitmap)) ? 1 : 0;
}

int GetObjectA(HPEN pen, int size, void* description) {
    const Pen* object = FindAs<Pen>(pen);
    return object != nullptr ? CopyDescription(object->description, size, description) : 0;
}

int GetObjectA(HFONT font, int size, void* description) {
    const Font* object = FindAs<Font>(font);
    return object != nullptr ? CopyDescription(object->description, size, description) : 0;
}

HBRUSH WhiteBrush() {
    return reinterpret_cast<HBRUSH>(WhiteBrushObject());
}
HBRUSH NullBrush() {
    return reinterpret_cast<HBRUSH>(NullBrushObject());
}
HPEN BlackPen() {
    return reinterpret_cast<HPEN>(BlackPenObject());
}
HPEN NullPen() {
    return reinterpret_cast<HPEN>(NullPenObject());
}

HRGN CreatePolygonRgn(const POINT* points, int count, int mode) {
    if (points == nullptr || count < 2 || (mode != ALTERNATE && mode != WINDING)) return nullptr;
    return reinterpret_cast<HRGN>(Add(Region::Polygon(points, count, mode)));
}

HRGN CreateRectRgn(int left, int top, int right, int bottom) {
    return reinterpret_cast<HRGN>(Add(Region::Rectangle(left, top, right, bottom)));
}

int CombineRgn(HRGN target, HRGN first, HRGN second, int mode) {
    auto* to = FindAs<Region>(target);
    const auto* one = FindAs<Region>(first);
    const auto* other = FindAs<Region>(second);
    if (to == nullptr || one == nullptr || mode < RGN_AND || mode > RGN_COPY) return ERROR_REGION;
    if (other == nullptr && mode != RGN_COPY) return ERROR_REGION;
    *to = mode == RGN_COPY ? *one : Region::Combined(*one, *other, mode);
    return to->Kind();
}

int GetRgnBox(HRGN region, RECT* box) {
    const auto* area = FindAs<Region>(region);
    if (area == nullptr || box == nullptr) return ERROR_REGION;
    *box = area->Box();
    return area->Kind();
}

}  // namespace zm::device
