#include <gtest/gtest.h>

#include <cstring>
#include <string>

#include "runtime/state.h"
#include "runtime/text/gbk.h"
#include "runtime/texts.h"
#include "tests/support/scratch.h"
#include "tests/support/test_host.h"
#include "zenromath/runtime.h"

namespace {

using zm::test::ProcessEnded;
using zm::test::ReadFile;
using zm::test::ScratchDir;

// A path inside the library: GBK with backslashes.
std::string Inside(const std::filesystem::path& path) {
    std::string utf8 = path.string();
    for (char& c : utf8)
        if (c == '/') c = '\\';
    return zm::gbk::FromUtf8(utf8);
}

class Messages : public testing::Test {
 protected:
    Messages() {
        zm::runtime::ResetState();
        zm::SetHost(&host);
    }
    ~Messages() override { zm::runtime::ResetState(); }
    zm::test::TestHost host;
};

TEST_F(Messages, TextThenNumberThenEndlShowsTheTrailingDelimiterToo) {
    CLMsg message;
    message << "a" << 1 << "endl";
    ASSERT_EQ(host.boxes.size(), 1u);
    EXPECT_EQ(host.boxes[0].text, "a:1:");
    EXPECT_EQ(host.boxes[0].title, "Zenro Info");
    EXPECT_EQ(host.boxes[0].type, 0x2040u);
    EXPECT_EQ(host.beeps, 0);
}

TEST_F(Messages, EndlEmptiesTheBuffer) {
    CLMsg message;
    message << "a"
            << "endl";
    EXPECT_STREQ(message.GetMsgBuf(), "");
    message << "b";
    EXPECT_STREQ(message.GetMsgBuf(), "b:");
}

TEST_F(Messages, OutMsgKeepsTheBuffer) {
    CLMsg message;
    message << "a";
    EXPECT_EQ(message.OutMsg(CLMsgToBox, 0), 0);
    EXPECT_STREQ(message.GetMsgBuf(), "a:");
}

TEST_F(Messages, EndlOnAnEmptyBufferShowsABoxWithEmptyText) {
    CLMsg message(CLMsgToBox);
    message << "endl";
    ASSERT_EQ(host.boxes.size(), 1u);
    EXPECT_EQ(host.boxes[0].text, "");
}

TEST_F(Messages, StringObjectEndlIsOrdinaryText) {
    CLMsg message;
    message << CString("endl");
    EXPECT_TRUE(host.boxes.empty());
    EXPECT_STREQ(message.GetMsgBuf(), "endl:");
}

TEST_F(Messages, WhatFollowsTheLastEndlIsNeverShown) {
    {
        CLMsg message;
        message << "shown"
                << "endl"
                << "lost";
    }
    ASSERT_EQ(host.boxes.size(), 1u);
    EXPECT_EQ(host.boxes[0].text, "shown:");
}

TEST_F(Messages, FloatAndDoubleHaveSixDecimalsAndAPoint) {
    CLMsg message;
    message << 0.5f << 1.25;
    EXPECT_STREQ(message.GetMsgBuf(), "0.500000:1.250000:");
}

TEST_F(Messages, DoubleOfThreeHundredDigitsIsShownWhole) {
    CLMsg message;
    message << 1e300;
    EXPECT_EQ(message.GetMsgBuf().GetLength(), 301 + 7 + 1);  // digits, ".000000", ":"
}

TEST_F(Messages, DelimiterCanBeChangedAndNullIsNone) {
    CLMsg message;
    message.SetDelimiter(", ");
    message << "a" << 2;
    EXPECT_STREQ(message.GetMsgBuf(), "a, 2, ");
    message.SetDelimiter(nullptr);
    message << "b";
    EXPECT_STREQ(message.GetMsgBuf(), "a, 2, b");
}

TEST_F(Messages, ControlTextIsCutToTheScratch) {
    HWND window = host.MakeWindow(std::string(500, 'x'));
    CEdit edit(window);
    CStatic label(host.MakeWindow("label"));
    CLMsg message;
    message << &edit << &label;
    EXPECT_EQ(std::string(message.GetMsgBuf()), std::string(119, 'x') + ":label:");
}

TEST_F(Messages, ControlTextEndlShowsTheMessage) {
    CEdit edit(host.MakeWindow("endl"));
    CLMsg message;
    message << "a" << &edit;
    ASSERT_EQ(host.boxes.size(), 1u);
    EXPECT_EQ(host.boxes[0].text, "a:");
}

TEST_F(Messages, MissingControlIsAnEmptyText) {
    CLMsg message;
    message << static_cast<CEdit*>(nullptr) << static_cast<CStatic*>(nullptr);
    CEdit unattached;
    message << &unattached;
    EXPECT_STREQ(message.GetMsgBuf(), ":::");
}

TEST_F(Messages, NullTextIsAnEmptyText) {
    CLMsg message;
    message << static_cast<const char*>(nullptr);
    EXPECT_STREQ(message.GetMsgBuf(), ":");
}

TEST_F(Messages, TextOfAMegabyteIsKeptWhole) {
    CLMsg message;
    const std::string text(1 << 20, 'z');
    message << text.c_str();
    EXPECT_EQ(message.GetMsgBuf().GetLength(), (1 << 20) + 1);
}

TEST_F(Messages, BeepComesBeforeTheBoxIfAskedFor) {
    CLMsg message(CLMsgToBox, nullptr, 1);
    message << "a"
            << "endl";
    EXPECT_EQ(host.beeps, 1);
}

TEST_F(Messages, NameIsTheTitleOfBoxes) {
    CLMsg message(CLMsgToPane0, "report.txt");
    message << "a"
            << "endl";  // no status bar: the box
    ASSERT_EQ(host.boxes.size(), 1u);
    EXPECT_EQ(host.boxes[0].title, "report.txt");
}

TEST_F(Messages, NameOf256BytesIsLeftOutWithAMessage) {
    const std::string name(256, 'n');
    CLMsg message(CLMsgToBox, name.c_str());
    ASSERT_EQ(host.boxes.size(), 1u);
    EXPECT_NE(host.boxes[0].text.find("255"), std::string::npos);
    message << "a"
            << "endl";
    EXPECT_EQ(host.boxes[1].title, "Zenro Info");
}

TEST_F(Messages, NameOf255BytesIsKept) {
    const std::string name(255, 'n');
    CLMsg message(CLMsgToBox, name.c_str());
    message << "endl";
    EXPECT_EQ(host.boxes.at(0).title, name);
}

TEST_F(Messages, PanesReceiveTheTextOfTheirNumber) {
    host.hasStatusBar = true;
    for (const CLMsgOutTo pane : {CLMsgToPane0, CLMsgToPane1, CLMsgToPane2}) {
        CLMsg message(pane);
        message << "p" << static_cast<int>(pane) << "endl";
    }
    EXPECT_TRUE(host.boxes.empty());
    EXPECT_EQ(host.panes.at(0), "p:0:");
    EXPECT_EQ(host.panes.at(1), "p:1:");
    EXPECT_EQ(host.panes.at(2), "p:2:");
}

TEST_F(Messages, TitleTargetSetsTheMainWindowsText) {
    host.mainWindow = host.MakeWindow("old");
    CLMsg message(CLMsgToTitle);
    message << "new"
            << "endl";
    EXPECT_EQ(host.texts.at(host.mainWindow), "new:");
    EXPECT_TRUE(host.boxes.empty());
}

TEST_F(Messages, TitleTargetWithoutMainWindowFallsBackToTheBox) {
    CLMsg message(CLMsgToTitle);
    message << "new"
            << "endl";
    EXPECT_EQ(host.boxes.size(), 1u);
}

TEST_F(Messages, OutMsgOfAnUnknownTargetIsTheBox) {
    for (const int target : {-1, 6, 1000}) {
        CLMsg message;
        message << "a";
        EXPECT_EQ(message.OutMsg(static_cast<CLMsgOutTo>(target), 0), 0);
    }
    EXPECT_EQ(host.boxes.size(), 3u);
}

TEST_F(Messages, FileTargetAppendsALineEachTime) {
    ScratchDir dir;
    const auto path = dir / "记录.txt";
    {
        CLMsg message(CLMsgToFile, Inside(path).c_str());
        message << "a"
                << "endl"
                << "b"
                << "endl";
    }
#if defined(_WIN32)
    const std::string end = "\r\n";  // the file is a text file of the system
#else
    const std::string end = "\n";
#endif
    EXPECT_EQ(ReadFile(path), "a:" + end + "b:" + end);
    CLMsg again(CLMsgToFile, Inside(path).c_str());
    again.ResetFile();
    EXPECT_EQ(ReadFile(path), "");
    EXPECT_TRUE(host.boxes.empty());
}

TEST_F(Messages, FileThatCannotBeOpenedIsSilent) {
    ScratchDir dir;
    CLMsg message(CLMsgToFile, Inside(dir / "missing/file.txt").c_str());
    message << "a";
    EXPECT_EQ(message.OutMsg(CLMsgToFile, 0), 0);
    message.ResetFile();
    EXPECT_TRUE(host.boxes.empty());
}

TEST_F(Messages, AskingIgnoresTheFileTargetAndWritesNothing) {
    ScratchDir dir;
    const auto path = dir / "file.txt";
    CLMsg message(CLMsgToFile, Inside(path).c_str());
    message << "sure?";
    host.answers = {IDYES, IDNO};
    EXPECT_EQ(message.OutMsg(CLMsgToFile, 1), 1);
    EXPECT_EQ(message.OutMsg(CLMsgToFile, 1), 0);
    EXPECT_FALSE(std::filesystem::exists(path));
    ASSERT_EQ(host.boxes.size(), 2u);
    EXPECT_EQ(host.boxes[0].type, 0x1024u);
}

TEST_F(Messages, LMsgBeepsAndShowsTheDefaultTitle) {
    EXPECT_EQ(_LMsg("text", nullptr, 0), 0);
    EXPECT_EQ(host.beeps, 1);
    ASSERT_EQ(host.boxes.size(), 1u);
    EXPECT_EQ(host.boxes[0].title, "Zenro Info");
    EXPECT_EQ(host.boxes[0].type, 0x2040u);
}

TEST_F(Messages, LMsgOfNoTextBeepsAndShowsNothing) {
    EXPECT_EQ(_LMsg("", nullptr, 0), 0);
    EXPECT_EQ(_LMsg(static_cast<const char*>(nullptr), nullptr, 1), 0);
    EXPECT_EQ(host.beeps, 2);
    EXPECT_TRUE(host.boxes.empty());
}

TEST_F(Messages, LMsgAnswersOneForYesOnly) {
    host.answers = {IDYES, IDNO, IDCANCEL};
    EXPECT_EQ(_LMsg("?", "title", 1), 1);
    EXPECT_EQ(_LMsg("?", "title", 1), 0);
    EXPECT_EQ(_LMsg("?", "title", 1), 0);
    EXPECT_EQ(host.boxes[0].type, 0x1024u);
    EXPECT_EQ(host.boxes[0].title, "title");
}

TEST_F(Messages, LMsgOfAnInformationBoxIsZeroWhateverWasPressed) {
    host.answers = {IDYES};
    EXPECT_EQ(_LMsg("text", nullptr, 0), 0);
}

TEST_F(Messages, LMsgByIdTakesTheApplicationsStringTable) {
    EXPECT_EQ(_LMsg(7, nullptr, 0), 0);
    EXPECT_TRUE(host.boxes.empty());
    zm::SetStringTable([](int id) -> const char* { return id == 7 ? "seven" : nullptr; });
    _LMsg(7, nullptr, 0);
    _LMsg(8, nullptr, 0);
    ASSERT_EQ(host.boxes.size(), 1u);
    EXPECT_EQ(host.boxes[0].text, "seven");
    EXPECT_EQ(host.beeps, 3);
}

TEST_F(Messages, LErrWithoutConditionDoesNothingAtAll) {
    _LErr(0, "what", "where", "func");
    EXPECT_TRUE(host.boxes.empty());
    EXPECT_EQ(host.beeps, 0);
}

TEST_F(Messages, LErrAnsweredNoReturns) {
    _LErr(1, "a", "b", "c");
    ASSERT_EQ(host.boxes.size(), 1u);
    EXPECT_EQ(zm::gbk::ToUtf8(host.boxes[0].text), "内部错误：a\n在：b的c\n结束程序运行吗？");
    EXPECT_EQ(zm::gbk::ToUtf8(host.boxes[0].title), "警告");
    EXPECT_EQ(host.boxes[0].type, 0x14u);
    EXPECT_EQ(host.beeps, 0);
}

TEST_F(Messages, LErrAnsweredYesEndsTheProcessWith13) {
    host.answers = {IDYES};
    try {
        _LErr(1, "a", "b", "c");
        FAIL() << "the process goes on";
    } catch (const ProcessEnded& end) {
        EXPECT_EQ(end.status, 13);
    }
}

TEST_F(Messages, LErrOfLongTextsIsCutAt511Bytes) {
    _LErr(1, std::string(2000, 'w').c_str(), nullptr, "c");
    ASSERT_EQ(host.boxes.size(), 1u);
    EXPECT_EQ(host.boxes[0].text.size(), 511u);
}

int Twice(const char* text, unsigned int type, unsigned int help) {
    return static_cast<int>(std::strlen(text) + type + help);
}

TEST_F(Messages, AfxMessageBox2AsksTheCallbackIfOneIsSet) {
    Set_MessageBox_Process(Twice);
    EXPECT_EQ(AfxMessageBox2("abc", 20, 100), 123);
    EXPECT_TRUE(host.boxes.empty());
    Set_MessageBox_Process(nullptr);
    host.answers = {IDYES};
    EXPECT_EQ(AfxMessageBox2("abc", MB_YESNO, 0), IDYES);
    ASSERT_EQ(host.boxes.size(), 1u);
    EXPECT_EQ(host.boxes[0].type, static_cast<unsigned>(MB_YESNO));
}

int SendsMinusFive(CWnd*, unsigned int, zm::UInt64, zm::Int64) {
    return -5;
}

TEST_F(Messages, WindowSendMeassageAsksTheCallbackEvenWithoutWindow) {
    Set_WindowSendMeassageEx(SendsMinusFive);
    EXPECT_EQ(WindowSendMeassage(nullptr, 1, 2, 3), -5);
    Set_WindowSendMeassageEx(nullptr);
    EXPECT_EQ(WindowSendMeassage(nullptr, 1, 2, 3), 0);
}

TEST_F(Messages, WindowSendMeassageReachesALivingWindowOnly) {
    host.sendResult = 42;
    CWnd window(host.MakeWindow("w"));
    EXPECT_EQ(WindowSendMeassage(&window, 1024, 0, 0), 42);
    host.texts.clear();  // the window is destroyed
    EXPECT_EQ(WindowSendMeassage(&window, 1024, 0, 0), 0);
    CWnd unattached;
    EXPECT_EQ(WindowSendMeassage(&unattached, 1024, 0, 0), 0);
    EXPECT_EQ(host.sent.size(), 1u);
}

TEST_F(Messages, ApplicationObjectHasNoName) {
    const CZenroMathApp app;
    EXPECT_TRUE(app.AppName().IsEmpty());
}

TEST(RuntimeTexts, BytesAreTheReadableFormInGbk) {
    for (const auto& text : zm::runtime::texts::kAll) EXPECT_EQ(zm::gbk::ToUtf8(text.gbk), text.readable);
}

}  // namespace
