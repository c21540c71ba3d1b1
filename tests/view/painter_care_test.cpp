// Who draws may die or hang: another one draws, and the feature that did it is left out.
#include <gtest/gtest.h>
#include <poll.h>
#include <signal.h>
#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <functional>
#include <stdexcept>
#include <thread>
#include <vector>

#include "tools/zenro/view/keeper.h"

namespace {

using namespace zm::tool;

class PainterCareTest : public testing::Test {
 protected:
    void SetUp() override {
        void* memory = mmap(nullptr, 4096, PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
        ASSERT_NE(memory, MAP_FAILED);
        m_head = new (memory) SharedHead{};
        m_head->place.store(kNoPlace);
    }
    void TearDown() override { munmap(m_head, 4096); }

    /// Draws places 1, 2, 3 as work says; those that were lost are passed over.
    void Begin(const std::function<void(std::uint64_t)>& work) {
        m_painter = std::make_unique<PainterProcess>([this, work](const std::string& request) {
            for (std::uint64_t place = 1; place <= 3; ++place) {
                if (std::find(m_lost.begin(), m_lost.end(), place) != m_lost.end()) continue;
                m_head->place.store(place);
                work(place);
            }
            m_head->place.store(kNoPlace);
            return "drawn " + request;
        });
        m_care = std::make_unique<PainterCare>(
            *m_head, *m_painter,
            PainterCare::Hooks{[this](const std::string& answer) { m_answers.push_back(answer); },
                               [this] { m_answers.push_back("given up"); },
                               [this](std::uint64_t place, const std::string&) { m_lost.push_back(place); }},
            PainterCare::Patience{0.5, 1.0});
    }
    /// Sees to the painter until so many answers came.
    void Wait(std::size_t answers) {
        const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(60);
        while (m_answers.size() < answers && std::chrono::steady_clock::now() < end) {
            const int wait = m_care->Look();
            pollfd file = {m_painter->file(), POLLIN, 0};
            if (poll(&file, 1, wait < 0 ? 100 : wait) > 0) m_care->Take();
        }
        ASSERT_EQ(m_answers.size(), answers);
    }

    SharedHead* m_head = nullptr;
    std::unique_ptr<PainterProcess> m_painter;
    std::unique_ptr<PainterCare> m_care;
    std::vector<std::string> m_answers;
    std::vector<std::uint64_t> m_lost;
};

TEST_F(PainterCareTest, DrawsWhatIsWanted) {
    Begin([](std::uint64_t) {});
    m_care->Want("a");
    Wait(1);
    m_care->Want("b");
    Wait(2);
    EXPECT_EQ(m_answers, (std::vector<std::string>{"drawn a", "drawn b"}));
    EXPECT_TRUE(m_lost.empty());
}

TEST_F(PainterCareTest, OfSeveralWishesTheLastIsDrawnNext) {
    Begin([](std::uint64_t) { std::this_thread::sleep_for(std::chrono::milliseconds(20)); });
    for (const char* wish : {"a", "b", "c"}) m_care->Want(wish);
    Wait(2);
    EXPECT_EQ(m_answers, (std::vector<std::string>{"drawn a", "drawn c"}));
}

TEST_F(PainterCareTest, AFeatureThatEndsTheDrawingIsNamedAndLeftOut) {
    Begin([](std::uint64_t place) {
        if (place == 2) {
            signal(SIGABRT, SIG_DFL);
            raise(SIGABRT);
        }
    });
    m_care->Want("a");
    Wait(1);
    EXPECT_EQ(m_answers, std::vector<std::string>{"drawn a"});
    EXPECT_EQ(m_lost, std::vector<std::uint64_t>{2});
}

TEST_F(PainterCareTest, AViewThatNoProcessSurvivesIsGivenUp) {
    Begin([this](std::uint64_t) {
        m_head->place.store(kNoPlace);
        throw std::runtime_error("not of a feature");
    });
    m_care->Want("a");
    Wait(1);
    EXPECT_EQ(m_answers, std::vector<std::string>{"given up"});
    EXPECT_TRUE(m_lost.empty());
}

TEST_F(PainterCareTest, WhoIsKilledFromOutsideDrawsAgainWithAllFeatures) {
    Begin([this](std::uint64_t place) {
        if (place == 2 && m_head->beat.fetch_add(1) == 0) raise(SIGKILL);
    });
    m_care->Want("a");
    Wait(1);
    EXPECT_EQ(m_answers, std::vector<std::string>{"drawn a"});
    EXPECT_TRUE(m_lost.empty());
}

TEST_F(PainterCareTest, AFeatureThatKeepsTheDrawingTwiceIsLeftOut) {
    Begin([](std::uint64_t place) {
        if (place == 3) std::this_thread::sleep_for(std::chrono::hours(1));
    });
    m_care->Want("a");
    const auto reach = [this] {
        for (int i = 0; i < 1000 && m_head->place.load() != 3; ++i)
            std::this_thread::sleep_for(std::chrono::milliseconds(10));
    };
    reach();
    const auto start = std::chrono::steady_clock::now();
    m_care->Want("b");  // the first time it is killed after half a second, and nothing is lost
    const pid_t first = m_painter->process();
    while (m_painter->process() == first) {
        m_care->Look();
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
    const double waited = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
    EXPECT_GE(waited, 0.5);
    EXPECT_TRUE(m_lost.empty());
    reach();
    m_care->Want("c");
    Wait(1);
    EXPECT_EQ(m_answers, std::vector<std::string>{"drawn c"});
    EXPECT_EQ(m_lost, std::vector<std::uint64_t>{3});
}

// Nobody wants another view: the person waits for this one.
TEST_F(PainterCareTest, AFeatureThatKeepsTheOnlyViewTwiceIsLeftOut) {
    Begin([](std::uint64_t place) {
        if (place == 3) std::this_thread::sleep_for(std::chrono::hours(1));
    });
    m_care->Want("a");
    Wait(1);
    EXPECT_EQ(m_answers, std::vector<std::string>{"drawn a"});
    EXPECT_EQ(m_lost, std::vector<std::uint64_t>{3});
}

TEST_F(PainterCareTest, WhoIsStoppedFromOutsideIsReplacedAndNoFeatureIsLost) {
    Begin([this](std::uint64_t place) {
        if (place == 2 && m_head->beat.fetch_add(1) < 2) raise(SIGSTOP);
    });
    m_care->Want("a");
    Wait(1);
    EXPECT_EQ(m_answers, std::vector<std::string>{"drawn a"});
    EXPECT_EQ(m_head->beat.load(), 3U);
    EXPECT_TRUE(m_lost.empty());
}

}  // namespace
