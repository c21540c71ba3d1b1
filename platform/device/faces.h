// What is known of common faces without asking the system: all that places a text needs, as parts of the size (em).
#pragma once

#include <string_view>

#include "zenromath/platform.h"

namespace zm::platform {

struct Face {
    double ascent, descent;  // of the cell above and below the base line
    double averageWidth;     // of a character; of a face for Chinese half of a full character
    double digitWidth;       // the advance of a digit
    double capital;          // the height of capitals and digits
    /// The height of the cell.
    double cell() const { return ascent + descent; }
};

/// The face of a name in GBK; the common Chinese one where the name is not known. Full characters fill a square of the
/// size that begins kIdeographDrop below the base line.
ZM_API const Face& FaceOf(std::string_view name);
constexpr double kIdeographDrop = 0.14;

}  // namespace zm::platform
