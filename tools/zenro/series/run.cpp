#include "tools/zenro/series/run.h"

#include <fcntl.h>
#include <pwd.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <ctime>
#include <fstream>

#include <nlohmann/json.hpp>

#include "tools/kit/exit_codes.h"
#include "tools/kit/json_numbers.h"
#include "tools/kit/output_file.h"
#include "tools/kit/text.h"
#include "tools/kit/translation.h"

namespace fs = std::filesystem;

namespace zm::tool {
namespace {

using Json = nlohmann::ordered_json;

std::string Holder() {
    const passwd* user = getpwuid(geteuid());
    char when[64] = {};
    const std::time_t now = std::time(nullptr);
    std::tm parts{};
    localtime_r(&now, &parts);
    std::strftime(when, sizeof when, "%Y-%m-%d %H:%M:%S", &parts);
    return (user != nullptr ? user->pw_name : "unknown") + std::string(" on ") + ThisNode() + ", since " + when;
}

Json Packed(const PlanSheet& s) {
    return Json{{"number", s.number},
                {"name", s.name},
                {"box", {s.box.x1, s.box.y1, s.box.x2, s.box.y2}},
                {"neighbours", s.neighbours},
                {"cost", s.cost},
                {"input", s.input},
                {"files", s.files}};
}

PlanSheet Unpacked(const Json& j) {
    PlanSheet s;
    s.number = j.at("number").get<std::string>();
    s.name = j.at("name").get<std::string>();
    const Json& b = j.at("box");
    s.box = {b.at(0).get<double>(), b.at(1).get<double>(), b.at(2).get<double>(), b.at(3).get<double>()};
    for (std::size_t i = 0; i < 8; ++i) s.neighbours[i] = j.at("neighbours").at(i).get<std::string>();
    s.cost = j.at("cost").get<double>();
    s.input = j.at("input").get<std::string>();
    s.files = j.at("files").get<std::string>();
    return s;
}

}  // namespace

fs::path RunFolder(const std::string& plan) {
    return fs::absolute(fs::path(plan)).replace_extension(".run");
}

PlanLock::PlanLock(const fs::path& folder) {
    const fs::path path = folder / "lock";
    // Neither a link nor another name of somebody's file is written through, and no pipe is waited for.
    m_file = open(path.c_str(), O_RDWR | O_CREAT | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC, 0666);
    struct stat found {};
    if (m_file < 0 || fstat(m_file, &found) != 0)
        throw Failure(kNoOutput, Phrase("{0}: cannot be written: {1}.", path.string(), SystemError(errno)));
    if (!S_ISREG(found.st_mode) || found.st_nlink > 1) {
        close(m_file);
        throw Failure(kNoOutput, Phrase("{0}: is no file of a run; remove it.", path.string()));
    }
    if (flock(m_file, LOCK_EX | LOCK_NB) != 0) {
        std::string who(256, '\0');
        const ssize_t got = pread(m_file, who.data(), who.size(), 0);
        who.resize(got > 0 ? static_cast<std::size_t>(got) : 0);
        close(m_file);
        throw Failure(
            kFailed,
            Phrase("{0}: another run holds the plan: {1}. Wait for its end; zenro series status shows how far it is.",
                   path.string(), Trim(who)));
    }
    const std::string who = Holder() + "\n";
    if (ftruncate(m_file, 0) != 0 || pwrite(m_file, who.data(), who.size(), 0) != static_cast<ssize_t>(who.size()))
        throw Failure(kNoOutput, Phrase("{0}: cannot be written: {1}.", path.string(), SystemError(errno)));
}

PlanLock::~PlanLock() {
    if (m_file < 0) return;
    if (ftruncate(m_file, 0) != 0) errno = 0;  // who held it is of no interest any more
    close(m_file);
}

long long NextRun(const Plan& plan, const fs::path& folder) {
    long long last = 0;
    for (const PlanSheet& sheet : plan.sheets) last = std::max(last, sheet.run);
    std::error_code error;
    for (fs::directory_iterator entry(folder, error), end; !error && entry != end; entry.increment(error)) {
        const std::string name = entry->path().stem().string();
        int number = 0;
        if (name.rfind("run-", 0) == 0 && ReadWhole(name.substr(4), number)) last = std::max<long long>(last, number);
    }
    return last + 1;
}

std::vector<std::pair<std::size_t, std::size_t>> CutChunks(const std::vector<PlanSheet>& sheets, double seconds,
                                                           std::size_t most) {
    double whole = 0.0;
    for (const PlanSheet& sheet : sheets) whole += sheet.cost;
    seconds = std::max(seconds, whole / static_cast<double>(std::max<std::size_t>(most, 1)) * 1.001);
    std::vector<std::pair<std::size_t, std::size_t>> chunks;
    double cost = 0.0;
    for (std::size_t i = 0; i < sheets.size(); ++i) {
        const bool full = !chunks.empty() && cost + sheets[i].cost > seconds && chunks.size() < most;
        if (chunks.empty() || full) {
            chunks.emplace_back(i, i);
            cost = 0.0;
        }
        chunks.back().second = i;
        cost += sheets[i].cost;
    }
    return chunks;
}

fs::path WriteRun(const SeriesRun& run, const fs::path& folder) {
    fs::path file = folder / ("run-" + std::to_string(run.number) + ".jsonl");
    std::string text =
        Json{{"run", run.number}, {"changed_only", run.changedOnly}, {"settings", run.settings}}.dump() + "\n";
    for (const PlanSheet& sheet : run.sheets) text += Packed(sheet).dump() + "\n";
    WriteOutput(file, true, text);
    std::string chunks;
    for (const auto& [first, last] : run.chunks) chunks += std::to_string(first) + " " + std::to_string(last) + "\n";
    WriteOutput(fs::path(file).replace_extension(".chunks"), true, chunks);
    return file;
}

SeriesRun ReadRun(const fs::path& file) try {
    std::ifstream in(file);
    std::string line;
    if (!std::getline(in, line))
        throw Failure(kNoInput, Phrase("{0}: no such run. zenro series draw makes one.", file.string()));
    SeriesRun run;
    const Json head = Json::parse(line);
    run.number = WholeOf<long long>(head.at("run"));
    run.changedOnly = head.at("changed_only").get<bool>();
    run.settings = head.at("settings").get<std::map<std::string, std::string>>();
    while (std::getline(in, line)) run.sheets.push_back(Unpacked(Json::parse(line)));
    std::ifstream chunks(fs::path(file).replace_extension(".chunks"));
    for (std::size_t first = 0, last = 0; chunks >> first >> last;) {
        if (first > last || last >= run.sheets.size())
            throw Failure(kNoInput,
                          Phrase("{0}: its chunks do not fit its sheets; draw the series anew.", file.string()));
        run.chunks.emplace_back(first, last);
    }
    if (in.bad() || chunks.bad())
        throw Failure(kNoInput, Phrase("{0}: cannot be read: {1}.", file.string(), SystemError(errno)));
    return run;
} catch (const Json::exception&) {
    throw Failure(kNoInput, Phrase("{0}: is no run of a series, or not whole; draw the series anew.", file.string()));
}

}  // namespace zm::tool
