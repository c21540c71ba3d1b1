// One errand from its beginning to its end, by mouse and keys, in the Chinese window: a street is looked up, a plot is
// measured, a layer takes another colour, a symbol is mended, the sheet is printed. Each step leaves a picture.
#include <gmock/gmock.h>

#include <algorithm>

#include "tests/view/person.h"

namespace {

namespace fs = std::filesystem;
using namespace zm::test;
using nlohmann::json;
using testing::HasSubstr;

class PersonErrand : public ViewPerson {
 protected:
    void SetUp() override {
        ViewPerson::SetUp();
        if (IsSkipped()) return;
        for (const char* name : {"project.ini", "symbol.dat"})
            fs::copy_file(fs::path(ZENRO_SOURCE_DIR) / "data" / name, zenro / name);
    }
    static long Green(const QImage& image) {
        long count = 0;
        for (int y = 90; y < image.height() - 40; ++y)
            for (int x = 300; x < image.width(); ++x) {
                const QColor c = image.pixelColor(x, y);
                count += c.green() > c.red() + 40 && c.green() > c.blue() + 20 ? 1 : 0;
            }
        return count;
    }
    bool Says(const std::string& part) const {
        for (const json& line : Lines())
            if (line.value("note", "").find(part) != std::string::npos) return true;
        return false;
    }

    bool HasFound() const {
        const std::vector<json> lines = Lines();
        return std::any_of(lines.begin(), lines.end(), [](const json& line) { return line.value("found", 0) > 0; });
    }
    void FindTheStreet() {
        // A character that is on no key gets one for so long as it is typed: a busy machine looks too late and needs more time.
        for (const char* delay : {"60", "300", "1500", "5000"}) {
            Keys({"ctrl+f", "ctrl+a"});
            Do("type --delay " + std::string(delay) + " -- '人民路'");
            Keys({"Return"});
            for (int i = 0; i < 100 && !HasFound(); ++i) Sleep(100);
            if (HasFound()) break;
        }
        EXPECT_GE(AwaitKey("found").get<int>(), 1);
        Painted();
        Sleep(300);
        Shown("errand-1-street");
    }
    // The wall around the school, which is right of the middle: each click goes to the vertex that is nearest.
    void MeasureAPlot() {
        Keys({"a"});
        for (const auto& [x, y] : {std::pair{617, 296}, {802, 296}, {802, 536}, {617, 536}}) {
            Click(x, y);
            AwaitKey("measured");
            Sleep(100);
        }
        json last;
        for (const json& line : Lines())
            if (line.contains("measured")) last = line.at("measured");
        ASSERT_TRUE(last.contains("ellipsoidArea")) << last;
        EXPECT_NEAR(last.at("area").get<double>(), 118.0 * 152.0, 1e-3);  // metres, as the wall was surveyed
        EXPECT_NEAR(last.at("ellipsoidArea").get<double>() / last.at("area").get<double>(), 1.0, 1e-3);
        Shown("errand-2-plot");
        Keys({"Escape", "i"});
    }
    void ColourTheHouses() {
        const long before = Green(Shown());
        Keys({"alt+s", "Return"});
        TurnTo("层次颜色设定");
        Keys({"Home"});
        Do("key --repeat 21 --delay 30 Down");
        Settle();
        Keys({"Tab", "Tab", "Tab", "Tab", "ctrl+a", "3"});
        Shown("errand-3-settings");
        Keys({"alt+i"});
        TurnTo("警告");
        Keys({"alt+y"});
        AwaitGone("警告");
        TurnTo("层次颜色设定");
        Keys({"alt+o"});
        AwaitKey("ready");
        Painted();
        TurnTo("zenro view");
        Settle();
        EXPECT_GT(Green(Shown("errand-4-green")), before + 500);
        EXPECT_TRUE(Says("project.ini"));
    }
    void MendASymbol() {
        const long before = Green(Shown());
        Keys({"F6"});
        TurnTo("symbol.dat");
        Sleep(2500);  // the pictures in view
        Settle();
        Keys({"ctrl+f"});
        Do("type --delay 40 -- '200'");
        Keys({"Return"});
        Settle();
        Keys({"Tab", "Tab", "ctrl+a"});
        Do("type --delay 30 -- '*200 LC D0 A0 I0 C0 \"house\"'");
        Keys({"Return"});
        Do("type --delay 30 -- '+2 -2'");
        Sleep(800);
        Settle();
        Shown("errand-5-symbol");
        Keys({"ctrl+s"});
        for (int i = 0; i < 100 && !Says("symbol.dat: "); ++i) Sleep(100);
        EXPECT_TRUE(Says("symbol.dat: "));
        EXPECT_THAT(ReadFile(zenro / "symbol.dat"), HasSubstr("*200 LC D0 A0 I0 C0 \"house\"\n+2 -2\n"));
        Painted();
        Keys({"ctrl+w"});
        TurnTo("zenro view");
        Sleep(1000);
        Settle();
        EXPECT_LT(Green(Shown("errand-6-mended")), before * 95 / 100);  // the houses are dashed
    }
    void PrintTheSheet() {
        Keys({"ctrl+shift+p"});
        const json parts = AwaitKey("printed");
        EXPECT_GE(parts.get<int>(), 1);
        TurnTo("打印");
        Sleep(1500);
        Settle();
        Shown("errand-7-print");
        Keys({"Escape"});
        TurnTo("zenro view");
    }
};

TEST_F(PersonErrand, FromTheStreetToThePrintedSheet) {
    const Outcome r = Look(
        [&] {
            Sleep(300);
            Shown("errand-0-open");
            FindTheStreet();
            MeasureAPlot();
            ColourTheHouses();
            MendASymbol();
            PrintTheSheet();
        },
        {"--project", (zenro / "project.ini").string(), "--symbols", (zenro / "symbol.dat").string()},
        {"ZENRO_LANGUAGE=zh", "LC_CTYPE=C.UTF-8"});
    EXPECT_EQ(r.status, 0) << r.err;
}

}  // namespace
