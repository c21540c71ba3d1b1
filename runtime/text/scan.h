// Reading of fields from one line of text, with the rules of the formatted-input conversions %d, %f, %x and %s, the
// same in every locale.
#pragma once

#include <cstdint>
#include <string_view>

#include "zenromath/export.h"

namespace zm::symbol {

class ZM_API Scanner {
 public:
    /// text: ended by a zero byte, and alive as long as the scanner.
    explicit Scanner(const char* text) : m_at(text) {}

    /// %d: white space is skipped; false, with value unchanged, where no integer stands. Limited to 32 bits.
    bool Int(int& value);
    /// %f: false where no number stands; words like "inf" are none. Limited to the range of a float.
    bool Real(float& value);
    /// %lf, with the rules of Real and the range of a double.
    bool Number(double& value);
    /// %x of 32 bits, with or without 0x; limited like Int.
    bool Hex(std::uint32_t& value);
    /// %s: the bytes up to the next white space; false at the end of the line.
    bool Word(std::string_view& value);
    /// %f,%f: both numbers with the comma directly after the first, or false.
    bool Pair(float& x, float& y);
    /// Whether only white space is left.
    bool AtEnd();

    const char* at() const { return m_at; }

 private:
    void SkipSpace();

    const char* m_at;
};

/// White space of the formatted input: blank, tab, line feed, vertical tab, form feed, carriage return.
inline bool IsSpace(char c) {
    return c == ' ' || (c >= '\t' && c <= '\r');
}

/// atof: the number at the start of a text, 0 if there is none.
ZM_API double LeadingNumber(const char* text);

}  // namespace zm::symbol
