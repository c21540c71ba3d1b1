// The symbol library in memory: the tables that the file reader fills and the lookup works on.
#pragma once

#include <array>
#include <bit>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "zenromath/symbol.h"

namespace zm::symbol {

constexpr int kLastCode = 999;
constexpr int kHeads = kLastCode + 1;
// Reading stops at the first header that meets one of these. What a symbol has beyond the first is kept: it is the
// last one.
constexpr std::size_t kBodyRecords = 8000;
constexpr std::size_t kLineClasses = 300;
constexpr int kLineHeaders = 1000;
constexpr int kPatternTokens = 16;
constexpr float kTerminator = -100.0F;
// Marker of an arc polyline: its x, metres on the paper; y is the sweep in degrees.
constexpr float kArcMarker = -10000.0F;

struct ZM_API Library {
    Library();

    std::array<SymbolHead, kHeads> heads;
    SymbolHead current{0, 0, 0};
    std::vector<SYMBODY> body;
    std::array<float, kHeads> sizes{};
    int lineStyle = 0;  // number modulo 7 of the current plain line
    std::vector<LCBODY> lineClasses;
    std::array<std::string, kHeads> notes;
    std::array<int, kHeads> bodySizes{};  // records of each graphic and hatch symbol, counted once after reading

    // For each record of the body the plain segments, found by IsPlainSegment, that stand one after another from there:
    // decoded once after reading.
    std::vector<int> segmentsFrom;

    // The copy that TheBody points to, made at each lookup of another code: applications may write into it.
    std::shared_ptr<std::vector<SYMBODY>> drawn;

    /// Counts the records of all graphic and hatch symbols and finds the plain segments.
    void CountBodies();
    /// Makes TheBody and nBody those of the current graphic or hatch symbol of this code.
    void CopyBody(int code);
    /// Nobody has written into the current symbol's records since they were copied.
    bool IsAsLoaded(const SYMBODY* records, int size) const;
};

/// A run of records that belongs to one symbol, and the library that they lie in: a message may let the application
/// load another one meanwhile.
struct Body {
    const SYMBODY* records = nullptr;
    int size = 0;  // records up to the last terminator that the lookup counts
    std::shared_ptr<const Library> library;
    std::shared_ptr<const std::vector<SYMBODY>> owner;  // keeps the records while another symbol becomes current
};

SYMBODY PointRecord(float x, float y);
inline SYMBODY Terminator() {
    return PointRecord(kTerminator, kTerminator);
}
SYMBODY RawRecord(int first, int second);

/// The terminator as the drawing walks look for it: both words within 1e-5 of -100, which three floats are.
inline bool IsTerminator(const SYMBODY& record) {
    constexpr std::uint32_t kLeast = std::bit_cast<std::uint32_t>(-0x1.8ffffep6F);
    const auto isNear = [](float word) { return std::bit_cast<std::uint32_t>(word) - kLeast <= 2; };
    return isNear(record.point.x) && isNear(record.point.y);
}
/// By far the most common record of a graphic symbol: operator 1, two points, the terminator.
constexpr int kSegmentRecords = 4;
inline bool IsPlainSegment(const SYMBODY* record) {
    return record[0].op.op == 1.0F && !IsTerminator(record[1]) && !IsTerminator(record[2]) && IsTerminator(record[3]);
}

/// The terminator as the lookup counts it.
bool CountsAsTerminator(const SYMBODY& record);

/// The index after the first terminator at or after from, or -1 if the body ends first.
inline int NextRecord(const Body& body, int from) {
    for (int at = from; at < body.size; ++at)
        if (IsTerminator(body.records[at])) return at + 1;
    return -1;
}

/// The body of the current symbol, as TheBody and nBody have it.
Body CurrentBody();

}  // namespace zm::symbol
