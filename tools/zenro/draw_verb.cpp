// zenro draw: geographic features by rules to map sheets.
#include <cstdio>
#include <filesystem>
#include <memory>

#include <nlohmann/json.hpp>

#include "tools/zenro/draw_job.h"

namespace fs = std::filesystem;

namespace zm::tool {
namespace {

nlohmann::ordered_json AsJson(const DrawResult& result, const Report& report) {
    nlohmann::ordered_json j;
    j["outputs"] = nlohmann::ordered_json::array();
    for (const std::string& file : result.files) {
        std::error_code error;
        j["outputs"].push_back({{"path", file}, {"bytes", fs::file_size(file, error)}});
    }
    j["scale"] = result.scale;
    j["sheet"] = {result.sheet.x1, result.sheet.y1, result.sheet.x2, result.sheet.y2};
    j["plane"] = result.plane;
    j["shapes"] = result.shapes;
    j["labels"] = result.labels;
    j["labels_without_room"] = result.labelsWithoutRoom;
    j["skipped"] = report.skipped();
    j["reports"] = report.kinds();
    return j;
}

void PrintResult(const DrawResult& result, const Context& context) {
    if (context.json) {
        std::printf(
            "%s\n",
            AsJson(result, context.report).dump(2, ' ', false, nlohmann::json::error_handler_t::replace).c_str());
        return;
    }
    for (const std::string& file : result.files) std::printf("%s\n", file.c_str());
}

void Draw(DrawJob job, Context& context) {
    const DrawResult result = RunDrawJob(job, context);
    PrintResult(result, context);
    context.status = context.report.status();
}

void AddPlaneOptions(CLI::App& verb, PlaneOptions& plane) {
    verb.add_option("--system", plane.system, "Ellipsoid family of the plane: 54, 80, 2000 (84 is the same)")
        ->check(CLI::IsMember({"54", "80", "84", "2000"}))
        ->default_str("by the data");
    verb.add_option("--zone", plane.zoneWidth, "Width of the zones, 3 or 6 degrees")
        ->check(CLI::IsMember({3, 6}))
        ->default_str("3, below 1:10000 6");
    verb.add_option("--meridian", plane.meridian, "Central meridian in degrees, in place of a zone's")
        ->check(CLI::Range(-180.0, 360.0));
    verb.add_option("--easting", plane.easting, "standard: zone number and 500 km; offset: 500 km; natural")
        ->check(CLI::IsMember({"standard", "offset", "natural"}))
        ->capture_default_str();
    verb.add_option("--datum", plane.datum, "Data on another datum: shift it by PROJ (told), or keep its numbers")
        ->check(CLI::IsMember({"shift", "keep"}))
        ->default_str("shift");
    verb.add_option("--source", plane.source, "System of the data, in place of what it says itself (EPSG:4490 ...)");
}

}  // namespace

void AddDrawVerb(CLI::App& app, Context& context) {
    CLI::App& verb = *app.add_subcommand("draw", "Draw map data to SVG, PNG, PDF, DWG or a recording");
    const auto job = std::make_shared<DrawJob>();
    const auto replacement = std::make_shared<std::string>("?");
    verb.add_option("IN", job->source.inputs, "Map data: anything GDAL/OGR reads")->required();
    verb.add_option("-o,--output", job->outputs, "Output; its extension says the form; may be given several times")
        ->required()
        ->allow_extra_args(false)
        ->take_all();
    verb.add_option("--rules", job->rules, "Rules file, or the name of one of the default data (osm, demo)");
    verb.add_option("--scale", job->scale, "Denominator of the map scale")
        ->check(CLI::Range(10.0, 1e8))
        ->default_str("by the data");
    verb.add_option("--sheet", job->sheet, "What the sheet covers: x1,y1,x2,y2 in the plane")
        ->delimiter(',')
        ->expected(4);
    verb.add_option("--clip", job->clip, "Map data whose first area the map is clipped to");
    verb.add_option("--rotate", job->rotation, "Turn the map on its sheet, degrees counter-clockwise")
        ->check(CLI::Range(-360.0, 360.0));
    verb.add_option("--symbols", job->library.symbols, "Symbol library")->default_str("symbol.dat");
    verb.add_option("--notes", job->library.notes, "Note classes")->default_str("Orvnote.cod");
    verb.add_option("--project", job->library.project, "Project file with the layers");
    verb.add_option("--blocks", job->library.blocks, "Lines CODE NAME: DWG blocks in place of symbols");
    verb.add_option("--encoding", job->source.encoding,
                    "Encoding of attributes where the data tells it wrong (CP936 ...)");
    verb.add_option("--replace", *replacement, "Stands for characters that GBK lacks")->default_str("?");
    verb.add_option("--title", job->texts.title, "Title of the sheet")->default_str("the first input's name");
    verb.add_option("--number", job->texts.number, "Number of the sheet")->default_str("its south-west corner");
    verb.add_option("--remark", job->texts.remark, "Remark at the lower right, such as the source of the data");
    verb.add_flag("!--no-frame", job->frame, "The map alone, without frame");
    verb.add_flag("--mono", job->sink.monochrome, "Black on white");
    verb.add_option("--dpi", job->sink.dpi, "Pixels an inch")
        ->check(CLI::Range(10.0, 2540.0))
        ->default_str("254, vectors 508");
    verb.add_flag("--overwrite", job->sink.overwrite, "Replace outputs that exist");
    AddPlaneOptions(verb, job->source.plane);
    AddCommonOptions(verb, context);
    verb.callback([job, replacement, &context] {
        if (replacement->size() != 1 || static_cast<unsigned char>((*replacement)[0]) > 0x7E)
            throw Failure(kUsage, "--replace needs one ASCII character.");
        job->source.replacement = (*replacement)[0];
        Draw(*job, context);
    });
}

}  // namespace zm::tool
