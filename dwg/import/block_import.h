// Import of block files: the drawing of a file becomes a block definition of the open drawing, whole and so that other
// programs read it. What the required copying (dwg/block) leaves wrong is right here.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "dwg/writer/session.h"

namespace zm::dwg {

/// Why a block file was not imported, and what of one that was stays away.
struct ImportFault {
    std::string reason;        // a part of a sentence; empty: nothing is wrong
    std::uint64_t offset = 0;  // of the record in the block file
    bool limit = false;        // the file is sound, but a limit of the drawing was met
    long paperSpace = 0;       // records of paper space, viewports included
    long extended = 0;         // records whose extended data was left out
};

/// Imports a block file as the block of this name, in the next slot of the block table, or leaves the drawing as it was.
/// \param bytes  the file
/// \param name   at most 31 bytes
ImportFault ImportBlockFile(Session& session, std::vector<std::uint8_t> bytes, const std::string& name);

}  // namespace zm::dwg
