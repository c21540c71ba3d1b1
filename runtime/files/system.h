// What files and profiles need of the system and the standard library lacks. Each platform folder says how.
#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>

#include "zenromath/export.h"

namespace zm::system {

/// What is in the place of the Windows directory, as an absolute path; it need not exist. Empty where the system names none.
std::filesystem::path UsersConfigDirectory();
/// Where the library reads and writes the settings of the user: UsersConfigDirectory. Test programs link another.
std::filesystem::path ConfigDirectory();

/// The file that this code was loaded from: the shared library, or the program where it is linked in.
std::filesystem::path ModuleFile();

/// The path in a form that the system takes at any length.
ZM_API std::filesystem::path Reachable(const std::filesystem::path& path);

/// Tells one state of a file or directory from another without opening it.
struct FileStamp {
    std::uint64_t device = 0;
    std::uint64_t number = 0;
    std::uint64_t size = 0;
    std::int64_t modified = 0;  // nanoseconds
    std::int64_t changed = 0;
    bool settled = false;        // false: so young that a further change need not show in the stamp
    std::int64_t settlesIn = 0;  // nanoseconds until it is settled

    bool SameAs(const FileStamp& other) const {
        return device == other.device && number == other.number && size == other.size && modified == other.modified &&
               changed == other.changed;
    }
};

/// The stamp of a regular file; false where there is none.
bool StampOfFile(const std::filesystem::path& file, FileStamp& stamp);
/// The stamp of a directory; false where there is none.
bool StampOfDirectory(const std::filesystem::path& directory, FileStamp& stamp);

constexpr std::uint64_t kLongestRead = 1ULL << 30;  // bytes; what is longer is no settings file

/// Reads a regular file whole, with the stamp of what was read; false where it cannot be opened or read, or is longer
/// than kLongestRead.
bool ReadWholeFile(const std::filesystem::path& file, std::string& bytes, FileStamp& stamp);

/// The right to write the files of a directory, among all processes that ask for it.
class WriteLock {
 public:
    /// Waits for at most five seconds.
    explicit WriteLock(const std::filesystem::path& directory);
    ~WriteLock();
    WriteLock(const WriteLock&) = delete;
    WriteLock& operator=(const WriteLock&) = delete;
    /// False: the wait was in vain, or there is no such directory. True where the file system has no locks.
    bool held() const { return m_held; }
    /// Whether it was waited for in vain: another process holds it.
    bool waited() const { return m_waited; }
    /// The number of the process that holds it; 0 where the system does not say.
    long holder() const;

 private:
    bool m_held = false;
    bool m_waited = false;
    int m_handle = -1;
};

/// Replaces the content of a file, or makes it, so that at every moment the old or the new one is there whole: a
/// new file, synchronised, renamed to the old name. Mode and owner stay. The caller holds the lock of its directory.
/// False where that failed; the old content stays then.
bool ReplaceContent(const std::filesystem::path& target, std::string_view bytes);

/// The text of this number in the string table of the program's resources, in GBK; empty where there is none.
std::string ResourceText(int id);

}  // namespace zm::system
