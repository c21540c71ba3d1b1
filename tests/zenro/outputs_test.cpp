// Outputs that meet a full disk, files of others, links, pipes, and what a killed run left.
#include <cpl_vsi.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/stat.h>
#include <unistd.h>

#include <chrono>
#include <cstdlib>
#include <thread>

#include "tests/zenro/program.h"
#include "tools/zenro/map/watched_files.h"

namespace {

using namespace zm::test;
using namespace zm::tool;
namespace fs = std::filesystem;

constexpr char kRules[] = "* -> symbol 250\n";

void Prepare(const Program& zenro) {
    std::string features;
    for (int i = 0; i < 400; ++i) {
        char line[128];
        std::snprintf(line, sizeof line, "[%d,3456010],[%d,3456080]", 40512010 + i % 80, 40512090 - i % 70);
        features += (i > 0 ? "," : "") + LineFeature(line, "\"a\":1");
    }
    zenro.File("in.geojson", Collection(features));
    zenro.File("r.rules", kRules);
}

std::vector<std::string> Draw(const std::string& output) {
    return {"draw", "in.geojson", "--rules", "./r.rules", "--scale", "1000", "-o", output, "--overwrite"};
}

// Runs shell lines in the folder of the program, which they find as $ZENRO; the status.
int Shell(const Program& zenro, const std::string& lines) {
    zenro.File("run.sh", "cd \"" + zenro.folder().string() +
                             "\"\nexport XDG_CONFIG_HOME=$PWD/config ZENRO='" ZENRO_PROGRAM "'\n" + lines + "\n");
    return std::system(("bash \"" + (zenro / "run.sh").string() + "\"").c_str()) >> 8;
}

class EachOutput : public testing::TestWithParam<const char*> {};

// A limit of the file's size stands for the full disk: the write fails in the middle, with another number.
TEST_P(EachOutput, ThatDoesNotFitLeavesTheOldFileAndSaysSo) {
#if !ZENRO_HAS_QT
    if (std::string("png pdf").find(GetParam()) != std::string::npos) GTEST_SKIP() << "this build has no Qt";
#endif
    const Program zenro;
    Prepare(zenro);
    const std::string name = std::string("out.") + GetParam();
    zenro.File(name, "precious");
    const int status = Shell(zenro, "ulimit -f 4\nexec \"$ZENRO\" draw in.geojson --rules ./r.rules --scale 1000 -o " +
                                        name + " --overwrite 2>said.txt");
    EXPECT_EQ(status, 5);
    EXPECT_EQ(ReadFile(zenro / name), "precious");
    EXPECT_NE(ReadFile(zenro / "said.txt").find(name + ": cannot be written"), std::string::npos)
        << ReadFile(zenro / "said.txt");
    EXPECT_TRUE(zenro.Unfinished().empty());
}

INSTANTIATE_TEST_SUITE_P(Format, EachOutput, testing::Values("svg", "png", "pdf", "dwg", "dxf", "rec"),
                         [](const auto& info) { return std::string(info.param); });

// A long piece of a page of which only a part fits.
TEST(Outputs, AFullPageThatDoesNotFitLeavesTheOldFileAndSaysSo) {
#if !ZENRO_HAS_QT
    GTEST_SKIP() << "this build has no Qt";
#endif
    const Program zenro;
    std::string features;
    for (int i = 0; i < 9000; ++i) {
        char line[128];
        std::snprintf(line, sizeof line, "[%d.%03d,%d],[%d,%d.%03d]", 40512010 + i % 83, i * 7919 % 1000,
                      3456010 + i % 71, 40512090 - i % 79, 3456080 - i % 61, i * 6007 % 1000);
        features += (i > 0 ? "," : "") + LineFeature(line, "\"a\":1");
    }
    zenro.File("in.geojson", Collection(features));
    zenro.File("r.rules", kRules);
    ASSERT_EQ(zenro.Run(Draw("whole.pdf")).status, 0);
    const auto kilobytes = static_cast<int>(fs::file_size(zenro / "whole.pdf") / 1024);
    ASSERT_GT(kilobytes, 64);
    const std::string draw =
        "exec \"$ZENRO\" draw in.geojson --rules ./r.rules --scale 1000 -o out.pdf --overwrite 2>said.txt";
    for (const int limit : {1, kilobytes / 3, kilobytes / 2, kilobytes - 2, kilobytes}) {
        zenro.File("out.pdf", "precious");
        EXPECT_EQ(Shell(zenro, "ulimit -f " + std::to_string(limit) + "\n" + draw), 5) << limit << " KB";
        EXPECT_TRUE(ReadFile(zenro / "out.pdf") == "precious") << limit << " KB";
        EXPECT_NE(ReadFile(zenro / "said.txt").find("out.pdf: cannot be written: "), std::string::npos)
            << ReadFile(zenro / "said.txt");
        EXPECT_TRUE(zenro.Unfinished().empty());
    }
}

// Drivers of several formats do not look whether their writes succeed.
class EachDataFormat : public testing::TestWithParam<const char*> {};

TEST_P(EachDataFormat, ThatDoesNotFitLeavesTheOldFileAndSaysSo) {
    const Program zenro;
    Prepare(zenro);
    const std::string name = std::string("out.") + GetParam();
    zenro.File(name, "precious");
    const std::string measure = "exec \"$ZENRO\" measure layer in.geojson -o " + name + " --overwrite 2>said.txt";
    EXPECT_EQ(Shell(zenro, "ulimit -f 4\n" + measure), 5);
    EXPECT_EQ(ReadFile(zenro / name), "precious");
    EXPECT_NE(ReadFile(zenro / "said.txt").find(name + ": cannot be written"), std::string::npos)
        << ReadFile(zenro / "said.txt");
    EXPECT_TRUE(zenro.Unfinished().empty());
    EXPECT_EQ(Shell(zenro, measure), 0) << ReadFile(zenro / "said.txt");
    EXPECT_GT(fs::file_size(zenro / name), 100u);
}

INSTANTIATE_TEST_SUITE_P(Format, EachDataFormat,
                         testing::Values("geojson", "geojsonl", "gpkg", "fgb", "csv", "kml", "gml", "mif", "jml", "ods",
                                         "xlsx"),
                         [](const auto& info) { return std::string(info.param); });

// The driver of DXF reads what it could not write, looks for a line end in it and writes there, beyond its buffer.
TEST(Outputs, ADriverThatReadsWhatWasNotWrittenFindsLineEnds) {
    VSILFILE* file = VSIFOpenL(WatchedName("/dev/full").c_str(), "w+b");
    ASSERT_NE(file, nullptr);
    ForgetFault();
    VSIFWriteL("0123456789", 1, 10, file);
    VSIFFlushL(file);
    EXPECT_FALSE(WriteFault().empty());
    VSIFCloseL(file);
    file = VSIFOpenL(WatchedName("/dev/null").c_str(), "rb");
    ASSERT_NE(file, nullptr);
    std::string there(6, '?');
    EXPECT_EQ(VSIFReadL(there.data(), 2, 3, file), 0u);
    EXPECT_EQ(there, "\n\n\n\n\n\n");
    ForgetFault();
    there.assign(6, '?');
    EXPECT_EQ(VSIFReadL(there.data(), 2, 3, file), 0u);
    EXPECT_EQ(there, "??????");
    VSIFCloseL(file);
}

TEST(Outputs, ADxfOfMapDataThatDoesNotFitLeavesTheOldFile) {
    const Program zenro;
    Prepare(zenro);
    zenro.File("out.dxf", "precious");
    for (const int blocks : {1, 15, 22, 23, 29, 40, 47})
        EXPECT_EQ(Shell(zenro, "ulimit -f " + std::to_string(blocks) +
                                   "\nexec \"$ZENRO\" coord transform in.geojson -o out.dxf --overwrite 2>said.txt"),
                  5)
            << blocks << ReadFile(zenro / "said.txt");
    EXPECT_EQ(ReadFile(zenro / "out.dxf"), "precious");
}

TEST(Outputs, ALinkStaysALinkAndWhatItLeadsToIsReplaced) {
    const Program zenro;
    Prepare(zenro);
    fs::create_directory(zenro / "store");
    zenro.File("store/real.svg", "old");
    chmod((zenro / "store/real.svg").c_str(), 0640);
    fs::create_symlink("store/real.svg", zenro / "out.svg");
    EXPECT_EQ(zenro.Run(Draw("out.svg")).status, 0);
    EXPECT_TRUE(fs::is_symlink(zenro / "out.svg"));
    EXPECT_EQ(ReadFile(zenro / "store/real.svg").rfind("<?xml", 0), 0u);
    struct stat now {};
    ASSERT_EQ(stat((zenro / "store/real.svg").c_str(), &now), 0);
    EXPECT_EQ(now.st_mode & 07777, 0640u);
}

TEST(Outputs, ALinkThatLeadsToNothingYetIsFollowed) {
    const Program zenro;
    Prepare(zenro);
    fs::create_symlink("new.svg", zenro / "out.svg");
    EXPECT_EQ(zenro.Run(Draw("out.svg")).status, 0);
    EXPECT_TRUE(fs::is_symlink(zenro / "out.svg"));
    EXPECT_TRUE(fs::is_regular_file(zenro / "new.svg"));
}

TEST(Outputs, LinksInACircleAreRefused) {
    const Program zenro;
    Prepare(zenro);
    fs::create_symlink("b.svg", zenro / "a.svg");
    fs::create_symlink("a.svg", zenro / "b.svg");
    const Outcome r = zenro.Run(Draw("a.svg"));
    EXPECT_EQ(r.status, 5);
    EXPECT_NE(r.err.find("circle"), std::string::npos) << r.err;
}

TEST(Outputs, APipeOrADeviceInTheirPlaceIsRefusedAtOnce) {
    const Program zenro;
    Prepare(zenro);
    ASSERT_EQ(mkfifo((zenro / "pipe.svg").c_str(), 0600), 0);
    fs::create_symlink("/dev/full", zenro / "full.svg");
    for (const char* name : {"pipe.svg", "full.svg"}) {
        const Outcome r = zenro.Run(Draw(name));
        EXPECT_EQ(r.status, 5);
        EXPECT_NE(r.err.find("it is no regular file"), std::string::npos) << r.err;
    }
}

TEST(Outputs, AFileThatItsUserMayNotWriteIsNotReplaced) {
    const Program zenro;
    Prepare(zenro);
    zenro.File("out.svg", "precious");
    chmod((zenro / "out.svg").c_str(), 0444);
    std::string as;
    if (geteuid() == 0) {  // who may write everything: try as somebody else
        chmod(zenro.folder().c_str(), 0777);
        as = "setpriv --reuid=65534 --regid=65534 --clear-groups env HOME=/nonexistent ";
    }
    const int status =
        Shell(zenro, as + "\"$ZENRO\" draw in.geojson --rules ./r.rules --scale 1000 -o out.svg --overwrite 2>&1 | "
                          "cat >said.txt\nexit ${PIPESTATUS[0]}");
    EXPECT_EQ(status, 5) << ReadFile(zenro / "said.txt");
    EXPECT_EQ(ReadFile(zenro / "out.svg"), "precious");
    EXPECT_NE(ReadFile(zenro / "said.txt").find("may not be replaced"), std::string::npos);
}

// Where a group cannot be kept, its rights are no other group's.
TEST(Outputs, AnotherGroupHasWhatOthersHave) {
    if (geteuid() != 0) GTEST_SKIP() << "only the administrator can make a file of another user";
    const Program zenro;
    Prepare(zenro);
    zenro.File("out.svg", "old");
    chmod(zenro.folder().c_str(), 0777);
    ASSERT_EQ(chown((zenro / "out.svg").c_str(), 1234, 2345), 0);
    chmod((zenro / "out.svg").c_str(), 06676);
    ASSERT_EQ(Shell(zenro,
                    "setpriv --reuid=65534 --regid=65534 --clear-groups env HOME=/nonexistent \"$ZENRO\" draw "
                    "in.geojson --rules ./r.rules --scale 1000 -o out.svg --overwrite 2>said.txt"),
              0)
        << ReadFile(zenro / "said.txt");
    struct stat made {};
    ASSERT_EQ(stat((zenro / "out.svg").c_str(), &made), 0);
    EXPECT_EQ(made.st_uid, 65534u);
    EXPECT_EQ(made.st_mode & 07777, 0666u);
}

#if ZENRO_HAS_QT
TEST(Outputs, APictureLeavesNothingAmongTheTemporaryFiles) {
    const Program zenro;
    Prepare(zenro);
    std::filesystem::create_directory(zenro / "temporary");
    ASSERT_EQ(Shell(zenro,
                    "unset XDG_RUNTIME_DIR; TMPDIR=\"$PWD/temporary\" \"$ZENRO\" draw in.geojson --rules "
                    "./r.rules --scale 1000 -o out.png -o out.pdf 2>said.txt"),
              0);
    EXPECT_TRUE(std::filesystem::is_empty(zenro / "temporary"));
    EXPECT_EQ(ReadFile(zenro / "said.txt").find("QStandardPaths"), std::string::npos) << ReadFile(zenro / "said.txt");
}
#endif

TEST(Outputs, WhatAKilledRunLeftIsRemovedByTheNext) {
    const Program zenro;
    std::string features;
    for (int i = 0; i < 20000; ++i)
        features += (i > 0 ? "," : "") + LineFeature("[40512010,3456010],[40512090,3456080]", "\"a\":1");
    zenro.File("many.geojson", Collection(features));
    zenro.File("r.rules", "* -> symbol 200\n");
    zenro.Interrupt({"draw", "many.geojson", "--rules", "./r.rules", "--scale", "1000", "-o", "killed.svg"}, SIGKILL);
    ASSERT_EQ(zenro.Unfinished().size(), 1u);
    Prepare(zenro);
    EXPECT_EQ(zenro.Run(Draw("other.svg")).status, 0);
    EXPECT_TRUE(zenro.Unfinished().empty());
    EXPECT_FALSE(zenro.Has("killed.svg"));
}

// A DXF is made from a drawing in a folder of its own in the temporary folder.
TEST(Outputs, TheTemporaryFolderOfAKilledRunIsRemovedByTheNextAndThatOfALivingOneStays) {
    const Program zenro;
    Prepare(zenro);
    std::string features;
    for (int i = 0; i < 20000; ++i)
        features += (i > 0 ? "," : "") + LineFeature("[40512010,3456010],[40512090,3456080]", "\"a\":1");
    zenro.File("many.geojson", Collection(features));
    const fs::path temporary = zenro / "temporary";
    fs::create_directory(temporary);
    fs::create_directory(zenro / "precious");
    zenro.File("precious/file", "mine");
    const fs::path link = temporary / ".zenro.0123456789abcdef.part";
    fs::create_directory_symlink(zenro / "precious", link);
    const std::vector<std::string> environment{"TMPDIR=" + temporary.string()};
    const auto folders = [&] {
        std::vector<fs::path> found;
        for (const auto& entry : fs::directory_iterator(temporary))
            if (entry.is_directory() && !entry.is_symlink()) found.push_back(entry.path());
        return found;
    };
    const auto nothing = [](int) {};
    const std::vector<std::string> many{"draw",    "many.geojson", "--rules", "./r.rules",
                                        "--scale", "1000",         "-o",      "killed.dxf"};
    const auto made = [&] {
        const std::vector<fs::path> found = folders();
        return found.size() == 1 && fs::exists(found[0] / "sheet.dwg");
    };
    const auto beside = [&](int process) {
        EXPECT_EQ(zenro.RunBeside(Draw("beside.dxf"), environment, nothing).status, 0);
        EXPECT_EQ(folders().size(), 1u);
        EXPECT_TRUE(made());
        kill(process, SIGKILL);
    };
    EXPECT_NE(zenro.RunStopped(many, environment, made, beside).status, 0);
    ASSERT_EQ(folders().size(), 1u);
    EXPECT_EQ(zenro.RunBeside(Draw("next.dxf"), environment, nothing).status, 0);
    EXPECT_TRUE(folders().empty());
    EXPECT_TRUE(fs::is_symlink(link));
    EXPECT_EQ(ReadFile(zenro / "precious" / "file"), "mine");
}

TEST(Outputs, AFileThatOnlyLooksUnfinishedStays) {
    const Program zenro;
    Prepare(zenro);
    zenro.File(".draft.part.svg", "mine");
    zenro.File(".a.0123456789abcdeg.part.svg", "mine");
    for (const char* folder : {".a.0123456789abcdef.part", ".zenro.0123456789abcdef.part.svg"}) {
        fs::create_directory(zenro / folder);
        zenro.File(std::string(folder) + "/file", "mine");
    }
    EXPECT_EQ(zenro.Run(Draw("out.svg")).status, 0);
    EXPECT_EQ(ReadFile(zenro / ".a.0123456789abcdef.part" / "file"), "mine");
    EXPECT_EQ(ReadFile(zenro / ".zenro.0123456789abcdef.part.svg" / "file"), "mine");
    EXPECT_EQ(ReadFile(zenro / ".draft.part.svg"), "mine");
    EXPECT_EQ(ReadFile(zenro / ".a.0123456789abcdeg.part.svg"), "mine");
}

TEST(Outputs, ALongNameFits) {
    const Program zenro;
    Prepare(zenro);
    const std::string name = std::string(251, 'n') + ".svg";
    EXPECT_EQ(zenro.Run(Draw(name)).status, 0);
    EXPECT_TRUE(zenro.Has(name));
}

}  // namespace
