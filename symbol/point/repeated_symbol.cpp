#include "symbol/point/repeated_symbol.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstring>

#include "runtime/uses.h"
#include "symbol/file/library.h"
#include "symbol/paper.h"
#include "symbol/point/point_symbol.h"
#include "symbol/state.h"

namespace zm::symbol {
namespace {

using geometry::Pair;

constexpr double kDirectionSlack = 1e-7;  // of cosine and sine
constexpr double kPixelRounding = 2e-9;   // pixels; of a few operations on values up to 60,000, and of the units

constexpr double kUnits = 0x1p32;      // of a pixel
constexpr double kFarthest = 0x1p18;   // pixels; farther out a symbol is placed alone
constexpr double kToUnits = 0x1.8p20;  // a double with so much added has its last digit at one unit

FixedPair Units(Pair pixels) {
    const Pair shifted = pixels + kToUnits;
    FixedPair bits;
    std::memcpy(&bits, &shifted, sizeof(bits));
    return bits - std::bit_cast<std::uint64_t>(kToUnits);
}

// The records of a symbol of plain segments, which becomes the current one; null, and no message, where it is none, or
// nothing can be said of it.
const SYMBODY* SegmentsOf(int code, int most, int& segments) {
    const Library* library = state().library.get();
    if (library == nullptr || code < 1 || code > kLastCode ||
        library->heads[static_cast<std::size_t>(code)].status != SymbolStatusG || getsymbody(code) == 0)
        return nullptr;
    const SymbolHead& head = library->current;
    const auto position = static_cast<std::size_t>(head.position);
    segments = head.number;
    if (head.status != SymbolStatusG || !library->IsAsLoaded(TheBody, nBody) || segments < 1 || segments > most ||
        segments * kSegmentRecords > nBody || library->segmentsFrom[position] < segments)
        return nullptr;
    return TheBody;
}

}  // namespace

bool RepeatedSymbol::Prepare(const Standing& standing, int code) {
    m_prepared = false;
    const draw::ViewBox* box = m_stream.Box();
    // One that the clip area may leave out is not looked up here.
    if (!standing.hasDirection || box == nullptr || !box->Holds(box->PixelsOf(standing.at), 0.0) ||
        Get_G_Size(code) < TqDC->GetRealenByPixels(kDotPixels))
        return false;
    const SYMBODY* record = SegmentsOf(code, kMostSegments, m_segments);
    if (record == nullptr) return false;
    m_turn = m_stream.turn();
    m_code = code;
    m_direction = standing.direction;

    const Pair pixels = box->scale();
    const Pair origin = box->origin();
    const double perUnit = std::fabs(pixels[0]);
    const Pair along = pixels * ScaleDenominator() * m_direction;
    const Pair across = pixels * ScaleDenominator() * Pair{-m_direction[1], m_direction[0]};
    Pair ends[2 * kMostSegments];
    double farthest = 0.0;
    for (int i = 0; i < m_segments; ++i, record += kSegmentRecords)
        for (int end = 0; end < 2; ++end) {
            const SYMBODY::Point& p = record[1 + end].point;
            const double extent = std::fabs(double{p.x}) + std::fabs(double{p.y});
            if (!(extent < HUGE_VAL)) return false;
            farthest = std::max(farthest, extent);
            ends[2 * i + end] = double{p.x} * along + double{p.y} * across;
        }
    farthest *= std::fabs(ScaleDenominator()) * perUnit;
    // A survey position is rounded to a double; what lies in the view is not much farther out than its corner.
    const double slack = farthest * kDirectionSlack + kPixelRounding +
                         perUnit * std::max(std::fabs(origin[0]), std::fabs(origin[1])) * 0x1p-52;
    m_reach = farthest + slack;
    if (!(m_reach < kFarthest)) return false;
    m_slack = static_cast<std::uint64_t>(2.0 * slack * kUnits);
    for (int i = 0; i < 2 * m_segments; ++i) m_ends[i] = Units(ends[i] - slack);
    m_prepared = true;
    return true;
}

// False, with nothing drawn, where some end may not be in the view.
bool RepeatedSymbol::Put(const Standing& standing) {
    const draw::ViewBox* box = m_stream.Box();
    if (box == nullptr) return false;
    const Pair place = box->PixelsOf(standing.at);
    if (!box->Holds(place, m_reach)) return false;
    POINT* out = m_stream.next();
    const FixedPair units = Units(place);
    FixedPair doubt = {0, 0};
    const FixedPair slack = {m_slack, m_slack};
    const FixedPair* last = m_ends + 2 * static_cast<std::ptrdiff_t>(m_segments);
    for (const FixedPair* end = m_ends; end != last; ++end, ++out) {
        const FixedPair least = units + *end;
        doubt |= least ^ (least + slack);
        const geometry::IntPair pixel = __builtin_convertvector(least >> 32, geometry::IntPair);
        std::memcpy(out, &pixel, sizeof(pixel));
    }
    if (((doubt[0] | doubt[1]) >> 32) != 0) {
        PutExactly(standing);
        return true;
    }
    uses::Count(uses::symbolMoved);
    m_stream.Take(m_segments);
    return true;
}

// Some end may be on either of two pixels. All are in the view, so that nothing is drawn meanwhile.
void RepeatedSymbol::PutExactly(const Standing& standing) {
    uses::Count(uses::symbolExact);
    geometry::Turn turn(standing.leg());
    SymbolFigure figure(standing.at[0], standing.at[1], turn);
    const SYMBODY* record = TheBody;
    for (int i = 0; i < m_segments; ++i, record += kSegmentRecords)
        m_stream.Line(figure.At(record[1].point), figure.At(record[2].point));
}

void RepeatedSymbol::PlaceTurned(const Standing& standing, int code) {
    geometry::Turn turn(standing.leg());
    PlaceAlone(standing.at, turn, code);
}

void RepeatedSymbol::PlaceAlone(Pair at, geometry::Turn& turn, int code) {
    uses::Count(uses::symbolAlone);
    m_prepared = false;  // another symbol becomes the current one
    PlaceSymbol(m_stream, at[0], at[1], turn, code);
}

}  // namespace zm::symbol
