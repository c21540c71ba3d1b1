// The place that is named for the user's configuration, in the place of the system's own.
#include <utility>

#include "runtime/files/system.h"

namespace fs = std::filesystem;

namespace zm::system {
namespace {

fs::path& Named() {
    static fs::path directory;
    return directory;
}

}  // namespace

fs::path PutConfigDirectory(fs::path directory) {
    return std::exchange(Named(), std::move(directory));
}

const fs::path& NamedConfigDirectory() {
    return Named();
}

}  // namespace zm::system
