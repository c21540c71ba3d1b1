// Handle semantics, once for all devices: what a zm::Device is asked when it is drawn on by its device context. A context
// that is none of ours is left to the system.
#include "draw/device.h"

#include <algorithm>
#include <climits>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string_view>
#include <unordered_set>
#include <utility>

#include "platform/device/native.h"
#include "platform/device/objects.h"
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

// The contexts that were handed out: every device that lives.
std::unordered_set<HDC>& Alive() {
    static std::unordered_set<HDC> alive;
    return alive;
}
constinit HDC theLast = nullptr;  // the one looked up last: strokes come in long runs on one device

bool IsFound(HDC dc) {
    if (dc == nullptr || Alive().count(dc) == 0) return false;
    theLast = dc;
    return true;
}
bool IsAlive(HDC dc) {
    return dc == theLast ? dc != nullptr : IsFound(dc);
}

// The device of a context, null if it is none of ours.
Device* DeviceOf(HDC dc) {
    return IsAlive(dc) ? static_cast<Device*>(dc) : nullptr;
}

void Resolve(Device::Selection& selection, const LOGPEN& pen) {
    const UINT style = pen.lopnStyle;
    selection.nullPen = style == static_cast<UINT>(PS_NULL);
    selection.stroke.style =
        style <= static_cast<UINT>(PS_INSIDEFRAME) && !selection.nullPen ? static_cast<int>(style) : PS_SOLID;
    selection.stroke.width = std::max(1, static_cast<int>(pen.lopnWidth.x));
    selection.stroke.color = pen.lopnColor & 0xFFFFFF;
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

int Limited(std::int64_t value) {
    return static_cast<int>(std::clamp<std::int64_t>(value, INT_MIN, INT_MAX));
}

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
    return IsAlive(const_cast<Device*>(device));
}

void zm::Device::Moved(int, int) {}

int zm::Device::Lines(const Stroke&, const POINT* ends, int count) {
    const HDC self = this;
    unsigned sum = 0;  // wraps
    // Asked for each line, since a device may end what it draws on.
    for (const POINT* from = ends; from != ends + 2 * static_cast<std::ptrdiff_t>(count) && IsAlive(self); from += 2)
        sum += static_cast<unsigned>(DrawLineOn(*this, from[0], from[1]));
    return static_cast<int>(sum);
}

int zm::Device::Paragraph(const TextStyle& style, std::string_view text, RECT& box, unsigned int flags) {
    // A size is one of any int: places are found in 64 bits and limited to what an int holds.
    const std::int64_t fontHeight = style.font.lfHeight, fontWidth = style.font.lfWidth;
    const std::int64_t lineHeight = fontHeight != 0 ? std::abs(fontHeight) : 16;
    const std::int64_t charWidth = fontWidth != 0 ? std::abs(fontWidth) : lineHeight / 2;
    std::vector<std::string_view> lines;
    for (std::size_t at = 0; at <= text.size();) {
        const std::size_t end = (flags & DT_SINGLELINE) != 0 ? text.size() : std::min(text.find('\n', at), text.size());
        std::string_view line = text.substr(at, end - at);
        if ((flags & DT_SINGLELINE) == 0 && !line.empty() && line.back() == '\r') line.remove_suffix(1);
        lines.push_back(line);
        at = end + 1;
    }
    const auto widthOf = [&](std::string_view line) { return static_cast<std::int64_t>(line.size()) * charWidth; };
    const std::int64_t height = static_cast<std::int64_t>(lines.size()) * lineHeight;
    std::int64_t widest = 0;
    for (const std::string_view line : lines) widest = std::max(widest, widthOf(line));
    const std::int64_t left = box.left, top = box.top;
    if ((flags & DT_CALCRECT) != 0) {
        box.right = Limited(left + widest);
        box.bottom = Limited(top + height);
        return Limited(height);
    }
    std::int64_t y = top;
    if ((flags & DT_SINGLELINE) != 0 && (flags & DT_VCENTER) != 0) y = top + (box.bottom - top - height) / 2;
    if ((flags & DT_SINGLELINE) != 0 && (flags & DT_BOTTOM) != 0) y = box.bottom - height;
    for (const std::string_view line : lines) {
        std::int64_t x = left;
        if ((flags & DT_CENTER) != 0) x = left + (box.right - left - widthOf(line)) / 2;
        if ((flags & DT_RIGHT) != 0) x = box.right - widthOf(line);
        if (!line.empty() && Text(style, Limited(x), Limited(y), line) == 0) return 0;
        y += lineHeight;
    }
    return Limited(height);
}

// The operations.

namespace zm::device {

int MoveToEx(HDC dc, int x, int y, POINT* previous) {
    Device* device = DeviceOf(dc);
    if (device == nullptr) return native::MoveToEx(dc, x, y, previous);
    POINT& position = device->selection().position;
    if (previous != nullptr) *previous = position;
    position = {x, y};
    device->Moved(x, y);
    return 1;
}

int LineTo(HDC dc, int x, int y) {
    Device* device = DeviceOf(dc);
    if (device == nullptr) return native::LineTo(dc, x, y);
    Device::Selection& now = device->selection();
    const POINT from = now.position;
    now.position = {x, y};
    return now.nullPen ? 1 : device->Line(now.stroke, from.x, from.y, x, y);
}

int DrawLine(HDC dc, int x1, int y1, int x2, int y2) {
    Device* device = DeviceOf(dc);
    return device != nullptr ? DrawLineOn(*device, {x1, y1}, {x2, y2}) : native::DrawLine(dc, x1, y1, x2, y2);
}

int DrawLines(HDC dc, const POINT* ends, int lines) {
    Device* device = DeviceOf(dc);
    if (lines < 1) return 0;
    if (device == nullptr) return native::DrawLines(dc, ends, lines);
    Device::Selection& now = device->selection();
    const int sum =
        now.nullPen ? device->Device::Lines(now.stroke, ends, lines) : device->Lines(now.stroke, ends, lines);
    if (IsAlive(dc)) now.position = ends[2 * static_cast<std::ptrdiff_t>(lines) - 1];
    return sum;
}

COLORREF SetPixel(HDC dc, int x, int y, COLORREF color) {
    Device* device = DeviceOf(dc);
    return device != nullptr ? device->Dot(x, y, color) : native::SetPixel(dc, x, y, color);
}

int Rectangle(HDC dc, int left, int top, int right, int bottom) {
    Device* device = DeviceOf(dc);
    if (device == nullptr) return native::Rectangle(dc, left, top, right, bottom);
    const Device::Selection& now = device->selection();
    return device->Box(now.nullPen ? nullptr : &now.stroke, Coloured(now.fill, now), {left, top, right, bottom});
}

int Arc(HDC dc, int left, int top, int right, int bottom, int xs, int ys, int xe, int ye) {
    Device* device = DeviceOf(dc);
    if (device == nullptr) return native::Arc(dc, left, top, right, bottom, xs, ys, xe, ye);
    const Device::Selection& now = device->selection();
    return now.nullPen ? 1 : device->Arc(now.stroke, {left, top, right, bottom}, {xs, ys}, {xe, ye});
}

int TextOutA(HDC dc, int x, int y, const char* text, int count) {
    Device* device = DeviceOf(dc);
    if (count < 0 || (text == nullptr && count > 0)) return 0;
    if (device == nullptr) return native::PutText(dc, x, y, {text, static_cast<std::size_t>(count)});
    if (count == 0) return 1;
    return device->Text(device->selection().text, x, y, {text, static_cast<std::size_t>(count)});
}

int DrawTextA(HDC dc, const char* text, int count, RECT* box, unsigned int flags) {
    Device* device = DeviceOf(dc);
    if (text == nullptr || box == nullptr || count < -1) return 0;
    const std::size_t length = count == -1 ? std::strlen(text) : static_cast<std::size_t>(count);
    if (device == nullptr) return native::PutParagraph(dc, {text, length}, *box, flags);
    return device->Paragraph(device->selection().text, {text, length}, *box, flags);
}

HPEN SelectObject(HDC dc, HPEN pen) {
    Device* device = DeviceOf(dc);
    if (device == nullptr) return native::SelectObject(dc, pen);
    LOGPEN description{};
    if (!Describe(pen, description)) return nullptr;
    Resolve(device->selection(), description);
    return Select(device->selection().pen, pen);
}

HFONT SelectObject(HDC dc, HFONT font) {
    Device* device = DeviceOf(dc);
    if (device == nullptr) return native::SelectObject(dc, font);
    if (!Describe(font, device->selection().text.font)) return nullptr;
    return Select(device->selection().font, font);
}

HBRUSH SelectObject(HDC dc, HBRUSH brush) {
    Device* device = DeviceOf(dc);
    if (device == nullptr) return native::SelectObject(dc, brush);
    if (!Describe(brush, device->selection().fill)) return nullptr;
    return Select(device->selection().brush, brush);
}

COLORREF SetTextColor(HDC dc, COLORREF color) {
    Device* device = DeviceOf(dc);
    if (device == nullptr) return native::SetTextColor(dc, color);
    return std::exchange(device->selection().text.color, color & 0xFFFFFF);
}

COLORREF GetTextColor(HDC dc) {
    Device* device = DeviceOf(dc);
    return device != nullptr ? device->selection().text.color : native::GetTextColor(dc);
}

COLORREF SetBkColor(HDC dc, COLORREF color) {
    Device* device = DeviceOf(dc);
    if (device == nullptr) return native::SetBkColor(dc, color);
    Device::Selection& now = device->selection();
    now.stroke.gapColor = color & 0xFFFFFF;
    return std::exchange(now.text.background, color & 0xFFFFFF);
}

int SetBkMode(HDC dc, int mode) {
    Device* device = DeviceOf(dc);
    if (mode != TRANSPARENT && mode != OPAQUE) return 0;
    if (device == nullptr) return native::SetBkMode(dc, mode);
    Device::Selection& now = device->selection();
    now.stroke.opaqueGaps = mode == OPAQUE;
    return std::exchange(now.text.opaque, mode == OPAQUE) ? OPAQUE : TRANSPARENT;
}

int FillRgn(HDC dc, HRGN region, HBRUSH brush) {
    Device* device = DeviceOf(dc);
    if (device == nullptr) return native::FillRgn(dc, region, brush);
    Region area;
    Fill fill;
    if (!Describe(region, area) || !Describe(brush, fill)) return 0;
    return fill.kind == Fill::Kind::none ? 1 : device->FillRegion(area, Coloured(fill, device->selection()));
}

}  // namespace zm::device
