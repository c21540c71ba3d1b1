#include "tools/make_template/template_drawing.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <vector>

#include "dwg/format/bytes.h"
#include "dwg/format/file_layout.h"
#include "tools/make_template/variables.h"

namespace zm::tool {
namespace {

using dwg::Store;

// Offset of every piece.
constexpr std::uint32_t kEntities = dwg::kVariablesEnd;
constexpr std::uint32_t kLayers = kEntities;
constexpr std::uint32_t kStyles = kLayers + 37;
constexpr std::uint32_t kLinetypes = kStyles + 194;
constexpr std::uint32_t kEnd = kLinetypes + 8 * 187;
static_assert(kEnd == 3037);

constexpr std::uint16_t kVariableCount = 160;
constexpr std::uint16_t kViewRecordSize = 149;
// The low part is larger than a block section can become, since the entities are counted here too: a reader that takes
// it for the section's size then reads to the file's end.
constexpr std::uint32_t kBlockSectionMark = 0x40010000;
constexpr std::uint32_t kExtraSectionMark = 0x80000000;  // no extra section

void PutText(std::uint8_t* to, const char* text) {
    std::copy_n(text, std::strlen(text), to);
}

void PutTable(std::uint8_t* to, std::uint16_t recordSize, std::uint16_t count, std::uint32_t address) {
    Store(to, recordSize);
    Store(to + 2, count);
    Store(to + 4, std::uint16_t{0});
    Store(to + 6, address);
}

void PutHeader(std::uint8_t* file) {
    PutText(file, "AC1006");
    file[12] = 1;
    Store(file + 13, std::uint16_t{3});  // entity sections
    Store(file + 15, std::uint16_t{5});  // tables
    Store(file + 17, kVariableCount);
    Store(file + dwg::kEntitiesStart, kEntities);
    Store(file + dwg::kEntitiesEnd, kEntities);
    Store(file + dwg::kBlocksStart, kEnd);
    Store(file + dwg::kEntityCount, kBlockSectionMark);
    Store(file + dwg::kExtraStart, kEnd);
    Store(file + 40, kExtraSectionMark);
    PutTable(file + 44, 37, 0, kEntities);
    PutTable(file + 54, 37, 1, kLayers);
    PutTable(file + 64, 194, 1, kStyles);
    PutTable(file + 74, 187, 8, kLinetypes);
    PutTable(file + 84, kViewRecordSize, 0, kEnd);
}

void PutVariable(std::uint8_t* to, const Variable& variable) {
    const double* values = variable.values;
    switch (variable.type) {
        case Type::u8:
            to[0] = static_cast<std::uint8_t>(values[0]);
            break;
        case Type::u16:
        case Type::i16:
            Store(to, static_cast<std::uint16_t>(static_cast<std::int32_t>(values[0])));
            break;
        case Type::time:
            Store(to + 4, static_cast<std::uint32_t>(values[1]));
            [[fallthrough]];
        case Type::u32:
            Store(to, static_cast<std::uint32_t>(values[0]));
            break;
        case Type::f64:
        case Type::f64x2:
        case Type::f64x3:
            for (std::size_t i = 0; i < variable.size / 8; ++i) Store(to + 8 * i, values[i]);
            break;
        case Type::table:
            PutTable(to, static_cast<std::uint16_t>(values[0]), 0, 0);
            break;
        case Type::text:
            PutText(to, variable.text);
            break;
    }
}

void PutLayer(std::uint8_t* record) {
    record[0] = dwg::kReferenced;
    PutText(record + 1, "0");
    Store(record + dwg::layer_record::kColor, std::uint16_t{7});
}

void PutStyle(std::uint8_t* record) {
    // The flag decides where texts are placed, so that it must not be 0.
    record[0] = dwg::kReferenced;
    PutText(record + 1, "STANDARD");
    Store(record + dwg::style_record::kWidth, 1.0);
    Store(record + dwg::style_record::kLastHeight, 2.5);
    PutText(record + dwg::style_record::kFont, "txt");
}

struct Linetype {
    const char* name;
    const char* description;
    std::vector<double> elements;
};

void PutLinetype(std::uint8_t* record, const Linetype& linetype) {
    namespace at = dwg::linetype_record;
    record[0] = dwg::kReferenced;
    PutText(record + 1, linetype.name);
    PutText(record + at::kDescription, linetype.description);
    record[at::kAlignment] = 'A';
    record[at::kCount] = static_cast<std::uint8_t>(linetype.elements.size());
    double length = 0.0;
    std::uint8_t* element = record + at::kElements;
    for (const double value : linetype.elements) {
        length += value < 0.0 ? -value : value;
        Store(element, value);
        element += 8;
    }
    Store(record + at::kLength, length);
}

}  // namespace

std::string TemplateDrawing() {
    std::vector<std::uint8_t> file(kEnd);
    PutHeader(file.data());
    for (const Variable& variable : kVariables) PutVariable(file.data() + variable.offset, variable);
    PutLayer(file.data() + kLayers);
    PutStyle(file.data() + kStyles);
    // Entities and layers carry index 0 where nothing was selected, so it is a plain line. The names "0" to "6" are the
    // pen styles of devices.
    const Linetype linetypes[] = {{"CONTINUOUS", "Solid line", {}},
                                  {"0", "Solid", {}},
                                  {"1", "Dash", {6, -2}},
                                  {"2", "Dot", {0, -2}},
                                  {"3", "Dash dot", {6, -2, 0, -2}},
                                  {"4", "Dash dot dot", {6, -2, 0, -2, 0, -2}},
                                  {"5", "Null pen", {}},
                                  {"6", "Inside frame", {}}};
    std::uint8_t* record = file.data() + kLinetypes;
    for (const Linetype& linetype : linetypes) {
        PutLinetype(record, linetype);
        record += 187;
    }
    return std::string(file.begin(), file.end());
}

}  // namespace zm::tool
