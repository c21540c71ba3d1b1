#include "dwg/reader/dump.h"

#include <cmath>
#include <cstdlib>

#include "dwg/reader/picture.h"
#include "runtime/text/gbk.h"
#include "runtime/text/numbers.h"

namespace zm::dwg::reader {
namespace {

using numbers::Text;
using ull = unsigned long long;

// A JSON string of GBK bytes.
std::string Quoted(const std::string& gbkText) {
    std::string out = "\"";
    for (const char c : gbk::ToUtf8(gbkText)) {
        if (c == '"' || c == '\\')
            out += {'\\', c};
        else if (static_cast<unsigned char>(c) < 0x20)
            out += Text("\\u%04x", c);
        else
            out += c;
    }
    return out + '"';
}

// The shortest text that reads back to the same double; JSON has no infinities.
std::string Number(double value, bool json) {
    if (!std::isfinite(value)) return json ? "null" : Text("%g", value);
    for (int digits = 6; digits < 17; ++digits) {
        std::string text = Text("%.*g", digits, value);
        if (numbers::ReadReal(text.c_str()) == value) return text;
    }
    return Text("%.17g", value);
}

std::string LayerName(const Drawing& drawing, int index) {
    const auto i = static_cast<std::size_t>(index);
    return i < drawing.layers.size() ? drawing.layers[i].name : Text("#%d", index);
}

std::string LinetypeName(const Drawing& drawing, int index) {
    const auto i = static_cast<std::size_t>(index);
    if (index == kByBlock || index == kByBlock1009) return "BYBLOCK";
    if (index == kByLayer1009) return "BYLAYER";
    return i < drawing.linetypes.size() ? drawing.linetypes[i].name : Text("#%d", index);
}

std::string BlockName(const Drawing& drawing, double number) {
    const auto i = static_cast<std::size_t>(number);
    return number >= 0 && i < drawing.blocks.size() ? drawing.blocks[i].name : Text("#%.0f", number);
}

std::string KindName(const Record& record) {
    return record.layout != nullptr ? record.layout->name : Text("KIND%u", record.kind);
}

std::string PointText(const Point& point, bool json) {
    const std::string inner = Number(point.x, json) + "," + Number(point.y, json) + "," + Number(point.z, json);
    return json ? "[" + inner + "]" : "(" + inner + ")";
}

// name=value pairs or JSON members, in the order of the record.
std::string Fields(const Drawing& drawing, const Record& record, bool json) {
    std::string out;
    const auto add = [&](const std::string& name, const std::string& value) {
        out += json ? ",\"" + name + "\":" + value : " " + name + "=" + value;
    };
    const auto quoted = [&](const std::string& text) { return Quoted(text); };
    if (record.color) add("color", Text("%d", *record.color));
    if (record.linetype) add("linetype", quoted(LinetypeName(drawing, *record.linetype)));
    if (record.elevation) add("elevation", Number(*record.elevation, json));
    if (record.thickness) add("thickness", Number(*record.thickness, json));
    if (!record.handle.empty()) {
        std::string digits;
        for (const char c : record.handle) digits += Text("%02X", static_cast<unsigned char>(c));
        add("handle", quoted(digits));
    }
    if (record.InPaperSpace()) add("viewport", Text("%d", record.viewport.value_or(0)));
    if (record.kind == kJump) add("to", Text("%llu", static_cast<ull>(drawing.PlaceOf(record.jump))));
    if (!record.points.empty()) {
        std::string points;
        for (const Point& point : record.points)
            points += (points.empty() || !json ? "" : ",") + PointText(point, json);
        add("points", json ? "[" + points + "]" : points);
    }
    for (const Field& field : record.fields) {
        if (field.layout->type == FieldType::text)
            add(field.layout->name, quoted(field.text));
        else
            add(field.layout->name, Number(field.number, json));
        if (std::string_view(field.layout->name) == "block") add("name", quoted(BlockName(drawing, field.number)));
    }
    return out;
}

// A name as it is shown among others: one without letters would be overlooked.
std::string Shown(const std::string& name) {
    return name.empty() ? "(no name)" : gbk::ToUtf8(name);
}

std::string StateOf(const Layer& layer) {
    std::string state;
    if (layer.color < 0) state += " off";
    if (layer.flag & Layer::kFrozen) state += " frozen";
    return state;
}

std::string InfoText(const Drawing& drawing, ull entities, bool drawn, const Point& low, const Point& high) {
    const Header& h = drawing.header;
    std::string out = Text("version %d, %u header variables, code page %d\n", h.version, h.variables, h.codePage);
    out += Text("%llu entity records, bytes %u to %u; block section at %u, extra section at %u; %zu bytes in all\n",
                entities, h.entityStart, h.entityEnd, h.blockStart, h.extraStart, drawing.bytes().size());
    if (drawn)
        out += Text("extents %.3f %.3f to %.3f %.3f\n", low.x, low.y, high.x, high.y);
    else
        out += "nothing drawn\n";
    out += Text("%zu layers\n", drawing.layers.size());
    for (std::size_t i = 0; i < drawing.layers.size(); ++i)
        out += Text("  %zu %s colour %d linetype %s%s\n", i, Shown(drawing.layers[i].name).c_str(),
                    std::abs(drawing.layers[i].color),
                    gbk::ToUtf8(LinetypeName(drawing, drawing.layers[i].linetype)).c_str(),
                    StateOf(drawing.layers[i]).c_str());
    out += Text("%zu text styles\n", drawing.styles.size());
    for (std::size_t i = 0; i < drawing.styles.size(); ++i) {
        const Style& style = drawing.styles[i];
        out +=
            Text("  %zu %s font %s %s width %g oblique %g\n", i,
                 style.flag & Style::kShapeFile ? "(shape file)" : Shown(style.name).c_str(),
                 gbk::ToUtf8(style.font).c_str(), gbk::ToUtf8(style.bigFont).c_str(), style.widthFactor, style.oblique);
    }
    out += Text("%zu linetypes\n", drawing.linetypes.size());
    for (std::size_t i = 0; i < drawing.linetypes.size(); ++i)
        out += Text("  %zu %s elements %d length %g\n", i, Shown(drawing.linetypes[i].name).c_str(),
                    drawing.linetypes[i].count, drawing.linetypes[i].length);
    out += Text("%zu blocks\n", drawing.blocks.size());
    for (std::size_t i = 0; i < drawing.blocks.size(); ++i)
        out += Text("  %zu %s at %u\n", i, Shown(drawing.blocks[i].name).c_str(), drawing.blocks[i].offset);
    return out;
}

std::string InfoJson(const Drawing& drawing, ull entities, bool drawn, const Point& low, const Point& high) {
    const Header& h = drawing.header;
    const auto list = [](const auto& items, auto&& one) {
        std::string out = "[";
        for (const auto& item : items) out += (out.size() > 1 ? "," : "") + one(item);
        return out + "]";
    };
    const auto number = [](double value) { return Number(value, true); };
    std::string out = Text("{\"version\":%d,\"variables\":%u,\"code_page\":%d,\"entities\":%llu,\"bytes\":%zu",
                           h.version, h.variables, h.codePage, entities, drawing.bytes().size());
    out += Text(
        ",\"entity_start\":%u,\"entity_end\":%u,\"block_start\":%u,\"block_size\":%u,\"extra_start\":%u,"
        "\"extra_size\":%u",
        h.entityStart, h.entityEnd, h.blockStart, h.blockSize, h.extraStart, h.extraSize);
    out += ",\"extents\":" +
           (drawn ? "[" + number(low.x) + "," + number(low.y) + "," + number(high.x) + "," + number(high.y) + "]"
                  : std::string("null"));
    out += ",\"layers\":" + list(drawing.layers, [&](const Layer& layer) {
               return "{\"name\":" + Quoted(layer.name) +
                      Text(",\"color\":%d,\"flag\":%d,\"linetype\":", layer.color, layer.flag) +
                      Quoted(LinetypeName(drawing, layer.linetype)) + "}";
           });
    out += ",\"styles\":" + list(drawing.styles, [&](const Style& style) {
               return "{\"name\":" + Quoted(style.name) + Text(",\"flag\":%d,\"font\":", style.flag) +
                      Quoted(style.font) + ",\"big_font\":" + Quoted(style.bigFont) +
                      ",\"height\":" + number(style.height) + ",\"width\":" + number(style.widthFactor) +
                      ",\"oblique\":" + number(style.oblique) +
                      Text(",\"generation\":%d,\"last_height\":", style.generation) + number(style.lastHeight) + "}";
           });
    out += ",\"linetypes\":" + list(drawing.linetypes, [&](const Linetype& type) {
               return "{\"name\":" + Quoted(type.name) + ",\"description\":" + Quoted(type.description) +
                      Text(",\"flag\":%d,\"alignment\":%d,\"elements\":%d,\"length\":", type.flag, type.alignment,
                           type.count) +
                      number(type.length) + ",\"dashes\":" + list(type.elements, number) + "}";
           });
    out += ",\"blocks\":" + list(drawing.blocks, [](const BlockEntry& block) {
               return "{\"name\":" + Quoted(block.name) +
                      Text(",\"flag\":%d,\"offset\":%u,\"mark\":%d}", block.flag, block.offset, block.mark);
           });
    return out + "}\n";
}

constexpr const char* kSectionNames[] = {"entities", "blocks", "extras"};

std::string PlaceText(const Place* place, bool json) {
    if (place == nullptr) return {};
    const std::string section = kSectionNames[static_cast<int>(place->section)];
    std::string out = json ? ",\"section\":\"" + section + "\"" : " section=" + section;
    if (place->block != nullptr) out += (json ? ",\"block_name\":" : " in=") + Quoted(place->block->name);
    return out;
}

}  // namespace

std::string Info(const Drawing& drawing, bool json) {
    ull entities = 0;
    drawing.ForEachEntity([&](const Record&) { return ++entities, true; });
    Point low;
    Point high;
    const bool drawn = Extents(drawing, low, high);
    return json ? InfoJson(drawing, entities, drawn, low, high) : InfoText(drawing, entities, drawn, low, high);
}

std::string Line(const Drawing& drawing, const Record& record, bool json, const Place* place) {
    if (json)
        return Text("{\"offset\":%llu,\"kind\":\"%s\",\"erased\":%s", static_cast<ull>(record.offset),
                    KindName(record).c_str(), record.erased ? "true" : "false") +
               PlaceText(place, true) +
               (place != nullptr
                    ? Text(",\"bytes\":%u,\"flags\":%u,\"options\":%u", record.length, record.flags, record.options)
                    : std::string()) +
               ",\"layer\":" + Quoted(LayerName(drawing, record.layer)) + Fields(drawing, record, true) + "}";
    return Text("%llu %s%s", static_cast<ull>(record.offset), KindName(record).c_str(),
                record.erased ? " erased" : "") +
           PlaceText(place, false) + " layer=" + Quoted(LayerName(drawing, record.layer)) +
           Fields(drawing, record, false);
}

}  // namespace zm::dwg::reader
