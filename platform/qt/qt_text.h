// Faces and sizes: from the fonts of the interface to Qt's.
#pragma once

#include <QFont>
#include <QString>
#include <string_view>

#include "zenromath/device.h"

namespace zm::qt {

/// A font with the transformation that gives it the asked-for cell.
struct FittedFont {
    QFont font;
    double ascent = 0.0;   // from the top of the cell to the baseline, device pixels
    double height = 0.0;   // of the cell
    double stretch = 1.0;  // horizontal
};

/// The font for a description: the named face or one that covers Chinese, at the cell height, and stretched to the
/// average character width (a double-byte character takes two). The result is kept for the next calls.
ZM_API const FittedFont& FontFor(const LOGFONTA& font);

/// Reports the face of a font, once, where a text has characters that no installed face has.
void ReportBoxes(const LOGFONTA& font, const QString& text);

/// The installed face that is taken for Chinese text, empty where there is none.
ZM_API QString ChineseFace();

ZM_API QString FromGbk(std::string_view text);

}  // namespace zm::qt
