// Who draws the chunks of a run: this process, GNU parallel on this and other machines, a Slurm, or anyone by commands.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "tools/zenro/series/run.h"
#include "tools/zenro/verbs/verbs.h"

namespace zm::tool {

struct EngineOptions {
    std::string name = "local";      // local, parallel, slurm, list
    int jobs = 0;                    // processes on this machine, or in all of Slurm; 0: the processors, no limit
    std::vector<std::string> hosts;  // of parallel: as its -S takes them
    std::string ssh;                 // of parallel: in place of ssh
    int retries = 3;                 // of a chunk that was given up
    double chunkMinutes = 5.0;       // of estimated work in a chunk
    std::string partition, extra;    // of Slurm: the partition, further options of sbatch
};

/// Refuses a run where an earlier one still draws in Slurm. Throws Failure (kFailed).
void RefuseWhereStillDrawn(const std::filesystem::path& folder);

/// Has the chunks of a run drawn and waits for the end. file: of the run. Stopped takes the work back.
/// \return kDone, or the status of what gave up; what is not drawn stays due
int DrawRun(const SeriesRun& run, const std::filesystem::path& file, const EngineOptions& options, Context& context);

/// The most chunks that an engine takes at once.
std::size_t MostChunks(const std::string& engine);

/// A text as one word of a shell.
std::string Quoted(const std::string& text);

}  // namespace zm::tool
