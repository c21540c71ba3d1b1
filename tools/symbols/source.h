// The readable source of a symbol file, and the file made of it.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace zm::tool::symbols {

/// What is wrong in a line of a source.
struct SourceFault {
    int line = 0;      ///< from 1
    std::string text;  ///< UTF-8
};

/// Makes the bytes of a symbol file (GBK, LF ends) of readable source text (UTF-8).
///
/// The source is the symbol file's own language with these differences: it is UTF-8; blank lines may stand anywhere;
/// in the body of a symbol of kind G a line may be a shape (see ExpandShape) in place of records. Lines beginning with
/// "#" are remarks and are kept between symbols. What follows the closing quotation mark of a header is a remark too.
///
/// \param sources  the texts in order; the result ends with the line "*$"
/// \param[out] faults  lines that could not be used, counted over all texts; empty if all is well
std::string BuildSymbolFile(const std::vector<std::string>& sources, std::vector<SourceFault>& faults);

}  // namespace zm::tool::symbols
