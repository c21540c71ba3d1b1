// A block file that is read at any place.
#pragma once

#include <cstdint>
#include <utility>

#include "dwg/layout.h"
#include "dwg/output_file.h"

namespace zm::dwg {

class SourceFile {
 public:
    explicit SourceFile(FileOwner file) : m_file(std::move(file)) {}

    bool opened() const { return m_file != nullptr; }
    /// Reads count bytes at a place of the file; false where the file does not have all of them.
    bool Read(std::uint64_t place, void* to, std::size_t count);

 private:
    FileOwner m_file;
};

}  // namespace zm::dwg
