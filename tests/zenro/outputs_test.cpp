// Outputs that meet a full disk, files of others, links, pipes, and what a killed run left.
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>

#include "tests/zenro/program.h"

namespace {

using namespace zm::test;
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

INSTANTIATE_TEST_SUITE_P(Format, EachOutput, testing::Values("svg", "png", "pdf", "dwg", "rec"),
                         [](const auto& info) { return std::string(info.param); });

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

TEST(Outputs, AFileThatOnlyLooksUnfinishedStays) {
    const Program zenro;
    Prepare(zenro);
    zenro.File(".draft.part.svg", "mine");
    zenro.File(".a.0123456789abcdeg.part.svg", "mine");
    EXPECT_EQ(zenro.Run(Draw("out.svg")).status, 0);
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
