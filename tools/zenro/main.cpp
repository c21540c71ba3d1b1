// The program zenro: draws map data with the library, converts and measures coordinates, inspects its files.
#include <clocale>
#include <cstdio>
#include <exception>

#include "tools/zenro/tool_host.h"
#include "tools/zenro/verbs.h"

namespace zm::tool {
namespace {

constexpr char kExitStatuses[] =
    "Exit status: 0 done, 1 failed, 2 wrong usage, 3 input missing or unreadable, 4 done but records were skipped or\n"
    "limits cut something, 5 an output could not be written, 130 stopped.";

// CLI11 gives its own numbers for wrong usage; scripts get 2 for all of them.
int Parse(CLI::App& app, int argc, char** argv) {
    try {
        app.parse(argc, argv);
        return kDone;
    } catch (const CLI::CallForHelp&) {
        std::fputs(app.help().c_str(), stdout);
    } catch (const CLI::CallForAllHelp&) {
        std::fputs(app.help("", CLI::AppFormatMode::All).c_str(), stdout);
    } catch (const CLI::CallForVersion& call) {
        std::printf("%s\n", call.what());
    } catch (const CLI::ParseError& error) {
        SayLine(std::string(error.what()) + ". Try: zenro --help");
        return kUsage;
    }
    return kDone;
}

// A verb may leave by the library's own end of the process: never as success.
int Run(CLI::App& app, Context& context, int argc, char** argv) {
    try {
        const int usage = Parse(app, argc, argv);
        return usage != kDone ? usage : context.status;
    } catch (const Failure& failure) {
        context.report.Error(failure.what());
        return failure.status;
    } catch (const Stopped&) {
        context.report.Error("stopped; nothing unfinished is left.");
        return kStopped;
    } catch (const LibraryStop& stop) {
        const std::string& last = context.host.lastMessage();
        context.report.Error("the library ended the work with status " + std::to_string(stop.status) +
                             (last.empty() ? std::string(".") : ": " + last));
        return kFailed;
    } catch (const std::bad_alloc&) {
        context.report.Error("out of memory; draw a smaller part with --sheet.");
        return kFailed;
    } catch (const std::exception& error) {
        context.report.Error(std::string("unexpected: ") + error.what());
        return kFailed;
    }
}

int Main(int argc, char** argv) {
    std::setlocale(LC_CTYPE, "");  // names of files; numbers never go by the locale
    Report report;
    ToolHost host(report);
    CatchStopSignals();
    Context context{report, host};

    CLI::App app("zenro draws survey data with map symbols, measures, and converts coordinates.", "zenro");
    app.set_version_flag("--version", std::string("zenro ") + ZENRO_VERSION);
    app.footer(kExitStatuses);
    app.require_subcommand(1);
    AddDrawVerb(app, context);
    AddDemoVerb(app, context);
    AddReplayVerb(app, context);
    AddCoordVerb(app, context);
    AddMeasureVerb(app, context);
    AddSymbolsVerb(app, context);
    AddDwgVerb(app, context);
    AddDoctorVerb(app, context);

    int status = Run(app, context, argc, argv);
    report.Close();
    if (std::fflush(stdout) != 0 || std::ferror(stdout) != 0) {
        report.Error("standard output: cannot be written in full.");
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
        std::fprintf(stderr, "zenro: unexpected: %s\n", error.what());
    } catch (...) {
        std::fputs("zenro: unexpected: the library ended the work outside of a verb.\n", stderr);
    }
    return zm::tool::kFailed;
}
