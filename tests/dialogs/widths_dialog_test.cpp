#include "dialogs/templates.h"
#include "runtime/text/numbers.h"
#include "tests/dialogs/dialog_test.h"

using testing::HasSubstr;
using testing::Not;
using namespace zm::dialogs::widths;
using zm::dialogs::kCancelButton;
using zm::dialogs::kOkButton;

namespace {

class WidthsDialogTest : public DialogTest {
 protected:
    WidthsDialogTest() {
        PutWidths("[PenWidth]\nDefault=15\n1=10\n45=254\n999=25\n[Other]\nkey=value\n");
        ReadCengCi();
    }
    int Open(Play play) { return Run(OpenLineWidthDlg, std::move(play)); }
    static void Add(Hand& hand, const char* code, const char* width) {
        Type(hand, kCode, code);
        Type(hand, kWidth, width);
        hand.Press(kAdd);
    }
    std::string File() const { return Saved(dirs.Module("neworv.ini")); }
};

}  // namespace

TEST_F(WidthsDialogTest, OpeningReloadsTheTableFromTheFile) {
    PutWidths("[PenWidth]\nDefault=20\n7=30\n");
    Open([](Hand& hand) {
        EXPECT_EQ(hand.Edit(kDefault), "20");
        EXPECT_EQ(Count(hand, kTable), 1);
        hand.Press(kCancelButton);
    });
}

TEST_F(WidthsDialogTest, ARowForEveryCodeWithAWidthHasThreeDigitsAndTheWidth) {
    Open([](Hand& hand) {
        EXPECT_EQ(hand.Rows(kTable), (std::vector<std::string>{"001\t10", "045\t254", "999\t25"}));
        hand.Press(kCancelButton);
    });
}

TEST_F(WidthsDialogTest, BothColumnsAre54Wide) {
    Open([](Hand& hand) {
        const auto columns = hand.Columns(kTable);
        ASSERT_EQ(columns.size(), 2u);
        EXPECT_EQ(Utf8(columns[0].first), "编码");
        EXPECT_EQ(Utf8(columns[1].first), "线宽");
        EXPECT_EQ(columns[0].second, 54);
        EXPECT_EQ(columns[1].second, 54);
        hand.Press(kCancelButton);
    });
}

struct WrongWidth {
    const char* name;
    const char *code, *width;
};
void PrintTo(const WrongWidth& c, std::ostream* out) {
    *out << c.name;
}
constexpr WrongWidth kWrong[] = {
    {"no_code", "", "10"},     {"no_width", "5", ""},        {"code_0", "0", "10"},     {"code_1001", "1001", "10"},
    {"width_255", "5", "255"}, {"width_minus_1", "5", "-1"}, {"code_word", "abc", "1"},
};
class WidthsRefused : public WidthsDialogTest, public testing::WithParamInterface<WrongWidth> {};
TEST_P(WidthsRefused, IsToldByTheMessageBoxOfTheApplication) {
    Open([this](Hand& hand) {
        Add(hand, GetParam().code, GetParam().width);
        EXPECT_EQ(Message(), "请输入正确的编码或宽度");
        EXPECT_EQ(host.beeps, 0);  // not the way of _LMsg
        EXPECT_EQ(Count(hand, kTable), 3);
        hand.Press(kCancelButton);
    });
}
INSTANTIATE_TEST_SUITE_P(Widths, WidthsRefused, testing::ValuesIn(kWrong),
                         [](const auto& info) { return std::string(info.param.name); });

TEST_F(WidthsDialogTest, TheMessageGoesThroughTheApplicationsOwnBoxFunction) {
    static int calls = 0;
    calls = 0;
    Set_MessageBox_Process([](const char*, unsigned int, unsigned int) { return ++calls; });
    Open([](Hand& hand) {
        Add(hand, "", "");
        hand.Press(kCancelButton);
    });
    Set_MessageBox_Process(nullptr);
    EXPECT_EQ(calls, 1);
    EXPECT_EQ(Message(), "");
}

TEST_F(WidthsDialogTest, ANewCodeGoesToTheEndAsTypedSelectedAndVisible) {
    Open([](Hand& hand) {
        Add(hand, "5", "30");
        EXPECT_EQ(Row(hand, kTable, 3), "5\t30");
        EXPECT_EQ(hand.Selected(kTable), 3);
        EXPECT_EQ(hand.Revealed(kTable), 3);
        hand.Press(kCancelButton);
    });
}

TEST_F(WidthsDialogTest, TheSameCodeByNumberGetsTheNewWidthIsMadeVisibleAndAddsNoRow) {
    Open([](Hand& hand) {
        Add(hand, "45", "30");
        EXPECT_EQ(Count(hand, kTable), 3);
        EXPECT_EQ(Row(hand, kTable, 1), "045\t30");
        EXPECT_EQ(hand.Revealed(kTable), 1);
        EXPECT_EQ(hand.Selected(kTable), -1);
        hand.Press(kCancelButton);
    });
}

TEST_F(WidthsDialogTest, Code1000IsTakenIntoTheListAndNeverIntoTheTable) {
    EXPECT_EQ(Open([](Hand& hand) {
                  Add(hand, "1000", "30");
                  EXPECT_EQ(Count(hand, kTable), 4);
                  hand.Press(kOkButton);
              }),
              1);
    EXPECT_EQ(Message(), "");
    EXPECT_THAT(File(), Not(HasSubstr("1000")));
    EXPECT_EQ(GetPenWidth(1000), 0);
}

TEST_F(WidthsDialogTest, DeleteTakesTheRowWithTheFocusStateNotTheSelectedOne) {
    Open([](Hand& hand) {
        hand.Press(kDelete);
        EXPECT_EQ(Count(hand, kTable), 3);
        hand.Click(kTable, 0);
        hand.Focus(kTable, 2);
        hand.Press(kDelete);
        EXPECT_EQ(hand.Rows(kTable), (std::vector<std::string>{"001\t10", "045\t254"}));
        hand.Press(kCancelButton);
    });
}

TEST_F(WidthsDialogTest, OkClosesFirstThenClearsTheTableStoresAndSaves) {
    const std::string before = File();
    EXPECT_EQ(Open([&](Hand& hand) {
                  Type(hand, kDefault, "35");
                  hand.Click(kTable, 0);
                  hand.Press(kDelete);
                  Add(hand, "7", "40");
                  hand.Press(kOkButton);
                  EXPECT_FALSE(hand.IsOpen());
                  EXPECT_EQ(File(), before);  // nothing is done while the window is there
                  EXPECT_EQ(GetPenWidth(7), 15);
              }),
              1);
    EXPECT_EQ(GetPenWidth(7), 40);
    EXPECT_EQ(GetPenWidth(1), 35);
    EXPECT_EQ(GetPenWidth(999), 25);
    EXPECT_THAT(File(), HasSubstr("Default=35"));
    EXPECT_THAT(File(), HasSubstr("7=40"));
    EXPECT_THAT(File(), Not(HasSubstr("\n1=10")));
    EXPECT_THAT(File(), HasSubstr("[Other]\nkey=value"));
}

TEST_F(WidthsDialogTest, CancelAndEscSaveNothing) {
    const std::string before = File();
    for (const bool escape : {false, true}) {
        EXPECT_EQ(Open([&](Hand& hand) {
                      Add(hand, "7", "40");
                      escape ? hand.Escape() : hand.Press(kCancelButton);
                  }),
                  0);
        EXPECT_EQ(File(), before);
        EXPECT_EQ(GetPenWidth(7), 15);
    }
}

TEST_F(WidthsDialogTest, AFullTableIsShownAndSavedWhole) {
    std::string text = "[PenWidth]\nDefault=1\n";
    for (int code = 1; code < 1000; ++code) text += zm::numbers::Text("%d=%d\n", code, code % 255);
    PutWidths(text.c_str());
    Open([](Hand& hand) {
        EXPECT_EQ(Count(hand, kTable), 999);
        Add(hand, "999", "0");
        hand.Press(kOkButton);
    });
    EXPECT_EQ(GetPenWidth(998), 998 % 255);
    EXPECT_EQ(GetPenWidth(999), 0);
    EXPECT_THAT(File(), HasSubstr("998=233"));
}

TEST_F(WidthsDialogTest, AFileThatCannotBeWrittenIsToldWithItsPath) {
    Open([this](Hand& hand) {
        Block(dirs.Module("neworv.ini"));
        hand.Press(kOkButton);
    });
    EXPECT_THAT(Message(), HasSubstr("module\\neworv.ini could not be written: the pen widths are not saved"));
}

TEST_F(WidthsDialogTest, WithoutTheTableTheEntrySaysSoAndATableFreedMeanwhileIsNotTouched) {
    Open([](Hand& hand) {
        DeleteCengCi8Dlg();
        hand.Press(kOkButton);
    });
    EXPECT_THAT(Message(), HasSubstr("the pen widths are not saved"));
    EXPECT_EQ(Open([](Hand&) { ADD_FAILURE() << "shown"; }), 0);
    EXPECT_THAT(Message(), HasSubstr("ReadCengCi"));
}
