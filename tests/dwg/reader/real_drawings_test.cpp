// What the reader makes of real drawings, against the list of an independent reader.
#include "tests/dwg/reader/real_drawings.h"

#include <gtest/gtest.h>

#include <cmath>

#include "dwg/reader/check.h"
#include "dwg/reader/dump.h"
#include "dwg/reader/picture.h"

namespace {

using namespace zm::dwg::reader;
using zm::test::RealDrawing;
using zm::test::RealDrawings;
using Json = nlohmann::json;

constexpr double kPrecision = 1e-6;  // the lists have seven digits at least

std::string Hex(const std::string& bytes) {
    constexpr char kDigits[] = "0123456789abcdef";
    std::string out;
    for (const char c : bytes) {
        out += kDigits[static_cast<unsigned char>(c) >> 4];
        out += kDigits[static_cast<unsigned char>(c) & 15];
    }
    return out;
}

void ExpectNear(const Json& line, const char* key, double value) {
    if (line.contains(key)) {
        EXPECT_NEAR(line.at(key).get<double>(), value, kPrecision) << key;
    }
}

void ExpectHeader(const Drawing& drawing, const Json& line) {
    EXPECT_EQ(line.at("version"), "AC" + std::to_string(drawing.header.version));
    EXPECT_EQ(line.at("vars"), drawing.header.variables);
    EXPECT_EQ(line.at("start"), drawing.header.entityStart);
    EXPECT_EQ(line.at("end"), drawing.header.entityEnd);
    EXPECT_EQ(line.at("blocks"), drawing.header.blockStart);
    EXPECT_EQ(std::stoul(line.at("count").get<std::string>(), nullptr, 16), drawing.header.blockSize);
    EXPECT_EQ(line.at("closing"), drawing.header.extraStart);
    EXPECT_EQ(std::stoul(line.at("extras").get<std::string>(), nullptr, 16), drawing.header.extraSize);
    EXPECT_EQ(line.at("codepage"), drawing.header.codePage);
}

void ExpectTables(const Drawing& drawing, const RealDrawing& real) {
    const auto layers = real.Of("layer");
    ASSERT_EQ(layers.size(), drawing.layers.size());
    for (std::size_t i = 0; i < layers.size(); ++i) {
        EXPECT_EQ(layers[i].at("name"), drawing.layers[i].name);
        EXPECT_EQ(layers[i].at("color"), drawing.layers[i].color);
        EXPECT_EQ(layers[i].at("ltype"), drawing.layers[i].linetype);
        EXPECT_EQ(layers[i].at("flag"), drawing.layers[i].flag);
    }
    const auto styles = real.Of("style");
    ASSERT_EQ(styles.size(), drawing.styles.size());
    for (std::size_t i = 0; i < styles.size(); ++i) {
        const Style& style = drawing.styles[i];
        EXPECT_EQ(styles[i].at("name"), style.name);
        EXPECT_EQ(styles[i].at("flag"), style.flag);
        EXPECT_EQ(styles[i].at("font"), style.font);
        EXPECT_EQ(styles[i].at("bigfont"), style.bigFont);
        EXPECT_EQ(styles[i].at("gen"), style.generation);
        ExpectNear(styles[i], "height", style.height);
        ExpectNear(styles[i], "width", style.widthFactor);
        ExpectNear(styles[i], "oblique", style.oblique);
        ExpectNear(styles[i], "last", style.lastHeight);
    }
    const auto types = real.Of("ltype");
    ASSERT_EQ(types.size(), drawing.linetypes.size());
    for (std::size_t i = 0; i < types.size(); ++i) {
        const Linetype& type = drawing.linetypes[i];
        EXPECT_EQ(types[i].at("name"), type.name);
        EXPECT_EQ(types[i].at("descr"), type.description);
        EXPECT_EQ(types[i].at("flag"), type.flag);
        EXPECT_EQ(types[i].at("align"), type.alignment);
        EXPECT_EQ(types[i].at("count"), type.count);
        ExpectNear(types[i], "length", type.length);
        for (std::size_t k = 0; k < type.elements.size(); ++k)
            EXPECT_NEAR(types[i].at("dashes").at(k).get<double>(), type.elements[k], kPrecision);
    }
    const auto blocks = real.Of("block");
    ASSERT_EQ(blocks.size(), drawing.blocks.size());
    for (std::size_t i = 0; i < blocks.size(); ++i) {
        EXPECT_EQ(blocks[i].at("name"), drawing.blocks[i].name);
        EXPECT_EQ(blocks[i].at("flag"), drawing.blocks[i].flag);
        EXPECT_EQ(blocks[i].at("offset"), drawing.blocks[i].offset);
        EXPECT_EQ(blocks[i].at("mark"), drawing.blocks[i].mark);
    }
}

struct Found {
    Record record;
    const char* section;
    std::string block;
};

std::vector<Found> AllRecords(const Drawing& drawing) {
    std::vector<Found> all;
    drawing.ForEachEntity([&](const Record& record) { return all.push_back({record, "entities", {}}), true; });
    for (std::size_t i = 0; i < drawing.blocks.size(); ++i)
        drawing.ForEachInBlock(i, [&](const Record& record) {
            return all.push_back({record, "blocks", drawing.blocks[i].name}), true;
        });
    drawing.ForEachExtra([&](const Record& record) { return all.push_back({record, "extras", {}}), true; });
    return all;
}

// The name that the lists have for a linetype: the low byte of one that the table lacks.
std::string LinetypeNameIn(const Drawing& drawing, int index) {
    const auto i = static_cast<std::size_t>(index);
    return i < drawing.linetypes.size() ? drawing.linetypes[i].name : "#" + std::to_string(index & 0xFF);
}

// Points of the list: those in front, and of a dimension that of its text.
std::vector<Point> PointsOf(const Record& record) {
    std::vector<Point> points = record.points;
    if (record.kind == kDimension) points.push_back({record.Number("text_x", 0), record.Number("text_y", 0), 0.0});
    return points;
}

void ExpectPoints(const Record& record, const Json& line) {
    const auto points = PointsOf(record);
    ASSERT_EQ(line.contains("p") ? line.at("p").size() : 0u, points.size());
    for (std::size_t i = 0; i < points.size(); ++i) {
        const Json& p = line.at("p").at(i);
        EXPECT_NEAR(p.at(0).get<double>(), points[i].x, kPrecision);
        EXPECT_NEAR(p.at(1).get<double>(), points[i].y, kPrecision);
        if (p.size() > 2) {
            EXPECT_NEAR(p.at(2).get<double>(), points[i].z, kPrecision);
        }
    }
}

void ExpectFields(const Record& record, const Json& line) {
    const auto text = [&](const char* key, const char* name) {
        const Field* field = record.Find(name);
        if (line.contains(key)) {
            EXPECT_EQ(line.at(key), field != nullptr ? Hex(field->text) : "none") << key;
        }
    };
    text("text", "text");
    text("prompt", "prompt");
    text("tag", "tag");
    constexpr std::pair<const char*, const char*> kNumbers[] = {
        {"r", "radius"},     {"h", "height"},       {"wf", "width"},           {"obl", "oblique"},
        {"style", "style"},  {"gen", "generation"}, {"hal", "horizontal"},     {"val", "vertical"},
        {"shape", "shape"},  {"cols", "columns"},   {"rows", "rows"},          {"dcol", "column_gap"},
        {"drow", "row_gap"}, {"pflag", "closed"},   {"vflag", "vertex_flags"}, {"aflags", "attribute_flags"},
        {"rot", "rotation"}};
    for (const auto& [key, name] : kNumbers) ExpectNear(line, key, record.Number(name, NAN));
    if (line.contains("a")) {
        EXPECT_NEAR(line.at("a").at(0).get<double>(), record.Number("start", NAN), kPrecision);
        EXPECT_NEAR(line.at("a").at(1).get<double>(), record.Number("end", NAN), kPrecision);
    }
    if (line.contains("ap")) {
        EXPECT_NEAR(line.at("ap").at(0).get<double>(), record.Number("align_x", NAN), kPrecision);
        EXPECT_NEAR(line.at("ap").at(1).get<double>(), record.Number("align_y", NAN), kPrecision);
    }
    if (line.contains("scale") && line.at("scale").is_array()) {
        constexpr const char* kScales[] = {"scale_x", "scale_y", "scale_z"};
        for (std::size_t i = 0; i < 3; ++i)
            EXPECT_NEAR(line.at("scale").at(i).get<double>(), record.Number(kScales[i], 1.0), kPrecision);
    } else {
        ExpectNear(line, "scale", record.Number("scale", NAN));
    }
    if (line.contains("back")) {
        EXPECT_EQ(std::stoul(line.at("back").get<std::string>(), nullptr, 16), record.Number("begin", -1));
    }
}

void ExpectRecord(const Drawing& drawing, const Found& found, const Json& line) {
    const Record& record = found.record;
    ASSERT_NE(record.layout, nullptr);
    EXPECT_EQ(line.at("type"), record.layout->name);
    EXPECT_EQ(line.at("len"), record.length);
    EXPECT_EQ(record.used, record.length);
    EXPECT_EQ(line.value("erased", false), record.erased);
    EXPECT_EQ(line.at("sec"), found.section);
    EXPECT_EQ(line.value("block", std::string()), found.block);
    if (record.kind == kJump) {
        if (line.contains("to")) {
            EXPECT_EQ(std::stoul(line.at("to").get<std::string>(), nullptr, 16), record.jump);
        }
        return;
    }
    EXPECT_EQ(line.at("flags"), record.flags);
    EXPECT_EQ(line.at("options"), record.options);
    EXPECT_EQ(line.at("layer"), drawing.layers.at(record.layer).name);
    EXPECT_EQ(line.contains("color"), record.color.has_value());
    if (record.color) {
        EXPECT_EQ(line.at("color"), *record.color);
    }
    EXPECT_EQ(line.contains("ltype"), record.linetype.has_value());
    if (record.linetype) {
        EXPECT_EQ(line.at("ltype"), LinetypeNameIn(drawing, *record.linetype));
    }
    EXPECT_EQ(line.contains("elev"), record.elevation.has_value());
    ExpectNear(line, "elev", record.elevation.value_or(NAN));
    EXPECT_EQ(line.contains("thick"), record.thickness.has_value());
    ExpectNear(line, "thick", record.thickness.value_or(NAN));
    EXPECT_EQ(line.contains("handle"), !record.handle.empty());
    if (line.contains("handle")) {
        EXPECT_EQ(line.at("handle"), Hex(record.handle));
    }
    if (line.contains("name")) {
        const auto block = static_cast<std::size_t>(record.Number("block", -1));
        ASSERT_LT(block, drawing.blocks.size());
        EXPECT_EQ(line.at("name"), drawing.blocks[block].name);
    }
    ExpectPoints(record, line);
    ExpectFields(record, line);
}

TEST(RealDrawings, EachReadsAsItsListSays) {
    ZM_NEED_REAL_DRAWINGS();
    for (const RealDrawing& real : RealDrawings()) {
        SCOPED_TRACE(real.name);
        const Drawing drawing(real.bytes);
        ASSERT_TRUE(drawing.Known());
        ExpectHeader(drawing, real.Of("header").at(0));
        ExpectTables(drawing, real);
        const auto found = AllRecords(drawing);
        const auto wanted = real.Of("entity");
        ASSERT_EQ(found.size(), wanted.size());
        for (std::size_t i = 0; i < found.size(); ++i) {
            SCOPED_TRACE(wanted[i].dump());
            ExpectRecord(drawing, found[i], wanted[i]);
        }
    }
}

// One of them counts one view less than it holds.
TEST(RealDrawings, CheckSaysNothingOfSoundOnes) {
    ZM_NEED_REAL_DRAWINGS();
    for (const RealDrawing& real : RealDrawings()) {
        const Report report = Check(Drawing(real.bytes));
        for (const Finding& problem : report.problems)
            if (real.name != "ac1009_entity_line_LINE2" || problem.text.find("VPORT") == std::string::npos)
                ADD_FAILURE() << real.name << " at " << problem.offset << ": " << problem.text;
        for (const Finding& remark : report.remarks)
            if (remark.text.find("without a name") == std::string::npos)
                ADD_FAILURE() << real.name << " at " << remark.offset << ": " << remark.text;
        EXPECT_EQ(report.problems.size(), real.name == "ac1009_entity_line_LINE2" ? 1u : 0u) << real.name;
    }
}

TEST(RealDrawings, DumpNamesSectionAndBlock) {
    ZM_NEED_REAL_DRAWINGS();
    for (const RealDrawing& real : RealDrawings()) {
        const Drawing drawing(real.bytes);
        Place place;
        const auto expect = [&](const Record& record) {
            const Json line = Json::parse(Line(drawing, record, true, &place));
            EXPECT_EQ(line.at("section"), place.section == Section::extras   ? "extras"
                                          : place.section == Section::blocks ? "blocks"
                                                                             : "entities");
            if (place.block != nullptr) {
                EXPECT_EQ(line.at("block_name"), place.block->name);
            }
            return true;
        };
        drawing.ForEachEntity(expect);
        place.section = Section::blocks;
        for (std::size_t i = 0; i < drawing.blocks.size(); ++i) {
            place.block = &drawing.blocks[i];
            drawing.ForEachInBlock(i, expect);
        }
        place = {Section::extras, nullptr};
        drawing.ForEachExtra(expect);
        EXPECT_EQ(Json::parse(Info(drawing, true)).at("version"), drawing.header.version);
    }
}

// The records in the order in which they belong together: a jump leads to its polyline and back.
TEST(RealDrawings, JumpsLeadToTheirPolylineAndBack) {
    ZM_NEED_REAL_DRAWINGS();
    int jumps = 0;
    for (const RealDrawing& real : RealDrawings()) {
        if (real.name.find("JUMP1") == std::string::npos) continue;
        std::string order;
        EXPECT_TRUE(ForEachInOrder(Drawing(real.bytes), [&](const Record& record) {
            return order += std::string(record.layout->name) + " ", true;
        }));
        EXPECT_EQ(order.find("POLYLINE VERTEX"), 0u) << order;
        EXPECT_EQ(order.rfind("SEQEND "), order.size() - 7) << order;
        ++jumps;
    }
    EXPECT_EQ(jumps, 2);
}

}  // namespace
