// Files and directories on Windows: places, stamps, locks, replacement.
#include <windows.h>

#include <algorithm>
#include <cstdio>
#include <vector>

#include "runtime/system.h"

namespace fs = std::filesystem;

namespace zm::system {
namespace {

constexpr DWORD kLockMilliseconds = 5000;
constexpr std::int64_t kTick = 200'000;  // file times count 100 ns; the clock ticks in up to 16 ms
constexpr int kCarefulShare = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;

class Handle {
 public:
    explicit Handle(HANDLE handle) : m_handle(handle) {}
    ~Handle() { Close(); }
    Handle(const Handle&) = delete;
    Handle& operator=(const Handle&) = delete;
    HANDLE get() const { return m_handle; }
    explicit operator bool() const { return m_handle != nullptr && m_handle != INVALID_HANDLE_VALUE; }
    void Close() {
        if (*this) CloseHandle(m_handle);
        m_handle = nullptr;
    }

 private:
    HANDLE m_handle;
};

std::int64_t Ticks(const FILETIME& time) {
    return static_cast<std::int64_t>(static_cast<std::uint64_t>(time.dwHighDateTime) << 32 | time.dwLowDateTime);
}

bool Stamp(HANDLE handle, FileStamp& stamp) {
    BY_HANDLE_FILE_INFORMATION info;
    if (GetFileInformationByHandle(handle, &info) == 0) return false;
    FILETIME now;
    GetSystemTimeAsFileTime(&now);
    stamp.device = info.dwVolumeSerialNumber;
    stamp.number = static_cast<std::uint64_t>(info.nFileIndexHigh) << 32 | info.nFileIndexLow;
    stamp.size = static_cast<std::uint64_t>(info.nFileSizeHigh) << 32 | info.nFileSizeLow;
    stamp.modified = stamp.changed = Ticks(info.ftLastWriteTime) * 100;
    stamp.settled = Ticks(now) - Ticks(info.ftLastWriteTime) > kTick;
    return true;
}

bool StampOf(const fs::path& path, DWORD flags, bool directory, FileStamp& stamp) {
    const DWORD attributes = GetFileAttributesW(path.c_str());
    if (attributes == INVALID_FILE_ATTRIBUTES || ((attributes & FILE_ATTRIBUTE_DIRECTORY) != 0) != directory)
        return false;
    const Handle handle(CreateFileW(path.c_str(), 0, kCarefulShare, nullptr, OPEN_EXISTING, flags, nullptr));
    return handle && Stamp(handle.get(), stamp);
}

}  // namespace

fs::path ConfigDirectory() {
    wchar_t directory[MAX_PATH];
    const UINT length = GetWindowsDirectoryW(directory, MAX_PATH);
    return length > 0 && length < MAX_PATH ? fs::path(directory) : fs::path();
}

fs::path ModuleFile() {
    HMODULE module = nullptr;
    GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
                       reinterpret_cast<LPCWSTR>(&ModuleFile), &module);
    std::vector<wchar_t> name(MAX_PATH);
    while (true) {
        const DWORD length = GetModuleFileNameW(module, name.data(), static_cast<DWORD>(name.size()));
        if (length == 0) return {};
        if (length < name.size()) return fs::path(name.data());
        name.resize(name.size() * 2);
    }
}

bool StampOfFile(const fs::path& file, FileStamp& stamp) {
    return StampOf(file, 0, false, stamp);
}

bool StampOfDirectory(const fs::path& directory, FileStamp& stamp) {
    return StampOf(directory, FILE_FLAG_BACKUP_SEMANTICS, true, stamp);
}

bool ReadWholeFile(const fs::path& file, std::string& bytes, FileStamp& stamp) {
    const Handle handle(CreateFileW(file.c_str(), GENERIC_READ, kCarefulShare, nullptr, OPEN_EXISTING, 0, nullptr));
    if (!handle || GetFileType(handle.get()) != FILE_TYPE_DISK || !Stamp(handle.get(), stamp)) return false;
    bytes.clear();
    char buffer[1 << 16];
    DWORD got = 0;
    do {
        if (ReadFile(handle.get(), buffer, sizeof buffer, &got, nullptr) == 0) return false;
        bytes.append(buffer, got);
    } while (got > 0);
    return true;
}

WriteLock::WriteLock(const fs::path& directory) {
    // One mutex for all directories; its name holds for the whole machine session.
    FileStamp ignored;
    if (!StampOfDirectory(directory.empty() ? fs::path(L".") : directory, ignored)) return;
    HANDLE mutex = CreateMutexW(nullptr, FALSE, L"ZenroMathProfiles");
    if (mutex == nullptr) {
        m_held = true;
        return;
    }
    const DWORD waited = WaitForSingleObject(mutex, kLockMilliseconds);
    m_held = waited == WAIT_OBJECT_0 || waited == WAIT_ABANDONED;
    if (m_held)
        m_handle = static_cast<int>(reinterpret_cast<std::intptr_t>(mutex));  // handles have 32 significant bits
    else
        CloseHandle(mutex);
}

WriteLock::~WriteLock() {
    if (m_handle == -1) return;
    HANDLE mutex = reinterpret_cast<HANDLE>(static_cast<std::intptr_t>(m_handle));
    ReleaseMutex(mutex);
    CloseHandle(mutex);
}

bool ReplaceFile(const fs::path& target, std::string_view bytes) {
    fs::path fresh = target;
    fresh += L".zm" + std::to_wstring(GetCurrentProcessId());
    {
        Handle handle(
            CreateFileW(fresh.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr));
        bool whole = static_cast<bool>(handle);
        while (whole && !bytes.empty()) {
            DWORD written = 0;
            const DWORD count = static_cast<DWORD>(std::min<std::size_t>(bytes.size(), 1u << 20));
            whole = WriteFile(handle.get(), bytes.data(), count, &written, nullptr) != 0 && written > 0;
            bytes.remove_prefix(whole ? written : 0);
        }
        if (!whole || FlushFileBuffers(handle.get()) == 0) {
            handle.Close();
            DeleteFileW(fresh.c_str());
            return false;
        }
    }
    if (MoveFileExW(fresh.c_str(), target.c_str(), MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH) != 0)
        return true;
    DeleteFileW(fresh.c_str());
    return false;
}

}  // namespace zm::system
