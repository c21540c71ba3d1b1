// What is seen of a drawing: layers, blocks, colours by block, attributes, dimensions, curves.
#include <numbers>

#include "tests/dwg/block_file.h"
#include "tests/dwg/shown.h"

namespace zm::test {
namespace {

using Read = dwg::reader::Drawing;
using Item = Shown::Item;

constexpr unsigned kOff = 0x10000 - 3;      // colour 3 of a layer that is off
constexpr unsigned kFrozenFlag = 0x40 | 1;  // of a layer
constexpr int kColour = 1, kLinetype = 2, kFlat = 4;

Read ReadFileOf(const BlockFile& file) {
    const std::string bytes = file.Bytes();
    return Read({bytes.begin(), bytes.end()});
}

std::string Dot(const BlockFile& file, double x, double y, unsigned layer = 0) {
    return file.Record(2, kFlat, F64(x) + F64(y), layer);
}
// A reference whose number has two bytes, as other programs write it.
std::string Insert(const BlockFile& file, unsigned block, double x, double y, unsigned layer = 0,
                   const std::string& fields = {}, unsigned options = 0) {
    return file.Record(14, 0, U16(block) + F64(x) + F64(y) + fields, layer, options);
}
std::string Text(const std::string& text) {
    return U16(static_cast<unsigned>(text.size())) + text;
}

// Where the dots, strokes or texts are, in order: the first point of each.
std::vector<std::pair<double, double>> PlacesOf(const std::vector<Item>& items) {
    std::vector<std::pair<double, double>> places;
    for (const Item& item : items) places.emplace_back(item.points.at(0).x, item.points.at(0).y);
    return places;
}
using Places = std::vector<std::pair<double, double>>;

BlockFile WithLayers() {
    BlockFile file;
    file.layers = {{"0", 7, 0}, {"OFF", kOff, 0}, {"FROZEN", 2, 0, kFrozenFlag}, {"SHOWN", 5, 0}};
    return file;
}

TEST(Picture, LeavesOutLayersThatAreOffOrFrozen) {
    BlockFile file = WithLayers();
    for (unsigned layer = 0; layer < 4; ++layer) file.entities += Dot(file, layer, 0, layer);
    const auto items = ItemsOf(ReadFileOf(file));
    EXPECT_EQ(PlacesOf(items), (Places{{0, 0}, {3, 0}}));
    EXPECT_EQ(items.at(0).color, 7);
    EXPECT_EQ(items.at(1).color, 5);
}

// Off, the layer of a reference hides what takes that layer over; frozen, all of it.
TEST(Picture, LayersOfReferencesHideThemAsTheyDoElsewhere) {
    for (const auto& [layer, seen] : {std::pair(3u, Places{{11, 0}, {12, 0}}), {1u, {{12, 0}}}, {2u, {}}}) {
        SCOPED_TRACE(layer);
        BlockFile file = WithLayers();
        file.blocks = {{"B", file.Definition(Dot(file, 1, 0) + Dot(file, 2, 0, 3) + Dot(file, 3, 0, 2))}};
        file.entities = Insert(file, 0, 10, 0, layer);
        const auto items = ItemsOf(ReadFileOf(file));
        EXPECT_EQ(PlacesOf(items), seen);
        for (const Item& item : items) EXPECT_EQ(item.color, 5);
    }
}

// The steps of an array are turned with the reference, not scaled; the base point of the block comes to its place.
TEST(Picture, ShowsEachReferenceOfAnArray) {
    BlockFile file;
    file.blocks = {{"B", file.Record(12, 0, F64(4) + F64(5)) + Dot(file, 5, 5) + file.Record(13, 0, "")}};
    const double quarter = std::numbers::pi / 2;
    file.entities = Insert(file, 0, 100, 200, 0, F64(2) + F64(2) + F64(quarter) + U16(3) + U16(2) + F64(10) + F64(20),
                           1 | 2 | 4 | 16 | 32 | 64 | 128);
    const auto items = ItemsOf(ReadFileOf(file));
    const Places wanted = {{100, 202}, {100, 212}, {100, 222}, {80, 202}, {80, 212}, {80, 222}};
    ASSERT_EQ(items.size(), wanted.size());
    for (std::size_t i = 0; i < wanted.size(); ++i) {
        EXPECT_NEAR(items[i].points[0].x, wanted[i].first, 1e-9) << i;
        EXPECT_NEAR(items[i].points[0].y, wanted[i].second, 1e-9) << i;
    }
}

// A reference in a block hands on what it has by block itself. Linetypes by block and by layer are 32766 and 32767 in
// 1009; in 1006 they are 255 and a field that is not there.
TEST(Picture, ColoursAndLinetypesByBlockAreThoseOfTheReference) {
    for (const int version : {1006, 1009}) {
        SCOPED_TRACE(version);
        BlockFile file;
        file.version = version;
        file.layers = {{"0", 7, 0}, {"DASHED", 6, 2}};
        const auto type = [&](unsigned number) {
            return version == 1006 ? std::string(1, static_cast<char>(number)) : U16(number);
        };
        const std::string byBlock = type(version == 1006 ? 255 : 32766);
        const std::string byLayer = version == 1006 ? "" : U16(32767);
        const auto look = [](const std::string& linetype) { return kColour | (linetype.empty() ? 0 : kLinetype); };
        const auto dot = [&](char color, const std::string& linetype, unsigned layer) {
            return file.Record(2, look(linetype) | kFlat, color + linetype + F64(1) + F64(2), layer);
        };
        const auto insert = [&](unsigned block, char color, const std::string& linetype) {
            return file.Record(14, look(linetype), color + linetype + U16(block) + F64(0) + F64(0));
        };
        file.blocks = {{"INNER", file.Definition(dot(0, byBlock, 0) + dot(4, byLayer, 1) + dot(5, type(0), 1))},
                       {"OUTER", file.Definition(insert(0, 0, byBlock))}};
        file.entities = insert(1, 3, type(2));
        Read drawing = ReadFileOf(file);
        ASSERT_EQ(drawing.linetypes.size(), 3u);
        drawing.linetypes[2].count = 2;
        drawing.linetypes[2].length = 3.0;
        drawing.linetypes[2].elements = {2.0, -1.0};
        const auto items = ItemsOf(drawing);
        ASSERT_EQ(items.size(), 3u);
        EXPECT_EQ(items[0].color, 3);
        EXPECT_EQ(items[0].linetype, &drawing.linetypes[2]);
        EXPECT_EQ(items[1].color, 4);
        EXPECT_EQ(items[1].linetype, &drawing.linetypes[2]);
        EXPECT_EQ(items[2].color, 5);
        EXPECT_EQ(items[2].linetype, nullptr);
    }
}

// The drawing's mode: none, those that are not invisible, all.
TEST(Picture, AttributesAreShownByTheDrawingsMode) {
    BlockFile file;
    const auto attribute = [&](const char* text, char flags) {
        return file.Record(16, 0, F64(1) + F64(2) + F64(0.5) + Text(text) + Text("TAG") + flags);
    };
    file.entities = attribute("SEEN", 0) + attribute("HIDDEN", 1);
    Read drawing = ReadFileOf(file);
    const std::vector<std::string> all = {"SEEN", "HIDDEN"};
    for (std::size_t mode = 0; mode < 3; ++mode) {
        drawing.variables.attributeMode = static_cast<int>(mode);
        const auto items = ItemsOf(drawing);
        ASSERT_EQ(items.size(), mode);
        for (std::size_t i = 0; i < mode; ++i) {
            EXPECT_EQ(items[i].text, all[i]);
            EXPECT_EQ(items[i].height, 0.5);
        }
    }
}

// In the drawing itself a definition shows its tag; in a block the value, where it is constant.
TEST(Picture, DefinitionsOfAttributesShowTagsOrConstantValues) {
    BlockFile file;
    const auto definition = [&](const char* text, const char* tag, char flags) {
        return file.Record(15, 0, F64(1) + F64(2) + F64(0.5) + Text(text) + Text("PROMPT") + Text(tag) + flags);
    };
    file.blocks = {{"B", file.Definition(definition("OPEN", "TAG1", 0) + definition("CONSTANT", "TAG2", 2))}};
    file.entities = definition("VALUE", "TAG3", 0) + Insert(file, 0, 0, 0);
    Read drawing = ReadFileOf(file);
    drawing.variables.attributeMode = 1;
    const auto items = ItemsOf(drawing);
    ASSERT_EQ(items.size(), 2u);
    EXPECT_EQ(items[0].text, "TAG3");
    EXPECT_EQ(items[1].text, "CONSTANT");
}

// Its strokes are where they are in the block, moved by the place of the dimension's copy.
TEST(Picture, ADimensionIsShownByItsBlock) {
    BlockFile file;
    file.blocks = {{"*D0", file.Definition(Dot(file, 1, 2))}};
    file.entities = file.Record(23, 0, U16(0) + F64(7) + F64(8) + F64(0) + F64(70) + F64(80)) +
                    file.Record(23, 0, U16(0) + F64(7) + F64(8) + F64(0) + F64(70) + F64(80) + F64(30) + F64(40), 0, 1);
    EXPECT_EQ(PlacesOf(ItemsOf(ReadFileOf(file))), (Places{{1, 2}, {31, 42}}));
}

TEST(Picture, AShapeIsASquareInItsPlaceAndCounted) {
    BlockFile file;
    file.entities = file.Record(4, 0, F64(10) + F64(20) + F64(3) + "\x05");
    Shown shown;
    const auto count = ShowPicture(ReadFileOf(file), shown);
    EXPECT_EQ(count.shapes, 1);
    ASSERT_EQ(shown.items.size(), 1u);
    Places corners;
    for (const auto& p : shown.items[0].points) corners.emplace_back(p.x, p.y);
    EXPECT_EQ(corners, (Places{{10, 20}, {13, 20}, {13, 23}, {10, 23}, {10, 20}}));
}

TEST(Picture, TheFrameOfASplineIsLeftOutUnlessTheDrawingShowsIt) {
    constexpr char kOfSpline = 8, kOfFrame = 16;
    BlockFile file;
    const auto vertex = [&](double x, char flags) { return file.Record(20, 0, F64(x) + F64(0) + flags, 0, 8); };
    file.entities = file.Record(19, 0, "\x04", 0, 1) + vertex(1, kOfFrame) + vertex(2, kOfSpline) +
                    vertex(3, kOfSpline) + vertex(4, kOfFrame) + file.Record(17, 0, U32(1310));
    Read drawing = ReadFileOf(file);
    const auto xs = [&] {
        std::vector<double> found;
        for (const Item& item : ItemsOf(drawing))
            for (const auto& p : item.points) found.push_back(p.x);
        return found;
    };
    EXPECT_EQ(xs(), (std::vector<double>{2, 3}));
    drawing.variables.splineFrame = 1;
    EXPECT_EQ(xs().size(), 4u);
}

// The corners of a SOLID go zigzag; where fills are off, its outline is drawn.
TEST(Picture, ASolidIsFilledAroundOrOutlined) {
    BlockFile file;
    file.entities = file.Record(11, 0, F64(0) + F64(0) + F64(4) + F64(0) + F64(0) + F64(3) + F64(4) + F64(3));
    Read drawing = ReadFileOf(file);
    for (const int mode : {1, 0}) {
        drawing.variables.fillMode = mode;
        const auto items = ItemsOf(drawing);
        ASSERT_EQ(items.size(), 1u);
        EXPECT_EQ(items[0].kind, mode == 1 ? 'f' : 's');
        Places corners;
        for (const auto& p : items[0].points) corners.emplace_back(p.x, p.y);
        Places wanted = {{0, 0}, {4, 0}, {4, 3}, {0, 3}};
        if (mode == 0) wanted.emplace_back(0, 0);
        EXPECT_EQ(corners, wanted);
    }
}

}  // namespace
}  // namespace zm::test
