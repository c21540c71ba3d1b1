// Opening of files. Path texts inside the library are GBK with backslashes; here they become the system's own.
#pragma once

#include <cstdio>
#include <filesystem>

namespace zm::files {

/// The system's path of a GBK path text. Both separators count; where the system tells cases apart and the path as
/// written does not exist, each component falls back to an existing name that differs in case only.
std::filesystem::path SystemPath(const char* path);

/// fopen on a GBK path text with fopen's modes ("t" is accepted and means nothing). Null where it cannot be opened.
std::FILE* Open(const char* path, const char* mode);

}  // namespace zm::files
