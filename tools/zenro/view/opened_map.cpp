#include "tools/zenro/view/opened_map.h"

#include <cmath>
#include <filesystem>
#include <set>

#include "tools/kit/angles.h"
#include "tools/kit/text.h"
#include "tools/zenro/map/symbol_extent.h"
#include "zenromath/geodesy.h"

namespace fs = std::filesystem;

namespace zm::tool {
namespace {

double ScaleOf(const OpenedMap& map) {
    if (map.job.scale > 0.0) return map.job.scale;
    if (map.named) return map.named->scale;
    const Box data = map.source.DataBox();
    return data.empty() ? kThreeDegreeScale : ScaleFor(data);
}

Box BoxOfNumbers(const std::vector<double>& numbers) {
    Box box;
    for (std::size_t i = 0; i + 1 < numbers.size(); i += 2) box.Add(numbers[i], numbers[i + 1]);
    return box;
}

}  // namespace

OpenedMap::OpenedMap(const DrawJob& wanted, Context& context, const std::function<void(long long, long long)>& step)
    : job(wanted),
      rules(RulesOf(job, context.report)),
      named(TakeSheet(job)),
      session(job.library, context.host),
      source(job.source, rules, context.report),
      store(rules) {
    scale = ScaleOf(*this);
    if (scale > kThreeDegreeScale) source.Settle(scale);
    source.UseRulesFor(scale);
    source.TellPlane();
    const long long total = source.Count();
    source.Read(std::nullopt, store, [&](long long done) { step(done, total); });
    store.Index();
    MeasureSymbols();
    session.ReloadLayers();
    setgscale(scale);
    data = store.box();
    start = named ? BoxOf(OutlineOf(*named, source.plane())) : !job.sheet.empty() ? BoxOfNumbers(job.sheet) : data;
    hidden.assign(store.size(), false);
    m_leftOut = hidden;
    for (const Rule& rule : rules.rules) m_skipped.push_back(rule.skip);
}

void OpenedMap::Hide(const std::vector<std::size_t>& layers, const std::vector<std::size_t>& rulesHidden) {
    hidden = m_leftOut;
    const std::set<std::size_t> hiddenLayers(layers.begin(), layers.end());
    for (std::size_t i = 0; i < store.size(); ++i) {
        CheckStop();
        if (hiddenLayers.count(store.entry(i).layer) > 0) hidden[i] = true;
    }
    for (std::size_t i = 0; i < rules.rules.size(); ++i) rules.rules[i].skip = m_skipped[i];
    for (const std::size_t rule : rulesHidden)
        if (rule < rules.rules.size()) rules.rules[rule].skip = true;
}

void OpenedMap::LeaveOut(std::size_t place) {
    if (place >= hidden.size()) return;
    hidden[place] = m_leftOut[place] = true;
}

std::string OpenedMap::SymbolFile() const {
    const std::string& given = job.library.symbols;
    std::error_code error;
    return fs::absolute(given.empty() ? fs::path(ModuleDirectory()) / "symbol.dat" : PathOf(given), error).string();
}

std::vector<std::string> OpenedMap::Files() const {
    const fs::path standard = ModuleDirectory();
    const auto file = [&](const std::string& given, const char* name) {
        return given.empty() ? (standard / name).string() : given;
    };
    std::vector<std::string> files;
    if (!job.rules.empty()) files.push_back(rules.path.string());
    files.push_back(SymbolFile());
    files.push_back(file(job.library.notes, "Orvnote.cod"));
    files.push_back(file(job.library.project, "project.ini"));
    std::vector<std::string> found;
    for (const std::string& one : source.Files()) {
        std::error_code error;
        found.push_back(fs::absolute(PathOf(one), error).string());
    }
    for (const std::string& one : files) {
        std::error_code error;
        const fs::path path = fs::absolute(PathOf(one), error);
        if (fs::is_regular_file(path, error)) found.push_back(path.string());
    }
    return found;
}

bool OpenedMap::ToDegrees(double x, double y, double& latitude, double& longitude) const {
    const TargetPlane& plane = source.plane();
    if (!plane.geodetic) return false;
    InverseOfForward(plane.selector, y, x - plane.eastOffset, latitude, longitude);
    latitude /= kDegree;
    longitude = longitude / kDegree + plane.meridian;
    return std::fabs(latitude) <= 90.0 && std::fabs(longitude) <= 360.0;
}

}  // namespace zm::tool
