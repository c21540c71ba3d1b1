// Each table that a dialog saves, on a full disk and where nothing may be written: reported with the path, the old file
// whole.
#include <sys/mount.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <cstring>
#include <fstream>

#include "tests/dialogs/unwritable.h"

namespace fs = std::filesystem;

namespace {

// A small file system at a folder, while it lives.
class SmallDisk {
 public:
    explicit SmallDisk(const fs::path& place) : m_place(place) {
        m_mounted = ::mount("tmpfs", m_place.c_str(), "tmpfs", 0, "size=64k") == 0;
    }
    ~SmallDisk() {
        if (m_mounted) ::umount2(m_place.c_str(), MNT_DETACH);
    }
    SmallDisk(const SmallDisk&) = delete;
    SmallDisk& operator=(const SmallDisk&) = delete;
    bool mounted() const { return m_mounted; }
    void Fill() const {
        std::ofstream filler(m_place / "filler", std::ios::binary);
        const std::string page(4096, 'x');
        while (filler.write(page.data(), 4096).flush()) {
        }
    }

 private:
    fs::path m_place;
    bool m_mounted = false;
};

// What a dialog says as another user, since the administrator is refused nothing. Empty where there is none.
template <class Act>
std::string AsAnotherUser(const Act& act) {
    int ends[2];
    if (::pipe(ends) != 0) return {};
    const pid_t child = ::fork();
    if (child == 0) {
        ::close(ends[0]);
        std::string said = "no other user here";
        if (::geteuid() != 0 || (::setgid(65534) == 0 && ::setuid(65534) == 0)) said = act();
        ::_exit(::write(ends[1], said.data(), said.size()) == static_cast<ssize_t>(said.size()) ? 0 : 1);
    }
    ::close(ends[1]);
    std::string said;
    char buffer[512];
    for (ssize_t n = 0; (n = ::read(ends[0], buffer, sizeof buffer)) > 0;)
        said.append(buffer, static_cast<std::size_t>(n));
    ::close(ends[0]);
    ::waitpid(child, nullptr, 0);
    return said;
}

}  // namespace

TEST_P(Unwritable, AFullDiskIsReportedWithThePathAndTheOldFileIsWhole) {
    fs::create_directories(Folder());
    const SmallDisk disk(Folder());
    if (!disk.mounted()) GTEST_SKIP() << "no file system can be mounted here: " << std::strerror(errno);
    PutAll();
    const std::string before = Saved(File());
    disk.Fill();
    ExpectReported(MessageOfOk());
    EXPECT_EQ(Saved(File()), before);
    EXPECT_FALSE(before.empty());
    fs::remove(Folder() / "filler");  // with room again it is saved
    EXPECT_EQ(MessageOfOk(), "");
}

TEST_P(Unwritable, FilesThatMayNotGrowAreReportedWithThePathAndTheOldFileIsWhole) {
    PutAll();
    const std::string before = Saved(File());
    const std::vector<std::string> entries = Entries();
    rlimit usual{};
    ::getrlimit(RLIMIT_FSIZE, &usual);
    const auto handler = std::signal(SIGXFSZ, SIG_IGN);
    const rlimit small{4, usual.rlim_max};
    ::setrlimit(RLIMIT_FSIZE, &small);
    const std::string message = MessageOfOk();
    ::setrlimit(RLIMIT_FSIZE, &usual);
    std::signal(SIGXFSZ, handler);
    ExpectReported(message);
    EXPECT_EQ(Saved(File()), before);
    EXPECT_EQ(Entries(), entries);
}

TEST_P(Unwritable, AFileForReadingOnlyIsReportedWithThePathAndStays) {
    PutAll();
    const std::string before = Saved(File());
    fs::permissions(dirs.Project().parent_path().parent_path(), fs::perms(0755));
    fs::permissions(Folder(), fs::perms(0777));
    fs::permissions(File(), fs::perms(0444));
    ExpectReported(AsAnotherUser([this] { return MessageOfOk(); }));
    EXPECT_EQ(Saved(File()), before);
}

TEST_P(Unwritable, AFolderForReadingOnlyIsReportedWithThePathAndStays) {
    PutAll();
    const std::string before = Saved(File());
    fs::permissions(dirs.Project().parent_path().parent_path(), fs::perms(0755));
    fs::permissions(File(), fs::perms(0666));
    fs::permissions(Folder(), fs::perms(0555));
    ExpectReported(AsAnotherUser([this] { return MessageOfOk(); }));
    EXPECT_EQ(Saved(File()), before);
    fs::permissions(Folder(), fs::perms(0755));
}

INSTANTIATE_TEST_SUITE_P(Tables, Unwritable, testing::ValuesIn(kTables),
                         [](const auto& info) { return std::string(info.param.name); });
