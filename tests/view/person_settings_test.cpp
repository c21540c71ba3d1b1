// The settings opened from the window of the map: the real dialogs by mouse and keys, and what the map shows after them.
#include <gmock/gmock.h>

#include <fstream>

#include "runtime/text/gbk.h"
#include "tests/view/person.h"

namespace {

namespace fs = std::filesystem;
using namespace zm::test;
using nlohmann::json;
using testing::HasSubstr;

class PersonSettings : public ViewPerson {
 protected:
    // The files of settings lie beside the library; the program takes copies of both, so that no other test sees them.
    void SetUp() override {
        ViewPerson::SetUp();
        if (IsSkipped()) return;
        fs::create_directory(Module());
        for (const auto& entry : fs::directory_iterator(ZENRO_LIBRARY_DIR))
            if (fs::is_regular_file(entry)) fs::copy_file(entry, Module() / entry.path().filename());
        m_inputs = {zenro.File(
            "things.geojson",
            Collection(AreaFeature("[[40500010,3400010],[40500070,3400010],[40500070,3400060],[40500010,3400060],"
                                   "[40500010,3400010]]",
                                   R"("kind":"house","name":"Town Hall")")))};
        WriteFile(zenro / "my.rules", "* -> layer 200, symbol 200, label name\n");
    }
    fs::path Module() const { return zenro / "module"; }
    std::string Saved(const char* name) const { return zm::gbk::ToUtf8(ReadFile(Module() / name)); }
    Outcome Look(const std::function<void()>& act) {
        return ViewPerson::Look(act, {"--sheet", "40500000", "3400000", "40500100", "3400080", "--scale", "500"},
                                {"LD_LIBRARY_PATH=" + Module().string(), "LC_CTYPE=C.UTF-8"});
    }
    void TypeText(const char* text) const {
        Do(std::string("type --delay 20 -- '") + text + "'");
        Settle();
    }
    /// Opens a dialog by its place in the menu.
    void OpenDialog(int place, const std::string& title) const {
        Keys({"alt+s"});
        Keys(std::vector<std::string>(static_cast<std::size_t>(place), "Down"));
        Keys({"Return"});
        TurnTo(title);
    }
    /// Waits until a file of settings was saved and the map is drawn with it; what the map shows then.
    QImage AfterSaved(const char* file) {
        AwaitKey("ready");
        Painted();
        const std::vector<json> lines = Lines();
        EXPECT_TRUE(std::any_of(lines.begin(), lines.end(), [&](const json& line) {
            return line.value("note", "").find(std::string(file) + ": written") != std::string::npos;
        }));
        Settle();
        return Map();
    }
    /// The part of the screen in which the house is.
    QImage Map(const char* name = nullptr) const { return Shown(name).copy(300, 120, 900, 700); }
    static long Count(const QImage& image, const std::function<bool(const QColor&)>& fits) {
        long count = 0;
        for (int y = 0; y < image.height(); ++y)
            for (int x = 0; x < image.width(); ++x) count += fits(image.pixelColor(x, y)) ? 1 : 0;
        return count;
    }
    static bool IsDark(const QColor& c) { return qGray(c.rgb()) < 100; }
    static bool IsGreen(const QColor& c) { return c.green() > c.red() + 40 && c.green() > c.blue() + 40; }
};

TEST_F(PersonSettings, ALayerTakesAnotherColour) {
    const Outcome r = Look([&] {
        EXPECT_EQ(Count(Map(), IsGreen), 0);
        OpenDialog(0, "层次颜色设定");
        Keys({"Home"});
        Do("key --repeat 21 --delay 30 Down");
        Settle();
        Keys({"Tab", "Tab", "Tab", "Tab", "ctrl+a", "3", "alt+i"});
        TurnTo("警告");  // whether the row is replaced
        Keys({"alt+y"});
        AwaitGone("警告");
        TurnTo("层次颜色设定");
        Shown("settings-layers");
        Keys({"alt+o"});
        EXPECT_GT(Count(AfterSaved("project.ini"), IsGreen), 500);
        TurnTo("zenro view");
    });
    EXPECT_EQ(r.status, 0) << r.err;
    EXPECT_THAT(Saved("project.ini"), HasSubstr("房屋 200 205 3 1"));
}

TEST_F(PersonSettings, APenBecomesWider) {
    const Outcome r = Look([&] {
        const long thin = Count(Map(), IsDark);
        OpenDialog(1, "线宽设置管理");
        Keys({"Tab", "Tab"});
        TypeText("200");
        Keys({"Tab"});
        TypeText("90");
        Keys({"alt+a"});
        Shown("settings-pens");
        Keys({"alt+o"});
        EXPECT_GT(Count(AfterSaved("neworv.ini"), IsDark), thin + 3000);
        TurnTo("zenro view");
    });
    EXPECT_EQ(r.status, 0) << r.err;
    EXPECT_THAT(Saved("neworv.ini"), HasSubstr("200=90"));
}

TEST_F(PersonSettings, ANoteClassTakesALargerFont) {
    const Outcome r = Look([&] {
        const long small = Count(Map(), IsDark);
        OpenDialog(2, "注记分类信息管理");
        Keys({"Home"});
        Do("key --repeat 15 --delay 30 Tab");  // over the ten buttons to the height
        Settle();
        Keys({"ctrl+a"});
        TypeText("80");
        Keys({"Tab", "ctrl+a"});
        TypeText("80");
        Keys({"alt+u"});
        Shown("settings-notes");
        Keys({"alt+c"});
        EXPECT_GT(Count(AfterSaved("Orvnote.cod"), IsDark), small + 200);
        TurnTo("zenro view");
    });
    EXPECT_EQ(r.status, 0) << r.err;
    EXPECT_THAT(Saved("Orvnote.cod"), testing::ContainsRegex("80, *80"));
}

TEST_F(PersonSettings, AFontLeans) {
    const Outcome r = Look([&] {
        const QImage upright = Map();
        OpenDialog(3, "注记字体管理");
        Keys({"Home"});
        Do("key --repeat 10 --delay 30 Tab");
        Settle();
        Keys({"ctrl+a"});
        TypeText("2");
        Keys({"alt+u"});
        Shown("settings-fonts");
        Keys({"alt+o"});
        EXPECT_NE(AfterSaved("Orvnote.cod"), upright);
        TurnTo("zenro view");
    });
    EXPECT_EQ(r.status, 0) << r.err;
    EXPECT_THAT(Saved("Orvnote.cod"), testing::ContainsRegex("Hztxt, *2"));
}

TEST_F(PersonSettings, AColourOfThePaletteIsMixed) {
    const Outcome r = Look([&] {
        EXPECT_EQ(Count(Map(), IsGreen), 0);
        OpenDialog(4, "图形颜色设置");
        Do("search --onlyvisible --name 图形颜色设置 mousemove --window %1 30 41 click 1");  // the first colour
        Do("search --onlyvisible --name 图形颜色设置 mousemove --window %1 371 78 click 1");
        Keys({"ctrl+a"});
        TypeText("200");
        Do("search --onlyvisible --name 图形颜色设置 mousemove --window %1 330 150 click 1");  // try and update
        Shown("settings-colours");
        Keys({"alt+o"});
        EXPECT_GT(Count(AfterSaved("neworv.ini"), IsGreen), 500);
        TurnTo("zenro view");
    });
    EXPECT_EQ(r.status, 0) << r.err;
}

TEST_F(PersonSettings, OneThatIsLeftByEscChangesNothing) {
    const Outcome r = Look([&] {
        const std::string before = Saved("project.ini");
        OpenDialog(0, "层次颜色设定");
        Keys({"alt+a", "Escape"});
        Sleep(1000);
        EXPECT_EQ(Saved("project.ini"), before);
        TurnTo("zenro view");
    });
    EXPECT_EQ(r.status, 0) << r.err;
    for (const json& line : Lines()) EXPECT_THAT(line.value("note", ""), testing::Not(HasSubstr("written")));
}

TEST_F(PersonSettings, AMapThatIsClosedTakesItsDialogAlong) {
    const Outcome r = Look([&] {
        OpenDialog(1, "线宽设置管理");
        TurnTo("zenro view");
    });
    EXPECT_EQ(r.status, 0) << r.err;
    Do("search --onlyvisible --name 线宽设置管理 getwindowname && exit 1 || exit 0");
}

}  // namespace
