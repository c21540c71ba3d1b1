#include "tools/zenro/view/painter_process.h"

#include <signal.h>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

#include "tools/kit/exit_codes.h"
#include "tools/kit/qt_module.h"
#include "tools/kit/translation.h"

namespace zm::tool {

void PainterProcess::Start() {
    NameRuntimeDirectory();
    int ends[2];
    if (socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends) != 0)
        throw Failure(kFailed, Phrase("no process can be started: {0}.", SystemError(errno)));
    const pid_t parent = getpid();
    m_process = fork();
    if (m_process < 0) throw Failure(kFailed, Phrase("no process can be started: {0}.", SystemError(errno)));
    if (m_process == 0) {
        prctl(PR_SET_PDEATHSIG, SIGKILL);
        if (getppid() != parent) _exit(0);
        close(ends[0]);
        Serve(ends[1]);
    }
    close(ends[1]);
    m_file = ends[0];
    m_reader.emplace(m_file);
}

// In the process: to its end, whatever happens. Nothing of the parent's is ended here.
void PainterProcess::Serve(int file) noexcept {
    try {
        FrameReader requests(file);
        while (requests.Take())
            while (const auto request = requests.Next())
                if (!SendFrame(file, m_work(*request))) _exit(0);
        _exit(0);
    } catch (...) {
        _exit(kFailed);
    }
}

void PainterProcess::Ask(const std::string& request) {
    if (m_process < 0) Start();
    m_busy = true;
    SendFrame(m_file, request);  // one that is gone is met by the next look at its answers
}

PainterProcess::News PainterProcess::Take() {
    News news;
    if (m_reader->Take()) {
        news.answer = m_reader->Next();
        if (news.answer) m_busy = false;
        return news;
    }
    news.ended = true;
    news.signal = Wait();
    return news;
}

bool PainterProcess::IsStopped() const {
    siginfo_t state{};
    return m_process > 0 && waitid(P_PID, static_cast<id_t>(m_process), &state, WSTOPPED | WNOHANG | WNOWAIT) == 0 &&
           state.si_pid == m_process;
}

void PainterProcess::Kill() {
    if (m_process <= 0) return;
    kill(m_process, SIGKILL);
    Wait();
}

int PainterProcess::Wait() {
    close(m_file);
    int status = 0;
    while (waitpid(m_process, &status, 0) < 0 && errno == EINTR) {
    }
    m_file = -1;
    m_process = -1;
    m_busy = false;
    m_reader.reset();
    return WIFSIGNALED(status) ? WTERMSIG(status) : 0;
}

}  // namespace zm::tool
