// zenro dwg: what stands in a drawing file, each record as a line, the proof that it is sound, and a picture of it.
#include <algorithm>
#include <cstdio>
#include <memory>

#include "dwg/reader/check.h"
#include "dwg/reader/dump.h"
#include "runtime/gbk.h"
#include "runtime/numbers.h"
#include "tools/dwg/paint.h"
#include "tools/zenro/sinks.h"
#include "tools/zenro/text.h"
#include "tools/zenro/tool_host.h"
#include "tools/zenro/verbs.h"

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

reader::Drawing Open(const std::string& file) {
    constexpr std::size_t kLargest = std::size_t{4} << 30;  // the offsets of the format have 32 bits
    const std::string bytes = ReadWholeFile(file, kLargest);
    return reader::Drawing(std::vector<std::uint8_t>(bytes.begin(), bytes.end()));
}

reader::Drawing OpenKnown(const std::string& file) {
    reader::Drawing drawing = Open(file);
    if (!drawing.Known())
        throw Failure(kNoInput,
                      file + ": no drawing of version 1006 or 1009; nothing can be read. Try: zenro dwg check " + file);
    return drawing;
}

void Info(const DwgOptions& options, Context& context) {
    const reader::Drawing drawing = OpenKnown(options.file);
    std::fputs(reader::Info(drawing, context.json).c_str(), stdout);
}

void PrintRecord(const reader::Drawing& drawing, const reader::Record& record, const Context& context,
                 const char* indent) {
    CheckStop();
    std::printf("%s%s\n", context.json ? "" : indent, reader::Line(drawing, record, context.json).c_str());
}

void Dump(const DwgOptions& options, Context& context) {
    const reader::Drawing drawing = OpenKnown(options.file);
    drawing.ForEachEntity(
        [&](const reader::Record& record) { return PrintRecord(drawing, record, context, ""), true; });
    for (std::size_t i = 0; i < drawing.blocks.size(); ++i)
        drawing.ForEachInBlock(
            i, [&](const reader::Record& record) { return PrintRecord(drawing, record, context, "  "), true; });
}

std::string Finding(const reader::Finding& finding, bool problem, bool json) {
    const auto offset = static_cast<unsigned long long>(finding.offset);
    if (!json) return numbers::Text("%s at %llu: %s", problem ? "problem" : "remark", offset, finding.text.c_str());
    std::string text;
    for (const char c : finding.text) {
        if (c == '"' || c == '\\') text += '\\';
        text += static_cast<unsigned char>(c) < 0x20 ? ' ' : c;
    }
    return numbers::Text("{\"kind\":\"%s\",\"offset\":%llu,\"text\":\"%s\"}", problem ? "problem" : "remark", offset,
                         text.c_str());
}

void CheckFile(const DwgOptions& options, Context& context) {
    const reader::Drawing drawing = Open(options.file);
    const reader::Report report = reader::Check(drawing);
    for (const reader::Finding& problem : report.problems)
        std::printf("%s\n", Finding(problem, true, context.json).c_str());
    if (options.remarks || context.verbose)
        for (const reader::Finding& remark : report.remarks)
            std::printf("%s\n", Finding(remark, false, context.json).c_str());
    const std::size_t problems = report.problems.size() + report.unlisted;
    if (!context.json)
        std::printf("%s: %llu entities, %zu problems, %zu remarks\n", options.file.c_str(),
                    static_cast<unsigned long long>(report.entities), problems, report.remarks.size());
    if (problems > 0) context.status = kFailed;
}

// The drawing's extents as a sheet, a little wider so that nothing lies on its edge.
Page PageOf(const DwgOptions& options, const reader::Drawing& drawing) {
    reader::Point low;
    reader::Point high;
    if (!reader::Extents(drawing, low, high))
        throw Failure(kFailed, options.file + ": nothing drawn: it holds no entity with a place.");
    constexpr double kMargin = 0.02;
    const double margin = kMargin * std::max({high.x - low.x, high.y - low.y, 1.0});
    Page page;
    page.margins = {0.0, 0.0, 0.0, 0.0};
    page.frame = false;
    page.sheet = {low.x - margin, low.y - margin, high.x + margin, high.y + margin};
    page.scale = options.scale > 0.0 ? options.scale : ScaleFor(page.sheet);
    return page;
}

void Draw(const DwgOptions& options, Context& context) {
    const Format format = FormatOf(options.output);
    if (format == Format::dwg || format == Format::recording)
        throw Failure(kUsage, options.output + ": a picture of a drawing is SVG, PNG or PDF.");
    const reader::Drawing drawing = OpenKnown(options.file);
    const Page page = PageOf(options, drawing);
    setgscale(page.scale);
    const std::unique_ptr<Sink> sink = OpenSink(options.output, options.sink, page, context.report);
    // Strokes of a fifth of a millimetre; dashes from half a millimetre on.
    const int width = std::max(1, static_cast<int>(TqDC->GetPixelsByRealen(page.Ground(0.2))));
    const std::string face = gbk::FromUtf8(options.face);
    const Painted painted = Paint(drawing, *TqDC, width, TqDC->GetPixelsByRealen(page.Ground(0.5)), face.c_str());
    if (painted.unknown > 0)
        context.report.Skip("records that are not drawn",
                            numbers::Text("%s: %ld records are of kinds that are not drawn; see zenro dwg dump.",
                                          options.file.c_str(), painted.unknown));
    sink->Finish();
    std::printf("%s\n", options.output.c_str());
    context.status = context.report.status();
}

}  // namespace

void AddDwgVerb(CLI::App& app, Context& context) {
    CLI::App* dwg = app.add_subcommand("dwg", "Looks into drawing files of version 1006 and 1009");
    dwg->require_subcommand(1);
    auto options = std::make_shared<DwgOptions>();
    const auto add = [&](const char* name, const char* help, void (*run)(const DwgOptions&, Context&)) {
        CLI::App* verb = dwg->add_subcommand(name, help);
        verb->add_option("FILE", options->file, "The drawing file")->required();
        AddCommonOptions(*verb, context);
        verb->callback([options, run, &context] { run(*options, context); });
        return verb;
    };
    add("info", "Version, counts, tables and extents", Info);
    add("dump", "Each record as a line, the blocks' indented", Dump);
    add("check", "Proves every offset, length, index, count and link; exit status 1 where there are problems",
        CheckFile)
        ->add_flag("--remarks", options->remarks, "Also tells what a reader may stumble over in a sound drawing");
    CLI::App* draw = add("draw", "A picture of the drawing", Draw);
    draw->add_option("OUT", options->output, "SVG, PNG or PDF by its extension")->required();
    draw->add_option("--scale", options->scale, "Denominator of the picture's scale")->check(CLI::Range(1.0, 1e9));
    draw->add_option("--dpi", options->sink.dpi, "Pixels an inch")->check(CLI::Range(10.0, 2540.0));
    draw->add_option("--face", options->face, "Face of all text")->capture_default_str();
    draw->add_flag("--overwrite", options->sink.overwrite, "Replace an output that exists");
}

}  // namespace zm::tool
