// The template drawing "acad.dwg", formed from nothing: header, header variables, one layer, one text style, the
// linetypes that pens ask for by number, and nothing drawn. docs/dwg/template.md has the reasons for its values.
#pragma once

#include <string>

namespace zm::tool {

/// All bytes of the file.
std::string TemplateDrawing();

}  // namespace zm::tool
