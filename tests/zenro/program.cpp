#include "tests/zenro/program.h"

#include <fcntl.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cstdlib>
#include <set>
#include <thread>

#include "runtime/text/numbers.h"

namespace zm::test {
namespace {

namespace fs = std::filesystem;

pid_t Start(const fs::path& folder, const std::vector<std::string>& arguments,
            const std::vector<std::string>& environment) {
    const pid_t child = fork();
    if (child != 0) return child;
    const auto open3 = [&](const char* name, int flags, int target) {
        const int file = open((folder / name).c_str(), flags, 0600);
        if (file < 0 || dup2(file, target) < 0) _exit(126);
    };
    open3(".stdin", O_RDONLY, 0);
    open3(".stdout", O_WRONLY | O_CREAT | O_TRUNC, 1);
    open3(".stderr", O_WRONLY | O_CREAT | O_TRUNC, 2);
    if (chdir(folder.c_str()) != 0) _exit(126);
    setenv("XDG_CONFIG_HOME", (folder / ".config").c_str(), 1);
    setenv("XDG_RUNTIME_DIR", folder.c_str(), 1);
    setenv("ZENRO_LANGUAGE", "en", 1);  // whatever the machine speaks
    for (const std::string& one : environment) {
        const std::size_t equals = one.find('=');
        setenv(one.substr(0, equals).c_str(), one.substr(equals + 1).c_str(), 1);
    }
    std::vector<char*> argv;
    std::string program = ZENRO_PROGRAM;
    argv.push_back(program.data());
    std::vector<std::string> copy = arguments;
    for (std::string& one : copy) argv.push_back(one.data());
    argv.push_back(nullptr);
    execv(program.c_str(), argv.data());
    _exit(127);
}

Outcome Finish(const fs::path& folder, pid_t child) {
    int status = 0;
    waitpid(child, &status, 0);
    Outcome outcome;
    outcome.status = WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
    outcome.out = ReadFile(folder / ".stdout");
    outcome.err = ReadFile(folder / ".stderr");
    return outcome;
}

}  // namespace

Outcome Program::Run(const std::vector<std::string>& arguments, const std::string& input,
                     const std::vector<std::string>& environment) const {
    WriteFile(folder() / ".stdin", input);
    return Finish(folder(), Start(folder(), arguments, environment));
}

Outcome Program::Interrupt(const std::vector<std::string>& arguments, int signal) const {
    return RunStopped(
        arguments, {}, [&] { return !Unfinished().empty(); },
        [&](int process) {
            kill(process, signal);
            kill(process, SIGCONT);
        });
}

Outcome Program::RunStopped(const std::vector<std::string>& arguments, const std::vector<std::string>& environment,
                            const std::function<bool()>& when, const std::function<void(int)>& act) const {
    WriteFile(folder() / ".stdin", "");
    std::set<fs::path> before;
    for (const auto& entry : fs::directory_iterator(folder())) before.insert(entry.path());
    Outcome outcome;
    for (int run = 0; run < 20; ++run) {
        const pid_t child = Start(folder(), arguments, environment);
        siginfo_t info{};
        const auto ended = [&] {
            return waitid(P_PID, child, &info, WEXITED | WNOHANG | WNOWAIT) != 0 || info.si_pid != 0;
        };
        for (int i = 0; i < 15000 && !when() && !ended(); ++i)
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
        kill(child, SIGSTOP);
        waitid(P_PID, child, &info, WEXITED | WSTOPPED | WNOWAIT);
        const bool stopped = info.si_code == CLD_STOPPED && when();
        if (stopped)
            act(child);
        else
            kill(child, SIGCONT);
        outcome = Finish(folder(), child);
        if (stopped) break;
        for (const auto& entry : fs::directory_iterator(folder()))
            if (before.count(entry.path()) == 0) fs::remove_all(entry.path());
    }
    return outcome;
}

Outcome Program::RunKilledAfter(const std::vector<std::string>& arguments, int microseconds) const {
    WriteFile(folder() / ".stdin", "");
    // Each process of the run inherits the end for writing; with the last one the end for reading is at its end.
    int ends[2];
    if (pipe(ends) != 0) return {};
    const pid_t child = Start(folder(), arguments, {});
    close(ends[1]);
    std::this_thread::sleep_for(std::chrono::microseconds(microseconds));
    kill(child, SIGKILL);
    const Outcome outcome = Finish(folder(), child);
    char byte;
    while (read(ends[0], &byte, 1) > 0) {
    }
    close(ends[0]);
    return outcome;
}

Outcome Program::RunBeside(const std::vector<std::string>& arguments, const std::vector<std::string>& environment,
                           const std::function<void(int)>& act) const {
    WriteFile(folder() / ".stdin", "");
    const pid_t child = Start(folder(), arguments, environment);
    act(child);
    return Finish(folder(), child);
}

std::string Program::File(std::string_view name, std::string_view bytes) const {
    WriteFile(folder() / name, bytes);
    return (folder() / name).string();
}

std::vector<std::string> Program::Unfinished() const {
    std::vector<std::string> names;
    for (const auto& entry : fs::directory_iterator(folder())) {
        const std::string name = entry.path().filename().string();
        if (name.find(".part") != std::string::npos) names.push_back(name);
    }
    return names;
}

std::string Collection(const std::string& features) {
    return "{\"type\":\"FeatureCollection\",\"name\":\"things\",\"crs\":{\"type\":\"name\",\"properties\":{\"name\":"
           "\"urn:ogc:def:crs:EPSG::4528\"}},\"features\":[" +
           features + "]}";
}

std::string PointFeature(double x, double y, const std::string& properties) {
    return "{\"type\":\"Feature\",\"properties\":{" + properties +
           "},\"geometry\":{\"type\":\"Point\",\"coordinates\":[" + numbers::Text("%.3f,%.3f", x, y) + "]}}";
}

std::string LineFeature(const std::string& coordinates, const std::string& properties) {
    return "{\"type\":\"Feature\",\"properties\":{" + properties +
           "},\"geometry\":{\"type\":\"LineString\",\"coordinates\":[" + coordinates + "]}}";
}

std::string AreaFeature(const std::string& rings, const std::string& properties) {
    return "{\"type\":\"Feature\",\"properties\":{" + properties +
           "},\"geometry\":{\"type\":\"Polygon\",\"coordinates\":[" + rings + "]}}";
}

int Count(const std::string& text, const std::string& what) {
    int count = 0;
    for (std::size_t at = text.find(what); at != std::string::npos; at = text.find(what, at + what.size())) ++count;
    return count;
}

}  // namespace zm::test
