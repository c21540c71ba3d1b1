#include "tools/zenro/settings/listing.h"

#include <algorithm>

#include "runtime/text/fixed_text.h"
#include "runtime/text/gbk.h"
#include "tools/zenro/map/codes.h"
#include "zenromath/config.h"
#include "zenromath/runtime.h"

namespace zm::tool {
namespace {

using Value = nlohmann::ordered_json;

constexpr int kNoWidth = 255;

template <std::size_t Size>
std::string Readable(const char (&field)[Size]) {
    return gbk::ToUtf8(runtime::FieldText(field));
}

// Columns that a text takes: two for each character of three bytes, which is a Chinese one.
std::size_t Width(const std::string& utf8) {
    std::size_t width = 0;
    for (const char c : utf8) {
        const auto byte = static_cast<unsigned char>(c);
        if (byte >= 0xE0)
            width += 2;
        else if (byte < 0x80 || byte >= 0xC0)
            ++width;
    }
    return width;
}

std::string Shown(const Value& value) {
    if (value.is_string()) return value.get<std::string>();
    if (value.is_boolean()) return value.get<bool>() ? "yes" : "no";
    return value.dump();
}

std::vector<std::size_t> Widths(const Listing& listing) {
    std::vector<std::size_t> widths;
    for (std::size_t i = 0; i < listing.columns.size(); ++i) {
        widths.push_back(Width(listing.columns[i]));
        for (const auto& row : listing.rows) widths[i] = std::max(widths[i], Width(Shown(row[i])));
    }
    return widths;
}

// Texts to the left, numbers to the right.
std::string Cell(const std::string& text, std::size_t width, bool left) {
    const std::string blanks(width - Width(text), ' ');
    return left ? text + blanks : blanks + text;
}

bool IsText(const Listing& listing, std::size_t column) {
    return !listing.rows.empty() && !listing.rows.front()[column].is_number();
}

}  // namespace

Listing ListLayers() {
    Listing listing{{"name", "start", "end", "colour", "shown"}, {}};
    LayerCol* table = nullptr;
    int* count = nullptr;
    Get_CengCi(table, count);
    for (int i = 0; i < *count; ++i)
        listing.rows.push_back(
            {Readable(table[i].name), table[i].start, table[i].end, table[i].color, table[i].show != 0});
    return listing;
}

Listing ListPens() {
    Listing listing{{"code", "width"}, {}};
    listing.beside["default"] = GetZenroProfileInt("PenWidth", "Default", 0, "neworv.ini", -1);
    for (int code = 1; code < kCodes; ++code) {
        const std::string key = std::to_string(code);
        const unsigned int width = GetZenroProfileInt("PenWidth", key.c_str(), kNoWidth, "neworv.ini", -1) & 0xFF;
        if (width < kNoWidth) listing.rows.push_back({code, width});
    }
    return listing;
}

Listing ListNotes(TqNoteLayBase& notes) {
    Listing listing{{"class", "layer", "colour", "display", "height", "width", "interval", "font", "convert", "memo"},
                    {}};
    const auto& table = *notes.GetNLayTbl();
    for (int i = 0; i < table.GetSize(); ++i) {
        const NOTELAY& r = *table.GetAt(i);
        listing.rows.push_back({gbk::ToUtf8(std::string(1, r.code)), Readable(r.layerName), r.color, r.display,
                                r.height, r.width, r.interval, r.fontNumber, r.convert, Readable(r.memo)});
    }
    return listing;
}

Listing ListFonts(TqNoteLayBase& notes) {
    Listing listing{{"number", "face", "style", "font", "slant"}, {}};
    const auto& table = *notes.GetFontTbl();
    for (int i = 0; i < table.GetSize(); ++i) {
        const NOTEFONT& f = *table.GetAt(i);
        listing.rows.push_back(
            {f.number, Readable(f.screenFont), Readable(f.textStyle), Readable(f.fontName), f.slant});
    }
    return listing;
}

Listing ListColours() {
    Listing listing{{"number", "red", "green", "blue"}, {}};
    unsigned long* palette = nullptr;
    const int count = Get_SysColor(palette);
    for (int i = 1; i < count; ++i)
        listing.rows.push_back({i, palette[i] & 0xFF, palette[i] >> 8 & 0xFF, palette[i] >> 16 & 0xFF});
    return listing;
}

std::string AsText(const Listing& listing) {
    const std::vector<std::size_t> widths = Widths(listing);
    std::string text;
    for (const auto& [name, value] : listing.beside.items()) text += name + " " + Shown(value) + "\n";
    const auto add = [&](const auto& cellOf) {
        std::string line;
        for (std::size_t i = 0; i < widths.size(); ++i)
            line += (i > 0 ? "  " : "") + Cell(cellOf(i), widths[i], IsText(listing, i));
        text += line.substr(0, line.find_last_not_of(' ') + 1) + "\n";
    };
    add([&](std::size_t i) { return listing.columns[i]; });
    for (const auto& row : listing.rows) add([&](std::size_t i) { return Shown(row[i]); });
    return text;
}

nlohmann::ordered_json AsJson(const Listing& listing, const std::string& name) {
    nlohmann::ordered_json out = listing.beside;
    auto rows = nlohmann::ordered_json::array();
    for (const auto& row : listing.rows) {
        auto object = nlohmann::ordered_json::object();
        for (std::size_t i = 0; i < listing.columns.size(); ++i) object[listing.columns[i]] = row[i];
        rows.push_back(object);
    }
    out[name] = rows;
    return out;
}

}  // namespace zm::tool
