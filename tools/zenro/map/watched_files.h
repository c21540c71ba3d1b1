// What a driver of GDAL reads and writes, watched: many drivers take a read that failed for the end of the file; some do
// not look whether a write succeeded and leave a cut file, others say what failed and go on.
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

/// The name under which a driver finds an input so that its reads are watched.
/// \param path  absolute
std::string WatchedInput(const std::filesystem::path& path);

/// A name or a message of a driver, with the watched input called by its path.
std::string WithPlainNames(std::string text);

/// Throws Failure (kNoInput) where a read of a watched input has failed since the last call.
void RefuseReadFault();

/// Notes what GDAL says has failed in this thread while it lives, and keeps it from stderr.
class DriverFault {
 public:
    DriverFault();
    ~DriverFault();
    DriverFault(const DriverFault&) = delete;
    DriverFault& operator=(const DriverFault&) = delete;
    /// GDAL's words of the first failure; empty where there was none.
    const std::string& words() const { return m_words; }

 private:
    std::string m_words;
};

}  // namespace zm::tool
