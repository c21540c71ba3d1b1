#include "tools/zenro/series/engine.h"

#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <sstream>
#include <thread>

#include "tools/kit/offspring.h"
#include "tools/kit/output_file.h"
#include "tools/kit/report.h"
#include "tools/kit/text.h"
#include "tools/kit/tool_host.h"
#include "tools/kit/translation.h"
#include "tools/zenro/series/worker.h"

namespace fs = std::filesystem;

namespace zm::tool {
namespace {

constexpr std::size_t kMostTasks = 1000;  // Slurm's arrays have 1001 numbers where nobody set another limit
constexpr std::size_t kMostLines = 100000;

struct Spoken {
    int status = -1;
    std::string out;
};

// Runs a command of the shell and takes what it says on stdout.
Spoken Ask(const std::string& command) {
    Spoken spoken;
    std::FILE* pipe = popen(command.c_str(), "r");
    if (pipe == nullptr) return spoken;
    char piece[4096];
    while (const std::size_t got = std::fread(piece, 1, sizeof piece, pipe)) spoken.out.append(piece, got);
    const int status = pclose(pipe);
    spoken.status = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    return spoken;
}

bool IsThere(const std::string& program) {
    return Ask("command -v " + program + " 2>/dev/null").status == 0;
}

std::string ThisProgram() {
    std::error_code error;
    const fs::path path = fs::read_symlink("/proc/self/exe", error);
    return error ? "zenro" : path.string();
}

std::string WorkCommand(const fs::path& file) {
    return Quoted(ThisProgram()) + " series work " + Quoted(file.string()) + " --chunk ";
}

fs::path Beside(const fs::path& file, const char* extension) {
    return fs::path(file).replace_extension(extension);
}

// ---- Slurm ----

std::string ScriptOf(const fs::path& file, const EngineOptions& options) {
    std::string script = "#!/bin/sh\n#SBATCH --job-name=zenro-series\n#SBATCH --requeue\n#SBATCH --open-mode=append\n";
    script += "#SBATCH --output=" + Beside(file, ".slurm-%a.out").string() + "\n";
    if (!options.partition.empty()) script += "#SBATCH --partition=" + options.partition + "\n";
    return script + "exec " + WorkCommand(file) + "\"$SLURM_ARRAY_TASK_ID\" --jobs \"${SLURM_CPUS_PER_TASK:-1}\"\n";
}

// The tasks of a job that are not at their end, a line each: "JOB TASK STATE REASON". True where squeue answered. All of
// the user's jobs are asked for: of a job that has long ended squeue says what it also says when it got no answer.
bool TasksOf(const std::string& job, std::string& tasks) {
    const Spoken spoken = Ask("squeue -h -r -u " + std::to_string(geteuid()) + " -o '%F %A %T %r' 2>/dev/null");
    tasks.clear();
    std::istringstream lines(spoken.out);
    for (std::string line; std::getline(lines, line);)
        if (line.rfind(job + " ", 0) == 0) tasks += line + "\n";
    return spoken.status == 0;
}

// A task of a node that died waits two minutes before it starts again; nothing is gained by that.
void StartWaiting(const std::string& tasks) {
    std::istringstream lines(tasks);
    for (std::string job, task, rest; lines >> job >> task && std::getline(lines, rest);)
        if (rest.find("BeginTime") != std::string::npos)
            Ask("scontrol update jobid=" + task + " starttime=now 2>/dev/null");
}

int DrawBySlurm(const SeriesRun& run, const fs::path& file, const EngineOptions& options, Context& context) {
    for (const char* program : {"sbatch", "squeue"})
        if (!IsThere(program))
            throw Failure(
                kFailed,
                Phrase("--engine slurm: {0} is not here; install slurm-client, or take --engine parallel.", program));
    const fs::path script = Beside(file, ".sbatch");
    WriteOutput(script, true, ScriptOf(file, options));
    const std::string throttle = options.jobs > 0 ? "%" + std::to_string(options.jobs) : "";
    const Spoken submitted = Ask("sbatch --parsable --array=1-" + std::to_string(run.chunks.size()) + throttle + " " +
                                 options.extra + " " + Quoted(script.string()));
    const std::string job = Trim(submitted.out.substr(0, submitted.out.find(';')));
    if (submitted.status != 0 || job.empty())
        throw Failure(kFailed, Phrase("--engine slurm: sbatch refused the job (status {0}).", submitted.status));
    WriteOutput(file.parent_path() / "slurm.job", true, job + "\n");
    context.report.Note(Phrase("slurm job {0}: {1} tasks.", job, run.chunks.size()));
    int silent = 0;
    constexpr int kMostSilent = 60;  // looks in a row that the controller does not answer
    while (true) {
        if (StopRequested()) {
            Ask("scancel " + job + " 2>/dev/null");
            throw Stopped{};
        }
        std::string tasks;
        silent = TasksOf(job, tasks) ? 0 : silent + 1;
        if (silent == 0 && tasks.empty()) break;
        if (silent > kMostSilent)
            throw Failure(
                kFailed,
                Phrase("slurm does not answer any more; the job goes on. Gather later: zenro series status PLAN"));
        StartWaiting(tasks);
        std::this_thread::sleep_for(std::chrono::milliseconds(500));
    }
    std::error_code ignored;
    fs::remove(file.parent_path() / "slurm.job", ignored);
    return kDone;
}

// ---- GNU parallel ----

std::string ParallelCommand(const SeriesRun& run, const fs::path& file, const EngineOptions& options) {
    std::string command = "parallel --will-cite --resume-failed --retries " + std::to_string(options.retries) +
                          " --joblog " + Quoted(Beside(file, ".joblog").string());
    if (options.jobs > 0) command += " -j" + std::to_string(options.jobs);
    if (!options.ssh.empty()) command += " --ssh " + Quoted(options.ssh);
    for (const std::string& host : options.hosts) command += " -S " + Quoted(host);
    return command + " " + Quoted(WorkCommand(file) + "{}") + " ::: $(seq 1 " + std::to_string(run.chunks.size()) + ")";
}

int DrawByParallel(const SeriesRun& run, const fs::path& file, const EngineOptions& options) {
    if (!IsThere("parallel"))
        throw Failure(
            kFailed,
            Phrase("--engine parallel: GNU parallel is not here; install parallel, or draw without --engine."));
    std::fflush(stdout);
    const int status = std::system(ParallelCommand(run, file, options).c_str());
    if (StopRequested()) throw Stopped{};
    return WIFEXITED(status) && WEXITSTATUS(status) == 0 ? kDone : kFailed;
}

void PrintCommands(const SeriesRun& run, const fs::path& file) {
    for (std::size_t chunk = 1; chunk <= run.chunks.size(); ++chunk)
        WriteLine(WorkCommand(file) + std::to_string(chunk));
}

}  // namespace

std::string Quoted(const std::string& text) {
    std::string quoted = "'";
    for (const char c : text) quoted += c == '\'' ? std::string("'\\''") : std::string(1, c);
    return quoted + "'";
}

std::size_t MostChunks(const std::string& engine) {
    return engine == "slurm" ? kMostTasks : kMostLines;
}

void RefuseWhereStillDrawn(const fs::path& folder) {
    std::ifstream in(folder / "slurm.job");
    std::string job, tasks;
    if (!(in >> job) || job.find_first_not_of("0123456789") != std::string::npos) return;
    if (TasksOf(job, tasks) && !tasks.empty())
        throw Failure(
            kFailed,
            Phrase("slurm job {0} of an earlier run still draws this plan; wait, or end it: scancel {0}", job));
}

int DrawRun(const SeriesRun& run, const fs::path& file, const EngineOptions& options, Context& context) {
    if (options.name == "slurm") return DrawBySlurm(run, file, options, context);
    if (options.name == "parallel") return DrawByParallel(run, file, options);
    if (options.name == "list") {
        PrintCommands(run, file);
        return kDone;
    }
    const int jobs = options.jobs > 0 ? options.jobs : UsableProcessors();
    return DrawSheets(run, 0, run.sheets.size() - 1, jobs, file.parent_path() / "logs", context);
}

}  // namespace zm::tool
