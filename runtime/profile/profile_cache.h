// Parsed profile files, kept until the file changes, and the writes of a batch.
#pragma once

#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "runtime/files/system.h"
#include "runtime/profile/profile_text.h"

namespace zm::profile {

/// Keeps the parsed files that were read last. Each read asks the system for the stamp of the file, so that what other
/// processes write is seen, and opens the file only if that is another one than before.
class Cache {
 public:
    /// The parsed file; null where there is no such regular file or it cannot be read. Valid until the next call.
    const Text* Read(const std::filesystem::path& file);
    /// The same for a GBK path text that has a separator.
    const Text* Read(const char* path);

    /// How often a file whose stamp is not settled is read before a reader waits until it is.
    int youngReadsBeforeWait = 4;

 private:
    struct Entry {
        system::FileStamp stamp;
        std::shared_ptr<const Text> text;
        int youngReads = 0;  // how often it was read while its stamp was not settled
    };
    const Text* Read(const std::filesystem::path& file, system::FileStamp& stamp);
    void Keep(Entry entry);

    std::vector<Entry> m_entries;  // the latest used last
    std::string m_pathText;        // the last path text, and what it is for the system as it is written
    std::filesystem::path m_path;
};

/// The changes that a batch collected, by file, in their order.
struct PendingWrites {
    struct File {
        std::filesystem::path path;
        std::vector<Edit> edits;
    };
    int batches = 0;  // how many batches are in force
    bool failed = false;
    std::vector<File> files;
};

}  // namespace zm::profile
