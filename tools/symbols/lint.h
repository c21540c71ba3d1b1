// The parts of lint. Each appends what it finds; the order is made afterwards.
#pragma once

#include <string>
#include <vector>

#include "tools/symbols/symbol_text.h"
#include "tools/symbols/symbols.h"

namespace zm::tool::symbols {

/// What the library's reader noticed, in words.
void LintReading(const SymbolText& text, std::vector<Finding>& findings);
/// Headers: notes, special lines, ornaments and the codes that these lean on.
void LintHeaders(const SymbolText& text, std::vector<Finding>& findings);
/// Graphic symbols.
void LintGraphics(const SymbolText& text, std::vector<Finding>& findings);
/// Line-class symbols in both modes.
void LintPatterns(const SymbolText& text, std::vector<Finding>& findings);
/// Hatches.
void LintHatches(const SymbolText& text, std::vector<Finding>& findings);

/// A length or code as a text shows it: up to six digits.
std::string Shown(double value);

}  // namespace zm::tool::symbols
