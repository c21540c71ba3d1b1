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
 public:
    /// A dialog by its place in the menu; how it is saved, and where.
    struct Dialog {
        int place;
        const char *title, *save, *file;
    };

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
    void Look(const std::function<void()>& act) {
        const Outcome r = ViewPerson::Look(
            [&] {
                act();
                TurnTo("zenro view");
            },
            {"--sheet", "40500000", "3400000", "40500100", "3400080", "--scale", "500"},
            {"LD_LIBRARY_PATH=" + Module().string(), "LC_CTYPE=C.UTF-8"});
        EXPECT_EQ(r.status, 0) << r.err;
    }
    void TypeText(const char* text) const {
        Do(std::string("type --delay 20 -- '") + text + "'");
        Settle();
    }
    void OpenDialog(const Dialog& dialog) const {
        Keys({"alt+s"});
        Keys(std::vector<std::string>(static_cast<std::size_t>(dialog.place), "Down"));
        Keys({"Return"});
        TurnTo(dialog.title);
    }
    /// Opens a dialog, acts in it, saves; the map that is drawn with what was saved.
    QImage Change(const Dialog& dialog, const std::function<void()>& act) {
        OpenDialog(dialog);
        act();
        Shown(("settings-" + std::to_string(dialog.place)).c_str());
        Keys({dialog.save});
        AwaitKey("ready");
        Painted();
        const std::vector<json> lines = Lines();
        EXPECT_TRUE(std::any_of(lines.begin(), lines.end(), [&](const json& line) {
            return line.value("note", "").find(std::string(dialog.file) + ": written") != std::string::npos;
        }));
        Settle();
        return Map();
    }
    /// The part of the screen in which the house is.
    QImage Map() const { return Shown().copy(300, 120, 900, 700); }
    static long Count(const QImage& image, const std::function<bool(const QColor&)>& fits) {
        long count = 0;
        for (int y = 0; y < image.height(); ++y)
            for (int x = 0; x < image.width(); ++x) count += fits(image.pixelColor(x, y)) ? 1 : 0;
        return count;
    }
    static bool IsDark(const QColor& c) { return qGray(c.rgb()) < 100; }
    static bool IsGreen(const QColor& c) { return c.green() > c.red() + 40 && c.green() > c.blue() + 40; }
};

constexpr PersonSettings::Dialog kLayers = {0, "层次颜色设定", "alt+o", "project.ini"};
constexpr PersonSettings::Dialog kPens = {1, "线宽设置管理", "alt+o", "neworv.ini"};
constexpr PersonSettings::Dialog kNotes = {2, "注记分类信息管理", "alt+c", "Orvnote.cod"};
constexpr PersonSettings::Dialog kFonts = {3, "注记字体管理", "alt+o", "Orvnote.cod"};
constexpr PersonSettings::Dialog kColours = {4, "图形颜色设置", "alt+o", "neworv.ini"};

TEST_F(PersonSettings, ALayerTakesAnotherColour) {
    Look([&] {
        EXPECT_EQ(Count(Map(), IsGreen), 0);
        const QImage changed = Change(kLayers, [&] {
            Keys({"Home"});
            Do("key --repeat 21 --delay 30 Down");
            Settle();
            Keys({"Tab", "Tab", "Tab", "Tab", "ctrl+a", "3", "alt+i"});
            TurnTo("警告");  // whether the row is replaced
            Keys({"alt+y"});
            AwaitGone("警告");
            TurnTo(kLayers.title);
        });
        EXPECT_GT(Count(changed, IsGreen), 500);
    });
    EXPECT_THAT(Saved("project.ini"), HasSubstr("房屋 200 205 3 1"));
}

TEST_F(PersonSettings, APenBecomesWider) {
    Look([&] {
        const long thin = Count(Map(), IsDark);
        const QImage changed = Change(kPens, [&] {
            Keys({"Tab", "Tab"});
            TypeText("200");
            Keys({"Tab"});
            TypeText("90");
            Keys({"alt+a"});
        });
        EXPECT_GT(Count(changed, IsDark), thin + 3000);
    });
    EXPECT_THAT(Saved("neworv.ini"), HasSubstr("200=90"));
}

TEST_F(PersonSettings, ANoteClassTakesALargerFont) {
    Look([&] {
        const long small = Count(Map(), IsDark);
        const QImage changed = Change(kNotes, [&] {
            Keys({"Home"});
            Do("key --repeat 15 --delay 30 Tab");  // over the ten buttons to the height
            Settle();
            Keys({"ctrl+a"});
            TypeText("80");
            Keys({"Tab", "ctrl+a"});
            TypeText("80");
            Keys({"alt+u"});
        });
        EXPECT_GT(Count(changed, IsDark), small + 200);
    });
    EXPECT_THAT(Saved("Orvnote.cod"), testing::ContainsRegex("80, *80"));
}

TEST_F(PersonSettings, AFontLeans) {
    Look([&] {
        const QImage upright = Map();
        const QImage changed = Change(kFonts, [&] {
            Keys({"Home"});
            Do("key --repeat 10 --delay 30 Tab");
            Settle();
            Keys({"ctrl+a"});
            TypeText("2");
            Keys({"alt+u"});
        });
        EXPECT_NE(changed, upright);
    });
    EXPECT_THAT(Saved("Orvnote.cod"), testing::ContainsRegex("Hztxt, *2"));
}

TEST_F(PersonSettings, AColourOfThePaletteIsMixed) {
    Look([&] {
        EXPECT_EQ(Count(Map(), IsGreen), 0);
        const auto click = [&](const char* place) {
            Do(std::string("search --onlyvisible --name ") + kColours.title + " mousemove --window %1 " + place +
               " click 1");
        };
        const QImage changed = Change(kColours, [&] {
            click("30 41");   // the first colour
            click("371 78");  // its green
            Keys({"ctrl+a"});
            TypeText("200");
            click("330 150");  // try and update
        });
        EXPECT_GT(Count(changed, IsGreen), 500);
    });
}

TEST_F(PersonSettings, OneThatIsLeftByEscChangesNothing) {
    Look([&] {
        const std::string before = Saved("project.ini");
        OpenDialog(kLayers);
        Keys({"alt+a", "Escape"});
        AwaitGone(kLayers.title);
        EXPECT_EQ(Saved("project.ini"), before);
    });
    for (const json& line : Lines()) EXPECT_THAT(line.value("note", ""), testing::Not(HasSubstr("written")));
}

TEST_F(PersonSettings, AMapThatIsClosedTakesItsDialogAlong) {
    Look([&] { OpenDialog(kPens); });
    AwaitGone(kPens.title);
}

}  // namespace
