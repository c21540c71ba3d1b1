// Outputs on Windows: a new file beside the place, held open against others while its process lives, and moved there.
#include <windows.h>

#include <cstring>
#include <random>
#include <set>

#include "platform/win32/wide.h"
#include "runtime/files/system.h"
#include "tools/kit/exit_codes.h"
#include "tools/kit/output_file.h"
#include "tools/kit/standard_streams.h"
#include "tools/kit/translation.h"

namespace fs = std::filesystem;

namespace zm::tool {
namespace {

constexpr int kAttempts = 100;  // at a name that nobody has
constexpr int kSlots = 64;
constexpr int kPathSize = 4096;
constexpr wchar_t kPart[] = L".part";
constexpr wchar_t kPrivateName[] = L"zenro";  // private folders are ".zenro.0123456789abcdef.part"
constexpr wchar_t kPrivateStem[] = L".zenro";
constexpr std::size_t kChanceDigits = 16;
constexpr std::size_t kLongestName = 255;  // characters of a file name

// The names of unfinished files, in plain memory: the thread that ends the process reads them.
wchar_t g_unfinished[kSlots][kPathSize];

int TakeSlot(const std::wstring& path) {
    if (path.size() >= kPathSize) return -1;
    for (int i = 0; i < kSlots; ++i) {
        if (g_unfinished[i][0] != L'\0') continue;
        std::wmemcpy(g_unfinished[i], path.c_str(), path.size() + 1);
        return i;
    }
    return -1;
}

void FreeSlot(int slot) {
    if (slot >= 0) g_unfinished[slot][0] = L'\0';
}

std::string SystemMessage(DWORD error) {
    wchar_t text[256] = {};
    DWORD length = FormatMessageW(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS, nullptr, error, 0, text,
                                  255, nullptr);
    while (length > 0 && (text[length - 1] <= L' ' || text[length - 1] == L'.')) --length;
    return length > 0 ? win32::ToUtf8({text, length}) : "error " + std::to_string(error);
}

[[noreturn]] void CannotWrite(const fs::path& target, const std::string& why) {
    throw Failure(kNoOutput, Phrase("{0}: cannot be written: {1}.", target.string(), why));
}

std::wstring Chance() {
    std::random_device device;
    wchar_t text[kChanceDigits + 1];
    std::swprintf(text, kChanceDigits + 1, L"%08x%08x", device(), device());
    return text;
}

// The extension stays last, since readers of formats go by it.
std::wstring UnfinishedName(const fs::path& target) {
    const std::wstring end = L"." + Chance() + kPart + target.extension().native();
    std::wstring stem = target.stem().native();
    stem.resize(std::min(stem.size(), kLongestName - 1 - std::min(kLongestName - 1, end.size())));
    return L"." + stem + end;
}

// ".STEM.0123456789abcdef.part.EXT"
bool IsUnfinishedName(const std::wstring& name) {
    const std::size_t part = name.rfind(kPart);
    if (name.empty() || name.front() != L'.' || part == std::wstring::npos || part <= kChanceDigits) return false;
    const std::size_t chance = part - kChanceDigits;
    return name[chance - 1] == L'.' && name.find_first_not_of(L"0123456789abcdef", chance) == part;
}

// Others may read, write, rename and remove it meanwhile, but not believe it to be left behind: that takes all rights.
HANDLE Hold(const fs::path& file, DWORD how) {
    return CreateFileW(file.c_str(), GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr, how,
                       FILE_ATTRIBUTE_NORMAL, nullptr);
}

// While it is open nobody can rename the folder.
HANDLE HoldFolder(const fs::path& folder) {
    return CreateFileW(folder.c_str(), FILE_LIST_DIRECTORY, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr, OPEN_EXISTING,
                       FILE_FLAG_BACKUP_SEMANTICS, nullptr);
}

// Removes a folder that no living process holds: only such a one can be renamed.
void RemoveFolder(const fs::path& folder) {
    const fs::path taken = folder.parent_path() / UnfinishedName(kPrivateName);
    if (MoveFileW(folder.c_str(), taken.c_str()) == 0) return;
    std::error_code ignored;
    fs::remove_all(taken, ignored);
}

// Removes what killed processes left in a folder: files and folders that nobody holds open. Once for each folder.
void RemoveLeftovers(const fs::path& folder) {
    static std::set<fs::path> done;
    if (!done.insert(folder).second) return;
    WIN32_FIND_DATAW entry;
    const HANDLE search = FindFirstFileW((folder / L".*").c_str(), &entry);
    if (search == INVALID_HANDLE_VALUE) return;
    do {
        if (!IsUnfinishedName(entry.cFileName)) continue;
        if ((entry.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0) {
            // Those of PrivateFolder alone: other programs have folders whose names end so.
            const fs::path name = entry.cFileName;
            const bool isPrivate = name.stem().stem() == kPrivateStem && name.extension() == kPart;
            if (isPrivate && (entry.dwFileAttributes & FILE_ATTRIBUTE_REPARSE_POINT) == 0) RemoveFolder(folder / name);
            continue;
        }
        const HANDLE file = CreateFileW((folder / entry.cFileName).c_str(), GENERIC_READ | DELETE, 0, nullptr,
                                        OPEN_EXISTING, FILE_FLAG_DELETE_ON_CLOSE, nullptr);
        if (file != INVALID_HANDLE_VALUE) CloseHandle(file);
    } while (FindNextFileW(search, &entry) != 0);
    FindClose(search);
}

void RequireReplaceable(const fs::path& target, const fs::path& place, bool overwrite) {
    const DWORD there = GetFileAttributesW(place.c_str());
    if (there == INVALID_FILE_ATTRIBUTES) return;
    if ((there & FILE_ATTRIBUTE_DIRECTORY) != 0) CannotWrite(target, Phrase("it is a directory; give a file name"));
    if (!overwrite) CannotWrite(target, Phrase("it exists; give --overwrite to replace it"));
    if ((there & FILE_ATTRIBUTE_READONLY) != 0) CannotWrite(target, Phrase("it may not be replaced: it is read-only"));
}

HANDLE HandleOf(int lock) {
    return reinterpret_cast<HANDLE>(static_cast<std::intptr_t>(lock));  // handles have 32 significant bits
}

}  // namespace

void RemoveUnfinishedOutputs() {
    for (auto& path : g_unfinished)
        if (path[0] != L'\0') DeleteFileW(path);
}

OutputFile::OutputFile(const fs::path& target, bool overwrite)
    : m_target(fs::absolute(target)),
      m_place(system::Reachable(m_target)),
      m_overwrite(overwrite),
      m_stream(IsStandardOutput(target)) {
    if (m_stream) {
        m_target = target;
        KeepStandardOutput(target);
        m_place = fs::temp_directory_path() / ("stdout" + target.extension().string());
    } else {
        RequireReplaceable(target, m_place, overwrite);
    }
    const fs::path folder = m_place.parent_path();
    const DWORD there = GetFileAttributesW(folder.c_str());
    if (there == INVALID_FILE_ATTRIBUTES || (there & FILE_ATTRIBUTE_DIRECTORY) == 0)
        CannotWrite(target, Phrase("the directory {0} is missing", target.parent_path().string()));
    RemoveLeftovers(folder);
    HANDLE file = INVALID_HANDLE_VALUE;
    for (int attempt = 0; attempt < kAttempts && file == INVALID_HANDLE_VALUE; ++attempt) {
        m_temporary = system::Reachable(folder / UnfinishedName(m_place));
        file = Hold(m_temporary, CREATE_NEW);
        if (file == INVALID_HANDLE_VALUE && GetLastError() != ERROR_FILE_EXISTS) break;
    }
    if (file == INVALID_HANDLE_VALUE) {
        const DWORD error = GetLastError();
        m_temporary.clear();
        CannotWrite(target, SystemMessage(error));
    }
    m_lock = static_cast<int>(reinterpret_cast<std::intptr_t>(file));
    m_slot = TakeSlot(m_temporary.native());
}

OutputFile::~OutputFile() {
    if (m_lock != -1) CloseHandle(HandleOf(m_lock));
    if (!m_temporary.empty()) DeleteFileW(m_temporary.c_str());
    FreeSlot(m_slot);
}

void OutputFile::Commit() {
    CloseHandle(HandleOf(m_lock));
    m_lock = -1;
    if (m_stream) {
        SendToStandardOutput(m_target, m_temporary);
        DeleteFileW(m_temporary.c_str());
        return m_temporary.clear();
    }
    // Opened anew: some writers of formats replace the file they are given.
    const HANDLE file =
        CreateFileW(m_temporary.c_str(), GENERIC_WRITE, FILE_SHARE_READ, nullptr, OPEN_EXISTING, 0, nullptr);
    if (file == INVALID_HANDLE_VALUE) CannotWrite(m_target, SystemMessage(GetLastError()));
    const bool whole = FlushFileBuffers(file) != 0;
    const DWORD reason = GetLastError();
    CloseHandle(file);
    if (!whole) CannotWrite(m_target, SystemMessage(reason));
    RequireReplaceable(m_target, m_place, m_overwrite);
    const bool exists = GetFileAttributesW(m_place.c_str()) != INVALID_FILE_ATTRIBUTES;
    // What is replaced keeps its rights and attributes.
    const bool replaced =
        exists && ReplaceFileW(m_place.c_str(), m_temporary.c_str(), nullptr, 0, nullptr, nullptr) != 0;
    const DWORD how = MOVEFILE_WRITE_THROUGH | (m_overwrite ? MOVEFILE_REPLACE_EXISTING : 0u);
    if (!replaced && MoveFileExW(m_temporary.c_str(), m_place.c_str(), how) == 0)
        CannotWrite(m_target, SystemMessage(GetLastError()));
    m_temporary.clear();
}

PrivateFolder::PrivateFolder() {
    std::error_code error;
    const fs::path place = fs::temp_directory_path(error);
    RemoveLeftovers(place);
    // The user's own folder for such files: others cannot enter it.
    for (int attempt = 0; attempt < kAttempts; ++attempt) {
        m_path = place / UnfinishedName(kPrivateName);
        if (CreateDirectoryW(m_path.c_str(), nullptr) == 0) {
            if (GetLastError() == ERROR_ALREADY_EXISTS) continue;
            break;
        }
        const HANDLE held = HoldFolder(m_path);
        m_lock = static_cast<int>(reinterpret_cast<std::intptr_t>(held));
        if (held != INVALID_HANDLE_VALUE) return;
    }
    CannotWrite(m_path, SystemMessage(GetLastError()));
}

PrivateFolder::~PrivateFolder() {
    CloseHandle(HandleOf(m_lock));
    std::error_code ignored;
    fs::remove_all(m_path, ignored);
}

}  // namespace zm::tool
