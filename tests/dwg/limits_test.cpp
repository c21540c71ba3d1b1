// Limits of a drawing: what goes beyond is left out or cut, and reported once.
#include <cmath>
#include <limits>

#include "dwg/writer/state.h"
#include "dwg/writer/writer.h"
#include "tests/dwg/block_file.h"

namespace zm::test {
namespace {

class Limits : public DrawingTest {
 protected:
    Limits() { Open(); }
    void ExpectOneMessage(const char* part) {
        ASSERT_EQ(Messages().size(), 1u);
        EXPECT_NE(Messages()[0].find(part), std::string::npos) << Messages()[0];
    }
};

TEST_F(Limits, The201stLayerIsLeftOutAndTheLayerBeforeStaysCurrent) {
    for (int i = 1; i <= 199; ++i) SetLay("L" + std::to_string(i));
    EXPECT_TRUE(host.boxes.empty());
    SetLay("ONE TOO MANY");
    SetLay("TWO TOO MANY");
    ExpectOneMessage("200 layers");
    EXPECT_EQ(dwg::state().now.layer, 199);
    SetLay("L7");
    EXPECT_EQ(dwg::state().now.layer, 7);
    const Drawing drawing = Close();
    EXPECT_EQ(drawing.u32(56), 200u);
    EXPECT_EQ(NameOf(drawing.Layer(199)), "L199");
    EXPECT_EQ(drawing.size(), drawing.u32(28));
}

TEST_F(Limits, The101stLinetypeIsLeftOut) {
    std::string file;
    for (int i = 100; i < 200; ++i) file += "*T" + std::to_string(i) + ",x\nA,1\n";
    Write("ACAD.LIN", file);
    for (int i = 100; i < 192; ++i) SetLtype("T" + std::to_string(i));
    EXPECT_TRUE(host.boxes.empty());
    SetLtype("T192");
    SetLtype("T193");
    ExpectOneMessage("100 linetypes");
    EXPECT_EQ(dwg::state().now.linetype, 99);
    EXPECT_EQ(Close().u32(76), 100u);
}

TEST_F(Limits, The11thStyleIsLeftOut) {
    for (int i = 1; i <= 9; ++i) SetStyle(0, "S" + std::to_string(i), "txt");
    SetStyle(0, "S10", "other");
    SetStyle(0, "S11", "other");
    ExpectOneMessage("10 text styles");
    EXPECT_EQ(dwg::state().now.style, 9);
    const Drawing drawing = Close();
    EXPECT_EQ(drawing.u32(66), 10u);
    EXPECT_STREQ(drawing.Style(9).c_str() + 66, "txt");
}

TEST_F(Limits, The501stBlockIsLeftOutAndTheBlocksThatAreThereCanStillBeReferredTo) {
    const std::string empty = BlockFile().Bytes();
    for (int i = 0; i < 501; ++i) {
        const std::string name = "B" + std::to_string(i);
        Write(name + ".dwg", empty);
        _LDBinsert(1, 2, 1, 1, 0, name.c_str());
    }
    ExpectOneMessage("500 blocks");
    EXPECT_NE(Messages()[0].find("B500.dwg"), std::string::npos);
    _LDBinsert(1, 2, 1, 1, 0, "B499");
    const Drawing drawing = Close();
    EXPECT_EQ(drawing.u32(46), 500u);
    ASSERT_EQ(drawing.Entities().size(), 501u);
    EXPECT_EQ(drawing.Entities()[500].substr(8, 2), U16(499));
}

TEST_F(Limits, ANestedBlockWithoutASlotLeavesItsFileOut) {
    const std::string empty = BlockFile().Bytes();
    for (int i = 0; i < 499; ++i) {
        const std::string name = "B" + std::to_string(i);
        Write(name + ".dwg", empty);
        _LDBinsert(1, 2, 1, 1, 0, name.c_str());
    }
    BlockFile nested;
    nested.blocks = {{"LEAF", nested.Definition("")}};
    nested.entities = nested.Reference(0, 1, 2);
    Write("TREE.dwg", nested.Bytes());
    _LDBinsert(1, 2, 1, 1, 0, "TREE");
    ExpectOneMessage("500 blocks");
    const Drawing drawing = Close();
    EXPECT_EQ(drawing.u32(46), 499u);
    EXPECT_EQ(drawing.BlockSection().size(), 499u * 32);
}

TEST_F(Limits, ABlockSectionPast64000BytesLeavesTheFileOut) {
    BlockFile file;
    for (int i = 0; i < 900; ++i) file.entities += file.Record(1, 4, F64(1) + F64(2) + F64(3) + F64(4));
    Write("BIG.dwg", file.Bytes());
    Write("BIGGER.dwg", file.Bytes());
    _LDBinsert(1, 2, 1, 1, 0, "BIG");
    const Drawing before = [&] {
        _LDBinsert(1, 2, 1, 1, 0, "BIGGER");
        return Close();
    }();
    ExpectOneMessage("64000 bytes");
    EXPECT_EQ(before.u32(46), 1u);
    EXPECT_EQ(before.Entities().size(), 1u);
    EXPECT_EQ(before.BlockSection().size(), 900u * 40 + 32);
    EXPECT_EQ(before.u32(36), before.u32(28) + 900 * 40 + 32);
}

TEST_F(Limits, ABlockSectionOfExactly64000BytesIsFull) {
    BlockFile file;
    // 24 + 8 bytes of frame, 63968 bytes of records.
    for (int i = 0; i < 1998; ++i) file.entities += file.Record(3, 0, F64(1) + F64(2) + F64(3));
    file.entities += file.Record(99, 0, std::string(24, 'x'));
    ASSERT_EQ(file.entities.size(), 63968u);
    Write("FULL.dwg", file.Bytes());
    _LDBinsert(1, 2, 1, 1, 0, "FULL");
    EXPECT_TRUE(host.boxes.empty());
    EXPECT_EQ(Close().BlockSection().size(), 64000u);
}

TEST_F(Limits, NamesOf32BytesAreCutTo31) {
    const std::string name(32, 'N');
    SetLay(name);
    SetLay(name + "MORE");
    SetStyle(0, name, "txt");
    SetLay(std::string(31, 'N'));
    ExpectOneMessage("31 bytes");
    const Drawing drawing = Close();
    EXPECT_EQ(drawing.u32(56), 2u);
    EXPECT_EQ(NameOf(drawing.Layer(1)), std::string(31, 'N'));
    EXPECT_EQ(NameOf(drawing.Style(1)), std::string(31, 'N'));
}

TEST_F(Limits, ANameIsNotCutInsideACharacter) {
    SetLay(std::string(30, 'N') + "\xC2\xB7\xC2\xB7");
    EXPECT_EQ(NameOf(Close().Layer(1)), std::string(30, 'N'));
}

TEST_F(Limits, ANameOf31BytesFits) {
    SetLay(std::string(31, 'N'));
    EXPECT_TRUE(host.boxes.empty());
    EXPECT_EQ(NameOf(Close().Layer(1)), std::string(31, 'N'));
}

TEST_F(Limits, ABlockNameOf32BytesIsLeftOut) {
    const std::string name(32, 'N');
    Write(name + ".dwg", BlockFile().Bytes());
    Write(std::string(31, 'N') + ".dwg", BlockFile().Bytes());
    _LDBinsert(1, 2, 1, 1, 0, name.c_str());
    ExpectOneMessage("31 bytes");
    _LDBinsert(1, 2, 1, 1, 0, name.c_str() + 1);
    const Drawing drawing = Close();
    EXPECT_EQ(drawing.Entities().size(), 1u);
    EXPECT_EQ(NameOf(drawing.Block(0)), std::string(31, 'N'));
}

TEST_F(Limits, FontNamesOf64BytesAreCutTo63) {
    SetStyle(0, "S", std::string(64, 'f') + "," + std::string(70, 'b'));
    ExpectOneMessage("63 bytes");
    const std::string record = Close().Style(1);
    EXPECT_EQ(record.substr(66), std::string(63, 'f') + '\0' + std::string(63, 'b') + '\0');
}

TEST_F(Limits, ALongTextIsCutWhereItsRecordsLengthEnds) {
    _LDBtext(1, 0, 0, 1, 0, std::string(32697, 'x').c_str());
    EXPECT_TRUE(host.boxes.empty());
    _LDBtext(1, 0, 0, 1, 0, std::string(32698, 'x').c_str());
    _LDBfittext(0, 0, 9, 9, 1, std::string(100000, 'x').c_str());
    ExpectOneMessage("32697 bytes");
    const auto records = Close().Entities();
    ASSERT_EQ(records.size(), 3u);
    for (const std::string& record : records) EXPECT_EQ(record.size(), 32767u);
}

TEST_F(Limits, EntitiesWithACoordinateThatIsNoFiniteNumberAreLeftOut) {
    const double nan = std::nan("");
    const double infinite = std::numeric_limits<double>::infinity();
    const double xy[] = {0, 0, 1, nan};
    const double xyz[] = {0, 0, 0, 1, 1, -infinite};
    _LDBline(nan, 0, 1, 1);
    _LDBline(0, 0, 1, infinite);
    _LDBpoint(-infinite, 0);
    _LDBcircle(0, 0, nan);
    _LDBarc(0, 0, 1, nan, 1);
    _LDBtrace(0, 0, 0, 0, 0, 0, 0, nan);
    _LDBsolid(nan, 0, 0, 0, 0, 0, 0, 0);
    _LDBface3d(0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, nan);
    _LDBpolyline(xy, 2);
    _LDBpolyline3d(xyz, 2);
    _LDBtext(1, nan, 0, 1, 0, "x");
    _LDBtext(1, 0, 0, nan, 0, "x");
    _LDBtext(1, 0, 0, 1, nan, "x");
    _LDBtext(2, 0, 0, 1e308, 0, "xxxxxxxxxxxxxxxxxxxx");
    _LDBinttext(1, nan, 0, 1, 0, 1);
    _LDBrealtext(1, nan, 0, 1, 0, 1);
    _LDBfittext(nan, 0, 1, 1, 0, "x");
    _LDBinsert(nan, 0, 1, 1, 0, "TREE");
    ExpectOneMessage("no finite number");
    EXPECT_EQ(Close().bytes(), drawingTemplate);
}

TEST_F(Limits, ATextLeftOutDoesNotMoveThePositionOfTheTextBefore) {
    _LDBtext(1, 10, 20, 1, 0, "x");
    _LDBtext(1, std::nan(""), 5, 1, 0, "x");
    _LDBtext(4, 1, 2, 1, 0, "x");
    EXPECT_EQ(Close().Entities().at(1).substr(18, 16), F64(10) + F64(20));
}

TEST_F(Limits, ARealThatIsNoFiniteNumberIsATextAllTheSame) {
    _LDBrealtext(1, 0, 0, 1, 0, std::numeric_limits<double>::infinity());
    EXPECT_TRUE(host.boxes.empty());
    EXPECT_EQ(Close().Entities().at(0).substr(44, 3), "inf");
}

TEST_F(Limits, AnElevationOrThicknessThatIsNoFiniteNumberKeepsTheOneBefore) {
    _LDBsetelev(12.5, 0.75);
    _LDBsetelev(std::nan(""), -std::numeric_limits<double>::infinity());
    SetDwgElevation(std::nan(""));
    ExpectOneMessage("no finite number");
    EXPECT_EQ(dwg::state().now.elevation, 12.5);
    EXPECT_EQ(dwg::state().now.thickness, 0.75);
}

TEST_F(Limits, AStylesWidthThatIsNoFiniteNumberKeepsTheOneBefore) {
    SetStyle(0, "STANDARD", "txt", std::nan(""), std::nan(""));
    ExpectOneMessage("no finite number");
    EXPECT_EQ(Close().Style(0).substr(41, 16), F64(1) + F64(0));
}

// The longest file is lowered, so that a small drawing meets the limit.
class LongestFile : public Limits {
 protected:
    LongestFile() {
        _LDBclosedwg();
        dwg::state().longestFile = 5000;
        Open("small.dwg");
    }
    Drawing CloseSmall() {
        const Drawing drawing = Close();
        EXPECT_LE(drawing.size(), 5000u);
        EXPECT_EQ(drawing.size(), std::max(drawing.u32(28), drawing.u32(36)));
        return drawing;
    }
};

TEST_F(LongestFile, EntitiesThatDoNotFitAreLeftOut) {
    for (int i = 0; i < 100; ++i) _LDBline(1, 2, 3, 4);
    _LDBpoint(1, 2);
    ExpectOneMessage("4 GiB");
    // 3037 bytes of template and 50 of a closing record leave room for 28 lines of 66 bytes and a point.
    const auto records = CloseSmall().Entities();
    ASSERT_EQ(records.size(), 29u);
    EXPECT_EQ(records.back().size(), 42u);
}

TEST_F(LongestFile, APolylineIsWrittenWholeOrNotAtAll) {
    const std::vector<double> xy(2 * 50, 1.0);
    _LDBpolyline(xy.data(), 30);
    EXPECT_TRUE(host.boxes.empty());
    _LDBpolyline(xy.data(), 50);
    ExpectOneMessage("4 GiB");
    _LDBpoint(1, 2);
    EXPECT_EQ(CloseSmall().Entities().size(), 1u + 30 + 1 + 1);
}

TEST_F(LongestFile, APolylineWithHeightsHasRoomForItsClosingRecord) {
    const std::vector<double> xyz(3 * 50, 1.0);
    _LDBpolyline3d(xyz.data(), 50);
    ExpectOneMessage("4 GiB");
    _LDBpolyline3d(xyz.data(), 43);  // 42 at most for its opening, 43 vertices, 30: 1878 of 1913 bytes
    const Drawing drawing = Close();
    EXPECT_EQ(drawing.Entities().size(), 1u + 43 + 1);
    EXPECT_EQ(drawing.size(), drawing.u32(36) + 50);
    EXPECT_LE(drawing.size(), 5000u);
}

TEST_F(LongestFile, TableRecordsThatDoNotFitAreLeftOut) {
    for (int i = 0; i < 27; ++i) _LDBline(1, 2, 3, 4);  // 131 bytes are left
    for (int i = 0; i < 5; ++i) SetLay("L" + std::to_string(i));
    SetStyle(0, "S", "txt");
    SetLtype("DASHED");
    ExpectOneMessage("4 GiB");
    const Drawing drawing = CloseSmall();
    EXPECT_EQ(drawing.u32(56), 4u);
    EXPECT_EQ(drawing.u32(66), 1u);
    EXPECT_EQ(drawing.u32(76), 8u);
}

TEST_F(LongestFile, ABlockThatDoesNotFitIsLeftOutWithItsReference) {
    BlockFile file;
    for (int i = 0; i < 50; ++i) file.entities += file.Record(1, 4, F64(1) + F64(2) + F64(3) + F64(4));
    Write("BIG.dwg", file.Bytes());
    Write("SMALL.dwg", BlockFile().Bytes());
    _LDBinsert(1, 2, 1, 1, 0, "BIG");
    ExpectOneMessage("BIG.dwg does not fit");
    _LDBinsert(1, 2, 1, 1, 0, "SMALL");
    const Drawing drawing = CloseSmall();
    EXPECT_EQ(drawing.u32(46), 1u);
    EXPECT_EQ(NameOf(drawing.Block(0)), "SMALL");
    EXPECT_EQ(drawing.Entities().size(), 1u);
}

TEST_F(Limits, AreToldAgainInTheNextSession) {
    _LDBpoint(std::nan(""), 0);
    Close();
    Open("second.dwg");
    _LDBpoint(std::nan(""), 0);
    EXPECT_EQ(Messages().size(), 2u);
}

}  // namespace
}  // namespace zm::test
