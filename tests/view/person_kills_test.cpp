// The processes of the window end or hang at any moment: the window stays, and its picture is whole again.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>

#include "tests/view/person.h"

namespace {

namespace fs = std::filesystem;
using namespace zm::test;
using nlohmann::json;

class PersonKills : public ViewPerson {
 protected:
    /// The process that draws, and not one that was killed or stopped. One that counts the layers may live beside it.
    int Painter(const std::vector<int>& before = {}) const {
        for (int i = 0; i < 500; ++i, Sleep(20)) {
            const std::vector<int> children = Children(Worker());
            if (children.size() == 1 && std::find(before.begin(), before.end(), children.front()) == before.end())
                return children.front();
        }
        return 0;
    }
    /// Where a line of the log is that has a key, of those after so many; its milliseconds.
    double TimeOf(const char* key, std::size_t after) const {
        const std::vector<json> lines = Lines();
        for (std::size_t i = after; i < lines.size(); ++i)
            if (lines[i].contains(key)) return lines[i].at("ms");
        return -1e9;
    }
    QImage Map(const char* name = nullptr) const {
        Settle();
        return Shown(name).copy(300, 120, 900, 620);
    }
};

// The wheel asks for a picture, and no answer comes.
TEST_F(PersonKills, AKeeperThatHangsIsStartedAgainAfterHalfASecond) {
    const Outcome r = Look([&] {
        const int worker = Worker();
        const std::vector<double> start = At();
        ASSERT_EQ(kill(worker, SIGSTOP), 0);
        const std::size_t before = Lines().size();
        Move(900, 500);
        Do("click 4");
        EXPECT_NE(AwaitKey("worker").get<int>(), worker);
        const double waited = TimeOf("worker", before) - TimeOf("asked", before);
        EXPECT_GE(waited, 300.0);
        EXPECT_LT(waited, 3000.0);
        EXPECT_NEAR(Painted()[2], start[2] / 1.25, 1e-9);  // what was wanted meanwhile
        EXPECT_TRUE(AwaitEnd(worker));
    });
    EXPECT_EQ(r.status, 0) << r.err;
}

TEST_F(PersonKills, APainterThatHangsIsReplacedThoughNobodyWantsAnotherView) {
    const Outcome r = Look([&] {
        const int worker = Worker(), painter = Painter();
        ASSERT_GT(painter, 0);
        ASSERT_EQ(kill(painter, SIGSTOP), 0);
        Move(900, 500);
        Do("click 4");
        Painted();
        EXPECT_EQ(Worker(), worker);
        EXPECT_GT(Painter({painter}), 0);
        EXPECT_TRUE(AwaitEnd(painter));
    });
    EXPECT_EQ(r.status, 0) << r.err;
}

TEST_F(PersonKills, OneThatHangsWhileItReadsIsStartedAgain) {
    int stopped = 0;
    const Outcome r = View({}, [&](int process) {
        m_process = process;
        stopped = AwaitKey("worker").get<int>();
        ASSERT_EQ(kill(stopped, SIGSTOP), 0);
        EXPECT_NE(AwaitKey("worker").get<int>(), stopped);
        Painted();
        TurnTo("zenro view");
        Do("key --clearmodifiers ctrl+q");
    });
    EXPECT_EQ(r.status, 0) << r.err;
    EXPECT_TRUE(AwaitEnd(stopped));
}

TEST_F(PersonKills, AfterTenKillsAtAnyMomentThePictureIsWholeAndNothingIsLeft) {
    const fs::path temporary = zenro / "temporary";
    fs::create_directory(temporary);
    std::vector<int> killed;
    std::vector<int> last;
    const auto end = [&](const std::function<int()>& which) {
        for (int i = 0; i < 100; ++i, Sleep(20))  // one may be replaced in this very moment
            if (const int process = which(); process > 0 && kill(process, SIGKILL) == 0) {
                killed.push_back(process);
                return;
            }
    };
    const auto act = [&](int process) {
        m_process = process;
        for (const int milliseconds : {0, 60}) {  // while it opens
            const int worker = AwaitKey("worker").get<int>();
            Sleep(milliseconds);
            end([worker] { return worker; });
        }
        Painted();
        TurnTo("zenro view");
        const auto fitted = [this](const char* name) {
            Move(740, 460);
            PassOver();
            Keys({"plus"});
            const double closer = Painted()[2];
            Keys({"f"});
            Painted([closer](const At3& at) { return at[2] != closer; });
            return Map(name);
        };
        const QImage whole = fitted("kills-before");
        for (int round = 0; round < 2; ++round) {
            const auto worker = [&] { return round == 0 ? Worker() : Painter(killed); };
            PassOver();
            Do("click 4");  // while it draws
            end(worker);
            Painted();
            PassOver();
            Do("mousedown 1 mousemove 760 470 mousemove 800 480");  // while the hand drags
            end(worker);
            Do("mousemove 840 490 mouseup 1");
            Painted();
            Keys({"d"});
            Click(600, 400);
            AwaitKey("measured");
            end(worker);
            Painted();
            Click(900, 400);  // the point before it is still there
            EXPECT_EQ(AwaitKey("measured").at("points").get<int>(), 2);
            Keys({"Escape", "i"});
            PassOver();
            end(worker);  // while nothing is done
            Painted();
        }
        EXPECT_EQ(killed.size(), 10U);
        EXPECT_TRUE(fitted("kills-after") == whole);
        const std::string maps = ReadFile("/proc/" + std::to_string(process) + "/maps");
        EXPECT_EQ(Count(maps, "memfd:zenro-view"), 1);  // the pictures of those that ended are gone
        last = Children(process);
        EXPECT_EQ(last, std::vector<int>{Worker()});
        for (const int child : Children(Worker())) last.push_back(child);
        EXPECT_LE(last.size(), 2U);
        Do("key --clearmodifiers ctrl+q");
    };
    const Outcome r = View({}, act, {"TMPDIR=" + temporary.string()});
    EXPECT_EQ(r.status, 0) << r.err;
    for (const int process : killed) EXPECT_TRUE(AwaitEnd(process));
    for (const int process : last) EXPECT_TRUE(AwaitEnd(process));
    for (const auto& left : fs::directory_iterator(temporary))  // Qt makes a folder for those who have none
        EXPECT_EQ(left.path().filename().string().rfind("runtime-", 0), 0U) << left.path();
    for (const json& line : Lines()) EXPECT_FALSE(line.value("is", "") == "lost") << line;  // no feature is to blame
}

}  // namespace
