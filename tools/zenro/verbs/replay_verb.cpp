// zenro replay: draws a recording to any output.
#include <algorithm>
#include <cstdio>
#include <memory>

#include "draw/device.h"
#include "runtime/text/numbers.h"
#include "tools/kit/report.h"
#include "tools/kit/standard_streams.h"
#include "tools/kit/text.h"
#include "tools/kit/translation.h"
#include "tools/zenro/map/library_session.h"
#include "tools/zenro/map/recording_player.h"
#include "tools/zenro/map/sinks.h"
#include "tools/zenro/verbs/verbs.h"

namespace zm::tool {
namespace {

struct ReplayOptions {
    std::string input;
    std::vector<std::string> outputs;
    double scale = 0.0;
    LibraryOptions library;
    SinkOptions sink;
};

Page PageOf(const ReplayOptions& options, const RecordingExtent& extent, Report& report) {
    Page page;
    page.margins = {0.0, 0.0, 0.0, 0.0};
    page.frame = false;
    page.scale = options.scale > 0.0 ? options.scale : extent.head.scale.value_or(0.0);
    if (page.scale <= 0.0) {
        page.scale = 1000.0;
        report.Note(Phrase("{0}: says no scale; 1:1000 is taken, --scale sets another.", options.input));
    }
    if (extent.head.sheet) {
        page.sheet = *extent.head.sheet;
        if (extent.head.margins) {
            const auto& m = *extent.head.margins;
            page.margins = {m[0], m[1], m[2], m[3]};
        }
    } else {
        if (extent.drawn.empty())
            throw Failure(kEmpty, Phrase("{0}: nothing drawn: no command has a place.", options.input));
        page.sheet = SheetAround(extent.drawn, page.scale);
    }
    constexpr double kLeast = 1.0, kLargest = 100000.0;  // millimetres
    const double least = std::min(page.paperWidth(), page.paperHeight()),
                 largest = std::max(page.paperWidth(), page.paperHeight());
    if (!(least >= kLeast) || !(largest <= kLargest))
        throw Failure(kFailed, Phrase("{0}: would be {1} by {2} mm of paper at 1:{3}; give another --scale.",
                                      options.input, numbers::Text("%.3g", page.paperWidth()),
                                      numbers::Text("%.3g", page.paperHeight()), Fixed(page.scale, 0)));
    return page;
}

void Replay(const ReplayOptions& options, Context& context) {
    for (const std::string& output : options.outputs) {
        FormatOf(PathOf(output));
        CheckOutput(PathOf(output), options.sink.overwrite);
    }
    const InputFile recording(PathOf(options.input));
    RecordingExtent extent;
    ForEachLine(recording.path(), options.input, [&](long number, const std::string& line) {
        if (line[0] == '#') return ReadHeadLine(line, extent.head);
        if (const auto c = ParseCommand(line)) return extent.Add(*c);
        context.report.Skip(N_("lines that are no command"),
                            Phrase("{0}:{1}: no command of a recording; the line is left out.", options.input, number));
    });
    if (extent.commands == 0)
        throw Failure(kNoInput,
                      Phrase("{0}: holds no command of a recording; write one with draw -o FILE.rec.", options.input));
    LibrarySession session(options.library, context.host);
    const Page page = PageOf(options, extent, context.report);
    setgscale(page.scale);
    for (const std::string& output : options.outputs) {
        const std::unique_ptr<Sink> sink = OpenSink(PathOf(output), options.sink, page, context.report);
        session.ReloadLayers();
        device::SetBkMode(TqDC->GetHdc(), TRANSPARENT);  // a recording has no ground of its own under its text
        {
            RecordingPlayer player(session.notes());
            ForEachLine(recording.path(), options.input, [&](long, const std::string& line) {
                if (line[0] == '#') return player.Tell(line);
                if (const auto c = ParseCommand(line)) player.Play(*c);
                sink->Flush();
            });
            player.Close();
        }
        sink->Finish();
        WriteLine(output);
    }
    context.status = context.report.status();
}

}  // namespace

void AddReplayVerb(Verb app, Context& context) {
    const Verb verb = app.AddVerb("replay", "Draw a recording to SVG, PNG, PDF or DWG");
    const auto options = std::make_shared<ReplayOptions>();
    verb.AddOption("REC", options->input, "Recording, as draw writes it; - is stdin").Required();
    verb.AddOption("OUT", options->outputs, "Output; its extension says the form; -.svg is stdout").Required();
    verb.AddOption("--scale", options->scale, "Denominator of the map scale, where the recording says none")
        .Within(10.0, 1e8);
    verb.AddOption("--notes", options->library.notes, "Note classes").Default("Orvnote.cod");
    verb.AddOption("--project", options->library.project, "Project file with the layers");
    verb.AddOption("--dpi", options->sink.dpi, "Pixels an inch of images").Within(10.0, 2540.0);
    verb.AddFlag("--mono", options->sink.monochrome, "Black on white");
    verb.AddFlag("--overwrite", options->sink.overwrite, "Replace outputs that exist");
    AddCommonOptions(verb, context);
    verb.OnRun([options, &context] { Replay(*options, context); });
}

}  // namespace zm::tool
