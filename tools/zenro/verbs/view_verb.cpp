// zenro view: the map in a window, which a process of this program keeps and draws.
#include <memory>

#include "tools/kit/translation.h"
#include "tools/zenro/map/draw_job.h"
#include "tools/zenro/verbs/data_options.h"
#include "tools/zenro/verbs/window.h"
#include "tools/zenro/view/keeper.h"

namespace zm::tool {
namespace {

struct ViewJob {
    DrawJob job;
    std::string picture, log;
    int worker = -1;  // the shared memory of the window that this process works for
};

}  // namespace

void AddViewVerb(Verb app, Context& context) {
    const Verb verb = app.AddVerb("view", "Show map data in a window, drawn by rules as the sheet will be");
    const auto view = std::make_shared<ViewJob>();
    DrawJob& job = view->job;
    verb.AddOption("IN", job.source.inputs, "Map data: anything GDAL/OGR reads; FILE:LAYER is one layer").Required();
    verb.AddOption("--rules", job.rules, "Rules file, or the name of one of the default data (osm, demo)");
    verb.AddOption("--scale", job.scale, "Denominator of the scale that symbols are drawn for")
        .Within(10.0, 1e8)
        .Default("by the data");
    verb.AddOption("--sheet", job.sheet, "What is shown first: x1,y1,x2,y2 in the plane").Listed(4);
    verb.AddOption("--number", job.texts.number, "What is shown first: the sheet of a standard number");
    verb.AddOption("--division", job.division, "Rectangular sheets of a corner number: 50x50, 40x50 or 40x40 cm")
        .OneOf({"50x50", "40x50", "40x40"});
    verb.AddOption("--rotate", job.rotation, "Turn the map, degrees counter-clockwise").Within(-360.0, 360.0);
    verb.AddOption("--margins", job.margins, "Items of the margins of sheets that are exported or printed");
    verb.AddOption("--symbols", job.library.symbols, "Symbol library").Default("symbol.dat");
    verb.AddOption("--notes", job.library.notes, "Note classes").Default("Orvnote.cod");
    verb.AddOption("--project", job.library.project, "Project file with the layers");
    verb.AddOption("--encoding", job.source.encoding,
                   "Encoding of attributes where the data names it wrongly or not at all: GBK, GB18030, UTF-8 ...");
    AddSelectionOptions(verb, job.source.selection);
    AddPlaneOptions(verb, job.source.plane);
    verb.AddOption("--picture", view->picture, "Write what the window shows once it is whole, a PNG file, and end");
    verb.AddOption("--log", view->log, "Write a line for each thing that happens in the window").Hidden();
    verb.AddOption("--worker", view->worker, "").Hidden();
    verb.OnRun([view, verb, &context] {
        for (const std::string& input : view->job.source.inputs)
            if (input == "-")
                throw Failure(kUsage, Phrase("view cannot read standard input; write the data to a file first."));
        if (view->worker >= 0) return KeepMap(view->job, view->worker, context);
        ShowInWindow(&ZenroQtBridge::showMap, view->job.source.inputs, verb.GivenOptions({"picture", "log", "worker"}),
                     view->picture, view->log, context);
    });
}

}  // namespace zm::tool
