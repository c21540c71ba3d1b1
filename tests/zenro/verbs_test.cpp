// doctor, symbols and dwg as a script meets them.
#include <gtest/gtest.h>

#include <filesystem>
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
    // Each symbol in the colour and the width of its layer: a well is blue, a tree green.
    const std::string page = ReadFile(zenro / "page.html");
    const auto figure = [&](const std::string& id) {
        const std::size_t begin = page.find("<figure id=\"" + id + "\"");
        return page.substr(std::min(begin, page.size()), page.find("</figure>", begin) - begin);
    };
    EXPECT_NE(figure("c20").find("stroke=\"#009fe3\" stroke-width=\"15\""), std::string::npos) << figure("c20");
    EXPECT_NE(figure("c140").find("stroke=\"#009640\""), std::string::npos) << figure("c140");
    EXPECT_GT(Count(page, "line 0.15 mm"), 300);
    EXPECT_EQ(zenro.Run({"symbols", "sheet", "-o", "page.html"}).status, 5);
}

TEST(Symbols, ThePageIsHtmlUnderNoOtherName) {
    const Program zenro;
    const Outcome r = zenro.Run({"symbols", "sheet", "-o", "page.png"});
    EXPECT_EQ(r.status, 2);
    EXPECT_NE(r.err.find("page.png: the page is HTML"), std::string::npos) << r.err;
    EXPECT_FALSE(std::filesystem::exists(zenro / "page.png"));
}

TEST(Symbols, DiffSaysWhatDiffersByStatusTextAndJson) {
    const Program zenro;
    zenro.File("a.dat", "*12 G\n2 0,0 1,1\n*13 G\n2 0,0 2,2\n*14 G\n2 0,0 3,3\n*$\n");
    zenro.File("b.dat", "*12 G\n2 0,0 1,1\n*13 G\n2 0,0 2,5\n*15 G\n2 0,0 3,3\n*$\n");
    EXPECT_EQ(zenro.Run({"symbols", "diff", "a.dat", "a.dat"}).status, 0);
    const Outcome text = zenro.Run({"symbols", "diff", "a.dat", "b.dat"});
    EXPECT_EQ(text.status, 1);
    EXPECT_NE(text.out.find("13"), std::string::npos) << text.out;
    EXPECT_EQ(text.out.find("12"), std::string::npos) << text.out;
    const auto found = nlohmann::json::parse(zenro.Run({"symbols", "diff", "a.dat", "b.dat", "--json"}).out);
    EXPECT_EQ(found["same"], false);
    EXPECT_EQ(found["alike"], 1);
    ASSERT_EQ(found["changed"].size(), 1u);
    EXPECT_EQ(found["changed"][0]["code"], 13);
    ASSERT_EQ(found["only_first"].size(), 1u);
    EXPECT_EQ(found["only_first"][0]["code"], 14);
    ASSERT_EQ(found["only_second"].size(), 1u);
    EXPECT_EQ(found["only_second"][0]["code"], 15);
    EXPECT_EQ(zenro.Run({"symbols", "diff", "a.dat", "missing.dat"}).status, 3);
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
