#include <cstring>

#include "dialogs/templates.h"
#include "runtime/text/numbers.h"
#include "tests/dialogs/dialog_test.h"

using testing::HasSubstr;
using namespace zm::dialogs::fonts;
using zm::dialogs::kOkButton;

namespace {

constexpr char kThree[] =
    "[NOTE CLASS]\nTOTAL=3\nC01=0,A,7,3,20,18,2,1,321,\nC02=A,B,2,3,30,28,3,2,1,\nC03=@,G,3,3,18,15,1,3,210,\n"
    "[FONT NAME]\n1=宋体,Standard,Hztxt,0,\n1C=400 0 0 134 3 2 1 49\n2=Times New Roman,NAMES,txt,1,\n"
    "2C=700 1 0 0 0 0 0 2\n3=Arial,Roman,simplex,2,\n";

class FontsDialogTest : public DialogTest {
 protected:
    FontsDialogTest() { PutNotes(kThree); }
    int Open(Play play) { return Run(OpenNoteFontDlg, std::move(play)); }
    static void Fill(Hand& hand, const char* number, const char* face = "Arial") {
        const char* values[] = {number, face, "Style", "font", "1"};
        for (int i = 0; i < kFields; ++i) Type(hand, kFirstEdit + i, values[i]);
    }
    std::string File() const { return Saved(dirs.Module("Orvnote.cod")); }
};

}  // namespace

TEST_F(FontsDialogTest, OpeningFillsTheListAndEmptiesTheEdits) {
    Open([](Hand& hand) {
        EXPECT_EQ(Row(hand, kList, 0), "  1                 宋体,    Standard,       Hztxt,   0");
        EXPECT_EQ(Row(hand, kList, 1), "  2      Times New Roman,       NAMES,         txt,   1");
        for (int i = 0; i < kFields; ++i) EXPECT_EQ(hand.Edit(kFirstEdit + i), "");
        hand.Escape();
    });
}

TEST_F(FontsDialogTest, SelectingARowBeepsSplitsItsFieldsAndTakesItsLogicalFont) {
    Open([this](Hand& hand) {
        hand.Select(kList, 1);
        EXPECT_EQ(host.beeps, 1);
        const char* values[] = {"2", "Times New Roman", "NAMES", "txt", "1"};
        for (int i = 0; i < kFields; ++i) EXPECT_EQ(hand.Edit(kFirstEdit + i), values[i]);
        LONG weight = 0;
        host.pick = [&](LOGFONTA& font) {
            weight = font.lfWeight;
            return false;
        };
        hand.Press(kChooser);
        EXPECT_EQ(weight, 700);
        hand.Escape();
    });
}

TEST_F(FontsDialogTest, FourLabelButtonsShowTheirHints) {
    Open([this](Hand& hand) {
        const std::pair<int, const char*> hints[] = {{1000, "对应注记分类中的字体号"},
                                                     {1002, "输出DWG时注记的文字类型,如Standard"},
                                                     {1003, "输出DWG时注记的字体名,如Hztxt"},
                                                     {1004, "字是否倾斜,0-不倾斜,1-左倾18度,2-右倾18度"}};
        for (const auto& [id, hint] : hints) {
            hand.Press(id);
            EXPECT_EQ(Message(), hint);
        }
        hand.Escape();
    });
}

TEST_F(FontsDialogTest, TheChooserStartsFromTheLogicalFontAndItsFaceGoesToTheEdit) {
    Open([this](Hand& hand) {
        hand.Select(kList, 0);
        host.pick = [](LOGFONTA& font) {
            EXPECT_EQ(font.lfWeight, 400);
            EXPECT_EQ(font.lfCharSet, 134);
            std::strcpy(font.lfFaceName, "Courier New");
            return true;
        };
        hand.Press(kChooser);
        EXPECT_EQ(hand.Edit(kFirstEdit + 1), "Courier New");
        host.pick = [](LOGFONTA& font) {
            std::strcpy(font.lfFaceName, "Other");
            return false;
        };
        hand.Press(kChooser);
        EXPECT_EQ(hand.Edit(kFirstEdit + 1), "Courier New");
        hand.Escape();
    });
}

TEST_F(FontsDialogTest, EveryEditMustBeginWithAByteOf33OrMoreAndChineseMay) {
    Open([this](Hand& hand) {
        for (const char* bad : {"", " x"})
            for (int i = 0; i < kFields; ++i) {
                Fill(hand, "1");
                Type(hand, kFirstEdit + i, bad);
                hand.Press(kUpdate);
                EXPECT_EQ(Message(), "非法") << i;
            }
        Fill(hand, "1", "黑体");
        hand.Press(kUpdate);
        EXPECT_EQ(Message(), "");
        EXPECT_THAT(Row(hand, kList, 0), HasSubstr("黑体"));
        hand.Escape();
    });
}

TEST_F(FontsDialogTest, UpdateWritesTheLogicalFontAtOnceAndStoresItInTheTable) {
    Open([this](Hand& hand) {
        hand.Select(kList, 1);
        Type(hand, kFirstEdit, "1");
        hand.Press(kUpdate);
        EXPECT_THAT(File(), HasSubstr("1C=700 1 0 0 0 0 0 2"));
        EXPECT_THAT(File(), HasSubstr("1=宋体,Standard,Hztxt,0,"));  // the line itself waits for 确认
        EXPECT_EQ(notes->GetFontInfo(1)->logFont.lfWeight, 700);
        hand.Escape();
    });
    EXPECT_THAT(File(), HasSubstr("1C=700 1 0 0 0 0 0 2"));
}

TEST_F(FontsDialogTest, UpdatePutsTheRowOfThatNumberAnewInItsPlaceSelected) {
    Open([](Hand& hand) {
        hand.Select(kList, 2);
        Fill(hand, "2");
        hand.Press(kUpdate);
        EXPECT_EQ(Count(hand, kList), 3);
        EXPECT_EQ(Row(hand, kList, 1), "  2                Arial,       Style,        font,   1");
        EXPECT_EQ(hand.Selected(kList), 1);
        Fill(hand, "9");
        hand.Press(kUpdate);
        EXPECT_EQ(hand.Selected(kList), 3);
        hand.Escape();
    });
}

TEST_F(FontsDialogTest, NineteenBytesOfEachEditAreReadCutAtACharacter) {
    Open([](Hand& hand) {
        Fill(hand, "1", "一二三四五六七八九十");
        hand.Press(kUpdate);
        EXPECT_THAT(Row(hand, kList, 0), HasSubstr(" 一二三四五六七八九,"));
        hand.Escape();
    });
}

TEST_F(FontsDialogTest, ConfirmWritesEachRowFromItsFifthCharacterWithoutAClosingCommaAndReadsTheFontsAgain) {
    EXPECT_EQ(Open([](Hand& hand) {
                  hand.Select(kList, 0);
                  Type(hand, kFirstEdit + 4, "2");
                  hand.Press(kUpdate);
                  hand.Press(kOkButton);
              }),
              1);
    EXPECT_THAT(File(), HasSubstr("宋体,    Standard,       Hztxt,   2\n"));
    EXPECT_EQ(notes->GetFontInfo(1)->slant, 2);  // "2System,...": the number ends at the first letter
    EXPECT_STREQ(notes->GetFontInfo(1)->fontName, "Hztxt");
}

TEST_F(FontsDialogTest, AtMostAHundredRowsAreWritten) {
    Open([](Hand& hand) {
        for (int number = 4; number <= 102; ++number) {
            Fill(hand, zm::numbers::Text("%d", number).c_str());
            hand.Press(kUpdate);
        }
        EXPECT_EQ(Count(hand, kList), 102);
        hand.Press(kOkButton);
    });
    EXPECT_THAT(File(), HasSubstr("\n100="));
    EXPECT_THAT(File(), testing::Not(HasSubstr("\n101=")));
}

TEST_F(FontsDialogTest, EscEndsWithoutTheLines) {
    EXPECT_EQ(Open([](Hand& hand) {
                  Fill(hand, "1");
                  hand.Press(kUpdate);
                  hand.Escape();
              }),
              0);
    EXPECT_THAT(File(), HasSubstr("1=宋体,Standard,Hztxt,0,"));
}

TEST_F(FontsDialogTest, AFileThatCannotBeWrittenIsToldAndTheRowsStay) {
    Open([this](Hand& hand) {
        Block(dirs.Module("Orvnote.cod"));
        Fill(hand, "1");
        hand.Press(kUpdate);
        EXPECT_THAT(Message(), HasSubstr("Orvnote.cod could not be written: the font is not saved"));
        EXPECT_THAT(Row(hand, kList, 0), HasSubstr("宋体"));
        hand.Press(kOkButton);
        EXPECT_THAT(Message(), HasSubstr("the note fonts are not saved"));
        EXPECT_TRUE(hand.IsOpen());
        hand.Escape();
    });
}

TEST_F(FontsDialogTest, WithoutNotesTheEntrySaysSo) {
    notes.reset();
    EXPECT_EQ(Open([](Hand&) { ADD_FAILURE() << "shown"; }), 0);
    EXPECT_THAT(Message(), HasSubstr("Orvnote.cod"));
}
