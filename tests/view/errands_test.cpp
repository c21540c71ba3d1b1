// Long questions are answered by processes of their own, in their order, and a search that is not wanted any more ends.
#include "tools/zenro/view/errands.h"

#include <gtest/gtest.h>
#include <poll.h>
#include <signal.h>

#include <chrono>
#include <map>
#include <thread>

namespace {

using nlohmann::json;
using zm::tool::Errands;

class ErrandsTest : public testing::Test {
 protected:
    Errands errands{[this](const json& question) { return Answer(question); },
                    [this](const json& question, json answer) { answers[question.at("id")] = std::move(answer); }};
    std::map<int, json> answers;
    int kept = 7;  // of the map

    json Answer(const json& question) const {
        const std::string text = question.value("text", "");
        if (text == "long") std::this_thread::sleep_for(std::chrono::hours(1));
        if (text == "bad") {
            signal(SIGABRT, SIG_DFL);
            raise(SIGABRT);
        }
        return {{"said", text}, {"kept", kept}};
    }
    void Ask(int id, const char* what, const char* text) { errands.Ask({{"id", id}, {"do", what}, {"text", text}}); }
    void Wait(std::size_t count) {
        const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(60);
        while (answers.size() < count && std::chrono::steady_clock::now() < end) {
            pollfd file = {errands.file(), POLLIN, 0};
            if (poll(&file, 1, 100) > 0) errands.Take();
        }
        ASSERT_EQ(answers.size(), count);
    }
};

TEST_F(ErrandsTest, EachKindIsAnsweredWithTheMapAsItIsThen) {
    Ask(1, "layers", "a");
    Ask(2, "search", "b");
    kept = 8;
    Wait(2);
    EXPECT_EQ(answers[1], (json{{"said", "a"}, {"kept", 7}}));
    EXPECT_EQ(answers[2], (json{{"said", "b"}, {"kept", 8}}));
    EXPECT_EQ(errands.file(), -1);  // no process stays
}

TEST_F(ErrandsTest, ANewerSearchTakesThePlaceOfALongOne) {
    Ask(1, "search", "long");
    Ask(2, "search", "b");
    Wait(2);
    EXPECT_EQ(answers[1], (json{{"dropped", true}}));
    EXPECT_EQ(answers[2].at("said"), "b");
}

TEST_F(ErrandsTest, OneThatEndsEachProcessIsGivenUpAndTheNextIsAnswered) {
    Ask(1, "search", "bad");
    Ask(2, "layers", "b");
    Wait(2);
    EXPECT_TRUE(answers[1].contains("error"));
    EXPECT_EQ(answers[2].at("said"), "b");
}

}  // namespace
