// Standard input and output in the place of files: filters.
#include <gtest/gtest.h>

#include <cstdlib>

#include "tests/zenro/program.h"

namespace {

using namespace zm::test;

class Streams : public testing::Test {
 protected:
    void SetUp() override {
        std::string features;
        for (int i = 0; i < 40; ++i)
            features += (i > 0 ? "," : "") +
                        LineFeature("[40512010,34560" + std::to_string(10 + i) + "],[40512090,3456080]", "\"a\":1");
        m_zenro.File("in.geojson", Collection(features));
        m_zenro.File("r.rules", "* -> symbol 200\n");
    }

    Outcome Draw(const std::vector<std::string>& outputs, std::vector<std::string> more = {}) const {
        std::vector<std::string> arguments = {"draw",    "in.geojson", "--rules", "./r.rules",
                                              "--scale", "1000",       "--title", "map"};
        for (const std::string& output : outputs) arguments.insert(arguments.end(), {"-o", output});
        arguments.insert(arguments.end(), more.begin(), more.end());
        return m_zenro.Run(arguments);
    }
    std::string Bytes(const std::string& name) const { return ReadFile(m_zenro / name); }

    Program m_zenro;
};

TEST_F(Streams, AnOutputGoesToStdoutByItsExtensionAndAllElseToStderr) {
    for (const std::string form : {"svg", "png", "pdf", "dwg", "dxf", "rec"}) {
        ASSERT_EQ(Draw({"whole." + form}, {"--overwrite"}).status, 0) << form;
        const Outcome streamed = Draw({"-." + form});
        EXPECT_EQ(streamed.status, 0) << streamed.err;
        if (form == "pdf")
            EXPECT_EQ(streamed.out.substr(0, 5), "%PDF-");
        else
            EXPECT_EQ(streamed.out == Bytes("whole." + form), true) << form;
        EXPECT_NE(streamed.err.find("stdout." + form), std::string::npos) << streamed.err;
        EXPECT_FALSE(m_zenro.Has("-." + form));
    }
    EXPECT_TRUE(m_zenro.Unfinished().empty());
}

TEST_F(Streams, OneBesideFilesGetsItsBytesAlone) {
    const Outcome both = Draw({"-.svg", "beside.dwg"}, {"--json"});
    EXPECT_EQ(both.status, 0) << both.err;
    EXPECT_EQ(both.out.substr(0, 5), "<?xml") << both.out.substr(0, 200);
    EXPECT_EQ(both.out.substr(both.out.size() - 7), "</svg>\n");
    EXPECT_TRUE(m_zenro.Has("beside.dwg"));
}

TEST_F(Streams, TwoOutputsToStdoutAreRefused) {
    const Outcome two = Draw({"-.svg", "-.dwg"});
    EXPECT_EQ(two.status, 2);
    EXPECT_NE(two.err.find("standard output takes one output"), std::string::npos) << two.err;
    EXPECT_TRUE(two.out.empty());
}

TEST_F(Streams, WithoutAnExtensionTheFormatIsAskedFor) {
    const Outcome bare = Draw({"-"});
    EXPECT_EQ(bare.status, 2);
    EXPECT_NE(bare.err.find("-.svg"), std::string::npos) << bare.err;
}

TEST_F(Streams, AFileOfThatNameIsReachedByItsFolder) {
    ASSERT_EQ(Draw({"./-.svg"}).status, 0);
    EXPECT_TRUE(m_zenro.Has("-.svg"));
}

TEST_F(Streams, DrawingsRecordingsRulesAndLibrariesComeInByStdin) {
    ASSERT_EQ(Draw({"a.dwg", "a.rec", "a.svg"}).status, 0);
    const std::string dwg = Bytes("a.dwg");
    EXPECT_TRUE(m_zenro.Run({"dwg", "info", "-"}, dwg).out == m_zenro.Run({"dwg", "info", "a.dwg"}).out);
    EXPECT_TRUE(m_zenro.Run({"dwg", "dump", "-"}, dwg).out == m_zenro.Run({"dwg", "dump", "a.dwg"}).out);
    EXPECT_EQ(m_zenro.Run({"dwg", "check", "-"}, dwg).status, 0);
    ASSERT_EQ(m_zenro.Run({"dwg", "to-dxf", "a.dwg", "a.dxf"}).status, 0);
    EXPECT_TRUE(m_zenro.Run({"dwg", "to-dxf", "-", "-"}, dwg).out == Bytes("a.dxf"));
    ASSERT_EQ(m_zenro.Run({"dwg", "draw", "a.dwg", "b.svg"}).status, 0);
    EXPECT_TRUE(m_zenro.Run({"dwg", "draw", "-", "-.svg"}, dwg).out == Bytes("b.svg"));
    EXPECT_TRUE(m_zenro.Run({"replay", "-", "-.svg"}, Bytes("a.rec")).out == Bytes("a.svg"));
    const Outcome ruled = m_zenro.Run(
        {"draw", "in.geojson", "--rules", "-", "--scale", "1000", "--title", "map", "-o", "-.svg"}, Bytes("r.rules"));
    EXPECT_EQ(ruled.out, Bytes("a.svg")) << ruled.err;
    const std::string library = ReadFile(std::string(ZENRO_SOURCE_DIR) + "/data/symbol.dat");
    EXPECT_TRUE(m_zenro.Run({"symbols", "list", "--symbols", "-"}, library).out ==
                m_zenro.Run({"symbols", "list"}).out);
    EXPECT_EQ(m_zenro.Run({"symbols", "lint", "-"}, "no library").status, 3);
}

TEST_F(Streams, DataSetsGoThroughAPipe) {
    m_zenro.File("points.geojson", Collection(PointFeature(40512010, 3456010, "\"h\":10") + "," +
                                              PointFeature(40512090, 3456010, "\"h\":12") + "," +
                                              PointFeature(40512050, 3456090, "\"h\":18")));
    ASSERT_EQ(m_zenro.Run({"contours", "points.geojson", "--field", "h", "--interval", "1", "-o", "c.geojson"}).status,
              0);
    const Outcome piped =
        m_zenro.Run({"contours", "-", "--field", "h", "--interval", "1", "-o", "-.geojson"}, Bytes("points.geojson"));
    EXPECT_EQ(piped.status, 0) << piped.err;
    EXPECT_EQ(Count(piped.out, "LineString"), Count(Bytes("c.geojson"), "LineString"));
    EXPECT_GT(Count(piped.out, "LineString"), 3);
}

TEST_F(Streams, AReaderThatGoesAwayEndsTheRunInSilence) {
    const std::string run =
        "cd '" + m_zenro.folder().string() +
        "' && XDG_CONFIG_HOME=$PWD/config '" ZENRO_PROGRAM
        "' draw in.geojson --rules ./r.rules --scale 1000 -o -.svg 2>said.txt | head -c 100 >part.txt";
    ASSERT_EQ(std::system(run.c_str()), 0);
    EXPECT_EQ(Bytes("part.txt").size(), 100u);
    EXPECT_EQ(Bytes("said.txt").find("error:"), std::string::npos) << Bytes("said.txt");
}

}  // namespace
