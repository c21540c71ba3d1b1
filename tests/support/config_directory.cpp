// The place of settings in test programs, instead of the library's own: what is named, and else the user's.
#include <utility>

#include "runtime/files/system.h"
#include "tests/support/family_dirs.h"

namespace fs = std::filesystem;

namespace zm {
namespace {

fs::path& Named() {
    static fs::path directory;
    return directory;
}

}  // namespace

fs::path system::ConfigDirectory() {
    return Named().empty() ? UsersConfigDirectory() : Named();
}

namespace test {

OwnConfigDirectory::OwnConfigDirectory(fs::path directory) : m_previous(std::exchange(Named(), std::move(directory))) {}

OwnConfigDirectory::~OwnConfigDirectory() {
    Named() = m_previous;
}

}  // namespace test
}  // namespace zm
