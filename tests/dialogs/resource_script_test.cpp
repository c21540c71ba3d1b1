// The resource script for Windows, read here as text: the same controls as the templates, headings over their columns.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <map>
#include <regex>
#include <sstream>
#include <string>
#include <vector>

#include "dialogs/templates.h"
#include "runtime/text/gbk.h"
#include "tests/support/scratch.h"

namespace {

using zm::dialogs::Control;
using zm::dialogs::Kind;
using zm::dialogs::Template;

struct ScriptControl {
    std::string text;
    int id;
    std::string kind, style;
    int x, y, width, height;
};

struct ScriptDialog {
    std::string title;
    int width = 0, height = 0;
    std::vector<ScriptControl> controls;
};

std::map<int, ScriptDialog> ReadScript() {
    std::istringstream in(zm::gbk::ToUtf8(zm::test::ReadFile(ZM_RESOURCE_SCRIPT)));
    const std::regex head(R"((\d+) DIALOGEX 0, 0, (\d+), (\d+)\s*)"), caption(R"(CAPTION "(.*)\"\s*)"),
        control(R"re(\s*CONTROL "(.*)", (\w+), "(\w+)", (.*), (\d+), (\d+), (\d+), (\d+)\s*)re");
    std::map<int, ScriptDialog> dialogs;
    ScriptDialog* now = nullptr;
    std::smatch m;
    for (std::string line; std::getline(in, line);) {
        if (std::regex_match(line, m, head)) {
            now = &dialogs[std::stoi(m[1])];
            now->width = std::stoi(m[2]);
            now->height = std::stoi(m[3]);
        } else if (std::regex_match(line, m, caption)) {
            now->title = m[1];
        } else if (std::regex_match(line, m, control)) {
            now->controls.push_back({m[1], m[2] == "NO_ID" ? zm::dialogs::kNoId : std::stoi(m[2]), m[3], m[4],
                                     std::stoi(m[5]), std::stoi(m[6]), std::stoi(m[7]), std::stoi(m[8])});
        }
    }
    return dialogs;
}

// The class in the script, and a style that tells it from its relatives.
std::pair<const char*, const char*> ScriptKind(Kind kind) {
    switch (kind) {
        case Kind::edit:
            return {"Edit", "EDIT_STYLE"};
        case Kind::masked:
            return {"Edit", "ES_PASSWORD"};
        case Kind::check:
            return {"Button", "BS_AUTOCHECKBOX"};
        case Kind::button:
            return {"Button", "BS_PUSHBUTTON"};
        case Kind::defaultButton:
            return {"Button", "BS_DEFPUSHBUTTON"};
        case Kind::list:
            return {"ListBox", "LIST_STYLE"};
        case Kind::table:
            return {"SysListView32", "TABLE_STYLE"};
        case Kind::frame:
            return {"Static", "SS_ETCHEDFRAME"};
        case Kind::label:
            break;
    }
    return {"Static", "LABEL_STYLE"};
}

// Headings: the labels over a list that begin in the list's width.
std::vector<const Control*> HeadingsOver(const Template& dialog, int list) {
    const Control* under = nullptr;
    for (const Control& c : dialog.controls)
        if (c.id == list) under = &c;
    std::vector<const Control*> headings;
    for (const Control& c : dialog.controls)
        if (c.kind == Kind::label && c.box.y < under->box.y && c.box.x < under->box.x + under->box.width)
            headings.push_back(&c);
    return headings;
}

std::vector<std::string> Texts(const std::vector<const Control*>& controls) {
    std::vector<std::string> texts;
    for (const Control* c : controls) texts.push_back(zm::gbk::ToUtf8(c->text));
    return texts;
}

}  // namespace

TEST(ResourceScript, HasTheControlsOfTheTemplatesInTheirOrder) {
    const auto script = ReadScript();
    for (const Template* wanted : zm::dialogs::AllTemplates()) {
        SCOPED_TRACE(wanted->id);
        ASSERT_TRUE(script.contains(wanted->id));
        const ScriptDialog& found = script.at(wanted->id);
        EXPECT_EQ(found.title, zm::gbk::ToUtf8(wanted->title));
        EXPECT_EQ(found.width, wanted->width);
        EXPECT_EQ(found.height, wanted->height);
        ASSERT_EQ(found.controls.size(), wanted->controls.size());
        for (std::size_t i = 0; i < found.controls.size(); ++i) {
            const ScriptControl& a = found.controls[i];
            const Control& b = wanted->controls[i];
            const auto [kind, style] = ScriptKind(b.kind);
            EXPECT_EQ(a.text, zm::gbk::ToUtf8(b.text)) << i;
            EXPECT_EQ(a.id, b.id) << i;
            EXPECT_EQ(a.kind, kind) << i;
            EXPECT_THAT(a.style, testing::HasSubstr(style)) << i;
            EXPECT_EQ(std::vector({a.x, a.y, a.width, a.height}),
                      std::vector({b.box.x, b.box.y, b.box.width, b.box.height}))
                << i;
        }
    }
}

TEST(ResourceScript, HasTheTemplateThatNoClassDrives) {
    const auto script = ReadScript();
    ASSERT_TRUE(script.contains(239));
    EXPECT_EQ(script.at(239).title, "设置绘图参数");
    EXPECT_EQ(script.size(), zm::dialogs::AllTemplates().size() + 1);
    for (const Template* driven : zm::dialogs::AllTemplates()) EXPECT_NE(driven->id, 239);
}

TEST(DialogHeadings, OfTheLayersEndWhereTheNumbersUnderThemEnd) {
    const auto headings = HeadingsOver(zm::dialogs::kLayersTemplate, 2000);
    EXPECT_EQ(Texts(headings), (std::vector<std::string>{"层次", "起始编码", "终止编码", "颜色号"}));
    // A list's text begins 2 units inside its frame at 7; tab stops 48, 84, 128; cells of 8, 10, 10 letters of 4 units.
    const int ends[] = {9 + 48 + 8 * 4, 9 + 84 + 10 * 4, 9 + 128 + 10 * 4};
    EXPECT_EQ(headings[0]->box.x, 9);
    for (std::size_t i = 0; i < 3; ++i) {
        const int text = 4 * static_cast<int>(std::string(headings[i + 1]->text).size());
        EXPECT_EQ(headings[i + 1]->box.x + text, ends[i]) << i;
    }
}

TEST(DialogHeadings, OfClassesAndFontsAreOneLineInTheFaceOfTheRows) {
    const auto classes = HeadingsOver(zm::dialogs::kClassesTemplate, 2000);
    EXPECT_EQ(Texts(classes), std::vector<std::string>{"分类 层名  颜色  显示  字高 字宽 字隔 字号 转换  备注"});
    const auto fonts = HeadingsOver(zm::dialogs::kFontsTemplate, 2000);
    EXPECT_EQ(Texts(fonts), std::vector<std::string>{"字号   显示字体名   TEXT STYLE     字体名    倾斜"});
    for (const Control* heading : {classes[0], fonts[0]}) {
        EXPECT_TRUE(heading->fixedPitch);
        EXPECT_EQ(heading->box.x, 9);
    }
}

TEST(DialogHeadings, OfTablesAreTheirColumns) {
    const auto columns = [](const Template& dialog) {
        std::vector<std::pair<std::string, int>> made;
        for (const Control& c : dialog.controls)
            for (const auto& column : c.columns) made.emplace_back(zm::gbk::ToUtf8(column.title), column.width);
        return made;
    };
    using Columns = std::vector<std::pair<std::string, int>>;
    EXPECT_EQ(columns(zm::dialogs::kWidthsTemplate), (Columns{{"编码", 54}, {"线宽", 54}}));
    EXPECT_EQ(columns(zm::dialogs::kColoursTemplate), (Columns{{"色号", 52}, {"红", 40}, {"绿", 40}, {"蓝", 40}}));
}
