// Roads given by centre lines: the edges of all of them together, without inner lines where they meet, bridges above
// what they cross, tunnels between their portals.
#pragma once

#include <map>
#include <utility>
#include <vector>

#include "tools/zenro/map/masks.h"

namespace zm::tool {

/// What is drawn of the roads of a rule.
struct RoadEdges {
    std::vector<Chain> ground;   // edges on the ground
    std::vector<Chain> bridges;  // rails of bridges, and their wings
    std::vector<Chain> tunnels;  // sides of tunnels, drawn in dashes
    std::vector<Chain> portals;
};

class RoadNetwork {
 public:
    /// A road, turned as it is drawn.
    /// \param width   of the road from edge to edge, ground metres
    /// \param storey  0 on the ground, above it on bridges, below it in tunnels
    void Add(const Chain& centre, double width, const Rule& rule, int storey = 0);
    /// Makes the edges. Roads that meet in one storey are one area; each piece of its outline goes to the rule of the
    /// road it comes from, and the least road opens into the greater ones. Ends are closed where nothing goes on. What a
    /// bridge crosses stops 0.2 mm beside it, and the sides of a tunnel are not drawn in the roads above.
    /// \param millimetre  of paper, ground metres
    void Build(double millimetre);
    /// Buildings were measured, the widths of roads are assumed: edges on the ground give way to buildings. Where a road
    /// itself runs through one for more than a millimetre of paper, it is a passage: its sides are drawn as a tunnel's.
    /// \return  how many roads do
    long KeepOff(const Masks& buildings, const Page& page);
    /// The areas of all roads but those in tunnels, with so many metres beside them; they overlap.
    std::vector<Shape> AreasWith(double beside) const;

    /// The edges of a rule's roads.
    const RoadEdges& EdgesOf(const Rule& rule) const;
    /// The areas of all roads but those in tunnels.
    const std::vector<Shape>& areas() const { return m_areas; }
    /// The bridges with what is kept clear beside them, and their storeys.
    const std::vector<std::pair<int, Shape>>& decks() const { return m_decks; }
    /// The rules that have roads.
    std::vector<const Rule*> rules() const;
    bool empty() const { return m_roads.empty(); }

 private:
    struct Road {
        Chain centre;
        double width;
        const Rule* rule;
        int storey;
    };
    friend class RoadBuilder;
    std::vector<Road> m_roads;
    std::map<const Rule*, RoadEdges> m_edges;
    std::vector<Shape> m_areas;
    std::vector<std::pair<int, Shape>> m_decks;
};

}  // namespace zm::tool
