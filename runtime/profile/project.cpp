// The project file: one current project, the four directories, keys of the current file, the search for files.
#include "runtime/profile/project.h"

#include <cstring>
#include <string>
#include <string_view>

#include "runtime/files/files.h"
#include "runtime/files/system.h"
#include "runtime/profile/profile.h"
#include "runtime/state.h"
#include "runtime/text/numbers.h"
#include "zenromath/runtime.h"

namespace fs = std::filesystem;

namespace zm::runtime {
namespace {

constexpr char kProbeFile[] = "Zenro.ini";
constexpr char kProbe[] = "Sure";
constexpr int kProbeSize = 16;
constexpr char kIniFolder[] = "\\ZenroIni";

std::string_view View(const char* text) {
    return text != nullptr ? std::string_view(text) : std::string_view();
}

// Whether a path has room in a field; a message says so if not.
bool Fits(std::string_view path) {
    if (path.size() <= files::kPathLimit) return true;
    std::string text = "The path is longer than 255 bytes and cannot be used. Move the project to a shorter path.\n";
    text += path;
    _LMsg(text.c_str(), nullptr, 0);
    return false;
}

void Put(char (&field)[256], std::string_view text) {
    const std::size_t count = std::min(text.size(), files::kPathLimit);
    std::memcpy(field, text.data(), count);
    field[count] = '\0';
}

std::string WithExtension(std::string_view base, std::string_view ext) {
    std::string path(base);
    if (!ext.starts_with('.')) path += '.';
    return path += ext;
}

bool EndsWithSeparator(std::string_view path) {
    return !path.empty() && files::LastSeparator(path) == path.size() - 1;
}

// The path as a text, empty where it has no usable one.
std::string TextOf(const fs::path& path) {
    int lost = 0;
    std::string text = files::PathText(path, &lost);
    return lost == 0 && text.size() <= files::kPathLimit ? text : std::string();
}

// Empty where the path is not to be had as a text of at most 255 bytes; bare names then stand for the same places.
std::string CurrentDirectory() {
    std::error_code ec;
    const fs::path current = fs::current_path(ec);
    return ec ? std::string() : TextOf(current);
}

// The folder part of a path, without its separator but for the root; the whole text without one.
std::string_view FolderOf(std::string_view path) {
    const std::size_t separator = files::LastSeparator(path);
    if (separator == std::string_view::npos) return path;
    return path.substr(0, separator == 0 ? 1 : separator);
}

// Whether the machine directory can be written: a key is written to a bare file name there and read back.
bool ProbeMachineDirectory() {
    if (!profile::WriteStringAnew(kProbe, kProbe, kProbe, kProbeFile)) return false;
    char value[kProbeSize];
    profile::GetString(kProbe, kProbe, "", value, sizeof value, kProbeFile);
    return std::strcmp(value, kProbe) == 0;
}

void FindModuleDirectory(TqFileContext& project) {
    if (state().moduleSought) return;
    state().moduleSought = true;
    if (project.moduleDirectory[0] == '\0') {
        const std::string module = files::PathText(system::ModuleFile());
        if (Fits(module)) Put(project.moduleDirectory, FolderOf(module));
    }
    if (project.iniDirectory[0] == '\0') {
        std::string ini = project.moduleDirectory;
        ini += kIniFolder;
        if (Fits(ini)) Put(project.iniDirectory, ini);
    }
}

// Required: not the table of GetZenroINIPath. Unknown values mean the project directory here.
const char* DirectoryOf(int where) {
    switch (where) {
        case 1:
            return _LFModDir();
        case 2:
            return _LFIniDir();
        case 3:
            return _LFWndDir();
        default:
            return _LFPrjDir();
    }
}

void SetSection(const char* section) {
    if (section == nullptr) return;
    if (std::strlen(section) <= files::kPathLimit)
        Put(Project().currentSection, section);
    else
        _LMsg("The name of a section is longer than 255 bytes and cannot be used. The section before it stays.",
              nullptr, 0);
}

}  // namespace

void StartProjectFiles() {
    State& s = state();
    s.projectStarted = true;
    s.moduleSought = false;
    s.project = TqFileContext{};
    Put(s.project.projectDirectory, CurrentDirectory());
    std::string machine = TextOf(system::ConfigDirectory());
    if (EndsWithSeparator(machine)) machine.pop_back();
    Put(s.project.machineDirectory, machine);
    s.project.machineUsable = !machine.empty() && ProbeMachineDirectory() ? 1 : 0;
}

TqFileContext& Project() {
    State& s = state();
    if (!s.projectStarted) StartProjectFiles();
    return s.project;
}

void SetExtension(const char* ext) {
    TqFileContext& project = Project();
    const std::string file = WithExtension(project.baseName, View(ext));
    if (Fits(file)) Put(project.currentFile, file);
}

int GetInt(int def, const char* key, const char* section) {
    SetSection(section);
    return static_cast<int>(profile::GetInt(Project().currentSection, key, def, Project().currentFile));
}

int GetText(const char* def, char* buffer, int size, const char* key, const char* section) {
    SetSection(section);
    return static_cast<int>(profile::GetString(Project().currentSection, key, def, buffer,
                                               size > 0 ? static_cast<unsigned int>(size) : 0u, Project().currentFile));
}

int WriteInt(int value, const char* key, const char* section) {
    return WriteText(numbers::Text("%d", value).c_str(), key, section);
}

int WriteText(const char* value, const char* key, const char* section) {
    SetSection(section);
    return profile::WriteString(Project().currentSection, key, value, Project().currentFile) ? 1 : 0;
}

std::string PathIn(int where, const char* name, const char* ext) {
    std::string path = DirectoryOf(where);
    if (!path.empty() && !EndsWithSeparator(path)) path += '\\';
    std::string_view file = View(name);
    if (const std::size_t separator = files::LastSeparator(file); separator != std::string_view::npos)
        file.remove_prefix(separator + 1);
    return path += ext != nullptr ? WithExtension(file.substr(0, file.rfind('.')), ext) : std::string(file);
}

const char* WholeName(char* buffer, const char* name, const char* ext, int where) {
    if (buffer == nullptr) return buffer;
    std::string path = PathIn(where, name, ext);
    if (!Fits(path)) path.clear();
    std::memcpy(buffer, path.c_str(), path.size() + 1);
    return buffer;
}

// Opens a file of one directory. Where the path has no room, which is said only once, it counts as missing.
std::FILE* OpenIn(int where, const char* name, const char* mode, bool& said) {
    const std::string path = PathIn(where, name, nullptr);
    if (path.size() <= files::kPathLimit) return files::OpenToRead(path.c_str(), mode);
    if (!said) Fits(path);
    said = true;
    return nullptr;
}

}  // namespace zm::runtime

using zm::runtime::Project;

void _LFInit(char* name, char* ext, char* fallback) {
    using namespace zm;
    using namespace zm::runtime;
    if (name == nullptr) return;
    TqFileContext& project = Project();
    std::string base = files::WithBackslashes(name);
    base.resize(std::min(base.size(), files::ExtensionDot(base)));
    if (files::LastSeparator(base) == std::string::npos) {
        std::string current = CurrentDirectory();
        if (current.size() >= 2 && !EndsWithSeparator(current)) current += '\\';
        base.insert(0, current);
    }
    const std::string file = WithExtension(base, View(ext));
    if (!Fits(file) || (fallback != nullptr && !Fits(fallback))) return;

    Put(project.baseName, base);
    Put(project.projectDirectory, FolderOf(base));
    std::error_code ignored;
    fs::current_path(files::SystemPath(project.projectDirectory), ignored);
    Put(project.currentFile, file);
    Put(project.chosenFile, file);
    if (fallback == nullptr) return;
    if (std::FILE* stream = files::Open(project.currentFile, "rt"))
        std::fclose(stream);
    else
        Put(project.chosenFile, fallback);
}

void _LFSetExt(char* ext) {
    zm::runtime::SetExtension(ext);
}

void _LFExt(char* buf, char* ext) {
    if (buf == nullptr) return;
    std::string path = zm::runtime::WithExtension(Project().baseName, zm::runtime::View(ext));
    if (!zm::runtime::Fits(path)) path.clear();
    std::memcpy(buf, path.c_str(), path.size() + 1);
}

void _LFRcd(char* section) {
    zm::runtime::SetSection(section != nullptr ? section : "");
}

int _LFGetI(int def, char* key, char* section) {
    return zm::runtime::GetInt(def, key, section);
}

int _LFGetS(char* def, char* buf, int size, char* key, char* section) {
    return zm::runtime::GetText(def, buf, size, key, section);
}

int _LFWrtI(int value, char* key, char* section) {
    return zm::runtime::WriteInt(value, key, section);
}

int _LFWrtS(char* value, char* key, char* section) {
    return zm::runtime::WriteText(value, key, section);
}

const char* _LFPrjDir() {
    return Project().projectDirectory;
}

const char* _LFModDir() {
    zm::runtime::FindModuleDirectory(Project());
    return Project().moduleDirectory;
}

const char* _LFIniDir() {
    zm::runtime::FindModuleDirectory(Project());
    return Project().iniDirectory;
}

const char* _LFWndDir() {
    return Project().machineUsable != 0 ? Project().machineDirectory : _LFModDir();
}

const char* _LFWholeName(char* buf, char* name, char* ext, int where) {
    return zm::runtime::WholeName(buf, name, ext, where);
}

FILE* _LFOpen(const char* name, const char* mode) {
    using namespace zm;
    if (name == nullptr || *name == '\0' || mode == nullptr || *mode == '\0') {
        _LMsg("file not found", nullptr, 0);
        return nullptr;
    }
    if (files::LastSeparator(name) != std::string_view::npos)
        if (std::FILE* file = files::OpenToRead(name, mode)) return file;
    bool said = false;
    for (const int where : {0, 1, 2})
        if (std::FILE* file = runtime::OpenIn(where, name, mode, said)) return file;
    // Required: the last step of the search opens the file of the machine directory and does not return it; callers
    // see a file that lies only there as missing.
    if (std::FILE* file = runtime::OpenIn(3, name, mode, said))
        std::fclose(file);
    else if (!said)
        _LMsg(name, "file open error", 0);
    return nullptr;
}
