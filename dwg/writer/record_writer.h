// Puts the fields of one record into its place in the output buffer. Every field names its offset, which is checked
// against the writer's own position, so that a forgotten field fails at the first run of a debug build.
#pragma once

#include <cassert>
#include <cstddef>
#include <cstdint>
#include <cstring>

#include "dwg/format/bytes.h"

namespace zm::dwg {

class RecordWriter {
 public:
    /// \param out    where the record begins
    /// \param size   its whole length; the destructor checks that all of it was filled
    /// \param begun  bytes that stand there already
    RecordWriter(std::uint8_t* out, std::size_t size, std::size_t begun = 0)
        : m_out(out), m_capacity(size), m_size(begun) {}
    ~RecordWriter() { assert(m_size == m_capacity); }
    RecordWriter(const RecordWriter&) = delete;
    RecordWriter& operator=(const RecordWriter&) = delete;

    RecordWriter& u8(std::size_t at, unsigned value) { return Put(at, static_cast<std::uint8_t>(value)); }
    RecordWriter& u16(std::size_t at, unsigned value) { return Put(at, static_cast<std::uint16_t>(value)); }
    RecordWriter& u32(std::size_t at, std::uint32_t value) { return Put(at, value); }
    RecordWriter& f64(std::size_t at, double value) { return Put(at, value); }
    RecordWriter& bytes(std::size_t at, const char* data, std::size_t count) {
        assert(at == m_size && at + count <= m_capacity);
        if (count != 0) std::memcpy(m_out + at, data, count);
        m_size = at + count;
        return *this;
    }

 private:
    template <typename T>
    RecordWriter& Put(std::size_t at, T value) {
        assert(at == m_size && at + sizeof value <= m_capacity);
        Store(m_out + at, value);
        m_size = at + sizeof value;
        return *this;
    }

    std::uint8_t* m_out;
    [[maybe_unused]] std::size_t m_capacity;
    [[maybe_unused]] std::size_t m_size;
};

}  // namespace zm::dwg
