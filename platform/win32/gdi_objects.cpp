// The operations on objects: GDI's own pens, fonts, brushes, bitmaps and regions, and beside them what devices of the
// library want to know and GDI does not keep.
#include <algorithm>
#include <climits>
#include <cstdint>
#include <cstring>
#include <memory>
#include <optional>
#include <unordered_map>
#include <vector>

#include "draw/device.h"
#include "platform/device/objects.h"
#include "platform/device/tiles.h"
#include "platform/win32/fonts.h"
#include "platform/win32/null_pens.h"
#include "platform/win32/region_recipe.h"

using zm::platform::Tile;
using zm::win32::RegionRecipe;

namespace {

using zm::Fill;
using zm::Region;

struct Note {
    bool made = false;    // by the library, and not deleted
    int selected = 0;     // devices that it is selected into
    bool doomed = false;  // deleted while selected
    std::optional<Tile> tile;
    std::shared_ptr<const RegionRecipe> region;
};

std::unordered_map<HGDIOBJ, Note>& Notes() {
    static std::unordered_map<HGDIOBJ, Note> notes;
    return notes;
}

Note* NoteOf(HGDIOBJ handle) {
    const auto found = Notes().find(handle);
    return found != Notes().end() ? &found->second : nullptr;
}

// Remembers an object that was made; the handle, null where there is none.
template <class Handle>
Handle Made(Handle handle, Note note = {}) {
    if (handle == nullptr) return handle;
    note.made = true;
    Notes()[handle] = std::move(note);
    return handle;
}

int Delete(HGDIOBJ handle) {
    Note* note = NoteOf(handle);
    if (note != nullptr && note->selected > 0) {
        if (note->made) note->doomed = true;
        return 1;
    }
    if (note != nullptr) Notes().erase(handle);
    zm::win32::ForgetNullPen(handle);
    return handle != nullptr ? ::DeleteObject(handle) : 0;
}

// The first pixels of a bitmap of one bit a pixel.
std::optional<Tile> TileOfBitmap(HBITMAP handle) {
    BITMAP bitmap{};
    if (::GetObjectW(handle, sizeof bitmap, &bitmap) != sizeof bitmap) return std::nullopt;
    if (bitmap.bmBitsPixel != 1 || bitmap.bmPlanes != 1 || bitmap.bmWidth < 1 || bitmap.bmHeight < 1)
        return std::nullopt;
    const LONG rowBytes = (bitmap.bmWidth + 15) / 16 * 2;
    std::vector<std::uint8_t> bytes(static_cast<std::size_t>(rowBytes) * static_cast<std::size_t>(bitmap.bmHeight));
    const LONG size = static_cast<LONG>(bytes.size());
    if (::GetBitmapBits(handle, size, bytes.data()) != size) return std::nullopt;
    return zm::platform::TileOf(bitmap.bmWidth, bitmap.bmHeight, bytes.data());
}

std::optional<Tile> TileOfBrush(HBRUSH brush, const LOGBRUSH& description) {
    const Note* note = NoteOf(brush);
    if (note != nullptr && note->tile) return note->tile;
    return TileOfBitmap(reinterpret_cast<HBITMAP>(description.lbHatch));
}

std::shared_ptr<const RegionRecipe> RecipeOf(HRGN region) {
    const Note* note = NoteOf(region);
    return note != nullptr && note->region != nullptr ? note->region : RegionRecipe::Of(region);
}

template <class Handle>
Handle Stock(int which) {
    return static_cast<Handle>(::GetStockObject(which));
}

}  // namespace

namespace zm::platform {

bool Describe(HPEN pen, LOGPEN& description) {
    if (const LOGPEN* nullPen = win32::NullPenDescription(pen)) {
        description = *nullPen;
        return true;
    }
    if (::GetObjectType(pen) == OBJ_PEN) return ::GetObjectW(pen, sizeof description, &description) != 0;
    EXTLOGPEN wide{};
    if (::GetObjectType(pen) != OBJ_EXTPEN || ::GetObjectW(pen, sizeof wide, &wide) == 0) return false;
    description.lopnStyle = wide.elpBrushStyle == BS_NULL ? PS_NULL : wide.elpPenStyle & PS_STYLE_MASK;
    description.lopnWidth = {static_cast<LONG>(wide.elpWidth), 0};
    description.lopnColor = wide.elpColor;
    return true;
}

bool Describe(HFONT font, LOGFONTA& description) {
    LOGFONTW wide{};
    if (::GetObjectType(font) != OBJ_FONT || ::GetObjectW(font, sizeof wide, &wide) == 0) return false;
    description = win32::GbkFont(wide);
    return true;
}

bool Describe(HBRUSH brush, Fill& fill) {
    LOGBRUSH description{};
    if (::GetObjectType(brush) != OBJ_BRUSH || ::GetObjectW(brush, sizeof description, &description) == 0) return false;
    Fill found;
    found.color = description.lbColor & 0xFFFFFF;
    switch (description.lbStyle) {
        case BS_SOLID:
            break;
        case BS_NULL:
            found.kind = Fill::Kind::none;
            found.color = Fill{}.color;
            break;
        case BS_HATCHED:
            if (description.lbHatch > HS_DIAGCROSS) return false;
            found.kind = Fill::Kind::hatch;
            found.hatch = static_cast<int>(description.lbHatch);
            found.rows = kHatchRows[description.lbHatch];
            break;
        case BS_PATTERN: {
            const std::optional<Tile> tile = TileOfBrush(brush, description);
            if (!tile) return false;
            found.kind = Fill::Kind::pattern;
            found.color = Fill{}.color;
            found.rows = *tile;
            break;
        }
        default:
            return false;
    }
    fill = found;
    return true;
}

bool Describe(HRGN region, Region& pixels) {
    if (::GetObjectType(region) != OBJ_REGION) return false;
    const std::shared_ptr<const RegionRecipe> recipe = RecipeOf(region);
    RECT box{};
    ::GetRgnBox(region, &box);
    const RECT known = recipe->region().Box();
    // The application may have moved or changed it by operations of the system.
    pixels = ::EqualRect(&box, &known) != 0 ? recipe->region() : RegionRecipe::Of(region)->region();
    return true;
}

void Hold(HGDIOBJ handle) {
    ++Notes()[handle].selected;
}

void Release(HGDIOBJ handle) {
    Note* note = NoteOf(handle);
    if (note == nullptr || --note->selected > 0) return;
    const bool doomed = note->doomed;
    if (doomed || !note->made) Notes().erase(handle);
    if (!doomed) return;
    win32::ForgetNullPen(handle);
    ::DeleteObject(handle);
}

int ObjectCount() {
    return static_cast<int>(std::count_if(Notes().begin(), Notes().end(), [](const auto& n) { return n.second.made; }));
}

HGDIOBJ SystemFontObject() {
    return ::GetStockObject(SYSTEM_FONT);
}

}  // namespace zm::platform

namespace zm::device {

HPEN CreatePen(int style, int width, COLORREF color) {
    LOGPEN description{};
    description.lopnStyle = style >= PS_SOLID && style <= PS_INSIDEFRAME ? static_cast<UINT>(style) : PS_SOLID;
    description.lopnWidth.x = width < 0 && width > INT_MIN ? -width : std::max(width, 0);
    description.lopnColor = color;
    if (description.lopnStyle == PS_NULL)
        if (const HPEN pen = zm::win32::CreateNullPen(description)) return Made(pen);
    return Made(::CreatePenIndirect(&description));
}
HFONT CreateFontIndirectA(const LOGFONTA* font) {
    if (font == nullptr) return nullptr;
    const LOGFONTW wide = zm::win32::WideFont(*font);
    return Made(::CreateFontIndirectW(&wide));
}
HBRUSH CreateSolidBrush(COLORREF color) {
    return Made(::CreateSolidBrush(color & 0xFFFFFF));
}
HBRUSH CreateHatchBrush(int style, COLORREF color) {
    if (style < HS_HORIZONTAL || style > HS_DIAGCROSS) return nullptr;
    return Made(::CreateHatchBrush(style, color & 0xFFFFFF));
}
HBITMAP CreateBitmap(int width, int height, unsigned int planes, unsigned int bitsPerPixel, const void* bits) {
    if (width < 1 || height < 1 || planes != 1 || bitsPerPixel != 1 || bits == nullptr) return nullptr;
    return Made(::CreateBitmap(width, height, planes, bitsPerPixel, bits));
}
HBRUSH CreatePatternBrush(HBITMAP bitmap) {
    Note note;
    note.tile = TileOfBitmap(bitmap);
    return Made(::CreatePatternBrush(bitmap), note);
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
    LOGPEN found{};
    if (description == nullptr || size < static_cast<int>(sizeof found) || !platform::Describe(pen, found)) return 0;
    std::memcpy(description, &found, sizeof found);
    return sizeof found;
}
int GetObjectA(HFONT font, int size, void* description) {
    LOGFONTA found{};
    if (description == nullptr || size < static_cast<int>(sizeof found) || !platform::Describe(font, found)) return 0;
    std::memcpy(description, &found, sizeof found);
    return sizeof found;
}

HBRUSH WhiteBrush() {
    return Stock<HBRUSH>(WHITE_BRUSH);
}
HBRUSH NullBrush() {
    return Stock<HBRUSH>(NULL_BRUSH);
}
HPEN BlackPen() {
    return Stock<HPEN>(BLACK_PEN);
}
HPEN NullPen() {
    return Stock<HPEN>(NULL_PEN);
}

HRGN CreatePolygonRgn(const POINT* points, int count, int mode) {
    if (points == nullptr || count < 2 || (mode != ALTERNATE && mode != WINDING)) return nullptr;
    Note note;
    note.region = RegionRecipe::Polygon(points, count, mode);
    return Made(::CreatePolygonRgn(points, count, mode), note);
}
HRGN CreateRectRgn(int left, int top, int right, int bottom) {
    Note note;
    note.region = RegionRecipe::Rectangle(left, top, right, bottom);
    return Made(::CreateRectRgn(left, top, right, bottom), note);
}
int CombineRgn(HRGN target, HRGN first, HRGN second, int mode) {
    if (target == nullptr || first == nullptr || mode < RGN_AND || mode > RGN_COPY) return ERROR_REGION;
    if (second == nullptr && mode != RGN_COPY) return ERROR_REGION;
    const auto recipe =
        mode == RGN_COPY ? RecipeOf(first) : RegionRecipe::Combined(RecipeOf(first), RecipeOf(second), mode);
    const int kind = ::CombineRgn(target, first, mode == RGN_COPY ? nullptr : second, mode);
    if (Note* note = NoteOf(target); note != nullptr && kind != ERROR_REGION) note->region = recipe;
    return kind;
}
int GetRgnBox(HRGN region, RECT* box) {
    return region != nullptr && box != nullptr ? ::GetRgnBox(region, box) : ERROR_REGION;
}

}  // namespace zm::device
