// Numbers as text, the same in every locale: a decimal point, no grouping.
#pragma once

#include <cstdarg>
#include <cstddef>
#include <cstdio>
#include <string>

// How the compiler learns that a function takes printf's formats; one C library has a name of its own for them.
#if defined(__MINGW_PRINTF_FORMAT)
#define ZM_FORMATS(text, first) __attribute__((format(__MINGW_PRINTF_FORMAT, text, first)))
#else
#define ZM_FORMATS(text, first) __attribute__((format(printf, text, first)))
#endif

namespace zm::numbers {

/// printf into a buffer: at most size - 1 bytes and an end byte. Returns the length that the whole text would have.
/// Conversions of floating numbers print a point whatever LC_NUMERIC says.
int Print(char* buffer, std::size_t size, const char* format, ...) ZM_FORMATS(3, 4);
int PrintV(char* buffer, std::size_t size, const char* format, std::va_list args);

/// The same as a string.
std::string Text(const char* format, ...) ZM_FORMATS(1, 2);
std::string TextV(const char* format, std::va_list args);

/// strtod with a decimal point in every locale; no hexadecimal form. end, if not null, receives the place after the
/// number, text itself where none begins.
double ReadReal(const char* text, const char** end = nullptr);

}  // namespace zm::numbers
