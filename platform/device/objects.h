// What devices ask about the objects behind handles: pens, fonts, brushes, regions. On Windows these are GDI's own, so
// that an application may hand over what it made itself; elsewhere they stand in a table of the library.
#pragma once

#include "zenromath/device.h"

namespace zm::platform {

/// What an object is; false, with nothing changed, for a handle of another kind or of none. A brush comes without the
/// colours of the moment.
bool Describe(HPEN pen, LOGPEN& description);
bool Describe(HFONT font, LOGFONTA& description);
bool Describe(HBRUSH brush, Fill& fill);
bool Describe(HRGN region, Region& pixels);

/// Counts the devices that an object is selected into.
void Hold(HGDIOBJ handle);
/// Counts one less; a deleted object goes with the last one.
void Release(HGDIOBJ handle);

/// How many objects the library has made and not deleted, beside the stock objects; for tests.
int ObjectCount();

/// The font of a fresh device.
HGDIOBJ SystemFontObject();

}  // namespace zm::platform
