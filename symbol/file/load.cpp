// Loading of the symbol library.
#include <cstdio>
#include <memory>
#include <new>

#include "runtime/profile/project.h"
#include "symbol/file/symbol_file.h"
#include "symbol/state.h"
#include "symbol/texts.h"
#include "zenromath/host.h"
#include "zenromath/runtime.h"

namespace zm::symbol {
namespace {

constexpr char kDefaultFile[] = "symbol.dat";

struct CloseFile {
    void operator()(std::FILE* file) const { std::fclose(file); }
};

// The file under the name given or, failing that, under its usual one.
std::unique_ptr<std::FILE, CloseFile> OpenLibrary(const char* path) {
    for (const char* name : {path != nullptr ? path : kDefaultFile, kDefaultFile})
        if (std::FILE* file = _LFOpen(name, "rt")) return std::unique_ptr<std::FILE, CloseFile>(file);
    CurrentHost().EndProcess(0);
    return nullptr;
}

std::unique_ptr<Library> Load(const char* path) {
    const auto file = OpenLibrary(path);
    try {
        auto library = std::make_unique<Library>();
        SymbolFileReader(file.get(), *library).Read();
        if (file != nullptr && std::ferror(file.get()) != 0) _LMsg(texts::kNotReadToItsEnd, nullptr, 0);
        return library;
    } catch (const std::bad_alloc&) {
        _LMsg(texts::kNoTableSpace, nullptr, 0);
    }
    CurrentHost().EndProcess(0);
    return nullptr;
}

}  // namespace
}  // namespace zm::symbol

int TsymbolInit(const char* path) {
    using zm::symbol::state;
    TsymbolClose();
    state().library = zm::symbol::Load(path);
    state().lastCode = 0;
    state().curveCutReported = false;
    state().arcPolylineCutReported = false;
    state().patternStuckReported = false;
    TheBody = nullptr;
    nBody = 0;
    TheLCBody = {};
    return 1;
}
