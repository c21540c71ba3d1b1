// The blocks that stand for symbols in a DWG file.
#pragma once

namespace zm::symbol {

/// The block name of a code from 1 to 999; null without a table or for an empty entry.
const char* BlockName(int code);

/// The scale of every block.
double BlockScale();

/// Whether a symbol at a place may be a block there: no limit of the clip area runs through it, or nobody has said how
/// far symbols reach.
bool BlockIsWhole(double x, double y, int code);

}  // namespace zm::symbol
