#include "tests/dwg/block_file.h"

#include "dwg/format/bytes.h"

namespace zm::test {
namespace {

std::string Padded(std::string text, std::size_t size) {
    text.resize(size, '\0');
    return text;
}

std::string TableField(unsigned recordSize, std::size_t count, std::size_t address) {
    return U16(recordSize) + U16(static_cast<unsigned>(count)) + U16(0) + U32(static_cast<std::uint32_t>(address));
}

// The length of a section as copying counts it: by the lengths of its records, which for a reference are two bytes
// short.
std::size_t LengthByRecords(const std::string& records) {
    const auto* bytes = reinterpret_cast<const std::uint8_t*>(records.data());
    std::size_t sum = 0;
    for (std::size_t at = 0; at + 8 <= records.size();) {
        const unsigned length = dwg::Load16(bytes + at + 2);
        if (length < 8) return records.size();
        sum += length;
        at += length + (bytes[at] == 14 ? 2 : 0);
    }
    return sum;
}

}  // namespace

std::string BlockFile::Record(int kind, int flags, const std::string& body, unsigned layer, unsigned options) const {
    const std::string end = later() ? "\xAA\x55" : "";
    const auto length = static_cast<unsigned>(8 + body.size() + end.size());
    return U16(static_cast<unsigned>(kind | flags << 8)) + U16(length) + U16(layer) + U16(options) + body + end;
}

std::string BlockFile::Reference(unsigned number, double x, double y) const {
    std::string record = Record(14, 0, U32(number) + F64(x) + F64(y));
    return record.replace(2, 2, U16(static_cast<unsigned>(record.size()) - 2));
}

std::string BlockFile::Definition(const std::string& records) const {
    const std::string surplus(later() ? 6 : 0, '\x11');
    return Record(12, 0, F64(0) + F64(0) + surplus) + records + Record(13, 0, "");
}

std::string BlockFile::Bytes() const {
    const std::size_t blockSize = later() ? 45 : 37, layerSize = later() ? 41 : 37;
    const std::size_t styleSize = later() ? 198 : 194, linetypeSize = later() ? 191 : 187;
    std::string blockTable, layerTable, styleTable, linetypeTable, section;
    for (const Block& block : blocks) {
        const std::string gap(later() ? 2 : 0, '\0');
        const auto offset = U32(static_cast<std::uint32_t>(section.size()));
        blockTable += Padded("@" + Padded(block.name, 32) + gap + offset, blockSize);
        section += block.records;
    }
    for (const Layer& layer : layers) {
        const std::string gap(later() ? 2 : 0, '\0');
        const std::string flag(1, static_cast<char>(layer.flag));
        layerTable += Padded(flag + Padded(layer.name, 32) + gap + U16(layer.color) + U16(layer.linetype), layerSize);
    }
    for (const std::string& name : styles) styleTable += Padded("@" + name, styleSize);
    for (const std::string& name : linetypes) linetypeTable += Padded("@" + name, linetypeSize);

    const std::size_t entitiesEnd = 1310 + entities.size();
    const std::size_t layersAt = entitiesEnd + blockTable.size();
    const std::size_t stylesAt = layersAt + layerTable.size();
    const std::size_t linetypesAt = stylesAt + styleTable.size();
    const std::size_t end = linetypesAt + linetypeTable.size();
    std::string header = Padded("AC" + std::to_string(version), 20) + U32(1310);
    header += U32(static_cast<std::uint32_t>(1310 + LengthByRecords(entities)));
    header += U32(static_cast<std::uint32_t>(end)) + U32(0x40000000);
    header += U32(static_cast<std::uint32_t>(end)) + U32(0x80000000);
    header += TableField(static_cast<unsigned>(blockSize), blocks.size(), entitiesEnd);
    header += TableField(static_cast<unsigned>(layerSize), layers.size(), layersAt);
    header += TableField(static_cast<unsigned>(styleSize), styles.size(), stylesAt);
    header += TableField(static_cast<unsigned>(linetypeSize), linetypes.size(), linetypesAt);
    header += TableField(later() ? 153 : 149, 0, end);
    header += F64(baseX) + F64(baseY);
    return Padded(header, 1310) + entities + blockTable + layerTable + styleTable + linetypeTable + section;
}

}  // namespace zm::test
