// A symbol that stands again and again on a device, along a line or in a grid, turned the same way.
#pragma once

#include <cstdint>

#include "draw/strokes.h"
#include "geometry/pair.h"
#include "geometry/turn.h"

namespace zm::symbol {

/// Parts of a pixel in whole numbers.
typedef std::uint64_t FixedPair __attribute__((vector_size(16)));

/// Where a symbol stands, and the vertex that it is turned to.
struct Standing {
    geometry::Pair at, to;
    bool hasDirection;  // whether cosine and sine of the bearing, as XYSA gives it, are the direction within 1e-7
    geometry::Pair direction;
    geometry::Leg leg() const { return {to[0] - at[0], to[1] - at[1]}; }
};

/// Places symbols as PlaceSymbol does, of which one after another is mostly the same, turned the same way: one of plain
/// segments in the view of a device is turned and scaled to pixels once and then only moved.
///
/// The pixels are those of the long way. All that a stroke's end may be off by is known; where that leaves a choice
/// between two pixels, the ends are computed as PlaceSymbol does.
class RepeatedSymbol {
 public:
    /// \param row  takes the strokes
    explicit RepeatedSymbol(draw::StrokeRow& row) : m_row(row) {}

    void Place(const Standing& standing, int code) {
        m_row.MakeRoom(kMostSegments);
        if (!(IsReady(standing, code) || Prepare(standing, code)) || !Put(standing)) PlaceAlone(standing, code);
    }

 private:
    static constexpr int kMostSegments = 16;

    bool IsReady(const Standing& standing, int code) const {
        return m_prepared && m_turn == m_row.turn() && m_code == code && standing.hasDirection &&
               geometry::Both(m_direction == standing.direction);
    }
    bool Prepare(const Standing& standing, int code);
    bool Put(const Standing& standing);
    void PutExactly(const Standing& standing);
    void PlaceAlone(const Standing& standing, int code);

    draw::StrokeRow& m_row;
    bool m_prepared = false;
    unsigned m_turn = 0;  // of the row; after it the symbol, the library and the view may be others
    int m_code = 0;
    geometry::Pair m_direction{};  // of the leg
    int m_segments = 0;
    double m_reach = 0.0;  // of all ends, pixels
    std::uint64_t m_slack = 0;
    FixedPair m_ends[2 * kMostSegments];  // from the symbol's place, less what they may be off by
};

}  // namespace zm::symbol
