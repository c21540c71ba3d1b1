// What a CAD user sees at opening a drawing.
#include <gtest/gtest.h>

#include <cstring>
#include <set>

#include "tests/zenro/draw_fixture.h"
#include "zenromath/dwg_reader.h"

namespace {

using namespace zm::test;

double NumberAt(const std::string& bytes, std::size_t at) {
    double number = 0.0;
    std::memcpy(&number, bytes.data() + at, sizeof number);
    return number;
}

class CadView : public DrawFixture {
 protected:
    std::string Drawing(const char* scale, std::vector<std::string> more = {}) {
        more.insert(more.end(), {"--scale", scale, "--sheet", "40512000,3456000,40512100,3456080", "-o", "out.dwg"});
        const std::string square =
            "[[40512010,3456010],[40512030,3456010],[40512030,3456030],[40512010,3456030],[40512010,3456010]]";
        const Outcome drawn =
            DrawFile("in.geojson", Collection(AreaFeature(square, "\"c\":1")), "* -> symbol 596", more);
        EXPECT_EQ(drawn.status, 0) << drawn.err;
        return ReadFile(m_zenro / "out.dwg");
    }
    static int Thick(const std::string& bytes) {
        const zm::DrawingFile drawing(std::vector<std::uint8_t>(bytes.begin(), bytes.end()));
        int thick = 0;
        drawing.ForEachEntity([&](const zm::DrawingEntity& entity) {
            thick += entity.thickness.value_or(0.0) != 0.0;
            return true;
        });
        return thick;
    }
};

TEST_F(CadView, ExtentsLimitsAndViewAreThoseOfTheSheet) {
    const std::string bytes = Drawing("1000");
    // Header variables: EXTMIN and EXTMAX of three numbers, LIMMIN and LIMMAX of two, VIEWCTR of three, VIEWSIZE.
    constexpr std::size_t kExtMin = 120, kExtMax = 144, kLimMin = 168, kLimMax = 184, kCentre = 200, kSize = 224;
    for (const std::size_t at : {kExtMin, kLimMin}) {
        EXPECT_LE(NumberAt(bytes, at), 40512000.0);
        EXPECT_GT(NumberAt(bytes, at), 40511900.0);
        EXPECT_LE(NumberAt(bytes, at + 8), 3456000.0);
        EXPECT_GT(NumberAt(bytes, at + 8), 3455900.0);
    }
    for (const std::size_t at : {kExtMax, kLimMax}) {
        EXPECT_GE(NumberAt(bytes, at), 40512100.0);
        EXPECT_LT(NumberAt(bytes, at), 40512200.0);
        EXPECT_GE(NumberAt(bytes, at + 8), 3456080.0);
        EXPECT_LT(NumberAt(bytes, at + 8), 3456180.0);
    }
    EXPECT_NEAR(NumberAt(bytes, kCentre), 40512050.0, 0.001);
    EXPECT_NEAR(NumberAt(bytes, kCentre + 8), 3456040.0, 0.001);
    EXPECT_GE(NumberAt(bytes, kSize), 80.0);
    EXPECT_LT(NumberAt(bytes, kSize), 100.0);
    constexpr std::size_t kUnits = 356;  // LUNITS, LUPREC: decimal, millimetres of metres
    EXPECT_EQ(bytes.substr(kUnits, 4), std::string("\2\0\3\0", 4));
}

TEST_F(CadView, ARingIsOneClosedPolylineAndALineNone) {
    const std::string ring = "[[40512010,3456010],[40512030,3456010],[40512030,3456030],[40512010,3456010]]";
    const std::string line = "[40512050,3456010],[40512070,3456010],[40512070,3456030],[40512050,3456030]";
    const Outcome drawn =
        DrawFile("in.geojson", Collection(AreaFeature(ring, "\"c\":1") + "," + LineFeature(line, "\"c\":1")),
                 "[* : area]\n* -> symbol 250\n[* : line]\n* -> symbol 250",
                 {"--scale", "500", "--sheet", "40512000,3456000,40512100,3456080", "-o", "out.dwg"});
    EXPECT_EQ(drawn.status, 0) << drawn.err;
    const std::string bytes = ReadFile(m_zenro / "out.dwg");
    const zm::DrawingFile drawing(std::vector<std::uint8_t>(bytes.begin(), bytes.end()));
    std::vector<std::pair<double, int>> polylines;  // whether each is closed, and its vertices
    drawing.ForEachEntity([&](const zm::DrawingEntity& entity) {
        if (entity.kind == "POLYLINE") polylines.emplace_back(entity.Number("closed", 0.0), 0);
        if (entity.kind == "VERTEX") ++polylines.back().second;
        return true;
    });
    EXPECT_EQ(polylines, (std::vector<std::pair<double, int>>{{1.0, 3}, {0.0, 4}}));
}

TEST_F(CadView, FillsHaveTheirCodeAsThicknessUnlessToldOtherwise) {
    EXPECT_GT(Thick(Drawing("500")), 0);
    EXPECT_EQ(Thick(Drawing("500", {"--no-thickness"})), 0);
}

TEST_F(CadView, BlockFilesAreLookedForBesideTheirList) {
    std::filesystem::create_directory(m_zenro / "blocks");
    Drawing("1000");
    std::filesystem::rename(m_zenro / "out.dwg", m_zenro / "blocks" / "TREE.dwg");
    m_zenro.File("blocks/list", "17 TREE\n");
    const Outcome drawn =
        DrawFile("p.geojson", Collection(PointFeature(40512050, 3456040, "\"c\":1")), "* -> symbol 17",
                 {"--sheet", "40512000,3456000,40512100,3456080", "-o", "out.dwg", "--blocks", "blocks/list"});
    EXPECT_EQ(drawn.status, 0) << drawn.err;
    const Outcome dump = m_zenro.Run({"dwg", "dump", "out.dwg"});
    EXPECT_NE(dump.out.find("INSERT"), std::string::npos) << dump.out;
}

// A sheet is drawn again where a block has changed, or how it comes in.
TEST_F(CadView, BlocksAreAPartOfTheHashOfTheInput) {
    std::filesystem::create_directory(m_zenro / "blocks");
    m_zenro.File("blocks/list", "17 TREE\n");
    const std::string tree = Collection(PointFeature(40512050, 3456040, "\"c\":1"));
    const auto hash = [&](std::vector<std::string> more) {
        more.insert(more.end(), {"--sheet", "40512000,3456000,40512100,3456080", "--json", "--overwrite", "-o",
                                 "out.dwg", "--blocks", "blocks/list"});
        const std::string out = DrawFile("p.geojson", tree, "* -> symbol 17", more).out;
        const std::size_t at = out.find("\"input_sha256\"");
        EXPECT_NE(at, std::string::npos) << out;
        return at == std::string::npos ? out : out.substr(at, out.find('\n', at) - at);
    };
    std::set<std::string> hashes;
    for (const char* option : {"--no-frame", "--no-thickness"}) {
        Drawing("500", {"--overwrite", option});
        std::filesystem::rename(m_zenro / "out.dwg", m_zenro / "blocks" / "TREE.dwg");
        const std::string first = hash({});
        EXPECT_EQ(first, hash({}));
        hashes.insert(first);
        hashes.insert(hash({"--blocks-as-copied"}));
    }
    EXPECT_EQ(hashes.size(), 4u);
}

// A reference in a block file of version 1006 would be ruined by the copying, as other programs read it.
TEST_F(CadView, BlockFilesAreImportedWholeUnlessCopyingIsAskedFor) {
    std::filesystem::create_directory(m_zenro / "blocks");
    m_zenro.File("blocks/list", "17 TREE\n");
    const std::vector<std::string> sheet = {"--sheet", "40512000,3456000,40512100,3456080", "--no-frame", "-o",
                                            "out.dwg"};
    const std::string tree = Collection(PointFeature(40512050, 3456040, "\"c\":1"));
    const auto draw = [&](std::vector<std::string> more) {
        more.insert(more.end(), sheet.begin(), sheet.end());
        return DrawFile("p.geojson", tree, "* -> symbol 17", more);
    };
    ASSERT_EQ(draw({"--symbols-as", "blocks"}).status, 0);
    std::filesystem::rename(m_zenro / "out.dwg", m_zenro / "blocks" / "TREE.dwg");

    const Outcome imported = draw({"--blocks", "blocks/list"});
    EXPECT_EQ(imported.status, 0) << imported.err;
    EXPECT_NE(m_zenro.Run({"dwg", "dump", "out.dwg"}).out.find("INSERT"), std::string::npos);
    EXPECT_EQ(m_zenro.Run({"dwg", "check", "out.dwg"}).status, 0);

    const Outcome copied = draw({"--blocks", "blocks/list", "--blocks-as-copied"});
    EXPECT_EQ(copied.status, 4) << copied.err;
    EXPECT_NE(copied.err.find("TREE"), std::string::npos) << copied.err;
    EXPECT_EQ(m_zenro.Run({"dwg", "dump", "out.dwg"}).out.find("INSERT"), std::string::npos);
    EXPECT_EQ(m_zenro.Run({"dwg", "check", "out.dwg"}).status, 0);
}

TEST_F(CadView, ADrawingWithoutEntitiesIsEmptyAndNotBroken) {
    for (const char* name : {"out.dwg", "out.rec"})
        ASSERT_EQ(
            DrawFile("p.geojson", Collection(PointFeature(40512050, 3456040, "\"c\":1")), "* -> symbol 17",
                     {"--sheet", "40513000,3456000,40513100,3456080", "--empty", "draw", "--no-frame", "-o", name})
                .status,
            0);
    EXPECT_EQ(m_zenro.Run({"dwg", "check", "out.dwg"}).status, 0);
    const Outcome drawn = m_zenro.Run({"dwg", "draw", "out.dwg", "out.svg"});
    EXPECT_EQ(drawn.status, 6);
    EXPECT_NE(drawn.err.find("out.dwg: nothing drawn: it holds no entity with a place."), std::string::npos)
        << drawn.err;
    m_zenro.File("out.rec", "Layer:17\n");
    EXPECT_EQ(m_zenro.Run({"replay", "out.rec", "out.svg"}).status, 6);
    EXPECT_FALSE(std::filesystem::exists(m_zenro / "out.svg"));
}

// Size and width of the letters in the markup of an SVG, without their place.
std::string LettersOf(const std::string& svg) {
    const std::size_t begin = svg.find("scale(", svg.find("<text")), end = svg.find("</text>", begin);
    return begin == std::string::npos ? std::string() : svg.substr(begin, end - begin);
}

TEST_F(CadView, ADrawingsTextIsAsLargeAsTheMaps) {
    const Outcome drawn = DrawFile(
        "p.geojson", Collection(PointFeature(40512050, 3456040, "\"t\":\"H78\"")), "* -> symbol 17, label t",
        {"--scale", "500", "--sheet", "40512000,3456000,40512100,3456080", "--no-frame", "-o", "a.svg", "-o", "a.dwg"});
    ASSERT_EQ(drawn.status, 0) << drawn.err;
    ASSERT_EQ(m_zenro.Run({"dwg", "draw", "a.dwg", "b.svg", "--scale", "500"}).status, 0);
    const std::string letters = LettersOf(ReadFile(m_zenro / "a.svg"));
    EXPECT_NE(letters.find("font-size"), std::string::npos) << letters;
    EXPECT_EQ(letters, LettersOf(ReadFile(m_zenro / "b.svg")));
}

}  // namespace
