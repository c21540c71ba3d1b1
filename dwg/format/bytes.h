// Little-endian numbers in byte arrays.
#pragma once

#include <bit>
#include <concepts>
#include <cstdint>
#include <cstring>

namespace zm::dwg {

/// Stores an integer or a double at any address.
template <typename T>
inline void Store(std::uint8_t* to, T value) {
    if constexpr (std::endian::native == std::endian::little) {
        std::memcpy(to, &value, sizeof value);
    } else {
        std::uint8_t bytes[sizeof value];
        std::memcpy(bytes, &value, sizeof value);
        for (std::size_t i = 0; i < sizeof value; ++i) to[i] = bytes[sizeof value - 1 - i];
    }
}

/// The number at any address.
template <typename T>
inline T Load(const std::uint8_t* from) {
    T value;
    if constexpr (std::endian::native == std::endian::little) {
        std::memcpy(&value, from, sizeof value);
    } else {
        std::uint8_t bytes[sizeof value];
        for (std::size_t i = 0; i < sizeof value; ++i) bytes[i] = from[sizeof value - 1 - i];
        std::memcpy(&value, bytes, sizeof value);
    }
    return value;
}

inline std::uint16_t Load16(const std::uint8_t* from) {
    return Load<std::uint16_t>(from);
}
inline std::uint32_t Load32(const std::uint8_t* from) {
    return Load<std::uint32_t>(from);
}
inline double LoadReal(const std::uint8_t* from) {
    return Load<double>(from);
}

}  // namespace zm::dwg
