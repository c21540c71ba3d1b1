#include <fstream>

#include "dialogs/templates.h"
#include "runtime/text/numbers.h"
#include "tests/dialogs/dialog_test.h"

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using namespace zm::dialogs::layers;
using zm::dialogs::kCancelButton;
using zm::dialogs::kOkButton;

namespace {

constexpr char kFour[] =
    "[LayerSet]\nLayers=4\nLayer1=控制点 110 140 4 0\nLayer2=境界线 210 359 9 1\nLayer3=PIPE 430 460 7 0\n"
    "Layer4=地貌 780 820 6 1\n";

class LayersDialogTest : public DialogTest {
 protected:
    LayersDialogTest() { Load(kFour); }
    void Load(const char* text) {
        PutProject(text);
        ReadCengCi();
    }
    int Open(Play play) { return Run(OpenCengciDlg, std::move(play)); }
    static void Fill(Hand& hand, const char* name, const char* start, const char* end, const char* colour) {
        Type(hand, kName, name);
        Type(hand, kStart, start);
        Type(hand, kEnd, end);
        Type(hand, kColour, colour);
    }
    std::string File() const { return Saved(dirs.Project("map.ini")); }
};

}  // namespace

TEST_F(LayersDialogTest, ARowIsNameStartEndColourAndShowWithTabsBetweenPaddedNumbers) {
    Open([](Hand& hand) {
        EXPECT_EQ(Row(hand, kList, 0), "控制点\t     110\t       140\t         4\t       0");
        hand.Press(kCancelButton);
    });
}

TEST_F(LayersDialogTest, OpeningFillsTheListAndEmptiesTheEdits) {
    Open([](Hand& hand) {
        EXPECT_EQ(Count(hand, kList), 4);
        EXPECT_EQ(hand.Selected(kList), -1);
        for (const int edit : {kName, kColour, kStart, kEnd}) EXPECT_EQ(hand.Edit(edit), "");
        hand.Press(kCancelButton);
    });
}

TEST_F(LayersDialogTest, SelectingARowBeepsAndCopiesItToTheEditsAndTheCheckBox) {
    Open([this](Hand& hand) {
        hand.Select(kList, 1);
        EXPECT_EQ(host.beeps, 1);
        EXPECT_EQ(Utf8(hand.Edit(kName)), "境界线");
        EXPECT_EQ(hand.Edit(kStart), "210");
        EXPECT_EQ(hand.Edit(kEnd), "359");
        EXPECT_EQ(hand.Edit(kColour), "9");
        EXPECT_TRUE(hand.IsChecked(kShown));
        hand.Select(kList, 2);
        EXPECT_FALSE(hand.IsChecked(kShown));
        hand.Press(kCancelButton);
    });
}

struct Refused {
    const char* name;
    const char *layer, *start, *end, *colour;
};
void PrintTo(const Refused& c, std::ostream* out) {
    *out << c.name;
}
constexpr Refused kRefused[] = {
    {"no_name", "", "100", "200", "1"},
    {"no_start", "A", "", "200", "1"},
    {"no_end", "A", "100", "", "1"},
    {"no_colour", "A", "100", "200", ""},
    {"start_99", "A", "99", "200", "1"},
    {"end_1000", "A", "100", "1000", "1"},
    {"colour_256", "A", "100", "200", "256"},
    {"colour_300", "A", "100", "200", "300"},
    {"start_above_end", "A", "201", "200", "1"},
    {"start_is_no_number", "A", "x", "200", "1"},
};
class LayersRefused : public LayersDialogTest, public testing::WithParamInterface<Refused> {};
TEST_P(LayersRefused, IsToldAndTheListStays) {
    const Refused& c = GetParam();
    Open([&](Hand& hand) {
        Fill(hand, c.layer, c.start, c.end, c.colour);
        hand.Press(kInsert);
        EXPECT_EQ(Message(), "层数据不足");
        EXPECT_EQ(Count(hand, kList), 4);
        EXPECT_EQ(Utf8(hand.Edit(kName)), c.layer);
        EXPECT_TRUE(hand.IsOpen());
        hand.Press(kCancelButton);
    });
}
INSTANTIATE_TEST_SUITE_P(Layers, LayersRefused, testing::ValuesIn(kRefused),
                         [](const auto& info) { return std::string(info.param.name); });

TEST_F(LayersDialogTest, TheLimitsThemselvesAreTaken) {
    Open([](Hand& hand) {
        Fill(hand, "A", "100", "999", "255");
        hand.Press(kInsert);
        Fill(hand, "B", "500", "500", "0");
        hand.Press(kInsert);
        EXPECT_EQ(Count(hand, kList), 6);
        hand.Press(kCancelButton);
    });
}

TEST_F(LayersDialogTest, EditsThatCameFromARowAskBeforeTheyReplaceIt) {
    Open([this](Hand& hand) {
        hand.Select(kList, 1);
        host.answers = {IDYES};
        Type(hand, kColour, "3");
        hand.Press(kInsert);
        ASSERT_EQ(host.boxes.size(), 1u);
        EXPECT_EQ(Utf8(host.boxes[0].text), "确要替换当前记录吗?");
        EXPECT_EQ(Utf8(host.boxes[0].title), "警告");
        EXPECT_EQ(host.boxes[0].type & 0xF, MB_YESNO);
        EXPECT_EQ(Count(hand, kList), 4);
        EXPECT_EQ(Row(hand, kList, 1), "境界线\t     210\t       359\t         3\t       1");
        hand.Press(kCancelButton);
    });
}

TEST_F(LayersDialogTest, NoInsertsANewRowBesideTheSelectedOneSoTheListMayHoldBoth) {
    Open([this](Hand& hand) {
        hand.Select(kList, 1);
        host.answers = {IDNO};
        Type(hand, kColour, "3");
        hand.Press(kInsert);
        EXPECT_EQ(Count(hand, kList), 5);
        EXPECT_EQ(Row(hand, kList, 1), "境界线\t     210\t       359\t         3\t       1");
        EXPECT_EQ(Row(hand, kList, 2), "境界线\t     210\t       359\t         9\t       1");
        hand.Press(kCancelButton);
    });
}

TEST_F(LayersDialogTest, TheMarkIsClearedBeforeTheQuestionSoASecondRowGoesInUnasked) {
    Open([this](Hand& hand) {
        hand.Select(kList, 1);
        hand.Press(kInsert);
        EXPECT_EQ(host.boxes.size(), 1u);
        hand.Press(kInsert);
        EXPECT_EQ(host.boxes.size(), 1u);
        EXPECT_EQ(Count(hand, kList), 6);
        hand.Press(kCancelButton);
    });
}

TEST_F(LayersDialogTest, DeleteTakesTheSelectedRow) {
    Open([](Hand& hand) {
        hand.Press(kDelete);
        EXPECT_EQ(Count(hand, kList), 4);
        hand.Select(kList, 2);
        hand.Press(kDelete);
        EXPECT_EQ(Count(hand, kList), 3);
        EXPECT_EQ(hand.Selected(kList), -1);
        hand.Press(kCancelButton);
    });
}

TEST_F(LayersDialogTest, SwitchBeepsAndTurnsTheLastCharacterOfTheSelectedRowWhichStaysSelected) {
    Open([this](Hand& hand) {
        hand.Select(kList, 0);
        host.beeps = 0;
        hand.Press(kSwitch);
        EXPECT_EQ(host.beeps, 1);
        EXPECT_EQ(Row(hand, kList, 0).back(), '1');
        EXPECT_EQ(hand.Selected(kList), 0);
        hand.Press(kSwitch);
        EXPECT_EQ(Row(hand, kList, 0).back(), '0');
        hand.Press(kCancelButton);
    });
}

TEST_F(LayersDialogTest, SwitchAllTurnsAllRowsAndKeepsTheSelection) {
    Open([](Hand& hand) {
        hand.Select(kList, 3);
        hand.Press(kSwitchAll);
        std::string flags;
        for (int row = 0; row < 4; ++row) flags += Row(hand, kList, row).back();
        EXPECT_EQ(flags, "1010");
        EXPECT_EQ(hand.Selected(kList), 3);
        hand.Press(kCancelButton);
    });
}

TEST_F(LayersDialogTest, OkStoresTheRowsAndSavesThem) {
    EXPECT_EQ(Open([](Hand& hand) {
                  hand.Select(kList, 0);
                  hand.Press(kDelete);
                  hand.Press(kSwitchAll);
                  hand.Press(kOkButton);
              }),
              1);
    EXPECT_THAT(File(), HasSubstr("Layers=3"));
    EXPECT_THAT(File(), HasSubstr("Layer1=境界线 210 359 9 0"));
    EXPECT_THAT(File(), HasSubstr("Layer4=地貌 780 820 6 1"));  // not counted any more
}

TEST_F(LayersDialogTest, LookupsFindTheNewLayersAtOnce) {
    EXPECT_EQ(GetColorNo1(600), 0);
    Open([](Hand& hand) {
        Fill(hand, "新层", "600", "650", "5");
        hand.Press(kInsert);
        hand.Press(kOkButton);
    });
    EXPECT_EQ(GetColorNo1(600), 5);
    EXPECT_EQ(Utf8(GetLayerName(650)), "新层");
    EXPECT_FALSE(zm::config::state().tableHandedOut);
}

TEST_F(LayersDialogTest, CancelAndEscChangeNothing) {
    const std::string before = File();
    for (const bool escape : {false, true}) {
        EXPECT_EQ(Open([&](Hand& hand) {
                      hand.Press(kSwitchAll);
                      hand.Select(kList, 0);
                      hand.Press(kDelete);
                      escape ? hand.Escape() : hand.Press(kCancelButton);
                  }),
                  0);
        EXPECT_EQ(File(), before);
        EXPECT_EQ(GetRec(110), 0);
    }
}

TEST_F(LayersDialogTest, EachEditTakesEightCharactersAndEightChineseOnesToo) {
    Open([](Hand& hand) {
        Type(hand, kName, "一二三四五六七八九");
        EXPECT_EQ(Utf8(hand.Edit(kName)), "一二三四五六七八");
        Type(hand, kStart, "1234567890");
        EXPECT_EQ(hand.Edit(kStart), "12345678");
        hand.Press(kCancelButton);
    });
}

TEST_F(LayersDialogTest, ANameThatDoesNotFitIsCutAtACharacter) {
    Open([](Hand& hand) {
        Fill(hand, "一二三四五六七八", "600", "650", "5");
        hand.Press(kInsert);
        hand.Press(kOkButton);
    });
    EXPECT_EQ(Utf8(GetLayerName(600)), "一二三四五");
    EXPECT_THAT(File(), HasSubstr("Layer5=一二三四五 600 650 5 0"));
}

TEST_F(LayersDialogTest, ABlankInANameShiftsTheFieldsThatFollow) {
    Open([](Hand& hand) {
        Fill(hand, "A 5", "300", "400", "7");
        hand.Press(kInsert);
        hand.Press(kOkButton);
    });
    EXPECT_THAT(File(), HasSubstr("Layer5=A 5 300 400 7"));
}

TEST_F(LayersDialogTest, ATabOrLineEndInANameLosesNoLayer) {
    for (const char* name : {"A\tB", "A\nB", "A\r\nB"}) {
        Load(kFour);
        Open([&](Hand& hand) {
            Fill(hand, name, "300", "400", "7");
            hand.Press(kInsert);
            hand.Press(kOkButton);
        });
        EXPECT_THAT(File(), HasSubstr("Layers=5"));
        EXPECT_THAT(File(), HasSubstr("Layer5=A "));
        EXPECT_THAT(File(), HasSubstr("Layer4=地貌 780 820 6 1"));
    }
}

TEST_F(LayersDialogTest, AThousandLayersAreTheLimit) {
    std::string text = "[LayerSet]\nLayers=1000\n";
    for (int i = 1; i <= 1000; ++i) text += zm::numbers::Text("Layer%d=L%d 100 200 1 1\n", i, i);
    Load(text.c_str());
    Open([this](Hand& hand) {
        EXPECT_EQ(Count(hand, kList), 1000);
        Fill(hand, "A", "300", "400", "7");
        hand.Press(kInsert);
        EXPECT_EQ(Message(), "Too many layers");
        EXPECT_EQ(Count(hand, kList), 1000);
        hand.Select(kList, 999);
        host.answers = {IDYES};
        hand.Press(kInsert);
        EXPECT_EQ(Count(hand, kList), 1000);
        hand.Press(kOkButton);
    });
    EXPECT_THAT(File(), HasSubstr("Layers=1000"));
    EXPECT_THAT(File(), HasSubstr("Layer1000=L1000 100 200 1 1"));
}

TEST_F(LayersDialogTest, AFileThatCannotBeWrittenIsToldWithItsPath) {
    Block(dirs.Project("map.ini"));
    EXPECT_EQ(Open([](Hand& hand) { hand.Press(kOkButton); }), 1);
    EXPECT_THAT(Message(), HasSubstr("map.ini could not be written: the layers are not saved"));
}

TEST_F(LayersDialogTest, WhatAnotherProgramWroteInTheFileMeanwhileIsKept) {
    Open([this](Hand& hand) {
        std::ofstream(dirs.Project("map.ini"), std::ios::app | std::ios::binary) << "[Other]\nkey=value\n";
        hand.Press(kSwitchAll);
        hand.Press(kOkButton);
    });
    EXPECT_THAT(File(), HasSubstr("[Other]\nkey=value"));
    EXPECT_THAT(File(), HasSubstr("Layer1=控制点 110 140 4 1"));
}

TEST_F(LayersDialogTest, TablesThatAreFreedWhileTheDialogIsOpenAreNotTouched) {
    const std::string before = File();
    EXPECT_EQ(Open([](Hand& hand) {
                  DeleteCengCi8Dlg();
                  hand.Press(kOkButton);
              }),
              1);
    EXPECT_EQ(File(), before);
    EXPECT_THAT(Message(), HasSubstr("the layers are not saved"));
}

TEST_F(LayersDialogTest, WithoutTheTableTheEntrySaysSoAndShowsNothing) {
    DeleteCengCi8Dlg();
    EXPECT_EQ(Open([](Hand&) { ADD_FAILURE() << "shown"; }), 0);
    EXPECT_THAT(Message(), HasSubstr("ReadCengCi"));
}
