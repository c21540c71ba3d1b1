#include "dwg/reader/check.h"

#include <gtest/gtest.h>

#include <limits>

#include "tests/dwg/reader/recorded.h"
#include "tests/support/random.h"

namespace {

using namespace zm::dwg::reader;
using zm::test::RecordedDrawings;
using zm::test::RecordedTemplate;

std::vector<std::uint8_t> Recorded(const std::string& id) {
    for (const auto& drawing : RecordedDrawings())
        if (drawing.id == id) return drawing.bytes;
    ADD_FAILURE() << "no recorded drawing " << id;
    return {};
}

void Put(std::vector<std::uint8_t>& bytes, std::size_t at, std::uint64_t value, std::size_t width) {
    for (std::size_t i = 0; i < width; ++i) bytes.at(at + i) = static_cast<std::uint8_t>(value >> (8 * i));
}

// The text of the first problem; empty where there is none.
std::string FirstProblem(const std::vector<std::uint8_t>& bytes) {
    const Report report = Check(Drawing(bytes));
    return report.problems.empty() ? std::string() : report.problems.front().text;
}

TEST(Check, EveryRecordedDrawingIsSound) {
    for (const auto& recorded : RecordedDrawings()) {
        const Report report = Check(Drawing(recorded.bytes));
        for (const Finding& problem : report.problems)
            ADD_FAILURE() << recorded.id << " at " << problem.offset << ": " << problem.text;
    }
}

TEST(Check, TemplatesAndBlockFilesAreSound) {
    for (const char* name : {"plain", "views", "layers", "EMPTY.dwg", "tree.dwg"}) {
        const Report report = Check(Drawing(RecordedTemplate(name)));
        for (const Finding& problem : report.problems)
            ADD_FAILURE() << name << " at " << problem.offset << ": " << problem.text;
    }
}

TEST(Check, SeqEndOfZeroIsTheOneProblemOfTheseBlockFiles) {
    for (const char* name : {"TREE.dwg", "R12.dwg"}) {
        const Report report = Check(Drawing(RecordedTemplate(name)));
        ASSERT_EQ(report.problems.size(), 1u) << name;
        EXPECT_NE(report.problems[0].text.find("points to 0"), std::string::npos) << report.problems[0].text;
    }
}

struct DamageCase {
    const char* name;
    std::size_t at;
    std::uint64_t value;
    std::size_t width;
    const char* problem;
};
void PrintTo(const DamageCase& c, std::ostream* out) {
    *out << c.name;
}
// Damage to the drawing "demo"; its first record stands at 1310.
constexpr DamageCase kDamages[] = {
    {"version", 2, '9', 1, "version stamp"},
    {"variables", 17, 205, 2, "header variables"},
    {"entity_start", 20, 1311, 4, "begins at 1311"},
    {"entity_end_behind_the_file", 24, 0x7FFFFFFF, 4, "beyond the end of the file"},
    {"entity_end_before_its_start", 24, 100, 4, "before its start"},
    {"block_start_behind_the_file", 28, 0x7FFFFFFF, 4, "beyond the end of the file"},
    {"third_word_of_the_layers", 58, 1, 2, "third word"},
    {"layer_record_size", 54, 36, 2, "layer record has 36"},
    {"layer_count_too_large", 56, 60000, 2, "table"},
    {"layer_address", 60, 1, 4, "layer table begins at 1"},
    {"record_length_too_short", 1312, 7, 2, "claims 7 bytes"},
    {"record_length_one_more", 1312, 67, 2, "announce"},
    {"record_length_past_the_section", 1312, 65535, 2, "claims 65535 bytes"},
    {"layer_index", 1314, 999, 2, "layer 999"},
};
class Damage : public testing::TestWithParam<DamageCase> {};
TEST_P(Damage, IsNamed) {
    auto bytes = Recorded("demo");
    ASSERT_EQ(bytes[1310], 1) << "the first record is no LINE";
    Put(bytes, GetParam().at, GetParam().value, GetParam().width);
    EXPECT_NE(FirstProblem(bytes).find(GetParam().problem), std::string::npos) << FirstProblem(bytes);
}
INSTANTIATE_TEST_SUITE_P(Check, Damage, testing::ValuesIn(kDamages),
                         [](const auto& info) { return std::string(info.param.name); });

TEST(Check, KindAbove24IsAProblemErasedOrNot) {
    for (const unsigned kind : {25u, 127u, 0x80u | 25u, 0xFFu}) {
        auto bytes = Recorded("demo");
        Put(bytes, 1310, kind, 1);
        EXPECT_NE(FirstProblem(bytes).find("kind " + std::to_string(kind & 0x7F)), std::string::npos)
            << kind << ": " << FirstProblem(bytes);
    }
    auto known = Recorded("demo");
    Put(known, 1310, 24, 1);
    EXPECT_EQ(FirstProblem(known).find("which no program writes"), std::string::npos) << FirstProblem(known);
}

TEST(Check, CountOfViewportsThatIsNotTheTablesIsAProblem) {
    for (const char* name : {"demo", "blocks: exact names"}) {
        auto bytes = Recorded(name);
        const std::size_t count = kViewportTable + 2;
        Put(bytes, count, bytes[count] + 1u, 2);
        EXPECT_NE(FirstProblem(bytes).find("the VPORT table of"), std::string::npos) << name << FirstProblem(bytes);
    }
}

TEST(Check, CoordinateThatIsNoNumberIsAProblem) {
    auto bytes = Recorded("demo");
    Put(bytes, 1310 + 18, std::bit_cast<std::uint64_t>(std::numeric_limits<double>::quiet_NaN()), 8);
    EXPECT_NE(FirstProblem(bytes).find("no finite number"), std::string::npos);
}

// The place of the first record of a kind in the entity section.
std::size_t Find(const std::vector<std::uint8_t>& bytes, std::uint8_t kind) {
    std::size_t place = 0;
    Drawing(bytes).ForEachEntity([&](const Record& record) {
        if (record.kind == kind) place = record.offset;
        return place == 0;
    });
    EXPECT_NE(place, 0u) << "no record of kind " << int{kind};
    return place;
}

TEST(Check, SeqEndMustPointAtItsPolyline) {
    auto bytes = Recorded("demo");
    Put(bytes, Find(bytes, kSeqEnd) + 26, 1310, 4);
    EXPECT_NE(FirstProblem(bytes).find("points to 1310"), std::string::npos) << FirstProblem(bytes);
}

TEST(Check, VertexOutsideAPolylineIsAProblem) {
    auto bytes = Recorded("demo");
    bytes[Find(bytes, kPolyline)] = kPolyline | 0x80;
    EXPECT_NE(FirstProblem(bytes).find("outside a polyline"), std::string::npos) << FirstProblem(bytes);
}

TEST(Check, PolylineWithoutSeqEndIsAProblem) {
    auto bytes = Recorded("demo");
    bytes[Find(bytes, kSeqEnd)] = kSeqEnd | 0x80;
    EXPECT_FALSE(FirstProblem(bytes).empty());
}

TEST(Check, InsertOfAMissingBlockIsAProblem) {
    auto bytes = Recorded("demo");
    Put(bytes, Find(bytes, kInsert) + 8, 400, 2);
    EXPECT_NE(FirstProblem(bytes).find("block 400"), std::string::npos) << FirstProblem(bytes);
}

TEST(Check, TextStyleOutOfRangeIsAProblem) {
    auto bytes = Recorded("demo");
    const std::size_t text = Find(bytes, kText);
    const std::size_t length = bytes[text + 2] + 256u * bytes[text + 3];
    bytes[text + length - 2] = 77;
    EXPECT_NE(FirstProblem(bytes).find("text style 77"), std::string::npos) << FirstProblem(bytes);
}

TEST(Check, BlockThatPointsToNoBlockRecordIsAProblem) {
    auto bytes = Recorded("blocks: exact names");
    const Drawing drawing(bytes);
    Put(bytes, drawing.header.tables[0].address + 33, drawing.blocks.at(0).offset + 1, 2);
    EXPECT_FALSE(FirstProblem(bytes).empty());
}

TEST(Check, FileCutAnywhereInsideTheTablesIsAProblem) {
    const auto whole = Recorded("demo");
    const Drawing drawing(whole);
    for (std::size_t size = 0; size < drawing.header.blockStart; size += 37) {
        const auto cut = std::vector<std::uint8_t>(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(size));
        EXPECT_FALSE(FirstProblem(cut).empty()) << size;
    }
}

TEST(Check, ProblemsBeyondTheListAreCounted) {
    auto bytes = RecordedTemplate("plain");
    std::vector<std::uint8_t> records;
    for (int i = 0; i < 1500; ++i) records.insert(records.end(), {kEndBlock, 0, 8, 0, 99, 0, 0, 0});  // layer 99
    bytes.insert(bytes.begin() + 1310, records.begin(), records.end());
    Put(bytes, 24, 1310 + records.size(), 4);
    Put(bytes, 28, bytes.size(), 4);
    for (const std::size_t field : {50u, 60u, 70u, 80u, 90u}) {
        std::uint64_t address = 0;
        for (int i = 3; i >= 0; --i) address = address << 8 | bytes[field + static_cast<std::size_t>(i)];
        Put(bytes, field, address + records.size(), 4);
    }
    const Report report = Check(Drawing(bytes));
    EXPECT_EQ(report.problems.size(), kMaxFindings);
    EXPECT_EQ(report.unlisted, 500u);
    EXPECT_EQ(report.entities, 1500u);
}

TEST(Check, OfAnyBytesNeverFails) {
    ZM_TRACE_SEED();
    zm::test::Random random(7);
    for (int round = 0; round < 500; ++round) {
        auto bytes =
            RecordedDrawings()[static_cast<std::size_t>(random.Int(0, static_cast<int>(RecordedDrawings().size()) - 1))]
                .bytes;
        for (int i = random.Int(1, 12); i > 0; --i) {
            const int last = random.Int(0, 1) ? 95 : static_cast<int>(bytes.size()) - 1;
            bytes[static_cast<std::size_t>(random.Int(0, last))] = static_cast<std::uint8_t>(random.Bits());
        }
        Check(Drawing(std::move(bytes)));
    }
}

}  // namespace
