// Groups of a DXF file: a code and a value, a line each, gathered in one buffer.
#pragma once

#include <charconv>
#include <string>
#include <string_view>

#include "dwg/reader/record.h"

namespace zm::dwg::dxf {

class GroupWriter {
 public:
    void Text(int code, std::string_view value) {
        Code(code);
        m_text.append(value);
        m_text += '\n';
    }
    void Whole(int code, long long value) {
        Code(code);
        Append(value);
        m_text += '\n';
    }
    /// The shortest digits that read back to the same number, always with a point or an exponent.
    void Real(int code, double value) {
        Code(code);
        const std::size_t at = m_text.size();
        Append(value);
        if (m_text.find_first_of(".en", at) == std::string::npos) m_text += ".0";
        m_text += '\n';
    }
    /// Codes c, c + 10 and c + 20.
    void Point(int code, const reader::Point& p) {
        Real(code, p.x);
        Real(code + 10, p.y);
        Real(code + 20, p.z);
    }
    std::string& text() { return m_text; }

 private:
    void Code(int code) {
        Append(code);
        m_text += '\n';
    }
    template <typename Number>
    void Append(Number number) {
        char digits[32];
        const auto end = std::to_chars(digits, digits + sizeof digits, number);
        m_text.append(digits, end.ptr);
    }

    std::string m_text;
};

}  // namespace zm::dwg::dxf
