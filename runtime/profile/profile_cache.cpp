#include "runtime/profile/profile_cache.h"

#include <algorithm>
#include <chrono>
#include <thread>

#include "runtime/files/files.h"
#include "runtime/uses.h"

namespace zm::profile {
namespace {

constexpr std::size_t kEntriesKept = 8;
constexpr std::size_t kBytesKept = 32u << 20;      // of source text; the file read last is kept whatever its size
constexpr std::int64_t kLongestWait = 50'000'000;  // nanoseconds

}  // namespace

const Text* Cache::Read(const std::filesystem::path& file) {
    system::FileStamp stamp;
    return system::StampOfFile(file, stamp) ? Read(file, stamp) : nullptr;
}

const Text* Cache::Read(const char* path) {
    if (m_pathText != path) {
        m_pathText = path;
        m_path = files::PathAsWritten(path);
    }
    // One question to the system for each read, as long as the file has the name that is asked for.
    system::FileStamp stamp;
    return system::StampOfFile(m_path, stamp) ? Read(m_path, stamp) : Read(files::SystemPath(path));
}

const Text* Cache::Read(const std::filesystem::path& file, system::FileStamp& stamp) {
    const auto kept =
        std::find_if(m_entries.begin(), m_entries.end(), [&](const Entry& entry) { return entry.stamp.SameAs(stamp); });
    Entry entry;
    if (kept != m_entries.end()) {
        std::rotate(kept, kept + 1, m_entries.end());
        if (m_entries.back().stamp.settled) {
            uses::Count(uses::profileKept);
            return m_entries.back().text.get();
        }
        entry = m_entries.back();
        // Who reads many keys of a file that was written this moment waits once for a stamp that can be relied on.
        if (++entry.youngReads > youngReadsBeforeWait && stamp.settlesIn <= kLongestWait)
            std::this_thread::sleep_for(std::chrono::nanoseconds(stamp.settlesIn));
    }
    uses::Count(uses::profileRead);
    std::string bytes;
    if (!system::ReadWholeFile(file, bytes, entry.stamp)) return nullptr;
    if (entry.text == nullptr || entry.text->source() != bytes)
        entry.text = std::make_shared<const Text>(std::move(bytes));
    Keep(std::move(entry));
    return m_entries.back().text.get();
}

void Cache::Keep(Entry entry) {
    std::erase_if(m_entries, [&](const Entry& old) {
        return old.stamp.device == entry.stamp.device && old.stamp.number == entry.stamp.number;
    });
    m_entries.push_back(std::move(entry));
    std::size_t bytes = 0;
    for (const Entry& kept : m_entries) bytes += kept.text->source().size();
    while (m_entries.size() > 1 && (m_entries.size() > kEntriesKept || bytes > kBytesKept)) {
        bytes -= m_entries.front().text->source().size();
        m_entries.erase(m_entries.begin());
    }
}

}  // namespace zm::profile
