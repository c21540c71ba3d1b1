#include "dwg/block/source_file.h"

#include <algorithm>
#include <cstring>
#include <limits>

namespace zm::dwg {

bool SourceFile::Read(std::uint64_t place, void* to, std::size_t count) {
    auto* out = static_cast<std::uint8_t*>(to);
    while (count > 0) {
        if (!Holds(place) && !Fetch(place)) return false;
        const auto at = static_cast<std::size_t>(place - m_windowStart);
        const std::size_t part = std::min(count, m_window.size() - at);
        std::memcpy(out, m_window.data() + at, part);
        out += part;
        place += part;
        count -= part;
    }
    return true;
}

bool SourceFile::Fetch(std::uint64_t place) {
    const std::uint64_t start = place - place % kWindowSize;
    if (start > static_cast<std::uint64_t>(std::numeric_limits<long>::max())) return false;
    // Of most files no more than the version is read, since their block is there already.
    const bool first = m_window.empty() && place - start < kFirstSize;
    m_window.resize(first ? kFirstSize : kWindowSize);
    m_windowStart = start;
    const bool there = std::fseek(m_file.get(), static_cast<long>(start), SEEK_SET) == 0;
    m_window.resize(there ? std::fread(m_window.data(), 1, m_window.size(), m_file.get()) : 0);
    return Holds(place);
}

}  // namespace zm::dwg
