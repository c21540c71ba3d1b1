#include "tests/windows/dialog_of.h"

#include <string_view>

namespace zm::test {
namespace {

constexpr int kPatience = 3000;  // times ten milliseconds

struct Search {
    DWORD process;
    HWND other;
    HWND found = nullptr;
};

BOOL CALLBACK KeepDialog(HWND window, LPARAM search) {
    auto& wanted = *reinterpret_cast<Search*>(search);
    wchar_t name[16] = {};
    GetClassNameW(window, name, 15);
    DWORD process = 0;
    GetWindowThreadProcessId(window, &process);
    if (process != wanted.process || window == wanted.other || IsWindowVisible(window) == 0 ||
        std::wstring_view(name) != L"#32770")
        return TRUE;
    wanted.found = window;
    return FALSE;
}

}  // namespace

HWND DialogOf(const Zenro& zenro, HWND other) {
    Search search{zenro.id(), other};
    for (int i = 0; i < kPatience && search.found == nullptr && zenro.running(); ++i, Sleep(10))
        EnumWindows(KeepDialog, reinterpret_cast<LPARAM>(&search));
    return search.found;
}

}  // namespace zm::test
