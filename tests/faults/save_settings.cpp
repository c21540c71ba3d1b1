// save_settings key|layers|widths|colours|classes|fonts: saves settings as a program of the family does, with the project
// map.ini and all other files in the working directory; the user's own are where XDG_CONFIG_HOME says. Status 1, and
// what the library says, where something was not saved.
#include <cstdio>
#include <filesystem>

#include "config/pens.h"
#include "config/state.h"
#include "runtime/files/files.h"
#include "runtime/profile/project.h"
#include "tests/support/test_host.h"
#include "zenromath/config.h"
#include "zenromath/gbk.h"
#include "zenromath/runtime.h"

namespace {

void NameProject(const std::string& folder) {
    zm::runtime::StartProjectFiles();
    zm::runtime::TqFileContext& project = zm::runtime::Project();
    for (char* directory : {project.moduleDirectory, project.iniDirectory})
        std::snprintf(directory, sizeof project.moduleDirectory, "%s", folder.c_str());
    std::string path = folder + "\\map", extension = ".ini";
    _LFInit(path.data(), extension.data(), nullptr);
}

// False where the library says so; it says some failures by a message alone.
bool Save(const std::string& kind, const std::string& folder) {
    if (kind == "key")
        return WriteZenroProfileString("a", "k", "new", ("\\" + folder + "\\settings.ini").c_str(), 0) != 0;
    NameProject(folder);
    if (kind == "classes" || kind == "fonts") {
        TqNoteLayBase notes;
        notes.GetNLayTbl()->GetAt(0)->height = 99;
        notes.GetFontTbl()->GetAt(0)->slant = 15;
        return (kind == "classes" ? notes.WriteNoteClassInfo() : notes.WriteNoteFontInfo()) != 0;
    }
    ReadCengCi();
    zm::config::State& state = zm::config::state();
    if (kind == "layers") {
        state.layers[0].color = 7;
        WriteCengCi();
    } else if (kind == "colours") {
        state.palette[3] = 0x123456;
        WriteColorSetting();
    } else if (kind == "widths") {
        for (int code = 1; code < 200; ++code) state.penWidths[code] = 5;
        return zm::config::WritePenWidth();
    } else {
        return false;
    }
    return true;
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 2) return 2;
    const zm::test::TestHost host;  // takes the messages
    const bool saved = Save(argv[1], zm::files::PathText(std::filesystem::current_path()));
    for (const auto& box : host.boxes) std::fprintf(stderr, "%s\n", box.text.c_str());
    if (!saved) std::fputs("not saved\n", stderr);
    return saved && host.boxes.empty() ? 0 : 1;
}
