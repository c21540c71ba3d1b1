#include "dwg/source_file.h"

#include <limits>

namespace zm::dwg {

bool SourceFile::Read(std::uint64_t place, void* to, std::size_t count) {
    if (place > static_cast<std::uint64_t>(std::numeric_limits<long>::max())) return false;
    if (std::fseek(m_file.get(), static_cast<long>(place), SEEK_SET) != 0) return false;
    return std::fread(to, 1, count, m_file.get()) == count;
}

}  // namespace zm::dwg
