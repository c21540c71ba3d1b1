#include "tools/kit/offspring.h"

#include <poll.h>
#include <sched.h>
#include <signal.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstring>

#include "tools/kit/output_file.h"
#include "tools/kit/qt_module.h"
#include "tools/kit/tool_host.h"
#include "tools/kit/translation.h"

namespace zm::tool {
namespace {

constexpr int kPatience = 100;  // milliseconds between looks at the stop signal

// How a piece ended, as its process reports it.
enum class End : char { done = 'd', failure = 'f', stopped = 's', libraryStop = 'l', unexpected = 'u' };

void PutText(std::string& bytes, const std::string& text) {
    bytes += std::to_string(text.size()) + ":" + text;
}

bool TakeText(const std::string& bytes, std::size_t& at, std::string& text) {
    const std::size_t colon = bytes.find(':', at);
    if (colon == std::string::npos) return false;
    const std::size_t size = std::strtoull(bytes.c_str() + at, nullptr, 10);
    if (size > bytes.size() - colon - 1) return false;
    text = bytes.substr(colon + 1, size);
    at = colon + 1 + size;
    return true;
}

// What a process sends: how it ended, a status, a text, then its reports.
std::string Packed(End end, int status, const std::string& text, const std::vector<ReportedEvent>& events) {
    std::string bytes(1, static_cast<char>(end));
    PutText(bytes, std::to_string(status));
    PutText(bytes, text);
    for (const ReportedEvent& e : events) {
        PutText(bytes, std::to_string(static_cast<int>(e.kind)));
        PutText(bytes, e.group);
        PutText(bytes, e.line);
        PutText(bytes, std::to_string(e.amount));
    }
    PutText(bytes, "end");
    return bytes;
}

Ending Unpacked(const std::string& bytes) {
    Ending ending;
    std::string status, kind, group, line, amount;
    std::size_t at = 1;
    if (bytes.empty() || !TakeText(bytes, at, status) || !TakeText(bytes, at, ending.text)) return ending;
    ending.how = bytes[0];
    ending.status = std::atoi(status.c_str());
    while (TakeText(bytes, at, kind)) {
        if (kind == "end") {
            ending.lost = false;
            break;
        }
        if (!TakeText(bytes, at, group) || !TakeText(bytes, at, line) || !TakeText(bytes, at, amount)) break;
        ending.events.push_back(
            {static_cast<ReportedEvent::Kind>(std::atoi(kind.c_str())), group, line, std::atol(amount.c_str())});
    }
    return ending;
}

std::string Worked(int piece, Report& report, const std::function<std::string(int)>& work) {
    std::vector<ReportedEvent> events;
    report.Collect(&events);
    try {
        const std::string given = work(piece);
        return Packed(End::done, kDone, given, events);
    } catch (const Failure& failure) {
        return Packed(End::failure, failure.status, failure.what(), events);
    } catch (const Stopped&) {
        return Packed(End::stopped, kStopped, {}, events);
    } catch (const LibraryStop& stop) {
        return Packed(End::libraryStop, stop.status, {}, events);
    } catch (const std::exception& error) {
        return Packed(End::unexpected, kFailed, error.what(), events);
    }
}

void SendAll(int pipe, const std::string& bytes) {
    for (std::size_t done = 0; done < bytes.size();) {
        const ssize_t written = write(pipe, bytes.data() + done, bytes.size() - done);
        if (written < 0 && errno == EINTR) continue;
        if (written <= 0) return;
        done += static_cast<std::size_t>(written);
    }
}

struct Child {
    int piece = -1;
    pid_t pid = -1;
    int pipe = -1;
    std::string bytes;
};

Child Start(int piece, Report& report, const std::function<std::string(int)>& work) {
    NameRuntimeDirectory();
    int ends[2];
    if (pipe(ends) != 0) throw Failure(kFailed, Phrase("no process can be started: {0}.", SystemError(errno)));
    std::fflush(stdout);
    const pid_t parent = getpid(), pid = fork();
    if (pid < 0) throw Failure(kFailed, Phrase("no process can be started: {0}.", SystemError(errno)));
    if (pid == 0) {
        // Who waits for it may be killed: what it draws then must not come into its place after the next run's.
        prctl(PR_SET_PDEATHSIG, SIGKILL);
        if (getppid() != parent) _exit(0);
        close(ends[0]);
        SendAll(ends[1], Worked(piece, report, work));
        // Nothing of the parent's is ended here: its connections and files stay its own.
        _exit(0);
    }
    close(ends[1]);
    return {piece, pid, ends[0], {}};
}

[[noreturn]] void Rethrow(const Ending& ending) {
    if (ending.lost)
        throw Failure(kFailed, ending.signal != 0
                                   ? Phrase("a process that drew was ended by signal {0}; draw again.", ending.signal)
                                   : Phrase("a process that drew ended without a word; draw again with --jobs 1."));
    switch (static_cast<End>(ending.how)) {
        case End::failure:
            throw Failure(static_cast<ExitCode>(ending.status), ending.text);
        case End::stopped:
            throw Stopped{};
        case End::libraryStop:
            throw LibraryStop{ending.status};
        default:
            throw Failure(kFailed, ending.text);
    }
}

// Waits for what the processes send; true where one has ended, which is then taken out of the list.
bool WaitForOne(std::vector<Child>& running, Child& ended) {
    std::vector<pollfd> fds;
    fds.reserve(running.size());
    for (const Child& child : running) fds.push_back({child.pipe, POLLIN, 0});
    if (poll(fds.data(), fds.size(), kPatience) <= 0) return false;
    for (std::size_t i = 0; i < running.size(); ++i) {
        if ((fds[i].revents & (POLLIN | POLLHUP | POLLERR)) == 0) continue;
        char piece[65536];
        const ssize_t got = read(running[i].pipe, piece, sizeof piece);
        if (got > 0) {
            running[i].bytes.append(piece, static_cast<std::size_t>(got));
            continue;
        }
        if (got < 0 && errno == EINTR) continue;
        ended = std::move(running[i]);
        running.erase(running.begin() + static_cast<std::ptrdiff_t>(i));
        return true;
    }
    return false;
}

Ending Ended(Child& child) {
    close(child.pipe);
    int status = 0;
    while (waitpid(child.pid, &status, 0) < 0 && errno == EINTR) {
    }
    Ending ending = Unpacked(child.bytes);
    if (ending.lost && WIFSIGNALED(status)) ending.signal = WTERMSIG(status);
    return ending;
}

}  // namespace

int UsableProcessors() {
    cpu_set_t set;
    CPU_ZERO(&set);
    const int count = sched_getaffinity(0, sizeof set, &set) == 0 ? CPU_COUNT(&set) : 1;
    return count > 0 ? count : 1;
}

void RunSideBySide(int pieces, int jobs, Report& report, const std::function<std::string(int)>& work,
                   const std::function<bool(int, Ending&)>& ended) {
    std::vector<Child> running;
    bool stopping = false, more = true;
    for (int next = 0; (next < pieces && more) || !running.empty();) {
        while (next < pieces && more && static_cast<int>(running.size()) < jobs)
            running.push_back(Start(next++, report, work));
        Child child;
        if (WaitForOne(running, child)) {
            Ending ending = Ended(child);
            more = ended(child.piece, ending) && more;
        }
        if (StopRequested() && !stopping) {
            stopping = true;
            more = false;
            for (const Child& one : running) kill(one.pid, SIGTERM);
        }
    }
    if (stopping) throw Stopped{};
}

void DoSideBySide(int pieces, int jobs, Report& report, const std::function<std::string(int)>& work,
                  const std::function<void(int, const std::string&)>& done) {
    if (pieces <= 1 || jobs <= 1) {
        for (int piece = 0; piece < pieces; ++piece) done(piece, work(piece));
        return;
    }
    std::vector<Ending> endings(static_cast<std::size_t>(pieces));
    RunSideBySide(pieces, jobs, report, work, [&](int piece, Ending& ending) {
        endings[static_cast<std::size_t>(piece)] = std::move(ending);
        return true;
    });
    for (int piece = 0; piece < pieces; ++piece) {
        const Ending& one = endings[static_cast<std::size_t>(piece)];
        report.Replay(one.events);
        if (one.lost || one.how != static_cast<char>(End::done)) Rethrow(one);
        done(piece, one.text);
    }
}

}  // namespace zm::tool
