// The verbs of zenro. Each adds its subcommand with its options; the work runs from the callback, which stores the
// status of the whole program in Context::status and throws Failure for what ends it.
//
// A folder beside this one that brings verbs of its own (tools/symbols, tools/dwg) offers one such function, in the
// library target named in tools/zenro/CMakeLists.txt; where the folder is not there, the verb says so.
#pragma once

#include <CLI/CLI.hpp>
#include <string>

#include "tools/zenro/report.h"

namespace zm::tool {

class ToolHost;

/// What all verbs share.
struct Context {
    Report& report;
    ToolHost& host;
    bool json = false;  // results as JSON on stdout
    bool verbose = false;
    bool overwrite = false;
    int status = kDone;  // what the program exits with where nothing was thrown
};

void AddDrawVerb(CLI::App& app, Context& context);
void AddDemoVerb(CLI::App& app, Context& context);
void AddDoctorVerb(CLI::App& app, Context& context);
void AddCoordVerb(CLI::App& app, Context& context);
void AddMeasureVerb(CLI::App& app, Context& context);
void AddReplayVerb(CLI::App& app, Context& context);
// Of tools/symbols and tools/dwg.
void AddSymbolsVerb(CLI::App& app, Context& context);
void AddDwgVerb(CLI::App& app, Context& context);

/// The options that every verb has: --json, --quiet, --verbose.
void AddCommonOptions(CLI::App& verb, Context& context);

}  // namespace zm::tool
