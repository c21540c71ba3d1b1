// What the DWG writer remembers between calls: the current attributes, which outlive a session, the open session, and
// what the last close came to.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace zm::dwg {

class Session;

/// The current attributes that every entity takes. Neither open nor close resets them.
struct Attributes {
    std::uint16_t color = 7;     // _LDBsetcolor: the low 16 bits
    std::uint16_t layer = 0;     // index in the layer table; _LDBsetlay
    std::uint16_t linetype = 0;  // index in the linetype table; _LDBsetltype
    std::uint16_t style = 0;     // index in the style table; _LDBsetstyle
    double elevation = 0.0;      // metres; _LDBsetelev, SetDwgElevation, _LDBsyncelev; always finite
    double thickness = 0.0;      // metres; _LDBsetelev; always finite
};

struct SessionDeleter {
    void operator()(Session* session) const;
};
using SessionOwner = std::unique_ptr<Session, SessionDeleter>;

struct State {
    Attributes now;
    SessionOwner session;           // null while closed
    int blockTail = 0;              // bytes at the end of a block file's records that the output lacks: 0 or 2.
                                    // Required: a file with digits below 1006 takes the value of the file before.
    bool importBlocks = false;      // SetBlockImport
    std::vector<char> blockFolder;  // SetBlockFolder; no string, which has no constant start value everywhere
    std::vector<std::string> copyWarnings;            // BlockCopyWarning
    std::vector<std::string> importNotes;             // BlockImportNote
    std::vector<std::string> refusedBlocks;           // reported since the last open that they cannot be had
    bool keepThickness = true;                        // SetThicknessKept
    bool closeRings = false;                          // SetRingsClosed
    bool lastFileComplete = true;                     // LastFileComplete
    std::uint32_t reported = 0;                       // limits that were reported since the last open, one bit for each
    std::uint64_t longestFile = 0xFFFFFFFF;           // bytes; offsets have 32 bits. Tests lower it.
    std::size_t outputBuffer = std::size_t{1} << 20;  // bytes. Tests change it.
};

extern constinit State g_state;
inline State& state() {
    return g_state;
}

/// Sets every remembered value of this folder back to its start value. An open session is dropped without finishing its
/// file.
void ResetState();

}  // namespace zm::dwg
