// The fields of the lines in the family's text files, as scanf reads them, but for lines of any content.
#pragma once

#include <cstdint>
#include <string_view>

namespace zm::config {

class FieldScanner {
 public:
    explicit FieldScanner(std::string_view line) : m_rest(line) {}

    /// Any one byte; false at the end.
    bool Byte(char& value) {
        if (m_rest.empty()) return false;
        value = m_rest.front();
        m_rest.remove_prefix(1);
        return true;
    }
    /// This byte and no other.
    bool Literal(char wanted) {
        if (!m_rest.starts_with(wanted)) return false;
        m_rest.remove_prefix(1);
        return true;
    }
    /// What follows the blanks up to the next blank; false at the end.
    bool Word(std::string_view& value) {
        SkipBlanks();
        std::size_t length = 0;
        while (length < m_rest.size() && !IsBlank(m_rest[length])) ++length;
        value = m_rest.substr(0, length);
        m_rest.remove_prefix(length);
        return length > 0;
    }
    /// A decimal number after blanks, modulo 2 to the 32nd; value stays where there is none.
    bool Int(int& value) {
        SkipBlanks();
        std::string_view digits = m_rest;
        const bool negative = digits.starts_with('-');
        if (negative || digits.starts_with('+')) digits.remove_prefix(1);
        if (digits.empty() || digits.front() < '0' || digits.front() > '9') return false;
        std::uint32_t number = 0;
        while (!digits.empty() && digits.front() >= '0' && digits.front() <= '9') {
            number = number * 10 + static_cast<std::uint32_t>(digits.front() - '0');
            digits.remove_prefix(1);
        }
        value = static_cast<int>(negative ? 0u - number : number);
        m_rest = digits;
        return true;
    }
    void SkipBlanks() {
        while (!m_rest.empty() && IsBlank(m_rest.front())) m_rest.remove_prefix(1);
    }
    std::string_view rest() const { return m_rest; }

 private:
    static bool IsBlank(char c) { return c == ' ' || (c >= '\t' && c <= '\r'); }

    std::string_view m_rest;
};

/// The number that a text begins with, 0 for none.
inline int LeadingInt(std::string_view text) {
    int value = 0;
    FieldScanner(text).Int(value);
    return value;
}

}  // namespace zm::config
