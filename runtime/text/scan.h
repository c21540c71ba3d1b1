// Reading of fields from one line of text, with the rules of the formatted-input conversions %d, %f, %x and %s, the
// same in every locale.
#pragma once

#include <cstdint>
#include <string_view>

#include "zenromath/export.h"

namespace zm::scan {

/// White space of the formatted input: blank, tab, line feed, vertical tab, form feed, carriage return.
inline bool IsSpace(char c) {
    return c == ' ' || (c >= '\t' && c <= '\r');
}

/// Fields of a line of any bytes, zero bytes included.
class ZM_API Fields {
 public:
    explicit Fields(std::string_view line) : m_rest(line) {}

    /// Any one byte; false at the end.
    bool Byte(char& value);
    /// This byte and no other.
    bool Literal(char wanted);
    /// %s: the bytes after white space, up to the next; false at the end of the line.
    bool Word(std::string_view& value);
    /// %d: white space is skipped; false, with value unchanged, where no integer follows. Modulo 2 to the 32nd, so that a
    /// colour written without a sign is read whole.
    bool Int(int& value);
    /// Whether only white space is left.
    bool AtEnd();
    void SkipSpace();
    std::string_view rest() const { return m_rest; }

 protected:
    /// The digits after white space and a sign: the number, limited to 33 bits and its sign; false where there are none.
    bool Digits(std::int64_t& limited, std::uint32_t& low);

    std::string_view m_rest;
};

/// Fields of a text that ends with a zero byte, numbers with a point among them.
class ZM_API Scanner : public Fields {
 public:
    /// text: ended by a zero byte, and alive as long as the scanner.
    explicit Scanner(const char* text) : Fields(text) {}

    /// %d, limited to 32 bits: no code beyond the range becomes one within it.
    bool Int(int& value);
    /// %f: false where none follows; words like "inf" are none. Limited to the range of a float.
    bool Real(float& value);
    /// %lf, with the rules of Real and the range of a double.
    bool Number(double& value);
    /// %x of 32 bits, with or without 0x; limited like Int.
    bool Hex(std::uint32_t& value);
    /// %f,%f: both numbers with the comma directly after the first, or false.
    bool Pair(float& x, float& y);
};

/// atoi: the whole number at the start of a text, 0 if there is none.
ZM_API int LeadingInt(std::string_view text);
/// atof: the number at the start of a text, 0 if there is none.
ZM_API double LeadingNumber(const char* text);

}  // namespace zm::scan
