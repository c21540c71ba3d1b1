// Blocks imported from drawing files: whole, and so that other programs read them.
#include <cmath>
#include <numbers>

#include "dwg/reader/check.h"
#include "dwg/writer/state.h"
#include "dwg/writer/writer.h"
#include "tests/dwg/block_file.h"
#include "tests/dwg/reader/real_drawings.h"
#include "tests/dwg/shown.h"

namespace zm::test {
namespace {

using dwg::reader::Point;
using dwg::reader::Record;
using Read = dwg::reader::Drawing;

constexpr double kScale = 2.0, kTurn = 30.0;  // degrees

Read ReadBack(const Drawing& drawing) {
    return Read({drawing.bytes().begin(), drawing.bytes().end()});
}

// The items of a drawing as an insert at x, y shows them.
std::vector<Shown::Item> Inserted(std::vector<Shown::Item> items, const Point& base, double x, double y) {
    const double c = std::cos(kTurn * std::numbers::pi / 180), s = std::sin(kTurn * std::numbers::pi / 180);
    for (Shown::Item& item : items) {
        for (Point& p : item.points) {
            const double dx = kScale * (p.x - base.x), dy = kScale * (p.y - base.y);
            p = {x + c * dx - s * dy, y + s * dx + c * dy, p.z};
        }
        item.height *= kScale;
    }
    return items;
}

void ExpectSame(const std::vector<Shown::Item>& wanted, const std::vector<Shown::Item>& found) {
    ASSERT_EQ(wanted.size(), found.size());
    for (std::size_t i = 0; i < wanted.size(); ++i) {
        SCOPED_TRACE(i);
        EXPECT_EQ(wanted[i].kind, found[i].kind);
        EXPECT_EQ(wanted[i].color, found[i].color);
        EXPECT_EQ(wanted[i].text, found[i].text);
        EXPECT_NEAR(wanted[i].height, found[i].height, 1e-6);
        ASSERT_EQ(wanted[i].points.size(), found[i].points.size());
        for (std::size_t k = 0; k < wanted[i].points.size(); ++k) {
            EXPECT_NEAR(wanted[i].points[k].x, found[i].points[k].x, 1e-5);
            EXPECT_NEAR(wanted[i].points[k].y, found[i].points[k].y, 1e-5);
        }
    }
}

class Import : public DrawingTest {
 protected:
    Import() { dwg::SetBlockImport(true); }

    // Two references to the file X.dwg with these bytes.
    Drawing InsertTwice(const std::string& bytes) {
        Write("X.dwg", bytes);
        Open();
        _LDBinsert(100, 200, kScale, kScale, kTurn, "X");
        _LDBinsert(-50, 70, kScale, kScale, kTurn, "X");
        const Drawing closed = Close();
        for (const std::string& message : Messages()) ADD_FAILURE() << message;
        for (const auto& problem : Check(ReadBack(closed)).problems) ADD_FAILURE() << problem.text;
        return closed;
    }
};

std::vector<Record> EntitiesInOrder(const Read& drawing) {
    std::vector<Record> records;
    EXPECT_TRUE(ForEachInOrder(drawing, [&](const Record& record) { return records.push_back(record), true; }));
    return records;
}

std::vector<Record> BlockInOrder(const Read& drawing, std::size_t block) {
    std::vector<Record> records;
    EXPECT_TRUE(
        ForEachInBlockInOrder(drawing, block, [&](const Record& record) { return records.push_back(record), true; }));
    return records;
}

// A record and what became of it: all but numbers of tables, which are compared by name.
void ExpectImported(const Read& from, const Record& was, const Read& to, const Record& is) {
    EXPECT_EQ(was.kind, is.kind);
    EXPECT_EQ(was.options, is.options);
    EXPECT_EQ(was.color, is.color);
    EXPECT_EQ(was.elevation, is.elevation);
    EXPECT_EQ(was.thickness, is.thickness);
    EXPECT_EQ(was.handle, is.handle);
    EXPECT_EQ(was.ByBlock(), is.ByBlock());
    EXPECT_EQ(was.ByLayer(), is.ByLayer());
    EXPECT_EQ(from.layers.at(was.layer).name, to.layers.at(is.layer).name);
    const Point base = from.variables.base;
    ASSERT_EQ(was.points.size(), is.points.size());
    for (std::size_t i = 0; i < was.points.size(); ++i) {
        EXPECT_EQ(was.points[i].x - base.x, is.points[i].x);
        EXPECT_EQ(was.points[i].y - base.y, is.points[i].y);
        EXPECT_EQ(was.points[i].z, is.points[i].z);
    }
    ASSERT_EQ(was.fields.size(), is.fields.size());
    for (std::size_t i = 0; i < was.fields.size(); ++i) {
        const auto& a = was.fields[i];
        const auto& b = is.fields[i];
        const auto role = a.layout->role;
        if (role == dwg::FieldRole::link) continue;
        if (role == dwg::FieldRole::style) {
            EXPECT_EQ(from.styles.at(static_cast<std::size_t>(a.number)).font,
                      to.styles.at(static_cast<std::size_t>(b.number)).font);
        } else if (role == dwg::FieldRole::block) {
            EXPECT_EQ(from.blocks.at(static_cast<std::size_t>(a.number)).name,
                      to.blocks.at(static_cast<std::size_t>(b.number)).name);
        } else {
            EXPECT_EQ(a.number, b.number) << a.layout->name;
        }
        EXPECT_EQ(a.text, b.text);
    }
}

TEST_F(Import, EachRealDrawingArrivesWhole) {
    ZM_NEED_REAL_DRAWINGS();
    for (const RealDrawing& real : RealDrawings()) {
        SCOPED_TRACE(real.name);
        const Read source(real.bytes);
        const Drawing closed = InsertTwice({real.bytes.begin(), real.bytes.end()});
        const Read result = ReadBack(closed);
        ASSERT_FALSE(result.blocks.empty());
        EXPECT_EQ(result.blocks[0].name, "X");
        // Record by record, between BLOCK and ENDBLK.
        const auto wanted = EntitiesInOrder(source);
        const auto found = BlockInOrder(result, 0);
        ASSERT_EQ(found.size(), wanted.size() + 2);
        for (std::size_t i = 0; i < wanted.size(); ++i) ExpectImported(source, wanted[i], result, found[i + 1]);
        // By the list: as many of each kind as it has in the entity section, the jump's polyline included.
        std::size_t listed = 0;
        for (const auto& line : real.Of("entity"))
            listed += line.at("sec") != "blocks" && line.at("type") != "JUMP" && !line.value("erased", false);
        EXPECT_EQ(found.size(), listed + 2);
        // And as it is seen, twice.
        const auto plain = ItemsOf(source);
        auto twice = Inserted(plain, source.variables.base, 100, 200);
        const auto second = Inserted(plain, source.variables.base, -50, 70);
        twice.insert(twice.end(), second.begin(), second.end());
        // An attribute's definition is seen in a drawing, but not in a block.
        std::erase_if(twice, [](const auto& item) { return item.text.compare(0, 4, "ATTR") == 0; });
        ExpectSame(twice, ItemsOf(result));
        host.boxes.clear();
    }
}

TEST_F(Import, MovesEveryPointByTheBasePoint) {
    BlockFile file;
    file.baseX = 10;
    file.baseY = 20;
    const std::string point = F64(11) + F64(22), solid = point + F64(33);
    file.entities = file.Record(7, 0, point + F64(2) + U16(2) + "AB" + F64(15) + F64(25), 0, 64) +
                    file.Record(22, 0, solid + solid + solid + solid);
    const Read result = ReadBack(InsertTwice(file.Bytes()));
    const auto records = BlockInOrder(result, 0);
    ASSERT_EQ(records.size(), 4u);
    EXPECT_EQ(records[1].points[0].x, 1.0);
    EXPECT_EQ(records[1].Number("align_x", 0), 5.0);
    EXPECT_EQ(records[1].Number("align_y", 0), 5.0);
    for (const Point& corner : records[2].points) {
        EXPECT_EQ(corner.x, 1.0);
        EXPECT_EQ(corner.y, 2.0);
        EXPECT_EQ(corner.z, 33.0);
    }
}

TEST_F(Import, TakesTheLibrarysOwnDrawings) {
    Open("OWN.dwg");
    SetLay("WATER");
    SetStyle(0, "SONG", "hztxt", 0.8, 15);
    _LDBline(1, 2, 3, 4);
    const double xy[] = {0, 0, 5, 0, 5, 5};
    _LDBpolyline(xy, 3);
    const double xyz[] = {0, 0, 1, 5, 0, 2, 5, 5, 3};
    _LDBpolyline3d(xyz, 3);
    _LDBtext(1, 7, 8, 2.5, 10, "\xD6\xD0");
    Close();
    Open("outer.dwg");
    _LDBinsert(10, 20, 1, 1, 0, "OWN");
    const Drawing closed = Close();
    EXPECT_EQ(Messages(), std::vector<std::string>());
    const Read result = ReadBack(closed);
    const Read own = ReadBack(ReadDrawing("OWN.dwg"));
    EXPECT_EQ(BlockInOrder(result, 0).size(), EntitiesInOrder(own).size() + 2);
    EXPECT_TRUE(Check(result).problems.empty());
    EXPECT_EQ(result.styles.at(1).name, "SONG");
}

TEST_F(Import, StylesOfOneNameAndOtherFontsStayApart) {
    Open("A.dwg");
    SetStyle(0, "SONG", "first", 1, 0);
    _LDBtext(1, 0, 0, 1, 0, "A");
    Close();
    Open("B.dwg");
    SetStyle(0, "SONG", "second", 1, 0);
    _LDBtext(1, 0, 0, 1, 0, "B");
    Close();
    Open();
    SetStyle(0, "STANDARD", "txt", 1, 0);
    _LDBinsert(0, 0, 1, 1, 0, "A");
    _LDBinsert(0, 0, 1, 1, 0, "B");
    const Read result = ReadBack(Close());
    ASSERT_EQ(result.styles.size(), 3u);
    EXPECT_EQ(result.styles[1].font, "first");
    EXPECT_EQ(result.styles[2].font, "second");
    EXPECT_EQ(result.styles[2].name, "SONG_2");
}

TEST_F(Import, AReferenceHasTheCurrentColour) {
    BlockFile file;
    file.entities = file.Record(2, 4, F64(1) + F64(2));
    Write("X.dwg", file.Bytes());
    Open();
    _LDBsetcolor(3);
    _LDBinsert(10, 20, 2, 3, 30, "X");
    const Read result = ReadBack(Close());
    const auto records = EntitiesInOrder(result);
    ASSERT_EQ(records.size(), 1u);
    EXPECT_EQ(records[0].color, 3);
    EXPECT_EQ(records[0].points[0].x, 10.0);
    EXPECT_EQ(records[0].points[0].y, 20.0);
    EXPECT_EQ(records[0].Number("scale_x", 0), 2.0);
    EXPECT_EQ(records[0].Number("scale_y", 0), 3.0);
    EXPECT_EQ(records[0].Number("scale_z", 0), 2.0);
    EXPECT_NEAR(records[0].Number("rotation", 0), 0.5235987756, 1e-9);
    EXPECT_TRUE(Check(result).problems.empty());
}

TEST_F(Import, TellsOnceWhatItLeavesOut) {
    BlockFile file;
    file.version = 1009;
    const std::string point = F64(1) + F64(2);
    const std::string extended = std::string("\x02") + U16(3) + "abc", paper = std::string("\x04");
    file.entities = file.Record(2, 4, point) + file.Record(2, 68, extended + point) +
                    file.Record(2, 68, paper + U16(1) + point) + file.Record(2, 68, extended + point);
    Write("PAPER.dwg", file.Bytes());
    file.entities = file.Record(2, 4, point);
    Write("PLAIN.dwg", file.Bytes());
    Open();
    dwg::SetBlockImport(true);
    for (const char* name : {"PAPER", "PLAIN", "PAPER"}) _LDBinsert(1, 2, 1, 1, 0, name);
    ASSERT_EQ(Messages(), std::vector<std::string>{});
    EXPECT_STREQ(dwg::BlockImportNote(0),
                 "PAPER.dwg: left out of the block are 1 records of paper space and the extended data of 2 records.");
    EXPECT_EQ(dwg::BlockImportNote(1), nullptr);
    EXPECT_EQ(dwg::BlockImportNote(-1), nullptr);
    const Drawing drawing = Close();
    Open();
    EXPECT_EQ(dwg::BlockImportNote(0), nullptr);
    Close();
    dwg::SetBlockImport(false);
}

// A block that does not come is reported once, and asked for no more.
TEST_F(Import, ABlockThatCannotBeHadIsToldOnce) {
    Write("BAD.dwg", "AC1006");
    Open();
    dwg::SetBlockImport(true);
    for (int i = 0; i < 3; ++i) {
        EXPECT_FALSE(dwg::BlockAtHand("BAD"));
        _LDBinsert(1, 2, 1, 1, 0, "BAD");
    }
    EXPECT_EQ(Messages().size(), 1u);
    Close();
    Open();
    EXPECT_FALSE(dwg::BlockAtHand("BAD"));
    EXPECT_EQ(Messages().size(), 2u) << "another drawing asks again";
    Close();
    dwg::SetBlockImport(false);
}

TEST_F(Import, RefusesACircleAndLeavesTheDrawingAsItWas) {
    BlockFile file;
    file.blocks = {{"A", ""}};
    // A reference with a number of two bytes, as other programs write it.
    const std::string inner = FromHex("0e001a0000000000") + U16(0) + F64(1) + F64(2);
    file.blocks = {{"A", file.Definition(inner)}};
    file.entities = inner;
    Write("RING.dwg", file.Bytes());
    Open();
    _LDBline(1, 2, 3, 4);
    _LDBinsert(0, 0, 1, 1, 0, "RING");
    const Drawing closed = Close();
    ASSERT_EQ(Messages().size(), 1u);
    EXPECT_NE(Messages()[0].find("block A contains itself"), std::string::npos) << Messages()[0];
    Open();
    _LDBline(1, 2, 3, 4);
    EXPECT_EQ(Close().bytes(), closed.bytes());
}

TEST_F(Import, NestsToAnyDepth) {
    BlockFile file;
    constexpr int kDepth = 100;
    for (int i = 0; i < kDepth; ++i) {
        const std::string inner = FromHex("0e001a0000000000") + U16(static_cast<unsigned>(i + 1)) + F64(1) + F64(0);
        const std::string leaf = file.Record(2, 4, F64(0) + F64(0));
        file.blocks.push_back({"B" + std::to_string(i), file.Definition(i + 1 < kDepth ? inner : leaf)});
    }
    file.entities = FromHex("0e001a0000000000") + U16(0) + F64(0) + F64(0);
    const Read result = ReadBack(InsertTwice(file.Bytes()));
    EXPECT_EQ(result.blocks.size(), kDepth + 1u);
}

TEST_F(Import, ThatIsDamagedAnywhereIsLeftOutOrSound) {
    ZM_NEED_REAL_DRAWINGS();
    for (const RealDrawing& real : RealDrawings()) {
        if (real.name.find("entities-2d") == std::string::npos && real.name.find("JUMP1") == std::string::npos)
            continue;
        SCOPED_TRACE(real.name);
        for (std::size_t i = 0; i < real.bytes.size(); i += 7) {
            std::string bytes(real.bytes.begin(), real.bytes.end());
            bytes[i] = static_cast<char>(i % 2 == 0 ? 0xFF : bytes[i] ^ 1 << i % 8);
            Write("X.dwg", bytes);
            Open();
            _LDBinsert(0, 0, 1, 1, 0, "X");
            const auto report = Check(ReadBack(ReadDrawing((_LDBclosedwg(), "out.dwg"))));
            for (const auto& problem : report.problems) ADD_FAILURE() << i << ": " << problem.text;
            host.boxes.clear();
        }
    }
}

}  // namespace
}  // namespace zm::test
