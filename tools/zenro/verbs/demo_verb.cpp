// zenro demo: the demonstration sheet, data and pictures.
#include <cstdio>
#include <filesystem>
#include <memory>

#include <nlohmann/json.hpp>

#include "tools/kit/qt_module.h"
#include "tools/kit/report.h"
#include "tools/kit/text.h"
#include "tools/kit/translation.h"
#include "tools/zenro/demo/demo_data.h"
#include "tools/zenro/map/draw_job.h"

namespace fs = std::filesystem;

namespace zm::tool {
namespace {

struct DemoOptions {
    std::string folder = "zenro-demo";
    std::uint64_t seed = 20240607;
    bool dataOnly = false;
    bool overwrite = false;
};

DrawJob DemoJob(const fs::path& folder, const std::vector<std::string>& data, const DemoOptions& options,
                Report& report) {
    DrawJob job;
    for (const std::string& name : data) job.source.inputs.push_back((folder / "data" / name).string());
    job.rules = "demo";
    job.scale = 1000.0;
    job.sheet = {kDemoX1, kDemoY1, kDemoX1 + kDemoSize, kDemoY1 + kDemoSize};
    job.texts.title = "清溪镇";
    job.texts.remark = "附注：虚构地图，仅供演示。";
    job.texts.survey = "2024年6月数字化测图。";
    job.texts.heightSystem = "1985国家高程基准";
    job.texts.interval = "1 m";
    job.texts.symbols = "GB/T 20257.1—2017 图式。";
    job.texts.secrecy = "公开";
    job.texts.unit = "清溪镇测绘站";
    job.texts.adjoining = true;
    job.texts.barScale = true;
    job.sink.overwrite = options.overwrite;
    const bool qt = TryLoadQt() != nullptr;
    for (const char* extension : {"png", "pdf", "svg", "dwg", "rec"}) {
        const std::string form = extension;
        if (!qt && (form == "png" || form == "pdf")) {
            report.Skip(N_("outputs without Qt"),
                        Phrase("{0}: left out; the Qt module is not there (zenro doctor).", form));
            continue;
        }
        job.outputs.push_back((folder / ("demo." + form)).string());
    }
    return job;
}

void Demo(const DemoOptions& options, Context& context) {
    const fs::path folder = PathOf(options.folder);
    std::error_code error;
    fs::create_directories(folder / "data", error);
    if (error) throw Failure(kNoOutput, Phrase("{0}: cannot be made: {1}.", folder.string(), error.message()));
    const auto data = WriteDemoData(folder / "data", options.seed, options.overwrite);
    std::vector<std::string> files;
    files.reserve(data.size());
    for (const std::string& name : data) files.push_back((folder / "data" / name).string());
    if (!options.dataOnly) {
        const DrawResult result = RunDrawJob(DemoJob(folder, data, options, context.report), context);
        for (const DrawnFile& file : result.files) files.push_back(file.path);
    }
    if (context.json)
        WriteLine(nlohmann::json(files).dump(2));
    else
        for (const std::string& file : files) WriteLine(file);
    context.status = context.report.status();
}

}  // namespace

void AddDemoVerb(Verb app, Context& context) {
    const Verb verb = app.AddVerb("demo", "Write the demonstration data and draw it to all formats");
    const auto options = std::make_shared<DemoOptions>();
    verb.AddOption("DIR", options->folder, "Where to write").ShowDefault();
    verb.AddOption("--seed", options->seed, "Another town for another number").ShowDefault();
    verb.AddFlag("--data-only", options->dataOnly, "The data without pictures");
    verb.AddFlag("--overwrite", options->overwrite, "Replace files that exist");
    AddCommonOptions(verb, context);
    verb.OnRun([options, &context] { Demo(*options, context); });
}

}  // namespace zm::tool
