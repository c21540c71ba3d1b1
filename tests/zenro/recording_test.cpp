#include "tools/zenro/map/recording.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <map>

#include "runtime/text/numbers.h"
#include "tests/support/recorded_numbers.h"
#include "tests/zenro/program.h"

namespace {

using namespace zm::tool;
using namespace zm::test;

TEST(Commands, AreReadFieldByField) {
    const auto line = std::get<command::Line>(*ParseCommand("Line2:1.000000:2.500000:-3.000000:4.000000"));
    EXPECT_EQ(line.x1, 1.0);
    EXPECT_EQ(line.y2, 4.0);
    const auto arc = std::get<command::Arc>(*ParseCommand("Arc:1:2:3:0.000000:360.000000"));
    EXPECT_EQ(arc.r, 3.0);
    EXPECT_EQ(arc.to, 360.0);
    const auto pixel = std::get<command::Pixel>(*ParseCommand("Pixel:1:2:-1"));
    EXPECT_EQ(pixel.color, 0xFFFFFFFFu);
    const auto text = std::get<command::Text>(*ParseCommand("Text:0:1:2:3.50:a:b"));
    EXPECT_EQ(text.first, 0);
    EXPECT_EQ(text.text, "a:b");
    const auto font =
        std::get<command::Font>(*ParseCommand("Font:20:10:900:900:400:255:0:0:134:0:0:0:0:WenQuanYi Zen Hei"));
    EXPECT_EQ(font.font.lfHeight, 20);
    EXPECT_EQ(font.font.lfEscapement, 900);
    EXPECT_EQ(font.font.lfItalic, 255);
    EXPECT_STREQ(font.font.lfFaceName, "WenQuanYi Zen Hei");
    EXPECT_EQ(std::get<command::Layer>(*ParseCommand("Layer:-5")).code, -5);
    EXPECT_TRUE(std::holds_alternative<command::PolylineBegin>(*ParseCommand("PlineBgn")));
}

TEST(Commands, WhatIsNoneIsNotTakenForOne) {
    for (const char* wrong : {"", "Line2", "Line2:1:2:3", "Line2:1:2:3:4:5", "Line2:1:2:3:x", "Arc:1:2:3:4", "Layer:x",
                              "Bogus:1", "Text:1:2", "Pen:1:2", "Line2:1:2:3:nan"})
        EXPECT_FALSE(ParseCommand(wrong).has_value()) << wrong;
}

TEST(Commands, AFaceNameOfAnyLengthIsCut) {
    const auto font =
        std::get<command::Font>(*ParseCommand("Font:1:2:3:4:5:6:7:8:9:10:11:12:13:" + std::string(500, 'x')));
    EXPECT_EQ(std::string(font.font.lfFaceName), std::string(31, 'x'));
}

TEST(Replay, DrawsTheRecordingAgainStrokeForStroke) {
    Program zenro;
    zenro.File("in.geojson",
               Collection(LineFeature("[40512010,3456010],[40512090,3456070],[40512095,3456010]", "\"name\":\"R\"") +
                          "," + PointFeature(40512050, 3456080, "\"name\":\"D7\"")));
    zenro.File("r.rules", "[* : line]\n* -> symbol 241\n[* : point]\n* -> symbol 10, note #, label name\n");
    ASSERT_EQ(zenro
                  .Run({"draw", "in.geojson", "--rules", "./r.rules", "--scale", "1000", "-o", "a.rec", "-o", "a.dwg",
                        "-o", "a.svg"})
                  .status,
              0);
    ASSERT_EQ(zenro.Run({"replay", "a.rec", "b.rec", "b.svg", "b.dwg"}).status, 0);
    const std::string a = ReadFile(zenro / "a.rec"), b = ReadFile(zenro / "b.rec");
    for (const char* command : {"\nLine2:", "\nArc:", "\nText:"})
        EXPECT_EQ(Count(a, command), Count(b, command)) << command;
    EXPECT_EQ(zenro.Run({"dwg", "check", "b.dwg"}).status, 0);
    // Widths of hundredths, heights and colours of lettering come back by the comment lines.
    EXPECT_EQ(ReadFile(zenro / "a.svg"), ReadFile(zenro / "b.svg"));
    EXPECT_NE(ReadFile(zenro / "b.svg").find("D7"), std::string::npos);
}

// The library keeps colour, layer and text style from one drawing to the next, which has its own tables.
TEST(Replay, EachDrawingBeginsAnew) {
    Program zenro;
    zenro.File("x.rec",
               "Text:1:40512340:3456324:2.00:3\nLine2:40512340:3456300:40512350:3456300\nLayer:500\nPen:0:3:255\n"
               "Font:20:20:0:0:400:0:0:0:134:0:0:0:0:WenQuanYi Zen Hei\nText:1:40512346:3456324:2.00:3\n"
               "Font:20:13:0:0:400:0:0:0:0:0:0:0:0:DejaVu Sans\nText:1:40512346:3456334:2.00:3\n");
    ASSERT_EQ(zenro.Run({"replay", "x.rec", "a.dwg", "b.dwg", "--scale", "500"}).status, 0);
    EXPECT_EQ(ReadFile(zenro / "a.dwg"), ReadFile(zenro / "b.dwg"));
}

TEST(Replay, WorksWithoutAHeadAndTellsBadLines) {
    Program zenro;
    zenro.File("x.rec", "Pen:0:3:255\r\nLine2:0:0:100:100\nnonsense\nArc:50:50:20:0:370\n");
    const Outcome r = zenro.Run({"replay", "x.rec", "x.svg"});
    EXPECT_EQ(r.status, 4);
    EXPECT_NE(r.err.find("x.rec:3: no command of a recording"), std::string::npos);
    EXPECT_NE(r.err.find("says no scale; 1:1000 is taken"), std::string::npos);
    EXPECT_TRUE(zenro.Has("x.svg"));
}

TEST(Replay, AnglesOfArcsCountModuloATurn) {
    Program zenro;
    zenro.File("x.rec",
               "Arc:50:50:20:0:480\nArc:50:50:20:350:10\nArc:50:50:20:30:390\nArc:50:50:20:400:30\nLine2:0:0:99:99\n");
    ASSERT_EQ(zenro.Run({"replay", "x.rec", "y.rec"}).status, 0);
    const std::string again = ReadFile(zenro / "y.rec");
    std::vector<double> sweeps;
    std::istringstream lines(again);
    for (std::string line; std::getline(lines, line);)
        if (const auto arc = zm::test::NumbersOf(line, "Arc"); arc.size() == 5) sweeps.push_back(arc[4] - arc[3]);
    ASSERT_EQ(sweeps.size(), 4u);
    EXPECT_NEAR(sweeps[0], 120.0, 1e-5);
    EXPECT_NEAR(sweeps[1], 20.0, 1e-5);
    EXPECT_NEAR(sweeps[2], 360.0, 1e-5);
    EXPECT_NEAR(sweeps[3], 350.0, 1e-5);
}

TEST(Replay, WhatIsNoRecordingIs3) {
    Program zenro;
    zenro.File("x.rec", std::string("\0\1\2\n\n", 5));
    EXPECT_EQ(zenro.Run({"replay", "x.rec", "x.svg"}).status, 3);
    EXPECT_EQ(zenro.Run({"replay", "missing.rec", "x.svg"}).status, 3);
    zenro.File("e.rec", "");
    EXPECT_EQ(zenro.Run({"replay", "e.rec", "x.svg"}).status, 3);
}

#if ZENRO_HAS_QT
// A recording of one text, drawn as a picture by a system that has one font, WenQuanYi Zen Hei.
class TextsInMissingFaces : public testing::Test {
 protected:
    void SetUp() override {
        const std::string only = zenro.File(
            "fonts.xml",
            "<fontconfig><dir>/usr/share/fonts</dir><cachedir>fonts</cachedir><selectfont><rejectfont><pattern>"
            "<patelt name=\"scalable\"><bool>true</bool></patelt></pattern></rejectfont><acceptfont><pattern>"
            "<patelt name=\"family\"><string>WenQuanYi Zen Hei</string></patelt></pattern></acceptfont></selectfont>"
            "</fontconfig>");
        m_fonts = "FONTCONFIG_FILE=" + only;
        if (zenro.Run({"doctor"}, "", {m_fonts}).out.find("WenQuanYi Zen Hei") == std::string::npos)
            GTEST_SKIP() << "needs the font WenQuanYi Zen Hei (package fonts-wqy-zenhei)";
    }
    // \param text  GBK
    Outcome Draw(const std::string& face, const std::string& text) {
        zenro.File("in.rec", "Font:20:10:0:0:400:0:0:0:134:0:0:0:0:" + face + "\nText:1:10:20:4.00:" + text +
                                 "\nLine2:0:0:60:30\n");
        return zenro.Run({"replay", "in.rec", "picture.png", "--overwrite"}, "", {m_fonts});
    }
    Program zenro;

 private:
    std::string m_fonts;
};

TEST_F(TextsInMissingFaces, AnotherFaceIsTakenAndNamed) {
    const Outcome drawn = Draw("No Such Face 7", "\xB2\xE2\xC1\xBF");
    EXPECT_EQ(drawn.status, 0) << drawn.err;
    EXPECT_NE(drawn.err.find("the font No Such Face 7 is not installed; WenQuanYi Zen Hei is used instead."),
              std::string::npos)
        << drawn.err;
}

// FE 42 is one of twelve characters of GBK that the font lacks.
TEST_F(TextsInMissingFaces, CharactersThatNoFaceHasAreReported) {
    const Outcome drawn = Draw("WenQuanYi Zen Hei", "\xB2\xE2\xFE\x42");
    EXPECT_EQ(drawn.status, 4) << drawn.err;
    EXPECT_NE(drawn.err.find("the font WenQuanYi Zen Hei lacks characters of its texts, which are drawn as boxes"),
              std::string::npos)
        << drawn.err;
    EXPECT_EQ(Draw("WenQuanYi Zen Hei", "\xB2\xE2\xC1\xBF 12").status, 0);
}
#endif

// Its line in the recording is of 1.2 MB.
TEST(Replay, AnAreaOfManyVerticesStaysWhole) {
    Program zenro;
    std::string ring;
    constexpr int kVertices = 40000;
    for (int i = 0; i < kVertices; ++i) {
        const double turn = 6.283185307179586 * i / kVertices, r = 40.0 + i % 2;
        ring += zm::numbers::Text("[%.4f,%.4f],", 40512050 + r * std::cos(turn), 3456050 + r * std::sin(turn));
    }
    zenro.File("in.geojson", Collection(AreaFeature("[" + ring + "[40512090,3456050]]", "\"name\":\"W\"")));
    zenro.File("r.rules", "* -> symbol 500\n");
    ASSERT_EQ(zenro.Run({"draw", "in.geojson", "--rules", "./r.rules", "--scale", "1000", "-o", "a.rec", "-o", "a.svg"})
                  .status,
              0);
    ASSERT_GT(ReadFile(zenro / "a.rec").find('\n', ReadFile(zenro / "a.rec").find("# area ")), std::size_t{1} << 20);
    ASSERT_EQ(zenro.Run({"replay", "a.rec", "b.rec"}).status, 0);
    const auto area = [&](const char* name) {
        const std::string bytes = ReadFile(zenro / name);
        const std::size_t at = bytes.find("# area ");
        return bytes.substr(at, bytes.find('\n', at) - at);
    };
    EXPECT_TRUE(area("a.rec") == area("b.rec"));
}

TEST(Replay, NumbersBeyondSenseAreRefusedOrDrawn) {
    Program zenro;
    zenro.File("wide.rec", "Line2:0:0:1e300:10\nLine2:0:0:10:10\n");
    zenro.File("small.rec", "# sheet 0 0 1e-9 1e-9\nLine2:0:0:10:10\n");
    for (const char* name : {"wide.rec", "small.rec"})
        for (const char* output : {"a.svg", "a.png", "a.pdf", "a.dwg"}) {
            const Outcome end = zenro.Run({"replay", name, output});
            EXPECT_EQ(end.status, 1) << name << output;
            EXPECT_NE(end.err.find("mm of paper at 1:1000; give another --scale"), std::string::npos) << end.err;
        }
    zenro.File("pens.rec",
               "Pen:-2147483648:0:0\nLayer:-2147483648\nLine2:0:0:10:10\nPen:2147483647:0:0\nLine2:0:0:9:9\n");
    for (const char* output : {"b.svg", "b.rec"}) EXPECT_EQ(zenro.Run({"replay", "pens.rec", output}).status, 0);
    EXPECT_EQ(zenro.Run({"replay", "pens.rec", "b.dwg"}).status, 1);  // no linetype has that number
}

// The driver of GML keeps what it found out about a file beside it.
TEST(Inputs, NothingIsWrittenBesideThem) {
    Program zenro;
    zenro.File("r.rules", "* -> symbol 200\n");
    zenro.File("in.geojson", Collection(LineFeature("[40512010,3456010],[40512090,3456070]", "\"a\":1")));
    for (const char* name : {"in.gml", "in.csv", "in.shp", "in.tab", "in.fgb", "in.gpkg", "in.gdb"}) {
        std::filesystem::create_directory(zenro / "data");
        ASSERT_EQ(std::system(("ogr2ogr -lco GEOMETRY=AS_WKT '" + (zenro / "data").string() + "/" + name + "' '" +
                               (zenro / "in.geojson").string() + "' 2>/dev/null")
                                  .c_str()),
                  0);
        const auto files = [&] {
            std::map<std::string, std::string> found;
            for (const auto& entry : std::filesystem::recursive_directory_iterator(zenro / "data"))
                if (entry.is_regular_file()) found[entry.path().string()] = ReadFile(entry.path());
            return found;
        };
        std::filesystem::remove(zenro / "data/in.gfs");
        const auto before = files();
        const Outcome end = zenro.Run({"draw", std::string("data/") + name, "--rules", "./r.rules", "--scale", "1000",
                                       "--source", "EPSG:4528", "-o", "a.rec", "--overwrite", "--no-frame"});
        EXPECT_EQ(end.status, 0) << name << end.err;
        EXPECT_EQ(Count(ReadFile(zenro / "a.rec"), "Line2:"), 1) << name;
        EXPECT_TRUE(files() == before) << name;
        EXPECT_FALSE(zenro.Has("data/in.gfs"));
        std::filesystem::remove_all(zenro / "data");
    }
}

// Its driver would take all of it into memory.
TEST(Inputs, AKmlOfATerabyteIsRefused) {
    Program zenro;
    zenro.File("r.rules", "* -> symbol 200\n");
    for (const char* begin :
         {"", "<?xml version=\"1.0\"?>\n<kml xmlns=\"http://www.opengis.net/kml/2.2\"><Document>"}) {
        zenro.File("in.kml", begin);
        std::filesystem::resize_file(zenro / "in.kml", std::uintmax_t{1} << 40);
        const Outcome end = zenro.Run({"draw", "in.kml", "--rules", "./r.rules", "-o", "a.svg"});
        EXPECT_EQ(end.status, 3);
        EXPECT_NE(end.err.find("in.kml: is larger than 1024 MiB; divide it"), std::string::npos) << end.err;
    }
}

TEST(Replay, ALineWithoutEndIsRefused) {
    Program zenro;
    zenro.File("endless.rec", "");
    std::filesystem::resize_file(zenro / "endless.rec", std::uintmax_t{1} << 40);
    for (const std::vector<std::string>& arguments : {std::vector<std::string>{"replay", "endless.rec", "b.svg"},
                                                      {"coord", "to-geo", "endless.rec"},
                                                      {"dwg", "info", "endless.rec"},
                                                      {"dwg", "check", "endless.rec"}}) {
        const Outcome end = zenro.Run(arguments);
        EXPECT_EQ(end.status, 3) << arguments[0] << end.err;
        EXPECT_NE(end.err.find("MiB; that is not such a file"), std::string::npos) << end.err;
    }
}

}  // namespace
