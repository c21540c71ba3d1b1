#include "dwg/import/table_import.h"

#include <algorithm>
#include <cmath>
#include <cstring>

namespace zm::dwg {
namespace {

void PutText(std::uint8_t* field, std::size_t size, const std::string& text) {
    const std::size_t count = std::min(size - 1, text.size());
    std::copy_n(text.begin(), count, field);
    std::memset(field + count, 0, size - count);
}

std::string TextOf(const std::uint8_t* field, std::size_t size) {
    const auto* text = reinterpret_cast<const char*>(field);
    return {text, static_cast<std::size_t>(std::find(text, text + size, '\0') - text)};
}

std::uint8_t FlagOf(const reader::Style& style) {
    return static_cast<std::uint8_t>(kReferenced |
                                     (style.flag & (reader::Style::kShapeFile | reader::Style::kVertical)));
}

}  // namespace

std::uint8_t* TableImport::Add(Table table, const std::string& name, int& slot, const char* limit) {
    if (m_tables.Full(table) || !m_session.Fits(LayoutOf(table).recordSize)) {
        m_limit = limit;
        return nullptr;
    }
    slot = m_tables.Add(table, name.substr(0, kNameSize - 1));
    m_session.TablesChanged();
    std::uint8_t* record = m_tables.Slot(table, slot);
    record[0] = kReferenced;
    std::memset(record + 1 + kNameSize, 0, LayoutOf(table).recordSize - 1 - kNameSize);
    return record;
}

std::optional<int> TableImport::Linetype(std::size_t index) {
    int& slot = m_linetypes.at(index);
    const reader::Linetype& type = m_source.linetypes[index];
    if (slot == kUnmapped) slot = m_tables.Find(Table::linetype, type.name);
    if (slot != kUnmapped) return slot;
    std::uint8_t* record = Add(Table::linetype, type.name, slot, "a drawing holds 100 linetypes");
    if (record == nullptr) return std::nullopt;
    PutText(record + linetype_record::kDescription, linetype_record::kAlignment - linetype_record::kDescription,
            type.description);
    record[linetype_record::kAlignment] = 'A';
    const int count = std::clamp(type.count, 0, kPatternSize);
    record[linetype_record::kCount] = static_cast<std::uint8_t>(count);
    // The length is the sum of the elements, also where a damaged file says another one or has elements that are none.
    constexpr double kLongest = 1e9;
    double length = 0.0;
    for (std::size_t i = 0; i < type.elements.size(); ++i) {
        const double element = std::fabs(type.elements[i]) < kLongest ? type.elements[i] : 0.0;
        if (static_cast<int>(i) < count) length += std::fabs(element);
        Store(record + linetype_record::kElements + 8 * i, element);
    }
    Store(record + linetype_record::kLength, length);
    return slot;
}

std::optional<int> TableImport::Layer(std::size_t index) {
    int& slot = m_layers.at(index);
    const reader::Layer& layer = m_source.layers[index];
    if (slot == kUnmapped) slot = m_tables.Find(Table::layer, layer.name);
    if (slot != kUnmapped) return slot;
    int linetype = 0;
    if (static_cast<std::size_t>(layer.linetype) < m_source.linetypes.size()) {
        const auto mapped = Linetype(static_cast<std::size_t>(layer.linetype));
        if (!mapped) return std::nullopt;
        linetype = *mapped;
    }
    std::uint8_t* record = Add(Table::layer, layer.name, slot, "a drawing holds 200 layers");
    if (record == nullptr) return std::nullopt;
    record[0] = static_cast<std::uint8_t>(kReferenced | (layer.flag & reader::Layer::kFrozen));
    Store(record + layer_record::kColor, static_cast<std::uint16_t>(layer.color));
    Store(record + layer_record::kLinetype, static_cast<std::uint16_t>(linetype));
    return slot;
}

// All but the last height, which is no matter of the look.
bool TableImport::SameStyle(const std::uint8_t* record, const reader::Style& style) const {
    using namespace style_record;
    return record[0] == FlagOf(style) && TextOf(record + 1, kNameSize) == style.name &&
           LoadReal(record + kHeight) == style.height && LoadReal(record + kWidth) == style.widthFactor &&
           LoadReal(record + kOblique) == style.oblique && record[kGeneration] == style.generation &&
           TextOf(record + kFont, kFontSize) == style.font && TextOf(record + kBigFont, kFontSize) == style.bigFont;
}

std::optional<int> TableImport::Style(std::size_t index) {
    int& slot = m_styles.at(index);
    const reader::Style& style = m_source.styles[index];
    for (int i = 0; slot == kUnmapped && i < m_tables.Count(Table::style); ++i)
        if (SameStyle(m_tables.Slot(Table::style, i), style)) slot = i;
    if (slot != kUnmapped) return slot;
    // Shape files are styles without a name, of which there may be several.
    const bool shapes = (style.flag & reader::Style::kShapeFile) != 0;
    const std::string name = shapes ? style.name : FreeName(style.name, [&](const std::string& wanted) {
        return m_tables.Find(Table::style, wanted) >= 0;
    });
    std::uint8_t* record = Add(Table::style, name, slot, "a drawing holds 10 text styles");
    if (record == nullptr) return std::nullopt;
    using namespace style_record;
    record[0] = FlagOf(style);
    Store(record + kHeight, style.height);
    Store(record + kWidth, style.widthFactor);
    Store(record + kOblique, style.oblique);
    record[kGeneration] = static_cast<std::uint8_t>(style.generation);
    Store(record + kLastHeight, style.lastHeight);
    PutText(record + kFont, kFontSize, style.font);
    PutText(record + kBigFont, kFontSize, style.bigFont);
    return slot;
}

}  // namespace zm::dwg
