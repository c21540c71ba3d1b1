// zenro doctor: what this installation has and lacks.
#include <cstdio>
#include <filesystem>
#include <memory>

#include <nlohmann/json.hpp>

#include "runtime/text/gbk.h"
#include "tools/kit/process.h"
#include "tools/kit/qt_module.h"
#include "tools/kit/report.h"
#include "tools/kit/text.h"
#include "tools/kit/translation.h"
#include "tools/zenro/map/geodata.h"
#include "tools/zenro/map/library_session.h"
#include "tools/zenro/verbs/verbs.h"
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

Check FileCheck(const char* name, const char* file, const std::string& advice) {
    std::error_code error;
    const fs::path path = PathOf(ModuleDirectory()) / file;
    const bool there = fs::is_regular_file(path, error);
    return {name, there, there ? path.string() : Phrase("{0} is missing", path.string()), advice};
}

Check TemplateCheck() {
    Check check = FileCheck(N_("DWG template"), "acad.dwg",
                            Phrase("Build the target that makes it, or install the data files again."));
    if (!check.good) return check;
    const std::string bytes = ReadWholeFile(PathOf(ModuleDirectory()) / "acad.dwg", 1u << 24);
    if (bytes.substr(0, 6) == "AC1006") return check;
    check.good = false;
    check.found += Phrase(", which is no drawing of version 1006");
    return check;
}

Check LibraryCheck(ToolHost& host) {
    Check check = FileCheck(N_("symbol library"), "symbol.dat", Phrase("Install the data files again."));
    if (!check.good) return check;
    const std::string path = LibraryPath(PathOf(ModuleDirectory()) / "symbol.dat");
    const long before = host.messages();
    TsymbolInit(path.empty() ? nullptr : path.c_str());
    int known = 0;
    for (int code = 1; code <= 999; ++code) known += KindOfSymbol(code).known ? 1 : 0;
    TsymbolClose();
    check.found += Phrase(", {0} symbols", known);
    check.good = known > 0 && host.messages() == before;
    check.advice = Phrase("Run zenro symbols lint.");
    return check;
}

Check WritableCheck(const char* name, const fs::path& folder) {
    std::error_code error;
    const bool there = fs::is_directory(folder, error);
    return {name, there, there ? folder.string() : Phrase("{0} is missing", folder.string()),
            Phrase("It is made when settings are saved.")};
}

Check GdalCheck(const GeodataLibraries& geodata) {
    if (!geodata.built) return {"GDAL", true, Phrase("this program is built without it, and draws no map data"), ""};
    return {"GDAL", geodata.drivers > 0, Phrase("{0}, {1} drivers", geodata.gdal, geodata.drivers),
            Phrase("Install GDAL.")};
}

Check QtCheck() {
    const ZenroQtBridge* qt = TryLoadQt();
    if (qt == nullptr)
        return {N_("Qt for PNG and PDF"), false, Phrase("the module libzenro_qt.so cannot be loaded"),
                Phrase("Install Qt 6 and build with ZM_BUILD_QT; SVG, DWG and recordings need none of it.")};
    const std::string version = qt->qtVersion();
    if (version == "GDI") return {N_("GDI for PNG"), true, Phrase("the system's own; PDF needs Qt"), ""};
    return {N_("Qt for PNG and PDF"), true, version, ""};
}

Check FontCheck() {
    const std::string face = InstalledChineseFace();
    return {N_("font for Chinese"), !face.empty(), face.empty() ? Phrase("none is installed") : face,
            Phrase("Install fonts-wqy-zenhei or fonts-noto-cjk; without one Chinese text is drawn as boxes.")};
}

Check CodePageCheck() {
    const std::string readable = "清溪镇";
    int lost = 0;
    const bool whole = gbk::ToUtf8(gbk::FromUtf8(readable, &lost)) == readable && lost == 0;
    return {N_("code page"), whole, Phrase("GBK inside, UTF-8 outside"), Phrase("The program is damaged.")};
}

// Columns are counted as a terminal shows them.
void PrintLine(const std::string& state, const std::string& name, const std::string& text) {
    PrintText(InColumns(state, 5) + " " + InColumns(name, 20) + " " + text);
}

void Doctor(Context& context) {
    const GeodataLibraries geodata = InstalledGeodata();
    const std::vector<Check> checks = {
        {"zenro", true, ZENRO_VERSION, ""},
        GdalCheck(geodata),
        {"PROJ", true, geodata.built ? geodata.proj : Phrase("this program is built without it"), ""},
        QtCheck(),
        FontCheck(),
        TemplateCheck(),
        LibraryCheck(context.host),
        FileCheck(N_("note classes"), "Orvnote.cod", Phrase("Install the data files again.")),
        FileCheck(N_("linetypes"), "ACAD.LIN", Phrase("Install the data files again.")),
        FileCheck(N_("layers"), "project.ini", Phrase("Install the data files again.")),
        FileCheck(N_("rules"), "rules/demo.rules", Phrase("Install the data files again.")),
        WritableCheck(N_("module directory"), PathOf(ModuleDirectory())),
        WritableCheck(N_("settings directory"), FromLibraryPath(_LFWndDir())),
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
        PrintLine(check.good ? Phrase("ok") : Phrase("LACKS"), Phrase(check.name), check.found);
        if (!check.good) PrintLine("", "", check.advice);
    }
    if (context.json) WriteLine(list.dump(2, ' ', false, nlohmann::json::error_handler_t::replace));
    context.status = all ? kDone : kFailed;
}

}  // namespace

void AddDoctorVerb(Verb app, Context& context) {
    const Verb verb = app.AddVerb("doctor", "Tell what this installation has and lacks");
    AddCommonOptions(verb, context);
    verb.OnRun([&context] { Doctor(context); });
}

}  // namespace zm::tool
