// A symbol that is placed again and again on a device, along a line or in a grid, turned the same way.
#pragma once

#include <cstdint>

#include "draw/stroke/stream.h"
#include "geometry/exact/pair.h"
#include "geometry/exact/turn.h"

namespace zm::symbol {

/// Parts of a pixel in whole numbers.
typedef std::uint64_t FixedPair __attribute__((vector_size(16)));

/// Where a symbol is placed, and the vertex that it is turned to.
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
    /// \param stream  takes the strokes
    explicit RepeatedSymbol(draw::StrokeStream& stream) : m_stream(stream) {}

    void Place(const Standing& standing, int code) {
        m_stream.MakeRoom(kMostSegments);
        if (!(IsReady(standing, code) || Prepare(standing, code)) || !Put(standing)) PlaceTurned(standing, code);
    }
    /// The same by PlaceSymbol itself.
    void PlaceAlone(geometry::Pair at, geometry::Turn& turn, int code);

 private:
    static constexpr int kMostSegments = 16;

    bool IsReady(const Standing& standing, int code) const {
        return m_prepared && m_turn == m_stream.turn() && m_code == code && standing.hasDirection &&
               geometry::Both(m_direction == standing.direction);
    }
    bool Prepare(const Standing& standing, int code);
    bool Put(const Standing& standing);
    void PutExactly(const Standing& standing);
    void PlaceTurned(const Standing& standing, int code);
    draw::StrokeStream& m_stream;
    bool m_prepared = false;
    unsigned m_turn = 0;  // of the stream; after it the symbol, the library and the view may be others
    int m_code = 0;
    geometry::Pair m_direction{};  // of the leg
    int m_segments = 0;
    double m_reach = 0.0;  // of all ends, pixels
    std::uint64_t m_slack = 0;
    FixedPair m_ends[2 * kMostSegments];  // from the symbol's place, less what they may be off by
};

}  // namespace zm::symbol
