// zenro series: plans of many sheets, drawn on one machine or many.
#include <algorithm>
#include <cmath>
#include <cstdio>
#include <filesystem>
#include <iterator>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include <nlohmann/json.hpp>

#include "runtime/text/gbk.h"
#include "tools/kit/offspring.h"
#include "tools/kit/output_file.h"
#include "tools/kit/report.h"
#include "tools/kit/shown_text.h"
#include "tools/kit/text.h"
#include "tools/kit/tool_host.h"
#include "tools/kit/translation.h"
#include "tools/zenro/coord/zones.h"
#include "tools/zenro/map/draw_job.h"
#include "tools/zenro/map/shapes.h"
#include "tools/zenro/series/division.h"
#include "tools/zenro/series/engine.h"
#include "tools/zenro/series/index_page.h"
#include "tools/zenro/series/worker.h"

namespace fs = std::filesystem;

namespace zm::tool {
namespace {

using Json = nlohmann::ordered_json;

// ---- plan ----

struct PlanOptions {
    SourceOptions source;
    std::string rules, within, names, extra, output, division = "50x50", style = "code";
    std::string field = "name";
    std::vector<double> origin;
    std::vector<std::string> patterns;
    double scale = 0.0;
    bool overwrite = false;
};

// Words of a line as a shell parts them: blanks part, quotes of either kind hold together.
std::vector<std::string> WordsOf(const std::string& line) {
    std::vector<std::string> words;
    std::string word;
    char quote = 0;
    bool open = false;
    for (const char c : line) {
        if (quote != 0) {
            if (c == quote)
                quote = 0;
            else
                word += c;
        } else if (c == '"' || c == '\'') {
            quote = c;
            open = true;
        } else if (c == ' ' || c == '\t') {
            if (open || !word.empty()) words.push_back(std::exchange(word, {}));
            open = false;
        } else {
            word += c;
        }
    }
    if (quote != 0) throw Failure(kUsage, Phrase("--draw: a quote is not closed."));
    if (open || !word.empty()) words.push_back(word);
    return words;
}

// Paths hold wherever the series is drawn; names of databases stay as they are.
std::string Whole(const std::string& path) {
    std::error_code error;
    return fs::exists(path, error) ? fs::absolute(path).lexically_normal().string() : path;
}

std::vector<std::string> DrawArguments(const PlanOptions& o) {
    std::vector<std::string> arguments;
    const auto add = [&](const char* option, const std::string& value) {
        if (!value.empty()) arguments.insert(arguments.end(), {option, value});
    };
    add("--rules", o.rules.empty() ? std::string() : Whole(FindRules(o.rules)));
    add("--scale", Fixed(o.scale, 0));
    const PlaneOptions& plane = o.source.plane;
    add("--system", plane.system);
    add("--zone", plane.zoneWidth != 0 ? std::to_string(plane.zoneWidth) : std::string());
    if (plane.meridian) arguments.push_back("--meridian=" + Fixed(*plane.meridian, 9));
    add("--easting", plane.easting);
    add("--datum", plane.datum);
    add("--source", plane.source);
    add("--encoding", o.source.encoding);
    const auto extra = WordsOf(o.extra);
    arguments.insert(arguments.end(), extra.begin(), extra.end());
    return arguments;
}

// The four numbers of --within; others where it is the name of a file.
std::vector<double> SidesOf(const std::string& within) {
    std::vector<double> sides;
    std::string rest = within;
    for (std::size_t comma; !rest.empty(); rest = comma == std::string::npos ? "" : rest.substr(comma + 1)) {
        comma = rest.find(',');
        double side = 0.0;
        if (!ReadReal(Trim(rest.substr(0, comma)), side)) return {};
        sides.push_back(side);
    }
    return sides;
}

Shape AreaOf(const PlanOptions& o, const std::vector<double>& sides, Source& source) {
    Shape area;
    area.kind = GeometryKind::area;
    if (o.within.empty()) return area;
    if (sides.size() == 4) {
        Box box;
        box.Add(sides[0], sides[1]);
        box.Add(sides[2], sides[3]);
        area.chains.push_back({{box.x1, box.x2, box.x2, box.x1, box.x1}, {box.y1, box.y1, box.y2, box.y2, box.y1}});
        return area;
    }
    Chain ring = source.ReadClipArea(o.within);
    ring.x.push_back(ring.x.front());
    ring.y.push_back(ring.y.front());
    area.chains.push_back(std::move(ring));
    return area;
}

// The names of a file's features, where they lie in the plane of the series.
std::vector<PlaceName> PlacesOf(const PlanOptions& o, const TargetPlane& plane, Report& report) {
    const Rules rules = ParseRules("[* : any]\n* -> layer 1, label " + o.field + "\n", "names");
    SourceOptions options = o.source;
    options.inputs = {o.names};
    options.plane.zone = plane.zone;
    if (plane.geodetic && plane.zone == 0) options.plane.meridian = plane.meridian;
    Source source(options, rules, report);
    source.Settle(o.scale);
    FeatureStore store(rules);
    source.Read(std::nullopt, store);
    std::vector<PlaceName> places;
    store.ForEach({}, [&](const Feature& feature) {
        if (feature.shapes.empty() || feature.uses.empty() || feature.uses.front().label.empty()) return;
        const Shape& shape = feature.shapes.front();
        PlaceName place{shape.chains.front().x.front(), shape.chains.front().y.front(),
                        gbk::ToUtf8(feature.uses.front().label)};
        if (shape.kind == GeometryKind::area) InnerPoint(shape, place.x, place.y);
        places.push_back(std::move(place));
    });
    return places;
}

void RefuseFilesTwice(const Plan& plan) {
    std::map<std::string, std::string> owners;
    for (const PlanSheet& sheet : plan.sheets)
        for (const std::string& file : FilesOf(plan.settings, sheet)) {
            const auto [owner, fresh] = owners.emplace(file, sheet.number);
            if (!fresh)
                throw Failure(kUsage,
                              Phrase("the sheets {0} and {1} would both be {2}; put {number} into the pattern of -o.",
                                     owner->second, sheet.number, file));
        }
}

// What an earlier plan of this name has drawn says nothing about this one, which may have other rules. Holds the plan
// where there were runs.
std::unique_ptr<PlanLock> ForgetRuns(const fs::path& folder) {
    std::error_code error;
    if (!fs::is_directory(folder, error)) return nullptr;
    auto lock = std::make_unique<PlanLock>(folder);
    RefuseWhereStillDrawn(folder);
    fs::remove_all(folder / "logs", error);
    if (error)
        throw Failure(kNoOutput, Phrase("{0}: cannot be removed: {1}.", (folder / "logs").string(), error.message()));
    return lock;
}

// A plan is a file that others read, as are the lists of a run.
void RefusePasswords(const PlanOptions& o) {
    std::vector<std::string> texts = WordsOf(o.extra);
    texts.insert(texts.end(), o.source.inputs.begin(), o.source.inputs.end());
    for (const std::string& text : texts)
        if (HoldsPassword(text))
            throw Failure(kUsage,
                          Phrase("{0}: a plan keeps no passwords. Leave it out, and give it where sheets are drawn: "
                                 "for PostgreSQL in ~/.pgpass or PGPASSWORD, for others as their driver says.",
                                 ShownInput(text)));
}

void MakePlan(const PlanOptions& o, Context& context) {
    RefusePasswords(o);
    CheckOutput(o.output, o.overwrite);
    for (const std::string& pattern : o.patterns) FormatOf(pattern);
    DrawJob sheet;
    sheet.rules = o.rules;
    const Rules rules = RulesOf(sheet, context.report);
    DivisionOptions division;
    division.scale = o.scale;
    division.graticule = o.division == "graticule";
    division.style = o.style == "ninth" ? sheets::Style::ninth : sheets::Style::code;
    if (!division.graticule) sheets::ReadSize(o.division, division.grid);
    division.grid.scale = static_cast<int>(o.scale);
    if (o.origin.size() == 2) {
        division.grid.originX = o.origin[0];
        division.grid.originY = o.origin[1];
    }
    SourceOptions asked = o.source;
    const std::vector<double> sides = SidesOf(o.within);
    if (sides.size() == 4) {
        // The area names the zone, as a sheet does; no extent is asked of an index then.
        const double west = std::min(sides[0], sides[2]), east = std::max(sides[0], sides[2]);
        asked.windowed = true;
        asked.plane.sheet = sides;
        const int zone = ZoneOfEasting(west);
        if (asked.plane.easting == "standard" && zone != 0 && zone == ZoneOfEasting(east)) asked.plane.zone = zone;
    }
    Source source(asked, rules, context.report);
    source.Settle(o.scale);
    source.TellPlane();
    division.area = AreaOf(o, sides, source);
    Plan plan;
    std::vector<std::string> inputs, patterns = o.patterns;
    for (const std::string& input : o.source.inputs) inputs.push_back(Whole(input));
    if (patterns.empty()) patterns.push_back(fs::path(o.output).stem().string() + ".sheets/{number}.svg");
    const std::string folder = fs::absolute(o.output).parent_path().string();
    plan.settings = {{"inputs", Json(inputs).dump()},
                     {"arguments", Json(DrawArguments(o)).dump()},
                     {"outputs", Json(patterns).dump()},
                     {"folder", folder},
                     {"scale", Fixed(o.scale, 0)},
                     {"division", o.division},
                     {"system", source.plane().geodetic ? "geographic" : "plane"},
                     {"plane", source.plane().Describe()},
                     {"program", std::string("zenro ") + ZENRO_VERSION}};
    plan.sheets = Divide(division, source);
    if (plan.sheets.empty()) throw Failure(kEmpty, Phrase("the area holds no sheet."));
    if (!o.names.empty()) NameSheets(PlacesOf(o, source.plane(), context.report), plan.sheets);
    RefuseFilesTwice(plan);
    EstimateCosts(source, patterns.size(), plan.sheets);
    const std::unique_ptr<PlanLock> lock = ForgetRuns(RunFolder(o.output));
    WritePlan(o.output, plan, o.overwrite);
    double cost = 0.0;
    long long features = 0;
    for (const PlanSheet& s : plan.sheets) {
        cost += s.cost;
        features += s.features;
    }
    if (context.json)
        WriteLine(
            Json{{"plan", o.output}, {"sheets", plan.sheets.size()}, {"features", features}, {"seconds", cost}}.dump());
    else
        PrintText(Phrase("{0}: {1} sheets, some {2} features, some {3} processor hours", o.output, plan.sheets.size(),
                         features, Fixed(cost / 3600.0, 2)));
    context.status = kDone;
}

// ---- draw, status, retry ----

struct DrawOptions {
    std::string plan, changedSince, changedField;
    std::vector<std::string> only;
    bool dryRun = false, all = false, changed = false, retry = false;
    EngineOptions engine;
};

Plan Gathered(const std::string& path) {
    Plan plan = ReadPlan(path);
    long long broken = 0;
    Merge(ReadLogs(RunFolder(path) / "logs", broken), plan);
    return plan;
}

std::set<std::string> ChangedSince(const DrawOptions& o, const Plan& plan, Context& context) {
    if (o.changedField.empty())
        throw Failure(kUsage, Phrase("--changed-since needs --changed-field: the field with the time of change."));
    if (o.changedSince.find('\'') != std::string::npos) throw Failure(kUsage, Phrase("--changed-since: no time."));
    const Rules rules = ParseRules("[* : any]\n* -> layer 1, symbol 1\n", "any");  // every feature counts
    SourceOptions source;
    source.inputs = Json::parse(plan.settings.at("inputs")).get<std::vector<std::string>>();
    const auto arguments = Json::parse(plan.settings.at("arguments")).get<std::vector<std::string>>();
    for (std::size_t i = 0; i + 1 < arguments.size(); ++i) {
        if (arguments[i] == "--source") source.plane.source = arguments[i + 1];
        if (arguments[i] == "--encoding") source.encoding = arguments[i + 1];
    }
    std::vector<Box> boxes;
    for (const PlanSheet& s : plan.sheets) boxes.push_back(s.box);
    source.plane.zone = boxes.empty() ? 0 : ZoneOfEasting(boxes.front().x1);
    source.windowed = true;
    Source data(source, rules, context.report);
    double scale = 0.0;
    ReadReal(plan.settings.at("scale"), scale);
    data.Settle(scale);
    const auto counts = data.CountIn(boxes, o.changedField, o.changedSince);
    std::set<std::string> changed;
    for (std::size_t i = 0; i < counts.size(); ++i)
        if (counts[i] > 0) changed.insert(plan.sheets[i].number);
    return changed;
}

std::vector<PlanSheet> DueOf(const DrawOptions& o, const Plan& plan, Context& context) {
    const std::set<std::string> only(o.only.begin(), o.only.end());
    std::set<std::string> unknown = only;
    const std::set<std::string> changed =
        o.changedSince.empty() ? std::set<std::string>() : ChangedSince(o, plan, context);
    std::vector<PlanSheet> due;
    for (const PlanSheet& sheet : plan.sheets) {
        unknown.erase(sheet.number);
        if (!only.empty() && only.count(sheet.number) == 0) continue;
        const bool is = o.retry ? sheet.state == SheetState::failed
                                : sheet.state == SheetState::due || o.all || o.changed || !only.empty() ||
                                      changed.count(sheet.number) > 0;
        if (is) due.push_back(sheet);
    }
    if (!unknown.empty()) throw Failure(kUsage, Phrase("--only {0}: the plan has no such sheet.", *unknown.begin()));
    return due;
}

struct Tally {
    std::map<SheetState, long long> states;
    double seconds = 0.0, doneCost = 0.0, dueCost = 0.0;
};

Tally TallyOf(const Plan& plan) {
    Tally tally;
    for (const SheetState state :
         {SheetState::due, SheetState::done, SheetState::partly, SheetState::empty, SheetState::failed})
        tally.states[state] = 0;
    for (const PlanSheet& s : plan.sheets) {
        ++tally.states[s.state];
        if (s.state == SheetState::due) {
            tally.dueCost += s.cost;
        } else if (s.seconds > 0.0) {
            tally.seconds += s.seconds;
            tally.doneCost += s.cost;
        }
    }
    return tally;
}

// Failed sheets by their reasons, the most frequent first.
std::vector<std::pair<std::string, std::vector<std::string>>> FailuresOf(const Plan& plan) {
    std::map<std::string, std::vector<std::string>> byReason;
    for (const PlanSheet& s : plan.sheets)
        if (s.state == SheetState::failed || (s.state == SheetState::due && !s.reason.empty()))
            byReason[s.reason].push_back(s.number);
    std::vector<std::pair<std::string, std::vector<std::string>>> list(byReason.begin(), byReason.end());
    std::stable_sort(list.begin(), list.end(),
                     [](const auto& a, const auto& b) { return a.second.size() > b.second.size(); });
    return list;
}

// True where sheets of the latest run were drawn from sources of different times.
bool SourceChanged(const fs::path& logs) {
    long long broken = 0, last = 0;
    const auto records = ReadLogs(logs, broken);
    for (const auto& [number, r] : records) last = std::max(last, r.run);
    std::set<std::string> stamps;
    for (const auto& [number, r] : records)
        if (r.run == last && !r.source.empty()) stamps.insert(r.source);
    return stamps.size() > 1;
}

void PrintStatus(const Plan& plan, const std::string& path, int jobs, Context& context) {
    const Tally tally = TallyOf(plan);
    const auto failures = FailuresOf(plan);
    // The seconds that the drawn sheets took in place of their estimate say how the rest will do.
    const double rate = tally.doneCost > 0.0 ? tally.seconds / tally.doneCost : 1.0;
    const double rest = tally.dueCost * rate;
    const bool changed = SourceChanged(RunFolder(path) / "logs");
    if (context.json) {
        Json j = {{"plan", path}, {"sheets", plan.sheets.size()}};
        for (const auto& [state, count] : tally.states) j[NameOf(state)] = count;
        j["seconds"] = tally.seconds;
        j["seconds_left"] = rest;
        j["source_changed"] = changed;
        j["failures"] = Json::array();
        for (const auto& [reason, numbers] : failures)
            j["failures"].push_back({{"reason", reason}, {"sheets", numbers}});
        WriteLine(j.dump(2, ' ', false, Json::error_handler_t::replace));
    } else {
        std::string line = Phrase("{0} sheets:", plan.sheets.size());
        for (const auto& [state, count] : tally.states)
            if (count > 0)
                line += (line.back() == ':' ? " " : ", ") + Phrase("{0} {1}", count, Translated(NameOf(state)));
        PrintText(line);
        if (tally.states.at(SheetState::due) > 0)
            PrintText(Phrase("left: some {0} processor seconds, some {1} minutes by {2} processes", Fixed(rest, 1),
                             Fixed(rest / 60.0 / jobs, 1), jobs));
        for (const auto& [reason, numbers] : failures) {
            std::string shown;
            for (std::size_t i = 0; i < std::min<std::size_t>(numbers.size(), 5); ++i) shown += " " + numbers[i];
            PrintText(Phrase("{0} not drawn: {1}", numbers.size(), reason));
            PrintText("   " + shown + (numbers.size() > 5 ? " ..." : ""));
        }
    }
    if (changed)
        context.report.Warn(
            N_("sources that changed"),
            Phrase("the source changed during the last run: its sheets do not all show the same data. zenro "
                   "series draw --changed draws those that are out of date."));
    context.status = tally.states.at(SheetState::failed) > 0                                           ? kFailed
                     : tally.states.at(SheetState::partly) > 0 || tally.states.at(SheetState::due) > 0 ? kPartly
                                                                                                       : kDone;
}

void DrawSeries(const DrawOptions& o, Context& context) {
    ReadPlan(o.plan);  // what is wrong with it is said before a folder is made
    const fs::path folder = RunFolder(o.plan);
    std::error_code error;
    fs::create_directories(folder / "logs", error);
    if (error) throw Failure(kNoOutput, Phrase("{0}: cannot be made: {1}.", folder.string(), error.message()));
    const PlanLock lock(folder);
    RefuseWhereStillDrawn(folder);
    Plan plan = Gathered(o.plan);
    SeriesRun run;
    run.changedOnly = o.changed;
    run.settings = plan.settings;
    run.sheets = DueOf(o, plan, context);
    if (o.dryRun) {
        for (const PlanSheet& sheet : run.sheets) WriteLine(sheet.number);
        return;
    }
    int status = kDone;
    if (!run.sheets.empty()) {
        run.number = NextRun(plan, folder);
        run.chunks = CutChunks(run.sheets, o.engine.chunkMinutes * 60.0, MostChunks(o.engine.name));
        const fs::path file = WriteRun(run, folder);
        const fs::path target = fs::absolute(o.plan), here = fs::current_path();
        status = DrawRun(run, file, o.engine, context);
        fs::current_path(here);
        if (o.engine.name == "list") return;
        plan = Gathered(target.string());
    }
    WritePlan(o.plan, plan, true);
    const int jobs = o.engine.jobs > 0 ? o.engine.jobs : UsableProcessors();
    PrintStatus(plan, o.plan, jobs, context);
    if (status != kDone && context.status != kFailed) context.status = status;
}

void Status(const std::string& path, int jobs, Context& context) {
    PrintStatus(Gathered(path), path, jobs > 0 ? jobs : UsableProcessors(), context);
}

void WriteIndex(const std::string& path, const std::string& output, bool overwrite) {
    const Plan plan = Gathered(path);
    const std::string extension = fs::path(output).extension().string();
    if (extension != ".html" && extension != ".geojson")
        throw Failure(kUsage, Phrase("{0}: the index is a page (.html) or GeoJSON (.geojson).", output));
    const std::string folder = fs::absolute(output).parent_path().string();
    WriteOutput(output, overwrite,
                extension == ".html" ? IndexPage(plan, fs::path(path).stem().string(), folder) : IndexGeoJson(plan));
    WriteLine(output);
}

void Work(const std::string& file, int chunk, int jobs, Context& context) {
    const fs::path whole = fs::absolute(file);
    const SeriesRun run = ReadRun(whole);
    if (chunk < 1 || static_cast<std::size_t>(chunk) > run.chunks.size())
        throw Failure(kUsage, Phrase("--chunk: the run has the chunks 1 to {0}.", run.chunks.size()));
    const auto [first, last] = run.chunks[static_cast<std::size_t>(chunk) - 1];
    context.status = DrawSheets(run, first, last, jobs, whole.parent_path() / "logs", context);
}

void AddPlan(Verb series, Context& context) {
    const Verb verb = series.AddVerb("plan", "List the sheets of an area in a GeoPackage");
    const auto o = std::make_shared<PlanOptions>();
    verb.AddOption("IN", o->source.inputs, "Map data: anything GDAL/OGR reads").Required();
    verb.AddOption("-o,--output", o->output, "The plan, a .gpkg").Required();
    verb.AddOption("--scale", o->scale, "Denominator of the map scale").Required().Within(10.0, 1e8);
    verb.AddOption("--division", o->division, "50x50, 40x50 or 40x40 centimetres of paper, or graticule")
        .OneOf({"50x50", "40x50", "40x40", "graticule"})
        .ShowDefault();
    verb.AddOption("--style", o->style, "1:2000 sheets of the graticule: code or ninth")
        .OneOf({"code", "ninth"})
        .ShowDefault();
    verb.AddOption("--origin", o->origin, "Where rectangular sheets are counted from: north,east in metres").Listed(2);
    verb.AddOption("--within", o->within, "Map data whose first area is to be covered, or x1,y1,x2,y2 in the plane")
        .Default("the box of the data");
    verb.AddOption("--names", o->names, "Map data whose first feature in a sheet names it");
    verb.AddOption("--name-field", o->field, "Field of --names").ShowDefault();
    verb.AddOption("--sheets", o->patterns,
                   "Outputs of each sheet, such as maps/{number}.pdf; {name} and {scale} too; beside the plan")
        .Repeatable()
        .Default("PLAN.sheets/{number}.svg");
    verb.AddOption("--draw", o->extra, "Options of draw for each sheet, as one text: \"--dpi 300 --mono\"");
    verb.AddOption("--rules", o->rules, "Rules file, or the name of one of the default data");
    PlaneOptions& plane = o->source.plane;
    verb.AddOption("--system", plane.system, "As for draw").OneOf({"54", "80", "84", "2000"});
    verb.AddOption("--zone", plane.zoneWidth, "As for draw").OneOf({3, 6});
    verb.AddOption("--meridian", plane.meridian, "As for draw").Within(-180.0, 360.0);
    verb.AddOption("--easting", plane.easting, "As for draw").OneOf({"standard", "offset", "natural"});
    verb.AddOption("--datum", plane.datum, "As for draw").OneOf({"shift", "keep"});
    verb.AddOption("--source", plane.source, "As for draw");
    verb.AddOption("--encoding", o->source.encoding, "As for draw");
    verb.AddFlag("--overwrite", o->overwrite, "Replace a plan that exists");
    AddCommonOptions(verb, context);
    verb.OnRun([o, &context] { MakePlan(*o, context); });
}

void AddDraw(Verb series, Context& context, bool retry) {
    const Verb verb =
        series.AddVerb(retry ? "retry" : "draw", retry ? "Draw what failed once more" : "Draw what is due");
    const auto o = std::make_shared<DrawOptions>();
    o->retry = retry;
    verb.AddOption("PLAN", o->plan, "The plan").Required();
    verb.AddOption("--only", o->only, "Numbers of sheets, drawn whatever their state");
    verb.AddFlag("--dry-run", o->dryRun, "List what would be drawn; nothing is drawn");
    if (!retry) {
        verb.AddFlag("--all", o->all, "All sheets, whatever their state");
        verb.AddFlag("--changed", o->changed, "All sheets whose features, rules, symbols or program have changed");
        verb.AddOption("--changed-since", o->changedSince, "Sheets with features changed at that time or later");
        verb.AddOption("--changed-field", o->changedField, "For --changed-since: field with the time of change");
    }
    EngineOptions& e = o->engine;
    verb.AddOption("--engine", e.name,
                   "local: this process; parallel: GNU parallel; slurm: a job array; list: print the commands")
        .OneOf({"local", "parallel", "slurm", "list"})
        .ShowDefault();
    verb.AddOption("--jobs", e.jobs, "Processes at once (of slurm: tasks)").Within(1, 100000).Default("the processors");
    verb.AddOption("--hosts", e.hosts, "parallel: machines as for its -S (4/node1,node2)");
    verb.AddOption("--ssh", e.ssh, "parallel: in place of ssh");
    verb.AddOption("--retries", e.retries, "parallel: tries of a chunk").Within(1, 100).ShowDefault();
    verb.AddOption("--chunk-minutes", e.chunkMinutes, "Estimated work in a chunk").Within(0.001, 1440.0).ShowDefault();
    verb.AddOption("--partition", e.partition, "slurm: the partition");
    verb.AddOption("--sbatch", e.extra, "slurm: further options of sbatch, as one text");
    AddCommonOptions(verb, context);
    verb.OnRun([o, &context] { DrawSeries(*o, context); });
}

}  // namespace

void AddSeriesVerb(Verb app, Context& context) {
    const Verb series = app.AddVerb("series", "Many sheets: plan, draw on one machine or many, follow");
    series.NeedsVerb();
    AddPlan(series, context);
    AddDraw(series, context, false);
    AddDraw(series, context, true);

    struct Names {
        std::string plan, output;
        int chunk = 0, jobs = 0;
        bool overwrite = false;
    };
    const auto o = std::make_shared<Names>();
    const Verb status = series.AddVerb("status", "Count the sheets by state, tell failures, estimate the end");
    status.AddOption("PLAN", o->plan, "The plan").Required();
    status.AddOption("--jobs", o->jobs, "Processes to estimate for").Default("the processors");
    AddCommonOptions(status, context);
    status.OnRun([o, &context] { Status(o->plan, o->jobs, context); });

    const Verb index = series.AddVerb("index", "Write a page with a picture of the division, or GeoJSON");
    index.AddOption("PLAN", o->plan, "The plan").Required();
    index.AddOption("-o,--output", o->output, "A .html or a .geojson").Required();
    index.AddFlag("--overwrite", o->overwrite, "Replace a file that exists");
    AddCommonOptions(index, context);
    index.OnRun([o] { WriteIndex(o->plan, o->output, o->overwrite); });

    const Verb work = series.AddVerb("work", "Draw one chunk of a run: what every engine calls");
    work.AddOption("RUN", o->plan, "PLAN.run/run-N.jsonl").Required();
    work.AddOption("--chunk", o->chunk, "Number of the chunk, from 1").Required();
    work.AddOption("--jobs", o->jobs, "Processes at once").Default("1");
    AddCommonOptions(work, context);
    work.OnRun([o, &context] { Work(o->plan, o->chunk, std::max(o->jobs, 1), context); });
}

}  // namespace zm::tool
