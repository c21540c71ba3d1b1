// Little-endian numbers out of a span of bytes. A place outside the span gives 0.
#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string>

namespace zm::dwg::reader {

using Bytes = std::span<const std::uint8_t>;

inline std::uint64_t UIntAt(Bytes bytes, std::uint64_t at, std::size_t width) {
    if (at > bytes.size() || bytes.size() - at < width) return 0;
    std::uint64_t value = 0;
    for (std::size_t i = 0; i < width; ++i) value |= static_cast<std::uint64_t>(bytes[at + i]) << (8 * i);
    return value;
}

inline std::uint8_t U8At(Bytes bytes, std::uint64_t at) {
    return static_cast<std::uint8_t>(UIntAt(bytes, at, 1));
}
inline std::uint16_t U16At(Bytes bytes, std::uint64_t at) {
    return static_cast<std::uint16_t>(UIntAt(bytes, at, 2));
}
inline std::uint32_t U32At(Bytes bytes, std::uint64_t at) {
    return static_cast<std::uint32_t>(UIntAt(bytes, at, 4));
}
inline double F64At(Bytes bytes, std::uint64_t at) {
    return std::bit_cast<double>(UIntAt(bytes, at, 8));
}

/// A text field of fixed size up to its first zero byte.
inline std::string TextAt(Bytes bytes, std::uint64_t at, std::size_t size) {
    std::string text;
    for (std::size_t i = 0; i < size && at + i < bytes.size() && bytes[at + i] != 0; ++i)
        text += static_cast<char>(bytes[at + i]);
    return text;
}

}  // namespace zm::dwg::reader
