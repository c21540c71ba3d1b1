// A host that shows nothing, and directories of the fuzz target's own.
#pragma once

#include <string_view>

namespace zm::fuzz {

/// Puts the quiet host in force, and project, module and machine directory into a fresh directory in memory or in /tmp.
void StartFamily();
/// Writes a file of one of its folders "project", "module".
void PutFile(const char* folder, const char* name, std::string_view bytes);

}  // namespace zm::fuzz
