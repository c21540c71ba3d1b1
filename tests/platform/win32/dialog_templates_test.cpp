// The resource script against the templates: every control in the same order with the same number, caption and place.
#include <gtest/gtest.h>
#include <windows.h>

#include <cstring>
#include <string>

#include "dialogs/templates.h"
#include "platform/win32/wide.h"

namespace {

using zm::dialogs::Control;
using zm::dialogs::Kind;

// Reads the fields of an extended dialog template.
class TemplateReader {
 public:
    explicit TemplateReader(const void* bytes) : m_start(static_cast<const char*>(bytes)), m_at(m_start) {}
    template <class Number>
    Number Take() {
        Number number;
        std::memcpy(&number, m_at, sizeof number);
        m_at += sizeof number;
        return number;
    }
    // A text, or the number of a class as "#number".
    std::wstring Name() {
        if (Peek() == 0xFFFF) {
            Take<WORD>();
            return L"#" + std::to_wstring(Take<WORD>());
        }
        std::wstring text;
        while (const WORD c = Take<WORD>()) text += static_cast<wchar_t>(c);
        return text;
    }
    void Align() {
        while ((m_at - m_start) % 4 != 0) ++m_at;
    }

 private:
    WORD Peek() const {
        WORD word;
        std::memcpy(&word, m_at, sizeof word);
        return word;
    }
    const char* m_start;
    const char* m_at;
};

struct Item {
    DWORD style, id;
    short x, y, width, height;
    std::wstring kind, text;
};

struct Resource {
    std::wstring title, face;
    short width, height;
    int points;
    std::vector<Item> items;
};

Resource Read(int id) {
    const HRSRC found = FindResourceW(nullptr, MAKEINTRESOURCEW(id), reinterpret_cast<LPCWSTR>(RT_DIALOG));
    if (found == nullptr) throw std::runtime_error("no dialog resource " + std::to_string(id));
    TemplateReader in(LockResource(LoadResource(nullptr, found)));
    Resource made;
    in.Take<WORD>(), in.Take<WORD>();                      // version, signature
    in.Take<DWORD>(), in.Take<DWORD>(), in.Take<DWORD>();  // help, extended style, style
    const int count = in.Take<WORD>();
    in.Take<short>(), in.Take<short>();
    made.width = in.Take<short>();
    made.height = in.Take<short>();
    in.Name(), in.Name();  // menu, class
    made.title = in.Name();
    made.points = in.Take<WORD>();
    in.Take<WORD>(), in.Take<BYTE>(), in.Take<BYTE>();
    made.face = in.Name();
    for (int i = 0; i < count; ++i) {
        in.Align();
        Item item;
        in.Take<DWORD>(), in.Take<DWORD>();
        item.style = in.Take<DWORD>();
        item.x = in.Take<short>();
        item.y = in.Take<short>();
        item.width = in.Take<short>();
        item.height = in.Take<short>();
        item.id = in.Take<DWORD>();
        item.kind = in.Name();
        item.text = in.Name();
        const WORD extra = in.Take<WORD>();
        for (int k = 0; k < extra; ++k) in.Take<BYTE>();
        made.items.push_back(item);
    }
    return made;
}

// The class and the styles that tell one kind of control from another.
bool IsOfKind(const Item& item, const Control& control) {
    const bool button = item.kind == L"#128" || item.kind == L"BUTTON" || item.kind == L"Button";
    const bool edit = item.kind == L"#129" || item.kind == L"EDIT" || item.kind == L"Edit";
    const bool label = item.kind == L"#130" || item.kind == L"STATIC" || item.kind == L"Static";
    const bool list = item.kind == L"#131" || item.kind == L"LISTBOX" || item.kind == L"ListBox";
    const bool table = item.kind == L"SysListView32" || item.kind == L"SYSLISTVIEW32";
    const DWORD type = item.style & 0xF;
    switch (control.kind) {
        case Kind::label:
            return label && (item.style & 0x1F) == SS_LEFT;
        case Kind::edit:
            return edit && (item.style & ES_PASSWORD) == 0;
        case Kind::masked:
            return edit && (item.style & ES_PASSWORD) != 0;
        case Kind::check:
            return button && type == BS_AUTOCHECKBOX;
        case Kind::button:
            return button && type == BS_PUSHBUTTON;
        case Kind::defaultButton:
            return button && type == BS_DEFPUSHBUTTON;
        case Kind::list:
            return list && (item.style & LBS_USETABSTOPS) != 0;
        case Kind::table:
            return table && ((item.style & 4) == 0) == control.severalRows;  // LVS_SINGLESEL
        case Kind::frame:
            return label && (item.style & 0x1F) == SS_ETCHEDFRAME;
    }
    return false;
}

}  // namespace

TEST(DialogResources, HaveTheControlsOfTheTemplates) {
    ASSERT_EQ(zm::dialogs::AllTemplates().size(), 6u);
    for (const zm::dialogs::Template* wanted : zm::dialogs::AllTemplates()) {
        SCOPED_TRACE(wanted->id);
        const Resource found = Read(wanted->id);
        EXPECT_EQ(zm::win32::Gbk(found.title), wanted->title);
        EXPECT_EQ(found.width, wanted->width);
        EXPECT_EQ(found.height, wanted->height);
        EXPECT_EQ(found.points, 9);
        EXPECT_EQ(found.face, L"\u5B8B\u4F53");
        ASSERT_EQ(found.items.size(), wanted->controls.size());
        for (std::size_t i = 0; i < found.items.size(); ++i) {
            const Item& item = found.items[i];
            const Control& control = wanted->controls[i];
            SCOPED_TRACE(i);
            EXPECT_EQ(static_cast<int>(item.id), control.id);
            EXPECT_EQ(zm::win32::Gbk(item.text), control.text);
            EXPECT_EQ(item.x, control.box.x);
            EXPECT_EQ(item.y, control.box.y);
            EXPECT_EQ(item.width, control.box.width);
            EXPECT_EQ(item.height, control.box.height);
            EXPECT_TRUE(IsOfKind(item, control));
        }
    }
}

TEST(DialogResources, HoldTheTemplateThatNoClassDrives) {
    EXPECT_EQ(zm::win32::ToUtf8(Read(239).title), "设置绘图参数");
}
