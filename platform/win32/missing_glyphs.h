// Texts on device contexts of Windows.
#pragma once

#include <functional>
#include <string>

#include "zenromath/export.h"

namespace zm::win32 {

/// \param face  the face of the selected font, UTF-8
/// \param used  the installed face that was taken for the text; empty: none has all of its characters, and those that
///              are missing are drawn as GDI draws them, which is a box where no other font is linked to the face
using MissingGlyphsReport = std::function<void(const std::string& face, const std::string& used)>;

/// Who receives a report of each text whose characters the font lacks. Nobody at load. Where the face is not
/// installed, the text is drawn in an installed one that has its characters; an installed face stays.
/// \return the report in force before
ZM_API MissingGlyphsReport SetMissingGlyphsReport(MissingGlyphsReport report);

}  // namespace zm::win32
