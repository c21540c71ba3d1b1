// Files that a driver of GDAL writes, watched: some drivers do not look whether a write succeeded, and leave a cut file.
#pragma once

#include <filesystem>
#include <string>

namespace zm::tool {

/// The name under which a driver finds a file so that its writes are watched. The watched files of a process share one
/// fault: one data set is written at a time.
/// \param path  absolute
std::string WatchedName(const std::filesystem::path& path);

/// The system's reason for which the first write to a watched file failed since the last call of ForgetFault; empty where
/// none did.
std::string WriteFault();
void ForgetFault();

}  // namespace zm::tool
