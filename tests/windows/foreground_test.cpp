// The library's messages while the window of another program is in front.
#include <commctrl.h>
#include <gtest/gtest.h>

#include "platform/win32/host.h"
#include "platform/win32/wide.h"
#include "tests/support/scratch.h"
#include "tests/windows/console.h"
#include "tests/windows/dialog_of.h"
#include "zenromath/runtime.h"

namespace {

constexpr char kSurvey[] = "\xB2\xE2\xC1\xBF";  // 测量
constexpr int kPatience = 1000;                 // times ten milliseconds

void RunMessages() {
    MSG message;
    while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE) != 0) DispatchMessageW(&message);
}

class BehindAnotherProgram : public testing::Test {
 protected:
    BehindAnotherProgram() {
        zm::SetHost(&host);
        InitCommonControls();
        main = CreateWindowExW(0, WC_STATICW, L"map", WS_OVERLAPPEDWINDOW | WS_VISIBLE, 0, 0, 300, 200, nullptr,
                               nullptr, GetModuleHandleW(nullptr), nullptr);
        bar = CreateWindowExW(0, STATUSCLASSNAMEW, L"", WS_CHILD | WS_VISIBLE, 0, 0, 0, 0, main, nullptr,
                              GetModuleHandleW(nullptr), nullptr);
        SetForegroundWindow(main);
    }
    ~BehindAnotherProgram() override {
        DestroyWindow(main);
        zm::SetHost(nullptr);
    }
    // As its user clicks on the other program's window.
    bool PutInFront(HWND other) {
        for (int i = 0; i < kPatience && (GetForegroundWindow() != other || GetActiveWindow() != nullptr);
             ++i, Sleep(10)) {
            SetForegroundWindow(other);
            RunMessages();
        }
        return GetForegroundWindow() == other && GetActiveWindow() == nullptr;
    }

    zm::test::ScratchDir scratch;
    zm::test::ScopedCurrentDir home{scratch.path()};
    zm::platform::WindowsHost host;
    HWND main = nullptr;
    HWND bar = nullptr;
};

}  // namespace

TEST_F(BehindAnotherProgram, TheMainWindowIsStillThatOfTheThread) {
    ASSERT_EQ(GetActiveWindow(), main);
    const zm::test::Zenro zenro(L"settings layers", nullptr);
    ASSERT_TRUE(zenro.started());
    const HWND other = zm::test::DialogOf(zenro);
    ASSERT_NE(other, nullptr) << zm::test::ReadFile(scratch / "said.txt");
    ASSERT_TRUE(PutInFront(other));
    ASSERT_EQ(host.MainWindow(), main);  // without it a box would wait for a user

    CLMsg title(CLMsgToTitle);
    title << kSurvey << "endl";
    CLMsg pane(CLMsgToPane0);
    pane << kSurvey << "endl";
    wchar_t text[32] = {};
    GetWindowTextW(main, text, 32);
    EXPECT_EQ(zm::win32::ToUtf8(text), "测量:");
    SendMessageW(bar, SB_GETTEXTW, 0, reinterpret_cast<LPARAM>(text));
    EXPECT_EQ(zm::win32::ToUtf8(text), "测量:");
    PostMessageW(other, WM_CLOSE, 0, 0);
    EXPECT_EQ(zenro.Status(), 0);
}
