// What holds for all six dialogs.
#include <set>

#include "dialogs/settings.h"
#include "dialogs/templates.h"
#include "dialogs/texts.h"
#include "platform/default_host.h"
#include "tests/dialogs/dialog_test.h"

using testing::HasSubstr;
using zm::dialogs::Control;
using zm::dialogs::Kind;
using zm::dialogs::Rows;
using zm::dialogs::Template;

namespace {

using Dialogs = DialogTest;

void LeaveByEsc(zm::vectors::Hand& hand) {
    hand.Escape();
}

constexpr char kOneClass[] = "[NOTE CLASS]\nTOTAL=1\nC01=0,A,7,3,20,18,2,1,321,\n";

Rows Four() {
    Rows rows;
    for (const char* text : {"a", "b", "c", "d"}) rows.Add(text);
    return rows;
}

int RunLine() {
    CString value("text");
    return ExecOneEdit("title", value);
}

}  // namespace

TEST(DialogTexts, AreTheirReadableForms) {
    for (const auto& text : zm::dialogs::texts::kAll) EXPECT_EQ(zm::gbk::ToUtf8(text.gbk), text.readable);
}

TEST(DialogRows, ARowThatComesInAtTheSelectedPlaceMovesTheSelectionDownWithItsRow) {
    Rows rows = Four();
    rows.selected = 1;
    rows.Insert(1, "new");
    EXPECT_EQ(rows.selected, 2);
    rows.Insert(3, "new");
    EXPECT_EQ(rows.selected, 2);
}

TEST(DialogRows, ADeletedRowTakesItsSelectionAndFocusAlongAndAllBelowMoveUp) {
    Rows rows = Four();
    rows.selected = 1;
    rows.focused = 2;
    rows.Delete(1);
    EXPECT_EQ(rows.selected, -1);
    EXPECT_EQ(rows.focused, 1);
    rows.Delete(-1);
    rows.Delete(9);
    EXPECT_EQ(rows.count(), 3);
}

TEST(DialogRows, APlaceOutsideTheListIsItsEndAndHasNoText) {
    Rows rows = Four();
    rows.Insert(-1, "e");
    rows.Insert(99, "f");
    EXPECT_EQ(rows.at(5), "f");
    EXPECT_EQ(rows.at(6), "");
    EXPECT_EQ(rows.at(-1), "");
}

TEST_F(Dialogs, HaveTheirTemplatesTitlesAndEntries) {
    PutNotes(kOneClass);
    ReadCengCi();
    const struct {
        int (*entry)();
        int id;
        const char* title;
    } kEntries[] = {{OpenCengciDlg, 178, "层次颜色设定"},        {OpenLineWidthDlg, 131, "线宽设置管理"},
                    {OpenNoteClassDlg, 198, "注记分类信息管理"}, {OpenNoteFontDlg, 199, "注记字体管理"},
                    {SetSysColorSet, 300, "图形颜色设置"},       {RunLine, 301, "title"}};
    for (const auto& e : kEntries) {
        Run(e.entry, [&](Hand& hand) {
            EXPECT_EQ(Utf8(hand.Title()), e.title);
            hand.Escape();
        });
        EXPECT_EQ(host.templateId, e.id);
    }
}

TEST_F(Dialogs, AreClassesOverTheDialogBaseThatGiveOkOrCancel) {
    PutNotes(kOneClass);
    ReadCengCi();
    const auto modal = [&](CDialog&& dialog, int button) {
        host.play = [button](Hand& hand) { hand.Press(button); };
        return dialog.DoModal();
    };
    EXPECT_EQ(modal(CCengCi(), 1), IDOK);
    EXPECT_EQ(modal(CCengCi(), 2), IDCANCEL);
    EXPECT_EQ(modal(CLineWidth(), 1), IDOK);
    EXPECT_EQ(modal(CLineWidth(), 2), IDCANCEL);
    EXPECT_EQ(modal(CNoteClass(), 1), IDOK);
    EXPECT_EQ(modal(CNoteFont(), 1), IDOK);
    EXPECT_EQ(modal(CNoteFont(), 2), IDCANCEL);
    EXPECT_EQ(modal(CSysColor(), 1), IDOK);
    EXPECT_EQ(modal(COneEdit(), 2), IDCANCEL);
    COneEdit line;
    line.m_value = "before";
    host.play = [](Hand& hand) {
        hand.Type(1003, "after");
        hand.Press(1);
    };
    EXPECT_EQ(line.DoModal(), IDOK);
    EXPECT_STREQ(line.m_value, "after");
}

TEST_F(Dialogs, TheLibraryIsTheSourceOfResourcesWhileOneRunsAndThePreviousSourceComesBack) {
    Run(SetSysColorSet, LeaveByEsc);
    EXPECT_EQ(host.sourceWhileOpen, &host.library);
    EXPECT_EQ(host.source, &host.application);
    host.play = nullptr;  // also where no window could be made
    SetSysColorSet();
    EXPECT_EQ(host.source, &host.application);
}

TEST_F(Dialogs, WithoutAWindowTheyAreCancelledAndSayWhatIsMissing) {
    host.play = nullptr;
    EXPECT_EQ(SetSysColorSet(), 0);
    EXPECT_THAT(Message(), HasSubstr("图形颜色设置: dialog 300 cannot be shown, this program has no windows"));
}

TEST_F(Dialogs, UnderTheConsoleHostTheyAreCancelled) {
    class Console : public zm::test::TestHost {
     public:
        bool RunDialog(zm::dialogs::Dialog& dialog) override { return zm::platform::DefaultHost().RunDialog(dialog); }
    } console;
    EXPECT_EQ(SetSysColorSet(), 0);
    ASSERT_EQ(console.boxes.size(), 1u);
}

TEST_F(Dialogs, AWindowThatGoesAwayWithItsOwnerSavesNothing) {
    PutProject("[LayerSet]\nLayers=1\nLayer1=A 100 200 1 1\n");
    PutNotes(kOneClass);
    ReadCengCi();
    const std::string before = Saved(dirs.Module("Orvnote.cod"));
    host.goesAway = true;
    for (int (*entry)() : {OpenCengciDlg, OpenLineWidthDlg, OpenNoteClassDlg, OpenNoteFontDlg, SetSysColorSet, RunLine})
        EXPECT_EQ(Run(entry, LeaveByEsc), 0);
    EXPECT_EQ(Message(), "");
    EXPECT_EQ(Saved(dirs.Module("Orvnote.cod")), before);
    EXPECT_FALSE(std::filesystem::exists(dirs.Module("neworv.ini")));
}

TEST(DialogTemplates, ControlsLieInsideTheirWindowsAndDoNotCoverEachOther) {
    for (const Template* t : zm::dialogs::AllTemplates()) {
        const auto controls = t->controls;
        for (std::size_t i = 0; i < controls.size(); ++i) {
            const auto& a = controls[i].box;
            EXPECT_LE(a.x + a.width, t->width) << t->id << " " << controls[i].id;
            EXPECT_LE(a.y + a.height, t->height) << t->id << " " << controls[i].id;
            for (std::size_t j = 0; j < i; ++j) {
                const auto& b = controls[j].box;
                const bool apart =
                    a.x + a.width <= b.x || b.x + b.width <= a.x || a.y + a.height <= b.y || b.y + b.height <= a.y;
                const bool mayMeet = controls[i].kind == Kind::masked || controls[j].kind == Kind::frame;
                EXPECT_TRUE(apart || mayMeet) << t->id << ": " << controls[i].id << " and " << controls[j].id;
            }
        }
    }
}

TEST(DialogTemplates, IdsAndKeysStandOnceAndCaptionsFitTheirControls) {
    for (const Template* t : zm::dialogs::AllTemplates()) {
        std::set<int> ids;
        std::set<char> keys;
        int defaults = 0;
        for (const Control& c : t->controls) {
            EXPECT_TRUE(c.id == zm::dialogs::kNoId || ids.insert(c.id).second) << t->id << " " << c.id;
            EXPECT_TRUE(c.key == 0 || keys.insert(c.key).second) << t->id << " " << c.key;
            defaults += c.kind == Kind::defaultButton ? 1 : 0;
            const int needed = 4 * static_cast<int>(std::string(c.text).size());
            EXPECT_LE(needed, c.box.width) << t->id << " " << Control(c).id;
        }
        EXPECT_EQ(defaults, 1) << t->id;
    }
}

TEST(DialogTemplates, HaveTheControlsOfEachDialog) {
    const std::map<int, std::set<int>> expected = {
        {178, {2000, 2001, 2002, 2003, 2004, 2005, 1, 2, 2100, 2101, 1054, 1055}},
        {131, {1038, 1002, 1003, 1004, 1032, 1033, 1, 2}},
        {198, {2000, 2001, 2002, 2003, 2004, 2005, 2006, 2007, 2008, 2009, 2010, 2100,
               2101, 1,    1000, 1001, 1002, 1003, 1004, 1005, 1006, 1007, 1008, 1009}},
        {199, {2000, 2001, 2002, 2003, 2004, 2005, 2100, 1, 1000, 1001, 1002, 1003, 1004}},
        {300, {1055, 1002, 1003, 1004, 3000, 1032, 1, 2}},
        {301, {1003, 1004, 1, 2}}};
    for (const Template* t : zm::dialogs::AllTemplates()) {
        std::set<int> ids;
        for (const Control& c : t->controls)
            if (c.id != zm::dialogs::kNoId) ids.insert(c.id);
        EXPECT_EQ(ids, expected.at(t->id)) << t->id;
    }
}
