#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "runtime/state.h"
#include "runtime/text/gbk.h"
#include "tests/support/test_host.h"
#include "zenromath/runtime.h"

using testing::ElementsAre;
using testing::EndsWith;
using testing::HasSubstr;
using testing::IsEmpty;
using zm::Cursor;
using zm::QueueMessage;
using zm::test::TestHost;

namespace {

constexpr UINT kPaint = 0x000F;
constexpr UINT kMouseMove = 0x0200;
constexpr UINT kLastMouse = 0x0209;

class Wait : public testing::Test {
 protected:
    Wait() {
        zm::runtime::ResetState();
        zm::SetHost(&host);
        window = host.MakeWindow("Title");
        host.mainWindow = window;
    }
    ~Wait() override {
        zm::runtime::ResetState();
        zm::SetHost(&host);
    }
    void Push(UINT message, zm::UInt64 wparam = 0) {
        QueueMessage m;
        m.window = window;
        m.message = message;
        m.wparam = wparam;
        host.queue.push_back(m);
    }
    HCURSOR Hourglass() { return host.StandardCursor(Cursor::wait); }

    TestHost host;
    HWND window = nullptr;
};

std::string Bar(int before, const char* face) {
    return std::string(static_cast<std::size_t>(before), '_') + face +
           std::string(static_cast<std::size_t>(32 - before), '_');
}

}  // namespace

// ---- The object ----

TEST_F(Wait, ShowsTheCursorAndTheTitleAndPutsBothBack) {
    char mine = 0;
    host.currentCursor = reinterpret_cast<HCURSOR>(&mine);
    {
        const tqwaitcur wait("Working", nullptr);
        EXPECT_EQ(host.currentCursor, Hourglass());
        EXPECT_EQ(host.texts[window], "Working");
    }
    EXPECT_EQ(host.currentCursor, reinterpret_cast<HCURSOR>(&mine));
    EXPECT_EQ(host.texts[window], "Title");
}

TEST_F(Wait, PutsTheArrowWhereThereWasNoCursor) {
    { const tqwaitcur wait; }
    EXPECT_EQ(host.currentCursor, host.StandardCursor(Cursor::arrow));
}

TEST_F(Wait, ANullTextSavesTheTitleAndLeavesIt) {
    {
        tqwaitcur wait(nullptr, window);
        EXPECT_EQ(host.texts[window], "Title");
        wait.setmessage("Other");
    }
    EXPECT_EQ(host.texts[window], "Title");
}

TEST_F(Wait, SavesTheTitleOfAFrameWithAView) {
    host.frame = window;
    host.frameTitle = "map.prj";
    {
        tqwaitcur wait("Working", window);
        EXPECT_EQ(host.frameTitle, "Working");
        EXPECT_EQ(host.texts[window], "Title") << "the window's own text is not touched";
    }
    EXPECT_EQ(host.frameTitle, "map.prj");
}

TEST_F(Wait, SavesAtMost255BytesOfATitle) {
    host.texts[window] = std::string(400, 'x');
    { const tqwaitcur wait("Working", window); }
    EXPECT_EQ(host.texts[window], std::string(255, 'x'));
}

TEST_F(Wait, SkipsAWindowThatHasDied) {
    tqwaitcur wait("Working", window);
    host.texts.erase(window);
    wait.setmessage("after");
    wait.setmessage(50, "after");
    EXPECT_THAT(host.history, ElementsAre("Working"));
}

TEST_F(Wait, WithoutAWindowOnlyTheCursorShowsAndTextStillStampsTheTime) {
    host.mainWindow = nullptr;
    _LWaitMsg("Working", nullptr);
    EXPECT_EQ(host.currentCursor, Hourglass());
    EXPECT_THAT(host.history, IsEmpty());
    tqwaitcur& wait = *zm::runtime::state().waiting;
    wait.setmessage(50, "x");
    EXPECT_THAT(host.history, IsEmpty());

    // Whether a line was due shows in whether its format was looked at: with a window of its own later on.
    host.now = 100.0;
    wait.setmessage("stamp");
    host.mainWindow = window;
    EXPECT_EQ(_LWaitReMsgEsc2(1000, 1, "not due"), 0);
    EXPECT_THAT(host.history, IsEmpty());
}

TEST_F(Wait, WithoutAWindowTextLetsMessagesRunAndAPercentageDoesNothing) {
    host.mainWindow = nullptr;
    tqwaitcur wait("Working", nullptr);
    tqwaitcur::sz_bPeekMessage = true;
    Push(kPaint);
    wait.setmessage(50, "x");
    EXPECT_EQ(host.queue.size(), 1u);
    wait.setmessage("x");
    EXPECT_TRUE(host.queue.empty());
    tqwaitcur::sz_bPeekMessage = false;
}

TEST_F(Wait, RestoreMayComeBeforeTheEnd) {
    tqwaitcur wait("Working", window);
    wait.restore();
    EXPECT_EQ(host.currentCursor, host.StandardCursor(Cursor::arrow));
    EXPECT_EQ(host.texts[window], "Working");
}

// ---- The progress line ----

TEST_F(Wait, ProgressLineByteForByte) {
    tqwaitcur wait(nullptr, window);
    wait.setmessage(0, "Reading");
    EXPECT_EQ(host.texts[window], std::string(33, ' ') + "Reading  " + Bar(0, "^-^") + "  0%");
    wait.setmessage(49, "Reading");
    EXPECT_EQ(host.texts[window], std::string(33, ' ') + "Reading  " + Bar(16, "^-^") + "  49%");
    wait.setmessage(50, "Reading");
    EXPECT_EQ(host.texts[window], std::string(33, ' ') + "Reading  " + Bar(16, "^o^") + "  50%");
    wait.setmessage(99, nullptr);
    EXPECT_EQ(host.texts[window], std::string(42, ' ') + std::string(33, '_') + "^o^ 99%");
}

TEST_F(Wait, ProgressLineAt100PutsTheLastCharacterOnTheFirstBlankBehindTheBar) {
    tqwaitcur wait(nullptr, window);
    wait.setmessage(100, "");
    EXPECT_EQ(host.texts[window], std::string(42, ' ') + std::string(33, '_') + "^o^ 100%");
}

TEST_F(Wait, ProgressFaceStandsWhereTheFormulaOfTheLinePutsIt) {
    tqwaitcur wait(nullptr, window);
    for (int percent = 0; percent <= 100; ++percent) {
        wait.setmessage(percent, "T");
        const std::string& line = host.texts[window];
        const int digits = percent < 10 ? 1 : percent < 100 ? 2 : 3;
        const int last = static_cast<int>(line.size()) + percent / 3 - (digits + 1) - 35;
        EXPECT_EQ(line.substr(static_cast<std::size_t>(last) - 2, 3), percent < 50 ? "^-^" : "^o^") << percent;
    }
}

TEST_F(Wait, ProgressTextBeyond40BytesMovesTheBarAndBeyondTheLineIsCut) {
    tqwaitcur wait(nullptr, window);
    wait.setmessage(0, std::string(60, 'x').c_str());
    EXPECT_EQ(host.texts[window], std::string(60, 'x') + "  " + Bar(0, "^-^") + "  0%");
    wait.setmessage(7, std::string(5000, 'x').c_str());
    EXPECT_EQ(host.texts[window].size(), 255u);
    EXPECT_THAT(host.texts[window], EndsWith("  7%"));
    // An odd number of bytes is left for the text: no two-byte character is cut in two.
    std::string chinese;
    for (int i = 0; i < 300; ++i) chinese += "\xB5\xD8";
    wait.setmessage(7, chinese.c_str());
    int invalid = 0;
    zm::gbk::ToUtf8(host.texts[window], &invalid);
    EXPECT_EQ(invalid, 0);
}

TEST_F(Wait, ProgressBeyondItsRangeStaysInTheLine) {
    tqwaitcur wait(nullptr, window);
    for (const int percent : {-5, -2147483647, 101, 1000, 2147483647}) {
        wait.setmessage(percent, "x");
        EXPECT_LE(host.texts[window].size(), 255u);
        EXPECT_THAT(host.texts[window], HasSubstr("^"));
    }
}

// ---- The message pump ----

TEST_F(Wait, PumpIsOffAtLoad) {
    EXPECT_FALSE(tqwaitcur::sz_bPeekMessage);
    tqwaitcur wait(nullptr, window);
    Push(kPaint);
    wait.setmessage("x");
    EXPECT_EQ(host.queue.size(), 1u);
}

TEST_F(Wait, PumpDropsQuitAndMouseMessagesAndDispatchesTheOthers) {
    tqwaitcur::sz_bPeekMessage = true;
    tqwaitcur wait(nullptr, window);
    for (const UINT message : {kPaint, UINT{WM_QUIT}, kMouseMove, kLastMouse, kMouseMove - 1, kLastMouse + 1})
        Push(message);
    wait.setmessage("x");
    EXPECT_THAT(host.queue, IsEmpty());
    EXPECT_THAT(host.dispatched, ElementsAre(kPaint, kMouseMove - 1, kLastMouse + 1));
}

TEST_F(Wait, GuardSwitchesThePumpAndPutsItBack) {
    {
        const NoPeekMessageOnWaitMsg on(false);
        EXPECT_TRUE(tqwaitcur::sz_bPeekMessage);
        {
            const NoPeekMessageOnWaitMsg off;
            EXPECT_FALSE(tqwaitcur::sz_bPeekMessage);
        }
        EXPECT_TRUE(tqwaitcur::sz_bPeekMessage);
    }
    EXPECT_FALSE(tqwaitcur::sz_bPeekMessage);
}

TEST_F(Wait, AHandlerOfThePumpMayEndTheObject) {
    struct EndingHost : TestHost {
        void Dispatch(const QueueMessage&) override { _LWaitMsgEnd(); }
    };
    EndingHost ending;
    HWND own = ending.MakeWindow("Title");
    tqwaitcur::sz_bPeekMessage = true;
    _LWaitMsg("Working", own);
    QueueMessage paint;
    paint.window = own;
    paint.message = kPaint;
    ending.queue = {paint, paint};
    EXPECT_EQ(_LWaitReMsgEsc2(10, 1, "x"), 0);
    EXPECT_EQ(ending.texts[own], "Title");
    EXPECT_EQ(zm::runtime::state().waiting, nullptr);
}

// ---- Esc ----

TEST_F(Wait, EscCountsWhenItIsReleased) {
    tqwaitcur wait(nullptr, window);
    EXPECT_EQ(wait.IsESCpressed(), 0);
    Push(0x0100, 27);  // pressed, not released
    EXPECT_EQ(wait.IsESCpressed(), 0);
    Push(WM_KEYUP, 27);
    EXPECT_EQ(wait.IsESCpressed(), 1);
    EXPECT_EQ(wait.IsESCpressed(), 0);
    EXPECT_EQ(host.queue.size(), 1u) << "the pressed key waits on";
}

TEST_F(Wait, AReleaseOfAnotherKeyIsUsedUpOneEachCall) {
    tqwaitcur wait(nullptr, window);
    Push(WM_KEYUP, 'A');
    Push(WM_KEYUP, 27);
    EXPECT_EQ(wait.IsESCpressed(), 0);
    EXPECT_EQ(wait.IsESCpressed(), 1);
}

// ---- The slot ----

TEST_F(Wait, WithoutAnObjectNothingHappens) {
    Push(WM_KEYUP, 27);
    _LWaitReMsg("x");
    _LWaitReMsg("x", 1);
    _LWaitReMsg2("%d", 1);
    EXPECT_EQ(_LWaitReMsgEsc("x", 1), 0);
    EXPECT_EQ(_LWaitReMsgEsc("x", -9999), 0);
    EXPECT_EQ(_LWaitReMsgEsc2(1, 1, "x"), 0);
    _LWaitMsgEnd();
    EXPECT_THAT(host.history, IsEmpty());
    EXPECT_EQ(host.queue.size(), 1u);
}

TEST_F(Wait, ASecondStartEndsTheFirst) {
    _LWaitMsg("first", nullptr);
    _LWaitMsg("second", nullptr);
    EXPECT_THAT(host.history, ElementsAre("first", "Title", "second"));
    _LWaitMsgEnd();
    EXPECT_EQ(host.texts[window], "Title");
}

TEST_F(Wait, TextsOfTheSlot) {
    _LWaitMsg("start", nullptr);
    _LWaitReMsg("plain");
    EXPECT_EQ(host.texts[window], "plain");
    _LWaitReMsg("item", 7);
    EXPECT_EQ(host.texts[window], "item 7");
    _LWaitReMsg2("%s %.2f", "at", 1.5);
    EXPECT_EQ(host.texts[window], "at 1.50");
    _LWaitReMsg2("%s", std::string(5000, 'x').c_str());
    EXPECT_EQ(host.texts[window].size(), 1999u);
    _LWaitReMsgEsc("n", -9999);
    EXPECT_EQ(host.texts[window], "n");
    _LWaitReMsgEsc("n", -9998);
    EXPECT_EQ(host.texts[window], "n -9998");
    _LWaitReMsg(nullptr);
    EXPECT_EQ(host.texts[window], "n -9998") << "null keeps the title";
}

TEST_F(Wait, HiddenBlocksCreationAndTextAndTellsTheOldValue) {
    EXPECT_FALSE(SetHideWaitMsg(true));
    EXPECT_TRUE(SetHideWaitMsg(true));
    _LWaitMsg("x", nullptr);
    EXPECT_EQ(zm::runtime::state().waiting, nullptr);
    SetHideWaitMsg(false);
    _LWaitMsg("made", nullptr);
    SetHideWaitMsg(true);
    _LWaitReMsg("hidden");
    EXPECT_EQ(_LWaitReMsgEsc2(10, 5, "hidden"), 0);
    EXPECT_EQ(host.texts[window], "made");
    EXPECT_EQ(host.currentCursor, Hourglass()) << "an object made before stays";
    _LWaitMsg("next", nullptr);
    EXPECT_EQ(zm::runtime::state().waiting, nullptr) << "and ends with the next start, hidden or not";
}

TEST_F(Wait, EscIsReportedWhileHiddenByTheSimpleFormOnly) {
    _LWaitMsg("made", nullptr);
    SetHideWaitMsg(true);
    Push(WM_KEYUP, 27);
    EXPECT_EQ(_LWaitReMsgEsc2(10, 5, "x"), 0);
    EXPECT_EQ(_LWaitReMsgEsc("x", 1), 1);
    EXPECT_EQ(_LWaitReMsgEsc("x", 1), 0);
}

// ---- The work loop's form ----

TEST_F(Wait, WorkLoopLimitsItsNumbers) {
    _LWaitMsg(nullptr, nullptr);
    _LWaitReMsgEsc2(0, 5, "t");
    EXPECT_THAT(host.texts[window], EndsWith(" 100%"));
    _LWaitReMsgEsc2(1000, 2000, "t");
    EXPECT_THAT(host.texts[window], EndsWith(" 100%"));
    _LWaitReMsgEsc2(1000, -7, "t");
    EXPECT_THAT(host.texts[window], EndsWith("  0%"));
    host.now += 10.0;
    _LWaitReMsgEsc2(2147483647, 2147483647, "t");
    EXPECT_THAT(host.texts[window], EndsWith(" 100%")) << "the product needs 64 bits";
    _LWaitReMsgEsc2(-2147483647 - 1, 0, "t");
    EXPECT_THAT(host.texts[window], EndsWith("  0%"));
}

TEST_F(Wait, WorkLoopOf50RedrawsAtEveryCall) {
    _LWaitMsg(nullptr, nullptr);
    for (int i = 0; i <= 50; ++i) _LWaitReMsgEsc2(50, i, "%d of 50", i);
    EXPECT_EQ(host.history.size(), 51u);
}

TEST_F(Wait, WorkLoopOfAMillionRedrawsAboutAHundredTimes) {
    _LWaitMsg(nullptr, nullptr);
    for (int i = 1; i <= 1000000; ++i) _LWaitReMsgEsc2(1000000, i, "t");
    EXPECT_EQ(host.history.size(), 101u) << "the first call, since there was no line before it, and a hundred more";
}

TEST_F(Wait, WorkLoopRedrawsAfterMoreThanTwoSeconds) {
    _LWaitMsg(nullptr, nullptr);
    host.now = 10.0;
    _LWaitReMsgEsc2(1000, 1, "t");
    EXPECT_EQ(host.history.size(), 1u) << "a new object redraws at its first call";
    host.now = 12.0;
    _LWaitReMsgEsc2(1000, 1, "t");
    EXPECT_EQ(host.history.size(), 1u) << "two seconds are not more than two";
    host.now = 12.001;
    _LWaitReMsgEsc2(1000, 1, "t");
    EXPECT_EQ(host.history.size(), 2u);
    _LWaitReMsgEsc2(1000, 1, "t");
    EXPECT_EQ(host.history.size(), 2u);
}

TEST_F(Wait, WorkLoopAsksForEscEvenWhenItDoesNotRedraw) {
    _LWaitMsg(nullptr, nullptr);
    _LWaitReMsgEsc2(1000, 1, "t");
    Push(WM_KEYUP, 27);
    EXPECT_EQ(_LWaitReMsgEsc2(1000, 1, "t"), 1);
    EXPECT_EQ(host.history.size(), 1u);
    EXPECT_EQ(_LWaitReMsgEsc2(1000, 1, "t"), 0);
}

TEST_F(Wait, WorkLoopCutsItsTextAt1999Bytes) {
    _LWaitMsg(nullptr, nullptr);
    _LWaitReMsgEsc2(10, 1, "%s", std::string(100000, 'x').c_str());
    EXPECT_EQ(host.texts[window].size(), 255u);
    EXPECT_THAT(host.texts[window], EndsWith(" 10%"));
}
