// Parts of the sheet that other things give way to: lettering, buildings, roads, symbols.
#pragma once

#include <cstdint>
#include <unordered_map>
#include <vector>

#include "tools/zenro/map/labels.h"
#include "tools/zenro/map/shapes.h"

namespace zm::tool {

/// A place on a chain: so far on from a corner to the next, from 0 to 1.
struct ChainPlace {
    std::size_t corner = 0;
    double part = 0.0;
};
struct ChainSpan {
    ChainPlace from, to;
};
/// The piece of a chain in a span.
Chain PieceOf(const Chain& chain, const ChainSpan& span);

class Masks {
 public:
    explicit Masks(const Page& page) : m_cell(page.Ground(8.0)) {}
    /// An area with its holes, rings closed.
    void Add(const Shape& area);
    void Add(const TurnedBox& box);
    void Add(const Box& box);

    bool Covers(double x, double y) const;
    /// Whether a mask covers part of an upright box.
    bool Meets(const Box& box) const;
    /// Whether the limit of a mask runs through an upright box.
    bool LimitMeets(const Box& box) const;
    /// The pieces of a chain that no mask covers. A mask that the chain itself is the limit of counts as it may.
    std::vector<Chain> Outside(const Chain& chain) const;
    /// The same as spans of the chain.
    std::vector<ChainSpan> SpansOutside(const Chain& chain) const;
    /// The pieces of a chain that masks cover.
    std::vector<Chain> Inside(const Chain& chain) const;
    bool empty() const { return m_areas.empty(); }

 private:
    struct Edge {
        double x1, y1, x2, y2;
    };
    struct Bucket {
        std::vector<Edge> edges;
        std::vector<std::uint32_t> areas;
    };
    template <class Work>
    bool ForCells(const Box& box, const Work& work) const;
    template <class Work>
    void ForBuckets(const Box& box, const Work& work) const;
    void Crossings(double x1, double y1, double x2, double y2, std::vector<double>& at) const;

    double m_cell;
    std::vector<Shape> m_areas;
    std::unordered_map<std::uint64_t, Bucket> m_buckets;
    Bucket m_wide;  // areas and edges of too many cells
};

}  // namespace zm::tool
