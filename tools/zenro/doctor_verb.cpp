// zenro doctor: what this installation has and lacks.
#include <gdal.h>
#include <proj.h>

#include <cstdio>
#include <filesystem>
#include <memory>

#include <nlohmann/json.hpp>

#include "runtime/gbk.h"
#include "tools/zenro/library_session.h"
#include "tools/zenro/qt_module.h"
#include "tools/zenro/text.h"
#include "tools/zenro/verbs.h"
#include "zenromath/runtime.h"
#include "zenromath/symbol.h"

namespace fs = std::filesystem;

namespace zm::tool {
namespace {

struct Check {
    std::string name;
    bool good;
    std::string found;
    std::string advice;  // where it is not good
};

// The families of installed faces that have Chinese, as fontconfig tells them.
std::string ChineseFaces() {
    std::FILE* pipe = popen("fc-list :lang=zh family 2>/dev/null", "r");
    if (pipe == nullptr) return {};
    std::string first;
    char line[512];
    while (std::fgets(line, sizeof line, pipe) != nullptr)
        if (first.empty()) first = Trim(line);
    pclose(pipe);
    return first.substr(0, first.find(','));
}

Check FileCheck(const char* name, const char* file, const char* advice) {
    std::error_code error;
    const fs::path path = fs::path(ModuleDirectory()) / file;
    const bool there = fs::is_regular_file(path, error);
    return {name, there, there ? path.string() : path.string() + " is missing", advice};
}

Check TemplateCheck() {
    Check check =
        FileCheck("DWG template", "acad.dwg", "Build the target that makes it, or install the data files again.");
    if (!check.good) return check;
    const std::string bytes = ReadWholeFile(fs::path(ModuleDirectory()) / "acad.dwg", 1u << 24);
    if (bytes.substr(0, 6) == "AC1006") return check;
    check.good = false;
    check.found += ", which is no drawing of version 1006";
    return check;
}

Check LibraryCheck(ToolHost& host) {
    Check check = FileCheck("symbol library", "symbol.dat", "Install the data files again.");
    if (!check.good) return check;
    const std::string path = LibraryPath(fs::path(ModuleDirectory()) / "symbol.dat");
    const long before = host.messages();
    TsymbolInit(path.empty() ? nullptr : path.c_str());
    int known = 0;
    for (int code = 1; code <= 999; ++code) known += KindOfSymbol(code).known ? 1 : 0;
    TsymbolClose();
    check.found += ", " + std::to_string(known) + " symbols";
    check.good = known > 0 && host.messages() == before;
    check.advice = "Run zenro symbols lint.";
    return check;
}

Check WritableCheck(const char* name, const fs::path& folder) {
    std::error_code error;
    const bool there = fs::is_directory(folder, error);
    return {name, there, folder.string() + (there ? "" : " is missing"), "It is made when settings are saved."};
}

Check GdalCheck() {
    const int drivers = GDALGetDriverCount();
    return {"GDAL", drivers > 0,
            std::string(GDALVersionInfo("RELEASE_NAME")) + ", " + std::to_string(drivers) + " drivers",
            "Install GDAL."};
}

Check QtCheck() {
    const ZenroQtBridge* qt = TryLoadQt();
    if (qt == nullptr)
        return {"Qt for PNG and PDF", false, "the module libzenro_qt.so cannot be loaded",
                "Install Qt 6 and build with ZM_BUILD_QT; SVG, DWG and recordings need none of it."};
    return {"Qt for PNG and PDF", true, qt->qtVersion(), ""};
}

Check FontCheck() {
    const std::string face = ChineseFaces();
    return {"font for Chinese", !face.empty(), face.empty() ? "none is installed" : face,
            "Install fonts-wqy-zenhei or fonts-noto-cjk; without one Chinese text is drawn as boxes."};
}

Check CodePageCheck() {
    const std::string readable = "清溪镇";
    int lost = 0;
    const bool whole = gbk::ToUtf8(gbk::FromUtf8(readable, &lost)) == readable && lost == 0;
    return {"code page", whole, "GBK inside, UTF-8 outside", "The program is damaged."};
}

void Doctor(Context& context) {
    GDALAllRegister();
    const std::vector<Check> checks = {
        {"zenro", true, ZENRO_VERSION, ""},
        GdalCheck(),
        {"PROJ", true, proj_info().release, ""},
        QtCheck(),
        FontCheck(),
        TemplateCheck(),
        LibraryCheck(context.host),
        FileCheck("note classes", "Orvnote.cod", "Install the data files again."),
        FileCheck("linetypes", "ACAD.LIN", "Install the data files again."),
        FileCheck("layers", "project.ini", "Install the data files again."),
        FileCheck("rules", "rules/demo.rules", "Install the data files again."),
        WritableCheck("module directory", ModuleDirectory()),
        WritableCheck("settings directory", FromLibraryPath(_LFWndDir())),
        CodePageCheck(),
    };
    bool all = true;
    auto list = nlohmann::ordered_json::array();
    for (const Check& check : checks) {
        all = all && check.good;
        if (context.json) {
            list.push_back({{"name", check.name}, {"good", check.good}, {"found", check.found}});
            if (!check.good) list.back()["advice"] = check.advice;
            continue;
        }
        std::printf("%-5s %-20s %s\n", check.good ? "ok" : "LACKS", check.name.c_str(), check.found.c_str());
        if (!check.good) std::printf("%-26s %s\n", "", check.advice.c_str());
    }
    if (context.json) std::printf("%s\n", list.dump(2, ' ', false, nlohmann::json::error_handler_t::replace).c_str());
    context.status = all ? kDone : kFailed;
}

}  // namespace

void AddDoctorVerb(CLI::App& app, Context& context) {
    CLI::App& verb = *app.add_subcommand("doctor", "Tell what this installation has and lacks");
    AddCommonOptions(verb, context);
    verb.callback([&context] { Doctor(context); });
}

}  // namespace zm::tool
