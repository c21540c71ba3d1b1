// A block file that is read at any place, through a window: records lead to and fro between entities and tables.
#pragma once

#include <cstdint>
#include <utility>
#include <vector>

#include "dwg/format/file_layout.h"
#include "dwg/writer/output_file.h"

namespace zm::dwg {

class SourceFile {
 public:
    explicit SourceFile(FileOwner file) : m_file(std::move(file)) {}

    bool opened() const { return m_file != nullptr; }
    /// Reads count bytes at a place of the file; false where the file does not have all of them.
    bool Read(std::uint64_t place, void* to, std::size_t count);

 private:
    static constexpr std::size_t kWindowSize = std::size_t{1} << 16;  // most block files are smaller
    static constexpr std::size_t kFirstSize = 4096;

    bool Holds(std::uint64_t place) const { return place >= m_windowStart && place - m_windowStart < m_window.size(); }
    // Brings the window to a place; false where the file has no byte there.
    bool Fetch(std::uint64_t place);

    FileOwner m_file;
    std::vector<std::uint8_t> m_window;  // bytes of the file, from m_windowStart
    std::uint64_t m_windowStart = 0;
};

}  // namespace zm::dwg
