#include "runtime/text/scan.h"

#include <algorithm>
#include <cfloat>
#include <climits>

#include "runtime/text/numbers.h"

namespace zm::scan {
namespace {

bool IsDigit(char c) {
    return c >= '0' && c <= '9';
}

int HexDigit(char c) {
    if (IsDigit(c)) return c - '0';
    if (c >= 'a' && c <= 'f') return c - 'a' + 10;
    if (c >= 'A' && c <= 'F') return c - 'A' + 10;
    return -1;
}

}  // namespace

void Fields::SkipSpace() {
    while (!m_rest.empty() && IsSpace(m_rest.front())) m_rest.remove_prefix(1);
}

bool Fields::AtEnd() {
    SkipSpace();
    return m_rest.empty();
}

bool Fields::Byte(char& value) {
    if (m_rest.empty()) return false;
    value = m_rest.front();
    m_rest.remove_prefix(1);
    return true;
}

bool Fields::Literal(char wanted) {
    if (!m_rest.starts_with(wanted)) return false;
    m_rest.remove_prefix(1);
    return true;
}

bool Fields::Word(std::string_view& value) {
    SkipSpace();
    const auto end = std::find_if(m_rest.begin(), m_rest.end(), IsSpace);
    value = m_rest.substr(0, static_cast<std::size_t>(end - m_rest.begin()));
    m_rest.remove_prefix(value.size());
    return !value.empty();
}

bool Fields::Digits(std::int64_t& limited, std::uint32_t& low) {
    SkipSpace();
    std::string_view digits = m_rest;
    const bool negative = digits.starts_with('-');
    if (negative || digits.starts_with('+')) digits.remove_prefix(1);
    if (digits.empty() || !IsDigit(digits.front())) return false;
    limited = 0;
    low = 0;
    for (; !digits.empty() && IsDigit(digits.front()); digits.remove_prefix(1)) {
        const int digit = digits.front() - '0';
        limited = std::min<std::int64_t>(limited * 10 + digit, std::int64_t{INT_MAX} + 1);
        low = low * 10 + static_cast<std::uint32_t>(digit);
    }
    if (negative) {
        limited = -limited;
        low = 0U - low;
    }
    m_rest = digits;
    return true;
}

bool Fields::Int(int& value) {
    std::int64_t limited = 0;
    std::uint32_t low = 0;
    if (!Digits(limited, low)) return false;
    value = static_cast<int>(low);
    return true;
}

bool Scanner::Int(int& value) {
    std::int64_t limited = 0;
    std::uint32_t low = 0;
    if (!Digits(limited, low)) return false;
    value = static_cast<int>(std::clamp<std::int64_t>(limited, INT_MIN, INT_MAX));
    return true;
}

bool Scanner::Number(double& value) {
    SkipSpace();
    const char* const at = m_rest.data();
    const char* first = at;
    if (*first == '-' || *first == '+') ++first;
    if (!IsDigit(*first) && !(*first == '.' && IsDigit(first[1]))) return false;
    const char* end = at;
    const double number = numbers::ReadReal(at, &end);
    if (end == at) return false;
    value = std::clamp(number, -DBL_MAX, DBL_MAX);
    m_rest.remove_prefix(static_cast<std::size_t>(end - at));
    return true;
}

bool Scanner::Real(float& value) {
    double number = 0.0;
    if (!Number(number)) return false;
    value = static_cast<float>(std::clamp(number, -double{FLT_MAX}, double{FLT_MAX}));
    return true;
}

bool Scanner::Hex(std::uint32_t& value) {
    SkipSpace();
    const char* at = m_rest.data();
    if (*at == '0' && (at[1] == 'x' || at[1] == 'X') && HexDigit(at[2]) >= 0) at += 2;
    if (HexDigit(*at) < 0) return false;
    std::uint64_t sum = 0;
    for (; HexDigit(*at) >= 0; ++at)
        sum = std::min<std::uint64_t>(sum * 16 + static_cast<std::uint64_t>(HexDigit(*at)), UINT32_MAX);
    value = static_cast<std::uint32_t>(sum);
    m_rest.remove_prefix(static_cast<std::size_t>(at - m_rest.data()));
    return true;
}

bool Scanner::Pair(float& x, float& y) {
    float first = 0.0F;
    float second = 0.0F;
    if (!Real(first) || !Literal(',') || !Real(second)) return false;
    x = first;
    y = second;
    return true;
}

int LeadingInt(std::string_view text) {
    int value = 0;
    Fields(text).Int(value);
    return value;
}

double LeadingNumber(const char* text) {
    double value = 0.0;
    Scanner(text).Number(value);
    return value;
}

}  // namespace zm::scan
