// Files and directories on Windows: places, stamps, locks, replacement.
#include "platform/win32/resources.h"

#include <algorithm>
#include <string>
#include <utility>
#include <vector>

#include "runtime/files/system.h"

namespace fs = std::filesystem;

namespace zm::system {
namespace {

constexpr DWORD kLockMilliseconds = 5000;
constexpr std::int64_t kTick = 200'000;  // file times count 100 ns; the clock ticks in up to 16 ms
constexpr int kRenameTries = 20;
constexpr DWORD kRenamePause = 10;       // milliseconds
constexpr std::size_t kPlainPath = 240;  // characters; of longer ones the system takes the long form alone
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
    const fs::path whole = Reachable(path);
    const DWORD attributes = GetFileAttributesW(whole.c_str());
    if (attributes == INVALID_FILE_ATTRIBUTES || ((attributes & FILE_ATTRIBUTE_DIRECTORY) != 0) != directory)
        return false;
    const Handle handle(CreateFileW(whole.c_str(), 0, kCarefulShare, nullptr, OPEN_EXISTING, flags, nullptr));
    return handle && Stamp(handle.get(), stamp);
}

bool WriteWhole(const fs::path& file, std::string_view bytes) {
    const Handle handle(
        CreateFileW(file.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr));
    bool good = static_cast<bool>(handle);
    while (good && !bytes.empty()) {
        DWORD written = 0;
        const DWORD count = static_cast<DWORD>(std::min<std::size_t>(bytes.size(), 1u << 20));
        good = WriteFile(handle.get(), bytes.data(), count, &written, nullptr) != 0 && written > 0;
        if (good) bytes.remove_prefix(written);
    }
    return good && FlushFileBuffers(handle.get()) != 0;
}

// Whether nobody keeps it from being replaced now. ReplaceFile itself, where it fails, may leave files of its own.
bool IsFree(const fs::path& target) {
    return static_cast<bool>(
        Handle(CreateFileW(target.c_str(), DELETE, kCarefulShare, nullptr, OPEN_EXISTING, 0, nullptr)));
}

// A file that is there keeps its rights and attributes. Virus scanners and indexers hold young files for a moment.
bool Renamed(const fs::path& fresh, const fs::path& target, bool exists) {
    for (int attempt = 0; attempt < kRenameTries; ++attempt) {
        if (attempt > 0) Sleep(kRenamePause);
        if (exists && !IsFree(target)) continue;
        if (exists && ::ReplaceFileW(target.c_str(), fresh.c_str(), nullptr, 0, nullptr, nullptr) != 0) return true;
        if (MoveFileExW(fresh.c_str(), target.c_str(), MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH) != 0)
            return true;
        const DWORD error = GetLastError();
        if (error != ERROR_SHARING_VIOLATION && error != ERROR_ACCESS_DENIED) return false;
    }
    return false;
}

}  // namespace

fs::path UsersConfigDirectory() {
    wchar_t directory[MAX_PATH];
    const UINT length = GetWindowsDirectoryW(directory, MAX_PATH);
    return length > 0 && length < MAX_PATH ? fs::path(directory) : fs::path();
}

fs::path ModuleFile() {
    std::vector<wchar_t> name(MAX_PATH);
    while (true) {
        const DWORD length = GetModuleFileNameW(win32::OwnModule(), name.data(), static_cast<DWORD>(name.size()));
        if (length == 0) return {};
        if (length < name.size()) return fs::path(name.data());
        name.resize(name.size() * 2);
    }
}

fs::path Reachable(const fs::path& path) {
    if (path.native().starts_with(L"\\\\?\\")) return path;  // no absolute path to the C++ library
    std::error_code error;
    fs::path whole = path.empty() || path.is_absolute() ? path : fs::absolute(path, error);
    if (error || whole.native().size() < kPlainPath) return path;
    whole = whole.lexically_normal().make_preferred();
    if (whole.native().starts_with(L"\\\\")) return fs::path(L"\\\\?\\UNC\\" + whole.native().substr(2));
    return fs::path(L"\\\\?\\" + whole.native());
}

bool StampOfFile(const fs::path& file, FileStamp& stamp) {
    return StampOf(file, 0, false, stamp);
}

bool StampOfDirectory(const fs::path& directory, FileStamp& stamp) {
    return StampOf(directory, FILE_FLAG_BACKUP_SEMANTICS, true, stamp);
}

bool ReadWholeFile(const fs::path& file, std::string& bytes, FileStamp& stamp) {
    const Handle handle(
        CreateFileW(Reachable(file).c_str(), GENERIC_READ, kCarefulShare, nullptr, OPEN_EXISTING, 0, nullptr));
    if (!handle || GetFileType(handle.get()) != FILE_TYPE_DISK || !Stamp(handle.get(), stamp)) return false;
    bytes.clear();
    char buffer[1 << 16];
    DWORD got = 0;
    do {
        if (ReadFile(handle.get(), buffer, sizeof buffer, &got, nullptr) == 0) return false;
        bytes.append(buffer, got);
        if (bytes.size() > kLongestRead) return false;
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
    m_waited = waited == WAIT_TIMEOUT;
    if (m_held)
        m_handle = static_cast<int>(reinterpret_cast<std::intptr_t>(mutex));  // handles have 32 significant bits
    else
        CloseHandle(mutex);
}

long WriteLock::holder() const {
    return 0;
}

WriteLock::~WriteLock() {
    if (m_handle == -1) return;
    HANDLE mutex = reinterpret_cast<HANDLE>(static_cast<std::intptr_t>(m_handle));
    ReleaseMutex(mutex);
    CloseHandle(mutex);
}

bool ReplaceContent(const fs::path& target, std::string_view bytes) {
    const fs::path whole = Reachable(target);
    const DWORD attributes = GetFileAttributesW(whole.c_str());
    const bool exists = attributes != INVALID_FILE_ATTRIBUTES;
    if (exists && (attributes & (FILE_ATTRIBUTE_READONLY | FILE_ATTRIBUTE_DIRECTORY)) != 0) return false;
    // One fixed name, since the lock leaves one writer: what a killed process left is used again, not left behind.
    fs::path fresh = whole;
    fresh += L".new";
    if (!WriteWhole(fresh, bytes) || !Renamed(fresh, whole, exists)) {
        DeleteFileW(fresh.c_str());
        return false;
    }
    return true;
}

}  // namespace zm::system
