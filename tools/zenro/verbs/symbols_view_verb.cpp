// zenro symbols view: a symbol library in a window, which a process of this program reads and draws.
#include <filesystem>
#include <memory>

#include "tools/kit/qt_module.h"
#include "tools/kit/text.h"
#include "tools/kit/translation.h"
#include "tools/zenro/verbs/verbs.h"
#include "tools/zenro/verbs/window.h"
#include "tools/zenro/view/symbol_keeper.h"

namespace fs = std::filesystem;

namespace zm::tool {
namespace {

struct SymbolsJob {
    std::string file, project, picture;
    int code = 0;
    int worker = -1;
};

void ShowWindow(const SymbolsJob& job, const Verb verb, Context& context) {
    std::error_code error;
    const fs::path file = fs::absolute(PathOf(job.file.empty() ? ShippedSymbols() : job.file), error);
    if (!fs::is_regular_file(file, error))
        throw Failure(kNoInput, Phrase("{0}: cannot be read; give the path of a symbol library.", file.string()));
    if (!IsSymbolLibrary(file))
        throw Failure(kNoInput, Phrase("{0}: is no symbol library; it has no line such as \"*12 G\".", file.string()));
    ShowInWindow(&ZenroQtBridge::showSymbols, {file.string()}, verb.GivenOptions({"picture", "worker"}), job.picture,
                 {}, context);
}

}  // namespace

void AddSymbolsViewVerb(Verb symbols, Context& context) {
    const Verb verb = symbols.AddVerb("view", "A window with every symbol and its text, to be edited and saved");
    const auto job = std::make_shared<SymbolsJob>();
    AddCommonOptions(verb, context);
    verb.AddOption("FILE", job->file, "Symbol library").Default("the default one");
    verb.AddOption("--code", job->code, "The symbol that is shown first").Within(1, 999);
    verb.AddOption("--project", job->project, "Project file with the layers");
    verb.AddOption("--picture", job->picture, "Write what the window shows once it is whole, a PNG file, and end");
    verb.AddOption("--worker", job->worker, "").Hidden();
    verb.OnRun([job, verb, &context] {
        if (job->worker >= 0) return KeepSymbols(job->project, job->worker, context);
        ShowWindow(*job, verb, context);
    });
}

}  // namespace zm::tool
