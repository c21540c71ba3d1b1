#include "zenromath/qt_host.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QKeyEvent>
#include <QLabel>
#include <QMainWindow>
#include <QMouseEvent>
#include <QStatusBar>

#include "runtime/state.h"
#include "runtime/text/gbk.h"
#include "zenromath/qt.h"
#include "zenromath/runtime.h"

namespace {

using zm::qt::HandleOf;
using zm::qt::QtHost;

// These tests are about a machine without a display; before any of them Qt is not there yet.
const bool kNoDisplay = qunsetenv("DISPLAY") && qunsetenv("WAYLAND_DISPLAY");

class QtHostTest : public testing::Test {
 protected:
    QtHostTest() {
        zm::qt::EnsureApplication();
        window = std::make_unique<QMainWindow>();
        window->setStatusBar(new QStatusBar);
        host = std::make_unique<QtHost>(window.get());
        zm::SetHost(host.get());
    }
    ~QtHostTest() override { zm::SetHost(nullptr); }

    std::unique_ptr<QMainWindow> window;
    std::unique_ptr<QtHost> host;
};

TEST(Application, RunsOffscreenWhereThereIsNoDisplay) {
    ASSERT_TRUE(kNoDisplay);
    zm::qt::EnsureApplication();
    EXPECT_FALSE(zm::qt::HasDisplay());
}

TEST_F(QtHostTest, StatusPanesShowMessages) {
    CLMsg message(CLMsgToPane1);
    message << "\xB2\xE2\xC1\xBF"
            << "endl";
    const auto* label = window->statusBar()->findChild<QLabel*>("zmPane1");
    ASSERT_NE(label, nullptr);
    EXPECT_EQ(label->text().toStdString(), "测量:");
}

TEST_F(QtHostTest, TitleMessagesReachTheMainWindow) {
    CLMsg message(CLMsgToTitle);
    message << "\xB2\xE2\xC1\xBF"
            << "endl";
    EXPECT_EQ(window->windowTitle().toStdString(), "测量:");
    char buffer[16];
    EXPECT_EQ(host->GetText(HandleOf(window.get()), buffer, sizeof buffer), 5);
    EXPECT_STREQ(buffer, "\xB2\xE2\xC1\xBF:");
}

TEST_F(QtHostTest, TextIsCutToTheBuffer) {
    window->setWindowTitle("abcdef");
    char buffer[4];
    EXPECT_EQ(host->GetText(HandleOf(window.get()), buffer, sizeof buffer), 3);
    EXPECT_STREQ(buffer, "abc");
}

TEST_F(QtHostTest, ControlsGiveTheirText) {
    QLabel label("label text");
    char buffer[32];
    host->GetText(HandleOf(&label), buffer, sizeof buffer);
    EXPECT_STREQ(buffer, "label text");
}

TEST_F(QtHostTest, WindowThatIsGoneIsNoWindow) {
    HWND handle = nullptr;
    {
        QLabel label;
        handle = HandleOf(&label);
        EXPECT_TRUE(host->IsWindow(handle));
    }
    EXPECT_FALSE(host->IsWindow(handle));
    char buffer[8] = "x";
    EXPECT_EQ(host->GetText(handle, buffer, sizeof buffer), 0);
    host->SetText(handle, "nothing happens");
}

TEST_F(QtHostTest, QuestionWithoutADisplayIsAnsweredNo) {
    ASSERT_FALSE(zm::qt::HasDisplay());
    testing::internal::CaptureStderr();
    EXPECT_EQ(_LMsg("?", nullptr, 1), 0);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "Zenro Info: ?\n");
}

TEST_F(QtHostTest, CursorComesBack) {
    HCURSOR wait = host->StandardCursor(zm::Cursor::wait);
    EXPECT_EQ(host->PutCursor(wait), nullptr);
    ASSERT_NE(QApplication::overrideCursor(), nullptr);
    EXPECT_EQ(QApplication::overrideCursor()->shape(), Qt::WaitCursor);
    EXPECT_EQ(host->PutCursor(nullptr), wait);
    EXPECT_EQ(QApplication::overrideCursor(), nullptr);
}

TEST_F(QtHostTest, ReleasedEscIsTakenOnce) {
    QCoreApplication::postEvent(window.get(), new QKeyEvent(QEvent::KeyRelease, Qt::Key_Escape, Qt::NoModifier));
    zm::QueueMessage message;
    ASSERT_TRUE(host->TakeMessage(message, HandleOf(window.get()), WM_KEYUP, WM_KEYUP));
    EXPECT_EQ(message.wparam, 27u);
    EXPECT_FALSE(host->TakeMessage(message, HandleOf(window.get()), WM_KEYUP, WM_KEYUP));
}

TEST_F(QtHostTest, PressedEscIsNotYetTaken) {
    QCoreApplication::postEvent(window.get(), new QKeyEvent(QEvent::KeyPress, Qt::Key_Escape, Qt::NoModifier));
    zm::QueueMessage message;
    EXPECT_FALSE(host->TakeMessage(message, HandleOf(window.get()), WM_KEYUP, WM_KEYUP));
}

TEST_F(QtHostTest, ClicksDuringTheWaitAreLost) {
    class Clicked : public QWidget {
     public:
        int clicks = 0;

     protected:
        void mousePressEvent(QMouseEvent*) override { ++clicks; }
    };
    Clicked target;
    const auto press = [&] {
        return new QMouseEvent(QEvent::MouseButtonPress, QPointF(1, 1), QPointF(1, 1), Qt::LeftButton, Qt::LeftButton,
                               Qt::NoModifier);
    };
    QCoreApplication::postEvent(&target, press());
    zm::QueueMessage message;
    EXPECT_FALSE(host->TakeMessage(message, nullptr, 0, 0));
    EXPECT_EQ(target.clicks, 0);
    QCoreApplication::postEvent(&target, press());
    QCoreApplication::processEvents();  // not during a wait
    EXPECT_EQ(target.clicks, 1);
}

}  // namespace
