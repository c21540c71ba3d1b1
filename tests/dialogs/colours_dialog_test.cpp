#include "dialogs/templates.h"
#include "tests/dialogs/dialog_test.h"

using testing::HasSubstr;
using namespace zm::dialogs::colours;
using zm::dialogs::kCancelButton;
using zm::dialogs::kOkButton;

namespace {

using Parts = std::array<int, 3>;

class ColoursDialogTest : public DialogTest {
 protected:
    int Open(Play play) { return Run(SetSysColorSet, std::move(play)); }
    static void Fill(Hand& hand, const char* red, const char* green, const char* blue) {
        Type(hand, kRed, red);
        Type(hand, kGreen, green);
        Type(hand, kBlue, blue);
    }
    static unsigned long Palette(int number) {
        unsigned long* palette = nullptr;
        Get_SysColor(palette);
        return palette[number];
    }
    std::string File() const { return Saved(dirs.Machine("neworv.ini")); }
};

}  // namespace

TEST_F(ColoursDialogTest, OpeningAddsTheNineColoursSelectsTheFirstAndPutsItInTheEdits) {
    Open([](Hand& hand) {
        EXPECT_EQ(Count(hand, kTable), 9);
        EXPECT_EQ(Row(hand, kTable, 1), "[ 2 ]\t255\t0\t0");
        EXPECT_EQ(Row(hand, kTable, 8), "[ 9 ]\t192\t92\t92");
        EXPECT_EQ(hand.Selected(kTable), 0);
        EXPECT_EQ(hand.Edit(kRed) + hand.Edit(kGreen) + hand.Edit(kBlue), "000");
        hand.Press(kCancelButton);
    });
}

TEST_F(ColoursDialogTest, TheColumnsAre52And40Wide) {
    Open([](Hand& hand) {
        const auto columns = hand.Columns(kTable);
        ASSERT_EQ(columns.size(), 4u);
        const char* titles[] = {"色号", "红", "绿", "蓝"};
        for (std::size_t i = 0; i < 4; ++i) {
            EXPECT_EQ(Utf8(columns[i].first), titles[i]);
            EXPECT_EQ(columns[i].second, i == 0 ? 52 : 40);
        }
        hand.Press(kCancelButton);
    });
}

TEST_F(ColoursDialogTest, AClickSelectsCopiesToTheEditsAndRepaints) {
    Open([](Hand& hand) {
        hand.Click(kTable, 8);
        EXPECT_EQ(hand.Edit(kRed), "192");
        EXPECT_EQ(hand.Edit(kGreen), "92");
        EXPECT_EQ(hand.Edit(kBlue), "92");
        EXPECT_EQ(hand.Sample(), (Parts{192, 92, 92}));
        hand.Press(kCancelButton);
    });
}

TEST_F(ColoursDialogTest, ASelectionByTheKeyboardIsNoClick) {
    Open([](Hand& hand) {
        hand.Select(kTable, 8);
        EXPECT_EQ(hand.Edit(kRed), "0");
        hand.Press(kCancelButton);
    });
}

TEST_F(ColoursDialogTest, TryTakesTheEditsIntoTheSelectedRowAndRepaints) {
    Open([](Hand& hand) {
        hand.Click(kTable, 2);
        Fill(hand, "1", "2", "3");
        EXPECT_EQ(hand.Sample(), (Parts{0, 255, 0}));  // typing alone paints nothing
        hand.Press(kTry);
        EXPECT_EQ(Row(hand, kTable, 2), "[ 3 ]\t1\t2\t3");
        EXPECT_EQ(hand.Sample(), (Parts{1, 2, 3}));
        hand.Press(kCancelButton);
    });
}

TEST_F(ColoursDialogTest, EachEditIsHeldTo0To255ByTheDataExchange) {
    Open([this](Hand& hand) {
        for (const char* wrong : {"256", "-1", "99999999999999999999"}) {
            Fill(hand, "1", wrong, "3");
            hand.Press(kTry);
            EXPECT_THAT(Message(), HasSubstr("整数")) << wrong;
            EXPECT_EQ(Row(hand, kTable, 0), "[ 1 ]\t0\t0\t0");
            EXPECT_EQ(host.shown->focus, kGreen);
        }
        for (const char* wrong : {"", "12a", "red", "1.5"}) {
            Fill(hand, "1", "2", wrong);
            hand.Press(kTry);
            EXPECT_EQ(Message(), "请输入一个整数。") << wrong;
        }
        hand.Press(kCancelButton);
    });
}

TEST_F(ColoursDialogTest, TheSampleStandsAt128And20To156And60InUnitsOfTheClientHeightBy116) {
    Open([this](Hand& hand) {
        const zm::dialogs::Sample& sample = *host.shown->Painted();
        EXPECT_EQ(sample.box.x, 128);
        EXPECT_EQ(sample.box.y, 20);
        EXPECT_EQ(sample.box.x + sample.box.width, 156);
        EXPECT_EQ(sample.box.y + sample.box.height, 60);
        EXPECT_EQ(sample.unitsOfHeight, 116);
        hand.Press(kCancelButton);
    });
}

TEST_F(ColoursDialogTest, OkStoresTheRowsInThePaletteAndSavesThem) {
    EXPECT_EQ(Open([](Hand& hand) {
                  hand.Click(kTable, 8);
                  Fill(hand, "1", "2", "3");
                  hand.Press(kTry);
                  hand.Press(kOkButton);
              }),
              1);
    EXPECT_EQ(Palette(9), 0x030201ul);
    EXPECT_THAT(File(), HasSubstr("9=1,2,3"));
    EXPECT_THAT(File(), HasSubstr("2=255,0,0"));
}

TEST_F(ColoursDialogTest, OkWithAnEditOutOfRangeSavesNothingAndStaysOpen) {
    Open([this](Hand& hand) {
        Fill(hand, "300", "2", "3");
        hand.Press(kOkButton);
        EXPECT_THAT(Message(), HasSubstr("整数"));
        EXPECT_TRUE(hand.IsOpen());
        EXPECT_FALSE(std::filesystem::exists(dirs.Machine("neworv.ini")));
        hand.Press(kCancelButton);
    });
}

TEST_F(ColoursDialogTest, CancelAndEscChangeNothing) {
    for (const bool escape : {false, true}) {
        EXPECT_EQ(Open([&](Hand& hand) {
                      Fill(hand, "1", "2", "3");
                      hand.Press(kTry);
                      escape ? hand.Escape() : hand.Press(kCancelButton);
                  }),
                  0);
        EXPECT_EQ(Palette(1), 0ul);
        EXPECT_FALSE(std::filesystem::exists(dirs.Machine("neworv.ini")));
    }
}

TEST_F(ColoursDialogTest, AFileThatCannotBeWrittenIsToldWithItsPath) {
    Block(dirs.Machine("neworv.ini"));
    EXPECT_EQ(Open([](Hand& hand) { hand.Press(kOkButton); }), 1);
    EXPECT_THAT(Message(), HasSubstr("neworv.ini could not be written: the colours are not saved"));
}
