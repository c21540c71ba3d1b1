// Where the library's own files lie in the source tree.
#pragma once

#include <filesystem>
#include <string>

#include "runtime/text/gbk.h"

namespace zm::test {

inline std::filesystem::path SourceDir() {
    return ZM_SOURCE_DIR;
}
inline std::filesystem::path OwnLibrary() {
    return SourceDir() / "data" / "symbol.dat";
}

/// A path as the library takes it: bytes in GBK.
inline std::string LibraryPath(const std::filesystem::path& path) {
    return gbk::FromUtf8(path.string());
}

}  // namespace zm::test
