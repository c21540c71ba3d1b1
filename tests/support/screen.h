// An X server without a screen, for tests that open windows and press keys in them.
#pragma once

#include <fcntl.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <string>

namespace zm::test {

/// An X server for one test program alone, while it lives. It names a free display itself.
class Screen {
 public:
    /// The packages xvfb and xdotool are here.
    static bool IsPossible() { return IsInstalled("Xvfb") && IsInstalled("xdotool"); }

    /// size: of the screen, as "1280x900x24". pictures: a folder in which the file Xvfb_screen0 has what it shows, in the
    /// form of xwd; none if empty.
    explicit Screen(const char* size = "1280x900x24", const std::string& pictures = {}) {
        int ends[2];
        if (::pipe(ends) != 0) return;
        m_server = ::fork();
        if (m_server == 0) Serve(ends[1], size, pictures);
        ::close(ends[1]);
        char text[16] = {};
        for (std::size_t at = 0; at + 1 < sizeof text && ::read(ends[0], text + at, 1) == 1 && text[at] != '\n';) ++at;
        ::close(ends[0]);
        m_running = text[0] != '\0';
        m_display = ":" + std::to_string(std::atoi(text));
    }
    ~Screen() { End(SIGTERM); }
    /// Takes the display away from its programs.
    void End(int signal = SIGKILL) {
        if (m_server <= 0) return;
        ::kill(m_server, signal);
        ::waitpid(m_server, nullptr, 0);
        m_server = -1;
    }
    Screen(const Screen&) = delete;
    Screen& operator=(const Screen&) = delete;
    bool running() const { return m_running; }
    /// What DISPLAY is for programs that are to use it.
    const std::string& display() const { return m_display; }

 private:
    static bool IsInstalled(const char* program) {
        return std::system((std::string("command -v ") + program + " >/dev/null 2>&1").c_str()) == 0;
    }
    [[noreturn]] static void Serve(int answer, const char* size, const std::string& pictures) {
        ::dup2(answer, 3);
        ::dup2(::open("/dev/null", O_WRONLY), STDERR_FILENO);
        ::execlp("Xvfb", "Xvfb", "-displayfd", "3", "-screen", "0", size, "-dpi", "96", "-nolisten", "tcp",
                 pictures.empty() ? nullptr : "-fbdir", pictures.c_str(), static_cast<char*>(nullptr));
        ::_exit(127);
    }

    pid_t m_server = -1;
    std::string m_display;
    bool m_running = false;
};

}  // namespace zm::test
