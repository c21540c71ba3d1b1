// zenro settings: the library's dialogs as windows of the system, worked from another process.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/win32/wide.h"
#include "runtime/text/gbk.h"
#include "tests/support/scratch.h"
#include "tests/windows/console.h"
#include "tests/windows/dialog_of.h"

using testing::HasSubstr;
using testing::Not;
using zm::test::DialogOf;
using zm::test::Zenro;

namespace {

constexpr int kList = 2000, kSwitchAll = 1055, kOk = 1, kCancel = 2;

std::string TitleOf(HWND window) {
    wchar_t text[128] = {};
    SendMessageW(window, WM_GETTEXT, 127, reinterpret_cast<LPARAM>(text));
    return zm::win32::ToUtf8(text);
}

BOOL CALLBACK AddLabel(HWND window, LPARAM texts) {
    *reinterpret_cast<std::string*>(texts) += TitleOf(window) + "\n";
    return TRUE;
}
std::string LabelsOf(HWND box) {
    std::string texts;
    EnumChildWindows(box, AddLabel, reinterpret_cast<LPARAM>(&texts));
    return texts;
}

class SettingsOnWindows : public testing::Test {
 protected:
    SettingsOnWindows() {
        zm::test::WriteFile(
            scratch / "图.ini",
            zm::gbk::FromUtf8("[LayerSet]\r\nLayers=2\r\nLayer1=控制点 110 140 4 0\r\nLayer2=境界线 210 359 9 1\r\n"));
    }
    std::string Project() const { return zm::gbk::ToUtf8(zm::test::ReadFile(scratch / "图.ini")); }
    zm::test::ScratchDir scratch;
    zm::test::ScopedCurrentDir home{scratch.path()};
};

}  // namespace

TEST_F(SettingsOnWindows, OkSavesWhatTheWindowChanged) {
    const Zenro zenro(L"settings layers --project 图.ini", nullptr);
    ASSERT_TRUE(zenro.started());
    const HWND dialog = DialogOf(zenro);
    ASSERT_NE(dialog, nullptr) << zm::test::ReadFile(scratch / "said.txt");
    EXPECT_EQ(TitleOf(dialog), "层次颜色设定");
    EXPECT_EQ(SendMessageW(GetDlgItem(dialog, kList), LB_GETCOUNT, 0, 0), 2);
    SendMessageW(GetDlgItem(dialog, kSwitchAll), BM_CLICK, 0, 0);
    PostMessageW(GetDlgItem(dialog, kOk), BM_CLICK, 0, 0);
    EXPECT_EQ(zenro.Status(), 0) << zm::test::ReadFile(scratch / "said.txt");
    EXPECT_THAT(Project(), HasSubstr("控制点"));
    EXPECT_THAT(Project(), Not(HasSubstr("控制点 110 140 4 0")));
}

TEST_F(SettingsOnWindows, CancelLeavesTheFile) {
    const std::string before = Project();
    const Zenro zenro(L"settings layers --project 图.ini", nullptr);
    ASSERT_TRUE(zenro.started());
    const HWND dialog = DialogOf(zenro);
    ASSERT_NE(dialog, nullptr) << zm::test::ReadFile(scratch / "said.txt");
    PostMessageW(GetDlgItem(dialog, kCancel), BM_CLICK, 0, 0);
    EXPECT_EQ(zenro.Status(), 0);
    EXPECT_EQ(Project(), before);
}

TEST_F(SettingsOnWindows, AFileThatItsUserMayNotWriteIsReportedAndStays) {
    const std::string before = Project();
    const Zenro zenro(L"settings layers --project 图.ini", nullptr);
    ASSERT_TRUE(zenro.started());
    const HWND dialog = DialogOf(zenro);
    ASSERT_NE(dialog, nullptr) << zm::test::ReadFile(scratch / "said.txt");
    SetFileAttributesW((scratch / "图.ini").c_str(), FILE_ATTRIBUTE_READONLY);
    SendMessageW(GetDlgItem(dialog, kSwitchAll), BM_CLICK, 0, 0);
    PostMessageW(GetDlgItem(dialog, kOk), BM_CLICK, 0, 0);
    const HWND box = DialogOf(zenro, dialog);
    ASSERT_NE(box, nullptr) << zm::test::ReadFile(scratch / "said.txt");
    EXPECT_THAT(LabelsOf(box), HasSubstr("图.ini"));
    PostMessageW(box, WM_COMMAND, kOk, 0);
    EXPECT_EQ(zenro.Status(), 5) << zm::test::ReadFile(scratch / "said.txt");
    SetFileAttributesW((scratch / "图.ini").c_str(), FILE_ATTRIBUTE_NORMAL);
    EXPECT_EQ(Project(), before);
}

TEST_F(SettingsOnWindows, EveryDialogOpens) {
    const struct {
        const wchar_t* name;
        const char* title;
    } kDialogs[] = {{L"layers", "层次颜色设定"},
                    {L"pens", "线宽设置管理"},
                    {L"notes", "注记分类信息管理"},
                    {L"fonts", "注记字体管理"},
                    {L"colours", "图形颜色设置"}};
    for (const auto& wanted : kDialogs) {
        SCOPED_TRACE(wanted.title);
        const Zenro zenro(std::wstring(L"settings ") + wanted.name + L" --project 图.ini", nullptr);
        ASSERT_TRUE(zenro.started());
        const HWND dialog = DialogOf(zenro);
        ASSERT_NE(dialog, nullptr) << zm::test::ReadFile(scratch / "said.txt");
        EXPECT_EQ(TitleOf(dialog), wanted.title);
        PostMessageW(dialog, WM_CLOSE, 0, 0);
        EXPECT_EQ(zenro.Status(), 0);
    }
}
