// The library in force for drawing: the project's layers, the note classes, the symbol library.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "tools/kit/tool_host.h"
#include "tools/zenro/map/symbol_blocks.h"
#include "zenromath/config.h"

namespace zm::tool {

struct LibraryOptions {
    std::string project;  // ".ini" file with the layers; empty: the default beside the library
    std::string symbols;  // symbol library; empty: "symbol.dat" as the library finds it
    std::string notes;    // note classes; empty: "Orvnote.cod" beside the library
    std::string blocks;   // lines "CODE NAME": DWG blocks in place of symbols; their files lie beside the list, else
                          // where the library looks for its files
    bool blocksAsCopied = false;        // by the library's copying, else imported whole
    std::string symbolsAs = "strokes";  // of point symbols in DWG and DXF; or "blocks"
};

/// Starts the library in the order that it wants, and stops it. One at a time.
class LibrarySession {
 public:
    /// Throws Failure (kNoInput) where a file is missing or unusable.
    LibrarySession(const LibraryOptions& options, ToolHost& host);
    ~LibrarySession();
    LibrarySession(const LibrarySession&) = delete;
    LibrarySession& operator=(const LibrarySession&) = delete;

    TqNoteLayBase& notes() { return *m_notes; }
    /// Reads the layers again: the end of a drawing context frees them.
    void ReloadLayers();

 private:
    void ReadBlocks(const std::string& file);

    std::unique_ptr<TqNoteLayBase> m_notes;
    std::vector<std::string> m_blockNames;
    std::vector<const char*> m_blockTable;
    std::unique_ptr<SymbolBlocks> m_symbolBlocks;
};

/// Names the project: its ".ini" file, or if empty the default one beside the library. Throws Failure (kNoInput) where
/// the file is missing or unusable.
void NameProject(const std::string& project);
/// Reads layers, pen widths and palette of the project. A palette that nobody has set becomes one for paper.
void ReadLayers();

/// Opens note classes: of a file, or if empty those beside the library. Throws Failure (kNoInput) where the file is
/// missing or has none.
std::unique_ptr<TqNoteLayBase> OpenNotes(const std::string& file, ToolHost& host);

/// Kinds of a symbol code in the library in force, and whether the library has it at all.
struct SymbolKind {
    bool known = false;
    int status = 0;  // SymbolStatus
};
SymbolKind KindOfSymbol(int code);
/// Millimetres of paper after which the pattern of a line symbol repeats; 0 for any other symbol.
double CycleOfSymbol(int code);
/// Its note in UTF-8, empty where it has none.
std::string NoteOfSymbol(int code);

/// Where the default data lies.
std::string ModuleDirectory();

}  // namespace zm::tool
