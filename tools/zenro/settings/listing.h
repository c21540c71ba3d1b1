// The tables that the settings dialogs show, for a script to read.
#pragma once

#include <string>
#include <vector>

#include <nlohmann/json.hpp>

class TqNoteLayBase;

namespace zm::tool {

/// One table: its rows as they are shown, and values beside it such as the default pen width.
struct Listing {
    std::vector<std::string> columns;
    std::vector<std::vector<nlohmann::ordered_json>> rows;
    nlohmann::ordered_json beside = nlohmann::ordered_json::object();
};

/// Layers as ReadCengCi loaded them.
Listing ListLayers();
/// The codes that have a width of their own, and the default, 0.01 mm.
Listing ListPens();
Listing ListNotes(TqNoteLayBase& notes);
Listing ListFonts(TqNoteLayBase& notes);
/// The colours 1 to 9.
Listing ListColours();

/// A line of column names, then one for each row, in columns; what is beside comes first.
std::string AsText(const Listing& listing);
/// name: the array of the rows, each an object by column names.
nlohmann::ordered_json AsJson(const Listing& listing, const std::string& name);

}  // namespace zm::tool
