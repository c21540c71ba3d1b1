// An output is written under a name of its own beside its place and renamed when it is whole.
//
// The name is drawn by chance and the file is made anew, so that nobody can lay a link, a pipe or a file of his own in
// its way. It is locked while its process lives; what a killed process left is known by its lock being free, and the
// next output into the same folder removes it. "-" and "-.svg" name standard output, which gets the bytes in the end.
#pragma once

#include <filesystem>
#include <string>

namespace zm::tool {

class OutputFile {
 public:
    /// Takes the place for an output. Where the target is a link, the file that it leads to is the one to be replaced.
    /// Throws Failure (kNoOutput) if the target exists and may not be replaced, is no regular file or may not be
    /// written by this user, or if the directory is missing or cannot be written.
    OutputFile(const std::filesystem::path& target, bool overwrite);
    /// Removes the unfinished file.
    ~OutputFile();
    OutputFile(const OutputFile&) = delete;
    OutputFile& operator=(const OutputFile&) = delete;

    /// Where to write: absolute, with the extension of the target. The file is there and empty.
    const std::filesystem::path& path() const { return m_temporary; }
    const std::filesystem::path& target() const { return m_target; }
    /// Brings the file to the disk and into its place, with mode and, where that is allowed, owner of what it replaces.
    /// Throws Failure (kNoOutput) where that fails; what was there before is there still.
    void Commit();

 private:
    std::filesystem::path m_target;     // as named, absolute
    std::filesystem::path m_place;      // where the file goes: the target, or what a link there leads to
    std::filesystem::path m_temporary;  // empty once it is committed
    bool m_overwrite;
    bool m_stream;  // the bytes go to standard output
    int m_lock = -1;
    int m_slot = -1;
};

/// For the time before long work: throws where an OutputFile would, and leaves nothing.
void CheckOutput(const std::filesystem::path& target, bool overwrite);

/// Writes bytes to a file and puts it in its place. Throws as OutputFile does.
void WriteOutput(const std::filesystem::path& target, bool overwrite, const std::string& bytes);

/// A folder that only this user can enter, under a name drawn by chance, removed with all that is in it; that of a killed
/// process is removed by the next that makes one.
class PrivateFolder {
 public:
    /// Throws Failure (kNoOutput) where none can be made.
    PrivateFolder();
    ~PrivateFolder();
    PrivateFolder(const PrivateFolder&) = delete;
    PrivateFolder& operator=(const PrivateFolder&) = delete;
    const std::filesystem::path& path() const { return m_path; }

 private:
    std::filesystem::path m_path;
    int m_lock = -1;  // held while this process lives
};

/// Removes what is not finished. Safe in a signal handler.
void RemoveUnfinishedOutputs();

}  // namespace zm::tool
