// The program zenro: draws map data with the library, converts and measures coordinates, inspects its files.
#include <algorithm>
#include <clocale>
#include <cstdio>
#include <exception>

#include "tools/kit/process.h"
#include "tools/kit/shown_text.h"
#include "tools/kit/standard_streams.h"
#include "tools/kit/text.h"
#include "tools/kit/tool_host.h"
#include "tools/kit/translation.h"
#include "tools/zenro/verbs/verbs.h"

namespace zm::tool {
namespace {

constexpr const char* kExitStatuses = N_(
    "Exit status: 0 done, 1 failed, 2 wrong usage, 3 input missing or unreadable, 4 done but records were skipped or\n"
    "limits cut something, 5 an output could not be written, 6 nothing to draw, 130 stopped.");

// Scripts get one status for whatever is wrong with the command line.
int Parse(CommandLine& line, const std::vector<std::string>& arguments, const Context& context) {
    const ParseResult parsed = line.Parse(arguments);
    switch (parsed.kind) {
        case ParseResult::Kind::run:
            return context.status;
        case ParseResult::Kind::answered:
            std::fputs(ForTerminal(parsed.text).c_str(), stdout);
            return kDone;
        case ParseResult::Kind::wrong:
            break;
    }
    SayLine(Phrase("error: {0}. Try: zenro --help", parsed.text));
    return kUsage;
}

// A verb may leave by the library's own end of the process: never as success.
int Run(CommandLine& line, Context& context, const std::vector<std::string>& arguments) {
    try {
        return Parse(line, arguments, context);
    } catch (const Failure& failure) {
        context.report.Error(failure.what());
        return failure.status;
    } catch (const Stopped&) {
        context.report.Error(Phrase("stopped; nothing unfinished is left."));
        return kStopped;
    } catch (const LibraryStop& stop) {
        const std::string& last = context.host.lastMessage();
        context.report.Error(last.empty()
                                 ? Phrase("the library ended the work with status {0}.", stop.status)
                                 : Phrase("the library ended the work with status {0}: {1}", stop.status, last));
        return kFailed;
    } catch (const std::bad_alloc&) {
        context.report.Error(Phrase("out of memory; draw a smaller part with --sheet."));
        return kFailed;
    } catch (const std::exception& error) {
        context.report.Error(Phrase("unexpected: {0}", error.what()));
        return kFailed;
    }
}

int Main(int argc, char** argv) {
    std::setlocale(LC_CTYPE, "");  // names of files; numbers never go by the locale
    LoadTranslation();
    const TerminalText terminal;
    Report report;
    ToolHost host(report);
    CatchStopSignals();
    Context context{report, host};

    CommandLine line(N_("zenro draws survey data with map symbols, measures, and converts coordinates."), "zenro");
    line.SetVersion(std::string("zenro ") + ZENRO_VERSION);
    line.SetFooter(kExitStatuses);
    const Verb app = line.root();
    app.NeedsVerb();
    AddDrawVerb(app, context);
    AddContoursVerb(app, context);
    AddDemoVerb(app, context);
    AddReplayVerb(app, context);
    AddRulesVerb(app, context);
    AddCoordVerb(app, context);
    AddMeasureVerb(app, context);
    AddSeriesVerb(app, context);
    AddSheetsVerb(app, context);
    AddSymbolsVerb(app, context);
    AddDwgVerb(app, context);
    AddViewVerb(app, context);
    AddSettingsVerb(app, context);
    AddDoctorVerb(app, context);

    std::vector<std::string> arguments = Arguments(argc, argv);
    std::transform(arguments.begin(), arguments.end(), arguments.begin(), StreamArgument);
    for (const std::string& argument : arguments) RememberSecrets(argument);
    arguments.erase(arguments.begin());  // the program
    int status = Run(line, context, arguments);
    report.Close();
    if (std::fflush(stdout) != 0 || std::ferror(stdout) != 0) {
        report.Error(Phrase("standard output: cannot be written in full."));
        if (status == kDone || status == kPartly) status = kNoOutput;
    }
    return status;
}

}  // namespace
}  // namespace zm::tool

int main(int argc, char** argv) {
    try {
        return zm::tool::Main(argc, argv);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "error: unexpected: %s\n", error.what());
    } catch (...) {
        std::fputs("error: unexpected: the library ended the work outside of a verb.\n", stderr);
    }
    return zm::tool::kFailed;
}
