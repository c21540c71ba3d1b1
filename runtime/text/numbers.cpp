#include "runtime/text/numbers.h"

#include <charconv>
#include <clocale>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "zenromath/export.h"

#if defined(_WIN32)
#include <locale.h>
#else
#include <locale.h>
#if defined(__APPLE__)
#include <xlocale.h>
#endif
#endif

namespace zm::numbers {
namespace {

// Puts the thread into the C locale's numbers while it lives.
#if defined(_WIN32)
class PointLocale {
 public:
    PointLocale() : m_mode(_configthreadlocale(_ENABLE_PER_THREAD_LOCALE)), m_previous(setlocale(LC_NUMERIC, nullptr)) {
        setlocale(LC_NUMERIC, "C");
    }
    ~PointLocale() {
        setlocale(LC_NUMERIC, m_previous.c_str());
        _configthreadlocale(m_mode);
    }
    PointLocale(const PointLocale&) = delete;
    PointLocale& operator=(const PointLocale&) = delete;

 private:
    int m_mode;
    std::string m_previous;
};
#else
class PointLocale {
 public:
    PointLocale() {
        static const locale_t c = newlocale(LC_ALL_MASK, "C", nullptr);
        m_previous = uselocale(c);
    }
    ~PointLocale() { uselocale(m_previous); }
    PointLocale(const PointLocale&) = delete;
    PointLocale& operator=(const PointLocale&) = delete;

 private:
    locale_t m_previous;
};
#endif

}  // namespace

ZM_API int PrintV(char* buffer, std::size_t size, const char* format, std::va_list args) {
    const PointLocale point;
    const int length = std::vsnprintf(buffer, size, format, args);
    if (length < 0 && buffer != nullptr && size > 0) buffer[0] = '\0';
    return length;
}

ZM_API int Print(char* buffer, std::size_t size, const char* format, ...) {
    std::va_list args;
    va_start(args, format);
    const int length = PrintV(buffer, size, format, args);
    va_end(args);
    return length;
}

ZM_API std::string TextV(const char* format, std::va_list args) {
    std::va_list again;
    va_copy(again, args);
    const int length = PrintV(nullptr, 0, format, args);
    std::string text(length > 0 ? static_cast<std::size_t>(length) : 0, '\0');
    if (length > 0) PrintV(text.data(), text.size() + 1, format, again);
    va_end(again);
    return text;
}

ZM_API std::string Text(const char* format, ...) {
    std::va_list args;
    va_start(args, format);
    std::string text = TextV(format, args);
    va_end(args);
    return text;
}

ZM_API double ReadReal(const char* text, const char** end) {
    const char* begin = text;
    while (*begin == ' ' || (*begin >= '\t' && *begin <= '\r')) ++begin;
    const bool plus = *begin == '+' && begin[1] != '-';
    double value = 0.0;
    const char* first = begin + (plus ? 1 : 0);
    const auto result = std::from_chars(first, first + std::strlen(first), value);
    if (result.ec == std::errc::result_out_of_range) {
        // from_chars leaves the value alone: what strtod gives is an infinity or a zero of the right sign.
        const PointLocale point;
        value = std::strtod(begin, nullptr);
    } else if (result.ec != std::errc{}) {
        if (end != nullptr) *end = text;
        return 0.0;
    }
    if (end != nullptr) *end = result.ptr;
    return value;
}

}  // namespace zm::numbers
