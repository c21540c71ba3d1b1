// The HTML around the pictures: one file that needs nothing else.
#pragma once

#include <cstddef>
#include <string>

#include "tools/symbols/symbols.h"

namespace zm::tool::symbols {

class PageText {
 public:
    PageText(const std::string& title, std::size_t symbols);

    /// One code: picture, note, kind, source lines, and the message that drawing it brought, if any.
    void AddSymbol(const Symbol& symbol, const std::string& svg, const std::string& message);
    /// The pen width that the next symbols are labelled with, millimetres; 0: none.
    void SetPenWidth(double millimetres) { m_penWidth = millimetres; }
    void BeginOrnaments();
    /// One ornament with its pictures at all map scales; name is what it means, empty if the file does not say.
    void AddOrnament(int number, const std::string& name, bool draws, const std::string& pictures);
    std::string Finish();

 private:
    std::string m_text;
    double m_penWidth = 0.0;
};

}  // namespace zm::tool::symbols
