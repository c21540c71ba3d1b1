// What gives way to what on the sheet.
#pragma once

#include <array>
#include <map>

#include "tools/zenro/map/contour_sense.h"
#include "tools/zenro/map/masks.h"
#include "tools/zenro/map/road_network.h"
#include "tools/zenro/map/sea.h"
#include "tools/zenro/map/slopes.h"

namespace zm::tool {

struct MapMasks {
    explicit MapMasks(const Page& page)
        : lettering(page),
          contours(page),
          fills(page),
          limits(page),
          crosses(page),
          sense(page),
          m_buildings(page),
          m_inRoads(page),
          m_leastBeside(page.Ground(0.8)),
          m_leastPath(page.Ground(3.0)) {}
    /// Takes up a shape that is drawn by a rule, turned as it is drawn.
    void Take(const Shape& shape, const Use& use, const Page& page);
    /// Ends the taking of shapes: what depends on all of them, the strips of scarps and the areas of roads.
    void Finish(const Page& page);
    /// Takes up the labels.
    void Take(const std::vector<PlacedLabel>& labels, TqNoteLayBase& notes, const Page& page);

    Masks lettering;             // breaks lines that fill areas
    Masks contours;              // breaks contours
    Masks fills;                 // leaves out symbols of fills
    Masks limits;                // breaks land-use limits
    Masks crosses;               // breaks grid crosses
    std::map<int, Masks> decks;  // bridges by storey, which what they cross gives way to
    ContourSense sense;
    RoadNetwork roads;
    Slopes slopes;
    std::vector<std::string> unpairedSlopes;  // crests and feet without their other
    Sea sea;
    const Rule* seaRule = nullptr;  // of its shore; null where there is none

    /// The pieces of chains that no bridge above their storey covers.
    std::vector<Chain> BelowDecks(std::vector<Chain> pieces, int storey) const;
    /// The pieces of a path that are neither in a road nor along one. Where it only comes near a road, to end at it or
    /// to cross it, it is whole up to the edge.
    /// \param beside  how far from an edge it is still along the road, ground metres; at least 0.8 mm of paper count
    std::vector<Chain> OffRoads(const Chain& path, double beside) const;
    long roadsThroughBuildings = 0;

 private:
    Masks m_buildings, m_inRoads;
    double m_leastBeside, m_leastPath;     // ground metres from an edge, and along it, within which a path is left out
    std::map<double, Masks> m_alongRoads;  // the roads with so many metres beside them
    std::vector<Chain> m_scarps;
    struct Ring {
        Chain chain;
        double height;
    };
    std::vector<Ring> m_rings;  // closed contours

 public:
    /// Summits and hollows: places on the innermost contours and the direction downhill in radians, where slope ticks
    /// stand.
    std::vector<std::array<double, 3>> slopeTicks;
};

}  // namespace zm::tool
