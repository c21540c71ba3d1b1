// One run over a plan: which sheets are to be drawn, in which chunks, and the folder that all its processes share.
//
// PLAN.run/
//   lock          held while a run goes on; says by whom
//   run-N.jsonl   the settings of the series, then a sheet a line: all that a drawing process needs
//   run-N.chunks  the first and last sheet of each chunk
//   logs/         what happened: a file for each process that draws
#pragma once

#include <filesystem>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "tools/zenro/series/plan.h"
#include "tools/zenro/series/record.h"

namespace zm::tool {

/// Where the runs of a plan live.
std::filesystem::path RunFolder(const std::string& plan);

/// Holds a plan for one run. Throws Failure (kFailed) where another holds it, and says who.
class PlanLock {
 public:
    explicit PlanLock(const std::filesystem::path& folder);
    ~PlanLock();
    PlanLock(const PlanLock&) = delete;
    PlanLock& operator=(const PlanLock&) = delete;

 private:
    int m_file = -1;
};

struct SeriesRun {
    long long number = 0;
    bool changedOnly = false;                     // what has not changed is not drawn
    std::map<std::string, std::string> settings;  // of the plan
    std::vector<PlanSheet> sheets;
    std::vector<std::pair<std::size_t, std::size_t>> chunks;  // first and last sheet of each, from 0
};

/// The number of the next run: above all that the plan and the folder know.
long long NextRun(const Plan& plan, const std::filesystem::path& folder);
/// Cuts neighbouring sheets into chunks of so many seconds, by their estimated cost; at most so many chunks.
std::vector<std::pair<std::size_t, std::size_t>> CutChunks(const std::vector<PlanSheet>& sheets, double seconds,
                                                           std::size_t most);
/// Writes the files of a run; gives the path of the first.
std::filesystem::path WriteRun(const SeriesRun& run, const std::filesystem::path& folder);
/// Throws Failure (kNoInput).
SeriesRun ReadRun(const std::filesystem::path& file);

}  // namespace zm::tool
