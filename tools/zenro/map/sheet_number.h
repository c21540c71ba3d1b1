// The standard sheet that a number names, in the plane of a drawing.
#pragma once

#include <optional>
#include <string>

#include "tools/zenro/map/page.h"
#include "tools/zenro/map/plane.h"
#include "tools/zenro/store/feature.h"
#include "zenromath/sheets.h"

namespace zm::tool {

/// A number that was read, before the plane is known.
struct NamedSheet {
    std::string number;
    bool graticule = false;
    sheets::GraticuleSheet degrees;  // of the graticule
    sheets::PlaneBox metres;         // else
    double scale = 0.0;
};

/// Reads the number of a standard sheet. A number of the graticule says its scale; a corner number needs the scale, and
/// its division where that is not 50x50 (1:5000: 40x40).
/// \return nothing where the text has not the form of one. Throws Failure (kUsage) where it has, and names no sheet.
std::optional<NamedSheet> ReadSheetNumber(const std::string& number, double scale, const std::string& division);

/// The zone of a sheet of the graticule and its width, 3 degrees down to 1:10,000, below 6; the user's width goes first.
/// West of Greenwich there is a meridian and no zone.
void TakeZoneOf(const NamedSheet& sheet, PlaneOptions& plane);

/// The outline of the sheet in the plane, open: corners, and points between them on parallels. Throws Failure where the
/// plane has no place for it.
Chain OutlineOf(const NamedSheet& sheet, const TargetPlane& plane);

/// The outline of a sheet of the graticule by its four sides, with its degrees and the numbers around it.
GraticuleEdge EdgeOf(const NamedSheet& sheet, const Chain& outline);

}  // namespace zm::tool
