// Folders of any name, readers that have enough, and files that are not what they are taken for.
#include <gtest/gtest.h>

#include <cstdlib>

#include "tests/zenro/program.h"

namespace {

using namespace zm::test;
namespace fs = std::filesystem;

std::string OneLine() {
    return Collection(LineFeature("[40512010,3456010],[40512090,3456080]", "\"a\":1"));
}

int Shell(const Program& zenro, const std::string& command) {
    const int status = std::system(("cd '" + zenro.folder().string() + "' && " + command).c_str());
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

// ñ, which the family's code page lacks.
constexpr char kFolder[] = "a\xC3\xB1o \xF0\x9F\x97\xBA";

TEST(Anywhere, AFolderThatTheCodePageLacksHoldsSymbolsProjectsAndOutputs) {
    const Program zenro;
    fs::create_directory(zenro / kFolder);
    const std::string folder = kFolder;
    zenro.File("in.geojson", OneLine());
    zenro.File(folder + "/my.dat", "*250 LC A0 A0 A0 A0 \"dashes\"\n+5 -5\n*$\n");
    zenro.File(folder + "/my.ini", "[LayerSet]\nLayers=1\nLayer1=ROADS 1 999 4 1\n");
    const Outcome r = zenro.Run({"draw", "in.geojson", "-o", folder + "/a.dwg", "-o", folder + "/a.rec", "--no-frame",
                                 "--symbols", folder + "/my.dat", "--project", folder + "/my.ini", "--quiet"});
    EXPECT_EQ(r.status, 0) << r.err;
    EXPECT_NE(zenro.Run({"dwg", "info", folder + "/a.dwg"}).out.find("ROADS"), std::string::npos);
    EXPECT_EQ(zenro.Run({"symbols", "lint", folder + "/my.dat"}).status, 0);
}

TEST(Anywhere, AnInstallationInSuchAFolderFindsItsData) {
    const Program zenro;
    const fs::path place = zenro / kFolder;
    const fs::path library = fs::path(ZENRO_PROGRAM).parent_path().parent_path() / "lib";
    if (!fs::exists(library / "symbol.dat")) GTEST_SKIP() << "NOT CHECKED: the data files are not beside the library";
    fs::copy(library, place, fs::copy_options::recursive);
    zenro.File("in.geojson", OneLine());
    const Outcome r =
        zenro.Run({"draw", "in.geojson", "-o", "a.svg", "--quiet"}, "", {"LD_LIBRARY_PATH=" + place.string()});
    EXPECT_EQ(r.status, 0) << r.err;
    const Outcome doctor = zenro.Run({"doctor"}, "", {"LD_LIBRARY_PATH=" + place.string()});
    EXPECT_NE(doctor.out.find(place.string()), std::string::npos) << doctor.out;
}

TEST(ClosedPipe, EndsAFilterInSilence) {
    const Program zenro;
    std::string points;
    for (int i = 0; i < 50000; ++i) points += "30.5 120.75\n";
    zenro.File("points.txt", points);
    EXPECT_EQ(Shell(zenro, std::string("'") + ZENRO_PROGRAM + "' coord to-plane points.txt 2> err | head -2 > out"), 0);
    EXPECT_EQ(ReadFile(zenro / "err"), "");
    EXPECT_EQ(Count(ReadFile(zenro / "out"), "\n"), 2);
}

TEST(Damage, ADamagedDrawingIsToldWithItsPlaceAndStatus4) {
    const Program zenro;
    zenro.File("in.geojson", OneLine());
    ASSERT_EQ(zenro.Run({"draw", "in.geojson", "-o", "a.dwg", "--quiet"}).status, 0);
    std::string bytes = ReadFile(zenro / "a.dwg");
    bytes.resize(bytes.size() * 3 / 4);
    zenro.File("cut.dwg", bytes);
    for (const std::vector<std::string>& verb : std::vector<std::vector<std::string>>{
             {"dwg", "info", "cut.dwg"}, {"dwg", "dump", "cut.dwg"}, {"dwg", "draw", "cut.dwg", "cut.svg"}}) {
        const Outcome r = zenro.Run(verb);
        EXPECT_EQ(r.status, 4) << verb[1] << ": " << r.err;
        EXPECT_NE(r.err.find("warning: cut.dwg: is damaged at offset "), std::string::npos) << r.err;
    }
    EXPECT_EQ(zenro.Run({"dwg", "info", "a.dwg"}).status, 0);
}

TEST(Damage, ADrawingOfAnotherVersionIsNamedByIt) {
    const Program zenro;
    zenro.File("new.dwg", std::string("AC1032") + std::string(2000, '\0'));
    zenro.File("none.dwg", "hello");
    const Outcome other = zenro.Run({"dwg", "info", "new.dwg"});
    EXPECT_EQ(other.status, 3);
    EXPECT_NE(other.err.find("new.dwg: is a drawing of version AC1032; versions AC1006 and AC1009 are read"),
              std::string::npos)
        << other.err;
    EXPECT_NE(zenro.Run({"dwg", "info", "none.dwg"}).err.find("is no drawing"), std::string::npos);
}

TEST(Damage, AFileThatIsNoSymbolLibraryIsRefused) {
    const Program zenro;
    zenro.File("in.geojson", OneLine());
    zenro.File("notes.txt", "some words\n* a list\n");
    for (const std::vector<std::string>& verb :
         std::vector<std::vector<std::string>>{{"symbols", "list", "--symbols", "notes.txt"},
                                               {"symbols", "lint", "notes.txt"},
                                               {"draw", "in.geojson", "-o", "a.svg", "--symbols", "notes.txt"}}) {
        const Outcome r = zenro.Run(verb);
        EXPECT_EQ(r.status, 3) << verb[0];
        EXPECT_NE(r.err.find("is no symbol library"), std::string::npos) << r.err;
    }
    EXPECT_FALSE(zenro.Has("a.svg"));
}

TEST(Hatches, LinesAcrossManyTeethAreDrawnWhole) {
    // A comb of 12 teeth: level lines meet 24 edges, more than the library's own hatches keep.
    std::string ring = "[40512000,3456000]";
    for (int i = 0; i < 12; ++i) {
        const std::string x1 = std::to_string(40512000 + i * 8), x2 = std::to_string(40512000 + i * 8 + 4);
        ring += ",[" + x1 + ",3456080],[" + x2 + ",3456080],[" + x2 + ",3456010]";
        if (i < 11) ring += ",[" + std::to_string(40512000 + (i + 1) * 8) + ",3456010]";
    }
    ring += ",[40512092,3456000],[40512000,3456000]";
    const Program zenro;
    zenro.File("in.geojson", Collection(AreaFeature("[" + ring + "]", "\"a\":1")));
    zenro.File("r.rules", "* -> symbol 823\n");
    zenro.File("lines.txt", "*823 H 1\n2 0 2\n*$\n");
    const Outcome r = zenro.Run(
        {"draw", "in.geojson", "--rules", "./r.rules", "-o", "a.rec", "--scale", "1000", "--symbols", "./lines.txt"});
    EXPECT_EQ(r.status, 0) << r.err;
    const std::string drawn = zm::test::ReadFile(zenro / "a.rec");
    EXPECT_EQ(zm::test::Count(drawn, ":3456008.16"), 2) << drawn;       // both ends of a line across the base
    EXPECT_EQ(zm::test::Count(drawn, ":3456012.16"), 2 * 12) << drawn;  // and of the pieces in the teeth
}

}  // namespace
