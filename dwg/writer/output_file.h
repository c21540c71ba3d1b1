// The output file: bytes go in file order through one large buffer. A write that fails is remembered until close.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <memory>

namespace zm::dwg {

struct FileCloser {
    void operator()(std::FILE* file) const { std::fclose(file); }
};
using FileOwner = std::unique_ptr<std::FILE, FileCloser>;

class OutputFile {
 public:
    /// Takes the stream and a buffer of this many bytes; throws std::bad_alloc where there is no memory for it.
    OutputFile(FileOwner file, std::size_t bufferSize);

    /// The place of the next count bytes, at most bufferSize; the caller fills all of them before the next call.
    std::uint8_t* Append(std::size_t count) {
        if (m_capacity - m_used < count) [[unlikely]]
            Flush();
        std::uint8_t* place = m_buffer.get() + m_used;
        m_used += count;
        return place;
    }
    /// Appends any number of bytes, zeros if data is null.
    void Write(const std::uint8_t* data, std::size_t count);

    /// Writes what is buffered, then these bytes over the beginning of the file, and closes it.
    /// \return whether everything since the construction reached the file
    bool Finish(const std::uint8_t* beginning, std::size_t count);

 private:
    void Flush();

    FileOwner m_file;
    std::unique_ptr<std::uint8_t[]> m_buffer;
    std::size_t m_capacity;
    std::size_t m_used = 0;
    bool m_failed = false;
};

}  // namespace zm::dwg
