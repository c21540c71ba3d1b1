// A fresh directory for one test, with Chinese characters and a blank in its name, removed at the end.
#pragma once

#include <cstdio>
#include <filesystem>
#include <string>
#include <string_view>

namespace zm::test {

class ScratchDir {
 public:
    ScratchDir();
    ~ScratchDir();
    ScratchDir(const ScratchDir&) = delete;
    ScratchDir& operator=(const ScratchDir&) = delete;
    const std::filesystem::path& path() const { return m_path; }
    /// The path of a file in it, in UTF-8.
    std::filesystem::path operator/(std::string_view name) const {
        return m_path / std::u8string(name.begin(), name.end());
    }

 private:
    std::filesystem::path m_path;
};

/// Puts the process into a directory and back.
class ScopedCurrentDir {
 public:
    explicit ScopedCurrentDir(const std::filesystem::path& dir);
    ~ScopedCurrentDir();
    ScopedCurrentDir(const ScopedCurrentDir&) = delete;
    ScopedCurrentDir& operator=(const ScopedCurrentDir&) = delete;

 private:
    std::filesystem::path m_previous;
};

void WriteFile(const std::filesystem::path& path, std::string_view bytes);
std::string ReadFile(const std::filesystem::path& path);
/// As fopen, for any name.
std::FILE* OpenFile(const std::filesystem::path& path, const char* mode);

}  // namespace zm::test
