// Damaged block files and templates: a message, and a drawing that is as it was.
#include "dwg/state.h"
#include "dwg/writer.h"
#include "tests/dwg/block_file.h"

namespace zm::test {
namespace {

// A file with every kind of record, both layers, and nested blocks if wanted.
std::string RichFile(int version, bool nested) {
    BlockFile file;
    file.version = version;
    file.layers = {{"0", 7, 0}, {"WATER", 5, 1}};
    const std::string point = F64(11) + F64(22);
    const std::string linetype = file.later() ? std::string("\x02\x00", 2) : std::string("\x02");
    file.entities = file.Record(1, 7, "\x05" + linetype + point + point, 1) + file.Record(2, 4, point) +
                    file.Record(3, 2, linetype + point + F64(3)) +
                    file.Record(7, 1, "\x05" + point + F64(2) + U16(2) + "AB" + F64(1), 1, 1) +
                    file.Record(8, 0, point + F64(1) + F64(2) + F64(3)) +
                    file.Record(9, 0, point + point + point + point) +
                    file.Record(11, 0, point + point + point + point) + file.Record(19, 128, "") +
                    file.Record(20, 0, point + F64(0.5)) + file.Record(17, 0, U32(0)) + file.Record(99, 0, "other");
    if (nested) {
        file.blocks = {{"LEAF", file.Definition(file.Record(1, 4, point + point))},
                       {"TWIG", file.Definition(file.Reference(0, 1, 2))}};
        file.entities += file.Reference(1, 3, 4) + file.Reference(0, 5, 6);
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
    // Inserts a file with these bytes between two lines; the drawing must be sound whatever they are, and without the
    // block if a message says so.
    void Try(const std::string& bytes) {
        host.boxes.clear();
        // Fresh files are made faster than old ones are replaced.
        std::filesystem::remove(dir / "X.dwg");
        std::filesystem::remove(dir / "out.dwg");
        Write("X.dwg", bytes);
        Open();
        _LDBline(1, 2, 3, 4);
        provable = false;  // bodies are copied as they stand, whatever their flags announce
        const int status = StatusOf([] { _LDBinsert(1, 2, 1, 1, 0, "X"); });
        if (status >= 0) {
            EXPECT_EQ(status, 13);  // a linetype that nobody has
            dwg::ResetState();
            return;
        }
        _LDBline(5, 6, 7, 8);
        const Drawing drawing = Close();
        ExpectSound(drawing);
        const auto messages = Messages();
        const bool leftOut = !messages.empty() && messages.back().find("The block is left out") != std::string::npos;
        EXPECT_EQ(drawing.Entities().size(), leftOut ? 2u : 3u);
        if (leftOut) {
            EXPECT_EQ(drawing.u32(46), 0u);
            EXPECT_EQ(drawing.u32(56), 1u);
            EXPECT_EQ(drawing.u32(36), drawing.u32(28));
            ++m_leftOut;
        }
    }
    int m_leftOut = 0;
};

TEST_P(DamagedBlocks, AreLeftOutOrCopiedSoundlyWhateverByteIsDamaged) {
    const std::string sound = RichFile(GetParam().version, GetParam().nested);
    Try(sound);
    EXPECT_EQ(m_leftOut, 0);
    for (std::size_t i = 0; i < sound.size(); ++i) {
        if (i >= 110 && i < 1310) continue;  // header variables that copying never reads
        for (const int damage : {0x01, 0x80, 0xFF}) {
            SCOPED_TRACE(testing::Message() << "byte " << i << " damaged by " << damage);
            std::string bytes = sound;
            bytes[i] = static_cast<char>(bytes[i] ^ damage);
            Try(bytes);
            if (HasFailure()) return;
        }
    }
    EXPECT_GT(m_leftOut, 100);
}

TEST_P(DamagedBlocks, AreLeftOutWhereverTheFileIsCutShort) {
    const std::string sound = RichFile(GetParam().version, GetParam().nested);
    for (std::size_t size = 0; size < sound.size(); size += size >= 110 && size < 1300 ? 100 : 1) {
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
};
void PrintTo(const FaultCase& c, std::ostream* out) {
    *out << c.name;
}

class BlockFaults : public DrawingTest, public testing::WithParamInterface<FaultCase> {};

const std::string kPoint = F64(1) + F64(2);

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
    EXPECT_NE(Messages().back().find("BAD.dwg is damaged at offset 1334"), std::string::npos) << Messages().back();
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
                  "length of a record is not that of its fields"},
        FaultCase{"a_text_too_short_for_its_point", FromHex("07000a0000000000") + "xx", "shorter than its kind needs"},
        FaultCase{"a_layer_outside_the_table", FromHex("0204180005000000") + kPoint, "layer index"},
        FaultCase{"a_linetype_outside_the_table", FromHex("0206190000000000") + "\x07" + kPoint, "linetype index"},
        FaultCase{"a_negative_linetype", FromHex("0206190000000000") + "\x80" + kPoint, "linetype index"},
        FaultCase{"a_reference_outside_the_block_table", FromHex("0e001a0000000000") + U32(1) + kPoint, "block number"},
        FaultCase{"a_record_past_the_end_of_the_file", FromHex("6300ffff00000000"), "ends inside a record"},
        FaultCase{"an_elevation_where_none_can_be", FromHex("010f420000000000") + std::string(58, '\0'),
                  "length of a record is not that of its fields"}),
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

TEST_F(DrawingTest, ANestedBlockThatIsNoWholeBlockIsLeftOut) {
    BlockFile file;
    const std::pair<const char*, std::string> leaves[] = {
        {"without its BLOCK record", file.Record(2, 4, kPoint) + file.Record(13, 0, "")},
        {"without an end", file.Record(12, 0, kPoint)},
        {"with a body in its end", file.Record(12, 0, kPoint) + file.Record(13, 0, "body")},
    };
    int shown = 0;
    for (const auto& [name, leaf] : leaves) {
        SCOPED_TRACE(name);
        file.blocks = {{"LEAF", leaf}};
        file.entities = file.Reference(0, 1, 2);
        Write("BAD.dwg", file.Bytes());
        Open();
        _LDBinsert(1, 2, 1, 1, 0, "BAD");
        EXPECT_EQ(Messages().size(), static_cast<std::size_t>(++shown));
        EXPECT_EQ(Close().bytes(), drawingTemplate);
    }
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
    testing::Values(TemplateCase{"of_another_version", 2, "1009", "version digits are not 1006"},
                    TemplateCase{"with_entities", 24, U32(1310 + 66), "is not empty"},
                    TemplateCase{"with_an_entity_section_in_the_variables", 20, U32(96), "not behind the header"},
                    TemplateCase{"with_an_entity_section_far_away", 20, U32(70000), "not behind the header"},
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

TEST_F(DrawingTest, ATemplateDamagedAnywhereIsRefusedOrGivesADrawing) {
    provable = false;  // what the template says of itself stays in the drawing
    for (std::size_t i = 0; i < 96; ++i) {
        for (const int damage : {0x01, 0x80, 0xFF}) {
            std::string bytes = drawingTemplate;
            bytes[i] = static_cast<char>(bytes[i] ^ damage);
            Write("acad.dwg", bytes);
            if (StatusOf([&] { Open(); }) < 0) {
                SetLay("ROAD");
                _LDBline(1, 2, 3, 4);
                EXPECT_EQ(Close().size(), drawingTemplate.size() + 37 + 66) << i;
            }
        }
    }
}

}  // namespace
}  // namespace zm::test
