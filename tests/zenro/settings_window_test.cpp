// settings with its windows open, on an X server of its own: what is said and which status comes when they are left.
#include <gtest/gtest.h>
#include <sys/mount.h>

#include <cerrno>
#include <csignal>
#include <cstring>
#include <fstream>
#include <thread>

#include "runtime/text/gbk.h"
#include "tests/support/screen.h"
#include "tests/zenro/program.h"

namespace {

namespace fs = std::filesystem;
using namespace zm::test;

constexpr char kLayersTitle[] = "层次颜色设定";

class SettingsWindow : public testing::Test {
 protected:
    void SetUp() override {
        if (!ZENRO_HAS_QT) GTEST_SKIP() << "zenro is built without windows: install the packages of Qt 6";
        if (!Screen::IsPossible()) GTEST_SKIP() << "no screen: install the packages xvfb and xdotool";
        m_screen = std::make_unique<Screen>();
        ASSERT_TRUE(m_screen->running());
    }
    /// Runs settings layers on a project, and acts once the window has the keyboard.
    Outcome Layers(const fs::path& project, const std::function<void(int)>& act) {
        return zenro.RunBeside(
            {"settings", "layers", "--project", project.string()},
            // xdotool finds the title by WM_NAME, which has Chinese in a UTF-8 locale alone.
            {"DISPLAY=" + m_screen->display(), "QT_QPA_PLATFORM=xcb", "WAYLAND_DISPLAY=", "LC_CTYPE=C.UTF-8"},
            [&](int process) {
                Do(std::string("search --sync --onlyvisible --name '") + kLayersTitle + "' windowfocus --sync %1");
                std::this_thread::sleep_for(std::chrono::milliseconds(300));
                act(process);
            });
    }
    void Do(const std::string& command) const {
        const std::string line =
            "LC_CTYPE=C.UTF-8 DISPLAY=" + m_screen->display() + " timeout 30 xdotool " + command + " >/dev/null";
        EXPECT_EQ(std::system(line.c_str()), 0) << line;
    }
    static void Settle() { std::this_thread::sleep_for(std::chrono::milliseconds(400)); }
    void Key(const std::string& key) const {
        Do("key --clearmodifiers " + key);
        Settle();
    }
    /// Presses a key until the process has ended: a box of the program may be open first.
    void KeyUntilItEnds(const std::string& key, int process) const {
        for (int i = 0; i < 40; ++i) {
            siginfo_t ended{};
            if (::waitid(P_PID, static_cast<id_t>(process), &ended, WEXITED | WNOHANG | WNOWAIT) == 0 &&
                ended.si_pid == process)
                return;
            Do("search --sync --onlyvisible --name . windowfocus %1 key " + key + " 2>/dev/null || true");
            Settle();
        }
        ::kill(process, SIGKILL);
        ADD_FAILURE() << "zenro settings did not end";
    }
    static std::string Text() {
        return zm::gbk::FromUtf8("[LayerSet]\nLayers=2\nLayer1=道路 430 460 7 1\nLayer2=PIPE 500 510 4 0\n");
    }

    Program zenro;

 private:
    std::unique_ptr<Screen> m_screen;
};

TEST_F(SettingsWindow, OkWritesTheFileAndSaysSo) {
    const std::string project = zenro.File("town.ini", Text());
    const Outcome r = Layers(project, [&](int) {
        Key("alt+a");  // all shown flags turned
        Key("alt+o");
    });
    EXPECT_EQ(r.status, 0) << r.err;
    EXPECT_EQ(r.out, project + " written\n");
    EXPECT_NE(zm::gbk::ToUtf8(ReadFile(project)).find("Layer1=道路 430 460 7 0"), std::string::npos);
}

TEST_F(SettingsWindow, EscLeavesTheFileAsItWasAndSaysSo) {
    const std::string project = zenro.File("town.ini", Text());
    const Outcome r = Layers(project, [&](int) {
        Key("alt+a");
        Key("Escape");
    });
    EXPECT_EQ(r.status, 0) << r.err;
    EXPECT_EQ(r.out, project + " left as it was\n");
    EXPECT_EQ(ReadFile(project), Text());
}

TEST_F(SettingsWindow, CtrlCTakesTheWindowAwayAndSavesNothing) {
    const std::string project = zenro.File("town.ini", Text());
    const Outcome r = Layers(project, [&](int process) {
        Key("alt+a");
        ::kill(process, SIGINT);
    });
    EXPECT_EQ(r.status, 130);
    EXPECT_TRUE(r.out.empty()) << r.out;
    EXPECT_EQ(ReadFile(project), Text());
}

TEST_F(SettingsWindow, AFileThatCannotBeWrittenIsStatus5WithItsPath) {
    const std::string project = zenro.File("town.ini", Text());
    const Outcome r = Layers(project, [&](int process) {
        fs::remove(project);
        fs::create_directories(fs::path(project) / "in the way");
        Key("alt+o");
        KeyUntilItEnds("Return", process);
    });
    EXPECT_EQ(r.status, 5) << r.out << r.err;
    EXPECT_NE(r.err.find(project + " could not be written"), std::string::npos) << r.err;
    EXPECT_TRUE(r.out.empty()) << r.out;
}

TEST_F(SettingsWindow, AFullDiskIsStatus5WithThePathAndTheOldFileIsWhole) {
    const fs::path small = zenro / "small";
    fs::create_directory(small);
    if (::mount("tmpfs", small.c_str(), "tmpfs", 0, "size=64k") != 0)
        GTEST_SKIP() << "no file system can be mounted here: " << std::strerror(errno);
    const fs::path project = small / "town.ini";
    WriteFile(project, Text());
    std::ofstream filler(small / "filler", std::ios::binary);
    while (filler.write(std::string(4096, 'x').data(), 4096).flush()) {
    }
    filler.close();
    const Outcome r = Layers(project, [&](int process) {
        Key("alt+a");
        Key("alt+o");
        KeyUntilItEnds("Return", process);
    });
    EXPECT_EQ(r.status, 5) << r.out << r.err;
    EXPECT_NE(r.err.find(project.string() + " could not be written"), std::string::npos) << r.err;
    EXPECT_EQ(ReadFile(project), Text());
    EXPECT_EQ(::umount2(small.c_str(), MNT_DETACH), 0);
}

}  // namespace
