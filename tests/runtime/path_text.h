// Files by the path texts of the library.
#pragma once

#include <cstdio>
#include <filesystem>
#include <string>

#include "runtime/files/files.h"

namespace zm::test {

// A path text in GBK, with backslashes, of a UTF-8 path.
inline std::string Text(const std::filesystem::path& path) {
    return zm::files::PathText(path);
}

inline std::string Content(const char* path, const char* mode = "rb") {
    std::FILE* file = zm::files::Open(path, mode);
    if (file == nullptr) return "(cannot be opened)";
    char bytes[64] = {};
    const std::size_t count = std::fread(bytes, 1, sizeof bytes, file);
    std::fclose(file);
    return {bytes, count};
}

}  // namespace zm::test
