// Bytes that are written once, one after the other, and read at any place: in memory, beyond a limit in a temporary
// file that has no name.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

namespace zm::tool {

class ByteStore {
 public:
    explicit ByteStore(std::size_t memoryLimit) : m_limit(memoryLimit) {}
    ~ByteStore();
    ByteStore(const ByteStore&) = delete;
    ByteStore& operator=(const ByteStore&) = delete;

    /// Adds bytes and gives their place. Throws Failure (kNoOutput) where the temporary file cannot be written.
    std::uint64_t Add(const std::string& bytes);
    /// The bytes at a place; they last until the next call. Throws Failure (kFailed) where they cannot be read.
    const char* Read(std::uint64_t at, std::size_t size);
    std::uint64_t size() const { return m_filed + m_memory.size(); }
    bool filed() const { return m_file >= 0; }

 private:
    void File();

    std::size_t m_limit;
    std::string m_memory;       // all bytes, or those that are not in the file yet
    std::uint64_t m_filed = 0;  // bytes in the file
    int m_file = -1;
    std::string m_window;  // what was read of the file last
    std::uint64_t m_windowAt = 0;
};

}  // namespace zm::tool
