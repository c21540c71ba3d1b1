// zenro coord transform: positions from one system to another, of point files and of whole data sets.
#include <cmath>
#include <cstdio>
#include <map>
#include <memory>

#include <nlohmann/json.hpp>

#include "runtime/text/numbers.h"
#include "tools/kit/report.h"
#include "tools/kit/shown_text.h"
#include "tools/kit/text.h"
#include "tools/kit/translation.h"
#include "tools/zenro/coord/transform_dataset.h"

namespace zm::tool {
namespace {

struct TransformOptions {
    std::string file;
    Transformation way;
    std::string fromForm = "plane", toForm = "plane";
    AngleForm angles = AngleForm::decimal;
    int decimals = -1;
    std::string columns, encoding, common, estimate, rotation, heights = "keep";
    std::vector<double> seven, four;
    std::string output;
    bool overwrite = false, fromGiven = false, toGiven = false;
};

PointKind KindNamed(const std::string& form) {
    return form == "geo" ? PointKind::geographic : PointKind::plane;
}

// The two conventions differ in the signs of the rotations, and nobody can see from the numbers which one is meant.
SevenParameters SevenOf(const TransformOptions& options) {
    SevenParameters p;
    const std::vector<double>& v = options.seven;
    p.shift = {v[0], v[1], v[2]};
    p.rotation = {v[3], v[4], v[5]};
    p.ppm = v[6];
    const bool turns = v[3] != 0.0 || v[4] != 0.0 || v[5] != 0.0;
    if (turns && options.rotation.empty())
        throw Failure(kUsage, Phrase("--seven: say which way its rotations go: --rotation position-vector, or "
                                     "--rotation coordinate-frame (the signs of rx, ry, rz turned)."));
    if (options.rotation == "coordinate-frame")
        for (double& r : p.rotation) r = -r;
    return p;
}

// The parameters, given or estimated. Lines about an estimate go to stdout as comments.
std::vector<std::string> TakeParameters(const TransformOptions& options, Transformation& way) {
    if (!options.seven.empty()) way.seven = SevenOf(options);
    if (!options.four.empty()) way.four = {options.four[0], options.four[1], options.four[2], options.four[3]};
    if (options.common.empty()) return {};
    if (way.seven || way.four)
        throw Failure(kUsage, Phrase("--common estimates the parameters; do not give them as well."));
    if (options.estimate.empty())
        throw Failure(kUsage, Phrase("--common: say what to estimate: --estimate seven or --estimate four."));
    return EstimateFrom(ReadCommonPoints(options.common, way, options.angles), options.estimate == "seven", way);
}

std::string Shown(const Side& side, double value, const TransformOptions& options) {
    return side.kind == PointKind::geographic ? AngleAs(value, options.angles, options.decimals)
                                              : Fixed(value, options.decimals >= 0 ? options.decimals : 4);
}

void PrintPoint(const TransformOptions& options, const Transformation& way, const PointLine& p, double first,
                double second, double height, const Context& context) {
    const std::string one = Shown(way.to, first, options), two = Shown(way.to, second, options);
    const std::string h = std::isfinite(height) ? numbers::Text("%.15g", height) : std::string();
    if (context.json) {
        nlohmann::ordered_json j;
        if (!p.name.empty()) j["no"] = p.name;
        if (!p.code.empty()) j["code"] = p.code;
        const bool plane = way.to.kind == PointKind::plane;
        j[plane ? "north_m" : "lat"] = one;
        j[plane ? "east_m" : "lon"] = two;
        if (!h.empty()) j["height_m"] = height;
        if (!p.rest.empty()) j["rest"] = p.rest;
        WriteLine(j.dump(-1, ' ', false, nlohmann::json::error_handler_t::replace));
        return;
    }
    std::string line;
    for (const std::string& part : {p.name, p.code, one, two, h, p.rest})
        if (!part.empty()) line += (line.empty() ? "" : " ") + part;
    WriteLine(line);
}

void TransformPoints(const TransformOptions& options, const Transformation& way, Context& context) {
    PointFormat format{way.from.kind, true, options.angles, {}, options.encoding};
    if (!options.columns.empty()) format.columns = ColumnsOf(options.columns);
    long done = 0;
    const auto bad = [&](const PointLine& p, const std::string& wrong) {
        if (context.json)
            WriteLine(nlohmann::ordered_json{{"line", p.number}, {"error", wrong}}.dump(
                -1, ' ', false, nlohmann::json::error_handler_t::replace));
        else
            std::printf("error line %ld: %s\n", p.number, ForTerminal(Printable(wrong)).c_str());
    };
    ReadPoints(
        options.file, format, context,
        [&](const PointLine& p) {
            double first = p.first, second = p.second, height = p.height;
            const std::string wrong = way.Apply(first, second, height);
            if (!wrong.empty()) {
                context.report.Skip(N_("points without a place"), Phrase("line {0}: {1}.", p.number, wrong));
                return bad(p, wrong);
            }
            ++done;
            PrintPoint(options, way, p, first, second, height, context);
        },
        bad);
    if (done == 0) throw Failure(kFailed, Phrase("no point was transformed."));
}

void Transform(TransformOptions options, Context& context) {
    Transformation way = options.way;
    way.from.kind = KindNamed(options.fromForm);
    way.to.kind = KindNamed(options.toForm);
    way.ellipsoidalHeights = options.heights == "ellipsoidal";
    if (!options.columns.empty()) way.from.kind = KindOf(ColumnsOf(options.columns));
    const std::vector<std::string> lines = TakeParameters(options, way);
    if (!context.json)
        for (const std::string& line : lines) WriteLine(line);
    if (!options.output.empty()) {
        const long written = TransformDataset(
            {options.file, options.output, options.overwrite, options.encoding, options.fromGiven, options.toGiven},
            way, context.report);
        PrintText(Phrase("{0}: {1} features", options.output, written));
    } else {
        way.Check();
        TransformPoints(options, way, context);
    }
    context.status = context.report.status();
}

}  // namespace

void AddTransformVerb(Verb coord, Context& context) {
    const Verb verb = coord.AddVerb("transform", "Zone to zone, width to width, and with parameters datum to datum");
    const auto options = std::make_shared<TransformOptions>();
    verb.AddOption("FILE", options->file, "Points, one a line (- is stdin), or with --output a data set");
    verb.AddOption("-o,--output", options->output,
                   "A whole data set, written here; its extension says the format, -.geojson is stdout");
    verb.AddFlag("--overwrite", options->overwrite, "Replace an output that exists");
    AddPlaneSystemOptions(verb, options->way.from.plane, "from-");
    AddPlaneSystemOptions(verb, options->way.to.plane, "to-");
    verb.AddOption("--from-form", options->fromForm, "What the points are").OneOf({"plane", "geo"}).ShowDefault();
    verb.AddOption("--to-form", options->toForm, "What they become").OneOf({"plane", "geo"}).ShowDefault();
    verb.AddOption("--seven", options->seven, "dx,dy,dz,rx,ry,rz,ppm: metres, arc seconds, parts in a million")
        .Listed(7);
    verb.AddOption("--rotation", options->rotation, "Which way the rotations of --seven go")
        .OneOf({"position-vector", "coordinate-frame"});
    verb.AddOption("--four", options->four, "dnorth,deast,rotation,ppm: metres, arc seconds, parts in a million")
        .Listed(4);
    verb.AddOption("--common", options->common, "Common points: no, position, position; with heights seven columns");
    verb.AddOption("--estimate", options->estimate, "What is estimated from them").OneOf({"seven", "four"});
    verb.AddOption("--heights", options->heights, "Heights stay, or change with the datum as ellipsoidal ones do")
        .OneOf({"keep", "ellipsoidal"})
        .ShowDefault();
    verb.AddOption("--columns", options->columns, "What the columns hold: no, code, n, e, h, lat, lon, or -")
        .Default("two numbers first");
    verb.AddOption("--encoding", options->encoding, "Encoding of texts").Default("UTF-8");
    verb.AddOption("--decimals", options->decimals, "Decimals of the results").Within(0, 15);
    AddAngleOption(verb, options->angles);
    AddCommonOptions(verb, context);
    verb.OnRun([options, verb, &context] {
        options->fromGiven = verb.Has("--from") || verb.Has("--from-zone") || verb.Has("--from-meridian");
        options->toGiven = verb.Has("--to");
        if (!options->toGiven) options->way.to.plane.family = options->way.from.plane.family;
        Transform(*options, context);
    });
}

}  // namespace zm::tool
