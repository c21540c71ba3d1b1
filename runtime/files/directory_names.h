// Names in directories, found without regard to case, and remembered as long as the directory stays as it is.
#pragma once

#include <filesystem>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "runtime/files/system.h"

namespace zm::files {

/// A name in UTF-8 with the capital letters of ASCII and of the Greek, Cyrillic and full-width letters of GBK made
/// small, one by one.
std::string WithoutCase(std::string_view utf8);

class DirectoryNames {
 public:
    /// The name in a directory (empty: the current one) that equals name but for case, the first in byte order of
    /// several; empty without one.
    std::string Find(const std::filesystem::path& directory, const std::string& name);

 private:
    struct Listing {
        system::FileStamp stamp;
        std::map<std::string, std::string> names;  // without case: as it is
    };
    static std::map<std::string, std::string> NamesIn(const std::filesystem::path& directory);

    std::vector<Listing> m_listings;  // the latest used last
};

}  // namespace zm::files
