// What a script relies on: statuses, streams, files that are kept, files that do not appear.
#include <gtest/gtest.h>
#include <signal.h>

#include <cmath>

#include "tests/zenro/program.h"

namespace {

using namespace zm::test;

constexpr char kRules[] = "* -> symbol 250\n";

std::string OneLine() {
    return Collection(LineFeature("[40512010,3456010],[40512090,3456080]", "\"a\":1"));
}

TEST(Usage, IsToldOnStderrWithStatus2) {
    const Program zenro;
    for (const std::vector<std::string>& wrong :
         std::vector<std::vector<std::string>>{{},
                                               {"paint"},
                                               {"draw"},
                                               {"draw", "x.geojson"},
                                               {"draw", "--bogus"},
                                               {"coord"},
                                               {"coord", "sideways"},
                                               {"coord", "to-plane", "--zone", "5"},
                                               {"measure", "weight"},
                                               {"symbols", "show", "1000"},
                                               {"dwg"}}) {
        const Outcome r = zenro.Run(wrong);
        EXPECT_EQ(r.status, 2) << (wrong.empty() ? "nothing" : wrong.back());
        EXPECT_EQ(r.out, "");
        EXPECT_EQ(Count(r.err, "\n"), 1) << r.err;
    }
}

TEST(Usage, HelpOfEachVerbGoesToStdoutWithStatus0) {
    const Program zenro;
    for (const std::vector<std::string>& verb : std::vector<std::vector<std::string>>{{},
                                                                                      {"draw"},
                                                                                      {"demo"},
                                                                                      {"doctor"},
                                                                                      {"replay"},
                                                                                      {"coord"},
                                                                                      {"coord", "to-plane"},
                                                                                      {"coord", "to-geo"},
                                                                                      {"coord", "zone"},
                                                                                      {"measure"},
                                                                                      {"measure", "distance"},
                                                                                      {"measure", "area"},
                                                                                      {"symbols"},
                                                                                      {"symbols", "list"},
                                                                                      {"symbols", "show"},
                                                                                      {"symbols", "lint"},
                                                                                      {"symbols", "sheet"},
                                                                                      {"dwg"},
                                                                                      {"dwg", "info"},
                                                                                      {"dwg", "dump"},
                                                                                      {"dwg", "check"},
                                                                                      {"dwg", "draw"}}) {
        std::vector<std::string> arguments = verb;
        arguments.push_back("--help");
        const Outcome r = zenro.Run(arguments);
        EXPECT_EQ(r.status, 0);
        EXPECT_NE(r.out.find("Usage:"), std::string::npos);
        EXPECT_EQ(r.err, "");
    }
    EXPECT_EQ(zenro.Run({"--version"}).out.rfind("zenro ", 0), 0u);
}

TEST(Outputs, AnExistingFileIsKeptUnlessOverwriteIsGiven) {
    const Program zenro;
    zenro.File("in.geojson", OneLine());
    zenro.File("r.rules", kRules);
    zenro.File("out.svg", "precious");
    const std::vector<std::string> arguments = {"draw", "in.geojson", "--rules", "./r.rules",
                                                "-o",   "out.svg",    "--scale", "1000"};
    const Outcome kept = zenro.Run(arguments);
    EXPECT_EQ(kept.status, 5);
    EXPECT_NE(kept.err.find("out.svg: cannot be written: it exists; give --overwrite"), std::string::npos) << kept.err;
    EXPECT_EQ(ReadFile(zenro / "out.svg"), "precious");
    std::vector<std::string> more = arguments;
    more.push_back("--overwrite");
    EXPECT_EQ(zenro.Run(more).status, 0);
    EXPECT_EQ(ReadFile(zenro / "out.svg").rfind("<?xml", 0), 0u);
    EXPECT_TRUE(zenro.Unfinished().empty());
}

TEST(Outputs, AMissingDirectoryIs5BeforeAnyWork) {
    const Program zenro;
    zenro.File("in.geojson", OneLine());
    const Outcome r = zenro.Run({"draw", "in.geojson", "-o", "nowhere/out.svg"});
    EXPECT_EQ(r.status, 5);
    EXPECT_NE(r.err.find("the directory nowhere is missing"), std::string::npos) << r.err;
}

TEST(Outputs, ADirectoryInTheirPlaceIs5) {
    const Program zenro;
    zenro.File("in.geojson", OneLine());
    std::filesystem::create_directory(zenro / "out.svg");
    EXPECT_EQ(zenro.Run({"draw", "in.geojson", "-o", "out.svg", "--overwrite"}).status, 5);
}

TEST(Outputs, AnUnknownExtensionIs2) {
    const Program zenro;
    zenro.File("in.geojson", OneLine());
    const Outcome r = zenro.Run({"draw", "in.geojson", "-o", "out.jpg"});
    EXPECT_EQ(r.status, 2);
    EXPECT_NE(r.err.find("use .svg, .png, .pdf, .dwg, .dxf or .rec"), std::string::npos);
}

TEST(Outputs, AFullStdoutIs5) {
    const Program zenro;
    zenro.File("points.txt", "30 120\n");
    const std::string command =
        "cd '" + zenro.folder().string() + "' && '" ZENRO_PROGRAM "' coord to-plane points.txt >/dev/full 2>/dev/null";
    EXPECT_EQ(std::system(command.c_str()) >> 8, 5);
}

TEST(Outputs, AFailureLeavesNothingBehind) {
    const Program zenro;
    zenro.File("in.geojson", OneLine());
    const Outcome r =
        zenro.Run({"draw", "in.geojson", "-o", "a.svg", "-o", "b.dwg", "--sheet", "0,0,10,10", "--scale", "500"});
    EXPECT_EQ(r.status, 6);
    EXPECT_FALSE(zenro.Has("a.svg"));
    EXPECT_FALSE(zenro.Has("b.dwg"));
    EXPECT_TRUE(zenro.Unfinished().empty());
}

// Enough work that the signal meets it: many hatched areas into a DWG file.
std::string ManyAreas() {
    std::string features;
    for (int i = 0; i < 4000; ++i) {
        const double x = 40512000 + (i % 60) * 8, y = 3456000 + (i / 60) * 7;
        char ring[256];
        std::snprintf(ring, sizeof ring, "[[%.0f,%.0f],[%.0f,%.0f],[%.0f,%.0f],[%.0f,%.0f],[%.0f,%.0f]]", x, y, x + 7,
                      y, x + 7, y + 6, x, y + 6, x, y);
        features += (i > 0 ? "," : "") + AreaFeature(ring, "\"a\":1");
    }
    return Collection(features);
}

TEST(CtrlC, StopsCleanlyAndLeavesNoPartialOutput) {
    const Program zenro;
    zenro.File("in.geojson", ManyAreas());
    zenro.File("r.rules", "* -> symbol 824\n");
    const Outcome r = zenro.Interrupt({"draw", "in.geojson", "--rules", "./r.rules", "--scale", "1000", "-o", "out.dwg",
                                       "-o", "out.rec", "-o", "out.svg"},
                                      SIGINT);
    EXPECT_EQ(r.status, 130) << r.err;
    EXPECT_NE(r.err.find("stopped"), std::string::npos);
    EXPECT_FALSE(zenro.Has("out.svg"));
    EXPECT_TRUE(zenro.Unfinished().empty());
}

TEST(Quiet, KeepsNotesAwayButNotErrors) {
    const Program zenro;
    zenro.File("in.geojson", OneLine());
    EXPECT_EQ(zenro.Run({"draw", "in.geojson", "-o", "a.svg", "--quiet"}).err, "");
    EXPECT_NE(zenro.Run({"draw", "no.geojson", "-o", "b.svg", "--quiet"}).err, "");
}

TEST(Progress, IsNotShownWhereNobodyLooks) {
    const Program zenro;
    zenro.File("in.geojson", ManyAreas());
    zenro.File("r.rules", "* -> symbol 200\n");
    const Outcome r = zenro.Run({"draw", "in.geojson", "--rules", "./r.rules", "--scale", "1000", "-o", "out.rec"});
    EXPECT_EQ(r.status, 0);
    EXPECT_EQ(r.err.find('\r'), std::string::npos);
}

TEST(Qt, IsNotLoadedForSvgDwgRecordingsAndCoordinates) {
    const Program zenro;
    zenro.File("in.geojson", OneLine());
    const Outcome draw =
        zenro.Run({"draw", "in.geojson", "-o", "a.svg", "-o", "a.dwg", "-o", "a.rec"}, "", {"LD_DEBUG=files"});
    EXPECT_EQ(draw.status, 0);
    EXPECT_NE(draw.err.find("libzenromath"), std::string::npos);
    EXPECT_EQ(draw.err.find("libQt6"), std::string::npos);
    EXPECT_EQ(zenro.Run({"coord", "to-plane"}, "30 120\n", {"LD_DEBUG=files"}).err.find("libQt6"), std::string::npos);
}

TEST(Library, NeverEndsTheProcessAsSuccess) {
    // A symbol library that cannot be opened ends the library's process with status 0; the program says 3 or 1.
    const Program zenro;
    zenro.File("in.geojson", OneLine());
    EXPECT_EQ(zenro.Run({"draw", "in.geojson", "-o", "a.svg", "--symbols", "no.dat"}).status, 3);
    zenro.File("notes.cod", "no profile at all");
    EXPECT_EQ(zenro.Run({"draw", "in.geojson", "-o", "b.svg", "--notes", "notes.cod"}).status, 3);
}

}  // namespace
