#include "tests/platform/win32/window_hand.h"

#include <commctrl.h>

#include <atomic>
#include <exception>
#include <stdexcept>
#include <thread>

#include "platform/win32/wide.h"
#include "tests/platform/win32/memory_picture.h"

namespace zm::test {
namespace {

constexpr int kWaitSteps = 1000;
constexpr DWORD kWaitStep = 10;  // milliseconds

using dialogs::Kind;

std::string GbkTextOf(HWND window) {
    std::wstring text(static_cast<std::size_t>(SendMessageW(window, WM_GETTEXTLENGTH, 0, 0)) + 1, L'\0');
    text.resize(
        static_cast<std::size_t>(SendMessageW(window, WM_GETTEXT, text.size(), reinterpret_cast<LPARAM>(text.data()))));
    return win32::Gbk(text);
}

void ClickAt(HWND window, const RECT& box) {
    const LPARAM at = MAKELPARAM((box.left + box.right) / 2, (box.top + box.bottom) / 2);
    SendMessageW(window, WM_LBUTTONDOWN, MK_LBUTTON, at);
    SendMessageW(window, WM_LBUTTONUP, 0, at);
}

std::string CellOf(HWND table, int row, int column) {
    wchar_t text[256] = {};
    LVITEMW item = {};
    item.iSubItem = column;
    item.pszText = text;
    item.cchTextMax = 255;
    SendMessageW(table, LVM_GETITEMTEXTW, static_cast<WPARAM>(row), reinterpret_cast<LPARAM>(&item));
    return win32::Gbk(text);
}

int RowWith(HWND table, UINT state) {
    return static_cast<int>(SendMessageW(table, LVM_GETNEXTITEM, static_cast<WPARAM>(-1), MAKELPARAM(state, 0)));
}

struct Search {
    const std::function<bool(HWND)>* fits;
    HWND found = nullptr;
};

BOOL CALLBACK KeepFitting(HWND window, LPARAM search) {
    auto& wanted = *reinterpret_cast<Search*>(search);
    if (IsWindowVisible(window) == 0 || !(*wanted.fits)(window)) return TRUE;
    wanted.found = window;
    return FALSE;
}

BOOL CALLBACK Close(HWND window, LPARAM) {
    PostMessageW(window, WM_CLOSE, 0, 0);
    PostMessageW(window, WM_COMMAND, IDNO, 0);
    return TRUE;
}

}  // namespace

void WindowHand::Type(int id, const std::string& text) {
    const HWND edit = Item(id);
    SendMessageW(edit, EM_SETSEL, 0, -1);
    SendMessageW(edit, WM_CLEAR, 0, 0);
    for (const wchar_t c : win32::Wide(text)) SendMessageW(edit, WM_CHAR, c, 1);
}

void WindowHand::Check(int id, bool on) {
    if (IsChecked(id) != on) SendMessageW(Item(id), BM_CLICK, 0, 0);
}

void WindowHand::Select(int id, int row) {
    const HWND list = Item(id);
    RECT box = {};
    SendMessageW(list, LB_SETTOPINDEX, static_cast<WPARAM>(row), 0);
    SendMessageW(list, LB_GETITEMRECT, static_cast<WPARAM>(row), reinterpret_cast<LPARAM>(&box));
    ClickAt(list, box);
}

void WindowHand::Click(int id, int row) {
    const HWND table = Item(id);
    SendMessageW(table, LVM_ENSUREVISIBLE, static_cast<WPARAM>(row), FALSE);
    RECT box = {};
    box.left = LVIR_LABEL;
    SendMessageW(table, LVM_GETITEMRECT, static_cast<WPARAM>(row), reinterpret_cast<LPARAM>(&box));
    ClickAt(table, box);
}

void WindowHand::Focus(int id, int row) {
    LVITEMW item = {};
    item.stateMask = LVIS_FOCUSED;
    item.state = row >= 0 ? LVIS_FOCUSED : 0;
    SendMessageW(Item(id), LVM_SETITEMSTATE, static_cast<WPARAM>(row), reinterpret_cast<LPARAM>(&item));
}

void WindowHand::Press(int id) {
    if (const HWND button = Item(id))
        SendMessageW(button, BM_CLICK, 0, 0);
    else
        SendMessageW(m_window, WM_COMMAND, static_cast<WPARAM>(id), 0);
}

// The close box only posts what Esc is.
void WindowHand::Escape() {
    SendMessageW(m_window, WM_CLOSE, 0, 0);
    for (int step = 0; step < kWaitSteps / 10 && IsOpen(); ++step) Sleep(kWaitStep);
}

std::string WindowHand::Title() const {
    return GbkTextOf(m_window);
}
std::string WindowHand::Label(int id) const {
    return GbkTextOf(Item(id));
}
std::string WindowHand::Edit(int id) const {
    return GbkTextOf(Item(id));
}
bool WindowHand::IsChecked(int id) const {
    return SendMessageW(Item(id), BM_GETCHECK, 0, 0) == BST_CHECKED;
}
bool WindowHand::IsVisible(int id) const {
    return (GetWindowLongW(Item(id), GWL_STYLE) & WS_VISIBLE) != 0;
}

const dialogs::Control& WindowHand::ControlOf(int id) const {
    for (const dialogs::Control& control : m_layout.controls)
        if (control.id == id) return control;
    throw std::out_of_range("no control " + std::to_string(id));
}

std::vector<std::string> WindowHand::Rows(int id) const {
    const HWND list = Item(id);
    std::vector<std::string> rows;
    if (ControlOf(id).kind == Kind::table) {
        const int count = static_cast<int>(SendMessageW(list, LVM_GETITEMCOUNT, 0, 0));
        const int columns = static_cast<int>(ControlOf(id).columns.size());
        for (int row = 0; row < count; ++row) {
            std::string text = CellOf(list, row, 0);
            for (int column = 1; column < columns; ++column) text += "\t" + CellOf(list, row, column);
            rows.push_back(text);
        }
        return rows;
    }
    const int count = static_cast<int>(SendMessageW(list, LB_GETCOUNT, 0, 0));
    for (int row = 0; row < count; ++row) {
        std::wstring text(static_cast<std::size_t>(SendMessageW(list, LB_GETTEXTLEN, static_cast<WPARAM>(row), 0)) + 1,
                          L'\0');
        text.resize(static_cast<std::size_t>(
            SendMessageW(list, LB_GETTEXT, static_cast<WPARAM>(row), reinterpret_cast<LPARAM>(text.data()))));
        rows.push_back(win32::Gbk(text));
    }
    return rows;
}

int WindowHand::Selected(int id) const {
    return ControlOf(id).kind == Kind::table ? RowWith(Item(id), LVNI_SELECTED)
                                             : static_cast<int>(SendMessageW(Item(id), LB_GETCURSEL, 0, 0));
}

int WindowHand::Focused(int id) const {
    return RowWith(Item(id), LVNI_FOCUSED);
}

std::vector<std::pair<std::string, int>> WindowHand::Columns(int id) const {
    std::vector<std::pair<std::string, int>> columns;
    for (std::size_t i = 0; i < ControlOf(id).columns.size(); ++i) {
        wchar_t title[64] = {};
        LVCOLUMNW column = {};
        column.mask = LVCF_TEXT | LVCF_WIDTH;
        column.pszText = title;
        column.cchTextMax = 63;
        SendMessageW(Item(id), LVM_GETCOLUMNW, i, reinterpret_cast<LPARAM>(&column));
        columns.emplace_back(win32::Gbk(title), column.cx);
    }
    return columns;
}

std::array<int, 3> WindowHand::Sample() const {
    RECT client = {};
    GetClientRect(m_window, &client);
    const MemoryPicture picture(client.right, client.bottom);
    SendMessageW(m_window, WM_PRINTCLIENT, reinterpret_cast<WPARAM>(picture.dc()), PRF_CLIENT);
    const COLORREF colour = picture.At(client.bottom * 142 / 116, client.bottom * 40 / 116);
    return {static_cast<int>(colour & 0xFF), static_cast<int>(colour >> 8 & 0xFF),
            static_cast<int>(colour >> 16 & 0xFF)};
}

HWND AwaitWindow(DWORD thread, const std::function<bool(HWND)>& fits, const std::function<bool()>& gaveUp) {
    for (int step = 0; step < kWaitSteps; ++step) {
        Search search{&fits};
        EnumThreadWindows(thread, KeepFitting, reinterpret_cast<LPARAM>(&search));
        if (search.found != nullptr) return search.found;
        if (gaveUp && gaveUp()) return nullptr;
        Sleep(kWaitStep);
    }
    return nullptr;
}

bool IsDialogBox(HWND window) {
    wchar_t name[16] = {};
    GetClassNameW(window, name, 15);
    return std::wstring_view(name) == L"#32770";
}

HWND LongestLabel(HWND box) {
    HWND found = box;
    std::size_t longest = 0;
    for (HWND child = GetWindow(box, GW_CHILD); child != nullptr; child = GetWindow(child, GW_HWNDNEXT)) {
        const std::size_t length = Utf8TextOf(child).size();
        if (length <= longest) continue;
        longest = length;
        found = child;
    }
    return found;
}

std::string Utf8TextOf(HWND window) {
    wchar_t text[512] = {};
    SendMessageW(window, WM_GETTEXT, 511, reinterpret_cast<LPARAM>(text));
    return win32::ToUtf8(text);
}

void WithWindow(const std::function<bool(HWND)>& fits, const std::function<void(HWND)>& act,
                const std::function<void()>& show) {
    const DWORD thread = GetCurrentThreadId();
    std::atomic<bool> over = false;
    std::exception_ptr problem;
    std::thread other([&] {
        try {
            const HWND window = AwaitWindow(thread, fits, [&] { return over.load(); });
            if (window != nullptr)
                act(window);
            else if (!over)
                throw std::runtime_error("the window did not come");
            for (int step = 0; step < kWaitSteps && !over; ++step) Sleep(kWaitStep);
            if (!over) throw std::runtime_error("a window stays open");
        } catch (...) {
            problem = std::current_exception();
        }
        // Nothing may stay open that waits for a user.
        for (; !over; Sleep(kWaitStep)) EnumThreadWindows(thread, Close, 0);
    });
    show();
    over = true;
    other.join();
    if (problem != nullptr) std::rethrow_exception(problem);
}

}  // namespace zm::test
