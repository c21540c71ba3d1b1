// A person before the window of the map, on an X server of its own: mouse and keys, what the window's log says, and what
// the screen shows.
#pragma once

#include <gtest/gtest.h>
#include <signal.h>

#include <QImage>
#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include <nlohmann/json.hpp>

#include "tests/support/screen.h"
#include "tests/zenro/program.h"

namespace zm::test {

void Sleep(int milliseconds);

class ViewPerson : public testing::Test {
 protected:
    using json = nlohmann::json;
    using At3 = std::vector<double>;

    void SetUp() override;
    std::filesystem::path DataFolder() const;

    std::vector<std::string> Environment() const;
    Outcome View(const std::vector<std::string>& more, const std::function<void(int)>& act,
                 std::vector<std::string> environment = {});
    /// Opens the window, waits for its first whole picture, acts, and closes it by Ctrl-Q.
    Outcome Look(const std::function<void()>& act, const std::vector<std::string>& more = {},
                 const std::vector<std::string>& environment = {});
    bool HasEnded() const;
    /// By xdotool. Windows of dialogs have Chinese titles, which it finds in a UTF-8 locale alone.
    void Do(const std::string& command) const;
    /// Gives the keyboard to a window, by its title; there is no window manager to do it.
    void TurnTo(const std::string& title) const;
    /// Waits until a window is gone. What lies under a box takes no key before that.
    void AwaitGone(const std::string& title) const;
    /// Waits until the screen has stayed the same for a fifth of a second, ten seconds at most.
    void Settle() const;
    /// Presses keys, each after what the one before has changed on the screen.
    void Keys(const std::vector<std::string>& keys) const;
    std::filesystem::path Log() const { return zenro / "log"; }
    std::vector<json> Lines() const;
    /// The process that keeps the map.
    int Worker() const;
    /// The processes that a process started, which run or have ended and wait for who collects them.
    static std::vector<int> Children(int process);
    /// One that has ended and waits for who collects it does not run.
    static bool Runs(int process);
    static bool AwaitEnd(int process);
    /// The first line since the last call that fits; waits a minute for it.
    json Await(const std::function<bool(const json&)>& fits);
    /// What the log says until now is awaited no more.
    void PassOver() { m_seen = Lines().size(); }
    /// The next picture that is whole and fits, and where the map is then: x, y, ground metres of a pixel. What is on the
    /// way there, as of a key that repeats, is passed over.
    At3 Painted(const std::function<bool(const At3&)>& fits = [](const At3&) { return true; });
    json AwaitKey(const char* key);
    std::vector<double> At() const;
    /// The window has no manager and lies in the corner: places in it are places on the screen.
    void Move(int x, int y) const { Do("mousemove " + std::to_string(x) + " " + std::to_string(y)); }
    void Click(int x, int y) const { Do("mousemove " + std::to_string(x) + " " + std::to_string(y) + " click 1"); }

    void TakeScreen(const char* size);
    /// What the screen shows now. ZM_PICTURES names a folder that keeps it; without it the picture lies with the build.
    QImage Shown(const char* name = nullptr) const;
    /// The picture of the window, and what its log says of the pixels of the map's.
    QImage Picture(std::vector<std::string> environment, At3& pixels);

    Program zenro;
    std::unique_ptr<Screen> m_screen;
    int m_process = -1;
    std::vector<std::string> m_inputs;

 private:
    std::size_t m_seen = 0;
};

}  // namespace zm::test
