// Source of the layout: GNU gettext manual, "The Format of GNU MO Files".
#include "tools/kit/message_catalogue.h"

#include <bit>
#include <cstdint>
#include <cstring>
#include <fstream>
#include <iterator>

namespace zm::tool {
namespace {

constexpr std::uint32_t kMagic = 0x950412DE;
constexpr std::uint32_t kMagicSwapped = 0xDE120495;  // written by a machine of the other byte order
constexpr std::size_t kHeader = 28, kEntry = 8;
constexpr std::size_t kMostBytes = 16U << 20;

std::uint32_t Swapped(std::uint32_t word) {
    return word >> 24 | (word >> 8 & 0xFF00U) | (word << 8 & 0xFF0000U) | word << 24;
}

}  // namespace

MessageCatalogue::MessageCatalogue(const std::filesystem::path& file) {
    std::ifstream in(file, std::ios::binary);
    if (!in) return;
    m_bytes.assign(std::istreambuf_iterator<char>(in), {});
    if (m_bytes.size() < kHeader || m_bytes.size() > kMostBytes) return;
    const std::uint32_t magic = Word(0);
    if (magic != kMagic && magic != kMagicSwapped) return;
    m_swapped = magic == kMagicSwapped;
    m_count = Word(8);
    m_originals = Word(12);
    m_translations = Word(16);
    if (!Sound()) m_count = 0;
}

std::uint32_t MessageCatalogue::Word(std::size_t at) const {
    std::uint32_t word = 0;
    std::memcpy(&word, m_bytes.data() + at, sizeof word);
    return m_swapped ? Swapped(word) : word;
}

const char* MessageCatalogue::Text(std::size_t table, std::size_t index) const {
    return m_bytes.data() + Word(table + index * kEntry + 4);
}

// Both tables and all texts lie in the file, and each text ends with a zero byte.
bool MessageCatalogue::Sound() const {
    const std::size_t size = m_bytes.size();
    if (m_count > size / kEntry) return false;
    for (const std::size_t table : {m_originals, m_translations}) {
        if (table > size || m_count * kEntry > size - table) return false;
        for (std::size_t i = 0; i < m_count; ++i) {
            const std::size_t length = Word(table + i * kEntry), from = Word(table + i * kEntry + 4);
            if (from >= size || length >= size - from || m_bytes[from + length] != '\0') return false;
        }
    }
    return true;
}

const char* MessageCatalogue::Find(const char* english) const {
    std::size_t first = 0, last = m_count;
    while (first < last) {
        const std::size_t middle = (first + last) / 2;
        const int order = std::strcmp(english, Text(m_originals, middle));
        if (order == 0) {
            const char* found = Text(m_translations, middle);
            return *found != '\0' && *english != '\0' ? found : nullptr;
        }
        (order < 0 ? last : first) = order < 0 ? middle : middle + 1;
    }
    return nullptr;
}

}  // namespace zm::tool
