#include "tools/zenro/series/worker.h"

#include <sys/stat.h>

#include <algorithm>
#include <chrono>
#include <cstring>

#include <nlohmann/json.hpp>

#include "tools/kit/digest.h"
#include "tools/kit/offspring.h"
#include "tools/kit/shown_text.h"
#include "tools/kit/text.h"
#include "tools/kit/tool_host.h"
#include "tools/kit/translation.h"

namespace fs = std::filesystem;

namespace zm::tool {
namespace {

using Json = nlohmann::ordered_json;
using Settings = std::map<std::string, std::string>;

constexpr int kPatience = 3;  // sheets in a row that fail by the source or the disk

std::string Setting(const Settings& settings, const std::string& key) {
    const auto found = settings.find(key);
    return found != settings.end() ? found->second : std::string();
}

std::vector<std::string> ListOf(const Settings& settings, const std::string& key) {
    const Json list = Json::parse(Setting(settings, key), nullptr, false);
    return list.is_array() ? list.get<std::vector<std::string>>() : std::vector<std::string>();
}

// A part of a file name that every system takes: no separators, no devices' signs, no leading dot.
std::string FileSafe(std::string text) {
    for (char& c : text)
        if (static_cast<unsigned char>(c) < 32 || std::strchr("/\\:*?\"<>|", c) != nullptr) c = '_';
    if (!text.empty() && text.front() == '.') text.front() = '_';
    return text;
}

bool AreWhole(const std::string& files) {
    const std::vector<SheetFile> list = FilesIn(files);
    return !list.empty() && std::all_of(list.begin(), list.end(), [](const SheetFile& file) {
        std::error_code error;
        return fs::file_size(file.path, error) == file.bytes && !error;
    });
}

// What the verb draw made of it: its status as the program would have it.
int RunDraw(const std::vector<std::string>& arguments, Context& context, std::string& json, std::string& reason) {
    Context inner{context.report, context.host};
    inner.capture = &json;
    CommandLine line("", "");
    line.root().NeedsVerb();
    AddDrawVerb(line.root(), inner);
    try {
        const ParseResult parsed = line.Parse(arguments);
        if (parsed.kind == ParseResult::Kind::run) return inner.status;
        reason = parsed.text;
        return kUsage;
    } catch (const Failure& failure) {
        reason = failure.what();
        return failure.status;
    } catch (const LibraryStop& stop) {
        reason = Phrase("the library ended the work with status {0}: {1}", stop.status, inner.host.lastMessage());
        return kFailed;
    } catch (const std::bad_alloc&) {
        reason = Phrase("out of memory");
        return kFailed;
    }
}

SheetState StateOf(int status) {
    return status == kDone     ? SheetState::done
           : status == kPartly ? SheetState::partly
           : status == kEmpty  ? SheetState::empty
                               : SheetState::failed;
}

void TakeResult(const std::string& json, SheetRecord& record) {
    const Json j = Json::parse(json, nullptr, false);
    if (!j.is_object()) return;
    record.features = j.value("features", 0LL);
    record.input = j.value("input_sha256", "");
    record.unchanged = j.value("unchanged", false);
    if (j.value("empty", false)) record.state = SheetState::empty;
    record.files = j.contains("outputs") ? j.at("outputs").dump() : "[]";
    for (const auto& [kind, count] : j.at("reports").items()) {
        record.warnings += count.get<long long>();
        record.reason += (record.reason.empty() ? "" : "; ") + kind + ": " + std::to_string(count.get<long long>());
    }
}

SheetRecord NewRecord(const SeriesRun& run, const PlanSheet& sheet) {
    SheetRecord record;
    record.number = sheet.number;
    record.run = run.number;
    record.node = ThisNode();
    return record;
}

// In the process of the sheet: a line of the log comes of it, whatever happens.
std::string DrawOne(const SeriesRun& run, const PlanSheet& sheet, Context& context) {
    const auto start = std::chrono::steady_clock::now();
    SheetRecord record = NewRecord(run, sheet);
    record.source = StampOfSource(run.settings);
    std::vector<std::string> arguments = ArgumentsOf(run.settings, sheet);
    if (run.changedOnly && !sheet.input.empty() && AreWhole(sheet.files))
        arguments.insert(arguments.end(), {"--unless-input", sheet.input});
    for (const std::string& file : FilesOf(run.settings, sheet)) {
        std::error_code error;
        if (fs::path(file).has_parent_path()) fs::create_directories(fs::path(file).parent_path(), error);
    }
    std::string json;
    record.status = RunDraw(arguments, context, json, record.reason);
    record.reason = WithoutSecrets(record.reason);
    record.state = StateOf(record.status);
    TakeResult(json, record);
    record.held = record.status == kNoInput || record.status == kNoOutput;
    if (record.source != StampOfSource(run.settings)) {
        record.held = true;
        record.reason = Phrase("the source changed while the sheet was drawn; draw it again");
    }
    record.seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
    return ToLine(record);
}

SheetRecord RecordOf(const SeriesRun& run, const PlanSheet& sheet, const Ending& ending) {
    SheetRecord record = NewRecord(run, sheet);
    if (!ending.lost && ending.how == 'd' && FromLine(ending.text, record)) return record;
    record.status = kFailed;
    record.state = SheetState::failed;
    record.reason = ending.signal != 0 ? Phrase("the process of the sheet was ended by signal {0}", ending.signal)
                    : ending.lost      ? Phrase("the process of the sheet ended without a word")
                                       : ending.text;
    return record;
}

}  // namespace

std::vector<std::string> FilesOf(const Settings& settings, const PlanSheet& sheet) {
    std::vector<std::string> files = ListOf(settings, "outputs");
    const std::pair<const char*, std::string> kParts[] = {
        {"{number}", FileSafe(sheet.number)},
        {"{name}", FileSafe(sheet.name.empty() ? sheet.number : sheet.name)},
        {"{scale}", Setting(settings, "scale")}};
    for (std::string& file : files)
        for (const auto& [key, value] : kParts)
            for (std::size_t at = 0; (at = file.find(key, at)) != std::string::npos; at += value.size())
                file.replace(at, std::strlen(key), value);
    return files;
}

std::vector<std::string> ArgumentsOf(const Settings& settings, const PlanSheet& sheet) {
    std::vector<std::string> arguments = {"draw"};
    const auto add = [&](const std::vector<std::string>& more) {
        arguments.insert(arguments.end(), more.begin(), more.end());
    };
    add(ListOf(settings, "inputs"));
    add(ListOf(settings, "arguments"));
    add({"--number", sheet.number, "--json", "--quiet", "--overwrite", "--jobs", "1"});
    if (Setting(settings, "division") != "graticule") {
        const Box& b = sheet.box;
        add({"--sheet=" + Fixed(b.x1, 4) + "," + Fixed(b.y1, 4) + "," + Fixed(b.x2, 4) + "," + Fixed(b.y2, 4)});
    }
    const bool given = std::any_of(arguments.begin(), arguments.end(),
                                   [](const std::string& one) { return one.rfind("--adjoining", 0) == 0; });
    std::string numbers;
    for (const std::string& number : sheet.neighbours) numbers += number + ",";
    numbers.pop_back();
    if (!given && numbers.find_first_not_of(',') != std::string::npos) add({"--adjoining=" + numbers});
    if (std::find(arguments.begin(), arguments.end(), "--title") == arguments.end())
        add({"--title", sheet.name.empty() ? sheet.number : sheet.name});
    for (const std::string& file : FilesOf(settings, sheet)) add({"-o", file});
    return arguments;
}

std::string StampOfSource(const Settings& settings) {
    Digest digest;
    for (const std::string& input : ListOf(settings, "inputs")) {
        struct stat found {};
        if (stat(input.c_str(), &found) != 0) continue;
        digest.AddText(input + " " + std::to_string(found.st_size) + " " + std::to_string(found.st_mtim.tv_sec) + "." +
                       std::to_string(found.st_mtim.tv_nsec));
    }
    return digest.Hex().substr(0, 16);
}

int DrawSheets(const SeriesRun& run, std::size_t first, std::size_t last, int jobs, const fs::path& logs,
               Context& context) {
    const std::string folder = Setting(run.settings, "folder");
    std::error_code error;
    if (!folder.empty()) fs::current_path(folder, error);
    if (error)
        throw Failure(kNoInput,
                      Phrase("{0}: the folder of the series cannot be entered here: {1}.", folder, error.message()));
    long long broken = 0;
    const auto before = ReadLogs(logs, broken);
    std::vector<const PlanSheet*> sheets;
    for (std::size_t i = first; i <= last && i < run.sheets.size(); ++i) {
        const auto found = before.find(run.sheets[i].number);
        const bool drawn = found != before.end() && found->second.run == run.number && !found->second.held &&
                           found->second.state != SheetState::failed;
        if (!drawn) sheets.push_back(&run.sheets[i]);
    }
    Log log(logs);
    int status = kDone, inARow = 0;
    RunSideBySide(
        static_cast<int>(sheets.size()), jobs, context.report,
        [&](int piece) { return DrawOne(run, *sheets[static_cast<std::size_t>(piece)], context); },
        [&](int piece, Ending& ending) {
            if (!ending.lost && ending.how == 's') return false;
            const SheetRecord record = RecordOf(run, *sheets[static_cast<std::size_t>(piece)], ending);
            log.Write(record);
            inARow = record.held ? inARow + 1 : 0;
            // Another try may do better: schedulers go by the status. A sheet that failed by itself is the log's matter.
            if (record.held) status = record.status == kDone ? static_cast<int>(kPartly) : record.status;
            if (inARow >= kPatience) {
                if (record.status == kDone) status = kFailed;
                context.report.Error(
                    Phrase("given up after {0} sheets in a row that could not be drawn: {1} The sheets stay due.",
                           kPatience, record.reason));
                return false;
            }
            if (record.state == SheetState::failed && !record.held)
                context.report.Error(record.number + ": " + record.reason);
            return true;
        });
    return status;
}

}  // namespace zm::tool
