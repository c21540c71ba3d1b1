// How often the short forms of common work are taken, and how often the full ones in their place, so that tests see
// that they are. Counted where the build says so (ZM_COUNT_USES), on one thread; elsewhere nothing is left of it.
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
    stepSure,         // a step by its own leg: by quotients
    stepByBearing,    // the same by cosine and sine of the bearing
    crossingMissed,   // SidesOfBox: two segments whose boxes say that they do not meet
    crossingAsked,    // the same, to be asked of Cross_P
    hatchSure,        // a hatch line that surely meets an edge
    hatchAsked,       // one that may pass it
    heightByGrid,     // Find4H: found, or not, without looking at each point
    heightByScan,     // after looking at points one by one
    edgePassed,       // PtInPolyEdge: a vertex passed over, well above or below the point
    edgeTested,       // an edge that was tested
    pointByIndex,     // of a clip polygon: answered by the cell of the point
    pointByEdges,     // by all edges
    segmentByIndex,   // clipped by the edges in the cells along it
    segmentByEdges,   // by all edges
    listInBlock,      // a position of a list, projected with others
    listAlone,        // the same alone, after the others
    footQuick,        // a footpoint by its expansion
    footIterated,     // by the iteration as it is defined
    strokeFilled,     // QtDevice: a thin stroke's outline was filled
    strokePlotted,    // a thin stroke set pixel by pixel on an image
    strokeInRuns,     // the same by runs of pixels
    strokeSingle,     // handed to QPainter with other single ones
    strokeChained,    // handed to it as one polyline with what goes on from it
    workShared,       // roads: a piece of work that all cores had a part in
    workAlone,        // one that was left to the thread that asked
    profileKept,      // a profile that was read before and has not changed since
    profileRead,      // one that was read, or looked at again
    penKept,          // QtDevice: a pen that was made before
    penMade,          // a new one
    stripShared,      // PNG: a strip of rows that was packed while others were
    stripAlone,       // one alone
    countByIndex,     // a layer's features on sheets: by its index
    countByLook,      // by a look at each feature
    forms
};

#ifdef ZM_COUNT_USES
inline std::uint64_t counts[forms];
inline void Count(Form form, std::uint64_t times = 1) {
    counts[form] += times;
}
#else
inline void Count(Form, std::uint64_t = 1) {}
#endif

}  // namespace zm::uses
