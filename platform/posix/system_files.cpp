// Files and directories on POSIX systems: places, stamps, locks, replacement.
#include <dlfcn.h>
#include <fcntl.h>
#include <pwd.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cinttypes>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <fstream>
#include <random>
#include <thread>
#include <utility>

#include "runtime/files/system.h"

namespace fs = std::filesystem;

namespace zm::system {
namespace {

constexpr std::int64_t kNanosecond = 1;
constexpr std::int64_t kSecond = 1'000'000'000 * kNanosecond;
// File times come from the clock tick, 1 to 10 ms; a file system without fractions of a second has up to 2 s.
constexpr std::int64_t kTick = 20'000'000 * kNanosecond;
constexpr std::int64_t kCoarseTick = 2 * kSecond;

constexpr std::chrono::milliseconds kLockPause(2);
constexpr std::chrono::seconds kLongestWait(5);

class Descriptor {
 public:
    explicit Descriptor(int fd) : m_fd(fd) {}
    ~Descriptor() { Close(); }
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;
    int get() const { return m_fd; }
    explicit operator bool() const { return m_fd >= 0; }
    bool Close() {
        const int fd = m_fd;
        m_fd = -1;
        return fd < 0 || ::close(fd) == 0;
    }

 private:
    int m_fd;
};

std::int64_t Nanoseconds(const timespec& t) {
    return t.tv_sec * kSecond + t.tv_nsec;
}

void Fill(FileStamp& stamp, const struct stat& st) {
    stamp.device = st.st_dev;
    stamp.number = st.st_ino;
    stamp.size = static_cast<std::uint64_t>(st.st_size);
    stamp.modified = Nanoseconds(st.st_mtim);
    stamp.changed = Nanoseconds(st.st_ctim);
    timespec now{};
    ::clock_gettime(CLOCK_REALTIME, &now);
    const bool coarse = st.st_mtim.tv_nsec == 0 && st.st_ctim.tv_nsec == 0;
    const std::int64_t age = Nanoseconds(now) - std::max(stamp.modified, stamp.changed);
    const std::int64_t tick = coarse ? kCoarseTick : kTick;
    stamp.settled = age > tick;
    stamp.settlesIn = stamp.settled ? 0 : std::min(tick - age, tick) + kNanosecond;
}

bool WriteAll(int fd, std::string_view bytes) {
    while (!bytes.empty()) {
        const ssize_t count = ::write(fd, bytes.data(), bytes.size());
        if (count < 0) {
            if (errno == EINTR) continue;
            return false;
        }
        bytes.remove_prefix(static_cast<std::size_t>(count));
    }
    return true;
}

constexpr std::size_t kChanceDigits = 16;

// ".NAME." before the digits of chance, ".new" after them.
std::string UnfinishedStart(const fs::path& target) {
    return "." + target.filename().string() + ".";
}

constexpr char kUnfinishedEnd[] = ".new";

bool IsUnfinished(const std::string& name, const std::string& start) {
    return name.size() == start.size() + kChanceDigits + sizeof(kUnfinishedEnd) - 1 &&
           name.compare(0, start.size(), start) == 0 &&
           name.find_first_not_of("0123456789abcdef", start.size()) == start.size() + kChanceDigits &&
           name.compare(start.size() + kChanceDigits, std::string::npos, kUnfinishedEnd) == 0;
}

void RemoveUnfinished(const fs::path& target) {
    const std::string start = UnfinishedStart(target);
    std::error_code error;
    const fs::path folder = target.has_parent_path() ? target.parent_path() : fs::path(".");
    for (fs::directory_iterator entry(folder, error), end; !error && entry != end; entry.increment(error))
        if (IsUnfinished(entry->path().filename().string(), start)) ::unlink(entry->path().c_str());
}

// A new file beside the target; -1 where none can be made.
int MakeUnfinished(const fs::path& target, fs::path& made) {
    constexpr int kAttempts = 100;
    std::random_device chance;
    for (int attempt = 0; attempt < kAttempts; ++attempt) {
        char digits[kChanceDigits + 1];
        std::snprintf(digits, sizeof digits, "%08x%08x", chance(), chance());
        made = target.parent_path() / (UnfinishedStart(target) + digits + kUnfinishedEnd);
        const int file = ::open(made.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0666);
        if (file >= 0 || errno != EEXIST) return file;
    }
    return -1;
}

// The mapped file that holds an address: absolute and without links, whatever the program did since its start.
fs::path MappedFile(const void* address) {
    std::ifstream maps("/proc/self/maps");
    const auto wanted = reinterpret_cast<std::uintptr_t>(address);
    for (std::string line; std::getline(maps, line);) {
        std::uintptr_t first = 0;
        std::uintptr_t last = 0;
        if (std::sscanf(line.c_str(), "%" SCNxPTR "-%" SCNxPTR, &first, &last) != 2) continue;
        if (wanted < first || wanted >= last) continue;
        const auto path = line.find('/');
        return path == std::string::npos ? fs::path() : fs::path(line.substr(path));
    }
    return {};
}

}  // namespace

fs::path UsersConfigDirectory() {
    // A relative path in the variable is to be taken as none.
    if (const char* config = std::getenv("XDG_CONFIG_HOME"); config != nullptr && *config == '/')
        return fs::path(config) / "zenromath";
    const char* home = std::getenv("HOME");
    if (home == nullptr || *home == '\0') {
        const passwd* user = ::getpwuid(::getuid());
        home = user != nullptr ? user->pw_dir : nullptr;
    }
    // A home that is not there is not made.
    std::error_code ignored;
    if (home == nullptr || *home == '\0' || !fs::is_directory(home, ignored)) return {};
    return fs::path(home) / ".config" / "zenromath";
}

fs::path ModuleFile() {
    const void* here = reinterpret_cast<const void*>(&ModuleFile);
    if (fs::path mapped = MappedFile(here); !mapped.empty()) return mapped;
    Dl_info info{};
    if (::dladdr(here, &info) == 0 || info.dli_fname == nullptr) return {};
    // Without /proc; a link in the system's library folder leads to the folder of the library and its data.
    std::error_code error;
    fs::path file = fs::canonical(info.dli_fname, error);
    return error ? fs::absolute(info.dli_fname, error) : file;
}

fs::path Reachable(const fs::path& path) {
    return path;
}

bool StampOfFile(const fs::path& file, FileStamp& stamp) {
    struct stat st {};
    if (::stat(file.c_str(), &st) != 0 || !S_ISREG(st.st_mode)) return false;
    Fill(stamp, st);
    return true;
}

bool StampOfDirectory(const fs::path& directory, FileStamp& stamp) {
    struct stat st {};
    if (::stat(directory.c_str(), &st) != 0 || !S_ISDIR(st.st_mode)) return false;
    Fill(stamp, st);
    return true;
}

bool ReadWholeFile(const fs::path& file, std::string& bytes, FileStamp& stamp) {
    // Without blocking: a pipe of that name must not hold the program up.
    const Descriptor fd(::open(file.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
    struct stat st {};
    if (!fd || ::fstat(fd.get(), &st) != 0 || !S_ISREG(st.st_mode)) return false;
    Fill(stamp, st);
    if (static_cast<std::uint64_t>(st.st_size) > kLongestRead) return false;
    bytes.resize(static_cast<std::size_t>(st.st_size));
    std::size_t done = 0;
    while (done < bytes.size()) {
        const ssize_t count = ::read(fd.get(), bytes.data() + done, bytes.size() - done);
        if (count < 0 && errno == EINTR) continue;
        if (count < 0) return false;
        if (count == 0) break;
        done += static_cast<std::size_t>(count);
    }
    bytes.resize(done);
    return true;
}

WriteLock::WriteLock(const fs::path& directory)
    : m_handle(::open(directory.empty() ? "." : directory.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC)) {
    if (m_handle < 0) {
        // A directory that may be written and not be read has no lock.
        m_held = errno == EACCES;
        return;
    }
    // By the clock: a pause may take much longer than asked for.
    for (const auto end = std::chrono::steady_clock::now() + kLongestWait;;) {
        if (::flock(m_handle, LOCK_EX | LOCK_NB) == 0) {
            m_held = true;
            return;
        }
        if (errno == EINTR) continue;
        if (errno != EWOULDBLOCK) {
            // A file system without locks: there is nobody to wait for.
            m_held = true;
            return;
        }
        m_waited = std::chrono::steady_clock::now() >= end;
        if (m_waited) return;
        std::this_thread::sleep_for(kLockPause);
    }
}

// The system lists each lock with its process, the device and the number of the file. Some file systems have other
// devices there: then the only lock with that number is the one.
long WriteLock::holder() const {
    struct stat directory {};
    if (m_handle < 0 || ::fstat(m_handle, &directory) != 0) return 0;
    std::ifstream locks("/proc/locks");
    long likely = 0;
    int like = 0;
    for (std::string line; std::getline(locks, line);) {
        long process = 0;
        unsigned int high = 0, low = 0;
        unsigned long number = 0;
        if (std::sscanf(line.c_str(), "%*d: FLOCK %*s WRITE %ld %x:%x:%lu", &process, &high, &low, &number) != 4 ||
            number != directory.st_ino)
            continue;
        if (makedev(high, low) == directory.st_dev) return process;
        likely = process;
        ++like;
    }
    return like == 1 ? likely : 0;
}

WriteLock::~WriteLock() {
    if (m_handle >= 0) ::close(m_handle);
}

namespace {

// Gives a new file the owner and the group of the old one, where the system lets it, and returns the mode that it may
// have: only the administrator may give a file away, and a group that is another has what others have.
mode_t KeptMode(int file, const struct stat& made, const struct stat& old) {
    mode_t mode = old.st_mode & 07777;
    if (made.st_uid == old.st_uid && made.st_gid == old.st_gid) return mode;
    if (::fchown(file, old.st_uid, old.st_gid) == 0) return mode;
    mode &= ~static_cast<mode_t>(S_ISUID | S_ISGID);
    if (made.st_gid == old.st_gid || ::fchown(file, static_cast<uid_t>(-1), old.st_gid) == 0) return mode;
    return (mode & ~static_cast<mode_t>(S_IRWXG)) | (mode & S_IRWXO) << 3;
}

}  // namespace

bool ReplaceContent(const fs::path& target, std::string_view bytes) {
    struct stat old {};
    const bool exists = ::stat(target.c_str(), &old) == 0;
    if (exists && (!S_ISREG(old.st_mode) || ::access(target.c_str(), W_OK) != 0)) return false;

    // A name that nobody can foresee, so that no file of another user is in its way. The lock leaves one writer: what is
    // there under such a name is of a process that was killed.
    RemoveUnfinished(target);
    fs::path fresh;
    Descriptor fd(MakeUnfinished(target, fresh));
    if (!fd) return false;
    bool good = true;
    if (exists) {
        struct stat made {};
        good = ::fstat(fd.get(), &made) == 0 && ::fchmod(fd.get(), KeptMode(fd.get(), made, old)) == 0;
    }
    good = good && WriteAll(fd.get(), bytes) && ::fsync(fd.get()) == 0;
    good = fd.Close() && good;
    if (!good || ::rename(fresh.c_str(), target.c_str()) != 0) {
        ::unlink(fresh.c_str());
        return false;
    }
    return true;
}

// Programs have no string tables here.
std::string ResourceText(int) {
    return {};
}

}  // namespace zm::system
