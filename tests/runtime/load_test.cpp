// The shared library: what it does at load, and where it finds its data. Each case is a process of its own.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <string>

#include "zenromath/config.h"
#include "zenromath/gbk.h"
#include "zenromath/runtime.h"

namespace fs = std::filesystem;
using testing::StrEq;

namespace {

// What was there when main began, before any call.
const std::string g_configHome = std::getenv("XDG_CONFIG_HOME") != nullptr ? std::getenv("XDG_CONFIG_HOME") : "";
const std::string g_directoryAtLoad = fs::current_path().string();
const bool g_probed = !g_configHome.empty() && fs::exists(g_configHome + "/zenromath/Zenro.ini");

std::string WithBackslashes(std::string path) {
    std::replace(path.begin(), path.end(), '/', '\\');
    return path;
}

}  // namespace

TEST(Load, ProbesTheMachineDirectoryBeforeAnyCall) {
    if (g_configHome.empty()) GTEST_SKIP() << "run by ctest, which gives it a configuration folder of its own";
    EXPECT_TRUE(g_probed);
    EXPECT_THAT(_LFWndDir(), StrEq(zm::gbk::FromUtf8(WithBackslashes(g_configHome + "/zenromath"))));
}

TEST(Load, TakesTheCurrentDirectoryOfTheLoadForTheProject) {
    fs::current_path("/");
    EXPECT_THAT(_LFPrjDir(), StrEq(zm::gbk::FromUtf8(WithBackslashes(g_directoryAtLoad))));
}

TEST(Load, FindsTheFolderOfTheLibraryFileFromAnyDirectory) {
    fs::current_path("/");
    EXPECT_THAT(_LFModDir(), StrEq(WithBackslashes(fs::canonical(ZM_LIBRARY_DIR).string())));
    EXPECT_THAT(_LFIniDir(), StrEq(WithBackslashes(fs::canonical(ZM_LIBRARY_DIR).string()) + "\\ZenroIni"));
}

TEST(Load, DefaultDataLieBesideTheLibrary) {
    TqNoteLayBase notes;
    EXPECT_EQ(notes.GetCount(), 16);
    EXPECT_EQ(GetTqNoteLayBasePt(), &notes);
}

TEST(Load, LeavesLayersAndPensUnread) {
    EXPECT_EQ(GetLayerName(500), nullptr);
    EXPECT_EQ(GetPenWidth(500), 0);
}
