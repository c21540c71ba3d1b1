#include "platform/win32/resources.h"

#include "platform/win32/wide.h"
#include "runtime/files/system.h"

namespace zm::win32 {
namespace {

constinit HMODULE theSource = nullptr;

}  // namespace

HMODULE ResourceSource() {
    return theSource != nullptr ? theSource : GetModuleHandleW(nullptr);
}

HMODULE PutResourceSource(HMODULE module) {
    const HMODULE previous = ResourceSource();
    theSource = module;
    return previous;
}

HMODULE OwnModule() {
    HMODULE module = nullptr;
    GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
                       reinterpret_cast<LPCWSTR>(&OwnModule), &module);
    return module;
}

}  // namespace zm::win32

std::string zm::system::ResourceText(int id) {
    if (id < 0 || id > 0xFFFF) return {};
    const wchar_t* text = nullptr;  // the function gives the address where no room is given
    const int length =
        LoadStringW(win32::ResourceSource(), static_cast<UINT>(id), reinterpret_cast<wchar_t*>(&text), 0);
    return length > 0 ? win32::Gbk({text, static_cast<std::size_t>(length)}) : std::string();
}
