#include "dwg/writer/output_file.h"

#include <algorithm>
#include <cstring>
#include <new>
#include <utility>

namespace zm::dwg {

OutputFile::OutputFile(FileOwner file, std::size_t bufferSize)
    : m_file(std::move(file)), m_buffer(new (std::nothrow) std::uint8_t[bufferSize]), m_capacity(bufferSize) {
    if (m_buffer == nullptr) throw std::bad_alloc();
    std::setvbuf(m_file.get(), nullptr, _IONBF, 0);  // the buffer is here
}

void OutputFile::Flush() {
    // Behind a failure nothing more is tried: it would land at the wrong place.
    if (!m_failed && m_used != 0) m_failed = std::fwrite(m_buffer.get(), 1, m_used, m_file.get()) != m_used;
    m_used = 0;
}

void OutputFile::Write(const std::uint8_t* data, std::size_t count) {
    while (count != 0) {
        const std::size_t part = std::min(count, m_capacity);
        std::uint8_t* place = Append(part);
        if (data != nullptr) {
            std::memcpy(place, data, part);
            data += part;
        } else {
            std::memset(place, 0, part);
        }
        count -= part;
    }
}

bool OutputFile::Finish(const std::uint8_t* beginning, std::size_t count) {
    Flush();
    std::FILE* file = m_file.release();
    m_failed = m_failed || std::fseek(file, 0, SEEK_SET) != 0 || std::fwrite(beginning, 1, count, file) != count ||
               std::fflush(file) != 0;
    return std::fclose(file) == 0 && !m_failed;
}

}  // namespace zm::dwg
