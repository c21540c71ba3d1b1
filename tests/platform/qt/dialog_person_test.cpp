// A person before the screen: the windows on an X server of their own, mouse and keyboard by the server, a picture of
// each. ZM_PICTURES names a folder that keeps the pictures; without it they lie with the build.
#include <QApplication>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QScreen>
#include <QTest>
#include <QTimer>
#include <QTreeWidget>
#include <cstdlib>

#include "tests/dialogs/dialog_test.h"
#include "tests/platform/qt/dialog_hand.h"
#include "tests/support/screen.h"
#include "zenromath/qt.h"
#include "zenromath/qt_host.h"

using testing::HasSubstr;
using zm::test::OpenWindow;

namespace {

constexpr int kSettle = 120;  // milliseconds until what the server sent has arrived

class Person : public DialogTest {
 protected:
    static void SetUpTestSuite() {
        if (QCoreApplication::instance() != nullptr || !zm::test::Screen::IsPossible()) return;
        static zm::test::Screen screen;
        if (!screen.running()) return;
        ::setenv("DISPLAY", screen.display().c_str(), 1);
        ::setenv("QT_QPA_PLATFORM", "xcb", 1);
        // The server must outlive every connection of Qt's.
        zm::qt::EnsureApplication();
    }

    void SetUp() override {
        if (QCoreApplication::instance() == nullptr || QGuiApplication::platformName() != QLatin1String("xcb"))
            GTEST_SKIP() << "no screen: install the packages xvfb and xdotool";
        PutProject(
            "[LayerSet]\nLayers=5\nLayer1=控制点 110 140 4 1\nLayer2=居民地 210 359 2 1\nLayer3=道路 430 460 7 1\n"
            "Layer4=水系 510 560 4 0\nLayer5=植被 780 820 3 1\n");
        PutWidths("[PenWidth]\nDefault=15\n110=10\n210=25\n430=35\n510=20\n780=12\n");
        PutNotes(
            "[NOTE CLASS]\nTOTAL=4\nC01=0,DEFAULT,7,3,20,18,2,1,321,默认\nC02=A,居民地,2,3,30,28,3,2,1,村镇名\n"
            "C03=@,GCD,3,3,18,15,1,3,210,高程\nC04=c,水系,4,3,25,20,10,1,100,河名\n"
            "[FONT NAME]\n1=宋体,Standard,Hztxt,0,\n1C=400 0 0 134 3 2 1 49\n2=Times New Roman,NAMES,txt,1,\n"
            "3=黑体,Roman,simplex,2,\n");
        ReadCengCi();
    }

    /// Opens a dialog under the Qt host and acts before it; what is open when act returns is left by Esc.
    int Open(int (*entry)(), std::function<void()> act) {
        zm::qt::QtHost qt;
        zm::Host* previous = zm::SetHost(&qt);
        QTimer::singleShot(0, [&] {
            Settle();
            Turn();
            act();
            if (OpenWindow() != nullptr) OpenWindow()->done(0);
        });
        const int result = entry();
        zm::SetHost(previous);
        return result;
    }

    /// A picture of one pixel is asked of the server, which may be slow: what it sent before has then arrived.
    static void Settle() {
        QTest::qWait(kSettle);
        QGuiApplication::primaryScreen()->grabWindow(0, 0, 0, 1, 1);
        QTest::qWait(kSettle / 4);
    }
    static void Do(const std::string& command) {
        ASSERT_EQ(std::system(("xdotool " + command).c_str()), 0) << command;
        Settle();
    }
    /// There is no window manager, which would give the keyboard to the new window.
    static void Turn() { Do("windowfocus " + std::to_string(QApplication::activeModalWidget()->winId())); }
    static void Keys(const std::string& keys) { Do("key --clearmodifiers " + keys); }
    static void TypeText(const std::string& text) { Do("type --delay 20 -- '" + text + "'"); }
    static void ClickAt(const QPoint& place) {
        const double ratio = qApp->devicePixelRatio();
        Do("mousemove " + std::to_string(std::lround(place.x() * ratio)) + " " +
           std::to_string(std::lround(place.y() * ratio)) + " click 1");
    }
    template <class Widget = QWidget>
    static Widget* Find(int id) {
        return OpenWindow()->findChild<Widget*>(zm::qt::DialogWindow::NameOf(id));
    }
    static void ClickOn(int id) { ClickAt(Find(id)->mapToGlobal(Find(id)->rect().center())); }
    static void ClickRow(int id, int row) {
        auto* view = Find<QAbstractItemView>(id);
        const QRect place = view->visualRect(view->model()->index(row, 0));
        ClickAt(view->viewport()->mapToGlobal(QPoint(12, place.center().y())));
    }
    static std::string EditText(int id) { return Find<QLineEdit>(id)->text().toStdString(); }
    static void Keep(const char* name) {
        const char* folder = std::getenv("ZM_PICTURES");
        const QPixmap picture = QGuiApplication::primaryScreen()->grabWindow(0, 0, 0, -1, -1);
        const QRect window = OpenWindow()->frameGeometry();
        const double ratio = picture.devicePixelRatio();
        const QRect part(window.topLeft() * ratio, window.size() * ratio);
        const QString path = QString("%1/%2.png").arg(folder != nullptr ? folder : ZM_PICTURE_DIR, name);
        ASSERT_TRUE(picture.copy(part).save(path)) << path.toStdString();
    }
};

}  // namespace

TEST_F(Person, EditsALayer) {
    EXPECT_EQ(Open(OpenCengciDlg,
                   [] {
                       ClickRow(2000, 2);
                       EXPECT_EQ(EditText(2002), "道路");
                       ClickOn(2003);
                       Keys("ctrl+a");
                       TypeText("5");
                       Keep("layers");
                       QTimer::singleShot(4 * kSettle, [] {
                           Turn();
                           Keys("Tab");
                           Keys("alt+y");
                       });
                       ClickOn(2100);
                       EXPECT_EQ(Find<QListWidget>(2000)->count(), 5);
                       ClickOn(1);
                       EXPECT_EQ(OpenWindow(), nullptr);
                   }),
              1);
    EXPECT_THAT(Saved(dirs.Project("map.ini")), HasSubstr("Layer3=道路 430 460 5 1"));
}

TEST_F(Person, AddsAPenWidthByTheKeyboardAlone) {
    EXPECT_EQ(Open(OpenLineWidthDlg,
                   [] {
                       Keys("Tab");
                       TypeText("20");
                       Keys("Tab");
                       TypeText("431");
                       Keys("Tab");
                       TypeText("50");
                       Keys("alt+a");
                       EXPECT_EQ(Find<QTreeWidget>(1038)->topLevelItemCount(), 6);
                       Keep("widths");
                       Keys("alt+o");
                   }),
              1);
    EXPECT_THAT(Saved(dirs.Module("neworv.ini")), HasSubstr("431=50"));
    EXPECT_EQ(GetPenWidth(431), 50);
}

TEST_F(Person, UpdatesANoteClass) {
    EXPECT_EQ(Open(OpenNoteClassDlg,
                   [] {
                       ClickRow(2000, 3);
                       EXPECT_EQ(EditText(2005), "25");
                       ClickOn(2005);
                       Keys("ctrl+a");
                       TypeText("35");
                       ClickOn(2100);
                       Keep("classes");
                       Keys("Escape");
                   }),
              1);
    EXPECT_EQ(notes->CharH('c'), 35);
}

TEST_F(Person, UpdatesANoteFont) {
    EXPECT_EQ(Open(OpenNoteFontDlg,
                   [] {
                       ClickRow(2000, 1);
                       EXPECT_EQ(EditText(2002), "Times New Roman");
                       ClickOn(2005);
                       Keys("ctrl+a");
                       TypeText("2");
                       ClickOn(2100);
                       Keep("fonts");
                       Keys("alt+o");
                   }),
              1);
    EXPECT_EQ(notes->GetFontInfo(2)->slant, 2);
}

TEST_F(Person, MixesAColour) {
    EXPECT_EQ(Open(SetSysColorSet,
                   [] {
                       ClickRow(1055, 7);
                       EXPECT_EQ(EditText(1003), "128");
                       ClickOn(1004);
                       Keys("ctrl+a");
                       TypeText("200");
                       ClickOn(1032);
                       Keep("colours");
                       ClickOn(1);
                   }),
              1);
    EXPECT_THAT(Saved(dirs.Machine("neworv.ini")), HasSubstr("8=128,200,0"));
}

TEST_F(Person, TypesOneLine) {
    CString value;
    const auto entry = [] {
        static CString text;
        text = "";
        const int result = ExecOneEdit(Gbk("图幅名").c_str(), text);
        return result == 1 && text == "J-50-37" ? 1 : 0;
    };
    EXPECT_EQ(Open(entry,
                   [] {
                       TypeText("J-50-37");
                       Keep("line");
                       Keys("Return");
                   }),
              1);
}

TEST_F(Person, TypesAMaskedLine) {
    const auto entry = [] {
        CString text("password");
        return ExecOneEdit(Gbk("密码").c_str(), text) == 1 && text == "geheim" ? 1 : 0;
    };
    EXPECT_EQ(Open(entry,
                   [] {
                       TypeText("geheim");
                       Keep("masked");
                       Keys("Return");
                   }),
              1);
}

TEST_F(Person, SeesTheKeysWhileAltIsHeld) {
    Open(OpenNoteClassDlg, [] {
        Do("keydown alt");
        Keep("keys");
        Do("keyup alt");
    });
}

TEST_F(Person, WorksWithADarkPalette) {
    const QPalette usual = QApplication::palette();
    QPalette dark(QColor(45, 45, 48));
    dark.setColor(QPalette::Base, QColor(30, 30, 30));
    QApplication::setPalette(dark);
    Open(OpenCengciDlg, [] {
        ClickRow(2000, 1);
        Keep("dark");
    });
    QApplication::setPalette(usual);
}

// A screen of twice the dots: the test runs itself once more, since the factor is taken at the start.
TEST_F(Person, WorksOnAScreenOfTwiceTheDots) {
    if (qEnvironmentVariableIsSet("QT_SCALE_FACTOR")) {
        Open(OpenNoteFontDlg, [] {
            ClickRow(2000, 2);
            EXPECT_EQ(EditText(2001), "3");
            Keep("double");
        });
        return;
    }
    const std::string self = std::filesystem::read_symlink("/proc/self/exe").string();
    EXPECT_EQ(std::system(("QT_SCALE_FACTOR=2 DISPLAY= '" + self +
                           "' --gtest_filter=Person.WorksOnAScreenOfTwiceTheDots >/dev/null 2>&1")
                              .c_str()),
              0);
}
