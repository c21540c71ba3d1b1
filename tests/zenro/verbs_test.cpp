// doctor, symbols and dwg as a script meets them.
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "tests/zenro/program.h"

namespace {

using namespace zm::test;

TEST(Doctor, TellsEachThingAndSaysAllIsWell) {
    const Outcome r = Program().Run({"doctor", "--json"});
    const auto list = nlohmann::json::parse(r.out);
    bool all = true;
    for (const auto& check : list) {
        all = all && check["good"].get<bool>();
        const std::string name = check["name"];
        const std::string needed = "DWG template, symbol library, code page, note classes, linetypes, rules";
        if (needed.find(name) != std::string::npos) {
            EXPECT_TRUE(check["good"].get<bool>()) << name << ": " << check["found"];
        }
    }
    EXPECT_EQ(r.status, all ? 0 : 1);
    EXPECT_GE(list.size(), 12u);
}

TEST(Doctor, AMissingFontForChineseIsToldAndPicturesSaySo) {
    const Program zenro;
    const std::string none = "FONTCONFIG_FILE=" + zenro.File("fonts.xml", "<fontconfig></fontconfig>");
    const Outcome doctor = zenro.Run({"doctor"}, "", {none});
    EXPECT_EQ(doctor.status, 1);
    EXPECT_NE(doctor.out.find("LACKS font for Chinese     none is installed"), std::string::npos) << doctor.out;
#if ZENRO_HAS_QT
    zenro.File("in.geojson", Collection(LineFeature("[40512010,3456010],[40512090,3456080]", "\"a\":1")));
    const Outcome draw = zenro.Run({"draw", "in.geojson", "-o", "a.png"}, "", {none});
    EXPECT_EQ(draw.status, 0);
    EXPECT_NE(draw.err.find("no installed font covers Chinese"), std::string::npos) << draw.err;
#endif
}

TEST(Symbols, AreListedShownLintedAndPictured) {
    const Program zenro;
    const auto list = nlohmann::json::parse(zenro.Run({"symbols", "list", "--json", "--kind", "Y"}).out);
    EXPECT_GE(list.size(), 35u);
    const Outcome show = zenro.Run({"symbols", "show", "57"});
    EXPECT_EQ(show.status, 0);
    EXPECT_NE(show.out.find("纪念碑"), std::string::npos);
    EXPECT_EQ(zenro.Run({"symbols", "show", "777"}).status, 1);
    EXPECT_EQ(zenro.Run({"symbols", "lint"}).status, 0);
    EXPECT_EQ(zenro.Run({"symbols", "sheet", "-o", "page.html"}).out, "page.html\n");
    EXPECT_NE(ReadFile(zenro / "page.html").find("<svg"), std::string::npos);
    EXPECT_EQ(zenro.Run({"symbols", "sheet", "-o", "page.html"}).status, 5);
}

TEST(Symbols, LintNamesFileAndLineAndFails) {
    const Program zenro;
    zenro.File("bad.dat", "*12 G\n12 0,0 1,1\n*$\n");
    const Outcome r = zenro.Run({"symbols", "lint", "bad.dat"});
    EXPECT_EQ(r.status, 1);
    EXPECT_NE(r.out.find("bad.dat:2: code 12: "), std::string::npos) << r.out;
    EXPECT_EQ(zenro.Run({"symbols", "lint", "missing.dat"}).status, 3);
}

TEST(Dwg, ChecksTellByTheirStatus) {
    const Program zenro;
    zenro.File("in.geojson", Collection(LineFeature("[40512010,3456010],[40512090,3456080]", "\"a\":1")));
    ASSERT_EQ(zenro.Run({"draw", "in.geojson", "-o", "a.dwg"}).status, 0);
    EXPECT_EQ(zenro.Run({"dwg", "check", "a.dwg"}).status, 0);
    EXPECT_EQ(zenro.Run({"dwg", "info", "a.dwg"}).status, 0);
    const std::string bytes = ReadFile(zenro / "a.dwg");
    zenro.File("cut.dwg", bytes.substr(0, bytes.size() / 2));
    EXPECT_NE(zenro.Run({"dwg", "check", "cut.dwg"}).status, 0);
    EXPECT_EQ(zenro.Run({"dwg", "info", "missing.dwg"}).status, 3);
    EXPECT_EQ(zenro.Run({"dwg", "draw", "a.dwg", "a.svg"}).status, 0);
    EXPECT_NE(ReadFile(zenro / "a.svg").find("<path"), std::string::npos);
}

}  // namespace
