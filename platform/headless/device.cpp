// Handle semantics of the headless device layer, once for all devices.
#include "draw/device.h"

#include <algorithm>
#include <climits>
#include <cstddef>
#include <cstdlib>
#include <cstring>
#include <string_view>
#include <unordered_set>
#include <utility>

#include "platform/headless/objects.h"
#include "zenromath/device.h"

using namespace zm::platform;

/// What is selected into a device, and the resolved forms of it.
struct zm::Device::Selection {
    HGDIOBJ pen = nullptr;
    HGDIOBJ font = nullptr;
    HGDIOBJ brush = nullptr;
    Stroke stroke;
    bool nullPen = false;
    Fill fill;       // of the selected brush, without the colours of the moment
    TextStyle text;  // its colours are the device's
    POINT position{0, 0};
};

namespace {

using zm::Device;
using zm::Fill;

std::unordered_set<const Device*>& Alive() {
    static std::unordered_set<const Device*> alive;
    return alive;
}
constinit const Device* theLast = nullptr;  // the one looked up last: strokes come in long runs on one device

bool IsFound(const Device* device) {
    if (device == nullptr || Alive().count(device) == 0) return false;
    theLast = device;
    return true;
}
bool IsAlive(const Device* device) {
    return device == theLast ? device != nullptr : IsFound(device);
}

// The device of a context, null if there is none.
Device* DeviceOf(HDC dc) {
    return IsAlive(dc) ? dc : nullptr;
}

void Resolve(Device::Selection& selection, const Pen& pen) {
    const UINT style = pen.description.lopnStyle;
    selection.nullPen = style == static_cast<UINT>(PS_NULL);
    selection.stroke.style =
        style <= static_cast<UINT>(PS_INSIDEFRAME) && !selection.nullPen ? static_cast<int>(style) : PS_SOLID;
    selection.stroke.width = std::max(1, static_cast<int>(pen.description.lopnWidth.x));
    selection.stroke.color = pen.description.lopnColor & 0xFFFFFF;
}

// The brush with the colours of the moment.
Fill Coloured(Fill fill, const Device::Selection& selection) {
    fill.background = selection.text.background;
    fill.opaque = fill.kind == Fill::Kind::pattern || selection.text.opaque;
    if (fill.kind == Fill::Kind::pattern) fill.color = selection.text.color;
    return fill;
}

int DrawLineOn(Device& device, const POINT& from, const POINT& to) {
    Device::Selection& now = device.selection();
    now.position = from;
    device.Moved(from.x, from.y);
    if (!IsAlive(&device)) return 0;
    now.position = to;
    return now.nullPen ? 1 : device.Line(now.stroke, from.x, from.y, to.x, to.y);
}

// Puts a handle into its place of the selection; the handle replaced.
template <class Handle>
Handle Select(HGDIOBJ& place, Handle handle) {
    const auto object = reinterpret_cast<HGDIOBJ>(handle);
    const HGDIOBJ previous = place;
    Hold(object);
    place = object;
    Release(previous);
    return reinterpret_cast<Handle>(previous);
}

template <class Description>
int CopyDescription(const Description& from, int size, void* to) {
    constexpr int kSize = static_cast<int>(sizeof(Description));
    if (to == nullptr || size < kSize) return 0;
    std::memcpy(to, &from, sizeof(Description));
    return kSize;
}

// The lines of the six hatch styles as 8 by 8 tiles, the highest bit leftmost.
constexpr std::array<std::uint8_t, 8> kHatchRows[] = {
    {0, 0, 0, 0xFF, 0, 0, 0, 0},                       // HS_HORIZONTAL
    {0x08, 0x08, 0x08, 0x08, 0x08, 0x08, 0x08, 0x08},  // HS_VERTICAL
    {0x80, 0x40, 0x20, 0x10, 0x08, 0x04, 0x02, 0x01},  // HS_FDIAGONAL
    {0x01, 0x02, 0x04, 0x08, 0x10, 0x20, 0x40, 0x80},  // HS_BDIAGONAL
    {0x08, 0x08, 0x08, 0xFF, 0x08, 0x08, 0x08, 0x08},  // HS_CROSS
    {0x81, 0x42, 0x24, 0x18, 0x18, 0x24, 0x42, 0x81},  // HS_DIAGCROSS
};

}  // namespace

// The base of all devices.

zm::Device::Device() : m_selection(std::make_unique<Selection>()) {
    Alive().insert(this);
    Selection& now = *m_selection;
    device::SelectObject(this, device::BlackPen());
    device::SelectObject(this, device::WhiteBrush());
    device::SelectObject(this, reinterpret_cast<HFONT>(SystemFontObject()));
    now.stroke.opaqueGaps = now.text.opaque;
    now.stroke.gapColor = now.text.background;
}

zm::Device::~Device() {
    Release(m_selection->pen);
    Release(m_selection->font);
    Release(m_selection->brush);
    Alive().erase(this);
    if (theLast == this) theLast = nullptr;
}

bool zm::IsDevice(const Device* device) {
    return IsAlive(device);
}

void zm::Device::Moved(int, int) {}

void zm::Device::Lines(const Stroke&, const POINT* ends, int count) {
    const Device* self = this;
    // Asked for each line, since a device may end what it draws on.
    for (const POINT* from = ends; from != ends + 2 * static_cast<std::ptrdiff_t>(count) && IsAlive(self); from += 2)
        DrawLineOn(*this, from[0], from[1]);
}

int zm::Device::Paragraph(const TextStyle& style, std::string_view text, RECT& box, unsigned int flags) {
    const int lineHeight = style.font.lfHeight != 0 ? std::abs(style.font.lfHeight) : 16;
    const int charWidth = style.font.lfWidth != 0 ? std::abs(style.font.lfWidth) : lineHeight / 2;
    std::vector<std::string_view> lines;
    for (std::size_t at = 0; at <= text.size();) {
        const std::size_t end = (flags & DT_SINGLELINE) != 0 ? text.size() : std::min(text.find('\n', at), text.size());
        std::string_view line = text.substr(at, end - at);
        if ((flags & DT_SINGLELINE) == 0 && !line.empty() && line.back() == '\r') line.remove_suffix(1);
        lines.push_back(line);
        at = end + 1;
    }
    const int height = static_cast<int>(lines.size()) * lineHeight;
    int widest = 0;
    for (const std::string_view line : lines) widest = std::max(widest, static_cast<int>(line.size()) * charWidth);
    if ((flags & DT_CALCRECT) != 0) {
        box.right = box.left + widest;
        box.bottom = box.top + height;
        return height;
    }
    int y = box.top;
    if ((flags & DT_SINGLELINE) != 0 && (flags & DT_VCENTER) != 0) y = box.top + (box.bottom - box.top - height) / 2;
    if ((flags & DT_SINGLELINE) != 0 && (flags & DT_BOTTOM) != 0) y = box.bottom - height;
    for (const std::string_view line : lines) {
        const int width = static_cast<int>(line.size()) * charWidth;
        int x = box.left;
        if ((flags & DT_CENTER) != 0) x = box.left + (box.right - box.left - width) / 2;
        if ((flags & DT_RIGHT) != 0) x = box.right - width;
        if (!line.empty() && Text(style, x, y, line) == 0) return 0;
        y += lineHeight;
    }
    return height;
}

// The operations.

namespace zm::device {

int MoveToEx(HDC dc, int x, int y, POINT* previous) {
    Device* device = DeviceOf(dc);
    if (device == nullptr) return 0;
    POINT& position = device->selection().position;
    if (previous != nullptr) *previous = position;
    position = {x, y};
    device->Moved(x, y);
    return 1;
}

int LineTo(HDC dc, int x, int y) {
    Device* device = DeviceOf(dc);
    if (device == nullptr) return 0;
    Device::Selection& now = device->selection();
    const POINT from = now.position;
    now.position = {x, y};
    return now.nullPen ? 1 : device->Line(now.stroke, from.x, from.y, x, y);
}

int DrawLine(HDC dc, int x1, int y1, int x2, int y2) {
    Device* device = DeviceOf(dc);
    return device != nullptr ? DrawLineOn(*device, {x1, y1}, {x2, y2}) : 0;
}

void DrawLines(HDC dc, const POINT* ends, int lines) {
    Device* device = DeviceOf(dc);
    if (device == nullptr || lines < 1) return;
    Device::Selection& now = device->selection();
    if (now.nullPen)
        device->Device::Lines(now.stroke, ends, lines);
    else
        device->Lines(now.stroke, ends, lines);
    if (IsAlive(dc)) now.position = ends[2 * static_cast<std::ptrdiff_t>(lines) - 1];
}

COLORREF SetPixel(HDC dc, int x, int y, COLORREF color) {
    Device* device = DeviceOf(dc);
    return device != nullptr ? device->Dot(x, y, color) : CLR_INVALID;
}

int Rectangle(HDC dc, int left, int top, int right, int bottom) {
    Device* device = DeviceOf(dc);
    if (device == nullptr) return 0;
    const Device::Selection& now = device->selection();
    return device->Box(now.nullPen ? nullptr : &now.stroke, Coloured(now.fill, now), {left, top, right, bottom});
}

int Arc(HDC dc, int left, int top, int right, int bottom, int xs, int ys, int xe, int ye) {
    Device* device = DeviceOf(dc);
    if (device == nullptr) return 0;
    const Device::Selection& now = device->selection();
    return now.nullPen ? 1 : device->Arc(now.stroke, {left, top, right, bottom}, {xs, ys}, {xe, ye});
}

int TextOutA(HDC dc, int x, int y, const char* text, int count) {
    Device* device = DeviceOf(dc);
    if (device == nullptr || count < 0 || (text == nullptr && count > 0)) return 0;
    if (count == 0) return 1;
    return device->Text(device->selection().text, x, y, {text, static_cast<std::size_t>(count)});
}

int DrawTextA(HDC dc, const char* text, int count, RECT* box, unsigned int flags) {
    Device* device = DeviceOf(dc);
    if (device == nullptr || text == nullptr || box == nullptr || count < -1) return 0;
    const std::size_t length = count == -1 ? std::strlen(text) : static_cast<std::size_t>(count);
    return device->Paragraph(device->selection().text, {text, length}, *box, flags);
}

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
    const auto* bytes = static_cast<const std::uint8_t*>(bits);
    const std::size_t rowBytes = (static_cast<std::size_t>(width) + 15) / 16 * 2;  // Required: whole words of 16 bits.
    Bitmap bitmap;
    for (int y = 0; y < 8; ++y)
        for (int x = 0; x < 8; ++x) {
            const auto column = static_cast<std::size_t>(x % width);
            const std::uint8_t byte = bytes[static_cast<std::size_t>(y % height) * rowBytes + column / 8];
            if (((byte >> (7 - column % 8)) & 1) != 0)
                bitmap.rows[static_cast<std::size_t>(y)] |= static_cast<std::uint8_t>(0x80 >> x);
        }
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

HPEN SelectObject(HDC dc, HPEN pen) {
    Device* device = DeviceOf(dc);
    const Pen* object = FindAs<Pen>(pen);
    if (device == nullptr || object == nullptr) return nullptr;
    Resolve(device->selection(), *object);
    return Select(device->selection().pen, pen);
}

HFONT SelectObject(HDC dc, HFONT font) {
    Device* device = DeviceOf(dc);
    const Font* object = FindAs<Font>(font);
    if (device == nullptr || object == nullptr) return nullptr;
    device->selection().text.font = object->description;
    return Select(device->selection().font, font);
}

HBRUSH SelectObject(HDC dc, HBRUSH brush) {
    Device* device = DeviceOf(dc);
    const Brush* object = FindAs<Brush>(brush);
    if (device == nullptr || object == nullptr) return nullptr;
    device->selection().fill = object->fill;
    return Select(device->selection().brush, brush);
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

COLORREF SetTextColor(HDC dc, COLORREF color) {
    Device* device = DeviceOf(dc);
    if (device == nullptr) return CLR_INVALID;
    return std::exchange(device->selection().text.color, color & 0xFFFFFF);
}

COLORREF GetTextColor(HDC dc) {
    Device* device = DeviceOf(dc);
    return device != nullptr ? device->selection().text.color : CLR_INVALID;
}

COLORREF SetBkColor(HDC dc, COLORREF color) {
    Device* device = DeviceOf(dc);
    if (device == nullptr) return CLR_INVALID;
    Device::Selection& now = device->selection();
    now.stroke.gapColor = color & 0xFFFFFF;
    return std::exchange(now.text.background, color & 0xFFFFFF);
}

int SetBkMode(HDC dc, int mode) {
    Device* device = DeviceOf(dc);
    if (device == nullptr || (mode != TRANSPARENT && mode != OPAQUE)) return 0;
    Device::Selection& now = device->selection();
    now.stroke.opaqueGaps = mode == OPAQUE;
    return std::exchange(now.text.opaque, mode == OPAQUE) ? OPAQUE : TRANSPARENT;
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

int FillRgn(HDC dc, HRGN region, HBRUSH brush) {
    Device* device = DeviceOf(dc);
    const auto* area = FindAs<Region>(region);
    const auto* with = FindAs<Brush>(brush);
    if (device == nullptr || area == nullptr || with == nullptr) return 0;
    if (with->fill.kind == Fill::Kind::none) return 1;
    return device->FillRegion(*area, Coloured(with->fill, device->selection()));
}

int GetRgnBox(HRGN region, RECT* box) {
    const auto* area = FindAs<Region>(region);
    if (area == nullptr || box == nullptr) return ERROR_REGION;
    *box = area->Box();
    return area->Kind();
}

}  // namespace zm::device
