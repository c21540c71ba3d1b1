// The numbers of a recorded command, read with a decimal point in every locale.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "runtime/text/numbers.h"

namespace zm::test {

/// "Line2:1.5:2:3:4" gives 1.5, 2, 3, 4 for the name "Line2"; nothing for a command of another name.
inline std::vector<double> NumbersOf(const std::string& command, std::string_view name) {
    std::vector<double> found;
    if (command.compare(0, name.size(), name) != 0) return found;
    const char* at = command.c_str() + name.size();
    while (*at == ':') {
        const char* end = nullptr;
        const double value = numbers::ReadReal(++at, &end);
        if (end == at) break;
        found.push_back(value);
        at = end;
    }
    return found;
}

}  // namespace zm::test
