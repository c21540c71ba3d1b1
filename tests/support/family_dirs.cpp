#include "tests/support/family_dirs.h"

#include "runtime/files/files.h"
#include "runtime/files/system.h"
#include "runtime/profile/project.h"
#include "runtime/state.h"
#include "runtime/text/numbers.h"
#include "zenromath/runtime.h"

namespace fs = std::filesystem;

namespace zm::test {

FamilyDirs::FamilyDirs() : m_current((fs::create_directories(Project()), Project())) {
    fs::create_directories(Ini());
    runtime::ResetState();
    runtime::StartProjectFiles();
    runtime::TqFileContext& project = runtime::Project();
    numbers::Print(project.moduleDirectory, sizeof project.moduleDirectory, "%s", Text(Module()).c_str());
    numbers::Print(project.iniDirectory, sizeof project.iniDirectory, "%s", Text(Ini()).c_str());
}

FamilyDirs::~FamilyDirs() {
    runtime::ResetState();
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
