// Alone in its file: test programs have another in its place, and keep away from the user's own settings.
#include "runtime/files/system.h"

namespace zm::system {

std::filesystem::path ConfigDirectory() {
    return UsersConfigDirectory();
}

}  // namespace zm::system
