// The host of Windows programs against real boxes, windows and message queues.
#include "platform/win32/host.h"

#include <commctrl.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <string>
#include <vector>

#include "platform/win32/wide.h"
#include "tests/platform/win32/window_hand.h"
#include "tests/support/family_dirs.h"
#include "tests/support/test_host.h"
#include "zenromath/runtime.h"

namespace {

using zm::platform::WindowsHost;
using zm::test::IsDialogBox;
using zm::test::LongestLabel;
using zm::test::Utf8TextOf;
using zm::test::WithWindow;

constexpr char kSurvey[] = "\xB2\xE2\xC1\xBF";   // 测量
constexpr char kWarning[] = "\xBE\xAF\xB8\xE6";  // 警告

std::vector<UINT> g_received;

LRESULT CALLBACK Keep(HWND window, UINT message, WPARAM wparam, LPARAM lparam) {
    g_received.push_back(message);
    return DefWindowProcW(window, message, wparam, lparam);
}

class WindowsHostTest : public testing::Test {
 protected:
    WindowsHostTest() {
        zm::SetHost(&host);
        WNDCLASSW kind = {};
        kind.lpfnWndProc = Keep;
        kind.lpszClassName = L"ZmTestWindow";
        RegisterClassW(&kind);
        g_received.clear();
    }
    ~WindowsHostTest() override {
        for (const HWND window : windows) DestroyWindow(window);
        zm::SetHost(nullptr);
        tqwaitcur::sz_bPeekMessage = false;
    }
    // The texts of the box that something shows, which is answered by one of its buttons; empty without a box.
    struct Box {
        std::string title, text;
    };
    static Box Answered(int button, const std::function<void()>& show) {
        Box shown;
        WithWindow(
            IsDialogBox,
            [&](HWND box) {
                shown = {Utf8TextOf(box), Utf8TextOf(LongestLabel(box))};
                PostMessageW(box, WM_COMMAND, static_cast<WPARAM>(button), 0);
            },
            show);
        return shown;
    }
    HWND Make(DWORD style = WS_OVERLAPPEDWINDOW | WS_VISIBLE, HWND owner = nullptr, DWORD extended = 0) {
        const HWND window = CreateWindowExW(extended, L"ZmTestWindow", L"\u56FE", style, 0, 0, 300, 200, owner, nullptr,
                                            GetModuleHandleW(nullptr), nullptr);
        windows.push_back(window);
        return window;
    }

    WindowsHost host;
    std::vector<HWND> windows;
};

}  // namespace

TEST_F(WindowsHostTest, BoxesShowChineseUnderEveryCodePage) {
    const Box box =
        Answered(IDOK, [] { EXPECT_EQ(_LMsg("\xB2\xE2\xC1\xBF\xCD\xEA\xB1\xCF\xA1\xA3", kWarning, 0), 0); });
    EXPECT_EQ(box.title, "警告");
    EXPECT_EQ(box.text, "测量完毕。");
}

TEST_F(WindowsHostTest, AQuestionIsAnsweredByItsButtons) {
    int answer = -1;
    Answered(IDYES, [&] { answer = _LMsg(kSurvey, nullptr, 1); });
    EXPECT_EQ(answer, 1);
    Answered(IDNO, [&] { answer = _LMsg(kSurvey, nullptr, 1); });
    EXPECT_EQ(answer, 0);
}

TEST_F(WindowsHostTest, AnInternalErrorAsksWhetherToStop) {
    const Box box = Answered(IDNO, [] { _LErr(1, "what", "where", "func"); });
    EXPECT_EQ(box.text, "内部错误：what\n在：where的func\n结束程序运行吗？");
}

TEST_F(WindowsHostTest, TheApplicationsBoxHasTheProgramsName) {
    int answer = 0;
    const Box box = Answered(IDNO, [&] { answer = AfxMessageBox2(kSurvey, MB_YESNO, 0); });
    EXPECT_EQ(answer, IDNO);
    EXPECT_EQ(box.title, "platform_tests");
}

TEST_F(WindowsHostTest, WindowTextsAreGbk) {
    const HWND window = Make();
    host.SetText(window, kSurvey);
    EXPECT_EQ(Utf8TextOf(window), "测量");
    char text[16] = {};
    EXPECT_EQ(host.GetText(window, text, sizeof text), 4);
    EXPECT_STREQ(text, kSurvey);
    EXPECT_EQ(host.GetText(window, text, 4), 2);  // no half character
    EXPECT_STREQ(text, "\xB2\xE2");
}

TEST_F(WindowsHostTest, TheMainWindowIsFoundAlsoWhenItIsNotActive) {
    EXPECT_EQ(host.MainWindow(), nullptr);
    const HWND main = Make();
    const HWND owned = Make(WS_POPUP | WS_VISIBLE, main);
    SetActiveWindow(owned);
    EXPECT_EQ(host.MainWindow(), main);
    // All in front of it.
    Make(WS_OVERLAPPEDWINDOW);
    Make(WS_POPUP | WS_VISIBLE, nullptr, WS_EX_TOOLWINDOW);
    BringWindowToTop(owned);
    SetForegroundWindow(GetDesktopWindow());
    ASSERT_EQ(GetActiveWindow(), nullptr);
    EXPECT_EQ(host.MainWindow(), main);
}

TEST_F(WindowsHostTest, PanesGoToTheStatusBarAndToTheBoxWithoutOne) {
    const HWND main = Make();
    SetActiveWindow(main);
    EXPECT_FALSE(host.SetStatusPane(0, kSurvey));
    InitCommonControls();
    const HWND bar = CreateWindowExW(0, STATUSCLASSNAMEW, L"", WS_CHILD | WS_VISIBLE, 0, 0, 0, 0, main, nullptr,
                                     GetModuleHandleW(nullptr), nullptr);
    ASSERT_NE(bar, nullptr);
    const int edges[] = {100, -1};
    SendMessageW(bar, SB_SETPARTS, 2, reinterpret_cast<LPARAM>(edges));
    CLMsg message(CLMsgToPane1);
    message << kSurvey << "endl";
    wchar_t text[32] = {};
    SendMessageW(bar, SB_GETTEXTW, 1, reinterpret_cast<LPARAM>(text));
    EXPECT_EQ(zm::win32::ToUtf8(text), "测量:");
    EXPECT_FALSE(host.SetStatusPane(2, kSurvey));
    const Box box = Answered(IDOK, [] {
        CLMsg third(CLMsgToPane2);
        third << kSurvey << "endl";
    });
    EXPECT_EQ(box.text, "测量:");
}

TEST_F(WindowsHostTest, TitlesGoToTheMainWindowAndToTheBoxWithoutOne) {
    const Box box = Answered(IDOK, [] {
        CLMsg message(CLMsgToTitle);
        message << kSurvey << "endl";
    });
    EXPECT_EQ(box.text, "测量:");
    const HWND main = Make();
    SetActiveWindow(main);
    CLMsg message(CLMsgToTitle);
    message << kSurvey << "endl";
    EXPECT_EQ(Utf8TextOf(main), "测量:");
}

TEST_F(WindowsHostTest, ThePumpDropsQuitAndMouseMessagesUpTo521AndNoOthers) {
    const HWND window = Make();
    for (UINT message = 511; message <= 527; ++message) PostMessageW(window, message, 0, 0);
    PostMessageW(window, WM_APP, 0, 0);
    PostQuitMessage(3);
    g_received.clear();
    tqwaitcur::sz_bPeekMessage = true;
    {
        tqwaitcur wait("\xB2\xE2", window);
        wait.setmessage(kSurvey);
        EXPECT_EQ(Utf8TextOf(window), "测量");
    }
    for (UINT message = 511; message <= 527; ++message) {
        const auto times = std::count(g_received.begin(), g_received.end(), message);
        EXPECT_EQ(times > 0, message < 512 || message > 521) << message;
    }
    EXPECT_EQ(std::count(g_received.begin(), g_received.end(), WM_APP), 1);
    MSG left;
    EXPECT_EQ(PeekMessageW(&left, nullptr, 0, 0, PM_NOREMOVE), 0) << left.message;  // the quit message is gone too
    EXPECT_EQ(Utf8TextOf(window), "图");
}

TEST_F(WindowsHostTest, ThePumpMakesCharactersOfKeys) {
    const HWND window = Make();
    PostMessageW(window, WM_KEYDOWN, 'A', 0x1E0001);
    tqwaitcur::sz_bPeekMessage = true;
    tqwaitcur wait("\xB2\xE2", window);
    wait.setmessage(kSurvey);
    EXPECT_EQ(std::count(g_received.begin(), g_received.end(), static_cast<UINT>(WM_CHAR)), 1);
}

TEST_F(WindowsHostTest, TheWaitCursorGivesWayToTheOneBefore) {
    const HCURSOR cross = LoadCursorW(nullptr, reinterpret_cast<const wchar_t*>(IDC_CROSS));
    const HCURSOR before = SetCursor(cross);
    {
        const tqwaitcur wait(nullptr, Make());
        EXPECT_EQ(GetCursor(), LoadCursorW(nullptr, reinterpret_cast<const wchar_t*>(IDC_WAIT)));
    }
    EXPECT_EQ(GetCursor(), cross);
    EXPECT_EQ(host.StandardCursor(zm::Cursor::arrow),
              LoadCursorW(nullptr, reinterpret_cast<const wchar_t*>(IDC_ARROW)));
    SetCursor(before);
}

TEST_F(WindowsHostTest, EscCountsWhenReleased) {
    const HWND window = Make();
    tqwaitcur wait(nullptr, window);
    PostMessageW(window, WM_KEYDOWN, VK_ESCAPE, 1);
    EXPECT_EQ(wait.IsESCpressed(), 0);
    PostMessageW(window, WM_KEYUP, VK_ESCAPE, 1);
    EXPECT_EQ(wait.IsESCpressed(), 1);
    PostMessageW(window, WM_KEYUP, 'A', 1);
    EXPECT_EQ(wait.IsESCpressed(), 0);
}

TEST_F(WindowsHostTest, WindowSendMeassageReachesWindowsThatLive) {
    const HWND window = Make();
    SetWindowTextW(window, L"abc");
    CWnd wnd(window);
    EXPECT_EQ(WindowSendMeassage(&wnd, WM_GETTEXTLENGTH, 0, 0), 3);
    DestroyWindow(window);
    EXPECT_EQ(WindowSendMeassage(&wnd, WM_GETTEXTLENGTH, 0, 0), 0);
}

TEST(WindowsTexts, NumberedMessagesComeFromTheStringTable) {
    zm::test::TestHost host;
    EXPECT_EQ(_LMsg(7, nullptr, 0), 0);
    ASSERT_EQ(host.boxes.size(), 1u);
    EXPECT_EQ(host.boxes[0].text, std::string(kSurvey) + " %d");
    EXPECT_EQ(_LMsg(8, nullptr, 0), 0);
    EXPECT_EQ(_LMsg(-1, nullptr, 0), 0);
    EXPECT_EQ(host.boxes.size(), 1u);
    EXPECT_EQ(host.beeps, 3);
}
