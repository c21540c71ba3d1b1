// The template drawing: what a new file begins with.
#pragma once

#include <cstdint>
#include <cstdio>
#include <string>
#include <vector>

namespace zm::dwg {

/// Bytes of the template from its start to the end of its tail, proven to have the layout that the writer needs.
struct DrawingTemplate {
    std::vector<std::uint8_t> bytes;
    bool hasJump = false;  // its entity section is a jump marker
};

/// Reads the template from an open stream.
/// \param[out] problem  what is wrong with it, a part of a sentence; empty if nothing is
DrawingTemplate ReadTemplate(std::FILE* file, std::string& problem);

}  // namespace zm::dwg
