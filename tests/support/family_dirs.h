// The four directories of the family in a scratch directory of their own, while it lives.
#pragma once

#include <filesystem>
#include <string>
#include <string_view>

#include "tests/support/scratch.h"

namespace zm::test {

/// A directory in the place of the Windows directory, while it lives.
class OwnConfigDirectory {
 public:
    explicit OwnConfigDirectory(std::filesystem::path directory);
    ~OwnConfigDirectory();
    OwnConfigDirectory(const OwnConfigDirectory&) = delete;
    OwnConfigDirectory& operator=(const OwnConfigDirectory&) = delete;

 private:
    std::filesystem::path m_previous;
};

/// Makes the directories, starts the project files with them, and puts the process into the project directory; the
/// start values and the old current directory come back at the end. Make it before a test host.
class FamilyDirs {
 public:
    FamilyDirs();
    ~FamilyDirs();
    FamilyDirs(const FamilyDirs&) = delete;
    FamilyDirs& operator=(const FamilyDirs&) = delete;

    std::filesystem::path Project(std::string_view name = {}) const { return m_scratch / "project" / Utf8(name); }
    std::filesystem::path Module(std::string_view name = {}) const { return m_scratch / "module" / Utf8(name); }
    std::filesystem::path Ini(std::string_view name = {}) const { return Module("ZenroIni") / Utf8(name); }
    /// What stands for the Windows directory.
    std::filesystem::path Machine(std::string_view name = {}) const;

    /// Names the project of that name in the project directory, with the extension ".ini".
    void NameProject(const char* name = "map");

    /// A system path as the library writes it.
    static std::string Text(const std::filesystem::path& path);

 private:
    static std::filesystem::path Utf8(std::string_view name) { return std::u8string(name.begin(), name.end()); }
    ScratchDir m_scratch;
    OwnConfigDirectory m_config{m_scratch.path() / "config"};
    ScopedCurrentDir m_current;
};

}  // namespace zm::test
