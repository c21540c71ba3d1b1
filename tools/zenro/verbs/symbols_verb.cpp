// zenro symbols: what a symbol library holds, and what in it will not draw as its author thinks.
#include <cstdio>
#include <filesystem>
#include <memory>

#include <nlohmann/json.hpp>

#include "tools/kit/output_file.h"
#include "tools/kit/report.h"
#include "tools/kit/standard_streams.h"
#include "tools/kit/text.h"
#include "tools/kit/translation.h"
#include "tools/symbols/symbols.h"
#include "tools/zenro/map/layer_looks.h"
#include "tools/zenro/map/library_session.h"
#include "tools/zenro/verbs/verbs.h"

namespace zm::tool {
namespace {

namespace lib = zm::tool::symbols;

struct SymbolsOptions {
    std::string file;
    std::string other;  // that the file is compared with
    std::string kind;
    int code = 0;
    std::string output;
    bool overwrite = false;
    double pen = 0.0;  // of all symbols alike; 0: that of each one's layer
    lib::SheetOptions sheet;
};

// The file in words, and as the library takes it.
struct NamedLibrary {
    std::string shown, path;
    InputFile input;
};

NamedLibrary LibraryOf(const std::string& given) {
    InputFile input(given.empty() ? PathOf(ModuleDirectory()) / "symbol.dat" : PathOf(given));
    const std::filesystem::path file = input.path();
    std::error_code error;
    NamedLibrary named{given == "-" ? given : file.string(), LibraryPath(std::filesystem::absolute(file, error)),
                       std::move(input)};
    if (named.path.empty() || !std::filesystem::is_regular_file(file, error) || !lib::CanRead(named.path.c_str()))
        throw Failure(kNoInput, Phrase("{0}: cannot be read; give the path of a symbol library.", named.shown));
    if (!IsSymbolLibrary(file))
        throw Failure(kNoInput, Phrase("{0}: is no symbol library; it has no line such as \"*12 G\".", named.shown));
    return named;
}

NamedLibrary LibraryOf(const SymbolsOptions& options) {
    return LibraryOf(options.file);
}

void Print(const std::string& text) {
    WriteLines(text);
}

void PrintJson(const nlohmann::ordered_json& j) {
    Print(j.dump(2, ' ', false, nlohmann::json::error_handler_t::replace) + "\n");
}

nlohmann::ordered_json AsJson(const lib::Symbol& s) {
    return {{"code", s.code},          {"kind", s.kind},    {"number", s.number},
            {"note", s.note},          {"size", s.size},    {"first_line", s.firstLine},
            {"last_line", s.lastLine}, {"source", s.source}};
}

void List(const SymbolsOptions& options, Context& context) {
    const auto symbols = lib::ReadSymbols(LibraryOf(options).path.c_str());
    if (!context.json) return Print(lib::ListText(symbols, options.kind));
    auto list = nlohmann::ordered_json::array();
    for (const lib::Symbol& s : symbols)
        if (options.kind.empty() || s.kind == options.kind) list.push_back(AsJson(s));
    PrintJson(list);
}

void Show(const SymbolsOptions& options, Context& context) {
    const NamedLibrary library = LibraryOf(options);
    const auto symbols = lib::ReadSymbols(library.path.c_str());
    const std::string text = lib::ShowText(symbols, options.code);
    if (text.empty())
        throw Failure(kFailed,
                      Phrase("{0}: has no symbol {1}; zenro symbols list shows all.", library.shown, options.code));
    if (!context.json) return Print(text);
    for (const lib::Symbol& s : symbols)
        if (s.code == options.code) PrintJson(AsJson(s));
}

void LintFile(const SymbolsOptions& options, Context& context) {
    const NamedLibrary library = LibraryOf(options);
    const auto findings = lib::Lint(library.path.c_str());
    auto list = nlohmann::ordered_json::array();
    bool lost = false;
    for (const lib::Finding& f : findings) {
        lost = lost || f.weight == lib::Weight::lost;
        if (context.json)
            list.push_back({{"line", f.line},
                            {"code", f.code},
                            {"weight", f.weight == lib::Weight::lost ? "lost" : "doubtful"},
                            {"text", f.text}});
        else
            Print(lib::FindingText(library.shown, f) + "\n");
    }
    if (context.json)
        PrintJson(list);
    else if (findings.empty())
        Print(Phrase("{0}: nothing found\n", library.shown));
    context.status = lost ? kFailed : kDone;
}

// 1 where they differ, so that a script can ask.
void Diff(const SymbolsOptions& options, Context& context) {
    const NamedLibrary first = LibraryOf(options.file), second = LibraryOf(options.other);
    const lib::Comparison found =
        lib::Compare(lib::ReadSymbols(first.path.c_str()), lib::ReadSymbols(second.path.c_str()));
    context.status = found.same() ? kDone : kFailed;
    if (!context.json) return Print(lib::ComparisonText(found, options.file, options.other));
    nlohmann::ordered_json j = {{"same", found.same()}, {"alike", found.alike}};
    for (const char* name : {"changed", "only_first", "only_second"}) j[name] = nlohmann::ordered_json::array();
    for (const auto& [before, after] : found.changed)
        j["changed"].push_back({{"code", before.code}, {"first", AsJson(before)}, {"second", AsJson(after)}});
    for (const lib::Symbol& s : found.onlyFirst) j["only_first"].push_back(AsJson(s));
    for (const lib::Symbol& s : found.onlySecond) j["only_second"].push_back(AsJson(s));
    PrintJson(j);
}

// In the colour and the width of its layer, as on a sheet, unless a width for all is named.
lib::SheetOptions SheetOptionsOf(const SymbolsOptions& options) {
    lib::SheetOptions sheet = options.sheet;
    sheet.pen = options.pen;
    if (options.pen > 0.0) return sheet;
    sheet.pen = 0.15;
    sheet.look = [looks = LooksOfLayers({})](int code) { return looks.at(static_cast<std::size_t>(code)); };
    return sheet;
}

void Sheet(const SymbolsOptions& options) {
    const std::string extension = PathOf(options.output).extension().string();
    if (!options.output.empty() && extension != ".html" && extension != ".htm")
        throw Failure(kUsage, Phrase("{0}: the page is HTML; name a file that ends in .html.", options.output));
    const NamedLibrary library = LibraryOf(options);
    const lib::SheetOptions sheet = SheetOptionsOf(options);
    if (options.output.empty()) return Print(lib::SheetPage(library.path.c_str(), sheet));
    CheckOutput(PathOf(options.output), options.overwrite);
    WriteOutput(PathOf(options.output), options.overwrite, lib::SheetPage(library.path.c_str(), sheet));
    Print(options.output + "\n");
}

Verb AddFileVerb(Verb symbols, Context& context, SymbolsOptions& options, const char* name, const char* what) {
    const Verb verb = symbols.AddVerb(name, what);
    AddCommonOptions(verb, context);
    verb.AddOption("--symbols", options.file, "Symbol library").Default("the default one");
    return verb;
}

}  // namespace

void AddSymbolsVerb(Verb app, Context& context) {
    const Verb symbols = app.AddVerb("symbols", "List, show, check and picture a symbol library");
    symbols.NeedsVerb();
    const auto options = std::make_shared<SymbolsOptions>();
    const Verb list = AddFileVerb(symbols, context, *options, "list", "All symbols, a line each");
    list.AddOption("--kind", options->kind, "Only this kind").OneOf({"G", "LC", "L", "E", "H", "Y"});
    list.OnRun([options, &context] { List(*options, context); });
    const Verb show = AddFileVerb(symbols, context, *options, "show", "All about one symbol");
    show.AddOption("CODE", options->code, "Its code, 1 to 999").Required().Within(1, 999);
    show.OnRun([options, &context] { Show(*options, context); });
    const Verb lint = AddFileVerb(symbols, context, *options, "lint", "What will not draw as its author thinks");
    lint.AddOption("FILE", options->file, "Symbol library");
    lint.OnRun([options, &context] { LintFile(*options, context); });
    const Verb diff = symbols.AddVerb("diff", "What differs between two symbol libraries; exit status 1 where they do");
    AddCommonOptions(diff, context);
    diff.AddOption("A", options->file, "Symbol library").Required();
    diff.AddOption("B", options->other, "The one that it is compared with").Required();
    diff.OnRun([options, &context] { Diff(*options, context); });
    const Verb sheet = AddFileVerb(symbols, context, *options, "sheet", "One HTML page with a picture of every symbol");
    sheet.AddOption("-o,--output", options->output, "The page; stdout without it");
    sheet.AddOption("--title", options->sheet.title, "Title of the page").ShowDefault();
    sheet.AddOption("--pen", options->pen, "Pen width in millimetres, in black for all symbols alike")
        .Within(0.05, 5.0)
        .Default("that of the layer");
    sheet.AddFlag("--overwrite", options->overwrite, "Replace an output that exists");
    sheet.OnRun([options] { Sheet(*options); });
    AddSymbolsViewVerb(symbols, context);
}

}  // namespace zm::tool
