// The work of "zenro symbols": lint, list, show and sheet, without a command line. Texts are UTF-8.
//
// A file is given by its path text as the library takes it (GBK, either separator). What is read is exactly what
// TsymbolInit reads, by the library's own reader; lines are those of the file, from 1.
#pragma once

#include <array>
#include <functional>
#include <string>
#include <utility>
#include <vector>

namespace zm::tool::symbols {

/// How much a finding matters.
enum class Weight {
    lost,     ///< something in the file is not drawn at all, or not where or how the file has it
    doubtful  ///< it draws, but perhaps not what its author thinks
};

/// One remark of lint.
struct Finding {
    int line = 0;  ///< of the file, from 1; 0 for the file as a whole
    int code = 0;  ///< of the symbol, 0 outside one
    Weight weight = Weight::lost;
    std::string text;  ///< one sentence: what is wrong and what to do
};

/// One symbol of a file, as it is after reading: of a code that is there twice, the later one.
struct Symbol {
    int code = 0;
    std::string kind;  ///< "G", "LC", "L", "E", "H" or "Y"
    int number = 0;    ///< as TheHeadNumber: records, tokens, entries, or the header's integer
    std::string note;
    double size = 0.0;                ///< millimetres as Get_G_Size has it; 0 but for kind G
    int firstLine = 0;                ///< its header
    int lastLine = 0;                 ///< the last line of its body
    std::vector<std::string> source;  ///< its lines
};

/// Whether the file can be opened for reading. The functions below take an unreadable file for an empty one.
bool CanRead(const char* path);

/// All symbols of a file, by code.
std::vector<Symbol> ReadSymbols(const char* path);

/// What in a file will not draw as its author thinks, by line. Nothing is shown while the file is read.
std::vector<Finding> Lint(const char* path);
/// "path:line: code: text", the form that editors jump by; "doubtful: " comes before the text of such a finding.
std::string FindingText(const std::string& path, const Finding& finding);

/// A table of all symbols: code, kind, size or number, note, lines; one line each, with a head line and a line of
/// counts at the end. kind limits it to one kind; empty for all.
std::string ListText(const std::vector<Symbol>& symbols, const std::string& kind);

/// All about one symbol: its kind and note, what it leans on and what leans on it, its source lines. Empty if the file
/// has no such code.
std::string ShowText(const std::vector<Symbol>& symbols, int code);

/// Two libraries, symbol by symbol: by their source lines, blanks at the ends of lines left aside. Each list by code.
struct Comparison {
    std::vector<std::pair<Symbol, Symbol>> changed;  ///< as the first has it, as the second has it
    std::vector<Symbol> onlyFirst, onlySecond;
    int alike = 0;
    bool same() const;
};

/// Compares symbols as ReadSymbols gives them.
Comparison Compare(const std::vector<Symbol>& first, const std::vector<Symbol>& second);

/// The lines of a symbol that go ("  - ") and come ("  + ").
std::string ChangesOf(const Symbol& before, const Symbol& after);

/// What differs, for people: changed symbols with the lines that go ("-") and come ("+"), codes that only one has, and
/// a line of counts. first and second are the names of the two.
std::string ComparisonText(const Comparison& comparison, const std::string& first, const std::string& second);

/// What the page of pictures needs to know.
struct SheetOptions {
    std::string title = "Symbol library";
    double pen = 0.15;  ///< millimetres on paper, where look is not set
    /// The pen of a code's layer; where it is not set, black strokes of the width pen.
    struct Look {
        double width;         ///< millimetres on paper
        unsigned long color;  ///< red, green, blue from the lowest byte
    };
    std::function<Look(int code)> look;
};

/// One self-contained HTML page: every code drawn as inline SVG at paper size with its note, kind and source lines, a
/// filter box, a choice of enlargement and of the map scale of the ornaments; after them all 39 ornaments with their
/// control points numbered.
///
/// The pictures are drawn by the library itself: it loads the file (TsymbolInit), draws through a context of its own,
/// and puts the working context, the map scale and the host back afterwards. The loaded library stays.
/// \return the page; empty if the file cannot be read
std::string SheetPage(const char* path, const SheetOptions& options);

}  // namespace zm::tool::symbols
