#include "tools/zenro/draw_job.h"

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <set>

#include "symbol/limits.h"
#include "tools/zenro/labels.h"
#include "tools/zenro/painter.h"
#include "tools/zenro/text.h"
#include "tools/zenro/tool_host.h"
#include "zenromath/dwg.h"
#include "zenromath/runtime.h"
#include "zenromath/symbol.h"

namespace fs = std::filesystem;

namespace zm::tool {
namespace {

constexpr double kLargestPaper = 3000.0;  // millimetres; beyond it a scale was mistyped

// Used where no rules are given: every feature in its plainest form.
constexpr char kPlainRules[] =
    "[* : area]\n* -> layer 200, symbol 200\n"
    "[* : line]\n* -> layer 250, symbol 250\n"
    "[* : point]\n* -> layer 100, symbol 17\n";

// The library's progress line, for as long as the work takes.
class Progress {
 public:
    Progress() { _LWaitMsg("", nullptr); }
    ~Progress() { _LWaitMsgEnd(); }
    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;
    void Step(long long total, long long done, const char* what) const {
        constexpr long long kMost = 2000000000;
        if (_LWaitReMsgEsc2(static_cast<int>(std::clamp(total, 1LL, kMost)), static_cast<int>(std::min(done, kMost)),
                            "%s", what) != 0)
            throw Stopped{};
    }
};

std::string Shown(const Box& b) {
    return Fixed(b.x1, 1) + "," + Fixed(b.y1, 1) + "," + Fixed(b.x2, 1) + "," + Fixed(b.y2, 1);
}

std::string PlainName(const std::string& input) {
    return fs::path(input).stem().string();
}

Box SheetOf(const DrawJob& job) {
    if (job.sheet.size() != 4) throw Failure(kUsage, "--sheet needs four numbers: x1,y1,x2,y2.");
    Box sheet;
    sheet.Add(job.sheet[0], job.sheet[1]);
    sheet.Add(job.sheet[2], job.sheet[3]);
    if (!(sheet.x2 - sheet.x1 > 0.0) || !(sheet.y2 - sheet.y1 > 0.0))
        throw Failure(kUsage, "--sheet: the two corners give no area.");
    return sheet;
}

Page MakePage(const DrawJob& job, Source& source, Report& report) {
    Page page;
    page.rotation = job.rotation;
    page.frame = job.frame;
    if (!job.frame) page.margins = {0.0, 0.0, 0.0, 0.0};
    Box data = source.box();
    Chain clip;
    if (!job.clip.empty()) {
        clip = source.ReadClipArea(job.clip);
        data = BoxOf(clip);
    }
    if (data.empty() && job.sheet.empty())
        throw Failure(kFailed, "nothing drawn: the data holds no features with a place. Give --sheet or other data.");
    page.scale = job.scale > 0.0 ? job.scale : ScaleFor(job.sheet.empty() ? data : SheetOf(job));
    if (job.scale <= 0.0)
        report.Note("scale 1:" + Fixed(page.scale, 0) + " by the size of the data; --scale sets another.");
    if (!job.sheet.empty()) {
        page.sheet = SheetOf(job);
    } else {
        page.sheet = data;  // the centre of the turn
        Box turned;
        for (const double x : {data.x1, data.x2})
            for (const double y : {data.y1, data.y2}) {
                double tx = x, ty = y;
                page.Turn(tx, ty);
                turned.Add(tx, ty);
            }
        // The sheet keeps its centre, so that turning about it still meets the data.
        const double cx = (data.x1 + data.x2) / 2, cy = (data.y1 + data.y2) / 2;
        page.sheet = job.rotation == 0.0 ? SheetAround(turned, page.scale) : turned;
        if (job.rotation != 0.0) {
            const double step = 0.01 * page.scale;
            const double w = std::ceil((turned.x2 - turned.x1) / step) * step / 2,
                         h = std::ceil((turned.y2 - turned.y1) / step) * step / 2;
            page.sheet = Box{cx - w, cy - h, cx + w, cy + h};
        }
    }
    const double largest = std::max(page.paperWidth(), page.paperHeight());
    if (largest > kLargestPaper)
        throw Failure(kUsage, "the sheet would be " + Fixed(largest / 1000.0, 1) +
                                  " m of paper at 1:" + Fixed(page.scale, 0) + "; give --sheet for a part of " +
                                  Shown(page.sheet) + ", or a smaller scale.");
    if (!clip.x.empty()) {
        page.Turn(clip);
        page.clip.push_back(std::move(clip));
    }
    return page;
}

void SetClip(CTqDraw& context, const Page& page) {
    if (page.clip.empty()) {
        context.SetCutArea(page.sheet.x1, page.sheet.y1, page.sheet.x2, page.sheet.y2);
        context.SetDoCut(1);
        return;
    }
    Chain clip = page.clip.front();
    context.SetCutArea(static_cast<int>(clip.size()), clip.x.data(), clip.y.data());
    context.SetDoCut(2);
}

// What one look at all features tells: the levels in use, and which paper is covered.
struct Survey {
    std::set<int> levels;
    std::set<GeometryKind> labelled;
    std::vector<PlacedLabel> labels;
    long labelsWithoutRoom = 0;
    long shapes = 0;
    long long features = 0;
};

void Look(Source& source, const Page& page, const Painter& painter, Cover& cover, Survey& survey) {
    const Progress progress;
    source.ForEach([&](const Feature& feature) {
        progress.Step(source.count(), ++survey.features, "zenro: reading");
        for (const Shape& raw : feature.shapes) {
            const auto uses = Painter::UsesOf(feature, raw.kind);
            if (uses.empty()) continue;
            const Shape shape = painter.Turned(raw);
            if (!painter.OnSheet(shape)) continue;
            ++survey.shapes;
            for (const Use* use : uses) {
                survey.levels.insert(use->rule->LevelOf(raw.kind));
                if (!use->label.empty()) survey.labelled.insert(raw.kind);
            }
            for (const Chain& chain : shape.chains) cover.MarkLine(chain);
            if (raw.kind == GeometryKind::area)
                for (const Use* use : uses)
                    if (Painter::FillsWithLines(*use->rule)) cover.MarkArea(shape);
            if (raw.kind != GeometryKind::point) continue;
            const Chain& point = shape.chains.front();
            for (const Use* use : uses) {
                if (use->rule->symbol <= 0) continue;
                const double r = page.Ground(std::clamp(Get_G_Size(use->rule->symbol) / 2.0, 0.3, 3.0));
                cover.MarkBox(point.x[0] - r, point.y[0] - r, 2 * r, 2 * r, 0.0, Cover::symbol);
            }
        }
    });
}

// Labels find their places once, so that all outputs have the same figure. Points come first: they have the least
// choice; then lines, then areas.
void PlaceLabels(Source& source, const Page& page, const Painter& painter, TqNoteLayBase& notes, Cover& cover,
                 Survey& survey) {
    LabelPlacer placer(page, notes, cover);
    const Progress progress;
    for (const GeometryKind kind : {GeometryKind::point, GeometryKind::line, GeometryKind::area}) {
        if (survey.labelled.count(kind) == 0) continue;
        long long done = 0;
        source.ForEach([&](const Feature& feature) {
            progress.Step(survey.features, ++done, "zenro: placing labels");
            for (const Shape& raw : feature.shapes) {
                if (raw.kind != kind) continue;
                for (const Use* use : Painter::UsesOf(feature, kind)) {
                    if (use->label.empty()) continue;
                    const Shape shape = painter.Turned(raw);
                    if (BoxOf(shape.chains.front()).Meets(page.sheet)) placer.Place(shape, *use);
                }
            }
        });
    }
    survey.labels = placer.labels();
    survey.labelsWithoutRoom = placer.withoutRoom();
}

void DrawOutput(const std::string& output, const DrawJob& job, const Page& page, Source& source, const Survey& survey,
                LibrarySession& session, Context& context) {
    const std::unique_ptr<Sink> sink = OpenSink(output, job.sink, page, context.report);
    session.ReloadLayers();
    SetClip(*TqDC, page);
    Painter painter(page, context.report);
    const std::string what = "zenro: " + fs::path(output).filename().string();
    int lost = 0;
    const std::string shown = ToLibraryText(what, '?', lost);
    {
        const Progress progress;
        const long long total = survey.features * static_cast<long long>(survey.levels.size());
        long long done = 0;
        for (const int level : survey.levels)
            source.ForEach([&](const Feature& feature) {
                progress.Step(total, ++done, shown.c_str());
                if (painter.Draw(feature, level) > 0) sink->Flush();
            });
    }
    if (TqDC->GetTqDCType() == 1) _LDBsetelev(0.0, 0.0);
    if (job.frame) DrawCrosses(page);
    DrawLabels(survey.labels, session.notes());
    sink->Flush();
    if (job.frame) DrawFrame(page, job.texts, session.notes());
    sink->Finish();
}

void TellCuts(Report& report) {
    const symbol::HatchCuts& cuts = symbol::CurrentHatchCuts();
    for (std::size_t code = 0; code < cuts.codes.size(); ++code) {
        const symbol::HatchCut& cut = cuts.codes[code];
        if (cut.polygons == 0) continue;
        report.Limit("hatches cut by a limit",
                     "hatch " + std::to_string(code) + ": " + std::to_string(cut.drawn) + " of " +
                         std::to_string(cut.wanted) + " lines drawn in " + std::to_string(cut.polygons) +
                         " areas; the library's hatches have limits. Divide large areas, or draw at a smaller scale.");
    }
    symbol::ResetHatchCuts();
}

}  // namespace

std::string FindRules(const std::string& name) {
    std::error_code error;
    if (fs::is_regular_file(name, error) || name.find('/') != std::string::npos) return name;
    const fs::path folder = fs::path(ModuleDirectory()) / "rules";
    for (const std::string& candidate : {name, name + ".rules"})
        if (fs::is_regular_file(folder / candidate, error)) return (folder / candidate).string();
    return name;
}

DrawResult RunDrawJob(const DrawJob& job, Context& context) {
    if (job.source.inputs.empty()) throw Failure(kUsage, "draw needs an input.");
    if (job.outputs.empty()) throw Failure(kUsage, "draw needs an output; give -o FILE.");
    for (const std::string& output : job.outputs) FormatOf(output);
    for (const std::string& output : job.outputs) CheckOutput(output, job.sink.overwrite);
    const Rules rules = job.rules.empty() ? ParseRules(kPlainRules, "plain rules") : ReadRules(FindRules(job.rules));
    if (job.rules.empty()) context.report.Note("no --rules: every feature is drawn in its plainest form.");

    const long messagesBefore = context.host.messages();
    LibrarySession session(job.library, context.host);
    Source source(job.source, rules, job.scale > 0.0 ? job.scale : 1000.0, context.report);
    const Page page = MakePage(job, source, context.report);
    setgscale(page.scale);

    DrawJob work = job;
    if (work.texts.title.empty()) work.texts.title = PlainName(job.source.inputs.front());
    if (work.texts.system.empty()) work.texts.system = source.plane().DescribeChinese();
    if (work.sink.title.empty()) work.sink.title = work.texts.title;

    Survey survey;
    {
        const Painter painter(page, context.report);
        Cover cover(page);
        if (job.frame)
            for (const Chain& stroke : GridCrosses(page)) cover.MarkLine(stroke);
        Look(source, page, painter, cover, survey);
        if (survey.shapes == 0) {
            const Box& b = source.box();
            throw Failure(kFailed,
                          "nothing drawn: the sheet meets no data" +
                              (b.empty() ? std::string(".")
                                         : ", which lies in " + Shown(b) + " (" + source.plane().Describe() + ")."));
        }
        PlaceLabels(source, page, painter, session.notes(), cover, survey);
    }
    DrawResult result;
    for (const std::string& output : work.outputs) {
        DrawOutput(output, work, page, source, survey, session, context);
        result.files.push_back(output);
    }
    TellCuts(context.report);
    if (survey.labelsWithoutRoom > 0)
        context.report.Note(std::to_string(survey.labelsWithoutRoom) + " labels found no room and were left out.");
    context.report.AddCut(context.host.messages() - messagesBefore);
    result.shapes = survey.shapes;
    result.labels = survey.labels.size();
    result.labelsWithoutRoom = survey.labelsWithoutRoom;
    result.scale = page.scale;
    result.sheet = page.sheet;
    result.plane = source.plane().Describe();
    return result;
}

}  // namespace zm::tool
