#include "tools/kit/qt_module.h"

#include <dlfcn.h>

#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

#include "tools/kit/exit_codes.h"
#include "tools/kit/output_file.h"
#include "tools/kit/translation.h"
#include "tools/zenro/map/library_session.h"

namespace fs = std::filesystem;

namespace zm::tool {
namespace {

constexpr char kModule[] = "libzenro_qt.so";

const ZenroQtBridge* Load(std::string& tried) {
    std::error_code error;
    NameRuntimeDirectory();
    const fs::path program = fs::read_symlink("/proc/self/exe", error).parent_path();
    const std::vector<fs::path> places = {fs::path(ModuleDirectory()) / kModule, program / kModule,
                                          program / ".." / "lib" / kModule, kModule};
    for (const fs::path& place : places) {
        if (place.has_parent_path() && !fs::exists(place, error)) continue;
        void* module = dlopen(place.c_str(), RTLD_NOW | RTLD_LOCAL);
        if (module == nullptr) {
            tried = dlerror();
            continue;
        }
        const auto function = reinterpret_cast<ZenroQtBridgeFunction>(dlsym(module, kZenroQtBridgeName));
        const ZenroQtBridge* bridge = function != nullptr ? function(kZenroQtBridgeVersion) : nullptr;
        if (bridge != nullptr) return bridge;
        tried = Phrase("{0} is of another version", place.string());
    }
    return nullptr;
}

}  // namespace

void NameRuntimeDirectory() {
    if (std::getenv("XDG_RUNTIME_DIR") != nullptr) return;
    try {
        static const PrivateFolder folder;
        setenv("XDG_RUNTIME_DIR", folder.path().c_str(), 0);
    } catch (const Failure&) {
        // Qt does without one too.
    }
}

const ZenroQtBridge* TryLoadQt() {
    std::string tried;
    static const ZenroQtBridge* const bridge = Load(tried);
    return bridge;
}

const ZenroQtBridge& LoadQt() {
    if (const ZenroQtBridge* bridge = TryLoadQt()) return *bridge;
    std::string tried;
    Load(tried);
    throw Failure(kFailed, Phrase("PNG and PDF need the module {0}, which cannot be loaded ({1}). Install Qt 6 and "
                                  "build with ZM_BUILD_QT, or write .svg and .dwg.",
                                  kModule, tried));
}

}  // namespace zm::tool
