// What only a console has: its encoding, and Ctrl-C.
#include "tests/windows/console.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "tests/support/scratch.h"

namespace fs = std::filesystem;
using testing::HasSubstr;
using testing::Not;
using zm::test::ConsoleScreen;
using zm::test::ScopedCurrentDir;
using zm::test::ScratchDir;
using zm::test::Zenro;

namespace {

constexpr int kPatience = 6000;  // times ten milliseconds

bool HasUnfinishedOutput(const fs::path& folder) {
    for (const fs::directory_entry& entry : fs::directory_iterator(folder))
        if (entry.path().filename().wstring().find(L".part") != std::wstring::npos) return true;
    return false;
}

// A recording that takes long to draw.
void WriteLongRecording(const fs::path& file) {
    std::ofstream out(file, std::ios::binary);
    out << "# zenro recording 1, commands of the drawing context in GBK\n# scale 1000.000000\n"
           "# sheet 0.000000 0.000000 100.000000 80.000000\n# margins_mm 5.000 5.000 5.000 "
           "5.000\nLayer:0\nPen:0:3:255\n";
    for (int i = 0; i < 2'000'000; ++i)
        out << "Line2:" << i % 100 << ".000000:10.000000:" << i % 97 << ".000000:70.000000\n";
}

class Console : public testing::Test {
 protected:
    Console() { SetEnvironmentVariableW(L"ZENRO_LANGUAGE", L"zh_CN"); }
    ~Console() override { SetEnvironmentVariableW(L"ZENRO_LANGUAGE", nullptr); }
    ScratchDir scratch;
    ScopedCurrentDir home{scratch.path()};
    ConsoleScreen screen;
};

}  // namespace

TEST_F(Console, ShowsChineseWhateverItsCodePageAndHasItBackAfterwards) {
    const UINT before = GetConsoleOutputCP();
    SetConsoleOutputCP(437);
    {
        const Zenro zenro(L"doctor", &screen);
        ASSERT_TRUE(zenro.started()) << GetLastError();
        EXPECT_EQ(zenro.Status(), 0);
    }
    EXPECT_THAT(screen.Text(), HasSubstr("符号库"));
    EXPECT_EQ(GetConsoleOutputCP(), 437u);
    SetConsoleOutputCP(before);
}

TEST_F(Console, FilesGetUtf8) {
    const Zenro zenro(L"doctor", nullptr);
    ASSERT_TRUE(zenro.started()) << GetLastError();
    EXPECT_EQ(zenro.Status(), 0);
    const std::string said = zm::test::ReadFile(scratch / "said.txt");
    EXPECT_THAT(said, HasSubstr("符号库"));
    EXPECT_THAT(said, Not(HasSubstr("\r")));
}

TEST_F(Console, CtrlCStopsWithStatus130AndLeavesNothingUnfinished) {
    WriteLongRecording(scratch / "长.rec");
    const UINT before = GetConsoleOutputCP();
    SetConsoleOutputCP(437);
    const Zenro zenro(L"replay 长.rec 图.svg", &screen);
    ASSERT_TRUE(zenro.started()) << GetLastError();
    bool begun = false;
    for (int i = 0; i < kPatience && !begun && zenro.running(); ++i, Sleep(10))
        begun = HasUnfinishedOutput(scratch.path());
    ASSERT_TRUE(begun) << screen.Text();
    EXPECT_EQ(GetConsoleOutputCP(), static_cast<UINT>(CP_UTF8));
    SetConsoleCtrlHandler(nullptr, TRUE);  // not for this process
    EXPECT_NE(GenerateConsoleCtrlEvent(CTRL_C_EVENT, 0), 0);
    EXPECT_EQ(zenro.Status(), 130);
    SetConsoleCtrlHandler(nullptr, FALSE);
    EXPECT_EQ(GetConsoleOutputCP(), 437u);
    SetConsoleOutputCP(before);
    EXPECT_FALSE(HasUnfinishedOutput(scratch.path()));
    EXPECT_FALSE(fs::exists(scratch / "图.svg"));
}
