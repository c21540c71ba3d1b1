// A large corpus of random drawing, the same on every machine, and digests of what it leaves on every sink.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

namespace zm::test {

/// Where the corpus goes.
enum class CorpusSink {
    recording,   ///< the commands of a recording
    drawing,     ///< the entities of a DWG file
    log,         ///< every call that reaches a device, with pens, brushes and fonts
    monochrome,  ///< the same of a monochrome device
    svg          ///< an SVG document
};

/// The view that the corpus is drawn in and about.
struct CorpusView {
    const char* name;
    double x, y;   // lower left corner, survey units
    double scale;  // pixels for a survey unit
    int width, height;
    bool flipped, rotated;
};

enum class CorpusClip { off, view, part, wide, concave, star };

struct CorpusDigest {
    std::uint64_t output = 0;   // of all bytes that the sink holds at the end
    std::uint64_t results = 0;  // of what the calls returned, left in their arguments, and showed
    std::size_t size = 0;       // of the output, bytes
    std::uint64_t rounded = 0;  // of a drawing with its numbers to six decimals; 0 for other sinks
    bool operator==(const CorpusDigest&) const = default;
};

/// Draws the corpus of one view and clip area, some hundred features of all kinds, and takes the digests.
CorpusDigest DrawCorpus(CorpusSink sink, const CorpusView& view, CorpusClip clip);

}  // namespace zm::test
