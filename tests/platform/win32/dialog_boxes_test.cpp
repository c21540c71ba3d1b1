// What opens over a settings dialog: the system's own message boxes and its font chooser, worked by their controls.
#include <gtest/gtest.h>

#include <cstring>

#include "config/state.h"
#include "dialogs/templates.h"
#include "platform/win32/host.h"
#include "platform/win32/wide.h"
#include "runtime/text/gbk.h"
#include "tests/platform/win32/window_hand.h"
#include "tests/support/family_dirs.h"
#include "tests/support/scratch.h"
#include "zenromath/config.h"
#include "zenromath/dialogs.h"

// After windows.h.
#include <dlgs.h>

namespace {

using zm::test::AwaitWindow;
using zm::test::IsDialogBox;
using zm::test::Utf8TextOf;
using zm::test::WindowHand;
using zm::test::WithWindow;
namespace layers = zm::dialogs::layers;
namespace fonts = zm::dialogs::fonts;
namespace colours = zm::dialogs::colours;

constexpr int kPatience = 500;  // times ten milliseconds

// What a box leads to comes when its own message loop is left, after the answer to the message that closed it.
template <class Condition>
bool Comes(Condition condition) {
    for (int i = 0; i < kPatience && !condition(); ++i) Sleep(10);
    return condition();
}

// The box or chooser over a dialog.
HWND Over(HWND dialog) {
    return AwaitWindow(GetWindowThreadProcessId(dialog, nullptr),
                       [dialog](HWND window) { return window != dialog && IsDialogBox(window); });
}

void PressWithoutWaiting(HWND dialog, int id) {
    PostMessageW(GetDlgItem(dialog, id), BM_CLICK, 0, 0);
}

class DialogBoxes : public testing::Test {
 protected:
    DialogBoxes() {
        zm::config::ResetState();
        dirs.NameProject("map");
        Put(dirs.Project("map.ini"), "[LayerSet]\nLayers=2\nLayer1=控制点 110 140 4 0\nLayer2=境界线 210 359 9 1\n");
        Put(dirs.Module("Orvnote.cod"),
            "[NOTE CLASS]\nTOTAL=1\nC01=0,A,7,3,20,18,2,1,321,\n[FONT NAME]\n1=宋体,Standard,Hztxt,0,\n");
        ReadCengCi();
        notes = std::make_unique<TqNoteLayBase>();
    }
    ~DialogBoxes() override {
        zm::SetHost(previous);
        notes.reset();
        zm::config::ResetState();
    }
    static void Put(const std::filesystem::path& file, const char* utf8) {
        zm::test::WriteFile(file, zm::gbk::FromUtf8(utf8));
    }

    zm::test::FamilyDirs dirs;
    std::unique_ptr<TqNoteLayBase> notes;
    zm::platform::WindowsHost host;
    zm::Host* previous = zm::SetHost(&host);
};

}  // namespace

TEST_F(DialogBoxes, AQuestionIsAnsweredByItsButtonsAndTheDialogGoesOn) {
    int result = -1;
    WithWindow(
        IsDialogBox,
        [](HWND window) {
            WindowHand hand(window, zm::dialogs::kLayersTemplate);
            int expected = 2;
            for (const int answer : {IDNO, IDYES}) {
                hand.Select(layers::kList, 1);
                PressWithoutWaiting(window, layers::kInsert);
                const HWND box = Over(window);
                ASSERT_NE(box, nullptr);
                EXPECT_EQ(Utf8TextOf(box), "警告");
                EXPECT_EQ(Utf8TextOf(zm::test::LongestLabel(box)), "确要替换当前记录吗?");
                EXPECT_EQ(hand.Rows(layers::kList).size(), static_cast<std::size_t>(expected));
                SendMessageW(GetDlgItem(box, answer), BM_CLICK, 0, 0);
                expected += answer == IDNO ? 1 : 0;
                EXPECT_TRUE(Comes([&] { return IsWindow(box) == 0 && hand.Selected(layers::kList) != 1; }));
                EXPECT_EQ(hand.Rows(layers::kList).size(), static_cast<std::size_t>(expected));
            }
            hand.Press(zm::dialogs::kOkButton);
        },
        [&] { result = OpenCengciDlg(); });
    EXPECT_EQ(result, 1);
    EXPECT_EQ(zm::config::state().layerCount, 3);
}

TEST_F(DialogBoxes, WhatIsRefusedIsSaidInABox) {
    int result = -1;
    std::string text;
    WithWindow(
        IsDialogBox,
        [&](HWND window) {
            WindowHand hand(window, zm::dialogs::kLayersTemplate);
            PressWithoutWaiting(window, layers::kInsert);
            const HWND box = Over(window);
            ASSERT_NE(box, nullptr);
            text = Utf8TextOf(zm::test::LongestLabel(box));
            EXPECT_FALSE(IsWindowEnabled(window)) << "task modal";
            SendMessageW(box, WM_CLOSE, 0, 0);
            EXPECT_TRUE(Comes([&] { return IsWindow(box) == 0 && IsWindowEnabled(window) != 0; }));
            hand.Escape();
        },
        [&] { result = OpenCengciDlg(); });
    EXPECT_EQ(result, 0);
    EXPECT_EQ(text, "层数据不足");
}

TEST_F(DialogBoxes, TheKeyboardIsInTheEditWhoseNumberIsRefused) {
    WithWindow(
        IsDialogBox,
        [](HWND window) {
            WindowHand hand(window, zm::dialogs::kColoursTemplate);
            hand.Click(colours::kTable, 0);
            hand.Type(colours::kGreen, "x");
            PressWithoutWaiting(window, colours::kTry);
            const HWND box = Over(window);
            ASSERT_NE(box, nullptr);
            SendMessageW(box, WM_CLOSE, 0, 0);
            EXPECT_TRUE(Comes([&] {
                GUITHREADINFO info = {};
                info.cbSize = sizeof info;
                GetGUIThreadInfo(GetWindowThreadProcessId(window, nullptr), &info);
                return info.hwndFocus == GetDlgItem(window, colours::kGreen);
            }));
            hand.Escape();
        },
        [] { SetSysColorSet(); });
}

TEST_F(DialogBoxes, EditsTakeNoMoreCharactersThanTheTemplateSays) {
    int limited = 0;
    WithWindow(
        IsDialogBox,
        [&](HWND window) {
            for (const zm::dialogs::Control& control : zm::dialogs::kLayersTemplate.controls) {
                if (control.limit == 0) continue;
                EXPECT_EQ(SendMessageW(GetDlgItem(window, control.id), EM_GETLIMITTEXT, 0, 0), control.limit);
                ++limited;
            }
            PostMessageW(window, WM_CLOSE, 0, 0);
        },
        [] { OpenCengciDlg(); });
    EXPECT_EQ(limited, 4);
}

// Their rows are padded with blanks.
TEST_F(DialogBoxes, ListsHaveAFixedWidthFace) {
    LOGFONTW list = {}, edit = {};
    const auto read = [](HWND control, LOGFONTW& font) {
        GetObjectW(reinterpret_cast<HFONT>(SendMessageW(control, WM_GETFONT, 0, 0)), sizeof font, &font);
    };
    WithWindow(
        IsDialogBox,
        [&](HWND window) {
            read(GetDlgItem(window, fonts::kList), list);
            read(GetDlgItem(window, fonts::kFirstEdit), edit);
            PostMessageW(window, WM_CLOSE, 0, 0);
        },
        [] { OpenNoteFontDlg(); });
    EXPECT_EQ(list.lfPitchAndFamily, FIXED_PITCH | FF_MODERN);
    EXPECT_STREQ(list.lfFaceName, L"\u65B0\u5B8B\u4F53");
    EXPECT_NE(edit.lfPitchAndFamily, list.lfPitchAndFamily);
    EXPECT_EQ(edit.lfHeight, list.lfHeight);
}

TEST_F(DialogBoxes, TheFacePickedInTheFontChooserComesToTheEdit) {
    std::string picked, shown;
    WithWindow(
        IsDialogBox,
        [&](HWND window) {
            WindowHand hand(window, zm::dialogs::kFontsTemplate);
            hand.Select(fonts::kList, 0);
            const std::string before = hand.Edit(fonts::kFirstEdit + 1);
            PressWithoutWaiting(window, fonts::kChooser);
            const HWND chooser = Over(window);
            ASSERT_NE(chooser, nullptr);
            EXPECT_EQ(GetWindow(chooser, GW_OWNER), window);
            EXPECT_FALSE(IsWindowEnabled(window));
            const HWND faces = GetDlgItem(chooser, cmb1);
            ASSERT_GT(SendMessageW(faces, CB_GETCOUNT, 0, 0), 0);
            SendMessageW(faces, CB_SETCURSEL, 0, 0);
            SendMessageW(chooser, WM_COMMAND, MAKEWPARAM(cmb1, CBN_SELCHANGE), reinterpret_cast<LPARAM>(faces));
            wchar_t face[LF_FACESIZE * 2] = {};
            SendMessageW(faces, CB_GETLBTEXT, 0, reinterpret_cast<LPARAM>(face));
            picked = zm::win32::ToUtf8(face);
            EXPECT_NE(picked, zm::gbk::ToUtf8(before));
            PostMessageW(chooser, WM_COMMAND, IDOK, 0);
            EXPECT_TRUE(Comes([&] { return IsWindow(chooser) == 0 && hand.Edit(fonts::kFirstEdit + 1) != before; }));
            shown = zm::gbk::ToUtf8(hand.Edit(fonts::kFirstEdit + 1));
            hand.Escape();
        },
        [] { OpenNoteFontDlg(); });
    EXPECT_EQ(shown, picked);
    EXPECT_NE(shown, "");
}

TEST_F(DialogBoxes, TheFontChooserBeginsWithTheFontAndLeavesItWhereItIsCancelled) {
    LOGFONTA font = {};
    font.lfHeight = -20;
    const auto faceIn = [](HWND faces) {
        wchar_t face[LF_FACESIZE * 2] = {};
        const LRESULT row = SendMessageW(faces, CB_GETCURSEL, 0, 0);
        SendMessageW(faces, CB_GETLBTEXT, static_cast<WPARAM>(row), reinterpret_cast<LPARAM>(face));
        return zm::win32::ToUtf8(face);
    };
    std::string chosen, first;
    WithWindow(
        IsDialogBox,
        [&](HWND window) {
            const HWND faces = GetDlgItem(window, cmb1);
            SendMessageW(faces, CB_SETCURSEL, static_cast<WPARAM>(SendMessageW(faces, CB_GETCOUNT, 0, 0) - 1), 0);
            SendMessageW(window, WM_COMMAND, MAKEWPARAM(cmb1, CBN_SELCHANGE), reinterpret_cast<LPARAM>(faces));
            chosen = faceIn(faces);
            PostMessageW(window, WM_COMMAND, IDOK, 0);
        },
        [&] { EXPECT_TRUE(host.PickFont(nullptr, font)); });
    ASSERT_NE(chosen, "");
    EXPECT_EQ(zm::gbk::ToUtf8(font.lfFaceName), chosen);
    const LOGFONTA before = font;
    WithWindow(
        IsDialogBox,
        [&](HWND window) {
            first = faceIn(GetDlgItem(window, cmb1));
            PostMessageW(window, WM_COMMAND, IDCANCEL, 0);
        },
        [&] { EXPECT_FALSE(host.PickFont(nullptr, font)); });
    EXPECT_EQ(first, chosen);
    EXPECT_EQ(std::memcmp(&font, &before, sizeof font), 0);
}
