#include "dialogs/templates.h"
#include "dialogs/texts.h"
#include "runtime/text/numbers.h"
#include "tests/dialogs/dialog_test.h"

using testing::HasSubstr;
using testing::Not;
using namespace zm::dialogs::classes;
using zm::dialogs::kOkButton;

namespace {

constexpr char kFour[] =
    "[NOTE CLASS]\nTOTAL=4\nCWEIGHT=1.000\nC01=0,DEFAULT,7,3,20,18,2,1,321,default\nC02=A,注记,2,3,30,28,3,2,1,地名\n"
    "C03=@,GCD,3,3,18,15,1,3,210,\nC04=c,N,4,0,25,20,0,1,100,x\n[FONT NAME]\n1=System,Standard,Hztxt,0,\n";

class ClassesDialogTest : public DialogTest {
 protected:
    ClassesDialogTest() { PutNotes(kFour); }
    int Open(Play play) { return Run(OpenNoteClassDlg, std::move(play)); }
    static void Fill(Hand& hand, const char* code) {
        const char* values[] = {code, "NEW", "1", "3", "20", "18", "2", "1", "111", "memo"};
        for (int i = 0; i < kFields; ++i) Type(hand, kFirstEdit + i, values[i]);
    }
    std::string File() const { return Saved(dirs.Module("Orvnote.cod")); }
};

}  // namespace

TEST_F(ClassesDialogTest, ARowHasTenFieldsPaddedBetweenCommas) {
    Open([](Hand& hand) {
        EXPECT_EQ(Row(hand, kList, 0), "0, DEFAULT,   7,   3,  20,  18,   2,   1, 321, default");
        hand.Press(kOkButton);
    });
}

TEST_F(ClassesDialogTest, OpeningFillsTheListFromMemoryAndEmptiesTheEdits) {
    zm::test::WriteFile(dirs.Module("Orvnote.cod"), "[NOTE CLASS]\nTOTAL=0\n");
    Open([](Hand& hand) {
        EXPECT_EQ(Count(hand, kList), 4);
        for (int i = 0; i < kFields; ++i) EXPECT_EQ(hand.Edit(kFirstEdit + i), "");
        hand.Press(kOkButton);
    });
}

TEST_F(ClassesDialogTest, SelectingARowBeepsAndCopiesItsFieldsToTheEdits) {
    Open([this](Hand& hand) {
        hand.Select(kList, 1);
        EXPECT_EQ(host.beeps, 1);
        const char* values[] = {"A", "注记", "2", "3", "30", "28", "3", "2", "1", "地名"};
        for (int i = 0; i < kFields; ++i) EXPECT_EQ(Utf8(hand.Edit(kFirstEdit + i)), values[i]);
        hand.Press(kOkButton);
    });
}

TEST_F(ClassesDialogTest, EachOfTheTenLabelButtonsShowsItsHint) {
    const char* hints[] = {
        "分类号是注记的基本管理单位.\n为单个字符,0-为默认,@-为高程,#-为控制点\n有效范围从A-Z,a-z,0-9",
        "层名(包含类,作用暂时保留),字符型,不得有空格",
        "颜色号,有效范围1-7",
        "显示开关,0-不输出,非0-输出(请设为3)",
        "字体高度,以0.1毫米为单位",
        "字体宽度,以0.1毫米为单位",
        "字符间隔,以0.1毫米为单位",
        "字体号(整型),对应字体名等设置",
        "注记转换设置,作用暂时保留",
        "补充说明"};
    Open([&](Hand& hand) {
        for (int i = 0; i < kFields; ++i) {
            hand.Press(kFirstHint + i);
            EXPECT_EQ(Message(), hints[i]);
        }
        EXPECT_EQ(host.beeps, kFields);
        hand.Press(kOkButton);
    });
}

TEST_F(ClassesDialogTest, ANewClassCharacterGoesToTheEndSelected) {
    Open([](Hand& hand) {
        Fill(hand, "Z");
        hand.Press(kUpdate);
        EXPECT_EQ(Row(hand, kList, 4), "Z,     NEW,   1,   3,  20,  18,   2,   1, 111, memo");
        EXPECT_EQ(hand.Selected(kList), 4);
        hand.Press(kOkButton);
    });
}

TEST_F(ClassesDialogTest, AClassCharacterAlreadyThereReplacesThatRowWhateverElseDiffers) {
    Open([](Hand& hand) {
        hand.Select(kList, 3);
        Fill(hand, "@");
        hand.Press(kUpdate);
        EXPECT_EQ(Count(hand, kList), 4);
        EXPECT_EQ(Row(hand, kList, 2).substr(0, 10), "@,     NEW");
        EXPECT_EQ(hand.Selected(kList), 2);
        hand.Press(kOkButton);
    });
}

TEST_F(ClassesDialogTest, AnyOfTheNineEmptyIsNotAllowedAndNothingChanges) {
    Open([this](Hand& hand) {
        for (int i = 0; i < kFields - 1; ++i) {
            Fill(hand, "Z");
            Type(hand, kFirstEdit + i, "");
            hand.Press(kUpdate);
            EXPECT_EQ(Message(), "非法") << i;
            EXPECT_EQ(Count(hand, kList), 4);
        }
        Fill(hand, "Z");
        Type(hand, kFirstEdit + 9, "");
        hand.Press(kUpdate);
        EXPECT_EQ(Message(), "");
        hand.Press(kOkButton);
    });
}

TEST_F(ClassesDialogTest, FirstBytesOutside33To125AreNotAllowedButInTheLayerName) {
    Open([this](Hand& hand) {
        for (const char* bad : {" 1", "~", "中"})
            for (int i = 0; i < kFields - 1; ++i) {
                Fill(hand, "Z");
                Type(hand, kFirstEdit + i, bad);
                hand.Press(kUpdate);
                EXPECT_EQ(Message(), i == 1 ? "" : "非法") << bad << i;
            }
        hand.Press(kOkButton);
    });
}

TEST_F(ClassesDialogTest, EightBytesOfTheNineAnd39OfTheMemoAreReadCutAtACharacter) {
    Open([](Hand& hand) {
        Fill(hand, "Z");
        Type(hand, kFirstEdit + 1, "a一二三四五");
        Type(hand, kFirstEdit + 9, "一二三四五六七八九十一二三四五六七八九十一");
        hand.Press(kUpdate);
        EXPECT_THAT(Row(hand, kList, 4), HasSubstr("Z, a一二三,"));
        EXPECT_TRUE(Row(hand, kList, 4).ends_with(", 一二三四五六七八九十一二三四五六七八九"));
        hand.Press(kOkButton);
    });
}

TEST_F(ClassesDialogTest, NumbersAreWhatTheTextBeginsWith) {
    Open([](Hand& hand) {
        Fill(hand, "Z");
        Type(hand, kFirstEdit + 2, "5x");
        Type(hand, kFirstEdit + 3, "x");
        hand.Press(kUpdate);
        EXPECT_EQ(Row(hand, kList, 4), "Z,     NEW,   5,   0,  20,  18,   2,   1, 111, memo");
        hand.Press(kOkButton);
    });
}

TEST_F(ClassesDialogTest, DeleteTakesTheSelectedRow) {
    Open([](Hand& hand) {
        hand.Select(kList, 0);
        hand.Press(kDelete);
        EXPECT_EQ(Row(hand, kList, 0).front(), 'A');
        EXPECT_EQ(hand.Selected(kList), -1);
        hand.Press(kOkButton);
    });
}

TEST_F(ClassesDialogTest, ClosingWritesTheRowsInTheirPaddedFormAndReadsTheClassesAgain) {
    EXPECT_EQ(Open([](Hand& hand) {
                  Fill(hand, "Z");
                  hand.Press(kUpdate);
                  hand.Press(kOkButton);
              }),
              1);
    EXPECT_THAT(File(), HasSubstr("TOTAL=5"));
    EXPECT_THAT(File(), HasSubstr("C05=Z,     NEW,   1,   3,  20,  18,   2,   1, 111, memo"));
    EXPECT_EQ(notes->GetCount(), 5);
    EXPECT_EQ(notes->CharH('Z'), 20);
    EXPECT_STREQ(notes->LayerName('0'), "DEFAULT");
}

TEST_F(ClassesDialogTest, EscSavesToo) {
    EXPECT_EQ(Open([](Hand& hand) {
                  hand.Select(kList, 3);
                  hand.Press(kDelete);
                  hand.Escape();
              }),
              1);
    EXPECT_EQ(notes->GetCount(), 3);
}

TEST_F(ClassesDialogTest, TheHundredthLineIsWrittenAndNotReadBackAndNoMoreAreWritten) {
    std::string text = "[NOTE CLASS]\nTOTAL=99\n";
    for (int i = 1; i <= 99; ++i) text += zm::numbers::Text("C%02d=%c,L,1,3,20,18,2,1,1,\n", i, 33 + i % 90);
    PutNotes(text.c_str());
    Open([](Hand& hand) {
        for (const char* code : {"{", "|", "}"}) {
            Fill(hand, code);
            hand.Press(kUpdate);
        }
        hand.Press(kOkButton);
    });
    EXPECT_THAT(File(), HasSubstr("TOTAL=102"));
    EXPECT_THAT(File(), HasSubstr("C100={"));
    EXPECT_THAT(File(), Not(HasSubstr("C101=")));
    EXPECT_EQ(notes->GetCount(), 99);
}

TEST_F(ClassesDialogTest, AFileThatCannotBeWrittenIsToldAndTheDialogStaysOpenWithItsRows) {
    EXPECT_EQ(Open([this](Hand& hand) {
                  hand.Select(kList, 0);
                  hand.Press(kDelete);
                  Block(dirs.Module("Orvnote.cod"));
                  hand.Press(kOkButton);
                  EXPECT_THAT(Message(), HasSubstr("Orvnote.cod could not be written: the note classes are not saved"));
                  EXPECT_TRUE(hand.IsOpen());
                  EXPECT_EQ(Count(hand, kList), 3);
                  hand.Escape();
                  EXPECT_THAT(Message(), HasSubstr("not saved"));
                  EXPECT_FALSE(hand.IsOpen());
              }),
              0);
    EXPECT_EQ(notes->GetCount(), 4);
}

TEST_F(ClassesDialogTest, WithoutNoteClassesTheEntrySaysSo) {
    notes.reset();
    EXPECT_EQ(Open([](Hand&) { ADD_FAILURE() << "shown"; }), 0);
    EXPECT_THAT(Message(), HasSubstr("Orvnote.cod"));
}
