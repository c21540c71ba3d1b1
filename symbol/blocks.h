// The blocks that stand for symbols in a DWG file.
#pragma once

namespace zm::symbol {

/// The block name of a code from 1 to 999; null without a table or for an empty entry.
const char* BlockName(int code);

/// The scale of every block.
double BlockScale();

}  // namespace zm::symbol
