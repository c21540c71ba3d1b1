// Writes that fail: reported at close, with the path.
#include <sys/mount.h>
#include <sys/resource.h>
#include <unistd.h>

#include <csignal>
#include <cstring>

#include "dwg/writer/state.h"
#include "dwg/writer/writer.h"
#include "runtime/files/files.h"
#include "tests/dwg/drawing.h"

namespace zm::test {
namespace {

class Failures : public DrawingTest {
 protected:
    // Each test writes through a small buffer, so that writes fail while the session runs, not only at close.
    Failures() { dwg::state().outputBuffer = 1; }
    static void DrawLines(int count) {
        for (int i = 0; i < count; ++i) _LDBline(1, 2, 3, 4);
    }
    void ExpectReported(const std::string& path) {
        ASSERT_EQ(Messages().size(), 1u);
        EXPECT_NE(Messages()[0].find(path), std::string::npos) << Messages()[0];
        EXPECT_NE(Messages()[0].find("could not be written whole"), std::string::npos);
        EXPECT_FALSE(dwg::LastFileComplete());
    }
};

TEST_F(Failures, AFullDeviceIsToldAtClose) {
    Open("\\dev\\full");
    DrawLines(5000);
    EXPECT_TRUE(host.boxes.empty());
    _LDBclosedwg();
    ExpectReported("\\dev\\full");
}

TEST_F(Failures, AFullDeviceIsToldForAnEmptyDrawingToo) {
    Open("\\dev\\full");
    _LDBclosedwg();
    ExpectReported("\\dev\\full");
}

// Files of this process may not grow beyond a size while the guard lives.
class ScopedFileLimit {
 public:
    explicit ScopedFileLimit(rlim_t bytes) : m_handler(std::signal(SIGXFSZ, SIG_IGN)) {
        getrlimit(RLIMIT_FSIZE, &m_previous);
        rlimit limit = m_previous;
        limit.rlim_cur = bytes;
        setrlimit(RLIMIT_FSIZE, &limit);
    }
    ~ScopedFileLimit() {
        setrlimit(RLIMIT_FSIZE, &m_previous);
        std::signal(SIGXFSZ, m_handler);
    }
    ScopedFileLimit(const ScopedFileLimit&) = delete;
    ScopedFileLimit& operator=(const ScopedFileLimit&) = delete;

 private:
    void (*m_handler)(int);
    rlimit m_previous;
};

TEST_F(Failures, AFileThatMayNotGrowIsToldAtClose) {
    Open();
    {
        const ScopedFileLimit limit(100000);
        DrawLines(5000);
        _LDBclosedwg();
    }
    ExpectReported("out.dwg");
    EXPECT_LE(ReadDrawing().size(), 100000u);
}

TEST_F(Failures, TheNextDrawingIsCompleteAgain) {
    Open("\\dev\\full");
    _LDBclosedwg();
    Open();
    EXPECT_EQ(Close().bytes(), drawingTemplate);
    EXPECT_TRUE(dwg::LastFileComplete());
    EXPECT_EQ(Messages().size(), 1u);
}

TEST_F(Failures, AFileClosedUnderUsIsToldAtClose) {
    const int next = dup(0);
    ASSERT_GE(next, 0);
    close(next);  // the output takes this number
    Open();
    ASSERT_EQ(close(next), 0);
    DrawLines(5000);
    _LDBclosedwg();
    ExpectReported("out.dwg");
}

TEST_F(Failures, ASmallFileSystemThatFillsUpIsReported) {
    const auto small = dir / "small";
    std::filesystem::create_directory(small);
    if (mount("tmpfs", small.c_str(), "tmpfs", 0, "size=64k") != 0)
        GTEST_SKIP() << "no file system can be mounted here: " << std::strerror(errno);
    const std::string path = files::PathText(small / "out.dwg");
    Open(path);
    DrawLines(5000);
    _LDBclosedwg();
    ExpectReported(path);
    EXPECT_EQ(umount(small.c_str()), 0);
}

TEST_F(Failures, AMissingFolderSendsTheFileToTheProjectFolderAndCloseTellsSo) {
    Open(files::PathText(dir / "missing" / "out.dwg"));
    DrawLines(1);
    _LDBclosedwg();
    EXPECT_EQ(ReadDrawing().Entities().size(), 1u);
    ASSERT_EQ(Messages().size(), 1u);
    EXPECT_NE(Messages()[0].find("missing\\out.dwg"), std::string::npos) << Messages()[0];
    EXPECT_NE(Messages()[0].find("written as"), std::string::npos);
    EXPECT_FALSE(dwg::LastFileComplete());
}

TEST_F(Failures, AnOutputThatNoFolderTakesEndsTheProcessWithStatus1) {
    std::filesystem::create_directory(dir / "out.dwg");
    EXPECT_EQ(StatusOf([&] { Open(); }), 1);
    EXPECT_EQ(Messages(), std::vector<std::string>{"cannot write dwg!"});
}

TEST_F(Failures, AFileByItsWholePathIsWhereItWasAskedFor) {
    const std::string path = files::PathText(dir / "whole.dwg");
    Open(path);
    _LDBclosedwg();
    EXPECT_TRUE(host.boxes.empty());
    EXPECT_TRUE(dwg::LastFileComplete());
    EXPECT_EQ(ReadDrawing("whole.dwg").bytes(), drawingTemplate);
}

TEST_F(Failures, AnExistingFileIsReplaced) {
    Write("out.dwg", std::string(100000, 'x'));
    Open();
    EXPECT_EQ(Close().bytes(), drawingTemplate);
    EXPECT_TRUE(host.boxes.empty());
}

}  // namespace
}  // namespace zm::test
