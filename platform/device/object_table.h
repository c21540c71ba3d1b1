// The table of the objects behind the handles, where the system has none: pens, fonts, brushes, bitmaps, regions.
//
// A handle is a number made of a place in one table and the count of objects that the place has had, so a stale handle
// is never taken for another object. Objects are process-wide, as the handles are.
#pragma once

#include <array>
#include <cstdint>
#include <variant>

#include "platform/device/objects.h"

namespace zm::platform {

struct Pen {
    LOGPEN description{};
};
struct Font {
    LOGFONTA description{};
};
struct Brush {
    /// For a pattern rows holds the tile; text and background colour come from the device when it fills.
    Fill fill;
};
struct Bitmap {
    std::array<std::uint8_t, 8> rows{};  // the first 8 by 8 pixels, a smaller bitmap repeated
};
using Object = std::variant<std::monostate, Pen, Font, Brush, Bitmap, Region>;

/// The handle of a new object; null if no more can be had.
HGDIOBJ Add(Object object, bool stock = false);
/// The object, null for a handle of none.
Object* Find(HGDIOBJ handle);

/// The object of a typed handle, null if the handle is of another kind or of none.
template <class Kind, class Handle>
Kind* FindAs(Handle handle) {
    Object* object = Find(reinterpret_cast<HGDIOBJ>(handle));
    return object != nullptr ? std::get_if<Kind>(object) : nullptr;
}

/// Deletes an object, or marks one that is still selected; false for a handle of none.
bool Delete(HGDIOBJ handle);

// Stock objects.
HGDIOBJ BlackPenObject();
HGDIOBJ NullPenObject();
HGDIOBJ WhiteBrushObject();
HGDIOBJ NullBrushObject();

}  // namespace zm::platform
