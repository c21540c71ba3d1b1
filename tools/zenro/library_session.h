// The library in force for drawing: the project's layers, the note classes, the symbol library.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "tools/zenro/tool_host.h"
#include "zenromath/config.h"

namespace zm::tool {

struct LibraryOptions {
    std::string project;  // ".ini" file with the layers; empty: the default beside the library
    std::string symbols;  // symbol library; empty: "symbol.dat" as the library finds it
    std::string notes;    // note classes; empty: "Orvnote.cod" beside the library
    std::string blocks;   // lines "CODE NAME": DWG blocks in place of symbols
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
    void NameProject(const std::string& project);
    void ReadNotes(const std::string& file);
    void ReadBlocks(const std::string& file);

    std::unique_ptr<TqNoteLayBase> m_notes;
    std::vector<std::string> m_blockNames;
    std::vector<const char*> m_blockTable;
};

/// Kinds of a symbol code in the library in force, and whether the library has it at all.
struct SymbolKind {
    bool known = false;
    int status = 0;  // SymbolStatus
};
SymbolKind KindOfSymbol(int code);

/// Where the default data lies.
std::string ModuleDirectory();

}  // namespace zm::tool
