#include "tests/support/family_dirs.h"

#include <cstdlib>

#include "runtime/files.h"
#include "runtime/numbers.h"
#include "runtime/project.h"
#include "runtime/state.h"
#include "runtime/system.h"
#include "zenromath/runtime.h"

namespace fs = std::filesystem;

namespace zm::test {
namespace {

constexpr char kConfigHome[] = "XDG_CONFIG_HOME";

void SetEnvironment(const char* name, const char* value) {
#if defined(_WIN32)
    _putenv_s(name, value != nullptr ? value : "");
#else
    if (value != nullptr)
        ::setenv(name, value, 1);
    else
        ::unsetenv(name);
#endif
}

}  // namespace

FamilyDirs::FamilyDirs()
    : m_hadConfig(std::getenv(kConfigHome) != nullptr), m_current((fs::create_directories(Project()), Project())) {
    if (m_hadConfig) m_previousConfig = std::getenv(kConfigHome);
    fs::create_directories(Ini());
    SetEnvironment(kConfigHome, (m_scratch.path() / "config").string().c_str());
    runtime::ResetState();
    runtime::StartProjectFiles();
    runtime::TqFileContext& project = runtime::Project();
    numbers::Print(project.moduleDirectory, sizeof project.moduleDirectory, "%s", Text(Module()).c_str());
    numbers::Print(project.iniDirectory, sizeof project.iniDirectory, "%s", Text(Ini()).c_str());
}

FamilyDirs::~FamilyDirs() {
    runtime::ResetState();
    SetEnvironment(kConfigHome, m_hadConfig ? m_previousConfig.c_str() : nullptr);
}

fs::path FamilyDirs::Machine(std::string_view name) const {
    return system::ConfigDirectory() / name;
}

void FamilyDirs::NameProject(const char* name) {
    std::string path = Text(Project(name));
    std::string ext = ".ini";
    _LFInit(path.data(), ext.data(), nullptr);
}

std::string FamilyDirs::Text(const fs::path& path) {
    std::string text = files::PathText(path);
    while (text.ends_with('\\')) text.pop_back();
    return text;
}

}  // namespace zm::test
