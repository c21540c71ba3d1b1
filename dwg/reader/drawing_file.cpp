// The public face of the reader: its records with the names of what the file numbers: layers, linetypes, blocks.
#include <algorithm>
#include <cstdio>

#include "dwg/reader/check.h"
#include "dwg/reader/drawing.h"
#include "dwg/reader/dump.h"
#include "dwg/reader/picture.h"
#include "runtime/files/files.h"
#include "zenromath/dwg_reader.h"

namespace zm {
namespace {

using dwg::reader::Drawing;
using dwg::reader::Record;

template <class Entry>
std::string NameOf(const std::vector<Entry>& entries, int index) {
    const auto i = static_cast<std::size_t>(index);
    return i < entries.size() ? entries[i].name : "#" + std::to_string(index);
}

DrawingPoint PointOf(const dwg::reader::Point& point) {
    return {point.x, point.y, point.z};
}

std::string LinetypeOf(const Drawing& drawing, const Record& record) {
    return record.ByBlock() ? "BYBLOCK" : NameOf(drawing.linetypes, *record.linetype);
}

DrawingEntity EntityOf(const Drawing& drawing, const Record& record) {
    DrawingEntity entity;
    entity.offset = record.offset;
    entity.kind = record.layout != nullptr ? record.layout->name : "KIND" + std::to_string(record.kind);
    entity.erased = record.erased;
    entity.layer = NameOf(drawing.layers, record.layer);
    entity.color = record.color;
    if (!record.ByLayer()) entity.linetype = LinetypeOf(drawing, record);
    entity.inPaperSpace = record.InPaperSpace();
    entity.elevation = record.elevation;
    entity.thickness = record.thickness;
    std::transform(record.points.begin(), record.points.end(), std::back_inserter(entity.points), PointOf);
    for (const dwg::reader::Field& field : record.fields)
        entity.fields.push_back({field.layout->name, field.number, field.text});
    return entity;
}

auto Visiting(const Drawing& drawing, const std::function<bool(const DrawingEntity&)>& visit) {
    return [&](const Record& record) { return visit(EntityOf(drawing, record)); };
}

std::vector<DrawingFinding> FindingsOf(const std::vector<dwg::reader::Finding>& found) {
    std::vector<DrawingFinding> findings;
    findings.reserve(found.size());
    for (const dwg::reader::Finding& finding : found) findings.push_back({finding.offset, finding.text});
    return findings;
}

const DrawingField* Find(const DrawingEntity& entity, std::string_view name) {
    const auto found = std::find_if(entity.fields.begin(), entity.fields.end(),
                                    [&](const DrawingField& field) { return field.name == name; });
    return found != entity.fields.end() ? &*found : nullptr;
}

}  // namespace

double DrawingEntity::Number(std::string_view name, double otherwise) const {
    const DrawingField* field = Find(*this, name);
    return field != nullptr ? field->number : otherwise;
}

std::string DrawingEntity::Text(std::string_view name) const {
    const DrawingField* field = Find(*this, name);
    return field != nullptr ? field->text : std::string();
}

DrawingFile::DrawingFile(std::vector<std::uint8_t> bytes) : m_drawing(std::make_unique<Drawing>(std::move(bytes))) {}
DrawingFile::~DrawingFile() = default;
DrawingFile::DrawingFile(DrawingFile&& other) noexcept = default;
DrawingFile& DrawingFile::operator=(DrawingFile&& other) noexcept = default;

std::optional<DrawingFile> DrawingFile::Open(const char* path) {
    const std::unique_ptr<std::FILE, int (*)(std::FILE*)> file(files::OpenToRead(path, "rb"), std::fclose);
    if (file == nullptr) return std::nullopt;
    std::vector<std::uint8_t> bytes;
    std::uint8_t part[1 << 16];
    constexpr std::size_t kLargest = 0xFFFFFFFF;  // the offsets of the format have 32 bits
    while (const std::size_t read = std::fread(part, 1, sizeof part, file.get())) {
        bytes.insert(bytes.end(), part, part + read);
        if (bytes.size() > kLargest) return std::nullopt;
        if (bytes.size() >= 2 && (bytes[0] != 'A' || bytes[1] != 'C')) break;  // no drawing, however long
    }
    if (std::ferror(file.get()) != 0) return std::nullopt;
    return DrawingFile(std::move(bytes));
}

int DrawingFile::version() const {
    return m_drawing->Known() ? m_drawing->header.version : 0;
}

std::vector<DrawingLayer> DrawingFile::Layers() const {
    std::vector<DrawingLayer> layers;
    for (const auto& layer : m_drawing->layers)
        layers.push_back({layer.name, layer.color, NameOf(m_drawing->linetypes, layer.linetype), layer.Shown()});
    return layers;
}

std::vector<DrawingStyle> DrawingFile::Styles() const {
    std::vector<DrawingStyle> styles;
    for (const auto& style : m_drawing->styles)
        styles.push_back({style.name, style.font, style.bigFont, style.widthFactor, style.oblique});
    return styles;
}

std::vector<DrawingLinetype> DrawingFile::Linetypes() const {
    std::vector<DrawingLinetype> linetypes;
    for (const auto& linetype : m_drawing->linetypes) {
        const int count = std::clamp(linetype.count, 0, static_cast<int>(linetype.elements.size()));
        linetypes.push_back(
            {linetype.name, linetype.description, {linetype.elements.begin(), linetype.elements.begin() + count}});
    }
    return linetypes;
}

std::vector<std::string> DrawingFile::Blocks() const {
    std::vector<std::string> names;
    for (const auto& block : m_drawing->blocks) names.push_back(block.name);
    return names;
}

void DrawingFile::ForEachEntity(const std::function<bool(const DrawingEntity&)>& visit) const {
    if (version() != 0) m_drawing->ForEachEntity(Visiting(*m_drawing, visit));
}

void DrawingFile::ForEachInBlock(std::size_t block, const std::function<bool(const DrawingEntity&)>& visit) const {
    if (version() != 0 && block < m_drawing->blocks.size())
        m_drawing->ForEachInBlock(block, Visiting(*m_drawing, visit));
}

bool DrawingFile::Extents(DrawingPoint& low, DrawingPoint& high) const {
    dwg::reader::Point least, most;
    if (version() == 0 || !dwg::reader::Extents(*m_drawing, least, most)) return false;
    low = PointOf(least);
    high = PointOf(most);
    return true;
}

DrawingProof DrawingFile::Prove() const {
    const dwg::reader::Report report = dwg::reader::Check(*m_drawing);
    return {FindingsOf(report.problems), FindingsOf(report.remarks), report.entities};
}

std::string DrawingFile::Info(bool json) const {
    return dwg::reader::Info(*m_drawing, json);
}

}  // namespace zm
