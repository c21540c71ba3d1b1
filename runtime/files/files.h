// Opening of files. Path texts inside the library are GBK with backslashes; here they become the system's own.
#pragma once

#include <cstddef>
#include <cstdio>
#include <filesystem>
#include <string>
#include <string_view>

#include "zenromath/export.h"

namespace zm::files {

/// Bytes of a path text, without its end byte, that the fixed fields of the library hold.
constexpr std::size_t kPathLimit = 255;

/// The system's path of a GBK path text as it is written. Both separators count.
std::filesystem::path PathAsWritten(const char* path);

/// The system's path of a GBK path text. Both separators count; where the system tells cases apart and the path as
/// written does not exist, each component falls back to an existing name that differs in case only.
std::filesystem::path SystemPath(const char* path);

/// The same for a file name in a directory that is given as the system's path.
std::filesystem::path SystemPathIn(const std::filesystem::path& directory, const char* name);

/// A system path as a GBK text with backslashes; lost, if not null, receives the number of characters that GBK lacks.
std::string PathText(const std::filesystem::path& path, int* lost = nullptr);

/// fopen on a GBK path text with fopen's modes ("t" is accepted and means nothing). Null where it cannot be opened; a
/// directory cannot.
ZM_API std::FILE* Open(const char* path, const char* mode);

/// Open for a file that is only read, whatever the mode says: where write access is refused it opens for reading.
std::FILE* OpenToRead(const char* path, const char* mode);

/// Place of the last separator, backslash or slash, that is no second byte of a character; npos without one.
std::size_t LastSeparator(std::string_view path);
/// Place of the last "." after the last separator; npos without one.
std::size_t ExtensionDot(std::string_view path);
/// The text with every slash turned into a backslash.
std::string WithBackslashes(std::string_view path);

}  // namespace zm::files
