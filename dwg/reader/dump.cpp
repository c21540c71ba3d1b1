#include "dwg/reader/dump.h"

#include <cmath>

#include "runtime/gbk.h"
#include "runtime/numbers.h"

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
    if (index == 255) return "BYBLOCK";
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

std::string InfoText(const Drawing& drawing, ull entities, bool drawn, const Point& low, const Point& high) {
    const Header& h = drawing.header;
    std::string out = Text("version %d, %u header variables, code page %d\n", h.version, h.variables, h.codePage);
    out += Text("%llu entity records, bytes %u to %u; block section at %u; %zu bytes in all\n", entities, h.entityStart,
                h.entityEnd, h.blockStart, drawing.bytes().size());
    if (drawn)
        out += Text("extents %.3f %.3f to %.3f %.3f\n", low.x, low.y, high.x, high.y);
    else
        out += "nothing drawn\n";
    out += Text("%zu layers\n", drawing.layers.size());
    for (std::size_t i = 0; i < drawing.layers.size(); ++i)
        out += Text("  %zu %s colour %d linetype %s\n", i, gbk::ToUtf8(drawing.layers[i].name).c_str(),
                    drawing.layers[i].color, gbk::ToUtf8(LinetypeName(drawing, drawing.layers[i].linetype)).c_str());
    out += Text("%zu text styles\n", drawing.styles.size());
    for (std::size_t i = 0; i < drawing.styles.size(); ++i) {
        const Style& style = drawing.styles[i];
        out +=
            Text("  %zu %s font %s %s width %g oblique %g\n", i, gbk::ToUtf8(style.name).c_str(),
                 gbk::ToUtf8(style.font).c_str(), gbk::ToUtf8(style.bigFont).c_str(), style.widthFactor, style.oblique);
    }
    out += Text("%zu linetypes\n", drawing.linetypes.size());
    for (std::size_t i = 0; i < drawing.linetypes.size(); ++i)
        out += Text("  %zu %s elements %d length %g\n", i, gbk::ToUtf8(drawing.linetypes[i].name).c_str(),
                    drawing.linetypes[i].count, drawing.linetypes[i].length);
    out += Text("%zu blocks\n", drawing.blocks.size());
    for (std::size_t i = 0; i < drawing.blocks.size(); ++i)
        out += Text("  %zu %s at %u\n", i, gbk::ToUtf8(drawing.blocks[i].name).c_str(), drawing.blocks[i].offset);
    return out;
}

std::string InfoJson(const Drawing& drawing, ull entities, bool drawn, const Point& low, const Point& high) {
    const Header& h = drawing.header;
    const auto list = [](const auto& items, auto&& one) {
        std::string out = "[";
        for (const auto& item : items) out += (out.size() > 1 ? "," : "") + one(item);
        return out + "]";
    };
    std::string out = Text("{\"version\":%d,\"variables\":%u,\"code_page\":%d,\"entities\":%llu,\"bytes\":%zu",
                           h.version, h.variables, h.codePage, entities, drawing.bytes().size());
    out += ",\"extents\":" + (drawn ? "[" + Number(low.x, true) + "," + Number(low.y, true) + "," +
                                          Number(high.x, true) + "," + Number(high.y, true) + "]"
                                    : std::string("null"));
    out += ",\"layers\":" + list(drawing.layers, [&](const Layer& layer) {
               return "{\"name\":" + Quoted(layer.name) + Text(",\"color\":%d,\"linetype\":", layer.color) +
                      Quoted(LinetypeName(drawing, layer.linetype)) + "}";
           });
    out += ",\"styles\":" + list(drawing.styles, [](const Style& style) {
               return "{\"name\":" + Quoted(style.name) + ",\"font\":" + Quoted(style.font) +
                      ",\"big_font\":" + Quoted(style.bigFont) + ",\"width\":" + Number(style.widthFactor, true) + "}";
           });
    out += ",\"linetypes\":" + list(drawing.linetypes, [](const Linetype& type) {
               return "{\"name\":" + Quoted(type.name) + Text(",\"elements\":%d,\"length\":", type.count) +
                      Number(type.length, true) + "}";
           });
    out += ",\"blocks\":" + list(drawing.blocks, [](const BlockEntry& block) {
               return "{\"name\":" + Quoted(block.name) + Text(",\"offset\":%u}", block.offset);
           });
    return out + "}\n";
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

std::string Line(const Drawing& drawing, const Record& record, bool json) {
    if (json)
        return Text("{\"offset\":%llu,\"kind\":\"%s\",\"erased\":%s,\"layer\":", static_cast<ull>(record.offset),
                    KindName(record).c_str(), record.erased ? "true" : "false") +
               Quoted(LayerName(drawing, record.layer)) + Fields(drawing, record, true) + "}";
    return Text("%llu %s%s layer=", static_cast<ull>(record.offset), KindName(record).c_str(),
                record.erased ? " erased" : "") +
           Quoted(LayerName(drawing, record.layer)) + Fields(drawing, record, false);
}

}  // namespace zm::dwg::reader
