// zenro draw: geographic features by rules to map sheets.
#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <filesystem>
#include <memory>

#include <nlohmann/json.hpp>

#include "tools/kit/report.h"
#include "tools/kit/text.h"
#include "tools/kit/translation.h"
#include "tools/zenro/map/draw_job.h"
#include "tools/zenro/verbs/data_options.h"

namespace fs = std::filesystem;

namespace zm::tool {
namespace {

nlohmann::ordered_json AsJson(const DrawResult& result, double seconds, const Report& report) {
    nlohmann::ordered_json j;
    j["outputs"] = nlohmann::ordered_json::array();
    for (const DrawnFile& file : result.files) {
        std::error_code error;
        j["outputs"].push_back(
            {{"path", file.path}, {"bytes", fs::file_size(PathOf(file.path), error)}, {"sha256", file.sha256}});
    }
    j["number"] = result.number;
    j["empty"] = result.empty;
    j["unchanged"] = result.unchanged;
    j["scale"] = result.scale;
    j["sheet"] = {result.sheet.x1, result.sheet.y1, result.sheet.x2, result.sheet.y2};
    j["plane"] = result.plane;
    j["shapes"] = result.shapes;
    j["labels"] = result.labels;
    j["labels_without_room"] = result.labelsWithoutRoom;
    j["features"] = result.features;
    j["features_read"] = result.taken;
    j["seconds"] = std::round(seconds * 1000.0) / 1000.0;
    j["version"] = ZENRO_VERSION;
    j["input_sha256"] = result.input;
    j["skipped"] = report.skipped();
    j["reports"] = report.kinds();
    return j;
}

void PrintResult(const DrawResult& result, double seconds, const Context& context) {
    if (context.json) {
        const std::string text =
            AsJson(result, seconds, context.report).dump(2, ' ', false, nlohmann::json::error_handler_t::replace);
        if (context.capture != nullptr)
            *context.capture = text;
        else
            WriteLine(text);
        return;
    }
    for (const DrawnFile& file : result.files) WriteLine(file.path);
}

void Draw(DrawJob job, Context& context) {
    const auto start = std::chrono::steady_clock::now();
    job.digests = context.json || !job.knownInput.empty();
    const DrawResult result = RunDrawJob(job, context);
    PrintResult(result, std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count(), context);
    context.status = context.report.status();
}

// Eight names with commas between; an empty one where there is no sheet.
void TakeAdjoining(const std::string& list, FrameTexts& texts) {
    std::size_t cell = 0, from = 0;
    for (std::size_t comma = 0; comma != std::string::npos && cell < texts.neighbours.size(); from = comma + 1) {
        comma = list.find(',', from);
        texts.neighbours[cell++] = Trim(list.substr(from, comma - from));
    }
    if (cell != texts.neighbours.size() || std::count(list.begin(), list.end(), ',') != 7)
        throw Failure(kUsage, Phrase("--adjoining needs eight names with commas between: NW,N,NE,W,E,SW,S,SE."));
    texts.adjoining = true;
}

}  // namespace

void AddDrawVerb(Verb app, Context& context) {
    const Verb verb = app.AddVerb("draw", "Draw map data to SVG, PNG, PDF, DWG, DXF or a recording");
    const auto job = std::make_shared<DrawJob>();
    const auto empty = std::make_shared<std::string>("skip");
    const auto replacement = std::make_shared<std::string>("?");
    const auto adjoining = std::make_shared<std::string>();
    verb.AddOption("IN", job->source.inputs, "Map data: anything GDAL/OGR reads; FILE:LAYER is one layer, - is stdin")
        .Required();
    verb.AddOption("-o,--output", job->outputs,
                   "Output; its extension says the form, -.svg is stdout; may be given several times")
        .Required()
        .Repeatable();
    verb.AddOption("--rules", job->rules, "Rules file, or the name of one of the default data (osm, demo)");
    verb.AddOption("--explain", job->explain, "Print which rules draw the feature of this number, and how");
    verb.AddOption("--scale", job->scale, "Denominator of the map scale").Within(10.0, 1e8).Default("by the data");
    verb.AddOption("--sheet", job->sheet, "What the sheet covers: x1,y1,x2,y2 in the plane").Listed(4);
    verb.AddOption("--clip", job->clip, "Map data whose first area the map is clipped to");
    verb.AddOption("--rotate", job->rotation, "Turn the map on its sheet, degrees counter-clockwise")
        .Within(-360.0, 360.0);
    verb.AddOption("--symbols", job->library.symbols, "Symbol library").Default("symbol.dat");
    verb.AddOption("--notes", job->library.notes, "Note classes").Default("Orvnote.cod");
    verb.AddOption("--project", job->library.project, "Project file with the layers");
    const Option blocks = verb.AddOption("--blocks", job->library.blocks,
                                         "Lines CODE NAME: blocks in place of symbols; NAME.dwg is beside this list");
    const Option asCopied =
        verb.AddFlag("--blocks-as-copied", job->library.blocksAsCopied,
                     "Blocks by the library's own copying, in place of the import that keeps them whole");
    verb.AddOption("--symbols-as", job->library.symbolsAs, "Point symbols in DWG and DXF: strokes, or a block each")
        .OneOf({"strokes", "blocks"})
        .Excludes(blocks)
        .Excludes(asCopied)
        .Default("strokes");
    verb.AddOption("--encoding", job->source.encoding,
                   "Encoding of attributes where the data names it wrongly or not at all: GBK, GB18030, UTF-8 ...");
    AddSelectionOptions(verb, job->source.selection);
    verb.AddOption("--replace", *replacement, "Stands for characters that GBK lacks").Default("?");
    verb.AddOption("--title", job->texts.title, "Title of the sheet").Default("the first input's name");
    verb.AddOption("--number", job->texts.number,
                   "Number of the sheet; a standard number (J50G015010, 10.0-21.0) says what it covers too")
        .Default("its south-west corner");
    verb.AddOption("--division", job->division, "Rectangular sheets of a corner number: 50x50, 40x50 or 40x40 cm")
        .OneOf({"50x50", "40x50", "40x40"})
        .Default("50x50, 1:5000 40x40");
    verb.AddOption("--empty", *empty, "A sheet that meets no data: skip (no file, status 6) or draw its frame")
        .OneOf({"draw", "skip"})
        .ShowDefault();
    verb.AddOption("--unless-input", job->knownInput,
                   "Draw nothing where the hash of the input (input_sha256 of --json) is still this one");
    verb.AddOption("--jobs", job->jobs, "Outputs drawn side by side, each by a process")
        .Within(1, 1024)
        .Default("the processors");
    verb.AddOption("--adjoining", *adjoining,
                   "An index of adjoining sheets by these names: NW,N,NE,W,E,SW,S,SE; nothing where there is none");
    verb.AddOption("--remark", job->texts.remark, "Remark at the lower right, such as the source of the data");
    verb.AddOption("--margins", job->margins, "File with the items of the margins (docs/zenro/margins.md)");
    const Option bare = verb.AddFlag("!--no-frame", job->frame, "The map alone, without frame");
    verb.AddFlag("--legend", job->legend, "A legend of what the sheet uses, right of the frame or below it")
        .Excludes(bare);
    verb.AddFlag("--mono", job->sink.monochrome, "Black on white");
    verb.AddOption("--dpi", job->sink.dpi, "Pixels an inch of images").Within(10.0, 2540.0).Default("300");
    verb.AddFlag("--utf8", job->sink.utf8, "Texts of DXF in UTF-8, for programs that want it; else GBK");
    verb.AddFlag("!--no-thickness", job->sink.thickness, "Fills in DWG and DXF without thickness");
    verb.AddFlag("--overwrite", job->sink.overwrite, "Replace outputs that exist");
    verb.AddOption("--hide-layer", job->hiddenLayers, "A layer that is not drawn, by its name in reports")
        .Repeatable()
        .Hidden();
    verb.AddOption("--hide-rule", job->hiddenRules, "A rule that draws nothing, by its place, from 0")
        .Repeatable()
        .Hidden();
    AddPlaneOptions(verb, job->source.plane);
    AddCommonOptions(verb, context);
    verb.OnRun([job, replacement, adjoining, empty, &context] {
        job->drawEmpty = *empty == "draw";
        if (!adjoining->empty()) TakeAdjoining(*adjoining, job->texts);
        if (replacement->size() != 1 || static_cast<unsigned char>((*replacement)[0]) > 0x7E)
            throw Failure(kUsage, Phrase("--replace needs one ASCII character."));
        job->source.replacement = (*replacement)[0];
        Draw(*job, context);
    });
}

}  // namespace zm::tool
