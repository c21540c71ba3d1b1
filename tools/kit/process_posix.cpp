#include <signal.h>
#include <unistd.h>

#include <cstring>

#include "tools/kit/output_file.h"
#include "tools/kit/process.h"
#include "tools/kit/text.h"
#include "tools/kit/tool_host.h"

namespace zm::tool {
namespace {

volatile sig_atomic_t g_stop = 0;

extern "C" void OnStopSignal(int) {
    if (g_stop != 0) {
        RemoveUnfinishedOutputs();
        _exit(kStopped);
    }
    g_stop = 1;
}

// Whoever reads the results has enough of them: that is no error, and nothing is said.
extern "C" void OnClosedPipe(int) {
    RemoveUnfinishedOutputs();
    signal(SIGPIPE, SIG_DFL);
    raise(SIGPIPE);
}

}  // namespace

void CatchStopSignals() {
    struct sigaction action;
    std::memset(&action, 0, sizeof action);
    action.sa_handler = OnStopSignal;  // no SA_RESTART: a read that waits for input must return
    sigemptyset(&action.sa_mask);
    sigaction(SIGINT, &action, nullptr);
    sigaction(SIGTERM, &action, nullptr);
    sigaction(SIGHUP, &action, nullptr);
    action.sa_handler = OnClosedPipe;
    sigaction(SIGPIPE, &action, nullptr);
    signal(SIGXFSZ, SIG_IGN);  // a file beyond the limit of its size is a failed write, reported as such
}

bool StopRequested() {
    return g_stop != 0;
}

std::vector<std::string> Arguments(int argc, char** argv) {
    if (argc < 1) return {"zenro"};
    return {argv, argv + argc};
}

std::FILE* OpenFile(const std::filesystem::path& path, const char* mode) {
    return std::fopen(path.c_str(), mode);
}

bool IsTerminal(std::FILE* stream) {
    return isatty(fileno(stream)) == 1;
}

unsigned int TerminalText::s_previous = 0;
TerminalText::TerminalText() = default;
TerminalText::~TerminalText() = default;
void TerminalText::Restore() {}

std::string InstalledChineseFace() {
    std::FILE* pipe = popen("fc-list :lang=zh family 2>/dev/null", "r");
    if (pipe == nullptr) return {};
    std::string first;
    char line[512];
    while (std::fgets(line, sizeof line, pipe) != nullptr)
        if (first.empty()) first = Trim(line);
    pclose(pipe);
    return first.substr(0, first.find(','));
}

}  // namespace zm::tool
