// zenro symbols: what a symbol library holds, and what in it will not draw as its author thinks.
#include <cstdio>
#include <filesystem>
#include <memory>

#include <nlohmann/json.hpp>

#include "tools/symbols/symbols.h"
#include "tools/zenro/library_session.h"
#include "tools/zenro/output_file.h"
#include "tools/zenro/text.h"
#include "tools/zenro/verbs.h"

namespace zm::tool {
namespace {

namespace lib = zm::tools::symbols;

struct SymbolsOptions {
    std::string file;
    std::string kind;
    int code = 0;
    std::string output;
    bool overwrite = false;
    lib::SheetOptions sheet;
};

// The file in words, and as the library takes it.
struct NamedLibrary {
    std::string shown, path;
};

NamedLibrary LibraryOf(const SymbolsOptions& options) {
    const std::filesystem::path file = options.file.empty() ? std::filesystem::path(ModuleDirectory()) / "symbol.dat"
                                                            : std::filesystem::path(options.file);
    std::error_code error;
    NamedLibrary named{file.string(), LibraryPath(std::filesystem::absolute(file, error))};
    if (named.path.empty() || !std::filesystem::is_regular_file(file, error) || !lib::CanRead(named.path.c_str()))
        throw Failure(kNoInput, named.shown + ": cannot be read; give the path of a symbol library.");
    return named;
}

void Print(const std::string& text) {
    std::fputs(text.c_str(), stdout);
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
        throw Failure(kFailed, library.shown + ": has no symbol " + std::to_string(options.code) +
                                   "; zenro symbols list shows all.");
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
        Print(library.shown + ": nothing found\n");
    context.status = lost ? kFailed : kDone;
}

void Sheet(const SymbolsOptions& options) {
    const NamedLibrary library = LibraryOf(options);
    if (options.output.empty()) return Print(lib::SheetPage(library.path.c_str(), options.sheet));
    CheckOutput(options.output, options.overwrite);
    WriteOutput(options.output, options.overwrite, lib::SheetPage(library.path.c_str(), options.sheet));
    Print(options.output + "\n");
}

CLI::App& AddVerb(CLI::App& symbols, Context& context, SymbolsOptions& options, const char* name, const char* what) {
    CLI::App& verb = *symbols.add_subcommand(name, what);
    AddCommonOptions(verb, context);
    verb.add_option("--symbols", options.file, "Symbol library")->default_str("the default one");
    return verb;
}

}  // namespace

void AddSymbolsVerb(CLI::App& app, Context& context) {
    CLI::App& symbols = *app.add_subcommand("symbols", "List, show, check and picture a symbol library");
    symbols.require_subcommand(1);
    const auto options = std::make_shared<SymbolsOptions>();
    CLI::App& list = AddVerb(symbols, context, *options, "list", "All symbols, a line each");
    list.add_option("--kind", options->kind, "Only this kind")->check(CLI::IsMember({"G", "LC", "L", "E", "H", "Y"}));
    list.callback([options, &context] { List(*options, context); });
    CLI::App& show = AddVerb(symbols, context, *options, "show", "All about one symbol");
    show.add_option("CODE", options->code, "Its code, 1 to 999")->required()->check(CLI::Range(1, 999));
    show.callback([options, &context] { Show(*options, context); });
    CLI::App& lint = AddVerb(symbols, context, *options, "lint", "What will not draw as its author thinks");
    lint.add_option("FILE", options->file, "Symbol library");
    lint.callback([options, &context] { LintFile(*options, context); });
    CLI::App& sheet = AddVerb(symbols, context, *options, "sheet", "One HTML page with a picture of every symbol");
    sheet.add_option("-o,--output", options->output, "The page; stdout without it");
    sheet.add_option("--title", options->sheet.title, "Title of the page")->capture_default_str();
    sheet.add_option("--pen", options->sheet.pen, "Pen width in millimetres")
        ->check(CLI::Range(0.05, 5.0))
        ->capture_default_str();
    sheet.add_flag("--overwrite", options->overwrite, "Replace an output that exists");
    sheet.callback([options] { Sheet(*options); });
}

}  // namespace zm::tool
