#include "tools/zenro/map/draw_job.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <filesystem>
#include <optional>
#include <set>

#include "runtime/text/numbers.h"
#include "symbol/area/hatch_statistics.h"
#include "tools/kit/digest.h"
#include "tools/kit/offspring.h"
#include "tools/kit/report.h"
#include "tools/kit/shown_text.h"
#include "tools/kit/standard_streams.h"
#include "tools/kit/text.h"
#include "tools/kit/tool_host.h"
#include "tools/kit/translation.h"
#include "tools/zenro/coord/zones.h"
#include "tools/zenro/map/explain.h"
#include "tools/zenro/map/input_hash.h"
#include "tools/zenro/map/margins.h"
#include "tools/zenro/map/robust_extent.h"
#include "tools/zenro/map/sheet_drawing.h"
#include "tools/zenro/map/symbol_extent.h"
#include "zenromath/dwg.h"
#include "zenromath/gbk.h"
#include "zenromath/runtime.h"
#include "zenromath/symbol.h"

namespace fs = std::filesystem;

namespace zm::tool {
namespace {

constexpr double kLargestPaper = 3000.0;  // millimetres; beyond it a scale was mistyped
constexpr double kLeastPaper = 1.0;       // millimetres; a sheet in degrees in the place of metres is smaller

// Used where no rules are given: every feature in its plainest form.
constexpr char kPlainRules[] =
    "[* : area]\n* -> layer 200, symbol 200\n"
    "[* : line]\n* -> layer 250, symbol 250\n"
    "[* : point]\n* -> layer 100, symbol 17\n";

// The library's progress line, for as long as the work takes. The text is UTF-8.
class Progress {
 public:
    explicit Progress(const std::string& what) : m_what(gbk::FromUtf8(what)) { _LWaitMsg("", nullptr); }
    ~Progress() { _LWaitMsgEnd(); }
    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;
    void Step(long long total, long long done) const {
        constexpr long long kMost = 2000000000;
        if (_LWaitReMsgEsc2(static_cast<int>(std::clamp(total, 1LL, kMost)), static_cast<int>(std::min(done, kMost)),
                            "%s", m_what.c_str()) != 0)
            throw Stopped{};
    }

 private:
    std::string m_what;
};

std::string Shown(const Box& b) {
    return Fixed(b.x1, 1) + "," + Fixed(b.y1, 1) + "," + Fixed(b.x2, 1) + "," + Fixed(b.y2, 1);
}

// A title from an input: the file's name without folder and extension, the database's name; nothing for data itself.
std::string PlainName(const std::string& input) {
    const std::string shown = ShownInput(input);
    if (shown == input) return Printable(fs::path(input).stem().string());
    const std::size_t colon = shown.find(':');
    return colon != std::string::npos ? Printable(fs::path(shown.substr(colon + 1)).stem().string()) : std::string();
}

Box SheetOf(const DrawJob& job) {
    if (job.sheet.size() != 4) throw Failure(kUsage, Phrase("--sheet needs four numbers: x1,y1,x2,y2."));
    Box sheet;
    sheet.Add(job.sheet[0], job.sheet[1]);
    sheet.Add(job.sheet[2], job.sheet[3]);
    if (!(sheet.x2 - sheet.x1 > 0.0) || !(sheet.y2 - sheet.y1 > 0.0))
        throw Failure(kUsage, Phrase("--sheet: the two corners give no area."));
    const double farthest = std::max({-sheet.x1, sheet.x2, -sheet.y1, sheet.y2});
    if (farthest > RobustExtent::kNoPlace)
        throw Failure(kUsage, Phrase("--sheet: {0} is no plane coordinate.", numbers::Text("%.3g", farthest)));
    return sheet;
}

// The zone that the eastings of the sheet name, 0 for none.
int NamedZone(const DrawJob& job) {
    if (job.sheet.empty() || job.source.plane.easting != "standard") return 0;
    const Box sheet = SheetOf(job);
    const int west = ZoneOfEasting(sheet.x1);
    return west == ZoneOfEasting(sheet.x2) ? west : 0;
}

// The sheet of a box of the plane, of a number, or of the data's extent.
void TakeNumberedSheet(const NamedSheet& named, const Source& source, Page& page) {
    Chain outline = OutlineOf(named, source.plane());
    page.sheet = BoxOf(outline);
    if (page.rotation != 0.0) {
        const double cx = (page.sheet.x1 + page.sheet.x2) / 2, cy = (page.sheet.y1 + page.sheet.y2) / 2;
        Chain turned = outline;
        page.Turn(turned);
        double w = 0.0, h = 0.0;
        for (std::size_t i = 0; i < turned.size(); ++i) {
            w = std::max(w, std::fabs(turned.x[i] - cx));
            h = std::max(h, std::fabs(turned.y[i] - cy));
        }
        page.sheet = Box{cx - w, cy - h, cx + w, cy + h};
    }
    if (named.graticule) page.graticule = EdgeOf(named, outline);
    if (named.graticule || page.rotation != 0.0) page.clip.push_back(std::move(outline));
}

Page MakePage(const DrawJob& job, const std::optional<NamedSheet>& named, Source& source) {
    Page page;
    page.rotation = job.rotation;
    page.frame = job.frame;
    page.margins = MarginsFor(job.texts);
    if (!job.frame) page.margins = {0.0, 0.0, 0.0, 0.0};
    Box data;
    Chain clip;
    if (!job.clip.empty()) {
        clip = source.ReadClipArea(job.clip);
        data = BoxOf(clip);
    } else if (job.sheet.empty() && !named) {
        data = source.DataBox();
    }
    if (named) {
        page.scale = job.scale;
        TakeNumberedSheet(*named, source, page);
        data = page.sheet;
    }
    if (data.empty() && job.sheet.empty())
        throw Failure(kFailed,
                      Phrase("nothing drawn: the data holds no features with a place. Give --sheet or other data."));
    page.scale = job.scale;
    if (!job.sheet.empty()) {
        page.sheet = SheetOf(job);
    } else if (!named) {
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
            const double w = std::max(1.0, std::ceil((turned.x2 - turned.x1) / step)) * step / 2,
                         h = std::max(1.0, std::ceil((turned.y2 - turned.y1) / step)) * step / 2;
            page.sheet = Box{cx - w, cy - h, cx + w, cy + h};
        }
    }
    const double largest = std::max(page.paperWidth(), page.paperHeight());
    if (largest > kLargestPaper)
        throw Failure(
            kUsage,
            Phrase("the sheet would be {0} m of paper at 1:{1}; give --sheet for a part of {2}, or a smaller scale.",
                   Fixed(largest / 1000.0, 1), Fixed(page.scale, 0), Shown(page.sheet)));
    const Box& sheet = page.sheet;
    const double least = std::min(sheet.x2 - sheet.x1, sheet.y2 - sheet.y1) / page.scale * 1000.0;
    if (least < kLeastPaper)
        throw Failure(kUsage,
                      Phrase("the sheet would be {0} mm of paper at 1:{1}; give a larger --sheet, or a larger scale.",
                             numbers::Text("%.3g", least), Fixed(page.scale, 0)));
    if (!clip.x.empty()) page.clip = {clip};
    for (Chain& area : page.clip) page.Turn(area);
    if (page.graticule)
        for (Chain& side : page.graticule->sides) page.Turn(side);
    return page;
}

// The width of the zones goes by the scale, and the scale by the size of the data, which is nearly the same in all
// zones: so the scale is found in a first plane, and the plane is settled for it once.
Page SettlePage(const DrawJob& job, const std::optional<NamedSheet>& named, Source& source, Report& report) {
    double scale = job.scale > 0.0      ? job.scale
                   : !job.sheet.empty() ? ScaleFor(SheetOf(job))
                   : named              ? named->scale
                                        : 0.0;
    if (scale <= 0.0) {
        Box data = source.DataBox();
        if (!job.clip.empty()) data = BoxOf(source.ReadClipArea(job.clip));
        scale = data.empty() ? kThreeDegreeScale : ScaleFor(data);
    }
    if (scale > kThreeDegreeScale) source.Settle(scale);
    source.UseRulesFor(scale);
    DrawJob settled = job;
    settled.scale = scale;
    if (job.scale <= 0.0 && !named)
        report.Note(Phrase("scale 1:{0} by the size of the data; --scale sets another.", Fixed(scale, 0)));
    Page page = MakePage(settled, named, source);
    source.TellPlane();
    return page;
}

// What a window of the map does not show. Rules that are hidden still take their features, so that no other rule does.
std::vector<bool> Hidden(const DrawJob& job, const FeatureStore& store, Rules& rules) {
    for (const std::string& text : job.hiddenRules) {
        int place = -1;
        if (!ReadWhole(text, place) || place < 0 || static_cast<std::size_t>(place) >= rules.rules.size())
            throw Failure(kUsage, Phrase("--hide-rule {0}: there is no such rule.", text));
        rules.rules[static_cast<std::size_t>(place)].skip = true;
    }
    std::vector<bool> hidden(store.size(), false);
    const auto& layers = job.hiddenLayers;
    for (std::size_t i = 0; !layers.empty() && i < store.size(); ++i)
        hidden[i] = std::find(layers.begin(), layers.end(), store.layerName(store.entry(i).layer)) != layers.end();
    return hidden;
}

void DrawOutput(const std::string& output, const DrawJob& job, const Page& page, FeatureStore& store,
                const StoreFilter& filter, const Survey& survey, const MapMasks& masks, LibrarySession& session,
                Context& context) {
    const std::unique_ptr<Sink> sink = OpenSink(PathOf(output), job.sink, page, context.report);
    session.ReloadLayers();
    SetClip(*TqDC, page);
    Painter painter(page, context.report, masks);
    {
        const Progress progress("zenro: " + fs::path(output).filename().string());
        const long long total = static_cast<long long>(store.size()) * static_cast<long long>(survey.levels.size());
        long long done = 0;
        DrawStrokes(store, filter, survey, painter, [&](long drawn) {
            progress.Step(total, ++done);
            if (drawn > 0) sink->Flush();
        });
    }
    if (TqDC->GetTqDCType() == 1) _LDBsetelev(0.0, 0.0);
    if (job.frame) DrawCrosses(page, masks.crosses);
    DrawLabels(survey.labels, session.notes());
    sink->Flush();
    if (job.frame) DrawFrame(page, job.texts, session.notes());
    if (survey.legend) survey.legend->Draw(page, session.notes(), context.report);
    sink->Finish();
}

void TellCuts(Report& report) {
    const symbol::HatchCuts& cuts = symbol::CurrentHatchCuts();
    for (std::size_t code = 0; code < cuts.codes.size(); ++code) {
        const symbol::HatchCut& cut = cuts.codes[code];
        if (cut.crossings > 0)
            report.Limit(N_("hatches cut by a limit"),
                         Phrase("hatch {0}: {1} lines meet the edges of their area more than 18 times, and pieces of "
                                "them may be wrong; divide the areas.",
                                code, cut.crossings));
        if (cut.wanted == cut.drawn) continue;
        report.Limit(N_("hatches cut by a limit"),
                     Phrase("hatch {0}: {1} of {2} lines drawn in {3} areas; the library's hatches have limits. Divide "
                            "large areas, or draw at a smaller scale.",
                            code, cut.drawn, cut.wanted, cut.polygons));
    }
    symbol::ResetHatchCuts();
}

fs::path FolderOfRules() {
    return fs::path(ModuleDirectory()) / "rules";
}

}  // namespace

std::string FindRules(const std::string& name) {
    std::error_code error;
    if (fs::is_regular_file(name, error) || name.find('/') != std::string::npos) return name;
    const fs::path folder = FolderOfRules();
    for (const std::string& candidate : {name, name + ".rules"})
        if (fs::is_regular_file(folder / candidate, error)) return (folder / candidate).string();
    return name;
}

namespace {

// What has not the form of a standard sheet's number is lettered as it is.
std::optional<NamedSheet> SheetByNumber(DrawJob& job) {
    if (!job.numberNamesSheet || job.texts.number.empty() || !job.sheet.empty()) return std::nullopt;
    auto named = ReadSheetNumber(job.texts.number, job.scale, job.division);
    if (named) job.texts.number = named->number;
    return named;
}

// True where nothing beyond the sheet is asked of the data.
std::optional<Window> WindowOf(const DrawJob& job, const std::optional<NamedSheet>& named, const Page& page) {
    if (job.sheet.empty() && job.clip.empty() && !named) return std::nullopt;
    return Window{page.sheet, page.rotation, page.Ground(kSymbolReach)};
}

void TellRules(FeatureStore& store, const Rules& rules, const std::string& id, bool windowed, Report& report) {
    const std::vector<std::string> lines = Explain(store, rules, id);
    for (const std::string& line : lines) WriteLine(line);
    if (lines.empty())
        report.Note(Phrase(windowed ? N_("--explain {0}: no rule draws a feature of this number on the sheet.")
                                    : N_("--explain {0}: no rule draws a feature of this number."),
                           id));
}

[[noreturn]] void TellEmpty(const Source& source, const Page& page, bool sheetGiven, const Report& report) {
    const Box box = source.DataBox();
    if (!sheetGiven && report.kinds().count(N_("features outside the projection")) == 0)
        throw Failure(kEmpty,
                      Phrase("nothing drawn: no rule draws a feature of the data at 1:{0}.", Fixed(page.scale, 0)));
    if (!sheetGiven)
        throw Failure(kFailed, Phrase("nothing drawn: no feature of the data lies where it can be drawn in the plane "
                                      "of {0}. Give data of a smaller region, or its --meridian.",
                                      source.plane().DescribeForReader()));
    throw Failure(kEmpty, box.empty() ? Phrase("nothing drawn: the sheet meets no data.")
                                      : Phrase("nothing drawn: the sheet meets no data, which lies in {0} ({1}).",
                                               Shown(box), source.plane().DescribeForReader()));
}

void TellShore(const Sea& sea, Report& report) {
    if (sea.fault())
        report.Skip(
            N_("shore lines that do not close"),
            Phrase("the shore line of the sea ends or turns round at {0}, {1}, inside the sheet; the sea is not "
                   "filled. Land must lie on the left of the line, and its pieces must meet.",
                   Fixed(sea.fault()->x, 2), Fixed(sea.fault()->y, 2)));
}

void TellRelief(const MapMasks& masks, const Survey& survey, Report& report) {
    for (const std::string& key : masks.unpairedSlopes)
        report.Warn(
            N_("slopes without a pair of crest and foot"),
            Phrase("slope \"{0}\" has not one crest and one foot; its crest is drawn by its symbol.", Printable(key)));
    if (masks.roadsThroughBuildings > 0)
        report.Note(Phrase(
            "roads that run through buildings: {0}; their sides are dashed there, as a tunnel's are, since the data do "
            "not say where they are above or below.",
            masks.roadsThroughBuildings));
    if (survey.contoursBetween > 0)
        report.Warn(N_("contours between the intervals"),
                    Phrase("{0} contours lie between the intervals of {1} m that their rule counts by, one of them at "
                           "{2} m; name the \"interval\" in the rule.",
                           survey.contoursBetween, Fixed(survey.interval, 2), Fixed(survey.heightBetween, 2)));
}

void DrawOutputs(const DrawJob& job, const Page& page, FeatureStore& store, const StoreFilter& filter,
                 const Survey& survey, const MapMasks& masks, LibrarySession& session, Context& context,
                 DrawResult& result) {
    const int jobs = job.jobs > 0 ? job.jobs : UsableProcessors();
    DoSideBySide(
        static_cast<int>(job.outputs.size()), jobs, context.report,
        [&](int piece) {
            const std::string& output = job.outputs[static_cast<std::size_t>(piece)];
            const long messages = context.host.messages();
            DrawOutput(output, job, page, store, filter, survey, masks, session, context);
            TellCuts(context.report);
            context.report.AddCut(context.host.messages() - messages);
            return job.digests && !IsStandardOutput(output) ? HashOfFile(output) : std::string();
        },
        [&](int piece, const std::string& hash) {
            result.files.push_back({job.outputs[static_cast<std::size_t>(piece)], hash});
        });
}

}  // namespace

Rules RulesOf(const DrawJob& job, Report& report) {
    if (!job.rules.empty()) {
        Rules rules = ReadRules(PathOf(FindRules(job.rules)));
        std::error_code error;
        rules.isShipped = fs::equivalent(fs::absolute(rules.path).parent_path(), FolderOfRules(), error);
        return rules;
    }
    report.Note(Phrase("no --rules: every feature is drawn in its plainest form."));
    return ParseRules(kPlainRules, "plain rules");
}

std::optional<NamedSheet> TakeSheet(DrawJob& job) {
    std::optional<NamedSheet> named = SheetByNumber(job);
    if (named)
        TakeZoneOf(*named, job.source.plane);
    else
        job.source.plane.zone = NamedZone(job);
    return named;
}

DrawResult RunDrawJob(const DrawJob& job, Context& context) {
    if (job.source.inputs.empty()) throw Failure(kUsage, Phrase("draw needs an input."));
    if (job.outputs.empty()) throw Failure(kUsage, Phrase("draw needs an output; give -o FILE."));
    for (const std::string& output : job.outputs) FormatOf(PathOf(output));
    for (const std::string& output : job.outputs) CheckOutput(output, job.sink.overwrite);
    Rules rules = RulesOf(job, context.report);

    DrawJob work = job;
    const std::optional<NamedSheet> named = TakeSheet(work);
    work.source.windowed = named.has_value() || !work.sheet.empty();
    if (!work.sheet.empty()) work.source.plane.sheet = work.sheet;

    const long messagesBefore = context.host.messages();
    if (!job.margins.empty()) ReadMargins(PathOf(job.margins), work.texts);
    if (named) work.texts.number = named->number;
    LibrarySession session(work.library, context.host);
    Source source(work.source, rules, context.report);
    Page page = SettlePage(work, named, source, context.report);
    setgscale(page.scale);

    if (work.texts.title.empty()) work.texts.title = PlainName(job.source.inputs.front());
    if (work.texts.system.empty()) work.texts.system = source.plane().DescribeChinese();
    if (work.sink.title.empty()) work.sink.title = work.texts.title;

    FeatureStore store(rules);
    {
        const std::optional<Window> window = WindowOf(work, named, page);
        const long long total = window ? -1 : source.Count();
        const Progress progress(Phrase("zenro: reading"));
        source.Read(window, store, [&](long long done) { progress.Step(total, done); });
        if (!work.explain.empty()) TellRules(store, rules, work.explain, window.has_value(), context.report);
    }
    const std::vector<bool> hidden = Hidden(work, store, rules);
    StoreFilter filter;
    filter.hidden = &hidden;
    DrawResult result;
    Survey survey;
    if (work.frame && work.legend) survey.legend.emplace();
    MapMasks masks(page);
    {
        MeasureSymbols();
        session.ReloadLayers();
        Painter painter(page, context.report, masks);
        Cover cover(page);
        LookAtFeatures(store, filter, page, painter, cover, masks, survey);
        if (work.frame)
            for (const Chain& stroke : OpenCrosses(page, masks.crosses)) cover.MarkLine(stroke);
        TellShore(masks.sea, context.report);
        TellRelief(masks, survey, context.report);
        result.empty = !survey.meets;
        if (result.empty && !work.drawEmpty)
            TellEmpty(source, page, WindowOf(work, named, page).has_value(), context.report);
        if (survey.legend) survey.legend->Lay(page);
        {
            const Progress progress(Phrase("zenro: placing labels"));
            long long done = 0;
            PlaceLabels(store, filter, page, painter, session.notes(), cover, masks, survey,
                        [&] { progress.Step(static_cast<long long>(store.size()), ++done); });
        }
    }
    context.report.AddCut(context.host.messages() - messagesBefore);
    if (work.digests) result.input = HashOfInput(work, rules, page, store, ZENRO_VERSION);
    result.unchanged = !work.knownInput.empty() && result.input == work.knownInput;
    if (!result.unchanged) DrawOutputs(work, page, store, filter, survey, masks, session, context, result);
    if (survey.labelsWithoutRoom > 0)
        context.report.Note(Phrase("{0} labels found no room and were left out.", survey.labelsWithoutRoom));
    result.shapes = survey.shapes;
    result.labels = survey.labels.size();
    result.labelsWithoutRoom = survey.labelsWithoutRoom;
    result.features = static_cast<long long>(store.size());
    result.taken = source.taken();
    result.scale = page.scale;
    result.sheet = page.sheet;
    result.plane = source.plane().Describe();
    result.number = work.texts.number;
    return result;
}

}  // namespace zm::tool
