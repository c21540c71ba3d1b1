// The windows of the settings dialogs, through their controls.
#include <QApplication>
#include <QCheckBox>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QTest>
#include <QTreeWidget>
#include <fstream>

#include "dialogs/settings.h"
#include "dialogs/templates.h"
#include "platform/qt/grid_text.h"
#include "platform/qt/qt_text.h"
#include "tests/dialogs/dialog_test.h"
#include "tests/platform/qt/dialog_hand.h"
#include "zenromath/qt.h"

using zm::test::QtHand;
using zm::vectors::Json;
using zm::vectors::Session;

namespace {

// The dialogs in windows, under a host whose boxes are recorded.
class DialogWindowTest : public DialogTest {
 protected:
    class WindowHost : public zm::test::TestHost {
     public:
        bool RunDialog(zm::dialogs::Dialog& dialog) override { return zm::test::OnWindow(dialog, play); }
        Play play;
    };

    DialogWindowTest() {
        zm::qt::EnsureApplication();
        PutProject(
            "[LayerSet]\nLayers=3\nLayer1=控制点 110 140 4 0\nLayer2=境界线 210 359 9 1\nLayer3=PIPE 430 460 7 0\n");
        PutWidths("[PenWidth]\nDefault=15\n1=10\n45=254\n999=25\n");
        PutNotes(
            "[NOTE CLASS]\nTOTAL=2\nC01=0,DEFAULT,7,3,20,18,2,1,321,default\nC02=A,注记,2,3,30,28,3,2,1,地名\n"
            "[FONT NAME]\n1=宋体,Standard,Hztxt,0,\n2=Times New Roman,NAMES,txt,1,\n");
        ReadCengCi();
    }
    int Open(int (*entry)(), const std::function<void(QtHand&)>& play) {
        windows.play = [&](Hand& hand) { play(static_cast<QtHand&>(hand)); };
        return entry();
    }
    int OpenEach(const std::function<void(QtHand&)>& play) {
        int opened = 0;
        for (int (*entry)() :
             {OpenCengciDlg, OpenLineWidthDlg, OpenNoteClassDlg, OpenNoteFontDlg, SetSysColorSet, Line})
            Open(entry, [&](QtHand& hand) {
                ++opened;
                play(hand);
                hand.Escape();
            });
        return opened;
    }
    static int Line() {
        CString value("text");
        return ExecOneEdit("title", value);
    }

    WindowHost windows;
};

}  // namespace

TEST(DialogWindows, PlayAllRecordedCoursesThroughTheirControls) {
    zm::qt::EnsureApplication();
    std::ifstream in(ZM_VECTORS "/dialogs.jsonl", std::ios::binary);
    int played = 0;
    for (std::string line; std::getline(in, line);) {
        const Json record = Json::parse(line);
        Session session(record);
        const zm::vectors::Outcome outcome = session.Play(zm::test::OnWindow);
        EXPECT_TRUE(outcome.passed) << record.at("id") << ": " << outcome.message;
        ++played;
    }
    EXPECT_EQ(played, 152);
}

TEST_F(DialogWindowTest, CaptionsAreShownWhole) {
    EXPECT_EQ(OpenEach([](QtHand& hand) {
                  for (const auto* button : hand.window()->findChildren<QAbstractButton*>())
                      EXPECT_LE(button->fontMetrics().horizontalAdvance(button->text()), button->width() - 8)
                          << button->text().toStdString();
                  for (const auto* label : hand.window()->findChildren<QLabel*>()) {
                      const bool grid = dynamic_cast<const zm::qt::GridLabel*>(label) != nullptr;
                      EXPECT_TRUE(grid || label->fontMetrics().horizontalAdvance(label->text()) <= label->width())
                          << label->text().toStdString();
                  }
              }),
              6);
}

TEST_F(DialogWindowTest, CaptionsAreShownWholeInALargerFontToo) {
    const QFont usual = QApplication::font();
    QFont large = usual;
    large.setPointSizeF(usual.pointSizeF() * 1.7);
    QApplication::setFont(large);
    OpenEach([](QtHand& hand) {
        for (const auto* button : hand.window()->findChildren<QAbstractButton*>())
            EXPECT_LE(button->fontMetrics().horizontalAdvance(button->text()), button->width() - 8);
    });
    QApplication::setFont(usual);
}

TEST_F(DialogWindowTest, TheTabKeyGoesThroughTheControlsInTheOrderOfTheTemplate) {
    Open(OpenCengciDlg, [](QtHand& hand) {
        hand.window()->activateWindow();
        hand.Find<QWidget>(2000)->setFocus();
        std::vector<int> order;
        for (int i = 0; i < 12; ++i) {
            order.push_back(hand.window()->focusWidget()->objectName().mid(7).toInt());
            QTest::keyClick(hand.window()->focusWidget(), Qt::Key_Tab);
        }
        EXPECT_EQ(order, (std::vector<int>{2000, 2002, 2004, 2005, 2003, 2001, 2100, 2101, 1054, 1055, 1, 2}));
        hand.Escape();
    });
}

TEST_F(DialogWindowTest, TheFirstControlHasTheKeyboardAndEnterInAnEditPressesTheDefaultButton) {
    EXPECT_EQ(Open(OpenCengciDlg,
                   [](QtHand& hand) {
                       EXPECT_EQ(hand.window()->focusWidget(), hand.Find<QWidget>(2000));
                       EXPECT_TRUE(hand.Find<QPushButton>(1)->isDefault());
                       hand.Enter();
                       EXPECT_FALSE(hand.IsOpen());
                   }),
              1);
}

TEST_F(DialogWindowTest, AltAndALetterPressTheirButtonAndCaptionsShowTheLetterOnlyMeanwhile) {
    Open(OpenCengciDlg, [](QtHand& hand) {
        auto* insert = hand.Find<QPushButton>(2100);
        EXPECT_EQ(insert->text().toStdString(), "插入");
        QTest::keyPress(hand.window(), Qt::Key_Alt, Qt::AltModifier);
        EXPECT_EQ(insert->text().toStdString(), "插入(&I)");
        EXPECT_EQ(insert->shortcut(), QKeySequence("Alt+I"));
        QTest::keyRelease(hand.window(), Qt::Key_Alt);
        EXPECT_EQ(insert->text().toStdString(), "插入");
        EXPECT_EQ(insert->shortcut(), QKeySequence("Alt+I"));
        hand.Escape();
    });
}

TEST_F(DialogWindowTest, ArrowsMoveTheSelectionOfAListAndCopyTheRow) {
    Open(OpenCengciDlg, [](QtHand& hand) {
        auto* list = hand.Find<QListWidget>(2000);
        QTest::keyClick(list, Qt::Key_Down);
        EXPECT_EQ(hand.Selected(2000), 0);
        QTest::keyClick(list, Qt::Key_Down);
        EXPECT_EQ(Utf8(hand.Edit(2002)), "境界线");
        EXPECT_EQ(hand.window()->focusWidget(), list);  // where the next key of a keyboard goes
        QTest::keyClick(list, Qt::Key_End);
        EXPECT_EQ(hand.Edit(2002), "PIPE");
        hand.Escape();
    });
}

TEST_F(DialogWindowTest, AClickOnTheSelectedRowIsOneMoreChoice) {
    Open(OpenCengciDlg, [this](QtHand& hand) {
        hand.Select(2000, 1);
        Type(hand, 2002, "other");
        hand.Select(2000, 1);
        EXPECT_EQ(Utf8(hand.Edit(2002)), "境界线");
        EXPECT_EQ(windows.beeps, 2);
        hand.Escape();
    });
}

TEST_F(DialogWindowTest, AnEditRefusesCharactersThatTheFilesCannotHold) {
    Open(OpenCengciDlg, [](QtHand& hand) {
        auto* edit = hand.Find<QLineEdit>(2002);
        for (const QString& text : {QStringLiteral("路"), QString::fromUtf8("\xF0\x9F\x98\x80"), QStringLiteral("é")}) {
            QInputMethodEvent event;
            event.setCommitString(text);
            QApplication::sendEvent(edit, &event);
        }
        EXPECT_EQ(Utf8(hand.Edit(2002)).substr(0, 3), "路");
        EXPECT_EQ(edit->text().indexOf(u'\xD83D'), -1);
        hand.Escape();
    });
}

TEST_F(DialogWindowTest, HalfACharacterInARowSurvivesAVisitToTheEdits) {
    zm::config::state().layers[0].name[3] = '\0';  // one character and a half
    Open(OpenCengciDlg, [](QtHand& hand) {
        hand.Select(2000, 0);
        hand.Press(2100);
        hand.Press(1);
    });
    EXPECT_STREQ(zm::config::state().layers[0].name, std::string(Gbk("控制"), 0, 3).c_str());
}

TEST_F(DialogWindowTest, TheOwnerThatGoesAwayTakesTheWindowAlongAndNothingIsSaved) {
    const std::string before = Saved(dirs.Module("Orvnote.cod"));
    auto* owner = new QWidget;
    owner->show();
    windows.mainWindow = reinterpret_cast<HWND>(owner);
    EXPECT_EQ(Open(OpenNoteClassDlg,
                   [&](QtHand& hand) {
                       EXPECT_EQ(hand.window()->parentWidget(), owner);
                       hand.Select(2000, 0);
                       delete owner;
                       EXPECT_FALSE(hand.IsOpen());
                   }),
              0);
    EXPECT_EQ(Saved(dirs.Module("Orvnote.cod")), before);
}

TEST_F(DialogWindowTest, AnOwnerThatIsGoneAlreadyIsNotAskedFor) {
    auto* owner = new QWidget;
    windows.mainWindow = reinterpret_cast<HWND>(owner);
    delete owner;
    EXPECT_EQ(Open(SetSysColorSet, [](QtHand& hand) { hand.Escape(); }), 0);
}

TEST_F(DialogWindowTest, TheCloseBoxIsEsc) {
    EXPECT_EQ(Open(OpenNoteClassDlg,
                   [](QtHand& hand) {
                       hand.window()->close();
                       EXPECT_FALSE(hand.IsOpen());
                   }),
              1);
}

TEST_F(DialogWindowTest, TheTabKeyAloneGivesNoRowTheFocusState) {
    Open(OpenLineWidthDlg, [](QtHand& hand) {
        auto* table = hand.Find<QTreeWidget>(1038);
        hand.Find<QWidget>(1003)->setFocus(Qt::TabFocusReason);
        table->setFocus(Qt::TabFocusReason);
        EXPECT_EQ(hand.Focused(1038), -1);
        hand.Press(1033);
        EXPECT_EQ(Count(hand, 1038), 3);
        hand.Escape();
    });
}

TEST_F(DialogWindowTest, AThousandRowsAreShownAndTheLastIsReached) {
    std::string text = "[LayerSet]\nLayers=1000\n";
    for (int i = 1; i <= 1000; ++i) text += "Layer" + std::to_string(i) + "=L" + std::to_string(i) + " 100 200 1 1\n";
    PutProject(text.c_str());
    ReadCengCi();
    Open(OpenCengciDlg, [](QtHand& hand) {
        QTest::keyClick(hand.Find<QListWidget>(2000), Qt::Key_End);
        EXPECT_EQ(hand.Selected(2000), 999);
        EXPECT_EQ(hand.Edit(2002), "L1000");
        hand.Press(1055);
        EXPECT_EQ(Row(hand, 2000, 999).back(), '0');
        hand.Escape();
    });
}
