// zenro demo: the demonstration sheet, data and pictures.
#include <cstdio>
#include <filesystem>
#include <memory>

#include <nlohmann/json.hpp>

#include "tools/zenro/demo_data.h"
#include "tools/zenro/draw_job.h"
#include "tools/zenro/qt_module.h"

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
    job.texts.remark = "虚构地图，仅供演示";
    job.sink.overwrite = options.overwrite;
    const bool qt = TryLoadQt() != nullptr;
    for (const char* extension : {"png", "pdf", "svg", "dwg", "rec"}) {
        const std::string form = extension;
        if (!qt && (form == "png" || form == "pdf")) {
            report.Skip("outputs without Qt", form + ": left out; the Qt module is not there (zenro doctor).");
            continue;
        }
        job.outputs.push_back((folder / ("demo." + form)).string());
    }
    return job;
}

void Demo(const DemoOptions& options, Context& context) {
    const fs::path folder = options.folder;
    std::error_code error;
    fs::create_directories(folder / "data", error);
    if (error) throw Failure(kNoOutput, folder.string() + ": cannot be made: " + error.message() + ".");
    const auto data = WriteDemoData(folder / "data", options.seed, options.overwrite);
    std::vector<std::string> files;
    files.reserve(data.size());
    for (const std::string& name : data) files.push_back((folder / "data" / name).string());
    if (!options.dataOnly) {
        const DrawResult result = RunDrawJob(DemoJob(folder, data, options, context.report), context);
        files.insert(files.end(), result.files.begin(), result.files.end());
    }
    if (context.json)
        std::printf("%s\n", nlohmann::json(files).dump(2).c_str());
    else
        for (const std::string& file : files) std::printf("%s\n", file.c_str());
    context.status = context.report.status();
}

}  // namespace

void AddDemoVerb(CLI::App& app, Context& context) {
    CLI::App& verb = *app.add_subcommand("demo", "Write the demonstration data and draw it to all formats");
    const auto options = std::make_shared<DemoOptions>();
    verb.add_option("DIR", options->folder, "Where to write")->capture_default_str();
    verb.add_option("--seed", options->seed, "Another town for another number")->capture_default_str();
    verb.add_flag("--data-only", options->dataOnly, "The data without pictures");
    verb.add_flag("--overwrite", options->overwrite, "Replace files that exist");
    AddCommonOptions(verb, context);
    verb.callback([options, &context] { Demo(*options, context); });
}

}  // namespace zm::tool
