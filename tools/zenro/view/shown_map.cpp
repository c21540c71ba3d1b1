#include "tools/zenro/view/shown_map.h"

#include <algorithm>
#include <filesystem>

#include "tools/kit/text.h"
#include "tools/kit/translation.h"
#include "tools/symbols/symbols.h"
#include "tools/zenro/view/answers.h"
#include "tools/zenro/view/drawing_map.h"
#include "tools/zenro/view/picture.h"
#include "tools/zenro/view/recording_map.h"

namespace zm::tool {
namespace {

// Map data, drawn by rules.
class RuledMap : public ShownMap {
 public:
    RuledMap(const DrawJob& job, Context& context, const std::function<void(long long, long long)>& step)
        : m_map(job, context, step) {}

    Json About() override { return AboutMap(m_map); }
    Json Layers() override { return LayersOf(m_map); }
    Json Identify(double x, double y, double reach) override { return tool::Identify(m_map, x, y, reach); }
    Json Snap(double x, double y, double reach) override { return tool::Snap(m_map, x, y, reach); }
    Json Where(double x, double y) override { return tool::Where(m_map, x, y); }
    Json Measure(const std::vector<double>& xy) override { return tool::Measure(m_map, xy); }
    Json Find(const std::string& text) override { return tool::Find(m_map, text); }
    void Hide(const std::vector<std::size_t>& layers, const std::vector<std::size_t>& rules) override {
        m_map.Hide(layers, rules);
    }
    std::string LeaveOut(std::uint64_t place) override {
        m_map.LeaveOut(place);
        Feature feature;
        m_map.store.Read(place, feature);
        return feature.where;
    }
    ViewDrawn Draw(const ViewRequest& request, std::uint32_t* pixels, Context& context,
                   const std::function<void(std::size_t)>& visited) override {
        return DrawView(m_map, request, pixels, context, visited);
    }

 private:
    OpenedMap m_map;
};

bool EndsWith(const std::string& path, const std::string& end) {
    std::string last = path.size() < end.size() ? std::string() : path.substr(path.size() - end.size());
    for (char& c : last) c = c >= 'A' && c <= 'Z' ? static_cast<char>(c + 'a' - 'A') : c;
    return last == end;
}

// What the linter has to say of the reader's own library, each remark at its line.
void TellOfSymbols(const std::string& library, Report& report) {
    constexpr std::size_t kMostRemarks = 20;
    if (library.empty()) return;
    std::error_code error;
    const std::string path = LibraryPath(std::filesystem::absolute(PathOf(library), error));
    const std::vector<symbols::Finding> findings = symbols::Lint(path.c_str());
    for (std::size_t i = 0; i < std::min(findings.size(), kMostRemarks); ++i)
        report.Warn(N_("remarks on symbols"), symbols::FindingText(library, findings[i]));
    if (findings.size() > kMostRemarks)
        report.Warn(N_("remarks on symbols"), Phrase("{0}: {1} remarks more; zenro symbols lint has all.", library,
                                                     findings.size() - kMostRemarks));
}

}  // namespace

bool IsDrawing(const std::string& path) {
    return EndsWith(path, ".dwg");
}

bool IsRecording(const std::string& path) {
    return EndsWith(path, ".rec");
}

std::unique_ptr<ShownMap> OpenShown(const DrawJob& job, Context& context,
                                    const std::function<void(long long, long long)>& step) {
    const auto& inputs = job.source.inputs;
    const auto alone = std::find_if(inputs.begin(), inputs.end(),
                                    [](const std::string& one) { return IsDrawing(one) || IsRecording(one); });
    if (alone == inputs.end()) {
        TellOfSymbols(job.library.symbols, context.report);
        return std::make_unique<RuledMap>(job, context, step);
    }
    if (inputs.size() > 1)
        throw Failure(kUsage,
                      Phrase("{0}: drawings and recordings are shown one at a time, without other data.", *alone));
    if (IsDrawing(*alone)) return OpenDrawingMap(*alone, context);
    return OpenRecordingMap(*alone, job, context);
}

}  // namespace zm::tool
