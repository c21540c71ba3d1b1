#include "platform/win32/dialog_window.h"

#include <commctrl.h>

#include <algorithm>
#include <map>
#include <string>
#include <vector>

#include "platform/win32/resources.h"
#include "platform/win32/wide.h"

namespace zm::win32 {
namespace {

using dialogs::Control;
using dialogs::Dialog;
using dialogs::Field;
using dialogs::Kind;
using dialogs::Rows;

constexpr int kClosed = 1;  // what ends the box; 0 and -1 mean that there was none

std::wstring TextOf(HWND window) {
    std::wstring text(static_cast<std::size_t>(GetWindowTextLengthW(window)) + 1, L'\0');
    text.resize(static_cast<std::size_t>(GetWindowTextW(window, text.data(), static_cast<int>(text.size()))));
    return text;
}

void PutText(HWND window, const std::string& gbk) {
    const std::wstring text = Wide(gbk);
    if (TextOf(window) != text) SetWindowTextW(window, text.c_str());
}

std::vector<std::wstring> CellsOf(const std::string& row) {
    std::vector<std::wstring> cells;
    for (std::size_t at = 0; at <= row.size();) {
        const std::size_t end = std::min(row.find('\t', at), row.size());
        cells.push_back(Wide(std::string_view(row).substr(at, end - at)));
        at = end + 1;
    }
    return cells;
}

// Shows the text of a row in a table's cells.
void PutCells(HWND table, int row, const std::string& text) {
    const std::vector<std::wstring> cells = CellsOf(text);
    for (int column = 0; column < static_cast<int>(cells.size()); ++column) {
        LVITEMW item = {};
        item.iSubItem = column;
        item.pszText = const_cast<wchar_t*>(cells[static_cast<std::size_t>(column)].c_str());
        SendMessageW(table, LVM_SETITEMTEXTW, static_cast<WPARAM>(row), reinterpret_cast<LPARAM>(&item));
    }
}

void SetRowState(HWND table, int row, UINT state, UINT mask) {
    LVITEMW item = {};
    item.state = state;
    item.stateMask = mask;
    SendMessageW(table, LVM_SETITEMSTATE, static_cast<WPARAM>(row), reinterpret_cast<LPARAM>(&item));
}

int RowWith(HWND table, UINT state) {
    return static_cast<int>(SendMessageW(table, LVM_GETNEXTITEM, static_cast<WPARAM>(-1), MAKELPARAM(state, 0)));
}

class DialogWindow {
 public:
    explicit DialogWindow(Dialog& dialog) : m_dialog(dialog) {}
    ~DialogWindow() {
        if (m_fixedPitch != nullptr) DeleteObject(m_fixedPitch);
    }
    DialogWindow(const DialogWindow&) = delete;
    DialogWindow& operator=(const DialogWindow&) = delete;

    static INT_PTR CALLBACK Procedure(HWND window, UINT message, WPARAM wparam, LPARAM lparam);
    /// Sees the messages of the dialog that is open before its controls do, which would begin a menu on Alt and a letter.
    static LRESULT CALLBACK Filter(int code, WPARAM wparam, LPARAM message);

 private:
    void Begin(HWND window);
    void Prepare(const Control& control, HWND window);
    bool Commanded(int id, int code);
    bool Notified(const NMHDR& notice);
    bool PressedKey(wchar_t letter);
    void Paint();
    void PaintSample(HDC dc);

    /// Brings what the user did to the fields, calls act, and shows the fields again.
    template <class Act>
    void Event(Act act);
    void Pull();
    void Push();
    void PushControl(const Control& control, HWND window);
    void PushRows(const Control& control, HWND window, Rows& rows);
    const Control* ControlOf(int id) const;

    Dialog& m_dialog;
    HWND m_window = nullptr;
    std::vector<HWND> m_controls;  // in the order of the template
    std::map<int, std::vector<std::string>> m_shown;
    HFONT m_fixedPitch = nullptr;
    bool m_pushing = false;
};

LRESULT CALLBACK DialogWindow::Filter(int code, WPARAM wparam, LPARAM message) {
    const MSG& key = *reinterpret_cast<const MSG*>(message);
    if (code == MSGF_DIALOGBOX && key.message == WM_SYSCHAR) {
        const HWND window = GetAncestor(key.hwnd, GA_ROOT);
        const bool ours = GetWindowLongPtrW(window, DWLP_DLGPROC) == reinterpret_cast<LONG_PTR>(Procedure);
        auto* self = ours ? reinterpret_cast<DialogWindow*>(GetWindowLongPtrW(window, GWLP_USERDATA)) : nullptr;
        if (self != nullptr && self->PressedKey(static_cast<wchar_t>(key.wParam))) return 1;
    }
    return CallNextHookEx(nullptr, code, wparam, message);
}

INT_PTR CALLBACK DialogWindow::Procedure(HWND window, UINT message, WPARAM wparam, LPARAM lparam) {
    if (message == WM_INITDIALOG) {
        SetWindowLongPtrW(window, GWLP_USERDATA, lparam);
        reinterpret_cast<DialogWindow*>(lparam)->Begin(window);
        return 0;  // the keyboard is where the dialog wants it
    }
    auto* self = reinterpret_cast<DialogWindow*>(GetWindowLongPtrW(window, GWLP_USERDATA));
    if (self == nullptr) return 0;
    switch (message) {
        case WM_COMMAND:
            return self->Commanded(LOWORD(wparam), HIWORD(wparam)) ? 1 : 0;
        case WM_NOTIFY:
            return self->Notified(*reinterpret_cast<const NMHDR*>(lparam)) ? 1 : 0;
        case WM_PAINT:
            if (self->m_dialog.Painted() == nullptr) return 0;
            self->Paint();
            return 1;
        case WM_PRINTCLIENT:
            if (self->m_dialog.Painted() == nullptr) return 0;
            self->PaintSample(reinterpret_cast<HDC>(wparam));
            return 1;
        default:
            return 0;
    }
}

void DialogWindow::Begin(HWND window) {
    m_window = window;
    m_dialog.owner = window;  // of what the dialog opens itself
    HWND child = GetWindow(window, GW_CHILD);
    for (const Control& control : m_dialog.layout().controls) {
        m_controls.push_back(child);
        if (child == nullptr) continue;
        Prepare(control, child);
        child = GetWindow(child, GW_HWNDNEXT);
    }
    SetWindowTextW(window, Wide(m_dialog.Title()).c_str());
    m_dialog.Open();
    Push();
    if (GetFocus() == nullptr || IsChild(window, GetFocus()) == 0) SetFocus(GetNextDlgTabItem(window, nullptr, FALSE));
    if (m_dialog.result) EndDialog(window, kClosed);
}

void DialogWindow::Prepare(const Control& control, HWND window) {
    if (control.limit > 0) SendMessageW(window, EM_SETLIMITTEXT, static_cast<WPARAM>(control.limit), 0);
    if (!control.tabs.empty())
        SendMessageW(window, LB_SETTABSTOPS, control.tabs.size(), reinterpret_cast<LPARAM>(control.tabs.data()));
    if (control.fixedPitch) {
        if (m_fixedPitch == nullptr) {
            LOGFONTW font = {};
            GetObjectW(reinterpret_cast<HFONT>(SendMessageW(m_window, WM_GETFONT, 0, 0)), sizeof font, &font);
            font.lfPitchAndFamily = FIXED_PITCH | FF_MODERN;
            std::wstring(L"\u65B0\u5B8B\u4F53").copy(font.lfFaceName, LF_FACESIZE - 1);
            font.lfFaceName[3] = L'\0';
            m_fixedPitch = CreateFontIndirectW(&font);
        }
        SendMessageW(window, WM_SETFONT, reinterpret_cast<WPARAM>(m_fixedPitch), FALSE);
    }
    if (control.kind != Kind::table) return;
    SendMessageW(window, LVM_SETEXTENDEDLISTVIEWSTYLE, LVS_EX_FULLROWSELECT, LVS_EX_FULLROWSELECT);
    const HDC dc = GetDC(window);
    const int dotsPerInch = GetDeviceCaps(dc, LOGPIXELSX);
    ReleaseDC(window, dc);
    for (std::size_t i = 0; i < control.columns.size(); ++i) {
        std::wstring title = Wide(control.columns[i].title);
        LVCOLUMNW column = {};
        column.mask = LVCF_TEXT | LVCF_WIDTH | LVCF_SUBITEM;
        column.cx = MulDiv(control.columns[i].width, dotsPerInch, 96);
        column.pszText = title.data();
        column.iSubItem = static_cast<int>(i);
        SendMessageW(window, LVM_INSERTCOLUMNW, i, reinterpret_cast<LPARAM>(&column));
    }
}

const Control* DialogWindow::ControlOf(int id) const {
    for (const Control& control : m_dialog.layout().controls)
        if (control.id == id) return &control;
    return nullptr;
}

bool DialogWindow::Commanded(int id, int code) {
    // Enter and Esc come as these numbers, also where no such button is.
    if ((id == IDOK || id == IDCANCEL) && code == BN_CLICKED) {
        Event([&] { m_dialog.Pressed(id); });
        return true;
    }
    const Control* control = ControlOf(id);
    if (control == nullptr) return false;
    if ((control->kind == Kind::button || control->kind == Kind::defaultButton) && code == BN_CLICKED) {
        Event([&] { m_dialog.Pressed(id); });
        return true;
    }
    if (control->kind == Kind::list && code == LBN_SELCHANGE) {
        Event([&] { m_dialog.RowChanged(id); });
        return true;
    }
    return false;
}

bool DialogWindow::Notified(const NMHDR& notice) {
    const Control* control = ControlOf(static_cast<int>(notice.idFrom));
    if (control == nullptr || control->kind != Kind::table || notice.code != static_cast<UINT>(NM_CLICK)) return false;
    Event([&] { m_dialog.RowClicked(control->id); });
    return true;
}

// Alt with the letter of a control. Captions do not show it, so that the system does not find it.
bool DialogWindow::PressedKey(wchar_t letter) {
    const wchar_t capital = letter >= L'a' && letter <= L'z' ? static_cast<wchar_t>(letter - L'a' + L'A') : letter;
    for (std::size_t i = 0; i < m_controls.size(); ++i) {
        const Control& control = m_dialog.layout().controls[i];
        if (control.key == 0 || static_cast<wchar_t>(control.key) != capital || m_controls[i] == nullptr) continue;
        SendMessageW(m_controls[i], BM_CLICK, 0, 0);
        return true;
    }
    return false;
}

void DialogWindow::Paint() {
    PAINTSTRUCT paint;
    PaintSample(BeginPaint(m_window, &paint));
    EndPaint(m_window, &paint);
}

void DialogWindow::PaintSample(HDC dc) {
    const dialogs::Sample& sample = *m_dialog.Painted();
    RECT client;
    GetClientRect(m_window, &client);
    const auto at = [&](int units) { return MulDiv(units, client.bottom, sample.unitsOfHeight); };
    const RECT box = {at(sample.box.x), at(sample.box.y), at(sample.box.x + sample.box.width),
                      at(sample.box.y + sample.box.height)};
    const HBRUSH brush = CreateSolidBrush(sample.colour & 0xFFFFFF);
    FillRect(dc, &box, brush);
    DeleteObject(brush);
}

template <class Act>
void DialogWindow::Event(Act act) {
    if (m_pushing || m_dialog.result) return;  // what the dialog itself changes is no event
    Pull();
    act();
    Push();
    if (m_dialog.result) EndDialog(m_window, kClosed);
}

void DialogWindow::Pull() {
    for (std::size_t i = 0; i < m_controls.size(); ++i) {
        const Control& control = m_dialog.layout().controls[i];
        const HWND window = m_controls[i];
        if (window == nullptr) continue;
        if (control.kind == Kind::edit || control.kind == Kind::masked)
            m_dialog.field(control.id).text = Gbk(TextOf(window));
        if (control.kind == Kind::check)
            m_dialog.field(control.id).checked = SendMessageW(window, BM_GETCHECK, 0, 0) == BST_CHECKED;
        if (control.kind == Kind::list)
            m_dialog.field(control.id).rows.selected = static_cast<int>(SendMessageW(window, LB_GETCURSEL, 0, 0));
        if (control.kind == Kind::table) {
            Rows& rows = m_dialog.field(control.id).rows;
            rows.selected = RowWith(window, LVNI_SELECTED);
            rows.focused = RowWith(window, LVNI_FOCUSED);
        }
    }
}

void DialogWindow::Push() {
    const bool outer = m_pushing;
    m_pushing = true;
    for (std::size_t i = 0; i < m_controls.size(); ++i)
        if (m_controls[i] != nullptr) PushControl(m_dialog.layout().controls[i], m_controls[i]);
    if (m_dialog.focus != Dialog::kNoControl) {
        const HWND wanted = GetDlgItem(m_window, m_dialog.focus);
        m_dialog.focus = Dialog::kNoControl;
        SendMessageW(m_window, WM_NEXTDLGCTL, reinterpret_cast<WPARAM>(wanted), TRUE);
    }
    m_pushing = outer;
    if (m_dialog.Painted() != nullptr) InvalidateRect(m_window, nullptr, TRUE);
}

void DialogWindow::PushControl(const Control& control, HWND window) {
    if (control.kind == Kind::label || control.kind == Kind::frame) return;
    Field& field = m_dialog.field(control.id);
    switch (control.kind) {
        case Kind::check:
            SendMessageW(window, BM_SETCHECK, field.checked ? BST_CHECKED : BST_UNCHECKED, 0);
            break;
        case Kind::list:
        case Kind::table:
            PushRows(control, window, field.rows);
            break;
        default:
            PutText(window, field.text);
    }
    if (((GetWindowLongW(window, GWL_STYLE) & WS_VISIBLE) != 0) != field.visible)
        ShowWindow(window, field.visible ? SW_SHOW : SW_HIDE);
}

void DialogWindow::PushRows(const Control& control, HWND window, Rows& rows) {
    const bool table = control.kind == Kind::table;
    std::vector<std::string> wanted;
    for (int i = 0; i < rows.count(); ++i) wanted.push_back(rows.at(i));
    std::vector<std::string>& shown = m_shown[control.id];
    if (wanted != shown) {
        const LRESULT top = SendMessageW(window, table ? LVM_GETTOPINDEX : LB_GETTOPINDEX, 0, 0);
        SendMessageW(window, WM_SETREDRAW, FALSE, 0);
        SendMessageW(window, table ? LVM_DELETEALLITEMS : LB_RESETCONTENT, 0, 0);
        for (int i = 0; i < rows.count(); ++i) {
            if (!table) {
                SendMessageW(window, LB_ADDSTRING, 0, reinterpret_cast<LPARAM>(Wide(rows.at(i)).c_str()));
                continue;
            }
            LVITEMW item = {};
            item.iItem = i;
            SendMessageW(window, LVM_INSERTITEMW, 0, reinterpret_cast<LPARAM>(&item));
            PutCells(window, i, rows.at(i));
        }
        if (!table) SendMessageW(window, LB_SETTOPINDEX, static_cast<WPARAM>(top), 0);
        SendMessageW(window, WM_SETREDRAW, TRUE, 0);
        if (table && top > 0) SendMessageW(window, LVM_ENSUREVISIBLE, static_cast<WPARAM>(top), FALSE);
        InvalidateRect(window, nullptr, TRUE);
        shown = std::move(wanted);
    }
    if (!table) {
        if (SendMessageW(window, LB_GETCURSEL, 0, 0) != rows.selected)
            SendMessageW(window, LB_SETCURSEL, static_cast<WPARAM>(rows.selected), 0);
        if (rows.reveal != Rows::kNone) SendMessageW(window, LB_SETTOPINDEX, static_cast<WPARAM>(rows.reveal), 0);
    } else {
        if (RowWith(window, LVNI_SELECTED) != rows.selected) {
            SetRowState(window, -1, 0, LVIS_SELECTED);
            if (rows.selected >= 0) SetRowState(window, rows.selected, LVIS_SELECTED, LVIS_SELECTED);
        }
        if (RowWith(window, LVNI_FOCUSED) != rows.focused) {
            SetRowState(window, -1, 0, LVIS_FOCUSED);
            if (rows.focused >= 0) SetRowState(window, rows.focused, LVIS_FOCUSED, LVIS_FOCUSED);
        }
        if (rows.reveal != Rows::kNone)
            SendMessageW(window, LVM_ENSUREVISIBLE, static_cast<WPARAM>(rows.reveal), FALSE);
    }
    rows.reveal = Rows::kNone;
}

}  // namespace

bool ShowDialog(Dialog& dialog) {
    const INITCOMMONCONTROLSEX classes = {sizeof classes, ICC_LISTVIEW_CLASSES};
    InitCommonControlsEx(&classes);
    const HMODULE module = ResourceSource();
    const wchar_t* name = MAKEINTRESOURCEW(dialog.layout().id);
    if (FindResourceW(module, name, reinterpret_cast<const wchar_t*>(RT_DIALOG)) == nullptr) {
        dialog.obstacle = "the template is missing in the resources of the library";
        return false;
    }
    DialogWindow window(dialog);
    const HWND owner = IsWindow(dialog.owner) != 0 ? dialog.owner : nullptr;
    const HWND before = dialog.owner;
    const HHOOK filter = SetWindowsHookExW(WH_MSGFILTER, DialogWindow::Filter, nullptr, GetCurrentThreadId());
    const INT_PTR ended =
        DialogBoxParamW(module, name, owner, DialogWindow::Procedure, reinterpret_cast<LPARAM>(&window));
    const DWORD error = GetLastError();
    UnhookWindowsHookEx(filter);
    dialog.owner = before;
    if (ended != -1) return true;
    dialog.obstacle = "the system makes no window (error " + std::to_string(error) + ")";
    return false;
}

}  // namespace zm::win32
