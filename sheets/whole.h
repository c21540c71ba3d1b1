// Whole numbers: division downwards, rounding, digits.
#pragma once

#include <cmath>
#include <cstdint>
#include <string>
#include <string_view>

namespace zm::sheets {

using Whole = std::int64_t;

constexpr Whole FloorDiv(Whole a, Whole b) {
    return a / b - (a % b != 0 && (a < 0) != (b < 0) ? 1 : 0);
}

/// The last of the cells that a stretch takes in: an end on a border takes in nothing beyond it, a stretch without
/// extent the cell of its point.
constexpr Whole LastCell(Whole first, Whole last, Whole size) {
    return last > first ? FloorDiv(last - 1, size) : FloorDiv(last, size);
}

/// A number in units; false where it is none or too large for them.
inline bool ToUnits(double number, double unitsInOne, double limit, Whole& units) {
    if (!(std::fabs(number) <= limit)) return false;
    units = static_cast<Whole>(std::llround(number * unitsInOne));
    return true;
}

/// Digits alone, as a number; -1 where there are others, none, or more than nine.
inline Whole DigitsOf(std::string_view text) {
    if (text.empty() || text.size() > 9) return -1;
    Whole number = 0;
    for (const char c : text) {
        if (c < '0' || c > '9') return -1;
        number = number * 10 + (c - '0');
    }
    return number;
}

inline std::string Padded(Whole number, std::size_t digits) {
    std::string text = std::to_string(number);
    return text.size() < digits ? std::string(digits - text.size(), '0') + text : text;
}

}  // namespace zm::sheets
