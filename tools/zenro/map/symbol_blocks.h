// Point symbols as blocks of the drawing: each is a block of its strokes, named by its code and note.
#pragma once

#include <string>
#include <vector>

#include "tools/kit/output_file.h"

namespace zm::tool {

/// While it exists, DWG and DXF drawings refer to a block wherever a point symbol is placed, scaled and turned. A block
/// is defined at the first reference to it; its strokes lie on layer 0 in the colour of the block, which is that of the
/// reference. Symbols within line patterns stay strokes, and so does one that the limit of the sheet may cut. The symbol
/// library is in force all the time.
class SymbolBlocks {
 public:
    /// Draws the symbols into block files of its own. Throws Failure (kNoOutput) where these cannot be written.
    SymbolBlocks();
    ~SymbolBlocks();
    SymbolBlocks(const SymbolBlocks&) = delete;
    SymbolBlocks& operator=(const SymbolBlocks&) = delete;

 private:
    PrivateFolder m_folder;
    std::vector<std::string> m_names;  // by code, GBK
    std::vector<const char*> m_table;
    std::vector<double> m_reach;
};

/// The name of a symbol's block: "S", three digits of the code and, where there is one, an underscore and the note,
/// at most 31 bytes of GBK. What other programs refuse in names becomes an underscore.
std::string SymbolBlockName(int code, const std::string& note);

}  // namespace zm::tool
