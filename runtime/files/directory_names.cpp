#include "runtime/files/directory_names.h"

#include <algorithm>
#include <cstdint>

namespace fs = std::filesystem;

namespace zm::files {
namespace {

constexpr std::size_t kListingsKept = 8;

// Capital letters of two and three UTF-8 bytes that GBK has, and the distance to their small ones.
struct Capitals {
    std::uint32_t first, last, distance;
};
constexpr Capitals kCapitals[] = {
    {0x391, 0x3A9, 0x20},    // Greek
    {0x401, 0x401, 0x50},    // Cyrillic, the letter outside the row
    {0x410, 0x42F, 0x20},    // Cyrillic
    {0x2160, 0x2169, 0x10},  // Roman numbers
    {0xFF21, 0xFF3A, 0x20},  // full-width Latin
};

std::uint32_t Small(std::uint32_t character) {
    for (const Capitals& row : kCapitals)
        if (character >= row.first && character <= row.last) return character + row.distance;
    return character;
}

bool IsContinuation(char c) {
    return (static_cast<unsigned char>(c) & 0xC0) == 0x80;
}

}  // namespace

std::string WithoutCase(std::string_view utf8) {
    std::string text(utf8);
    for (std::size_t i = 0; i < text.size(); ++i) {
        const auto byte = static_cast<unsigned char>(text[i]);
        if (byte >= 'A' && byte <= 'Z') {
            text[i] = static_cast<char>(byte + 0x20);
        } else if ((byte & 0xE0) == 0xC0 && i + 1 < text.size() && IsContinuation(text[i + 1])) {
            const std::uint32_t small = Small((byte & 0x1Fu) << 6 | (static_cast<unsigned char>(text[i + 1]) & 0x3Fu));
            text[i] = static_cast<char>(0xC0 | small >> 6);
            text[i + 1] = static_cast<char>(0x80 | (small & 0x3F));
            ++i;
        } else if ((byte & 0xF0) == 0xE0 && i + 2 < text.size() && IsContinuation(text[i + 1]) &&
                   IsContinuation(text[i + 2])) {
            const std::uint32_t small =
                Small((byte & 0xFu) << 12 | (static_cast<unsigned char>(text[i + 1]) & 0x3Fu) << 6 |
                      (static_cast<unsigned char>(text[i + 2]) & 0x3Fu));
            text[i] = static_cast<char>(0xE0 | small >> 12);
            text[i + 1] = static_cast<char>(0x80 | (small >> 6 & 0x3F));
            text[i + 2] = static_cast<char>(0x80 | (small & 0x3F));
            i += 2;
        }
    }
    return text;
}

std::map<std::string, std::string> DirectoryNames::NamesIn(const fs::path& directory) {
    std::map<std::string, std::string> names;
    std::error_code ec;
    for (fs::directory_iterator it(directory, ec), end; !ec && it != end; it.increment(ec)) {
        const std::u8string utf8 = it->path().filename().u8string();
        std::string name(utf8.begin(), utf8.end());
        const auto [entry, isNew] = names.try_emplace(WithoutCase(name), name);
        if (!isNew) entry->second = std::min(entry->second, name);
    }
    return names;
}

std::string DirectoryNames::Find(const fs::path& directory, const std::string& name) {
    const fs::path place = directory.empty() ? fs::path(".") : directory;
    system::FileStamp stamp;
    if (!system::StampOfDirectory(place, stamp)) return {};
    auto listing = std::find_if(m_listings.begin(), m_listings.end(), [&](const Listing& kept) {
        return kept.stamp.device == stamp.device && kept.stamp.number == stamp.number;
    });
    if (listing == m_listings.end() || !listing->stamp.settled || !listing->stamp.SameAs(stamp)) {
        if (listing != m_listings.end()) m_listings.erase(listing);
        if (m_listings.size() >= kListingsKept) m_listings.erase(m_listings.begin());
        m_listings.push_back({stamp, NamesIn(place)});
    } else {
        std::rotate(listing, listing + 1, m_listings.end());
    }
    const auto& names = m_listings.back().names;
    const auto found = names.find(WithoutCase(name));
    return found != names.end() ? found->second : std::string();
}

}  // namespace zm::files
