#include "dwg/writer/selection.h"

#include <algorithm>
#include <cmath>
#include <cstring>

#include "dwg/format/degrees.h"
#include "dwg/texts.h"
#include "dwg/writer/line_pattern.h"
#include "dwg/writer/writer.h"
#include "runtime/profile/project.h"
#include "runtime/text/numbers.h"
#include "zenromath/host.h"
#include "zenromath/runtime.h"

namespace zm::dwg {
namespace {

constexpr int kLinetypeStatus = 13;  // the process ends with it where a linetype cannot be had

// Required: byte by byte, so that the second byte of a Chinese character changes too where it lies in a to z.
void UpperCase(char* text) {
    for (; *text != '\0'; ++text)
        if (*text >= 'a' && *text <= 'z') *text = static_cast<char>(*text - 'a' + 'A');
}

// The record of a name, a new one if there is none; -1, with the limit reported, if no more fit.
int FindOrAdd(Session& session, Table table, std::string_view name, Limit limit, bool& added) {
    Tables& tables = session.tables();
    added = false;
    const int found = tables.Find(table, name);
    if (found >= 0) return found;
    if (tables.Full(table)) {
        TellOnce(limit);
        return -1;
    }
    if (!session.Fits(LayoutOf(table).recordSize)) return -1;
    added = true;
    const int slot = tables.Add(table, name);
    session.TablesChanged();
    return slot;
}

// Reads the pattern of a linetype; does not return where there is none.
LinePattern PatternOf(const char* name) {
    LinePattern pattern;
    PatternResult result = PatternResult::missing;
    const FileOwner file(_LFOpen("ACAD.LIN", "r+"));
    if (file == nullptr)
        _LMsg(texts::kNoLinetypeFile, nullptr, 0);
    else
        result = ReadLinePattern(file.get(), name, pattern);
    if (result != PatternResult::found) {
        _LMsg(result == PatternResult::fault ? texts::kLinetypeFault
                                             : numbers::Text(texts::kNoLinetype.gbk, name).c_str(),
              nullptr, 0);
        CurrentHost().EndProcess(kLinetypeStatus);
    }
    if (pattern.cut) TellOnce(Limit::pattern);
    return pattern;
}

void FillLinetype(std::uint8_t* record, std::string_view name, const LinePattern& pattern) {
    record[0] = kReferenced;
    std::copy(name.begin(), name.end(), record + linetype_record::kDescription);
    record[linetype_record::kDescription + name.size()] = 0;
    record[linetype_record::kAlignment] = 'A';
    record[linetype_record::kCount] = static_cast<std::uint8_t>(pattern.count);
    Store(record + linetype_record::kLength, pattern.length);
    for (std::size_t i = 0; i < kPatternSize; ++i)
        Store(record + linetype_record::kElements + 8 * i, pattern.elements[i]);
}

struct StyleKind {
    std::uint8_t flag;
    std::uint8_t generation;
};
// By the type given to _LDBsetstyle.
constexpr StyleKind kStyleKinds[] = {{kReferenced, 0},    {kVerticalStyle, 0}, {kReferenced, 2}, {kReferenced, 4},
                                     {kVerticalStyle, 2}, {kVerticalStyle, 4}, {kReferenced, 6}, {kVerticalStyle, 6}};

// Required: only as far as the end byte; after it the field keeps what it holds.
void CopyFont(std::uint8_t* field, const std::string& font) {
    const std::string_view kept = CutToField(font.c_str(), kFontSize, Limit::font);
    std::copy(kept.begin(), kept.end(), field);
    field[kept.size()] = 0;
}

void StoreFinite(std::uint8_t* field, double value) {
    if (std::isfinite(value))
        Store(field, value);
    else
        TellOnce(Limit::attribute);
}

void SelectStyle(Session& session, int type, char* text, const char* font, double width, double oblique) {
    UpperCase(text);
    const std::string_view name = CutToField(text, kNameSize, Limit::name);
    bool added = false;
    const int slot = FindOrAdd(session, Table::style, name, Limit::styles, added);
    if (slot < 0) return;
    state().now.style = static_cast<std::uint16_t>(slot);
    std::uint8_t* record = session.tables().Slot(Table::style, slot);
    if (type >= 0 && type < static_cast<int>(std::size(kStyleKinds))) {
        record[0] = kStyleKinds[type].flag;
        record[style_record::kGeneration] = kStyleKinds[type].generation;
    }
    Store(record + style_record::kHeight, 0.0);
    StoreFinite(record + style_record::kWidth, width);
    StoreFinite(record + style_record::kOblique, Radians(oblique));
    // Required: the last height of style 0, not of the last style.
    const std::uint8_t* first = session.tables().Slot(Table::style, 0);
    Store(record + style_record::kLastHeight, LoadReal(first + style_record::kLastHeight));
    const std::string fonts = font != nullptr ? font : "";
    const std::size_t comma = std::min(fonts.find(','), fonts.size());
    CopyFont(record + style_record::kBigFont, comma < fonts.size() ? fonts.substr(comma + 1) : "");
    CopyFont(record + style_record::kFont, fonts.substr(0, comma));
}

}  // namespace

void SelectLayer(Session& session, char* text) {
    UpperCase(text);
    const std::string_view name = CutToField(text, kNameSize, Limit::name);
    bool added = false;
    const int slot = FindOrAdd(session, Table::layer, name, Limit::layers, added);
    if (slot < 0) return;
    Attributes& now = state().now;
    now.layer = static_cast<std::uint16_t>(slot);
    // Required: also for a layer that was there, the template's included; the last selection wins.
    std::uint8_t* record = session.tables().Slot(Table::layer, slot);
    record[0] = kReferenced;
    Store(record + layer_record::kColor, now.color);
    Store(record + layer_record::kLinetype, now.linetype);
}

void SelectLinetype(Session& session, char* text) {
    UpperCase(text);
    const std::string_view name = CutToField(text, kNameSize, Limit::name);
    Attributes& now = state().now;
    const int found = session.tables().Find(Table::linetype, name);
    if (found >= 0) {
        now.linetype = static_cast<std::uint16_t>(found);
        return;
    }
    const LinePattern pattern = PatternOf(std::string(name).c_str());
    bool added = false;
    const int slot = FindOrAdd(session, Table::linetype, name, Limit::linetypes, added);
    if (slot < 0) return;
    now.linetype = static_cast<std::uint16_t>(slot);
    FillLinetype(session.tables().Slot(Table::linetype, slot), name, pattern);
}

}  // namespace zm::dwg

void _LDBsetlay(char* name) {
    zm::dwg::Session* session = zm::dwg::OpenSession();
    if (session == nullptr) return;
    if (name == nullptr) {
        _LMsg(zm::dwg::texts::kLayerNull, nullptr, 0);
        return;
    }
    zm::dwg::SelectLayer(*session, name);
}

void _LDBsetltype(char* name) {
    zm::dwg::Session* session = zm::dwg::OpenSession();
    if (session != nullptr && name != nullptr) zm::dwg::SelectLinetype(*session, name);
}

void _LDBsetstyle(int type, char* name, char* font, double width, double oblique) {
    zm::dwg::Session* session = zm::dwg::OpenSession();
    if (session != nullptr && name != nullptr) zm::dwg::SelectStyle(*session, type, name, font, width, oblique);
}
