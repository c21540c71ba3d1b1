#include "tests/view/person.h"

#include <sys/wait.h>
#include <unistd.h>

#include <QtEndian>
#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <fstream>
#include <sstream>
#include <thread>

namespace zm::test {

namespace fs = std::filesystem;
using Clock = std::chrono::steady_clock;

void Sleep(int milliseconds) {
    std::this_thread::sleep_for(std::chrono::milliseconds(milliseconds));
}

void ViewPerson::SetUp() {
    if (!Screen::IsPossible()) GTEST_SKIP() << "no screen: install the packages xvfb and xdotool";
    TakeScreen("1280x900x24");
    ASSERT_EQ(zenro.Run({"demo", "--data-only", "--quiet", (zenro / "town").string()}).status, 0);
    fs::copy_file(fs::path(ZENRO_SOURCE_DIR) / "data/rules/demo.rules", zenro / "my.rules");
    for (const auto& entry : fs::directory_iterator(DataFolder())) m_inputs.push_back(entry.path().string());
    std::sort(m_inputs.begin(), m_inputs.end());
}

fs::path ViewPerson::DataFolder() const {
    return fs::exists(zenro / "town/data") ? zenro / "town/data" : zenro / "town";
}

std::vector<std::string> ViewPerson::Environment() const {
    return {"DISPLAY=" + m_screen->display(), "QT_QPA_PLATFORM=xcb", "WAYLAND_DISPLAY=", "ZENRO_LANGUAGE=en",
            "VISUAL=/bin/true"};
}

Outcome ViewPerson::View(const std::vector<std::string>& more, const std::function<void(int)>& act,
                         std::vector<std::string> environment) {
    std::vector<std::string> arguments = {"view"};
    arguments.insert(arguments.end(), m_inputs.begin(), m_inputs.end());
    arguments.insert(arguments.end(), {"--rules", (zenro / "my.rules").string(), "--log", Log().string()});
    arguments.insert(arguments.end(), more.begin(), more.end());
    std::vector<std::string> all = Environment();
    all.insert(all.end(), environment.begin(), environment.end());
    return zenro.RunBeside(arguments, all, act);
}

Outcome ViewPerson::Look(const std::function<void()>& act, const std::vector<std::string>& more,
                         const std::vector<std::string>& environment) {
    return View(
        more,
        [&](int process) {
            m_process = process;
            Await([](const json& j) { return j.value("is", "") == "painted" && j.value("labels", false); });
            TurnTo("zenro view");
            act();
            Do("key --clearmodifiers ctrl+q");
            for (int i = 0; i < 100 && !HasEnded(); ++i) Sleep(100);
            if (!HasEnded()) kill(process, SIGKILL);
        },
        environment);
}

bool ViewPerson::HasEnded() const {
    siginfo_t ended{};
    return waitid(P_PID, static_cast<id_t>(m_process), &ended, WEXITED | WNOHANG | WNOWAIT) == 0 &&
           ended.si_pid == m_process;
}

void ViewPerson::Do(const std::string& command) const {
    const std::string line =
        "LC_CTYPE=C.UTF-8 DISPLAY=" + m_screen->display() + " timeout 30 xdotool " + command + " >/dev/null";
    EXPECT_EQ(std::system(line.c_str()), 0) << line;
}

void ViewPerson::TurnTo(const std::string& title) const {
    Do("search --sync --onlyvisible --name '" + title + "' windowfocus --sync %1");
    Sleep(200);
}

void ViewPerson::AwaitGone(const std::string& title) const {
    const std::string search = "LC_CTYPE=C.UTF-8 DISPLAY=" + m_screen->display() +
                               " xdotool search --onlyvisible --name '" + title + "' >/dev/null 2>&1";
    for (int i = 0; i < 300; ++i) {
        if (std::system(search.c_str()) != 0) return;
        Sleep(100);
    }
    ADD_FAILURE() << title << " stays open";
}

void ViewPerson::Settle() const {
    Sleep(60);
    QImage before = Shown();
    for (int same = 0, i = 0; same < 4 && i < 200; ++i) {
        Sleep(50);
        const QImage now = Shown();
        same = now == before ? same + 1 : 0;
        before = now;
    }
}

void ViewPerson::Keys(const std::vector<std::string>& keys) const {
    for (const std::string& key : keys) {
        Do("key --clearmodifiers " + key);
        Settle();
    }
}

std::vector<ViewPerson::json> ViewPerson::Lines() const {
    std::vector<json> lines;
    std::istringstream in(ReadFile(Log()));
    for (std::string line; std::getline(in, line);) {
        json one = json::parse(line, nullptr, false);
        if (one.is_object()) lines.push_back(one);
    }
    return lines;
}

int ViewPerson::Worker() const {
    int worker = 0;
    for (const json& line : Lines())
        if (line.contains("worker")) worker = line.at("worker").get<int>();
    return worker;
}

std::vector<int> ViewPerson::Children(int process) {
    const std::string task = std::to_string(process);
    std::istringstream in(ReadFile("/proc/" + task + "/task/" + task + "/children"));
    std::vector<int> children;
    for (int child = 0; in >> child;) children.push_back(child);
    return children;
}

bool ViewPerson::Runs(int process) {
    std::ifstream in("/proc/" + std::to_string(process) + "/stat");
    std::string line;
    return std::getline(in, line) && line.find(") Z ") == std::string::npos;
}

bool ViewPerson::AwaitEnd(int process) {
    for (int i = 0; i < 100 && Runs(process); ++i) Sleep(100);
    return !Runs(process);
}

ViewPerson::json ViewPerson::Await(const std::function<bool(const json&)>& fits) {
    const auto end = Clock::now() + std::chrono::seconds(60);
    while (Clock::now() < end) {
        const std::vector<json> lines = fs::exists(Log()) ? Lines() : std::vector<json>();
        for (; m_seen < lines.size(); ++m_seen)
            if (fits(lines[m_seen])) return lines[m_seen++];
        Sleep(20);
    }
    ADD_FAILURE() << "the window does not say what is awaited:\n" << ReadFile(Log());
    return json::object();
}

ViewPerson::At3 ViewPerson::Painted(const std::function<bool(const At3&)>& fits) {
    const json j = Await([&](const json& one) {
        return one.value("is", "") == "painted" && one.value("labels", false) && fits(one.at("map").get<At3>());
    });
    return j.contains("map") ? j.at("map").get<At3>() : At3(3);
}

ViewPerson::json ViewPerson::AwaitKey(const char* key) {
    const json j = Await([&](const json& one) { return one.contains(key); });
    return j.contains(key) ? j.at(key) : json::object();
}

std::vector<double> ViewPerson::At() const {
    std::vector<double> at(3);
    for (const json& line : Lines())
        if (line.contains("map")) at = line.at("map").get<std::vector<double>>();
    return at;
}

void ViewPerson::TakeScreen(const char* size) {
    m_screen = std::make_unique<Screen>(size, zenro.folder().string());
    ASSERT_TRUE(m_screen->running());
}

// The server keeps its screen in a file of the form of xwd: 25 numbers, the high byte first, then colours of 12 bytes
// each, then rows of 4 bytes a pixel, blue first.
QImage ViewPerson::Shown(const char* name) const {
    const std::string bytes = ReadFile(zenro / "Xvfb_screen0");
    const auto number = [&](std::size_t i) {
        return 4 * (i + 1) <= bytes.size() ? qFromBigEndian<quint32>(bytes.data() + 4 * i) : 0U;
    };
    const std::size_t start = number(0) + 12 * number(19);
    const int width = static_cast<int>(number(4)), height = static_cast<int>(number(5)),
              stride = static_cast<int>(number(12));
    if (width == 0 || number(11) != 32 || bytes.size() < start + static_cast<std::size_t>(stride) * number(5)) {
        ADD_FAILURE() << "no picture of the screen";
        return {};
    }
    const QImage image =
        QImage(reinterpret_cast<const uchar*>(bytes.data() + start), width, height, stride, QImage::Format_RGB32)
            .copy();
    if (name == nullptr) return image;
    const char* folder = std::getenv("ZM_PICTURES");
    const fs::path file = fs::path(folder != nullptr ? folder : ZM_PICTURE_DIR) / name;
    EXPECT_TRUE(image.save(QString::fromStdString(file.string() + ".png")));
    return image;
}

QImage ViewPerson::Picture(std::vector<std::string> environment, At3& pixels) {
    const std::string file = (zenro / "out.png").string();
    const Outcome r = View(
        {"--picture", file}, [](int) {}, std::move(environment));
    EXPECT_EQ(r.status, 0) << r.err;
    for (const json& line : Lines())
        if (line.contains("pixels")) pixels = line.at("pixels").get<At3>();
    return QImage(QString::fromStdString(file));
}

}  // namespace zm::test
