#include "zenromath/host.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <string>

#include "platform/posix/console_host.h"
#include "runtime/state.h"
#include "tests/support/test_host.h"
#include "zenromath/runtime.h"

namespace {

class Environment {
 public:
    Environment(const char* name, const char* value) : m_name(name) {
        const char* old = std::getenv(name);
        if (old != nullptr) m_old = old;
        m_had = old != nullptr;
        setenv(name, value, 1);
    }
    ~Environment() {
        if (m_had)
            setenv(m_name, m_old.c_str(), 1);
        else
            unsetenv(m_name);
    }
    Environment(const Environment&) = delete;
    Environment& operator=(const Environment&) = delete;

 private:
    const char* m_name;
    std::string m_old;
    bool m_had = false;
};

TEST(ConsoleHost, ShowsChineseInTheTerminalsEncoding) {
    const char* gbk = "\xBE\xAF\xB8\xE6";
    {
        Environment utf8("LC_ALL", "zh_CN.UTF-8");
        EXPECT_EQ(zm::platform::TerminalText(gbk), "警告");
    }
    {
        Environment chinese("LC_ALL", "zh_CN.GBK");
        EXPECT_EQ(zm::platform::TerminalText(gbk), gbk);
    }
    {
        Environment plain("LC_ALL", "C");
        EXPECT_EQ(zm::platform::TerminalText(gbk), "警告");
    }
}

TEST(ConsoleHost, WritesTitleAndTextToStderr) {
    zm::runtime::ResetState();
    Environment utf8("LC_ALL", "C.UTF-8");
    testing::internal::CaptureStderr();
    _LMsg("\xBE\xAF\xB8\xE6", nullptr, 0);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "Zenro Info: 警告\n");
}

TEST(ConsoleHost, AnswersNoWhereNobodyCanBeAsked) {
    zm::platform::ConsoleHost host;
    testing::internal::CaptureStderr();  // stderr is no terminal now
    EXPECT_EQ(host.ShowBox("?", "t", MB_YESNO), IDNO);
    EXPECT_EQ(host.ShowBox("!", "t", MB_OK), IDOK);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "t: ?\nt: !\n");
}

TEST(Host, NullPutsTheConsoleHostBack) {
    zm::runtime::ResetState();
    zm::Host* console = &zm::CurrentHost();
    {
        zm::test::TestHost host;
        EXPECT_EQ(&zm::CurrentHost(), &host);
        EXPECT_EQ(zm::SetHost(nullptr), &host);
        EXPECT_EQ(&zm::CurrentHost(), console);
    }
    EXPECT_EQ(&zm::CurrentHost(), console);
}

TEST(HostDeathTest, InternalErrorAnsweredYesLeavesStatus13) {
    class SaysYes : public zm::Host {
     public:
        int ShowBox(const char*, const char*, unsigned int) override { return IDYES; }
        void Beep() override {}
    };
    EXPECT_EXIT(
        {
            SaysYes host;
            zm::SetHost(&host);
            _LErr(1, "a", "b", "c");
        },
        testing::ExitedWithCode(13), "");
}

}  // namespace
