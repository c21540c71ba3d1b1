// What the user hears when a table could not be saved.
#pragma once

#include <string>

#include "zenromath/runtime.h"

namespace zm::config {

/// What is between path and table in such a message.
inline constexpr char kNotWritten[] = " could not be written: ";

/// Says that a file could not be written; false. what: "the layers are", "the font is".
inline bool SayNotSaved(const std::string& path, const char* what) {
    _LMsg((path + kNotWritten + what +
           " not saved. Give the file and its folder write access and room on the disk, and save again.")
              .c_str(),
          nullptr, 0);
    return false;
}

}  // namespace zm::config
