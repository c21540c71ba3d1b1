#include "dwg/writer/drawing_template.h"

#include <cstring>

#include "dwg/format/bytes.h"
#include "dwg/format/file_layout.h"
#include "dwg/reader/check.h"
#include "runtime/text/numbers.h"

namespace zm::dwg {
namespace {

constexpr const char* kTableNames[kTableCount] = {"block", "layer", "style", "linetype", "view"};
constexpr std::uint32_t kFarthestEntities = 65535;  // no header variables reach that far

unsigned long Shown(std::uint32_t number) {
    return number;
}

// Whether the numbers in the header describe a template that the writer can use.
std::string ProblemOfHeader(const std::uint8_t* header) {
    using numbers::Text;
    if (std::memcmp(header, "AC", 2) != 0 || std::memcmp(header + 2, kVersion, 4) != 0)
        return Text("its version digits are not AC%s; save it in that version", kVersion);
    const std::uint32_t start = Load32(header + kEntitiesStart);
    const std::uint32_t end = Load32(header + kEntitiesEnd);
    const std::uint32_t blockTable = Load32(header + LayoutOf(Table::block).addressField);
    if (start < kOldVariablesEnd || start > kFarthestEntities)
        return Text("its entity section begins at %lu, which is not after the header variables", Shown(start));
    if (blockTable < start || blockTable - start > kTemplateEntities || end < start || end > blockTable ||
        (end != start && end - start != kEntityHeaderSize))
        return Text("its entity section, from %lu to %lu, is not empty; erase what is drawn in it", Shown(start),
                    Shown(end));
    std::uint64_t place = blockTable;
    for (int i = 0; i < kTableCount; ++i) {
        const std::uint32_t count = Load32(header + kTables[i].countField);
        const std::uint32_t address = Load32(header + kTables[i].addressField);
        const int most = i == static_cast<int>(Table::block) ? 0 : kTables[i].capacity;
        if (count > static_cast<std::uint32_t>(most))
            return Text("its %s table has %lu records, %d are the most", kTableNames[i], Shown(count), most);
        if (address != place)
            return Text("its %s table is at offset %lu, not directly after the table before it, at %lu", kTableNames[i],
                        Shown(address), static_cast<unsigned long>(place));
        place += count * kTables[i].recordSize;
    }
    if (Load32(header + LayoutOf(Table::style).countField) == 0) return "it has no text style";
    const std::uint32_t blocks = Load32(header + kBlocksStart);
    if (blocks != Load32(header + kExtraStart)) return "its block section is not empty; it must hold no blocks";
    if (blocks < place || blocks - place > kTailSize)
        return Text("its tail, from %lu to %lu, is longer than %lu bytes or ends before it begins",
                    static_cast<unsigned long>(place), Shown(blocks), static_cast<unsigned long>(kTailSize));
    return {};
}

// What the reader finds wrong with the template would be wrong with every drawing made of it.
//
// Required: its entity section may hold one record, also a jump marker whose closing record comes with the first
// polyline with heights or never, so nothing is asked of that section.
std::string ProblemOfContent(const std::vector<std::uint8_t>& bytes) {
    const reader::Drawing drawing(bytes);
    const reader::Report report = reader::Check(drawing);
    for (const reader::Finding& finding : report.problems)
        if (finding.offset < drawing.header.entityStart || finding.offset >= drawing.EntityEnd())
            return numbers::Text("it is damaged at offset %lu: %s", static_cast<unsigned long>(finding.offset),
                                 finding.text.c_str());
    return {};
}

}  // namespace

DrawingTemplate ReadTemplate(std::FILE* file, std::string& problem) {
    DrawingTemplate result;
    result.bytes.resize(kHeaderSize);
    if (std::fread(result.bytes.data(), 1, kHeaderSize, file) != kHeaderSize) {
        problem = "it is shorter than its header of 96 bytes";
        return result;
    }
    problem = ProblemOfHeader(result.bytes.data());
    if (!problem.empty()) return result;
    const std::size_t size = Load32(result.bytes.data() + kExtraStart);
    result.bytes.resize(size);
    const std::size_t rest = size - kHeaderSize;
    const std::size_t got = std::fread(result.bytes.data() + kHeaderSize, 1, rest, file);
    if (got != rest) {
        problem = numbers::Text("it is cut short: it has %lu bytes of %lu",
                                static_cast<unsigned long>(kHeaderSize + got), static_cast<unsigned long>(size));
        return result;
    }
    const std::size_t entities = Load32(result.bytes.data() + kEntitiesStart);
    if (Load32(result.bytes.data() + kEntitiesEnd) != entities) {
        if (Load16(result.bytes.data() + entities + 2) != kEntityHeaderSize)
            problem = "its entity section is no whole record";
        result.hasJump = Load16(result.bytes.data() + entities) == kJump.word;
    }
    if (problem.empty()) problem = ProblemOfContent(result.bytes);
    return result;
}

}  // namespace zm::dwg
