// How often the short forms of common work are taken, so that tests see that they are. Counted where the build says so
// (ZM_COUNT_USES); elsewhere nothing is left of it.
#pragma once

#include <cstdint>

namespace zm::uses {

enum Form {
    strokeInBox,      // StrokeStream: mapped as it is
    strokeOutside,    // clipped, or to another sink than a device
    segmentGathered,  // PlaceSymbol: plain segments in the view
    symbolMoved,      // RepeatedSymbol: turned before, only moved
    symbolExact,      // the same, with the ends computed as PlaceSymbol does
    symbolAlone,      // placed by PlaceSymbol
    stepByCourse,     // Course: by sums and products
    stepByLeg,        // Course: by the leg itself
    pointByLeg,       // TurnedFigure: by the leg's direction
    pointByBearing,   // TurnedFigure: by cosine and sine of the bearing
    strokeFilled,     // QtDevice: a thin stroke's outline was filled
    forms
};

#ifdef ZM_COUNT_USES
inline std::uint64_t counts[forms];
inline void Count(Form form, int times = 1) {
    counts[form] += static_cast<std::uint64_t>(times);
}
#else
inline void Count(Form, int = 1) {}
#endif

}  // namespace zm::uses
