// Numbers as text, the same in every locale: a decimal point, no grouping.
#pragma once

#include <cstdarg>
#include <cstddef>
#include <string>

namespace zm::numbers {

/// printf into a buffer: at most size - 1 bytes and an end byte. Returns the length that the whole text would have.
/// Conversions of floating numbers print a point whatever LC_NUMERIC says.
int Print(char* buffer, std::size_t size, const char* format, ...) __attribute__((format(printf, 3, 4)));
int PrintV(char* buffer, std::size_t size, const char* format, std::va_list args);

/// The same as a string.
std::string Text(const char* format, ...) __attribute__((format(printf, 1, 2)));
std::string TextV(const char* format, std::va_list args);

/// strtod with a decimal point in every locale; no hexadecimal form. end, if not null, receives the place behind the
/// number, text itself where none begins.
double ReadReal(const char* text, const char** end = nullptr);

}  // namespace zm::numbers
