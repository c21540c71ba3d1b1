#include "dwg/reader/record.h"

#include <gtest/gtest.h>

#include <bit>

#include "dwg/reader/drawing.h"
#include "dwg/reader/dump.h"
#include "dwg/reader/picture.h"
#include "tests/dwg/reader/recorded.h"
#include "tests/support/random.h"

namespace {

using namespace zm::dwg::reader;
using zm::test::RecordedTemplate;

class BytesMaker {
 public:
    BytesMaker& U(std::uint64_t value, std::size_t width) {
        for (std::size_t i = 0; i < width; ++i) m_bytes.push_back(static_cast<std::uint8_t>(value >> (8 * i)));
        return *this;
    }
    BytesMaker& Real(double value) { return U(std::bit_cast<std::uint64_t>(value), 8); }
    BytesMaker& Head(unsigned kind, unsigned flags, unsigned length, unsigned layer, unsigned options) {
        return U(kind, 1).U(flags, 1).U(length, 2).U(layer, 2).U(options, 2);
    }
    const std::vector<std::uint8_t>& bytes() const { return m_bytes; }

 private:
    std::vector<std::uint8_t> m_bytes;
};

Record Read(const BytesMaker& made, bool r1009 = false) {
    Record record;
    EXPECT_TRUE(ReadRecord(made.bytes(), 0, r1009, made.bytes().size(), record));
    EXPECT_EQ(record.used, record.length);
    return record;
}

TEST(Record, LineHasItsHeightsInThePoints) {
    const Record line = Read(
        BytesMaker().Head(1, 11, 66, 3, 0).U(7, 1).U(2, 1).Real(0.5).Real(1).Real(2).Real(3).Real(4).Real(5).Real(6));
    EXPECT_STREQ(line.layout->name, "LINE");
    EXPECT_EQ(line.layer, 3);
    EXPECT_EQ(line.color, 7);
    EXPECT_EQ(line.linetype, 2);
    EXPECT_FALSE(line.elevation.has_value());
    EXPECT_EQ(line.thickness, 0.5);
    ASSERT_EQ(line.points.size(), 2u);
    EXPECT_EQ(line.points[1].z, 6.0);
}

TEST(Record, LineWithFlag4HasPointsWithoutHeight) {
    const Record line = Read(BytesMaker().Head(1, 4, 40, 0, 0).Real(1).Real(2).Real(3).Real(4));
    ASSERT_EQ(line.points.size(), 2u);
    EXPECT_EQ(line.points[1].x, 3.0);
    EXPECT_EQ(line.points[1].z, 0.0);
    EXPECT_FALSE(line.color.has_value());
}

TEST(Record, TextGivesItsBytesAndTheFieldsBehindThem) {
    BytesMaker made;
    made.Head(7, 7, 72, 0, 31).U(1, 1).U(0, 1).Real(12.5).Real(10).Real(20).Real(2.5).U(2, 2).U(0xD6, 1).U(0xD0, 1);
    made.Real(0.25).Real(0.8).Real(0.0).U(1, 1).U(2, 1);
    const Record text = Read(made);
    EXPECT_EQ(text.elevation, 12.5);
    ASSERT_NE(text.Find("text"), nullptr);
    EXPECT_EQ(text.Find("text")->text, "\xD6\xD0");
    EXPECT_EQ(text.Number("rotation", -1), 0.25);
    EXPECT_EQ(text.Number("style", -1), 1.0);
    EXPECT_EQ(text.Number("generation", -1), 2.0);
}

TEST(Record, ErasedBitIsNoPartOfTheKind) {
    const Record record = Read(BytesMaker().Head(2 | 0x80, 4, 24, 0, 0).Real(1).Real(2));
    EXPECT_TRUE(record.erased);
    EXPECT_EQ(record.kind, 2);
}

TEST(Record, Of1009HasAWideLinetypeAndTwoBytesBehind) {
    const Record line =
        Read(BytesMaker().Head(1, 7, 45, 0, 0).U(1, 1).U(5, 2).Real(1).Real(2).Real(3).Real(4).U(0, 2), true);
    EXPECT_EQ(line.linetype, 5);
    EXPECT_EQ(line.points[1].y, 4.0);
}

TEST(Record, HandleAndExtraFieldsOf1009ArePassed) {
    BytesMaker made;
    made.Head(2, 1 | 4 | 32 | 64, 35, 0, 0)
        .U(3, 1)
        .U(2, 1)
        .U(3, 2)
        .U(0xAABBCC, 3)
        .U(1, 1)
        .U(0x5A, 1)
        .Real(1)
        .Real(2)
        .U(0, 2);
    const Record point = Read(BytesMaker(made), true);
    EXPECT_EQ(point.color, 3);
    EXPECT_EQ(point.handle, "Z");
    EXPECT_EQ(point.points.at(0).y, 2.0);
}

// No drawing at hand has a polyline with the type of its curve.
TEST(Record, PolylineHasAllItsOptions) {
    BytesMaker made;
    made.Head(kPolyline, 0, 59, 0, 0x1FF).U(5, 1).Real(0.25).Real(0.75).Real(0).Real(0.6).Real(0.8);
    made.U(3, 2).U(4, 2).U(10, 2).U(11, 2).U(0x0106, 2);
    const Record polyline = Read(made);
    const std::pair<const char*, double> wanted[] = {{"closed", 5},
                                                     {"start_width", 0.25},
                                                     {"end_width", 0.75},
                                                     {"ext_x", 0},
                                                     {"ext_y", 0.6},
                                                     {"ext_z", 0.8},
                                                     {"m", 3},
                                                     {"n", 4},
                                                     {"m_density", 10},
                                                     {"n_density", 11},
                                                     {"curve", 0x0106}};
    for (const auto& [name, number] : wanted) EXPECT_EQ(polyline.Number(name, -1), number) << name;
    EXPECT_EQ(polyline.fields.size(), std::size(wanted));
}

TEST(Record, DimensionHasEachOfItsPoints) {
    BytesMaker made;
    made.Head(kDimension, 0, 184, 0, 0x1FF).U(7, 2).Real(1).Real(2).Real(3).Real(11).Real(12).Real(21).Real(22);
    made.U(1, 1).U(3, 2).U('9', 1).U('.', 1).U('5', 1);
    for (int point = 3; point <= 6; ++point) made.Real(10 * point + 1).Real(10 * point + 2).Real(10 * point + 3);
    made.Real(0.5).Real(1.5);
    const Record dimension = Read(made);
    EXPECT_EQ(dimension.Number("block", -1), 7);
    EXPECT_EQ(dimension.points.at(0).z, 3.0);
    const std::pair<const char*, double> wanted[] = {
        {"text_x", 11}, {"text_y", 12}, {"insert_x", 21}, {"insert_y", 22}, {"dimension_type", 1},
        {"x3", 31},     {"y3", 32},     {"z3", 33},       {"x4", 41},       {"y4", 42},
        {"z4", 43},     {"x5", 51},     {"y5", 52},       {"z5", 53},       {"x6", 61},
        {"y6", 62},     {"z6", 63},     {"leader", 0.5},  {"rotation", 1.5}};
    for (const auto& [name, number] : wanted) EXPECT_EQ(dimension.Number(name, -1), number) << name;
    ASSERT_NE(dimension.Find("text"), nullptr);
    EXPECT_EQ(dimension.Find("text")->text, "9.5");
}

TEST(Record, LengthThatDoesNotFitItsFieldsIsSeen) {
    Record record;
    const auto made = BytesMaker().Head(1, 4, 39, 0, 0).Real(1).Real(2).Real(3).Real(4);
    EXPECT_TRUE(ReadRecord(made.bytes(), 0, false, 40, record));
    EXPECT_EQ(record.used, 40u);
    EXPECT_EQ(record.length, 39);
}

TEST(Record, IsNotReadBehindTheSection) {
    Record record;
    const auto made = BytesMaker().Head(1, 4, 40, 0, 0).Real(1).Real(2).Real(3).Real(4);
    EXPECT_FALSE(ReadRecord(made.bytes(), 0, false, 39, record));
    EXPECT_FALSE(ReadRecord(made.bytes(), 35, false, 40, record));
    EXPECT_FALSE(ReadRecord(made.bytes(), 1000, false, 40, record));
}

TEST(Record, LengthBelowTheHeaderIsRefused) {
    Record record;
    const auto made = BytesMaker().Head(1, 4, 7, 0, 0).Real(1);
    EXPECT_FALSE(ReadRecord(made.bytes(), 0, false, 16, record));
    EXPECT_EQ(record.length, 7);
}

TEST(Drawing, TemplateHasItsTables) {
    const Drawing drawing(RecordedTemplate("plain"));
    EXPECT_TRUE(drawing.Known());
    EXPECT_EQ(drawing.header.version, 1006);
    EXPECT_EQ(drawing.header.codePage, 39);
    ASSERT_EQ(drawing.layers.size(), 1u);
    EXPECT_EQ(drawing.layers[0].name, "0");
    EXPECT_EQ(drawing.layers[0].color, 7);
    ASSERT_EQ(drawing.linetypes.size(), 8u);
    EXPECT_EQ(drawing.linetypes[4].name, "3");
    EXPECT_EQ(drawing.linetypes[4].length, 10.0);
    ASSERT_EQ(drawing.styles.size(), 1u);
    EXPECT_EQ(drawing.styles[0].font, "txt");
}

TEST(Drawing, Of1009HasLayersAndEntities) {
    const Drawing drawing(RecordedTemplate("R12.dwg"));
    EXPECT_EQ(drawing.header.version, 1009);
    EXPECT_FALSE(drawing.layers.empty());
    int lines = 0;
    drawing.ForEachEntity([&](const Record& record) {
        EXPECT_EQ(record.used, record.length) << record.offset;
        lines += record.kind == kLine;
        return true;
    });
    EXPECT_GT(lines, 0);
}

TEST(Drawing, InfoAndLinesAreThereForEveryRecordedDrawing) {
    for (const auto& recorded : zm::test::RecordedDrawings()) {
        const Drawing drawing(recorded.bytes);
        EXPECT_NE(Info(drawing, false).find("version 1006"), std::string::npos);
        EXPECT_EQ(Info(drawing, true).front(), '{');
        drawing.ForEachEntity([&](const Record& record) {
            EXPECT_FALSE(Line(drawing, record, false).empty());
            EXPECT_EQ(Line(drawing, record, true).back(), '}');
            return true;
        });
    }
}

TEST(Dump, LineNamesLayerLinetypeAndPoints) {
    auto bytes = RecordedTemplate("plain");
    const Drawing drawing(bytes);
    const auto made =
        BytesMaker().Head(1, 3, 58, 0, 0).U(7, 1).U(2, 1).Real(1.5).Real(2).Real(0).Real(4).Real(5).Real(0);
    Record record;
    ASSERT_TRUE(ReadRecord(made.bytes(), 0, false, 58, record));
    EXPECT_EQ(Line(drawing, record, false), "0 LINE layer=\"0\" color=7 linetype=\"1\" points=(1.5,2,0)(4,5,0)");
    EXPECT_EQ(Line(drawing, record, true),
              "{\"offset\":0,\"kind\":\"LINE\",\"erased\":false,\"layer\":\"0\",\"color\":7,\"linetype\":\"1\","
              "\"points\":[[1.5,"
              "2,0],[4,5,0]]}");
}

TEST(Drawing, OfAnyBytesNeverFails) {
    ZM_TRACE_SEED();
    zm::test::Random random(6);
    const auto& recorded = zm::test::RecordedDrawings();
    for (int round = 0; round < 300; ++round) {
        auto bytes = recorded[static_cast<std::size_t>(random.Int(0, static_cast<int>(recorded.size()) - 1))].bytes;
        for (int i = random.Int(1, 20); i > 0; --i)
            bytes[static_cast<std::size_t>(random.Int(0, static_cast<int>(bytes.size()) - 1))] =
                static_cast<std::uint8_t>(random.Bits());
        if (random.Int(0, 3) == 0)
            bytes.resize(static_cast<std::size_t>(random.Int(0, static_cast<int>(bytes.size()))));
        const Drawing drawing(std::move(bytes));
        Info(drawing, round % 2 == 0);
        drawing.ForEachEntity([&](const Record& record) { return !Line(drawing, record, true).empty(); });
        for (std::size_t i = 0; i < drawing.blocks.size(); ++i)
            drawing.ForEachInBlock(i, [&](const Record& record) { return !Line(drawing, record, false).empty(); });
    }
}

TEST(Picture, ExtentsHoldTheCapitalsOfAText) {
    auto bytes = RecordedTemplate("plain");
    const auto put = [&](std::size_t at, std::uint64_t value, std::size_t width) {
        for (std::size_t i = 0; i < width; ++i) bytes.at(at + i) = static_cast<std::uint8_t>(value >> (8 * i));
    };
    std::vector<std::uint8_t> text = {kText, 0, 37, 0, 0, 0, 0, 0};
    for (const double value : {100.0, 200.0, 2.0})  // place and height
        for (std::size_t i = 0; i < 8; ++i)
            text.push_back(static_cast<std::uint8_t>(std::bit_cast<std::uint64_t>(value) >> (8 * i)));
    text.insert(text.end(), {3, 0, 'F', 'O', 'O'});
    bytes.insert(bytes.begin() + 1310, text.begin(), text.end());
    put(24, 1310 + text.size(), 4);
    for (const std::size_t field : {50u, 60u, 70u, 80u, 90u}) {  // the tables moved
        std::uint64_t address = 0;
        for (std::size_t i = 4; i-- > 0;) address = address << 8 | bytes[field + i];
        put(field, address + text.size(), 4);
    }
    Point low, high;
    ASSERT_TRUE(Extents(Drawing(bytes), low, high));
    EXPECT_EQ(low.x, 100.0);
    EXPECT_EQ(low.y, 200.0);
    EXPECT_EQ(high.y, 202.0);
    EXPECT_GE(high.x, 100.0 + 3 * 2.0 * 1.25);  // an O of DejaVu Sans, where digits are as wide as high
    EXPECT_LE(high.x, 100.0 + 3 * 2.0 * 1.4);
}

}  // namespace
