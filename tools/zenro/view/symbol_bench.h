// A symbol library as a window edits it: the file with the edits that are not saved yet, in force for drawing.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "tools/kit/output_file.h"
#include "tools/symbols/edited_library.h"
#include "tools/symbols/samples.h"

namespace zm::tool {

/// A picture of a sample that is wanted: the middle in millimetres of paper, y up, in so many pixels a millimetre; 0
/// pixels: as it fits.
struct SampleView {
    symbols::Sample sample = symbols::Sample::alone;
    int width = 0, height = 0;
    double x = 0.0, y = 0.0, perMillimetre = 0.0;
};

class SymbolBench {
 public:
    /// Reads a library with edits; nothing where that was done last. Throws Failure.
    void Take(const std::string& file, const std::vector<symbols::Edit>& edits);

    const std::vector<symbols::Symbol>& symbols() const { return m_symbols; }
    /// The symbol of an edit, whatever code its text gives it; else that of the code. Null where there is none.
    const symbols::Symbol* Find(int code) const;
    /// What lint has to say of an edit.
    std::vector<symbols::Finding> Check(int code);
    /// Draws a sample. \param view gets the middle and scale that were taken
    /// \param[out] message  what the library showed meanwhile
    /// \return false where the symbol draws nothing
    bool Draw(const symbols::Symbol& symbol, const symbols::SheetOptions::Look& look, SampleView& view,
              std::uint32_t* pixels, std::string& message) const;
    /// Writes the library with its edits. Throws Failure, for the library that ships with the program too.
    void Save(const std::string& to) const;

 private:
    std::string m_key, m_file, m_bytes;
    std::string m_original, m_path;  // of the file, and of what is in force, as the library takes them
    std::vector<symbols::Symbol> m_symbols;
    std::vector<symbols::EditPlace> m_places;
    PrivateFolder m_folder;
};

}  // namespace zm::tool
