// A compiled message catalogue (.mo), as msgfmt writes it.
#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

namespace zm::tool {

class MessageCatalogue {
 public:
    MessageCatalogue() = default;
    /// Reads a file. A missing or damaged one gives an empty catalogue.
    explicit MessageCatalogue(const std::filesystem::path& file);

    /// The translation, null where there is none.
    const char* Find(const char* english) const;
    bool empty() const { return m_count == 0; }

 private:
    std::uint32_t Word(std::size_t at) const;
    const char* Text(std::size_t table, std::size_t index) const;
    bool Sound() const;

    std::string m_bytes;
    bool m_swapped = false;
    std::size_t m_count = 0, m_originals = 0, m_translations = 0;
};

}  // namespace zm::tool
