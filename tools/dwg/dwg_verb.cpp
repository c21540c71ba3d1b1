// zenro dwg: what stands in a drawing file, each record as a line, the proof that it is sound, and a picture of it.
#include <cstdio>
#include <memory>

#include "dwg/reader/check.h"
#include "dwg/reader/dump.h"
#include "runtime/numbers.h"
#include "tools/zenro/text.h"
#include "tools/zenro/tool_host.h"
#include "tools/zenro/verbs.h"

namespace zm::tool {
namespace {

namespace reader = dwg::reader;

struct DwgOptions {
    std::string file;
    bool remarks = false;
};

reader::Drawing Open(const std::string& file) {
    std::vector<std::uint8_t> bytes;
    const std::string path = LibraryPath(file);
    if (path.empty() || !reader::ReadWholeFile(path.c_str(), bytes))
        throw Failure(kNoInput, file + ": cannot be read; give the path of a drawing file.");
    reader::Drawing drawing(std::move(bytes));
    return drawing;
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
}

}  // namespace zm::tool
