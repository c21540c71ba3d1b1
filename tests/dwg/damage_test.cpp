// Damaged block files and templates: a message, and a drawing that is as it was.
#include <cmath>
#include <cstdlib>

#include "dwg/writer/state.h"
#include "dwg/writer/writer.h"
#include "tests/dwg/block_file.h"

namespace zm::test {
namespace {

// A file with every kind of record, both layers, and nested blocks if wanted.
std::string RichFile(int version, bool nested) {
    BlockFile file;
    file.version = version;
    file.baseX = 1;
    file.layers = {{"0", 7, 0}, {"WATER", 5, 1}};
    file.styles = {"STANDARD", "SONG"};
    const std::string point = F64(11) + F64(22), solid = F64(11) + F64(22) + F64(33);
    const std::string linetype = file.later() ? std::string("\x02\x00", 2) : std::string("\x02");
    const std::string polyline = file.Record(19, 131, "\x05" + linetype + F64(1), 1, 2) +
                                 file.Record(20, 1, "\x03" + point + F64(0.5), 1, 4) + file.Record(20, 0, point) +
                                 file.Record(17, 0, U32(0));
    file.entities = file.Record(1, 7, "\x05" + linetype + point + point, 1) + file.Record(2, 4, point) +
                    file.Record(3, 2, linetype + point + F64(3)) +
                    file.Record(7, 1, "\x05" + point + F64(2) + U16(2) + "AB" + F64(1) + "\x01", 1, 9) +
                    file.Record(8, 0, point + F64(1) + F64(2) + F64(3)) +
                    file.Record(9, 0, point + point + point + point) +
                    file.Record(11, 0, point + point + point + point) + polyline +
                    file.Record(4, 0, point + F64(1) + "\x07" + std::string(1, '\0'), 0, 2) +
                    file.Record(21, 3, "\x05" + linetype + solid + solid) +
                    file.Record(22, 0, solid + solid + solid + solid + U16(1), 0, 1) + file.Record(99, 0, "other");
    if (nested) {
        file.blocks = {{"LEAF", file.Definition(file.Record(1, 4, point + point) + polyline)},
                       {"TWIG", file.Definition(file.Reference(0, 1, 2))}};
        // A reference with an attribute, of a kind that is copied whole.
        const std::string attribute =
            file.Record(16, 0, F64(1) + F64(2) + F64(3) + U16(2) + "AB" + U16(1) + "T" + std::string(1, '\0')) +
            file.Record(17, 0, U32(0));
        std::string owner = file.Reference(0, 5, 6);
        file.entities += file.Reference(1, 3, 4) + owner.replace(1, 1, "\x80") + attribute;
    }
    return file.Bytes();
}

struct DamageCase {
    const char* name;
    int version;
    bool nested;
};
void PrintTo(const DamageCase& c, std::ostream* out) {
    *out << c.name;
}

class DamagedBlocks : public DrawingTest, public testing::WithParamInterface<DamageCase> {
 protected:
    DamagedBlocks() {
        Open();
        _LDBline(1, 2, 3, 4);
        _LDBline(5, 6, 7, 8);
        m_without = Close().bytes();
    }
    // Inserts a file with these bytes between two lines. The drawing is proven whatever they are, and it is as if the
    // block had never been asked for if a message says so.
    void Try(const std::string& bytes) {
        host.boxes.clear();
        // Fresh files are made faster than old ones are replaced.
        std::filesystem::remove(dir / "X.dwg");
        std::filesystem::remove(dir / "out.dwg");
        Write("X.dwg", bytes);
        Open();
        _LDBline(1, 2, 3, 4);
        const int status = StatusOf([] { _LDBinsert(1, 2, 1, 1, 0, "X"); });
        if (status >= 0) {
            EXPECT_EQ(status, 13);  // a linetype that nobody has
            dwg::ResetState();
            return;
        }
        _LDBline(5, 6, 7, 8);
        const Drawing drawing = Close();
        const auto messages = Messages();
        const bool leftOut = !messages.empty() && messages.back().find("The block is left out") != std::string::npos;
        if (leftOut) {
            EXPECT_TRUE(drawing.bytes() == m_without);
            ++m_leftOut;
        } else {
            ExpectSound(drawing);
            EXPECT_EQ(drawing.Entities().size(), 3u);
        }
        for (std::size_t i = 0; i + (leftOut ? 1 : 0) < messages.size(); ++i)
            EXPECT_TRUE(messages[i] == "UNKNOWN TYPE" || messages[i].find("is cut there") != std::string::npos ||
                        messages[i].find("It is cut") != std::string::npos)
                << messages[i];
    }
    int m_leftOut = 0;

 private:
    std::string m_without;
};

// A place that copying reads.
bool IsRead(std::size_t offset) {
    return offset < 110 || offset >= 1310;
}

TEST_P(DamagedBlocks, AreLeftOutOrCopiedSoundlyWhateverByteIsDamaged) {
    const std::string sound = RichFile(GetParam().version, GetParam().nested);
    Try(sound);
    ASSERT_EQ(m_leftOut, 0) << Messages().back();
    // One bit of a byte changed, all bits cleared or set: two of these ten ways for each byte, by turns. With
    // ZM_TEST_ALL_DAMAGE in the environment all ten, which takes some seconds for each file.
    constexpr int kWays = 10;
    const int step = std::getenv("ZM_TEST_ALL_DAMAGE") != nullptr ? 1 : kWays / 2;
    for (std::size_t i = 0; i < sound.size(); ++i) {
        if (!IsRead(i)) continue;
        for (int way = static_cast<int>(i) % step; way < kWays; way += step) {
            SCOPED_TRACE(testing::Message() << "byte " << i << " damaged in way " << way);
            std::string bytes = sound;
            bytes[i] = static_cast<char>(way < 8 ? bytes[i] ^ 1 << way : way == 8 ? 0 : 0xFF);
            Try(bytes);
            if (HasFailure()) return;
        }
    }
    EXPECT_GT(m_leftOut, 100);
}

TEST_P(DamagedBlocks, AreLeftOutWhereverTheFileIsCutShort) {
    const std::string sound = RichFile(GetParam().version, GetParam().nested);
    for (std::size_t size = 0; size < sound.size(); size += IsRead(size) || size > 1300 ? 1 : 100) {
        SCOPED_TRACE(testing::Message() << "cut to " << size);
        Try(sound.substr(0, size));
        if (HasFailure()) return;
    }
}

INSTANTIATE_TEST_SUITE_P(Versions, DamagedBlocks,
                         testing::Values(DamageCase{"of_1006", 1006, false}, DamageCase{"of_1009", 1009, false},
                                         DamageCase{"of_1006_with_nested_blocks", 1006, true},
                                         DamageCase{"of_1009_with_nested_blocks", 1009, true}),
                         [](const auto& info) { return std::string(info.param.name); });

struct FaultCase {
    const char* name;
    std::string records;
    const char* reason;
    unsigned offset = 1334;  // of the record that is named; the first of the records stands there
};
void PrintTo(const FaultCase& c, std::ostream* out) {
    *out << c.name;
}

class BlockFaults : public DrawingTest, public testing::WithParamInterface<FaultCase> {};

const std::string kPoint = F64(1) + F64(2);
const std::string kPolyline = FromHex("1380080000000000"), kVertex = FromHex("1400180000000000") + kPoint;
const std::string kSequenceEnd = FromHex("11000c0000000000 00000000");

TEST_P(BlockFaults, AreToldWithFileOffsetAndReason) {
    BlockFile file;
    file.blocks = {{"LEAF", file.Definition("")}};
    file.entities = file.Record(2, 4, kPoint) + GetParam().records;
    Write("BAD.dwg", file.Bytes());
    Open();
    SetLay("ROAD");
    _LDBinsert(1, 2, 1, 1, 0, "BAD");
    ASSERT_FALSE(Messages().empty());
    EXPECT_NE(Messages().back().find(GetParam().reason), std::string::npos) << Messages().back();
    const std::string place = "BAD.dwg is damaged at offset " + std::to_string(GetParam().offset) + ": ";
    EXPECT_NE(Messages().back().find(place), std::string::npos) << Messages().back();
    EXPECT_EQ(dwg::state().now.layer, 1);
    const Drawing drawing = Close();
    ExpectSound(drawing);
    EXPECT_EQ(drawing.size(), drawingTemplate.size() + 37);
}
INSTANTIATE_TEST_SUITE_P(
    Records, BlockFaults,
    testing::Values(
        FaultCase{"a_length_below_8", FromHex("0204070000000000") + kPoint, "shorter than its header"},
        FaultCase{"a_length_of_0", FromHex("0204000000000000") + kPoint, "shorter than its header"},
        FaultCase{"a_length_that_is_not_that_of_the_fields", FromHex("0204190000000000") + kPoint + "x",
                  "other fields than its length holds"},
        FaultCase{"a_text_too_short_for_its_point", FromHex("07000a0000000000") + "xx",
                  "other fields than its length holds"},
        FaultCase{"a_layer_outside_the_table", FromHex("0204180005000000") + kPoint, "layer index"},
        FaultCase{"a_linetype_outside_the_table", FromHex("0206190000000000") + "\x07" + kPoint, "linetype index"},
        FaultCase{"a_negative_linetype", FromHex("0206190000000000") + "\x80" + kPoint, "linetype index"},
        FaultCase{"a_reference_outside_the_block_table", FromHex("0e001a0000000000") + U32(1) + kPoint, "block number"},
        FaultCase{"a_record_past_the_end_of_the_file", FromHex("6300ffff00000000"), "ends inside a record"},
        FaultCase{"flags_that_announce_a_colour", FromHex("0205180000000000") + kPoint, "other fields than its length"},
        FaultCase{"options_that_announce_an_extrusion", FromHex("0204180000000100") + kPoint,
                  "other fields than its length"},
        FaultCase{"a_vertex_with_a_bulge_that_no_option_announces",
                  kPolyline + FromHex("1400200000000000") + kPoint + F64(1), "other fields than its length", 1342},
        FaultCase{"a_text_longer_than_its_record", FromHex("0700240000000000") + kPoint + F64(1) + U16(3) + "AB",
                  "other fields than its length"},
        FaultCase{"an_end_of_a_polyline_without_its_link", kPolyline + FromHex("1100080000000000"),
                  "other fields than its length", 1342},
        FaultCase{"a_jump_with_a_body", FromHex("12000c0000000000") + "body", "other fields than its length"},
        FaultCase{"a_face_without_its_last_corner", FromHex("1604380000000000") + kPoint + kPoint + kPoint,
                  "other fields than its length"},
        FaultCase{"a_coordinate_that_is_no_number", FromHex("0204180000000000") + F64(1) + F64(std::nan("")),
                  "coordinate is no finite number"},
        FaultCase{"an_infinite_coordinate", FromHex("0204180000000000") + F64(HUGE_VAL) + F64(1),
                  "coordinate is no finite number"},
        FaultCase{"a_height_of_a_face_that_is_no_number",
                  FromHex("1600680000000000") + kPoint + F64(std::nan("")) + std::string(72, '\0'),
                  "coordinate is no finite number"},
        FaultCase{"a_text_style_outside_the_table",
                  FromHex("0700240000000800") + kPoint + F64(1) + U16(1) + "A" + "\x01", "text style index"},
        FaultCase{"a_vertex_outside_a_polyline", kVertex, "a vertex is outside a polyline"},
        FaultCase{"an_end_of_nothing", kSequenceEnd, "is where none is open"},
        FaultCase{"a_polyline_without_an_end", kPolyline + kVertex, "has no end", 1342},
        FaultCase{"a_polyline_inside_a_polyline", kPolyline + kPolyline, "begins inside another", 1342},
        FaultCase{"a_point_inside_a_polyline", kPolyline + FromHex("0204180000000000") + kPoint,
                  "holds a record that is no vertex", 1342},
        FaultCase{"a_viewport_inside_a_polyline", kPolyline + FromHex("1800080000000000"),
                  "holds a record that is no vertex", 1342},
        FaultCase{"an_attribute_definition_inside_a_polyline", kPolyline + FromHex("0f00080000000000"),
                  "holds a record that is no vertex", 1342},
        FaultCase{"a_dimension_inside_a_polyline", kPolyline + FromHex("1700080000000000"),
                  "holds a record that is no vertex", 1342},
        FaultCase{"an_erased_end_of_a_polyline", kPolyline + FromHex("91000c0000000000 00000000"), "has no end", 1342},
        FaultCase{"a_reference_with_attributes_without_an_end", FromHex("0e801a0000000000") + U32(0) + kPoint,
                  "has no end"},
        FaultCase{"an_elevation_where_none_can_be", FromHex("010f420000000000") + std::string(58, '\0'),
                  "other fields than its length holds"}),
    [](const auto& info) { return std::string(info.param.name); });

TEST_F(DrawingTest, ARecordThatRunsPastTheEndOfTheEntitySectionIsToldAndTheBlockLeftOut) {
    BlockFile file;
    file.entities = file.Record(2, 4, kPoint) + file.Record(2, 4, kPoint);
    std::string bytes = file.Bytes();
    Write("BAD.dwg", bytes.replace(24, 4, U32(1310 + 24 + 20)));
    Open();
    _LDBinsert(1, 2, 1, 1, 0, "BAD");
    ASSERT_EQ(Messages().size(), 1u);
    EXPECT_NE(Messages()[0].find("runs past the end of the entity section"), std::string::npos) << Messages()[0];
    EXPECT_EQ(Close().bytes(), drawingTemplate);
}

TEST_F(DrawingTest, ABlockWhoseBasePointTakesACoordinateOutOfAllNumbersIsLeftOut) {
    for (const double base : {-1e308, std::nan("")}) {
        host.boxes.clear();
        BlockFile file;
        file.baseX = base;
        file.entities = file.Record(2, 4, F64(1e308) + F64(1));
        Write("BAD.dwg", file.Bytes());
        Open();
        _LDBinsert(1, 2, 1, 1, 0, "BAD");
        ASSERT_EQ(Messages().size(), 1u);
        EXPECT_NE(Messages()[0].find("offset 1310: a coordinate is no finite number"), std::string::npos)
            << Messages()[0];
        EXPECT_EQ(Close().bytes(), drawingTemplate);
    }
}

TEST_F(DrawingTest, ARecordWhoseFlagsAreUnknownIsLeftOutWhereCopyingChangesWhatItAnnounces) {
    // The handle in front of the point is taken for a part of it: its length is no longer what it was.
    BlockFile file;
    file.entities = file.Record(7, 32, "\x02@@" + kPoint + F64(1) + U16(1) + "A");
    Write("SAME.dwg", file.Bytes());
    file.baseX = 10;
    Write("BAD.dwg", file.Bytes());
    Open();
    _LDBinsert(1, 2, 1, 1, 0, "BAD");
    ASSERT_EQ(Messages().size(), 2u);
    EXPECT_EQ(Messages()[0], "UNKNOWN TYPE");
    EXPECT_EQ(
        Messages()[1],
        "BAD.dwg cannot be copied: at offset 1310, a record uses a handle (flag 32), which block copying does not "
        "know. The block is left out; an import takes it whole.");
    EXPECT_EQ(Close().bytes(), drawingTemplate);
    Open();
    _LDBinsert(1, 2, 1, 1, 0, "SAME");
    EXPECT_EQ(Messages().back(), "UNKNOWN TYPE");
    EXPECT_EQ(Close().u32(46), 1u);
}

TEST_F(DrawingTest, AReferenceWhoseNumberIsNotWhereCopyingLooksCannotBeCopied) {
    BlockFile file;
    file.blocks = {{"LEAF", file.Definition("")}};
    file.entities = FromHex("0e811b0000000000") + std::string(1, '\0') + U32(0) + kPoint + kSequenceEnd;
    Write("BAD.dwg", file.Bytes());
    Open();
    _LDBinsert(1, 2, 1, 1, 0, "BAD");
    ASSERT_FALSE(Messages().empty());
    EXPECT_EQ(
        Messages().back(),
        "BAD.dwg cannot be copied: at offset 1310, a record is followed by others (flag 128), which block copying "
        "does not know. The block is left out; an import takes it whole.");
    ExpectSound(Close());
}

TEST_F(DrawingTest, ADamagedRecordIsFoundBeforeItsLinetypeIsLookedUp) {
    BlockFile file;
    file.linetypes = {"CONTINUOUS", "NOSUCH"};  // selecting it would end the process
    file.entities = file.Record(2, 6, "\x01" + kPoint) + FromHex("0207180000000000") + kPoint;
    Write("BAD.dwg", file.Bytes());
    Open();
    EXPECT_EQ(StatusOf([] { _LDBinsert(1, 2, 1, 1, 0, "BAD"); }), -1);
    EXPECT_EQ(Messages().size(), 1u);
    EXPECT_EQ(Close().bytes(), drawingTemplate);
}

TEST_F(DrawingTest, ANestedBlockWhoseNameHasNoEndIsLeftOut) {
    BlockFile file;
    file.blocks = {{std::string(32, 'N'), file.Definition("")}};
    file.entities = file.Reference(0, 1, 2);
    Write("BAD.dwg", file.Bytes());
    Open();
    _LDBinsert(1, 2, 1, 1, 0, "BAD");
    ASSERT_EQ(Messages().size(), 1u);
    EXPECT_NE(Messages()[0].find("offset 1310: the name of a nested block has no end"), std::string::npos)
        << Messages()[0];
    EXPECT_EQ(Close().bytes(), drawingTemplate);
}

class NestedFaults : public DrawingTest {
 protected:
    // Each of these as the nested block of the file: a message, and the drawing stays.
    void ExpectLeftOut(BlockFile file, const std::vector<std::pair<const char*, std::string>>& leaves) {
        std::size_t shown = 0;
        for (const auto& [name, leaf] : leaves) {
            SCOPED_TRACE(name);
            file.blocks = {{"LEAF", leaf}};
            file.entities = file.Reference(0, 1, 2);
            Write("BAD.dwg", file.Bytes());
            Open();
            _LDBinsert(1, 2, 1, 1, 0, "BAD");
            EXPECT_EQ(Messages().size(), ++shown);
            EXPECT_EQ(Close().bytes(), drawingTemplate);
        }
    }
};

TEST_F(NestedFaults, ANestedBlockThatIsNoWholeBlockIsLeftOut) {
    BlockFile file;
    const std::vector<std::pair<const char*, std::string>> leaves = {
        {"without its BLOCK record", file.Record(2, 4, kPoint) + file.Record(13, 0, "")},
        {"without an end", file.Record(12, 0, kPoint)},
        {"with a body in its end", file.Record(12, 0, kPoint) + file.Record(13, 0, "body")},
        {"with a base point cut short", file.Record(12, 0, F64(1)) + file.Record(13, 0, "")},
        {"with a polyline that is open at its end", file.Definition(kPolyline + kVertex)},
        {"with a coordinate that is no number", file.Definition(file.Record(2, 4, F64(1) + F64(std::nan(""))))},
        {"with a reference outside the table", file.Definition(file.Reference(1, 1, 2))},
    };
    ExpectLeftOut(file, leaves);
}

// The BLOCK record of later files holds more than its base point, and that must be a number all the same.
TEST_F(NestedFaults, ANestedBlockOfALaterFileWithoutAUsableBasePointIsLeftOut) {
    BlockFile file;
    file.version = 1009;
    const std::string surplus(6, '\x11'), end = file.Record(13, 0, "");
    const std::vector<std::pair<const char*, std::string>> leaves = {
        {"x is no number", file.Record(12, 0, F64(std::nan("")) + F64(0) + surplus) + end},
        {"y is infinite", file.Record(12, 0, F64(0) + F64(HUGE_VAL) + surplus) + end},
        {"cut short", file.Record(12, 0, F64(0)) + end},
    };
    ExpectLeftOut(file, leaves);
}

TEST_F(DrawingTest, AnEntitySectionThatEndsBeforeItBeginsIsLeftOut) {
    std::string bytes = BlockFile().Bytes();
    Write("BAD.dwg", bytes.replace(24, 4, U32(1000)));
    Open();
    _LDBinsert(1, 2, 1, 1, 0, "BAD");
    EXPECT_EQ(Messages().size(), 1u);
    EXPECT_EQ(Close().bytes(), drawingTemplate);
}

TEST_F(DrawingTest, AGoodBlockFollowsADamagedOne) {
    Write("BAD.dwg", "AC1006");
    Write("GOOD.dwg", BlockFile().Bytes());
    Open();
    _LDBinsert(1, 2, 1, 1, 0, "BAD");
    _LDBinsert(1, 2, 1, 1, 0, "GOOD");
    const Drawing drawing = Close();
    ExpectSound(drawing);
    EXPECT_EQ(drawing.u32(46), 1u);
    EXPECT_EQ(drawing.Entities().size(), 1u);
}

struct TemplateCase {
    const char* name;
    std::size_t offset;
    std::string bytes;
    const char* reason;
};
void PrintTo(const TemplateCase& c, std::ostream* out) {
    *out << c.name;
}

class Templates : public DrawingTest, public testing::WithParamInterface<TemplateCase> {};

TEST_P(Templates, ThatCannotBeUsedEndTheProcessWithTheReason) {
    std::string bytes = drawingTemplate + std::string(1000, '\0');
    Write("acad.dwg", bytes.replace(GetParam().offset, GetParam().bytes.size(), GetParam().bytes));
    EXPECT_EQ(StatusOf([&] { Open(); }), 1);
    ASSERT_EQ(Messages().size(), 1u);
    EXPECT_NE(Messages()[0].find("acad.dwg cannot be used as a template"), std::string::npos);
    EXPECT_NE(Messages()[0].find(GetParam().reason), std::string::npos) << Messages()[0];
    EXPECT_FALSE(std::filesystem::exists(dir / "out.dwg"));
}
INSTANTIATE_TEST_SUITE_P(
    Faults, Templates,
    testing::Values(TemplateCase{"of_another_version", 2, "1009", "version digits are not AC1006"},
                    TemplateCase{"with_entities", 24, U32(1310 + 66), "is not empty"},
                    TemplateCase{"with_an_entity_section_in_the_variables", 20, U32(96), "not after the header"},
                    TemplateCase{"with_an_entity_section_far_away", 20, U32(70000), "not after the header"},
                    TemplateCase{"with_blocks", 46, U32(1), "block table has 1 records"},
                    TemplateCase{"with_too_many_layers", 56, U32(201), "layer table has 201 records, 200 are"},
                    TemplateCase{"with_a_count_that_is_no_count", 76, U32(0xFFFFFFFF), "linetype table has 4294967295"},
                    TemplateCase{"with_a_gap_between_tables", 70, U32(1348), "style table is at offset 1348"},
                    TemplateCase{"with_a_block_section", 36, U32(3100), "block section is not empty"},
                    TemplateCase{"with_a_tail_that_is_too_long", 28, U32(3536) + U32(0) + U32(3536), "tail"},
                    TemplateCase{"with_a_tail_that_ends_before_it_begins", 28, U32(3000) + U32(0) + U32(3000), "tail"},
                    TemplateCase{"without_a_style", 66, U32(0) + U32(1347) + U16(187) + U32(8) + U32(1347),
                                 "view table"}),
    [](const auto& info) { return std::string(info.param.name); });

TEST_F(DrawingTest, ATemplateWithoutAStyleCannotBeUsed) {
    std::string bytes = drawingTemplate;
    bytes.erase(1347, 194);
    bytes.replace(66, 4, U32(0));
    for (const std::size_t field : {28, 36, 80, 90})
        bytes.replace(field, 4, U32(Drawing(drawingTemplate).u32(field) - 194));
    Write("acad.dwg", bytes);
    EXPECT_EQ(StatusOf([&] { Open(); }), 1);
    EXPECT_NE(Messages().at(0).find("it has no text style"), std::string::npos);
}

TEST_F(DrawingTest, ATemplateCutShortAnywhereEndsTheProcess) {
    for (std::size_t size = 0; size < drawingTemplate.size(); size += 7) {
        host.boxes.clear();
        Write("acad.dwg", drawingTemplate.substr(0, size));
        EXPECT_EQ(StatusOf([&] { Open(); }), 1) << size;
        ASSERT_EQ(Messages().size(), 1u) << size;
        EXPECT_NE(Messages()[0].find(size < 96 ? "shorter than its header" : "cut short"), std::string::npos) << size;
    }
}

TEST_F(DrawingTest, ATemplateDamagedAnywhereIsRefusedOrGivesASoundDrawing) {
    int used = 0;
    int refused = 0;
    for (std::size_t i = 0; i < drawingTemplate.size(); i += i < 96 ? 1 : 5) {
        for (const int damage : {0x01, 0x80, 0xFF}) {
            std::string bytes = drawingTemplate;
            bytes[i] = static_cast<char>(bytes[i] ^ damage);
            Write("acad.dwg", bytes);
            if (StatusOf([&] { Open(); }) >= 0) {
                ++refused;
                continue;
            }
            SetLay("ROAD");
            _LDBline(1, 2, 3, 4);
            _LDBclosedwg();
            EXPECT_EQ(ProblemsOf(ReadDrawing()), std::vector<std::string>()) << i;
            ++used;
        }
    }
    EXPECT_GT(used, 50);
    EXPECT_GT(refused, 50);
}

TEST_F(DrawingTest, AVersionStampWithoutItsLettersIsNone) {
    std::string bytes = drawingTemplate;
    bytes.replace(0, 2, "XX");
    Write("acad.dwg", bytes);
    EXPECT_EQ(StatusOf([&] { Open(); }), 1);
    EXPECT_NE(Messages().at(0).find("version digits are not AC1006"), std::string::npos);
}

}  // namespace
}  // namespace zm::test
