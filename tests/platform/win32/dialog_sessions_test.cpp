// The settings dialogs in their windows: the recorded sessions by messages from a second thread, and what only a window
// has.
#include <gtest/gtest.h>

#include <fstream>

#include "dialogs/settings.h"
#include "dialogs/templates.h"
#include "platform/win32/dialog_window.h"
#include "platform/win32/host.h"
#include "platform/win32/wide.h"
#include "tests/platform/win32/window_hand.h"
#include "tests/support/family_dirs.h"
#include "tests/support/test_host.h"
#include "zenromath/dialogs.h"

namespace {

using zm::test::IsDialogBox;
using zm::test::WindowHand;
using zm::test::WithWindow;
using zm::vectors::Hand;
using zm::vectors::Json;
using zm::vectors::Session;

// Shows the dialog here and plays on its window from another thread.
bool OnWindow(zm::dialogs::Dialog& dialog, const std::function<void(Hand&)>& play) {
    bool shown = false;
    WithWindow(
        IsDialogBox,
        [&](HWND window) {
            WindowHand hand(window, dialog.layout());
            play(hand);
        },
        [&] { shown = zm::win32::ShowDialog(dialog); });
    return shown;
}

std::vector<Json> Records() {
    std::ifstream in(std::string(ZM_VECTORS) + "/dialogs.jsonl", std::ios::binary);
    std::vector<Json> records;
    for (std::string line; std::getline(in, line);)
        if (!line.empty()) records.push_back(Json::parse(line));
    return records;
}

/// Writes one line of text through its dialog's window.
class LineInWindow : public testing::Test {
 protected:
    int Run(CString& value, const std::function<void(HWND)>& act) {
        int result = -1;
        WithWindow(IsDialogBox, act, [&] { result = ExecOneEdit("\xB2\xE2\xC1\xBF", value); });
        return result;
    }
    zm::test::FamilyDirs dirs;
    zm::platform::WindowsHost host;
    zm::Host* previous = zm::SetHost(&host);
    ~LineInWindow() override { zm::SetHost(previous); }
};

}  // namespace

TEST(DialogWindows, PlayTheRecordedSessions) {
    const std::vector<Json> records = Records();
    ASSERT_FALSE(records.empty());
    int played = 0;
    for (const Json& record : records) {
        if (!Session::IsSession(record)) continue;
        Session session(record);
        const zm::vectors::Outcome outcome = session.Play(OnWindow);
        EXPECT_TRUE(outcome.passed) << record.value("name", record.value("id", std::string())) << ": "
                                    << outcome.message;
        ++played;
    }
    EXPECT_GT(played, 100);
}

TEST_F(LineInWindow, EscAndEnterAreKeys) {
    CString value = "old";
    EXPECT_EQ(Run(value, [](HWND window) { PostMessageW(GetDlgItem(window, 1003), WM_KEYDOWN, VK_ESCAPE, 1); }), 0);
    EXPECT_STREQ(value.GetString(), "old");
    EXPECT_EQ(Run(value,
                  [](HWND window) {
                      const HWND edit = GetDlgItem(window, 1003);
                      SendMessageW(edit, WM_SETTEXT, 0, reinterpret_cast<LPARAM>(L"\u6D4B\u91CF"));
                      PostMessageW(edit, WM_KEYDOWN, VK_RETURN, 1);
                  }),
              1);
    EXPECT_STREQ(value.GetString(), "\xB2\xE2\xC1\xBF");
}

TEST_F(LineInWindow, AltAndALetterPressTheButton) {
    CString value = "old";
    EXPECT_EQ(Run(value,
                  [](HWND window) {
                      SendMessageW(GetDlgItem(window, 1003), WM_SETTEXT, 0, reinterpret_cast<LPARAM>(L"new"));
                      PostMessageW(GetDlgItem(window, 1003), WM_SYSCHAR, 'o', 1 << 29);
                  }),
              1);
    EXPECT_STREQ(value.GetString(), "new");
}

TEST_F(LineInWindow, TitleAndCaptionsAreChineseUnderEveryCodePage) {
    CString value;
    std::string title;
    std::string ok;
    Run(value, [&](HWND window) {
        title = zm::test::Utf8TextOf(window);
        ok = zm::test::Utf8TextOf(GetDlgItem(window, 1));
        SendMessageW(window, WM_CLOSE, 0, 0);
    });
    EXPECT_EQ(title, "测量");
    EXPECT_EQ(ok, "确  认");
}

TEST(DialogWindows, SayWhatIsMissingWithoutTheTemplate) {
    zm::test::TestHost host;
    static constexpr zm::dialogs::Template kNone = {4711, "none", 10, 10, {}};
    struct Empty : zm::dialogs::Dialog {
        Empty() : Dialog(kNone) {}
        void Open() override {}
        void Pressed(int) override {}
    } dialog;
    EXPECT_FALSE(zm::win32::ShowDialog(dialog));
    EXPECT_NE(dialog.obstacle.find("template is missing"), std::string::npos);
}
