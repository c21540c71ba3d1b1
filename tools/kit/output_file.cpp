#include "tools/kit/output_file.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <random>
#include <set>
#include <string_view>

#include "tools/kit/exit_codes.h"
#include "tools/kit/standard_streams.h"
#include "tools/kit/translation.h"

namespace fs = std::filesystem;

namespace zm::tool {
namespace {

constexpr int kAttempts = 100;            // at a name that nobody has
constexpr int kLongestName = 255;         // bytes of a file name
constexpr char kPart[] = ".part";         // in the name of each unfinished file, before its extension
constexpr char kPrivateName[] = "zenro";  // private folders are ".zenro.0123456789abcdef.part"
constexpr char kPrivateStem[] = ".zenro";
constexpr std::size_t kChanceDigits = 16;

// The names of unfinished files, in plain memory so that a signal handler may read them.
constexpr int kSlots = 64;
constexpr int kPathSize = 4096;
char g_unfinished[kSlots][kPathSize];

int TakeSlot(const std::string& path) {
    if (path.size() >= kPathSize) return -1;
    for (int i = 0; i < kSlots; ++i) {
        if (g_unfinished[i][0] != '\0') continue;
        std::memcpy(g_unfinished[i], path.c_str(), path.size() + 1);
        return i;
    }
    return -1;
}

void FreeSlot(int slot) {
    if (slot >= 0) g_unfinished[slot][0] = '\0';
}

[[noreturn]] void CannotWrite(const fs::path& target, const std::string& why) {
    throw Failure(kNoOutput, Phrase("{0}: cannot be written: {1}.", target.string(), why));
}

std::string Chance() {
    std::random_device device;
    char text[kChanceDigits + 1];
    std::snprintf(text, sizeof text, "%08x%08x", device(), device());
    return text;
}

// Hidden, and with the extension last, since readers of formats go by it. A long stem is cut: the name must fit.
std::string UnfinishedName(const fs::path& target) {
    const std::string end = "." + Chance() + kPart + target.extension().string();
    std::string stem = target.stem().string();
    const std::size_t room = kLongestName - 1 > end.size() ? kLongestName - 1 - end.size() : 0;
    if (stem.size() > room) stem.resize(room);
    return "." + stem + end;
}

// ".STEM.0123456789abcdef.part.EXT"
bool IsUnfinishedName(const std::string& name) {
    const std::size_t part = name.rfind(kPart);
    if (name.front() != '.' || part == std::string::npos || part <= kChanceDigits) return false;
    const std::size_t chance = part - kChanceDigits;
    return name[chance - 1] == '.' && name.find_first_not_of("0123456789abcdef", chance) == part;
}

// Whether the file under this name is the open one.
bool IsStill(const fs::path& path, int file) {
    struct stat named {
    }, opened{};
    return ::lstat(path.c_str(), &named) == 0 && ::fstat(file, &opened) == 0 && named.st_dev == opened.st_dev &&
           named.st_ino == opened.st_ino;
}

// Locks what was just made: 0 where another process took it for a leftover before that. File systems without locks lose
// no leftovers, since nobody can lock these either.
bool Lock(const fs::path& made, int file) {
    return (::flock(file, LOCK_EX | LOCK_NB) == 0 || errno != EWOULDBLOCK) && IsStill(made, file);
}

// Makes and locks a new file; -1 with errno where that fails.
int MakeNew(const fs::path& folder, const fs::path& target, fs::path& made) {
    for (int attempt = 0; attempt < kAttempts; ++attempt) {
        made = folder / UnfinishedName(target);
        const int file = ::open(made.c_str(), O_RDWR | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0666);
        if (file < 0 && errno == EEXIST) continue;
        if (file < 0) return -1;
        if (Lock(made, file)) return file;
        ::close(file);
    }
    return -1;
}

// Removes the unfinished files and private folders of this user in a folder that no living process holds. Once for each
// folder: a folder may have a hundred thousand sheets in it.
void RemoveLeftovers(const fs::path& folder) {
    static std::set<fs::path> done;
    if (!done.insert(folder).second) return;
    std::error_code error;
    for (fs::directory_iterator entry(folder, error), end; !error && entry != end; entry.increment(error)) {
        if (!IsUnfinishedName(entry->path().filename().string())) continue;
        const int file = ::open(entry->path().c_str(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC);
        if (file < 0) continue;
        struct stat found {};
        std::error_code ignored;
        // Of folders those of PrivateFolder alone: other programs have folders whose names end so.
        const bool isPrivate = entry->path().stem().stem() == kPrivateStem && entry->path().extension() == kPart;
        if (::fstat(file, &found) == 0 && (S_ISREG(found.st_mode) || (isPrivate && S_ISDIR(found.st_mode))) &&
            found.st_uid == ::geteuid() && ::flock(file, LOCK_EX | LOCK_NB) == 0 && IsStill(entry->path(), file))
            fs::remove_all(entry->path(), ignored);
        ::close(file);
    }
}

// The place that a target names: where a link leads, though nothing need be there yet.
fs::path PlaceOf(const fs::path& target) {
    std::error_code error;
    fs::path place = fs::absolute(target, error);
    for (int links = 0; fs::is_symlink(fs::symlink_status(place, error)); ++links) {
        constexpr int kMostLinks = 40;
        if (links == kMostLinks) CannotWrite(target, Phrase("its links lead in a circle"));
        const fs::path next = fs::read_symlink(place, error);
        if (error) CannotWrite(target, error.message());
        place = next.is_absolute() ? next : place.parent_path() / next;
    }
    return place;
}

void RequireReplaceable(const fs::path& target, const fs::path& place, bool overwrite) {
    std::error_code error;
    const fs::file_status there = fs::status(place, error);
    if (fs::is_directory(there)) CannotWrite(target, Phrase("it is a directory; give a file name"));
    if (!fs::exists(there)) return;
    if (!fs::is_regular_file(there)) CannotWrite(target, Phrase("it is no regular file; give another name"));
    if (!overwrite) CannotWrite(target, Phrase("it exists; give --overwrite to replace it"));
    if (::access(place.c_str(), W_OK) != 0)
        CannotWrite(target, Phrase("it may not be replaced: {0}", SystemError(errno)));
}

fs::path TemporaryPlace() {
    std::error_code error;
    const fs::path place = fs::temp_directory_path(error);
    return error ? fs::path("/tmp") : place;
}

// Mode and owner of what is replaced. Only the administrator may give a file away; else it belongs to who wrote it, and
// a group that is another has what others have.
void TakeOver(int file, const fs::path& place) {
    struct stat old {
    }, made{};
    if (::stat(place.c_str(), &old) != 0 || !S_ISREG(old.st_mode) || ::fstat(file, &made) != 0) return;
    mode_t mode = old.st_mode & 07777;
    const bool other = made.st_uid != old.st_uid || made.st_gid != old.st_gid;
    if (other && ::fchown(file, old.st_uid, old.st_gid) != 0) {
        mode &= ~static_cast<mode_t>(S_ISUID | S_ISGID);
        if (made.st_gid != old.st_gid && ::fchown(file, static_cast<uid_t>(-1), old.st_gid) != 0)
            mode = (mode & ~static_cast<mode_t>(S_IRWXG)) | (mode & S_IRWXO) << 3;
    }
    if (::fchmod(file, mode) != 0) return;
}

}  // namespace

void RemoveUnfinishedOutputs() {
    for (auto& path : g_unfinished)
        if (path[0] != '\0') unlink(path);
}

OutputFile::OutputFile(const fs::path& target, bool overwrite)
    : m_target(fs::absolute(target)), m_overwrite(overwrite), m_stream(IsStandardOutput(target)) {
    if (m_stream) {
        m_target = target;
        KeepStandardOutput(target);
        m_place = TemporaryPlace() / ("stdout" + target.extension().string());
    } else {
        m_place = PlaceOf(target);
        RequireReplaceable(target, m_place, overwrite);
    }
    const fs::path folder = m_place.parent_path();
    std::error_code error;
    if (!fs::is_directory(folder, error)) {
        const fs::path named = fs::is_symlink(fs::symlink_status(target, error)) ? folder : target.parent_path();
        CannotWrite(target, Phrase("the directory {0} is missing", named.string()));
    }
    RemoveLeftovers(folder);
    m_lock = MakeNew(folder, m_place, m_temporary);
    if (m_lock < 0) {
        m_temporary.clear();
        CannotWrite(target, SystemError(errno));
    }
    m_slot = TakeSlot(m_temporary.native());  // no copy: whoever runs out of memory here leaves the file behind
}

OutputFile::~OutputFile() {
    if (!m_temporary.empty()) ::unlink(m_temporary.c_str());
    FreeSlot(m_slot);
    if (m_lock >= 0) ::close(m_lock);
}

void OutputFile::Commit() {
    if (m_stream) {
        SendToStandardOutput(m_target, m_temporary);
        ::unlink(m_temporary.c_str());
        return m_temporary.clear();
    }
    // Opened anew: some writers of formats replace the file they are given.
    const int file = ::open(m_temporary.c_str(), O_RDONLY | O_NOFOLLOW | O_CLOEXEC);
    if (file < 0) CannotWrite(m_target, SystemError(errno));
    if (m_overwrite) TakeOver(file, m_place);
    const bool whole =
        ::fsync(file) == 0 || errno == EINVAL || errno == ENOTSUP;  // some file systems have no such call
    const int reason = errno;
    const bool closed = ::close(file) == 0;
    if (!whole || !closed) CannotWrite(m_target, SystemError(whole ? errno : reason));
    if (m_overwrite) {
        RequireReplaceable(m_target, m_place, true);
        if (::rename(m_temporary.c_str(), m_place.c_str()) != 0) CannotWrite(m_target, SystemError(errno));
    } else if (::renameat2(AT_FDCWD, m_temporary.c_str(), AT_FDCWD, m_place.c_str(), RENAME_NOREPLACE) != 0) {
        if (errno == EEXIST)
            CannotWrite(m_target, Phrase("it came into being meanwhile; give --overwrite to replace it"));
        // A file system without that form of the call.
        std::error_code error;
        if ((errno != EINVAL && errno != ENOSYS) || fs::exists(m_place, error) ||
            ::rename(m_temporary.c_str(), m_place.c_str()) != 0)
            CannotWrite(m_target, SystemError(errno));
    }
    m_temporary.clear();
}

PrivateFolder::PrivateFolder() {
    const fs::path place = TemporaryPlace();
    RemoveLeftovers(place);
    for (int attempt = 0; attempt < kAttempts; ++attempt) {
        m_path = place / UnfinishedName(kPrivateName);
        if (::mkdir(m_path.c_str(), 0700) != 0) {
            if (errno == EEXIST) continue;
            break;
        }
        m_lock = ::open(m_path.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC);
        if (m_lock >= 0 && Lock(m_path, m_lock)) return;
        if (m_lock >= 0) ::close(m_lock);
    }
    CannotWrite(m_path, SystemError(errno));
}

PrivateFolder::~PrivateFolder() {
    std::error_code ignored;
    fs::remove_all(m_path, ignored);
    ::close(m_lock);
}

}  // namespace zm::tool
