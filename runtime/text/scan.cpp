#include "runtime/text/scan.h"

#include <algorithm>
#include <cfloat>
#include <climits>

#include "runtime/text/numbers.h"

namespace zm::symbol {
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

void Scanner::SkipSpace() {
    while (IsSpace(*m_at)) ++m_at;
}

bool Scanner::AtEnd() {
    SkipSpace();
    return *m_at == '\0';
}

bool Scanner::Int(int& value) {
    SkipSpace();
    const char* at = m_at;
    const bool negative = *at == '-';
    if (*at == '-' || *at == '+') ++at;
    if (!IsDigit(*at)) return false;
    std::int64_t sum = 0;
    for (; IsDigit(*at); ++at) sum = std::min<std::int64_t>(sum * 10 + (*at - '0'), std::int64_t{INT_MAX} + 1);
    if (negative) sum = -sum;
    value = static_cast<int>(std::clamp<std::int64_t>(sum, INT_MIN, INT_MAX));
    m_at = at;
    return true;
}

bool Scanner::Number(double& value) {
    SkipSpace();
    const char* first = m_at;
    if (*first == '-' || *first == '+') ++first;
    if (!IsDigit(*first) && !(*first == '.' && IsDigit(first[1]))) return false;
    const char* end = m_at;
    const double number = numbers::ReadReal(m_at, &end);
    if (end == m_at) return false;
    value = std::clamp(number, -DBL_MAX, DBL_MAX);
    m_at = end;
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
    const char* at = m_at;
    if (*at == '0' && (at[1] == 'x' || at[1] == 'X') && HexDigit(at[2]) >= 0) at += 2;
    if (HexDigit(*at) < 0) return false;
    std::uint64_t sum = 0;
    for (; HexDigit(*at) >= 0; ++at)
        sum = std::min<std::uint64_t>(sum * 16 + static_cast<std::uint64_t>(HexDigit(*at)), UINT32_MAX);
    value = static_cast<std::uint32_t>(sum);
    m_at = at;
    return true;
}

bool Scanner::Word(std::string_view& value) {
    SkipSpace();
    const char* end = m_at;
    while (*end != '\0' && !IsSpace(*end)) ++end;
    if (end == m_at) return false;
    value = std::string_view(m_at, static_cast<std::size_t>(end - m_at));
    m_at = end;
    return true;
}

bool Scanner::Pair(float& x, float& y) {
    float first = 0.0F;
    float second = 0.0F;
    if (!Real(first) || *m_at != ',') return false;
    ++m_at;
    if (!Real(second)) return false;
    x = first;
    y = second;
    return true;
}

double LeadingNumber(const char* text) {
    double value = 0.0;
    Scanner(text).Number(value);
    return value;
}

}  // namespace zm::symbol
