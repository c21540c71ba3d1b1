#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <stdlib.h>
#if !defined(_WIN32)
#include <sys/resource.h>
#endif

#include <csignal>
#include <filesystem>
#include <string>

#include "runtime/files/files.h"
#include "runtime/files/system.h"
#include "runtime/profile/profile.h"
#include "runtime/profile/project.h"
#include "runtime/state.h"
#include "tests/support/family_dirs.h"
#include "tests/support/test_host.h"
#include "zenromath/runtime.h"

namespace fs = std::filesystem;
using testing::EndsWith;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StrEq;
using zm::runtime::Project;
using zm::test::FamilyDirs;
using zm::test::ReadFile;
using zm::test::WriteFile;

namespace {

class ProjectFiles : public testing::Test {
 protected:
    void Init(std::string name, std::string ext, const char* fallback = nullptr) {
        std::string other = fallback != nullptr ? fallback : "";
        _LFInit(name.data(), ext.data(), fallback != nullptr ? other.data() : nullptr);
    }
    std::string Whole(std::string name, const char* ext, int where) {
        char buffer[256];
        std::string extension = ext != nullptr ? ext : "";
        return _LFWholeName(buffer, name.data(), ext != nullptr ? extension.data() : nullptr, where);
    }
    std::string Content(const char* name, const char* mode = "r") {
        std::FILE* file = _LFOpen(name, mode);
        if (file == nullptr) return "(null)";
        char bytes[64] = {};
        const std::size_t count = std::fread(bytes, 1, sizeof bytes, file);
        std::fclose(file);
        return {bytes, count};
    }

    FamilyDirs dirs;
    zm::test::TestHost host;
};

}  // namespace

// ---- At load ----

TEST_F(ProjectFiles, StartInTheCurrentDirectoryWithNothingNamed) {
    EXPECT_THAT(_LFPrjDir(), StrEq(FamilyDirs::Text(dirs.Project())));
    EXPECT_THAT(Project().currentFile, StrEq(""));
    EXPECT_THAT(Project().chosenFile, StrEq(""));
    EXPECT_THAT(Project().baseName, StrEq(""));
}

TEST_F(ProjectFiles, ProbeTheMachineDirectoryAndLeaveTheProbeBehind) {
    EXPECT_EQ(Project().machineUsable, 1);
    EXPECT_THAT(_LFWndDir(), StrEq(FamilyDirs::Text(dirs.Machine())));
    EXPECT_EQ(ReadFile(dirs.Machine("Zenro.ini")), "[Sure]\r\nSure=Sure\r\n");
}

TEST_F(ProjectFiles, TakeTheModuleDirectoryAfterAFailedProbe) {
    WriteFile(dirs.Project("no directory"), "");
    const zm::test::OwnConfigDirectory config(dirs.Project("no directory") / "config");
    zm::runtime::StartProjectFiles();
    EXPECT_EQ(Project().machineUsable, 0);
    EXPECT_THAT(_LFWndDir(), StrEq(_LFModDir()));
    EXPECT_THAT(host.boxes, IsEmpty());
}

TEST_F(ProjectFiles, ProbeFailsWhereItsFileCannotBeWritten) {
    fs::remove(dirs.Machine("Zenro.ini"));
    fs::create_directory(dirs.Machine("Zenro.ini"));
    zm::runtime::StartProjectFiles();
    EXPECT_EQ(Project().machineUsable, 0);
}

#if !defined(_WIN32)
TEST_F(ProjectFiles, ProbeByWritingAtEveryStart) {
    EXPECT_EQ(Project().machineUsable, 1);  // the probe is in its file now
    rlimit usual{};
    ::getrlimit(RLIMIT_FSIZE, &usual);
    const auto handler = std::signal(SIGXFSZ, SIG_IGN);
    const rlimit full{4, usual.rlim_max};
    ::setrlimit(RLIMIT_FSIZE, &full);
    zm::runtime::StartProjectFiles();
    const int usable = Project().machineUsable;
    ::setrlimit(RLIMIT_FSIZE, &usual);
    std::signal(SIGXFSZ, handler);
    EXPECT_EQ(usable, 0);
    zm::runtime::StartProjectFiles();
    EXPECT_EQ(Project().machineUsable, 1);
}

TEST_F(ProjectFiles, MakeNoHomeThatIsMissing) {
    const char* homeBefore = std::getenv("HOME");
    const char* configBefore = std::getenv("XDG_CONFIG_HOME");
    const std::string home = homeBefore != nullptr ? homeBefore : "";
    const std::string config = configBefore != nullptr ? configBefore : "";
    const fs::path missing = dirs.Project("no home");
    {
        const zm::test::OwnConfigDirectory usual{{}};
        ::unsetenv("XDG_CONFIG_HOME");
        ::setenv("HOME", missing.c_str(), 1);
        zm::runtime::StartProjectFiles();
        EXPECT_EQ(Project().machineUsable, 0);
        EXPECT_FALSE(fs::exists(missing));
        fs::create_directory(missing);
        zm::runtime::StartProjectFiles();
        EXPECT_EQ(Project().machineUsable, 1);
        EXPECT_TRUE(fs::exists(missing / ".config/zenromath/Zenro.ini"));
    }
    homeBefore != nullptr ? ::setenv("HOME", home.c_str(), 1) : ::unsetenv("HOME");
    if (configBefore != nullptr) ::setenv("XDG_CONFIG_HOME", config.c_str(), 1);
}
#endif

TEST_F(ProjectFiles, StartByThemselvesAtTheFirstUse) {
    zm::runtime::ResetState();
    EXPECT_FALSE(zm::runtime::state().projectStarted);
    EXPECT_THAT(_LFPrjDir(), StrEq(FamilyDirs::Text(dirs.Project())));
    EXPECT_TRUE(zm::runtime::state().projectStarted);
}

TEST_F(ProjectFiles, FindTheModuleDirectoryOfTheCodeItself) {
    zm::runtime::StartProjectFiles();
#if defined(_WIN32)
    const fs::path program = _wpgmptr;
#else
    const fs::path program = fs::read_symlink("/proc/self/exe");
#endif
    EXPECT_THAT(_LFModDir(), StrEq(FamilyDirs::Text(program.parent_path())));
    EXPECT_THAT(_LFIniDir(), StrEq(FamilyDirs::Text(program.parent_path()) + "\\ZenroIni"));
}

TEST(ConfigDirectory, OfTestsIsNotTheUsers) {
    const FamilyDirs dirs;
    {
        const zm::test::OwnConfigDirectory config(dirs.Project("other"));
        EXPECT_EQ(zm::system::ConfigDirectory(), dirs.Project("other"));
    }
    EXPECT_EQ(zm::system::ConfigDirectory() / "a", dirs.Machine("a"));
}

#if defined(_WIN32)
TEST(ConfigDirectory, IsTheWindowsDirectory) {
    const zm::test::OwnConfigDirectory real({});
    EXPECT_EQ(zm::system::ConfigDirectory(), fs::path(::_wgetenv(L"SystemRoot")));
}
#else
TEST(ConfigDirectory, IsTheUsersFolderForConfiguration) {
    const FamilyDirs dirs;
    const zm::test::OwnConfigDirectory real({});
    ::setenv("XDG_CONFIG_HOME", "/somewhere", 1);
    EXPECT_EQ(zm::system::ConfigDirectory(), "/somewhere/zenromath");
    ::setenv("XDG_CONFIG_HOME", "relative", 1);
    const std::string home = ::getenv("HOME") != nullptr ? ::getenv("HOME") : "";
    ::setenv("HOME", dirs.Project().c_str(), 1);
    EXPECT_EQ(zm::system::ConfigDirectory(), dirs.Project(".config/zenromath"));
    ::setenv("HOME", dirs.Project("missing").c_str(), 1);
    EXPECT_EQ(zm::system::ConfigDirectory(), "");  // no home is made
    ::setenv("HOME", home.c_str(), 1);
}
#endif

// ---- _LFInit ----

TEST_F(ProjectFiles, InitMovesTheProcessToTheProject) {
    fs::create_directory(dirs.Project("图幅"));
    Init(FamilyDirs::Text(dirs.Project("图幅/map.prj")), "ini");
    EXPECT_EQ(fs::current_path(), dirs.Project("图幅"));
    EXPECT_THAT(_LFPrjDir(), StrEq(FamilyDirs::Text(dirs.Project("图幅"))));
    EXPECT_THAT(Project().currentFile, StrEq(FamilyDirs::Text(dirs.Project("图幅/map.ini"))));
}

TEST_F(ProjectFiles, InitLeavesAPointInADirectoryNameAlone) {
    Init("d:\\p\\map.r1\\a", "dat");
    EXPECT_THAT(Project().baseName, StrEq("d:\\p\\map.r1\\a"));
    EXPECT_THAT(Project().currentFile, StrEq("d:\\p\\map.r1\\a.dat"));
    EXPECT_THAT(_LFPrjDir(), StrEq("d:\\p\\map.r1"));
}

TEST_F(ProjectFiles, InitCutsTheLastExtensionOfABareNameAndPutsItInTheCurrentDirectory) {
    const std::string here = FamilyDirs::Text(dirs.Project());
    Init("a.b.c", ".ini");
    EXPECT_THAT(Project().baseName, StrEq(here + "\\a.b"));
    EXPECT_THAT(Project().currentFile, StrEq(here + "\\a.b.ini"));
    EXPECT_THAT(_LFPrjDir(), StrEq(here));
}

TEST_F(ProjectFiles, InitLeavesTheCallersTextAsItWas) {
    std::string name = "a.b.c";
    std::string ext = "ini";
    _LFInit(name.data(), ext.data(), nullptr);
    EXPECT_EQ(name, "a.b.c");
}

TEST_F(ProjectFiles, InitStaysWhereItIsIfTheDirectoryDoesNotExist) {
    Init(FamilyDirs::Text(dirs.Project("missing/map")), "ini");
    EXPECT_EQ(FamilyDirs::Text(fs::current_path()), FamilyDirs::Text(dirs.Project()));
    EXPECT_THAT(_LFPrjDir(), EndsWith("\\missing"));
}

TEST_F(ProjectFiles, InitChoosesTheCurrentFileOnlyIfItOpens) {
    Init(FamilyDirs::Text(dirs.Project("map")), "ini", "d:\\other.ini");
    EXPECT_THAT(Project().chosenFile, StrEq("d:\\other.ini")) << "the stream that never opened is closed as a no-op";
    WriteFile(dirs.Project("map.ini"), "");
    Init(FamilyDirs::Text(dirs.Project("map")), "ini", "d:\\other.ini");
    EXPECT_THAT(Project().chosenFile, StrEq(Project().currentFile));
    fs::remove(dirs.Project("map.ini"));
    Init(FamilyDirs::Text(dirs.Project("map")), "ini");
    EXPECT_THAT(Project().chosenFile, StrEq(Project().currentFile)) << "without a fallback nothing is tried";
}

TEST_F(ProjectFiles, InitTakesForwardSlashesFromCallers) {
    Init("/tmp/a.b/map.x", "ini");
    EXPECT_THAT(Project().currentFile, StrEq("\\tmp\\a.b\\map.ini"));
}

TEST_F(ProjectFiles, InitTakesABackslashInsideACharacterForNoSeparator) {
    Init("\x8F\x5C.x", "ini");
    EXPECT_THAT(Project().baseName, StrEq(FamilyDirs::Text(dirs.Project()) + "\\\x8F\x5C"));
}

TEST_F(ProjectFiles, InitTakesTheRootForTheDirectoryOfAFileInIt) {
    Init("\\map", "ini");
    EXPECT_THAT(_LFPrjDir(), StrEq("\\"));
    EXPECT_EQ(Whole("x.dat", nullptr, 0), "\\x.dat");
}

TEST_F(ProjectFiles, InitRefusesAPathBeyond255BytesWithAMessageAndChangesNothing) {
    Init(FamilyDirs::Text(dirs.Project("map")), "ini");
    const std::string before = Project().currentFile;
    Init("d:\\" + std::string(249, 'a'), "ini");
    EXPECT_THAT(Project().currentFile, StrEq(before));
    ASSERT_EQ(host.boxes.size(), 1u);
    EXPECT_THAT(host.boxes[0].text, HasSubstr("longer than 255 bytes"));
    Init("d:\\" + std::string(248, 'a'), "ini");
    EXPECT_EQ(std::string(Project().currentFile).size(), 255u);
    EXPECT_EQ(host.boxes.size(), 1u);
}

TEST_F(ProjectFiles, InitIgnoresANullName) {
    std::string ext = "ini";
    _LFInit(nullptr, ext.data(), nullptr);
    EXPECT_THAT(Project().currentFile, StrEq(""));
}

// ---- Extensions and keys ----

TEST_F(ProjectFiles, SetExtPutsAPointUnlessTheExtensionBeginsWithOne) {
    Init("d:\\p\\a", "ini");
    std::string ext = "dat";
    _LFSetExt(ext.data());
    EXPECT_THAT(Project().currentFile, StrEq("d:\\p\\a.dat"));
    ext = ".cod";
    _LFSetExt(ext.data());
    EXPECT_THAT(Project().currentFile, StrEq("d:\\p\\a.cod"));
    ext = "";
    _LFSetExt(ext.data());
    EXPECT_THAT(Project().currentFile, StrEq("d:\\p\\a."));
}

TEST_F(ProjectFiles, ExtWritesTheNameAndLeavesTheStateAlone) {
    Init("d:\\p\\a", "ini");
    char buffer[256];
    std::string ext = "dat";
    _LFExt(buffer, ext.data());
    EXPECT_THAT(buffer, StrEq("d:\\p\\a.dat"));
    EXPECT_THAT(Project().currentFile, StrEq("d:\\p\\a.ini"));
}

TEST_F(ProjectFiles, KeysGoToTheCurrentFileAndSection) {
    dirs.NameProject();
    std::string section = "LayerSet";
    std::string key = "Layers";
    std::string name = "Name";
    std::string value = "\xB5\xD8\xCE\xEF";
    EXPECT_EQ(_LFWrtI(-3, key.data(), section.data()), 1);
    EXPECT_EQ(_LFWrtS(value.data(), name.data(), nullptr), 1);
    EXPECT_EQ(ReadFile(dirs.Project("map.ini")), "[LayerSet]\r\nLayers=-3\r\nName=\xB5\xD8\xCE\xEF\r\n");
    EXPECT_EQ(_LFGetI(7, key.data(), nullptr), -3);
    char buffer[8];
    std::string def = "none";
    EXPECT_EQ(_LFGetS(def.data(), buffer, sizeof buffer, name.data(), nullptr), 4);
    EXPECT_EQ(std::string(buffer), value);
    std::string other = "Other";
    _LFRcd(other.data());
    EXPECT_EQ(_LFGetI(7, key.data(), nullptr), 7);
    EXPECT_EQ(_LFGetS(def.data(), buffer, sizeof buffer, name.data(), nullptr), 4);
    EXPECT_THAT(buffer, StrEq("none"));
}

TEST_F(ProjectFiles, SetExtChangesTheFileForEverybodyAfterIt) {
    dirs.NameProject();
    std::string section = "A";
    std::string key = "k";
    std::string ext = "cod";
    _LFSetExt(ext.data());
    _LFWrtI(1, key.data(), section.data());
    EXPECT_TRUE(fs::exists(dirs.Project("map.cod")));
    EXPECT_FALSE(fs::exists(dirs.Project("map.ini")));
}

TEST_F(ProjectFiles, ASectionNameBeyond255BytesIsRefusedWithAMessage) {
    std::string section = "A";
    _LFRcd(section.data());
    section.assign(256, 'x');
    _LFRcd(section.data());
    EXPECT_THAT(Project().currentSection, StrEq("A"));
    ASSERT_EQ(host.boxes.size(), 1u);
    EXPECT_THAT(host.boxes[0].text, HasSubstr("section"));
    section.assign(255, 'x');
    _LFRcd(section.data());
    EXPECT_EQ(std::string(Project().currentSection), section);
    _LFRcd(nullptr);
    EXPECT_THAT(Project().currentSection, StrEq(""));
}

// ---- _LFWholeName ----

TEST_F(ProjectFiles, WholeNameTakesTheFilePartBehindTheLastBackslash) {
    EXPECT_EQ(Whole("d:\\q\\b.txt", "dat", 1), FamilyDirs::Text(dirs.Module()) + "\\b.dat");
    EXPECT_EQ(Whole("b.tar.gz", ".dat", 2), FamilyDirs::Text(dirs.Ini()) + "\\b.tar.dat");
    EXPECT_EQ(Whole("d:/q/b.txt", "dat", 1), FamilyDirs::Text(dirs.Module()) + "\\b.dat");
}

TEST_F(ProjectFiles, WholeNameKeepsANameWithoutExtension) {
    EXPECT_EQ(Whole("b", nullptr, 1), FamilyDirs::Text(dirs.Module()) + "\\b");
    EXPECT_EQ(Whole("b", "dat", 1), FamilyDirs::Text(dirs.Module()) + "\\b.dat");
}

TEST_F(ProjectFiles, WholeNameChoosesTheDirectoryByItsOwnTable) {
    EXPECT_EQ(Whole("b", nullptr, 0), FamilyDirs::Text(dirs.Project()) + "\\b");
    EXPECT_EQ(Whole("b", nullptr, 3), std::string(_LFWndDir()) + "\\b");
    EXPECT_EQ(Whole("b", nullptr, 4), FamilyDirs::Text(dirs.Project()) + "\\b");
    EXPECT_EQ(Whole("b", nullptr, -1), FamilyDirs::Text(dirs.Project()) + "\\b");
}

TEST_F(ProjectFiles, WholeNameIsABareNameWithoutAProjectDirectory) {
    Project().projectDirectory[0] = '\0';
    EXPECT_EQ(Whole("b.dat", nullptr, 0), "b.dat");
}

TEST_F(ProjectFiles, WholeNameRefusesWhatDoesNotFit) {
    EXPECT_EQ(Whole(std::string(300, 'x'), nullptr, 0), "");
    EXPECT_EQ(host.boxes.size(), 1u);
}

// ---- _LFOpen ----

TEST_F(ProjectFiles, OpenSaysOnceThatANameDoesNotFit) {
    EXPECT_EQ(_LFOpen(std::string(300, 'x').c_str(), "rb"), nullptr);
    ASSERT_EQ(host.boxes.size(), 1u);
    EXPECT_THAT(host.boxes[0].text, testing::HasSubstr("longer than 255 bytes"));
}

TEST_F(ProjectFiles, OpenSearchesProjectThenModuleThenIniDirectory) {
    WriteFile(dirs.Ini("a.dat"), "ini");
    EXPECT_EQ(Content("a.dat"), "ini");
    WriteFile(dirs.Module("a.dat"), "module");
    EXPECT_EQ(Content("a.dat"), "module");
    WriteFile(dirs.Project("a.dat"), "project");
    EXPECT_EQ(Content("a.dat"), "project");
    EXPECT_THAT(host.boxes, IsEmpty());
}

TEST_F(ProjectFiles, OpenTakesAPathAsItStandsFirst) {
    fs::create_directory(dirs.Project("sub"));
    WriteFile(dirs.Project("sub/a.dat"), "sub");
    WriteFile(dirs.Project("a.dat"), "project");
    EXPECT_EQ(Content("sub\\a.dat"), "sub");
    EXPECT_EQ(Content("missing\\a.dat"), "project") << "then the file part is searched for";
}

TEST_F(ProjectFiles, OpenTellsOfANameThatLiesNowhere) {
    EXPECT_EQ(_LFOpen("nowhere.dat", "r"), nullptr);
    ASSERT_EQ(host.boxes.size(), 1u);
    EXPECT_EQ(host.boxes[0].text, "nowhere.dat");
    EXPECT_EQ(host.boxes[0].title, "file open error");
}

TEST_F(ProjectFiles, OpenTellsOfAMissingNameOrMode) {
    EXPECT_EQ(_LFOpen(nullptr, "r"), nullptr);
    EXPECT_EQ(_LFOpen("", "r"), nullptr);
    EXPECT_EQ(_LFOpen("a", nullptr), nullptr);
    EXPECT_EQ(_LFOpen("a", ""), nullptr);
    ASSERT_EQ(host.boxes.size(), 4u);
    for (const auto& box : host.boxes) {
        EXPECT_EQ(box.text, "file not found");
        EXPECT_EQ(box.title, "Zenro Info");
    }
}

TEST_F(ProjectFiles, OpenNeverServesAFileOfTheMachineDirectory) {
    WriteFile(dirs.Machine("only.dat"), "machine");
    EXPECT_EQ(_LFOpen("only.dat", "r"), nullptr);
    EXPECT_THAT(host.boxes, IsEmpty()) << "it was found, so nothing is reported";
}

TEST_F(ProjectFiles, OpenFindsANameInAnotherCase) {
    WriteFile(dirs.Module("ACAD.LIN"), "lin");
    EXPECT_EQ(Content("acad.lin", "r+"), "lin");
}
