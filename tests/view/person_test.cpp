// A person before the window of the map: what mouse and keys do, screens large and small, what ends and comes back.
#include "tests/view/person.h"

#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cmath>
#include <fstream>
#include <sstream>

namespace {

namespace fs = std::filesystem;
using namespace zm::test;
using nlohmann::json;
using testing::HasSubstr;

TEST_F(ViewPerson, APictureIsWrittenAndTheWindowEnds) {
    const std::string file = (zenro / "out.png").string();
    const Outcome r = View({"--picture", file}, [](int) {});
    EXPECT_EQ(r.status, 0) << r.err;
    const QImage image(QString::fromStdString(file));
    EXPECT_GE(image.width(), 800);
    int dark = 0;  // in the middle, where the map is
    for (int x = image.width() / 3; x < image.width(); ++x)
        for (int y = 100; y < image.height() - 60; ++y) dark += qGray(image.pixel(x, y)) < 200 ? 1 : 0;
    EXPECT_GT(dark, 5000);
}

// The old one stays until the new one is whole.
TEST_F(ViewPerson, APictureTakesThePlaceOfTheOldOneAndAPipeInItsPlaceIsRefused) {
    zenro.File("real.png", "old");
    fs::create_symlink("real.png", zenro / "out.png");
    fs::create_hard_link(zenro / "real.png", zenro / "other name");
    EXPECT_EQ(View({"--picture", (zenro / "out.png").string()}, [](int) {}).status, 0);
    EXPECT_TRUE(fs::is_symlink(zenro / "out.png"));
    EXPECT_FALSE(QImage(QString::fromStdString((zenro / "real.png").string())).isNull());
    EXPECT_EQ(ReadFile(zenro / "other name"), "old");
    const std::string pipe = (zenro / "pipe.png").string();
    ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
    const int reader = open(pipe.c_str(), O_RDWR | O_NONBLOCK);
    const Outcome r = View({"--picture", pipe}, [](int) {});
    close(reader);
    EXPECT_EQ(r.status, 5);
    EXPECT_THAT(r.err, HasSubstr("cannot be written"));
    EXPECT_TRUE(fs::is_fifo(pipe));
}

TEST_F(ViewPerson, WithoutADisplayItSaysSoWithStatus1) {
    const Outcome r = View({}, [](int) {}, {"DISPLAY=", "QT_QPA_PLATFORM="});
    EXPECT_EQ(r.status, 1);
    EXPECT_THAT(r.err, HasSubstr("there is no display"));
}

TEST_F(ViewPerson, WrongDataEndsItWithTheStatusOfDraw) {
    const Outcome r = zenro.RunBeside({"view", "nothing.gpkg"}, Environment(), [](int) {});
    EXPECT_EQ(r.status, 3);
    EXPECT_THAT(r.err, HasSubstr("nothing.gpkg: no such file"));
}

TEST_F(ViewPerson, TheWheelZoomsAboutTheCursorAndTheHandPans) {
    const Outcome r = Look([&] {
        const std::vector<double> start = At();
        Move(900, 500);
        Do("click 4");
        const std::vector<double> zoomed = Painted();
        EXPECT_NEAR(zoomed[2], start[2] / 1.25, 1e-9);
        EXPECT_NE(zoomed[0], start[0]);
        Sleep(900);  // a view that was looked at, and not passed by
        Move(700, 400);
        Do("mousedown 1 mousemove 750 400 mousemove 1100 400 mouseup 1");
        const double wanted = zoomed[0] - 400 * zoomed[2];
        const At3 panned = Painted([&](const At3& at) { return std::fabs(at[0] - wanted) < 1e-6; });
        EXPECT_NEAR(panned[1], zoomed[1], 1e-6);
        Sleep(900);
        Do("key f");
        EXPECT_NEAR(Painted()[2], start[2], 1e-9);
        Sleep(900);
        Do("key alt+Left");
        EXPECT_EQ(Painted(), panned);
        Do("key alt+Right");
        EXPECT_NEAR(Painted()[2], start[2], 1e-9);
    });
    EXPECT_EQ(r.status, 0) << r.err;
}

TEST_F(ViewPerson, KeysAndARubberBandDoTheSame) {
    const Outcome r = Look([&] {
        const std::vector<double> start = At();
        Do("key plus");
        EXPECT_LT(Painted()[2], start[2]);
        Do("key --repeat 3 --delay 50 Right");
        EXPECT_GT(Painted()[0], start[0]);
        Do("key z");
        Move(600, 300);
        Do("mousedown 1 mousemove 640 320 mousemove 700 380 mouseup 1");
        EXPECT_LT(Painted([&](const At3& at) { return at[2] < start[2] / 4; })[2], start[2] / 4);
    });
    EXPECT_EQ(r.status, 0) << r.err;
}

TEST_F(ViewPerson, AClickNamesTheFeatureItsRuleAndItsAttributes) {
    const Outcome r = Look([&] {
        Do("key ctrl+f");
        Do("type --delay 20 -- 'feature'");
        Do("key ctrl+a");
        Do("type --delay 20 -- '200'");
        Do("key Return");
        EXPECT_GT(AwaitKey("found").get<int>(), 10);
        Painted();
        Move(755, 425);  // about the middle of the map, where the first house found lies
        Do("click 1");
        const json hit = AwaitKey("identified");
        ASSERT_GE(hit.at("hits").size(), 1U);
        EXPECT_THAT(hit.at("hits")[0].at("rules")[0].at("text").get<std::string>(), HasSubstr("my.rules:"));
        EXPECT_FALSE(hit.at("hits")[0].at("fields").empty());
    });
    EXPECT_EQ(r.status, 0) << r.err;
}

TEST_F(ViewPerson, MeasuresWithClicks) {
    const Outcome r = Look([&] {
        Do("key s");  // no snapping
        Do("key d");
        for (const int x : {600, 900}) {
            Move(x, 400);
            Do("click 1");
            Sleep(150);
        }
        AwaitKey("measured");
        const json m = AwaitKey("measured");
        EXPECT_NEAR(m.at("length").get<double>(), 300 * At()[2], 1e-6);
        EXPECT_NEAR(m.at("ellipsoidLength").get<double>(), 300 * At()[2], 0.01);
    });
    EXPECT_EQ(r.status, 0) << r.err;
}

TEST_F(ViewPerson, SavedRulesAreSeenAndWrongOnesAreNamedAtTheirLine) {
    const Outcome r = Look([&] {
        const std::string good = ReadFile(zenro / "my.rules");
        const std::vector<double> before = At();
        WriteFile(zenro / "my.rules", "[*]\nkind = 'house' -> symbol\n");
        EXPECT_THAT(AwaitKey("failed").get<std::string>(), HasSubstr("my.rules:2: \"symbol\" needs a value"));
        // Replaced by renaming, as editors do.
        WriteFile(zenro / "new.rules", "# one line more\n" + good);
        fs::rename(zenro / "new.rules", zenro / "my.rules");
        AwaitKey("ready");
        EXPECT_EQ(Painted(), before);
    });
    EXPECT_EQ(r.status, 0) << r.err;
}

// What the system says of its reader, and the title of the dialog that exports.
struct LanguageCase {
    const char *name, *lang, *language, *title;
};
void PrintTo(const LanguageCase& c, std::ostream* out) {
    *out << c.name;
}
class PersonLanguage : public ViewPerson, public testing::WithParamInterface<LanguageCase> {};
TEST_P(PersonLanguage, IsThatOfTheSystem) {
    const std::string title = GetParam().title;
    const Outcome r = Look(
        [&] {
            Keys({"ctrl+e"});
            TurnTo(title);
            Shown(GetParam().name);
            Keys({"Escape"});
            AwaitGone(title);
            TurnTo("zenro view");
        },
        {},
        {"ZENRO_LANGUAGE=", "LC_ALL=", "LC_MESSAGES=", std::string("LANG=") + GetParam().lang,
         std::string("LANGUAGE=") + GetParam().language});
    EXPECT_EQ(r.status, 0) << r.err;
}
INSTANTIATE_TEST_SUITE_P(
    Systems, PersonLanguage,
    testing::Values(LanguageCase{"chinese_by_lang", "zh_CN.UTF-8", "", "导出视图"},
                    LanguageCase{"chinese_by_lang_and_language", "zh_CN.UTF-8", "zh", "导出视图"},
                    LanguageCase{"chinese_by_language_in_another_locale", "de_DE.UTF-8", "zh_CN:en", "导出视图"},
                    LanguageCase{"english_by_language_in_a_chinese_locale", "zh_CN.UTF-8", "en", "Export the view"},
                    LanguageCase{"english_in_the_plain_locale_as_all_programs", "C.UTF-8", "zh", "Export the view"}),
    [](const auto& info) { return std::string(info.param.name); });

TEST_F(ViewPerson, OnASmallScreenTheWholeWindowIsThere) {
    TakeScreen("800x600x24");
    At3 pixels;
    const QImage image = Picture({}, pixels);
    EXPECT_LE(image.width(), 800);
    EXPECT_LE(image.height(), 600);
    EXPECT_GE(image.width(), 700);
    ASSERT_EQ(pixels.size(), 2U);
    EXPECT_GT(pixels[0] / 1.4, 300.0);  // of the map beside the layers
}

TEST_F(ViewPerson, OnAScreenOf200PercentThePictureIsDrawnInItsPixels) {
    At3 plain, fine;
    const QImage one = Picture({}, plain);
    TakeScreen("2560x1800x24");
    const QImage two = Picture({"QT_SCALE_FACTOR=2"}, fine);
    EXPECT_EQ(two.width(), 2 * one.width());
    ASSERT_EQ(plain.size(), 2U);
    ASSERT_EQ(fine.size(), 2U);
    EXPECT_NEAR(fine[0], 2 * plain[0], plain[0] / 20);  // fonts make the panels a little wider or narrower
}

TEST_F(ViewPerson, ADisplayThatGoesAwayEndsTheWindowAndItsProcesses) {
    int worker = 0;
    const Outcome r = View({}, [&](int process) {
        m_process = process;
        Painted();
        worker = Worker();
        m_screen->End();
        for (int i = 0; i < 200 && !HasEnded(); ++i) Sleep(100);
        EXPECT_TRUE(HasEnded());
        if (!HasEnded()) kill(process, SIGKILL);
    });
    EXPECT_NE(r.status, 0);
    ASSERT_GT(worker, 0);
    EXPECT_TRUE(AwaitEnd(worker));
}

TEST_F(ViewPerson, AnIdleWindowUsesNoProcessor) {
    const auto used = [](int process) {
        std::ifstream in("/proc/" + std::to_string(process) + "/stat");
        std::string line;
        std::getline(in, line);
        std::istringstream fields(line.substr(line.rfind(')') + 2));
        std::string skipped;
        for (int i = 0; i < 11; ++i) fields >> skipped;
        long user = 0, system = 0;
        fields >> user >> system;
        return user + system;  // hundredths of a second
    };
    const Outcome r = Look([&] {
        const int worker = Worker();
        Sleep(1000);
        const long keeps = used(worker), shows = used(m_process);
        Sleep(3000);
        EXPECT_LE(used(worker) - keeps, 3);  // 1 %
        EXPECT_LE(used(m_process) - shows, 3);
    });
    EXPECT_EQ(r.status, 0) << r.err;
}

}  // namespace
