// An output is written under a temporary name beside its place and renamed when it is whole.
#pragma once

#include <filesystem>
#include <string>

namespace zm::tool {

class OutputFile {
 public:
    /// Takes the place for an output. Throws Failure (kNoOutput) if the file exists and may not be replaced, if the
    /// directory is missing or cannot be written.
    OutputFile(std::filesystem::path target, bool overwrite);
    /// Removes the unfinished file.
    ~OutputFile();
    OutputFile(const OutputFile&) = delete;
    OutputFile& operator=(const OutputFile&) = delete;

    /// Where to write: the temporary name, in UTF-8. It keeps the extension of the target.
    const std::filesystem::path& path() const { return m_temporary; }
    const std::filesystem::path& target() const { return m_target; }
    /// Puts the whole file in its place. Throws Failure (kNoOutput) where that fails.
    void Commit();

 private:
    std::filesystem::path m_target;
    std::filesystem::path m_temporary;
    bool m_overwrite;
    int m_slot = -1;
};

/// For the time before long work: throws where an OutputFile would, and leaves nothing.
void CheckOutput(const std::filesystem::path& target, bool overwrite);

/// Writes bytes to a file and puts it in its place.
void WriteOutput(const std::filesystem::path& target, bool overwrite, const std::string& bytes);

/// Removes what is not finished. Safe in a signal handler.
void RemoveUnfinishedOutputs();

}  // namespace zm::tool
