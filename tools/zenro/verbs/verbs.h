// The verbs of zenro. Each adds its subcommand with its options; the work runs from the callback, which stores the
// status of the whole program in Context::status and throws Failure for what ends it.
//
// A folder beside this one that brings verbs of its own (tools/symbols, tools/dwg) offers one such function, in the
// library target named in tools/zenro/CMakeLists.txt; where the folder is not there, the verb says so.
#pragma once

#include <string>

#include "tools/kit/command_line.h"
#include "tools/kit/report.h"

namespace zm::tool {

class ToolHost;

/// What all verbs share.
struct Context {
    Report& report;
    ToolHost& host;
    bool json = false;  // results as JSON on stdout
    bool verbose = false;
    bool overwrite = false;
    std::string* capture = nullptr;  // takes the JSON of draw in place of stdout
    int status = kDone;              // what the program exits with where nothing was thrown
};

void AddDrawVerb(Verb app, Context& context);
void AddDemoVerb(Verb app, Context& context);
void AddDoctorVerb(Verb app, Context& context);
void AddCoordVerb(Verb app, Context& context);
void AddContoursVerb(Verb app, Context& context);
void AddTransformVerb(Verb coord, Context& context);  // of coord
void AddMeasureVerb(Verb app, Context& context);
void AddMeasureLayerVerb(Verb measure, Context& context);  // of measure
void AddRulesVerb(Verb app, Context& context);
void AddReplayVerb(Verb app, Context& context);
void AddSettingsVerb(Verb app, Context& context);
void AddSeriesVerb(Verb app, Context& context);
void AddSheetsVerb(Verb app, Context& context);
void AddViewVerb(Verb app, Context& context);
// Of tools/symbols and tools/dwg.
void AddSymbolsVerb(Verb app, Context& context);
void AddSymbolsViewVerb(Verb symbols, Context& context);  // of symbols
void AddDwgVerb(Verb app, Context& context);

/// The options that every verb has: --json, --quiet, --verbose.
void AddCommonOptions(Verb verb, Context& context);

}  // namespace zm::tool
