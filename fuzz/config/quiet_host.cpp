#include "fuzz/config/quiet_host.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <limits>
#include <string>

#include "runtime/files/files.h"
#include "runtime/profile/project.h"
#include "runtime/state.h"
#include "runtime/text/numbers.h"
#include "zenromath/host.h"
#include "zenromath/runtime.h"

namespace fs = std::filesystem;

namespace zm::fuzz {
namespace {

class QuietHost : public Host {
 public:
    int ShowBox(const char*, const char*, unsigned int) override { return IDNO; }
    void Beep() override {}
};

fs::path& Root() {
    static fs::path root;
    return root;
}

}  // namespace

void StartFamily() {
    static QuietHost host;
    SetHost(&host);
    std::string pattern = fs::is_directory("/dev/shm") ? "/dev/shm/zm_fuzz_XXXXXX" : "/tmp/zm_fuzz_XXXXXX";
    if (::mkdtemp(pattern.data()) == nullptr) std::abort();
    Root() = pattern;
    std::atexit([] { fs::remove_all(Root()); });
    for (const char* folder : {"project", "module", "config"}) fs::create_directory(Root() / folder);
    ::setenv("XDG_CONFIG_HOME", (Root() / "config").c_str(), 1);
    runtime::state().profiles.youngReadsBeforeWait = std::numeric_limits<int>::max();  // each input is a new file
    runtime::StartProjectFiles();
    numbers::Print(runtime::Project().moduleDirectory, 256, "%s", files::PathText(Root() / "module").c_str());
    std::string name = files::PathText(Root() / "project" / "map");
    std::string ext = "ini";
    const fs::path before = fs::current_path();
    _LFInit(name.data(), ext.data(), nullptr);
    fs::current_path(before);  // the corpus may be given by relative paths
    PutFile("module", "neworv.ini", "[PenWidth]\nDefault=20\n5=300\n");
}

void PutFile(const char* folder, const char* name, std::string_view bytes) {
    std::ofstream(Root() / folder / name, std::ios::binary)
        .write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
}

}  // namespace zm::fuzz
