// A symbol file as text and as the library reads it, side by side.
#pragma once

#include <array>
#include <string>
#include <vector>

#include "symbol/file/symbol_file.h"

namespace zm::tool::symbols {

/// Where a code is defined: lines from 1, both included; 0 and 0 for a code that the file does not define.
struct Place {
    int first = 0;
    int last = 0;
};

struct SymbolText {
    std::vector<std::string> lines;  ///< GBK, without their ends
    zm::symbol::Library library;
    std::vector<zm::symbol::RemarkAt> remarks;
    std::array<Place, zm::symbol::kHeads> places{};

    const SymbolHead& Head(int code) const { return library.heads[static_cast<std::size_t>(code)]; }
    const Place& At(int code) const { return places[static_cast<std::size_t>(code)]; }
    bool Has(int code) const { return code > 0 && code < zm::symbol::kHeads && At(code).first > 0; }
    /// True for a code that is defined with this status.
    bool Is(int code, int status) const { return Has(code) && Head(code).status == status; }
    /// The text of a line; empty outside the file.
    const std::string& Line(int number) const;
};

/// Reads a file without showing anything. False if it cannot be opened.
bool ReadSymbolText(const char* path, SymbolText& text);

}  // namespace zm::tool::symbols
