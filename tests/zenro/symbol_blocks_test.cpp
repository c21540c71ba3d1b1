// zenro draw --symbols-as blocks: the same strokes as without it, each symbol defined once.
#include <gtest/gtest.h>

#include <cmath>
#include <optional>
#include <set>

#include "tests/zenro/draw_fixture.h"
#include "zenromath/dwg_reader.h"

namespace {

using namespace zm::test;
using zm::DrawingEntity;
using zm::DrawingFile;
using zm::DrawingPoint;

DrawingFile Read(const std::filesystem::path& path) {
    const std::string bytes = ReadFile(path);
    return DrawingFile(std::vector<std::uint8_t>(bytes.begin(), bytes.end()));
}

// One stroke: its kind, the points that it has, its radius, its colour.
struct Stroke {
    std::string kind;
    std::vector<DrawingPoint> points;
    double radius = 0.0;
    std::optional<int> color;
};

Stroke StrokeOf(const DrawingEntity& entity) {
    Stroke stroke{entity.kind, entity.points, 0.0, entity.color};
    const double radius = entity.Number("radius", 0.0);
    if (radius == 0.0) return stroke;
    const DrawingPoint centre = entity.points.at(0);
    // A whole circle begins anywhere; what is left of it is its size.
    const double sweep = std::remainder(entity.Number("end", 0.0) - entity.Number("start", 0.0), 6.283185307179586);
    stroke.radius = radius;
    if (std::fabs(sweep) < 1e-6) return stroke;
    for (const char* end : {"start", "end"}) {
        const double angle = entity.Number(end, 0.0);
        stroke.points.push_back({centre.x + radius * std::cos(angle), centre.y + radius * std::sin(angle), 0.0});
    }
    return stroke;
}

bool IsMark(const std::string& kind) {
    return kind == "BLOCK" || kind == "ENDBLK" || kind == "SEQEND" || kind == "POLYLINE" || kind == "JUMP";
}

// All strokes of a drawing in their order, references to blocks in place of them where they stand.
std::vector<Stroke> Exploded(const DrawingFile& drawing) {
    std::vector<Stroke> strokes;
    drawing.ForEachEntity([&](const DrawingEntity& entity) {
        if (IsMark(entity.kind)) return true;
        if (entity.kind != "INSERT") {
            strokes.push_back(StrokeOf(entity));
            return true;
        }
        const double scale = entity.Number("scale_x", 1.0), angle = entity.Number("rotation", 0.0);
        const auto block = static_cast<std::size_t>(entity.Number("block", -1.0));
        drawing.ForEachInBlock(block, [&](const DrawingEntity& part) {
            if (IsMark(part.kind)) return true;
            EXPECT_EQ(part.layer, "0");
            EXPECT_EQ(part.color, 0) << "not the colour of the block";
            Stroke stroke = StrokeOf(part);
            stroke.color = entity.color;
            for (DrawingPoint& p : stroke.points)
                p = {entity.points[0].x + scale * (p.x * std::cos(angle) - p.y * std::sin(angle)),
                     entity.points[0].y + scale * (p.x * std::sin(angle) + p.y * std::cos(angle)), 0.0};
            stroke.radius *= scale;
            strokes.push_back(std::move(stroke));
            return true;
        });
        return true;
    });
    return strokes;
}

void ExpectSameStrokes(const DrawingFile& strokes, const DrawingFile& blocks) {
    const auto a = Exploded(strokes), b = Exploded(blocks);
    ASSERT_EQ(a.size(), b.size());
    for (std::size_t i = 0; i < a.size(); ++i) {
        ASSERT_EQ(a[i].kind, b[i].kind) << i;
        ASSERT_EQ(a[i].points.size(), b[i].points.size()) << i;
        ASSERT_NEAR(a[i].radius, b[i].radius, 0.001) << i;
        ASSERT_EQ(a[i].color, b[i].color) << a[i].kind << " " << i;
        for (std::size_t k = 0; k < a[i].points.size(); ++k) {
            ASSERT_NEAR(a[i].points[k].x, b[i].points[k].x, 0.001) << a[i].kind << " " << i << " " << k;
            ASSERT_NEAR(a[i].points[k].y, b[i].points[k].y, 0.001) << a[i].kind << " " << i << " " << k;
        }
    }
}

long References(const DrawingFile& drawing) {
    long references = 0;
    drawing.ForEachEntity([&](const DrawingEntity& entity) { return references += entity.kind == "INSERT", true; });
    return references;
}

class SymbolBlocks : public DrawFixture {
 protected:
    // The same data as strokes.dwg and blocks.dwg.
    void DrawBoth(const std::string& features, const std::string& rules, const std::string& sheet) {
        for (const char* as : {"strokes", "blocks"})
            m_last = DrawFile("in.geojson", Collection(features), rules,
                              {"--scale", "2000", "--sheet", sheet, "--symbols-as", as, "-o", std::string(as) + ".dwg",
                               "-o", std::string(as) + ".dxf"});
    }
    // Points with the symbols from code to code, each turned by another angle, in strokes.dwg and blocks.dwg.
    void DrawSymbols(int from, int to, int times) {
        std::string features, rules;
        int place = 0;
        for (int round = 0; round < times; ++round)
            for (int code = from; code <= to; ++code, ++place)
                features +=
                    (features.empty() ? "" : ",") +
                    PointFeature(40512000.0 + place % 30 * 40.0, 3456000.0 + place / 30 * 40.0,
                                 "\"c\":" + std::to_string(code) + ",\"w\":" + std::to_string(place * 37 % 360));
        for (int code = from; code <= to; ++code)
            rules += "c = " + std::to_string(code) + " -> symbol " + std::to_string(code) + ", angle w\n";
        DrawBoth(features, rules, "40511900,3455900,40513300,3458000");
    }
    DrawingFile Of(const char* name) const { return Read(m_zenro / name); }
    Outcome m_last;
};

TEST_F(SymbolBlocks, ExplodedAreTheStrokesOfTheSymbols) {
    DrawSymbols(1, 20, 3);
    EXPECT_EQ(m_last.status, 0) << m_last.err;
    const DrawingFile blocks = Of("blocks.dwg");
    EXPECT_TRUE(blocks.Prove().sound());
    ExpectSameStrokes(Of("strokes.dwg"), blocks);
    const std::vector<std::string> names = blocks.Blocks();
    EXPECT_EQ(names.size(), 20u);
    EXPECT_EQ(std::set<std::string>(names.begin(), names.end()).size(), names.size()) << "a block is defined twice";
    EXPECT_EQ(names.at(0), "S001_\xC8\xFD\xBD\xC7\xB5\xE3");  // the triangulation point
    EXPECT_EQ(References(blocks), 60);
    EXPECT_LT(std::filesystem::file_size(m_zenro / "blocks.dwg"), std::filesystem::file_size(m_zenro / "strokes.dwg"));
    const std::string dxf = ReadFile(m_zenro / "blocks.dxf");
    EXPECT_EQ(Count(dxf, "\nINSERT"), 60);
}

// The block definitions of a drawing have 64000 bytes: what does not fit is there as strokes, and reported.
TEST_F(SymbolBlocks, WhatDoesNotFitIntoTheDefinitionsStaysStrokes) {
    DrawSymbols(1, 380, 1);
    EXPECT_EQ(m_last.status, 4);
    EXPECT_NE(m_last.err.find("block definitions of the drawing would pass 64000 bytes"), std::string::npos)
        << m_last.err;
    const DrawingFile blocks = Of("blocks.dwg");
    EXPECT_TRUE(blocks.Prove().sound());
    EXPECT_GT(blocks.Blocks().size(), 50u);
    ExpectSameStrokes(Of("strokes.dwg"), blocks);
}

// Points across the limit of the sheet at all distances: what it cuts is strokes, the rest references.
TEST_F(SymbolBlocks, WhatTheSheetCutsStaysStrokesAndIsCut) {
    std::string features;
    for (int i = 0; i < 40; ++i)
        features += (i == 0 ? "" : ",") +
                    PointFeature(40511900.0 + i * 0.25, 3456000.0 + i * 10.0, "\"w\":" + std::to_string(i * 23)) + "," +
                    PointFeature(40512000.0 + i * 10.0, 3456900.0 - i * 0.25, "\"w\":0");
    const std::string sheet = "40511900,3455900,40512500,3456900";
    DrawBoth(features, "* -> symbol 1, angle w", sheet);
    EXPECT_EQ(m_last.status, 0) << m_last.err;
    const DrawingFile blocks = Of("blocks.dwg");
    EXPECT_TRUE(blocks.Prove().sound());
    ExpectSameStrokes(Of("strokes.dwg"), blocks);
    EXPECT_GT(References(blocks), 30);
    EXPECT_LT(References(blocks), 75);
}

TEST_F(SymbolBlocks, TheColourOfARuleIsThatOfTheReference) {
    DrawBoth(PointFeature(40512000.0, 3456000.0, "\"c\":1") + "," + PointFeature(40512100.0, 3456000.0, "\"c\":2"),
             "c = 1 -> symbol 1, value 33\nc = 2 -> symbol 1", "40511900,3455900,40512500,3456900");
    EXPECT_EQ(m_last.status, 0) << m_last.err;
    const DrawingFile blocks = Of("blocks.dwg");
    ExpectSameStrokes(Of("strokes.dwg"), blocks);
    std::set<std::optional<int>> colours;
    blocks.ForEachEntity([&](const DrawingEntity& entity) {
        if (entity.kind == "INSERT") colours.insert(entity.color);
        return true;
    });
    EXPECT_EQ(colours.size(), 2u);
}

TEST_F(SymbolBlocks, AreRefusedBesideAListOfBlocks) {
    m_zenro.File("list.txt", "1 MARK\n");
    const Outcome end = DrawFile("in.geojson", Collection(PointFeature(40512000.0, 3456000.0, "\"c\":1")),
                                 "* -> symbol 1", {"--symbols-as", "blocks", "--blocks", "list.txt"});
    EXPECT_EQ(end.status, 2);
    EXPECT_NE(end.err.find("--blocks"), std::string::npos) << end.err;
}

}  // namespace
