#include "dialogs/templates.h"
#include "tests/dialogs/dialog_test.h"

using namespace zm::dialogs::line;
using zm::dialogs::kCancelButton;
using zm::dialogs::kOkButton;

namespace {

class LineDialogTest : public DialogTest {
 protected:
    int Open(const char* title, CString& value, Play play) {
        host.play = std::move(play);
        return ExecOneEdit(title, value);
    }
};

}  // namespace

TEST_F(LineDialogTest, ShowsTheTitleAndTheValueAndOkTakesTheText) {
    CString value(Gbk("内容").c_str());
    EXPECT_EQ(Open(Gbk("标题").c_str(), value,
                   [](Hand& hand) {
                       EXPECT_EQ(Utf8(hand.Title()), "标题");
                       EXPECT_EQ(Utf8(hand.Edit(kPlain)), "内容");
                       EXPECT_TRUE(hand.IsVisible(kPlain));
                       EXPECT_FALSE(hand.IsVisible(kMasked));
                       Type(hand, kPlain, "新");
                       hand.Press(kOkButton);
                   }),
              1);
    EXPECT_EQ(Utf8(value.GetString()), "新");
}

TEST_F(LineDialogTest, CancelLeavesTheValue) {
    CString value("abc");
    EXPECT_EQ(Open("T", value,
                   [](Hand& hand) {
                       Type(hand, kPlain, "changed");
                       hand.Press(kCancelButton);
                   }),
              0);
    EXPECT_STREQ(value, "abc");
}

TEST_F(LineDialogTest, WithoutATitleItIsTheTemplates) {
    CString value;
    Open(nullptr, value, [](Hand& hand) {
        EXPECT_EQ(hand.Title(), "Dialog");
        hand.Press(kCancelButton);
    });
}

TEST_F(LineDialogTest, TheExactWordEmptiesTheValueAndMasksTheText) {
    CString value("password");
    EXPECT_EQ(Open("T", value,
                   [&](Hand& hand) {
                       EXPECT_TRUE(value.IsEmpty());
                       EXPECT_FALSE(hand.IsVisible(kPlain));
                       EXPECT_TRUE(hand.IsVisible(kMasked));
                       EXPECT_EQ(hand.Edit(kMasked), "");
                       Type(hand, kMasked, "secret");
                       hand.Press(kOkButton);
                   }),
              1);
    EXPECT_STREQ(value, "secret");
}

TEST_F(LineDialogTest, AnyOtherSpellingIsOrdinaryText) {
    for (const char* text : {"Password", "PASSWORD", "password ", " password", "passwor", ""}) {
        CString value(text);
        EXPECT_EQ(Open("T", value,
                       [&](Hand& hand) {
                           EXPECT_TRUE(hand.IsVisible(kPlain));
                           EXPECT_EQ(hand.Edit(kPlain), text);
                           hand.Press(kOkButton);
                       }),
                  1);
        EXPECT_STREQ(value, text);
    }
}
