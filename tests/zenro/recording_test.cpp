#include "tools/zenro/recording.h"

#include <gtest/gtest.h>

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
    const Program zenro;
    zenro.File("in.geojson",
               Collection(LineFeature("[40512010,3456010],[40512090,3456070],[40512095,3456010]", "\"name\":\"R\"") +
                          "," + PointFeature(40512050, 3456080, "\"name\":\"D7\"")));
    zenro.File("r.rules", "[* : line]\n* -> symbol 241\n[* : point]\n* -> symbol 11, note #, label name\n");
    ASSERT_EQ(zenro.Run({"draw", "in.geojson", "--rules", "./r.rules", "--scale", "1000", "-o", "a.rec", "-o", "a.dwg"})
                  .status,
              0);
    ASSERT_EQ(zenro.Run({"replay", "a.rec", "b.rec", "b.svg", "b.dwg"}).status, 0);
    const std::string a = ReadFile(zenro / "a.rec"), b = ReadFile(zenro / "b.rec");
    for (const char* command : {"\nLine2:", "\nArc:", "\nText:"})
        EXPECT_EQ(Count(a, command), Count(b, command)) << command;
    EXPECT_EQ(zenro.Run({"dwg", "check", "b.dwg"}).status, 0);
    EXPECT_NE(ReadFile(zenro / "b.svg").find("D7"), std::string::npos);
}

TEST(Replay, WorksWithoutAHeadAndTellsBadLines) {
    const Program zenro;
    zenro.File("x.rec", "Pen:0:3:255\r\nLine2:0:0:100:100\nnonsense\nArc:50:50:20:0:370\n");
    const Outcome r = zenro.Run({"replay", "x.rec", "x.svg"});
    EXPECT_EQ(r.status, 4);
    EXPECT_NE(r.err.find("x.rec:3: no command of a recording"), std::string::npos);
    EXPECT_NE(r.err.find("says no scale; 1:1000 is taken"), std::string::npos);
    EXPECT_TRUE(zenro.Has("x.svg"));
}

TEST(Replay, AnglesOfArcsCountModuloATurn) {
    const Program zenro;
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
    const Program zenro;
    zenro.File("x.rec", std::string("\0\1\2\n\n", 5));
    EXPECT_EQ(zenro.Run({"replay", "x.rec", "x.svg"}).status, 3);
    EXPECT_EQ(zenro.Run({"replay", "missing.rec", "x.svg"}).status, 3);
    zenro.File("e.rec", "");
    EXPECT_EQ(zenro.Run({"replay", "e.rec", "x.svg"}).status, 3);
}

}  // namespace
