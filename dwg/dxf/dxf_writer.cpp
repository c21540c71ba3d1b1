#include "dwg/dxf/dxf_writer.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <numbers>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "dwg/dxf/group_writer.h"
#include "dwg/reader/picture.h"
#include "runtime/text/gbk.h"

namespace zm::dwg::dxf {
namespace {

using reader::Drawing;
using reader::Field;
using reader::Point;
using reader::Record;

constexpr double kDegrees = 180.0 / std::numbers::pi;
constexpr std::size_t kPiece = std::size_t{1} << 20;
constexpr double kNoExtents = 1e19;  // a drawing that does not know its extents has 1e20 in their place

// Which group a field of a record is. The unit is radians where the group has degrees.
struct Group {
    const char* field;
    int code;
    enum Form { real, whole, degrees } form;
};
constexpr Group kGroups[] = {
    {"radius", 40, Group::real},
    {"start", 50, Group::degrees},
    {"end", 51, Group::degrees},
    {"angle", 50, Group::degrees},
    {"height", 40, Group::real},
    {"rotation", 50, Group::degrees},
    {"width", 41, Group::real},
    {"oblique", 51, Group::degrees},
    {"generation", 71, Group::whole},
    {"horizontal", 72, Group::whole},
    {"align_x", 11, Group::real},
    {"align_y", 21, Group::real},
    {"ext_x", 210, Group::real},
    {"ext_y", 220, Group::real},
    {"ext_z", 230, Group::real},
    {"scale_x", 41, Group::real},
    {"scale_y", 42, Group::real},
    {"scale_z", 43, Group::real},
    {"columns", 70, Group::whole},
    {"rows", 71, Group::whole},
    {"column_gap", 44, Group::real},
    {"row_gap", 45, Group::real},
    {"closed", 70, Group::whole},
    {"start_width", 40, Group::real},
    {"end_width", 41, Group::real},
    {"m", 71, Group::whole},
    {"n", 72, Group::whole},
    {"m_density", 73, Group::whole},
    {"n_density", 74, Group::whole},
    {"curve", 75, Group::whole},
    {"bulge", 42, Group::real},
    {"vertex_flags", 70, Group::whole},
    {"tangent", 50, Group::degrees},
    {"corner_1", 71, Group::whole},
    {"corner_2", 72, Group::whole},
    {"corner_3", 73, Group::whole},
    {"corner_4", 74, Group::whole},
    {"invisible", 70, Group::whole},
    {"scale", 40, Group::real},
    {"attribute_flags", 70, Group::whole},
    {"field_length", 73, Group::whole},
    {"text_x", 11, Group::real},
    {"text_y", 21, Group::real},
    {"insert_x", 12, Group::real},
    {"insert_y", 22, Group::real},
    {"dimension_type", 70, Group::whole},
    {"x3", 13, Group::real},
    {"y3", 23, Group::real},
    {"z3", 33, Group::real},
    {"x4", 14, Group::real},
    {"y4", 24, Group::real},
    {"z4", 34, Group::real},
    {"x5", 15, Group::real},
    {"y5", 25, Group::real},
    {"z5", 35, Group::real},
    {"x6", 16, Group::real},
    {"y6", 26, Group::real},
    {"z6", 36, Group::real},
    {"leader", 40, Group::real},
    {"text_rotation", 51, Group::degrees},
};

const Group* GroupOf(std::string_view field) {
    for (const Group& group : kGroups)
        if (field == group.field) return &group;
    return nullptr;
}

// Vertical alignment has a group of its own for attributes, whose 73 is taken.
int VerticalCode(std::uint8_t kind) {
    return kind == reader::kText ? 73 : 74;
}

// Small letters of ASCII as capitals, outside of characters of two bytes: readers of the format take no notice of case.
std::string Folded(std::string name) {
    for (std::size_t i = 0; i < name.size(); ++i) {
        if (static_cast<unsigned char>(name[i]) > 0x80)
            ++i;
        else if (name[i] >= 'a' && name[i] <= 'z')
            name[i] = static_cast<char>(name[i] - 'a' + 'A');
    }
    return name;
}

// Names of a table, each once and none empty.
std::vector<std::string> UniqueNames(std::vector<std::string> names, const char* unnamed) {
    std::set<std::string> taken;
    for (std::size_t i = 0; i < names.size(); ++i) {
        const std::string number = std::to_string(i + 1);
        std::string name = names[i].empty() ? unnamed + number : names[i];
        if (name[0] == '*') name += number;  // a dimension's block
        while (!taken.insert(Folded(name)).second) name += "_" + number;
        names[i] = name;
    }
    return names;
}

template <typename Table>
std::vector<std::string> NamesOf(const Table& table) {
    std::vector<std::string> names;
    names.reserve(table.size());
    for (const auto& entry : table) names.push_back(entry.name);
    return names;
}

class Handles {
 public:
    explicit Handles(const Drawing& drawing) {
        const auto note = [&](const Record& record) {
            if (!record.handle.empty()) m_next = std::max(m_next, Number(record) + 1);
            return true;
        };
        drawing.ForEachEntity(note);
        drawing.ForEachExtra(note);
        for (std::size_t i = 0; i < drawing.blocks.size(); ++i) drawing.ForEachInBlock(i, note);
    }
    // The record's own, unless another has it; else a free one.
    std::string Take(const Record& record) {
        if (!record.handle.empty() && m_taken.insert(Number(record)).second) return Digits(Number(record));
        return Digits(m_next++);
    }
    // The next free one after so many were given out.
    std::string SeedAfter(long given) const { return Digits(m_next + static_cast<std::uint64_t>(given)); }

 private:
    static std::uint64_t Number(const Record& record) {
        std::uint64_t number = 0;
        constexpr std::size_t kMost = 7;  // bytes, so that there is always a next one
        const std::size_t from = record.handle.size() > kMost ? record.handle.size() - kMost : 0;
        for (std::size_t i = from; i < record.handle.size(); ++i)
            number = number << 8 | static_cast<unsigned char>(record.handle[i]);
        return number;
    }
    static std::string Digits(std::uint64_t number) {
        char digits[20];
        const auto end = std::to_chars(digits, digits + sizeof digits, number, 16);
        std::transform(digits, end.ptr, digits, [](char c) { return c >= 'a' ? static_cast<char>(c - 'a' + 'A') : c; });
        return {digits, end.ptr};
    }

    std::uint64_t m_next = 1;
    std::set<std::uint64_t> m_taken;
};

class Writer {
 public:
    Writer(const Drawing& drawing, const Options& options, const Output& output, Count& count)
        : m_drawing(drawing),
          m_options(options),
          m_output(output),
          m_count(count),
          m_layers(Encoded(UniqueNames(NamesOf(drawing.layers), "LAYER_"))),
          m_linetypes(Encoded(UniqueNames(NamesOf(drawing.linetypes), "LINETYPE_"))),
          m_blocks(Encoded(UniqueNames(NamesOf(drawing.blocks), "BLOCK_"))),
          m_handles(drawing) {}

    bool Run() {
        // The header has the next free handle, though it is written before those are given out.
        m_handlesAhead = CountHandles();
        WriteHeader();
        WriteTables();
        WriteBlocks();
        WriteEntities();
        m_out.Text(0, "EOF");
        return Flush();
    }

 private:
    long CountHandles() const {
        long count = 0;
        const auto one = [&](const Record&) { return ++count, true; };
        m_drawing.ForEachEntity(one);
        m_drawing.ForEachExtra(one);
        for (std::size_t i = 0; i < m_drawing.blocks.size(); ++i) m_drawing.ForEachInBlock(i, one);
        return count + 2 * static_cast<long>(m_drawing.blocks.size());
    }

    bool Flush() {
        m_good = m_good && (m_out.text().empty() || m_output(m_out.text()));
        m_out.text().clear();
        return m_good;
    }
    bool Room() { return m_out.text().size() < kPiece ? m_good : Flush(); }

    // A text of a line: control characters in the form that the format has for them.
    std::string Encoded(const std::string& gbkText) const {
        std::string text;
        for (const char c : gbkText) {
            if (static_cast<unsigned char>(c) < 0x20)
                text += {'^', static_cast<char>(c + 0x40)};
            else
                text += c;
        }
        return m_options.utf8 ? gbk::ToUtf8(text) : text;
    }
    std::vector<std::string> Encoded(std::vector<std::string> names) const {
        for (std::string& name : names) name = Encoded(name);
        return names;
    }
    void Named(int code, const std::string& gbkText) { m_out.Text(code, Encoded(gbkText)); }

    void Begin(const char* section) {
        m_out.Text(0, "SECTION");
        m_out.Text(2, section);
    }
    void End() { m_out.Text(0, "ENDSEC"); }
    void Variable(const char* name) { m_out.Text(9, name); }
    void Whole(const char* name, long long value) {
        Variable(name);
        m_out.Whole(70, value);
    }
    void Flat(const char* name, const Point& p) {
        Variable(name);
        m_out.Real(10, p.x);
        m_out.Real(20, p.y);
    }
    void Space(const char* name, const Point& p) {
        Variable(name);
        m_out.Point(10, p);
    }

    void WriteHeader() {
        const reader::Variables& v = m_drawing.variables;
        Begin("HEADER");
        Variable("$ACADVER");
        m_out.Text(1, "AC1009");
        Variable("$DWGCODEPAGE");
        m_out.Text(3, m_options.utf8 ? "UTF-8" : "ANSI_936");
        Space("$INSBASE", Finite(v.base) ? v.base : Point{});
        Point low = v.extentsLow, high = v.extentsHigh;
        const bool known = Finite(low) && Finite(high) && low.x < kNoExtents && low.x <= high.x;
        if (known || Extents(m_drawing, low, high)) {
            Space("$EXTMIN", low);
            Space("$EXTMAX", high);
        }
        m_low = low;
        m_high = high;
        if (Finite(v.limitsLow) && Finite(v.limitsHigh)) {
            Flat("$LIMMIN", v.limitsLow);
            Flat("$LIMMAX", v.limitsHigh);
        }
        Variable("$LTSCALE");
        m_out.Real(40, v.linetypeScale > 0.0 && std::isfinite(v.linetypeScale) ? v.linetypeScale : 1.0);
        Whole("$LUNITS", v.linearUnits);
        Whole("$LUPREC", v.linearPlaces);
        Whole("$AUNITS", v.angularUnits);
        Whole("$AUPREC", v.angularPlaces);
        Whole("$ATTMODE", v.attributeMode);
        Whole("$FILLMODE", v.fillMode);
        Whole("$SPLFRAME", v.splineFrame);
        Whole("$PDMODE", v.pointMode);
        Variable("$PDSIZE");
        m_out.Real(40, std::isfinite(v.pointSize) ? v.pointSize : 0.0);
        Whole("$HANDLING", 1);
        Variable("$HANDSEED");
        m_out.Text(5, m_handles.SeedAfter(m_handlesAhead));
        End();
    }

    void Table(const char* name, std::size_t count) {
        m_out.Text(0, "TABLE");
        m_out.Text(2, name);
        m_out.Whole(70, static_cast<long long>(count));
    }

    void WriteTables() {
        Begin("TABLES");
        WriteViewport();
        Table("LTYPE", m_linetypes.size());
        for (std::size_t i = 0; i < m_linetypes.size(); ++i) WriteLinetype(i);
        m_out.Text(0, "ENDTAB");
        Table("LAYER", m_layers.size());
        for (std::size_t i = 0; i < m_layers.size(); ++i) {
            const reader::Layer& layer = m_drawing.layers[i];
            m_out.Text(0, "LAYER");
            m_out.Text(2, m_layers[i]);
            m_out.Whole(70, layer.flag & 0x7F);
            m_out.Whole(62, layer.color);
            m_out.Text(6, NameOf(m_linetypes, static_cast<std::size_t>(layer.linetype), "CONTINUOUS"));
        }
        m_out.Text(0, "ENDTAB");
        Table("STYLE", m_drawing.styles.size());
        for (const reader::Style& style : m_drawing.styles) WriteStyle(style);
        m_out.Text(0, "ENDTAB");
        End();
    }

    // What a program shows at opening: the view of the drawing, else its extents.
    void WriteViewport() {
        const reader::Variables& v = m_drawing.variables;
        Table("VPORT", 1);
        m_out.Text(0, "VPORT");
        m_out.Text(2, "*ACTIVE");
        m_out.Whole(70, 0);
        const bool seen = v.viewHeight > 0.0 && std::isfinite(v.viewHeight) && Finite(v.viewCentre);
        const Point centre = seen ? v.viewCentre : Point{(m_low.x + m_high.x) / 2, (m_low.y + m_high.y) / 2, 0.0};
        const double height = seen ? v.viewHeight : std::max(m_high.y - m_low.y, 1.0);
        const auto flat = [&](int code, double x, double y) {
            m_out.Real(code, x);
            m_out.Real(code + 10, y);
        };
        flat(10, 0, 0);
        flat(11, 1, 1);
        flat(12, centre.x, centre.y);
        flat(13, 0, 0);
        flat(14, 1, 1);
        flat(15, 0, 0);
        m_out.Point(16, {0, 0, 1});
        m_out.Point(17, {0, 0, 0});
        m_out.Real(40, height);
        m_out.Real(41, 1.0);
        m_out.Real(42, 50.0);
        for (const int code : {43, 44, 50, 51}) m_out.Real(code, 0.0);
        for (const auto& [code, value] :
             {std::pair{71, 0}, {72, 100}, {73, 1}, {74, 1}, {75, 0}, {76, 0}, {77, 0}, {78, 0}})
            m_out.Whole(code, value);
        m_out.Text(0, "ENDTAB");
    }

    void WriteLinetype(std::size_t index) {
        const reader::Linetype& type = m_drawing.linetypes[index];
        const int count = std::clamp(type.count, 0, static_cast<int>(type.elements.size()));
        m_out.Text(0, "LTYPE");
        m_out.Text(2, m_linetypes[index]);
        m_out.Whole(70, type.flag & 0x7F);
        Named(3, type.description);
        m_out.Whole(72, 65);
        m_out.Whole(73, count);
        m_out.Real(40, std::isfinite(type.length) ? type.length : 0.0);
        for (int i = 0; i < count; ++i) {
            const double element = type.elements[static_cast<std::size_t>(i)];
            m_out.Real(49, std::isfinite(element) ? element : 0.0);
        }
    }

    void WriteStyle(const reader::Style& style) {
        const auto real = [&](int code, double value, double otherwise) {
            m_out.Real(code, std::isfinite(value) ? value : otherwise);
        };
        m_out.Text(0, "STYLE");
        Named(2, style.name);
        m_out.Whole(70, style.flag & 0x7F);
        real(40, style.height, 0.0);
        real(41, style.widthFactor, 1.0);
        real(50, style.oblique * kDegrees, 0.0);
        m_out.Whole(71, style.generation);
        real(42, style.lastHeight, 1.0);
        Named(3, style.font);
        Named(4, style.bigFont);
    }

    static std::string_view NameOf(const std::vector<std::string>& names, std::size_t index,
                                   std::string_view otherwise) {
        return index < names.size() ? std::string_view(names[index]) : otherwise;
    }

    void WriteBlocks() {
        Begin("BLOCKS");
        for (std::size_t i = 0; i < m_blocks.size(); ++i) {
            const int flag = m_drawing.blocks[i].flag & 3;
            Record head;
            m_drawing.ForEachInBlock(i, [&](const Record& record) { return head = record, false; });
            const bool there = head.kind == reader::kBlock && Usable(head);
            m_out.Text(0, "BLOCK");
            m_out.Text(5, m_handles.Take({}));
            m_out.Text(8, LayerOf(head));
            m_out.Text(2, m_blocks[i]);
            m_out.Whole(70, flag);
            m_out.Point(10, there ? head.points.front() : Point{});
            m_out.Text(3, m_blocks[i]);
            if (there)
                ForEachInBlockInOrder(m_drawing, i, [&](const Record& record) {
                    if (record.kind != reader::kBlock && record.kind != reader::kEndBlock) Take(record);
                    return Room();
                });
            Close();
            m_out.Text(0, "ENDBLK");
            m_out.Text(5, m_handles.Take({}));
            m_out.Text(8, LayerOf(head));
        }
        End();
    }

    void WriteEntities() {
        Begin("ENTITIES");
        ForEachInOrder(m_drawing, [&](const Record& record) {
            Take(record);
            return Room();
        });
        Close();
        End();
    }

    static bool Finite(const Point& p) { return std::isfinite(p.x) && std::isfinite(p.y) && std::isfinite(p.z); }
    static bool Usable(const Record& record) {
        return std::all_of(record.points.begin(), record.points.end(), [](const Point& p) { return Finite(p); }) &&
               std::all_of(record.fields.begin(), record.fields.end(),
                           [](const Field& field) { return std::isfinite(field.number); }) &&
               std::isfinite(record.elevation.value_or(0.0)) && std::isfinite(record.thickness.value_or(0.0));
    }
    std::string_view LayerOf(const Record& record) const { return NameOf(m_layers, record.layer, "0"); }

    static const char* NameOf(const Record& record) {
        return record.kind == reader::kLine3D ? "LINE" : record.layout->name;
    }

    // A polyline or an insert with attributes is closed by its SEQEND, also where the drawing lacks that.
    void Close() {
        if (m_open == 0) return;
        m_open = 0;
        m_out.Text(0, "SEQEND");
        m_out.Text(5, m_handles.Take({}));
        m_out.Text(8, "0");
    }

    void Take(const Record& record) {
        const bool part = record.kind == reader::kVertex || record.kind == reader::kAttrib;
        const bool fits = !part || m_open == (record.kind == reader::kVertex ? reader::kPolyline : reader::kInsert);
        const bool writable = record.layout != nullptr && record.kind != reader::kViewport &&
                              record.kind != reader::kBlock && record.kind != reader::kEndBlock;
        if (record.kind == reader::kSeqEnd && m_open == 0) {
            ++m_count.leftOut;
            return;
        }
        if (!writable || !fits || !Usable(record)) {
            ++m_count.leftOut;
            return;
        }
        if (!part && record.kind != reader::kSeqEnd) Close();
        Write(record);
        if (record.kind == reader::kSeqEnd) m_open = 0;
        if (record.kind == reader::kPolyline || (record.kind == reader::kInsert && (record.flags & kHasFollowers) != 0))
            m_open = record.kind;
        ++m_count.entities;
    }

    void Write(const Record& record) {
        m_out.Text(0, NameOf(record));
        m_out.Text(5, m_handles.Take(record));
        m_out.Text(8, LayerOf(record));
        if (record.InPaperSpace()) m_out.Whole(67, 1);
        if (record.ByBlock())
            m_out.Text(6, "BYBLOCK");
        else if (!record.ByLayer() && static_cast<std::size_t>(*record.linetype) < m_linetypes.size())
            m_out.Text(6, m_linetypes[static_cast<std::size_t>(*record.linetype)]);
        if (record.color) m_out.Whole(62, *record.color);
        if (record.thickness.value_or(0.0) != 0.0) m_out.Real(39, *record.thickness);
        if (m_open == 0 && (record.kind == reader::kPolyline || (record.flags & kHasFollowers) != 0) &&
            record.kind != reader::kSeqEnd)
            m_out.Whole(66, 1);
        if (const Field* block = record.Find("block"))
            m_out.Text(2, NameOf(m_blocks, static_cast<std::size_t>(block->number), "?"));
        if (record.kind == reader::kPolyline) m_out.Point(10, {0.0, 0.0, record.elevation.value_or(0.0)});
        for (std::size_t i = 0; i < record.points.size(); ++i) m_out.Point(10 + static_cast<int>(i), record.points[i]);
        for (const Field& field : record.fields) WriteField(record, field);
    }

    void WriteField(const Record& record, const Field& field) {
        const std::string_view name = field.layout->name;
        if (name == "text") return Named(1, field.text);
        if (name == "prompt") return Named(3, field.text);
        if (name == "tag") return Named(2, field.text);
        if (name == "shape") return m_out.Whole(2, static_cast<long long>(field.number));
        if (name == "vertical") return m_out.Whole(VerticalCode(record.kind), static_cast<long long>(field.number));
        if (name == "style") {
            const auto index = static_cast<std::size_t>(field.number);
            if (record.kind != reader::kShape && index < m_drawing.styles.size())
                Named(7, m_drawing.styles[index].name);
            return;
        }
        if (name == "oblique" && record.kind == reader::kDimension) return m_out.Real(52, field.number * kDegrees);
        const Group* group = GroupOf(name);
        if (group == nullptr) return;
        if (group->form == Group::whole)
            m_out.Whole(group->code, static_cast<long long>(field.number));
        else
            m_out.Real(group->code, group->form == Group::degrees ? field.number * kDegrees : field.number);
        // A point has a height, which the record has once for all of them.
        if (name == "align_y" || name == "text_y") m_out.Real(31, record.elevation.value_or(0.0));
        if (name == "insert_y") m_out.Real(32, record.elevation.value_or(0.0));
    }

    const Drawing& m_drawing;
    const Options& m_options;
    const Output& m_output;
    Count& m_count;
    std::vector<std::string> m_layers, m_linetypes, m_blocks;
    Handles m_handles;
    GroupWriter m_out;
    std::uint8_t m_open = 0;  // kind of the record whose parts follow; 0: none
    Point m_low, m_high;
    long m_handlesAhead = 0;
    bool m_good = true;
};

}  // namespace

bool WriteDxf(const Drawing& drawing, const Options& options, const Output& output, Count& count) {
    return Writer(drawing, options, output, count).Run();
}

}  // namespace zm::dwg::dxf
