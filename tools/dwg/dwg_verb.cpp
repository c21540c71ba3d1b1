// zenro dwg: what is in a drawing file, each record as a line, the proof that it is sound, and a picture of it.
#include <algorithm>
#include <cstdio>
#include <memory>

#include "dwg/reader/check.h"
#include "dwg/reader/dump.h"
#include "runtime/text/gbk.h"
#include "runtime/text/numbers.h"
#include "tools/dwg/open_drawing.h"
#include "tools/dwg/paint.h"
#include "tools/kit/output_file.h"
#include "tools/kit/report.h"
#include "tools/kit/standard_streams.h"
#include "tools/kit/text.h"
#include "tools/kit/tool_host.h"
#include "tools/kit/translation.h"
#include "tools/zenro/map/dxf_file.h"
#include "tools/zenro/map/sinks.h"
#include "tools/zenro/verbs/verbs.h"

namespace zm::tool {
namespace {

namespace reader = dwg::reader;

struct DwgOptions {
    std::string file;
    bool remarks = false;
    // Of draw.
    std::string output;
    std::string face = "WenQuanYi Zen Hei";
    double scale = 0.0;  // 0: the one at which the drawing fits on a usual sheet
    SinkOptions sink;
};

void Info(const DwgOptions& options, Context& context) {
    const reader::Drawing drawing = OpenKnown(options.file, context);
    WriteLines(reader::Info(drawing, context.json));
}

void PrintRecord(const reader::Drawing& drawing, const reader::Record& record, const Context& context,
                 const reader::Place& place) {
    CheckStop();
    const char* indent = context.json || place.section == reader::Section::entities ? "" : "  ";
    WriteLine(indent + reader::Line(drawing, record, context.json, context.json || *indent != 0 ? &place : nullptr));
}

void Dump(const DwgOptions& options, Context& context) {
    const reader::Drawing drawing = OpenKnown(options.file, context);
    reader::Place place;
    const auto print = [&](const reader::Record& record) {
        PrintRecord(drawing, record, context, place);
        return true;
    };
    drawing.ForEachEntity(print);
    place.section = reader::Section::blocks;
    for (std::size_t i = 0; i < drawing.blocks.size(); ++i) {
        place.block = &drawing.blocks[i];
        drawing.ForEachInBlock(i, print);
    }
    place = {reader::Section::extras, nullptr};
    drawing.ForEachExtra(print);
}

std::string Finding(const reader::Finding& finding, bool problem, bool json) {
    const auto offset = static_cast<unsigned long long>(finding.offset);
    if (!json)
        return Phrase(problem ? N_("problem at {0}: {1}") : N_("remark at {0}: {1}"), finding.offset, finding.text);
    std::string text;
    for (const char c : finding.text) {
        if (c == '"' || c == '\\') text += '\\';
        text += static_cast<unsigned char>(c) < 0x20 ? ' ' : c;
    }
    return numbers::Text("{\"kind\":\"%s\",\"offset\":%llu,\"text\":\"%s\"}", problem ? "problem" : "remark", offset,
                         text.c_str());
}

void CheckFile(const DwgOptions& options, Context& context) {
    const reader::Drawing drawing = ReadDrawingFile(InputFile(PathOf(options.file)).path());
    const reader::Report report = reader::Check(drawing, context.json ? nullptr : Translated);
    for (const reader::Finding& problem : report.problems) PrintText(Finding(problem, true, context.json));
    if (options.remarks || context.verbose)
        for (const reader::Finding& remark : report.remarks) PrintText(Finding(remark, false, context.json));
    const std::size_t problems = report.problems.size() + report.unlisted;
    if (!context.json)
        PrintText(Phrase("{0}: {1} entities, {2} problems, {3} remarks", options.file, report.entities, problems,
                         report.remarks.size()));
    if (problems > 0) context.status = kFailed;
}

// The drawing's extents as a sheet, a little wider so that nothing lies on its edge. A picture of what is very small
// beside its scale still has the size of a stamp.
Page PageOf(const DwgOptions& options, const reader::Drawing& drawing) {
    reader::Point low;
    reader::Point high;
    if (!reader::Extents(drawing, low, high))
        throw Failure(kEmpty, Phrase("{0}: nothing drawn: it holds no entity with a place.", options.file));
    constexpr double kMargin = 0.02, kSheet = 0.4, kStamp = 0.02;  // of the longer side; metres of paper
    const double side = std::max(high.x - low.x, high.y - low.y);
    Page page;
    page.margins = {0.0, 0.0, 0.0, 0.0};
    page.frame = false;
    page.scale = options.scale > 0.0 ? options.scale : side > 0.0 ? side / kSheet : 1.0;
    const double margin = std::max(kMargin * side, std::max(0.0, kStamp * page.scale - side) / 2.0);
    page.sheet = {low.x - margin, low.y - margin, high.x + margin, high.y + margin};
    if (side / page.scale > 3.0)
        throw Failure(kUsage, Phrase("{0}: at 1:{1} the picture would be {2} m of paper; give a larger --scale.",
                                     options.file, Fixed(page.scale, 0), Fixed(side / page.scale, 1)));
    return page;
}

void Draw(const DwgOptions& options, Context& context) {
    const Format format = FormatOf(PathOf(options.output));
    if (format != Format::svg && format != Format::png && format != Format::pdf)
        throw Failure(kUsage, Phrase("{0}: a picture of a drawing is SVG, PNG or PDF.", options.output));
    const reader::Drawing drawing = OpenKnown(options.file, context);
    const Page page = PageOf(options, drawing);
    setgscale(page.scale);
    const std::unique_ptr<Sink> sink = OpenSink(PathOf(options.output), options.sink, page, context.report);
    // Strokes of a fifth of a millimetre; dashes from half a millimetre on.
    const int width = std::max(1, static_cast<int>(TqDC->GetPixelsByRealen(page.Ground(0.2))));
    const std::string face = gbk::FromUtf8(options.face);
    const reader::PictureCount count =
        Paint(drawing, *TqDC, width, TqDC->GetPixelsByRealen(page.Ground(0.5)), face.c_str());
    if (count.unknown > 0)
        context.report.Skip(N_("records that are not drawn"),
                            Phrase("{0}: {1} records are of kinds that are not drawn; see zenro dwg dump.",
                                   options.file, count.unknown));
    if (count.shapes > 0)
        context.report.Note(Phrase("{0}: {1} shapes are drawn as squares; their strokes are in a file of their own.",
                                   options.file, count.shapes));
    if (count.paper > 0)
        context.report.Note(Phrase("{0}: {1} records of paper space are left out.", options.file, count.paper));
    if (count.cut)
        context.report.Limit(
            N_("inserts without end"),
            Phrase("{0}: its blocks contain each other so often that the rest is left out.", options.file));
    sink->Finish();
    WriteLine(options.output);
    context.status = context.report.status();
}

void ToDxf(const DwgOptions& options, Context& context) {
    if (options.output != "-" && FormatOf(PathOf(options.output)) != Format::dxf)
        throw Failure(kUsage, Phrase("{0}: the output's name has to end in .dxf.", options.output));
    const reader::Drawing drawing = OpenKnown(options.file, context);
    OutputFile file(PathOf(options.output), options.sink.overwrite);
    const dwg::dxf::Count count = WriteDxfFile(drawing, file.path(), file.target(), options.sink.utf8);
    if (count.leftOut > 0)
        context.report.Skip(
            N_("records that DXF does not take"),
            Phrase("{0}: {1} records are damaged, out of place or of kinds that DXF R12 lacks; see zenro dwg check.",
                   options.file, count.leftOut));
    file.Commit();
    WriteLine(options.output);
    context.status = context.report.status();
}

}  // namespace

void AddDwgVerb(Verb app, Context& context) {
    const Verb dwg = app.AddVerb("dwg", "Looks into drawing files of version 1006 and 1009");
    dwg.NeedsVerb();
    auto options = std::make_shared<DwgOptions>();
    const auto add = [&](const char* name, const char* help, void (*run)(const DwgOptions&, Context&)) {
        const Verb verb = dwg.AddVerb(name, help);
        verb.AddOption("FILE", options->file, "The drawing file; - is stdin").Required();
        AddCommonOptions(verb, context);
        verb.OnRun([options, run, &context] { run(*options, context); });
        return verb;
    };
    add("info", N_("Version, counts, tables and extents"), Info);
    add("dump", N_("Each record as a line, the blocks' indented"), Dump);
    add("check", N_("Proves every offset, length, index, count and link; exit status 1 where there are problems"),
        CheckFile)
        .AddFlag("--remarks", options->remarks, "Also reports what a program may not take of a sound drawing");
    const Verb dxf = add("to-dxf", N_("The drawing as DXF, R12 in ASCII"), ToDxf);
    dxf.AddOption("OUT", options->output, "The DXF file; - is stdout").Required();
    dxf.AddFlag("--utf8", options->sink.utf8, "Texts in UTF-8, for programs that want it; else GBK");
    dxf.AddFlag("--overwrite", options->sink.overwrite, "Replace an output that exists");
    const Verb draw = add("draw", N_("A picture of the drawing"), Draw);
    draw.AddOption("OUT", options->output, "SVG, PNG or PDF by its extension; -.svg is stdout").Required();
    draw.AddOption("--scale", options->scale, "Denominator of the picture's scale").Within(1.0, 1e9);
    draw.AddOption("--dpi", options->sink.dpi, "Pixels an inch").Within(10.0, 2540.0);
    draw.AddOption("--face", options->face, "Face of all text").ShowDefault();
    draw.AddFlag("--overwrite", options->sink.overwrite, "Replace an output that exists");
}

}  // namespace zm::tool
