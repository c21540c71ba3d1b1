// The console host on a terminal: a pseudo terminal of the test's own, with the host in a process behind it.
#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <stdlib.h>
#include <sys/ioctl.h>
#include <sys/wait.h>
#include <termios.h>
#include <unistd.h>
#include <csignal>

#include <functional>
#include <string>

#include "platform/posix/console_host.h"
#include "runtime/state.h"
#include "zenromath/runtime.h"

using testing::HasSubstr;
using zm::platform::FitColumns;

namespace {

// A process whose terminal is the other end of master.
class OnTerminal {
 public:
    explicit OnTerminal(const std::function<int()>& work) : m_master(::posix_openpt(O_RDWR | O_NOCTTY)) {
        ::grantpt(m_master);
        ::unlockpt(m_master);
        const winsize size{24, 80, 0, 0};
        const std::string name = ::ptsname(m_master);
        m_child = ::fork();
        if (m_child != 0) return;
        ::setsid();
        std::signal(SIGINT, SIG_DFL);                       // a run in the background passes on that it is ignored
        const int terminal = ::open(name.c_str(), O_RDWR);  // becomes the controlling terminal
        ::ioctl(terminal, TIOCSWINSZ, &size);
        for (const int fd : {0, 1, 2}) ::dup2(terminal, fd);
        ::setenv("LC_ALL", "C.UTF-8", 1);
        zm::runtime::ResetState();
        ::_exit(work());
    }
    ~OnTerminal() { ::close(m_master); }
    // Reads until the text came.
    bool Await(const std::string& text) {
        while (m_seen.find(text) == std::string::npos) {
            char bytes[256];
            const ssize_t count = ::read(m_master, bytes, sizeof bytes);
            if (count <= 0) return false;
            m_seen.append(bytes, static_cast<std::size_t>(count));
        }
        return true;
    }
    void Type(const std::string& bytes) {
        ASSERT_EQ(::write(m_master, bytes.data(), bytes.size()), (ssize_t)bytes.size());
    }
    int Wait() {
        int status = 0;
        ::waitpid(m_child, &status, 0);
        return status;
    }
    const std::string& seen() const { return m_seen; }
    int master() const { return m_master; }

 private:
    int m_master;
    pid_t m_child = 0;
    std::string m_seen;
};

class ConsoleProgress : public testing::Test {
 protected:
    void SetUp() override {
        const int probe = ::posix_openpt(O_RDWR | O_NOCTTY);
        if (probe < 0) GTEST_SKIP() << "NOT CHECKED: no terminal can be made here; is devpts mounted?";
        ::close(probe);
    }
};

// Works until it is asked to stop: 1 if it was, 0 if it came to its end.
int WorkUntilEsc() {
    _LWaitMsg("\xB6\xC1\xC8\xEB", nullptr);
    int stopped = 0;
    for (int i = 0; i < 600 && stopped == 0; ++i) {
        stopped = _LWaitReMsgEsc2(600, i, "item %d", i);
        ::usleep(5000);
    }
    _LWaitMsgEnd();
    return stopped;
}

}  // namespace

TEST_F(ConsoleProgress, IsOneLineThatIsWrittenOverAndTakenOff) {
    OnTerminal terminal([] {
        _LWaitMsg("\xB6\xC1\xC8\xEB", nullptr);
        _LWaitReMsgEsc2(100, 50, "%s", "\xB6\xC1\xC8\xEB");
        _LWaitMsgEnd();
        ::write(1, "end", 3);
        return 0;
    });
    EXPECT_TRUE(terminal.Await("end"));
    EXPECT_EQ(terminal.Wait(), 0);
    EXPECT_EQ(terminal.seen(), std::string("\r读入\033[K\r") + std::string(33, ' ') +
                                   "读入  ________________^o^________________  50%\033[K\r\033[Kend");
}

TEST_F(ConsoleProgress, EscStopsTheWork) {
    OnTerminal terminal(WorkUntilEsc);
    EXPECT_TRUE(terminal.Await("item"));
    terminal.Type("x");
    terminal.Type("\033");
    EXPECT_TRUE(terminal.Await("\033[K\r\033[K"));
    EXPECT_EQ(WEXITSTATUS(terminal.Wait()), 1);
}

TEST_F(ConsoleProgress, AnArrowKeyDoesNotStopTheWork) {
    OnTerminal terminal([] {
        _LWaitMsg("x", nullptr);
        ::write(1, "ready", 5);
        ::usleep(200000);
        const int stopped = _LWaitReMsgEsc("x", 1);
        _LWaitMsgEnd();
        return stopped;
    });
    EXPECT_TRUE(terminal.Await("ready"));
    terminal.Type("\033[A\033OP\033[15~");
    EXPECT_EQ(WEXITSTATUS(terminal.Wait()), 0);
}

TEST_F(ConsoleProgress, EscStopsTheWorkWhateverKeysFollowIt) {
    for (const char* keys : {"\033x", "\033\r", "x\033y", "\033[A\033\033[B", "\033OP\033x"}) {
        OnTerminal terminal([] {
            _LWaitMsg("x", nullptr);
            ::write(1, "ready", 5);
            ::usleep(200000);
            const int stopped = _LWaitReMsgEsc("x", 1);
            _LWaitMsgEnd();
            return stopped;
        });
        EXPECT_TRUE(terminal.Await("ready"));
        terminal.Type(keys);
        EXPECT_EQ(WEXITSTATUS(terminal.Wait()), 1) << keys;
    }
}

TEST_F(ConsoleProgress, CtrlCStopsTheWork) {
    OnTerminal terminal(WorkUntilEsc);
    EXPECT_TRUE(terminal.Await("item"));
    terminal.Type("\x03");
    EXPECT_TRUE(terminal.Await("\033[K\r\033[K"));
    const int status = terminal.Wait();
    ASSERT_TRUE(WIFEXITED(status));
    EXPECT_EQ(WEXITSTATUS(status), 1);
}

TEST_F(ConsoleProgress, ASecondCtrlCThatNobodyAskedForEndsTheProcess) {
    OnTerminal terminal([] {
        _LWaitMsg("busy", nullptr);
        ::write(1, "ready", 5);
        for (int i = 0; i < 1000; ++i) ::usleep(5000);
        return 0;
    });
    EXPECT_TRUE(terminal.Await("ready"));
    terminal.Type("\x03");
    ::usleep(50000);
    terminal.Type("\x03");
    const int status = terminal.Wait();
    ASSERT_TRUE(WIFSIGNALED(status));
    EXPECT_EQ(WTERMSIG(status), SIGINT);
}

TEST_F(ConsoleProgress, TheTerminalIsAsBeforeAfterwards) {
    OnTerminal terminal([] {
        termios before{};
        ::tcgetattr(0, &before);
        _LWaitMsg("x", nullptr);
        termios during{};
        ::tcgetattr(0, &during);
        _LWaitMsgEnd();
        termios after{};
        ::tcgetattr(0, &after);
        struct sigaction interrupt {};
        ::sigaction(SIGINT, nullptr, &interrupt);
        return (during.c_lflag & ICANON) == 0 && after.c_lflag == before.c_lflag && interrupt.sa_handler == SIG_DFL ? 0
                                                                                                                    : 1;
    });
    EXPECT_EQ(terminal.Wait(), 0);
}

TEST_F(ConsoleProgress, AMessageTakesTheLineOffFirst) {
    OnTerminal terminal([] {
        _LWaitMsg("busy", nullptr);
        zm::CurrentHost().ShowBox("text", "title", MB_OK);
        ::write(1, "end", 3);
        return 0;
    });
    EXPECT_TRUE(terminal.Await("end"));
    terminal.Wait();
    EXPECT_THAT(terminal.seen(), HasSubstr("busy\033[K\r\033[Ktitle: text"));
}

TEST_F(ConsoleProgress, AQuestionIsAnsweredWithALineDuringTheWait) {
    OnTerminal terminal([] {
        _LWaitMsg("busy", nullptr);
        const int answer = zm::CurrentHost().ShowBox("stop?", "title", MB_YESNO);
        _LWaitMsgEnd();
        return answer == IDYES ? 7 : 0;
    });
    EXPECT_TRUE(terminal.Await("[y/N] "));
    terminal.Type("y\n");
    EXPECT_EQ(WEXITSTATUS(terminal.Wait()), 7);
}

TEST(ProgressLine, IsNotThereWithoutATerminal) {
    testing::internal::CaptureStderr();
    {
        zm::runtime::ResetState();
        _LWaitMsg("busy", nullptr);
        _LWaitReMsgEsc2(2, 1, "x");
        _LWaitMsgEnd();
    }
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

TEST(ProgressLine, TooLongLosesTheBlanksAtItsStartFirst) {
    EXPECT_EQ(FitColumns("    abc", 5), "  abc");
    EXPECT_EQ(FitColumns("    abc", 7), "    abc");
    EXPECT_EQ(FitColumns("  abcdef", 5), "abcde");
    EXPECT_EQ(FitColumns("a\xB6\xC1\xC8\xEB", 4), "a\xB6\xC1") << "no character in two";
    EXPECT_EQ(FitColumns("abc", 0), "");
}
