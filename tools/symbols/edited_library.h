// A symbol library with some of its symbols written anew.
#pragma once

#include <string>
#include <vector>

#include "tools/symbols/symbols.h"

namespace zm::tool::symbols {

/// A symbol's text in the place of the one that the file has.
struct Edit {
    int code = 0;
    std::string text;  ///< UTF-8, lines ended by LF, its header first; blank: the symbol is taken out
};

/// Where an edit lies in the file that it came into: lines from 1.
struct EditPlace {
    int code = 0, first = 0, count = 0;
};

struct EditedLibrary {
    std::string bytes;              ///< of the file: GBK, its line ends as they were, all else untouched
    std::vector<EditPlace> places;  ///< of the edits, in the order of the file
};

/// Puts edits into the bytes of a library. A code that the file has not comes before its end line.
/// \param path   the library that the bytes are of; it is read for where its symbols lie
/// \param fault  why an edit cannot be taken, in a sentence, with its code; empty where all is well
EditedLibrary PutEdits(const char* path, const std::string& bytes, const std::vector<Edit>& edits, std::string& fault);

/// A symbol's lines as one text for an editor.
std::string TextOf(const Symbol& symbol);

/// What lint finds in an edited library that concerns an edit: in its lines, counted from its header as 1; and of other
/// symbols what it did not find before, with the line 0.
std::vector<Finding> FindingsOf(const std::vector<Finding>& before, const std::vector<Finding>& after,
                                const EditPlace& place);

}  // namespace zm::tool::symbols
