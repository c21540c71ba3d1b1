// The HTML around the pictures: one file that needs nothing else.
#pragma once

#include <cstddef>
#include <string>

#include "tools/symbols/symbols.h"

namespace zm::tools::symbols {

class PageText {
 public:
    PageText(const std::string& title, std::size_t symbols);

    /// One code: picture, note, kind, source lines, and the message that drawing it brought, if any.
    void AddSymbol(const Symbol& symbol, const std::string& svg, const std::string& message);
    void BeginOrnaments();
    /// One ornament with its pictures at all map scales; name is what it stands for, empty if the file does not tell.
    void AddOrnament(int number, const std::string& name, bool draws, const std::string& pictures);
    std::string Finish();

 private:
    std::string m_text;
};

/// Text with the characters that HTML keeps for itself replaced.
std::string Escaped(const std::string& text);

}  // namespace zm::tools::symbols
