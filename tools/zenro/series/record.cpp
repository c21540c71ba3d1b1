#include "tools/zenro/series/record.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <fstream>
#include <random>

#include <nlohmann/json.hpp>

#include "tools/kit/exit_codes.h"
#include "tools/kit/json_numbers.h"
#include "tools/kit/translation.h"

namespace fs = std::filesystem;

namespace zm::tool {
namespace {

using Json = nlohmann::ordered_json;

// The better end of two in one run: drawn, then drawn in part, then empty, then held, then failed.
int Rank(const SheetRecord& r) {
    if (r.held) return 1;
    switch (r.state) {
        case SheetState::done:
            return 4;
        case SheetState::partly:
            return 3;
        case SheetState::empty:
            return 2;
        default:
            return 0;
    }
}

bool CountsMore(const SheetRecord& a, const SheetRecord& b) {
    return a.run != b.run ? a.run > b.run : Rank(a) > Rank(b);
}

}  // namespace

std::string ToLine(const SheetRecord& r) {
    Json j;
    j["number"] = r.number;
    j["run"] = r.run;
    j["state"] = NameOf(r.state);
    j["status"] = r.status;
    j["unchanged"] = r.unchanged;
    j["held"] = r.held;
    j["reason"] = r.reason;
    j["seconds"] = r.seconds;
    j["features"] = r.features;
    j["warnings"] = r.warnings;
    j["input"] = r.input;
    j["source"] = r.source;
    j["files"] = Json::parse(r.files.empty() ? "[]" : r.files, nullptr, false);
    j["node"] = r.node;
    return j.dump(-1, ' ', false, Json::error_handler_t::replace);
}

bool FromLine(const std::string& line, SheetRecord& r) try {
    const Json j = Json::parse(line, nullptr, false);
    if (!j.is_object()) return false;
    r.number = j.at("number").get<std::string>();
    r.run = WholeOf<long long>(j.at("run"));
    if (!ReadState(j.at("state").get<std::string>(), r.state)) return false;
    r.status = WholeOf<int>(j.at("status"));
    r.unchanged = j.at("unchanged").get<bool>();
    r.held = j.at("held").get<bool>();
    r.reason = j.at("reason").get<std::string>();
    r.seconds = j.at("seconds").get<double>();
    r.features = WholeOf<long long>(j.at("features"));
    r.warnings = WholeOf<long long>(j.at("warnings"));
    r.input = j.at("input").get<std::string>();
    r.source = j.at("source").get<std::string>();
    r.files = j.at("files").dump();
    r.node = j.at("node").get<std::string>();
    return !r.number.empty();
} catch (const Json::exception&) {
    return false;
}

std::vector<SheetFile> FilesIn(const std::string& text) try {
    std::vector<SheetFile> files;
    for (const Json& file : Json::parse(text.empty() ? "[]" : text))
        files.push_back({file.at("path").get<std::string>(), WholeOf<std::uintmax_t>(file.at("bytes"))});
    return files;
} catch (const Json::exception&) {
    return {};
}

std::map<std::string, SheetRecord> ReadLogs(const fs::path& folder, long long& broken) {
    std::map<std::string, SheetRecord> records;
    broken = 0;
    std::error_code error;
    for (fs::directory_iterator entry(folder, error), end; !error && entry != end; entry.increment(error)) {
        if (entry->path().extension() != ".jsonl") continue;
        std::ifstream log(entry->path());
        std::string line;
        while (std::getline(log, line)) {
            SheetRecord record;
            if (!FromLine(line, record)) {
                ++broken;
                continue;
            }
            const auto found = records.find(record.number);
            if (found == records.end())
                records.emplace(record.number, record);
            else if (CountsMore(record, found->second))
                found->second = record;
        }
    }
    return records;
}

long long Merge(const std::map<std::string, SheetRecord>& records, Plan& plan) {
    long long changed = 0;
    for (PlanSheet& sheet : plan.sheets) {
        const auto found = records.find(sheet.number);
        if (found == records.end() || found->second.run < sheet.run) continue;
        const SheetRecord& r = found->second;
        sheet.run = r.run;
        sheet.reason = r.reason;
        sheet.node = r.node;
        sheet.state = r.held ? SheetState::due : r.state;
        ++changed;
        if (r.unchanged || r.held) continue;
        sheet.seconds = r.seconds;
        sheet.warnings = r.warnings;
        if (r.state == SheetState::failed) continue;
        sheet.input = r.input;
        sheet.files = r.files;
    }
    return changed;
}

std::string ThisNode() {
    char name[256] = {};
    if (gethostname(name, sizeof name - 1) != 0) std::strcpy(name, "unknown");
    // A scheduler may give several nodes of its own to one machine.
    const char* slurm = std::getenv("SLURMD_NODENAME");
    return std::string(slurm != nullptr ? slurm : name) + " " + std::to_string(getpid());
}

Log::Log(const fs::path& folder) {
    std::string name = ThisNode();
    for (char& c : name)
        if (c == ' ' || c == '/') c = '-';
    std::random_device chance;  // numbers of processes come again, on other nodes and after a start of the machine
    m_path = (folder / (name + "-" + std::to_string(chance()) + ".jsonl")).string();
    m_file = open(m_path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_APPEND | O_CLOEXEC, 0666);
    if (m_file < 0) throw Failure(kNoOutput, Phrase("{0}: cannot be written: {1}.", m_path, SystemError(errno)));
}

Log::~Log() {
    if (m_file >= 0) close(m_file);
}

void Log::Write(const SheetRecord& record) {
    const std::string line = ToLine(record) + "\n";
    const ssize_t written = write(m_file, line.data(), line.size());
    if (written != static_cast<ssize_t>(line.size()))
        throw Failure(kNoOutput, Phrase("{0}: cannot be written: {1}.", m_path,
                                        (written < 0 ? SystemError(errno) : Phrase("no room is left on the disk"))));
    fsync(m_file);
}

}  // namespace zm::tool
