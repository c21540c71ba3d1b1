// Zones of 3 and of 6 degrees: their numbers and central meridians, from the meridian of Greenwich eastwards. Zone 1 of
// the narrow ones is about 3 degrees, of the wide ones about 3 degrees too.
#pragma once

namespace zm::tool {

/// The central meridian of a zone, degrees; width 3 or 6.
constexpr int MeridianOfZone(int zone, int width) {
    return width == 3 ? zone * 3 : zone * 6 - 3;
}

/// The zone of a central meridian, degrees.
constexpr int ZoneNumber(int meridian, int width) {
    return width == 3 ? meridian / 3 : (meridian + 3) / 6;
}

}  // namespace zm::tool
