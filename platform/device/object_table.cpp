#include "platform/device/object_table.h"

#include <cstddef>
#include <cstring>
#include <utility>
#include <vector>

namespace zm::platform {
namespace {

constexpr std::size_t kPlaceBits = 24;  // 16 million objects at a time
constexpr std::size_t kNoPlace = ~std::size_t{0};

struct Place {
    Object object;
    std::uint32_t generation = 1;
    std::size_t nextFree = kNoPlace;  // of a free place; the list is threaded through them, so Free needs no memory
    int selected = 0;                 // devices that it is selected into
    bool doomed = false;              // deleted while selected
    bool stock = false;
};

struct Table {
    std::vector<Place> places;
    std::size_t firstFree = kNoPlace;
    int count = 0;  // without stock objects
};

Table& TheTable() {
    static Table table;
    return table;
}

HGDIOBJ HandleOf(std::size_t at, std::uint32_t generation) {
    const auto number = (static_cast<std::uintptr_t>(generation) << kPlaceBits) | (at + 1);
    return reinterpret_cast<HGDIOBJ>(number);  // NOLINT(performance-no-int-to-ptr): never an address
}

Place* PlaceOf(HGDIOBJ handle) {
    const auto number = reinterpret_cast<std::uintptr_t>(handle);
    const std::size_t at = number & ((std::uintptr_t{1} << kPlaceBits) - 1);
    Table& table = TheTable();
    if (at == 0 || at > table.places.size()) return nullptr;
    Place& place = table.places[at - 1];
    const bool same = HandleOf(at - 1, place.generation) == handle;
    return same && !std::holds_alternative<std::monostate>(place.object) ? &place : nullptr;
}

// Called by destructors: asks for no memory and throws nothing.
// NOLINTNEXTLINE(bugprone-exception-escape): the table is made before a place of it is
void Free(Place& place) noexcept {
    Table& table = TheTable();
    place.object = std::monostate{};
    ++place.generation;
    place.doomed = false;
    --table.count;
    place.nextFree = table.firstFree;
    table.firstFree = static_cast<std::size_t>(&place - table.places.data());
}

Fill FillOf(Fill::Kind kind) {
    Fill fill;
    fill.kind = kind;
    return fill;
}

LOGFONTA SystemFontDescription() {
    LOGFONTA font{};
    font.lfHeight = 16;
    font.lfWidth = 8;
    font.lfWeight = 400;
    std::strcpy(font.lfFaceName, "System");
    return font;
}

}  // namespace

HGDIOBJ Add(Object object, bool stock) {
    Table& table = TheTable();
    std::size_t at = table.places.size();
    if (table.firstFree != kNoPlace) {
        at = table.firstFree;
        table.firstFree = table.places[at].nextFree;
    } else if (at + 1 >= (std::size_t{1} << kPlaceBits)) {
        return nullptr;
    } else {
        table.places.emplace_back();
    }
    Place& place = table.places[at];
    place.object = std::move(object);
    place.selected = 0;
    place.stock = stock;
    if (!stock) ++table.count;
    return HandleOf(at, place.generation);
}

Object* Find(HGDIOBJ handle) {
    Place* place = PlaceOf(handle);
    return place != nullptr ? &place->object : nullptr;
}

void Hold(HGDIOBJ handle) {
    if (Place* place = PlaceOf(handle)) ++place->selected;
}

void Release(HGDIOBJ handle) {
    Place* place = PlaceOf(handle);
    if (place == nullptr) return;
    --place->selected;
    if (place->doomed && place->selected <= 0) Free(*place);
}

bool Delete(HGDIOBJ handle) {
    Place* place = PlaceOf(handle);
    if (place == nullptr) return false;
    if (place->stock) return true;
    if (place->selected > 0)
        place->doomed = true;
    else
        Free(*place);
    return true;
}

int ObjectCount() {
    return TheTable().count;
}

HGDIOBJ BlackPenObject() {
    static const HGDIOBJ pen = Add(Pen{{static_cast<UINT>(PS_SOLID), {1, 0}, 0}}, true);
    return pen;
}
HGDIOBJ NullPenObject() {
    static const HGDIOBJ pen = Add(Pen{{static_cast<UINT>(PS_NULL), {1, 0}, 0}}, true);
    return pen;
}
HGDIOBJ WhiteBrushObject() {
    static const HGDIOBJ brush = Add(Brush{FillOf(Fill::Kind::solid)}, true);
    return brush;
}
HGDIOBJ NullBrushObject() {
    static const HGDIOBJ brush = Add(Brush{FillOf(Fill::Kind::none)}, true);
    return brush;
}
HGDIOBJ SystemFontObject() {
    static const HGDIOBJ font = Add(Font{SystemFontDescription()}, true);
    return font;
}

}  // namespace zm::platform
