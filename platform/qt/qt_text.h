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
const FittedFont& FontFor(const LOGFONTA& font);

/// The installed face that is taken for Chinese text, empty where there is none.
QString ChineseFace();

QString FromGbk(std::string_view text);

}  // namespace zm::qt
