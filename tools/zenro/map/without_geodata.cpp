// The program without GDAL and PROJ: it draws no map data, and says so.
#include <string>

#include "tools/kit/translation.h"
#include "tools/zenro/map/draw_job.h"
#include "tools/zenro/map/geodata.h"
#include "tools/zenro/verbs/verbs.h"

namespace zm::tool {

GeodataLibraries InstalledGeodata() {
    return {};
}

namespace {

// A verb that is there to say why it is not.
void AddMissingVerb(Verb app, const char* name, const char* purpose) {
    const Verb verb = app.AddVerb(name, purpose);
    verb.TakeAnything();  // whatever its options, the answer is the same
    verb.OnRun([name] {
        throw Failure(kFailed,
                      Phrase("{0}: this program is built without GDAL and PROJ; do it on another machine.", name));
    });
}

}  // namespace

void AddContoursVerb(Verb app, Context&) {
    AddMissingVerb(app, "contours", N_("Contours through points of known height"));
}

void AddRulesVerb(Verb app, Context&) {
    AddMissingVerb(app, "rules", N_("What rules make of data"));
}

void AddSeriesVerb(Verb app, Context&) {
    AddMissingVerb(app, "series", N_("Many sheets: plan, draw on one machine or many, follow"));
}

void AddSymbolsViewVerb(Verb symbols, Context&) {
    AddMissingVerb(symbols, "view", N_("A window with every symbol and its text, to be edited and saved"));
}

void AddViewVerb(Verb app, Context&) {
    AddMissingVerb(app, "view", N_("The map in a window"));
}

void AddTransformVerb(Verb coord, Context&) {
    AddMissingVerb(coord, "transform", N_("From one system to another"));
}

void AddMeasureLayerVerb(Verb measure, Context&) {
    AddMissingVerb(measure, "layer", N_("Lengths and areas of all features of a layer"));
}

DrawResult RunDrawJob(const DrawJob&, Context&) {
    throw Failure(
        kFailed,
        Phrase(
            "map data cannot be drawn: this program is built without GDAL and PROJ. Draw it on another machine to "
            "a recording (-o FILE.rec) and make pictures of that with zenro replay, or call demo with --data-only."));
}

}  // namespace zm::tool
