// The process that draws: forked off the one that keeps the map, so that it has all features without reading them, and
// so that its end is nobody else's.
#pragma once

#include <sys/types.h>

#include <functional>
#include <optional>
#include <string>

#include "tools/zenro/view/frames.h"

namespace zm::tool {

class PainterProcess {
 public:
    /// What the process does with a request: gives the answer.
    using Work = std::function<std::string(const std::string& request)>;

    explicit PainterProcess(Work work) : m_work(std::move(work)) {}
    ~PainterProcess() { Kill(); }
    PainterProcess(const PainterProcess&) = delete;
    PainterProcess& operator=(const PainterProcess&) = delete;

    /// Where its answers come from, -1 where it does not run.
    int file() const { return m_file; }
    bool busy() const { return m_busy; }
    /// Somebody stopped it; it will not go on by itself.
    bool IsStopped() const;
    /// Hands a request over, and starts the process where none runs. Not while it is busy.
    void Ask(const std::string& request);
    /// What came: an answer, or the end of the process.
    struct News {
        std::optional<std::string> answer;
        bool ended = false;
        int signal = 0;  // that ended it, 0 if none
    };
    /// Takes what has come; call where the file can be read.
    News Take();
    /// Ends the process at once. The next request starts another.
    void Kill();
    pid_t process() const { return m_process; }

 private:
    void Start();
    [[noreturn]] void Serve(int file) noexcept;
    int Wait();

    Work m_work;
    pid_t m_process = -1;
    int m_file = -1;
    bool m_busy = false;
    std::optional<FrameReader> m_reader;
};

}  // namespace zm::tool
