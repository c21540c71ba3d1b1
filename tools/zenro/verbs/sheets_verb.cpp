// zenro sheets: standard map sheets and their numbers, as a filter.
#include <cstdio>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include <nlohmann/json.hpp>

#include "tools/kit/report.h"
#include "tools/kit/text.h"
#include "tools/kit/tool_host.h"
#include "tools/kit/translation.h"
#include "tools/zenro/coord/points_io.h"
#include "zenromath/sheets.h"

namespace zm::tool {
namespace {

using Json = nlohmann::ordered_json;
using sheets::Refusal;

struct SheetOptions {
    std::string file;
    std::vector<std::string> numbers;
    std::vector<double> box, origin, area;
    int scale = 0;
    std::string division;  // empty: sheets of the graticule
    std::string style = "code";
    std::string way = "corner";
    std::string prefix;

    bool plane() const { return !division.empty() || way == "quadrant"; }
    sheets::Style Style() const { return style == "ninth" ? sheets::Style::ninth : sheets::Style::code; }
    sheets::Division Division() const {
        sheets::Division d;
        d.scale = scale;
        if (!division.empty()) sheets::ReadSize(division, d);
        if (origin.size() == 2) {
            d.originX = origin[0];
            d.originY = origin[1];
        }
        return d;
    }
};

std::string Explained(Refusal refusal, const SheetOptions& options) {
    switch (refusal) {
        case Refusal::malformed:
            return options.plane()
                       ? Phrase("has not the form of a corner number at this scale, such as 4845.50-614.75 at 1:500")
                       : Phrase("has not the form of a sheet number, such as J50G015010");
        case Refusal::range:
            return Phrase("has a row, a column or a zone that the scale does not have");
        case Refusal::outside:
            return options.plane() ? Phrase("lies outside of the area")
                                   : Phrase("lies outside of 0 to 60 degrees north, 180 west to 180 east");
        case Refusal::scale:
            return options.plane() ? Phrase("--scale must be 500, 1000, 2000 or 5000")
                                   : Phrase(
                                         "--scale must be 1000000, 500000, 250000, 100000, 50000, 25000, 10000, 5000, "
                                         "2000, 1000 or 500");
        case Refusal::size:
            return Phrase("sheets of 1:5000 are 40x40, of 1:500 to 1:2000 50x50 or 40x50");
        case Refusal::origin:
            return Phrase("--origin must be a whole multiple of the last decimal of a number");
        case Refusal::offGrid:
            return Phrase("is no corner of a sheet of this division");
        case Refusal::box:
            return Phrase("the south edge lies above the north one, or the west edge beyond the east one");
        case Refusal::negative:
            return Phrase("gives a number with a negative coordinate");
        case Refusal::tooMany:
            return Phrase("gives more than {0} sheets, or more rows than letters", sheets::kMostSheets);
        default:
            return Phrase("is refused");
    }
}

// What belongs to the command line, not to a line of the input.
bool IsUsage(Refusal refusal) {
    return refusal == Refusal::scale || refusal == Refusal::size || refusal == Refusal::origin ||
           refusal == Refusal::box || refusal == Refusal::tooMany;
}

void Print(const std::string& line) {
    WriteLine(line);
}

// A refused item: the command line ends the work, a line of the input is left out and reported.
void Refuse(Refusal refusal, const std::string& what, const SheetOptions& options, Context& context) {
    const std::string text = Phrase("{0}: {1}.", what, Explained(refusal, options));
    if (IsUsage(refusal)) throw Failure(kUsage, text);
    context.report.Skip("refused sheets: " + std::string(sheets::NameOf(refusal)), text);
}

Refusal NumberAt(const SheetOptions& o, double first, double second, std::string& number) {
    if (!o.plane()) return sheets::GraticuleNumber(first, second, o.scale, o.Style(), number);
    if (o.way == "quadrant") return sheets::QuadrantNumber(first, second, o.scale, number);
    if (o.way == "corner") return sheets::CornerNumber(o.Division(), first, second, number);
    if (o.area.size() != 4) throw Failure(kUsage, Phrase("--way {0} needs --area south,west,north,east.", o.way));
    const sheets::PlaneBox area{o.area[0], o.area[1], o.area[2], o.area[3]};
    if (o.way == "running") return sheets::RunningNumber(o.Division(), area, first, second, o.prefix, number);
    return sheets::RowColumnNumber(o.Division(), area, first, second, number);
}

void At(const SheetOptions& options, Context& context) {
    PointFormat format;
    format.kind = options.plane() ? PointKind::plane : PointKind::geographic;
    long done = 0;
    ReadPoints(options.file, format, context, [&](const PointLine& p) {
        std::string number;
        const Refusal refusal = NumberAt(options, p.first, p.second, number);
        if (refusal != Refusal::none) return Refuse(refusal, Phrase("line {0}", p.number), options, context);
        ++done;
        if (context.json) {
            Json j = {{"number", number}};
            if (!p.rest.empty()) j["rest"] = p.rest;
            return Print(j.dump(-1, ' ', false, Json::error_handler_t::replace));
        }
        Print(p.rest.empty() ? number : number + " " + p.rest);
    });
    if (done == 0) throw Failure(kFailed, Phrase("no sheet was found."));
}

// Calls work for each number of the command line, or of stdin where it has none.
void ForEachNumber(const SheetOptions& options, const std::function<void(const std::string&)>& work) {
    if (!options.numbers.empty()) {
        for (const std::string& number : options.numbers) work(number);
        return;
    }
    std::string line;
    while (NextLine(stdin, "-", line)) {
        line = Trim(line);
        if (!line.empty() && line[0] != '#') work(line);
    }
}

// The sides with as many decimals as each needs: degrees to 1e-5 seconds, metres to 0.1 mm.
std::string Side(double value, bool plane) {
    std::string text = Fixed(value, plane ? 4 : 10);
    text.erase(text.find_last_not_of('0') + 1);
    if (text.back() == '.') text.pop_back();
    return text;
}

void PrintBox(const std::string& number, int scale, double s, double w, double n, double e, bool plane, bool json) {
    if (json)
        return Print(
            Json{{"number", number}, {"scale", scale}, {"south", s}, {"west", w}, {"north", n}, {"east", e}}.dump());
    Print(number + " " + std::to_string(scale) + " " + Side(s, plane) + " " + Side(w, plane) + " " + Side(n, plane) +
          " " + Side(e, plane));
}

void Of(const SheetOptions& options, Context& context) {
    if (!context.json) Print("# number scale south west north east");
    ForEachNumber(options, [&](const std::string& number) {
        sheets::GraticuleSheet g;
        sheets::PlaneBox b;
        int scale = options.scale;
        const Refusal refusal = !options.plane()            ? sheets::ReadGraticule(number, g)
                                : options.way == "quadrant" ? sheets::ReadQuadrant(number, scale, b)
                                                            : sheets::ReadCorner(options.Division(), number, b);
        if (refusal != Refusal::none) return Refuse(refusal, "\"" + number + "\"", options, context);
        if (options.plane())
            PrintBox(number, scale, b.south, b.west, b.north, b.east, true, context.json);
        else
            PrintBox(number, g.scale, g.south, g.west, g.north, g.east, false, context.json);
    });
}

void Around(const SheetOptions& options, Context& context) {
    if (!context.json) Print("# number NW N NE W E SW S SE; - where there is none");
    ForEachNumber(options, [&](const std::string& number) {
        sheets::Neighbours around;
        const Refusal refusal = options.plane() ? sheets::CornerNeighbours(options.Division(), number, around)
                                                : sheets::GraticuleNeighbours(number, around);
        if (refusal != Refusal::none) return Refuse(refusal, "\"" + number + "\"", options, context);
        if (context.json) {
            Json list = Json::array();
            for (const std::string& n : around) list.push_back(n.empty() ? Json() : Json(n));
            return Print(Json{{"number", number}, {"neighbours", list}}.dump());
        }
        std::string line = number;
        for (const std::string& n : around) line += " " + (n.empty() ? "-" : n);
        Print(line);
    });
}

void Cover(const SheetOptions& o, Context& context) {
    std::vector<std::string> numbers;
    const Refusal refusal =
        o.plane() ? sheets::CornerCover(o.Division(), {o.box[0], o.box[1], o.box[2], o.box[3]}, numbers)
                  : sheets::GraticuleCover(o.box[0], o.box[1], o.box[2], o.box[3], o.scale, o.Style(), numbers);
    if (refusal != Refusal::none) throw Failure(kUsage, Phrase("the box: {0}.", Explained(refusal, o)));
    if (context.json) return Print(Json{{"numbers", numbers}}.dump());
    for (const std::string& number : numbers) Print(number);
}

void AddPlaneOptions(Verb verb, SheetOptions& options) {
    verb.AddOption("--division", options.division,
                   "Rectangular sheets of this size, centimetres north-south by east-west")
        .OneOf({"50x50", "40x50", "40x40"})
        .Default("sheets of the graticule");
    verb.AddOption("--origin", options.origin, "Where rectangular sheets are counted from: north,east in metres")
        .Listed(2)
        .Default("0,0");
}

void AddStyle(Verb verb, SheetOptions& options) {
    verb.AddOption("--style", options.style, "1:2000 sheets: code (J50I090055) or ninth (J50H030019-7)")
        .OneOf({"code", "ninth"})
        .ShowDefault();
}

Verb AddPart(Verb sheets, const char* name, const char* what, Context& context,
             const std::shared_ptr<SheetOptions>& options, void (*work)(const SheetOptions&, Context&)) {
    const Verb part = sheets.AddVerb(name, what);
    AddCommonOptions(part, context);
    AddPlaneOptions(part, *options);
    part.OnRun([options, work, &context] {
        work(*options, context);
        context.status = context.report.status();
    });
    return part;
}

}  // namespace

void AddSheetsVerb(Verb app, Context& context) {
    const Verb sheets = app.AddVerb("sheets", "Standard map sheets: numbers, boxes, neighbours, covers");
    sheets.NeedsVerb();
    const auto options = std::make_shared<SheetOptions>();

    const Verb at = AddPart(sheets, "at", "Number of the sheet that holds each point", context, options, At);
    at.AddOption("FILE", options->file,
                 "Points, one a line: lat lon, or north east with --division; - or nothing is stdin");
    at.AddOption("--scale", options->scale, "Denominator").Required();
    at.AddOption("--way", options->way, "Rectangular sheets: number by corner, running, rowcol, or quadrant of 1:5000")
        .OneOf({"corner", "running", "rowcol", "quadrant"})
        .ShowDefault();
    at.AddOption("--area", options->area, "For running and rowcol: south,west,north,east of the survey area").Listed(4);
    at.AddOption("--prefix", options->prefix, "For running: code of the survey area");
    AddStyle(at, *options);

    const Verb of = AddPart(sheets, "of", "Scale and box of each number", context, options, Of);
    of.AddOption("NUMBER", options->numbers, "Numbers; none: one a line from stdin");
    of.AddOption("--scale", options->scale, "Denominator, with --division");
    of.AddOption("--way", options->way, "Rectangular sheets: corner or quadrant")
        .OneOf({"corner", "quadrant"})
        .ShowDefault();

    const Verb cover =
        AddPart(sheets, "cover", "Numbers of the sheets that share ground with a box", context, options, Cover);
    cover.AddOption("BOX", options->box, "south west north east: degrees, or metres with --division")
        .Count(4)
        .Required();
    cover.AddOption("--scale", options->scale, "Denominator").Required();
    AddStyle(cover, *options);

    const Verb around = AddPart(sheets, "neighbours", "The eight numbers around each sheet", context, options, Around);
    around.AddOption("NUMBER", options->numbers, "Numbers; none: one a line from stdin");
    around.AddOption("--scale", options->scale, "Denominator, with --division");
}

}  // namespace zm::tool
