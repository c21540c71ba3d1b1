// The layout of entity records as data: their kinds, and which fields stand after the header in which order, as kind,
// flags and options announce them. The writer proves by it what it copies, the reader decodes by it; each with code of
// its own.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

namespace zm::dwg {

/// Kinds of records, without the bit of an erased one.
namespace kinds {
enum Kind : std::uint8_t {
    kLine = 1,
    kPoint = 2,
    kCircle = 3,
    kShape = 4,
    kText = 7,
    kArc = 8,
    kTrace = 9,
    kSolid = 11,
    kBlock = 12,
    kEndBlock = 13,
    kInsert = 14,
    kAttDef = 15,
    kAttrib = 16,
    kSeqEnd = 17,
    kJump = 18,
    kPolyline = 19,
    kVertex = 20,
    kLine3D = 21,
    kFace3D = 22,
    kDimension = 23,
    kViewport = 24,
};
constexpr std::uint8_t kLast = kViewport;  // no program writes a kind above
}  // namespace kinds

constexpr std::uint8_t kErased = 0x80;        // in the place of the kind: readers pass the record over
constexpr std::size_t kEntityHeaderSize = 8;  // u16 word (kind and flags), length, layer, options
constexpr std::size_t kLaterEndSize = 2;      // bytes at the end of every record of version digits 1009 and up
constexpr std::size_t kReferenceSurplus = 2;  // a nested reference has a number of four bytes and counts two of them
constexpr std::size_t kMarkerSize = 26;       // a jump marker of ours, with fields and kHasElevation as its flags
constexpr std::uint8_t kByBlock = 255;        // in the place of a linetype index
constexpr int kByBlock1009 = 32766;           // the same in 1009
constexpr int kByLayer1009 = 32767;           // in the place of a linetype index: that of the layer
constexpr std::uint32_t kInExtras = 0x80;  // in the top byte of a place: it counts from the start of the extra section
constexpr std::uint32_t kInBlocks = 0x40;  // the same of the block section

// Common fields of an entity, in this order after its header, announced by the flags.
constexpr int kHasColor = 1;     // u8
constexpr int kHasLinetype = 2;  // u8, u16 in 1009
constexpr int kHasElevation =
    4;  // f64; kinds with heights of their own have no field for it, it says that z is missing
constexpr int kHasThickness = 8;  // f64
constexpr int kHasHandle = 32;    // u8 and as many bytes
constexpr int kHasExtra = 64;     // 1009 only: u8 between colour and linetype, which says what else there is
constexpr int kHasFollowers = 128;

enum class FieldType : std::uint8_t {
    u8,
    u16,
    u32,
    f64,
    text,      // u16 and as many bytes
    handle,    // u8 and as many bytes
    extended,  // u8; where it has kHasExtendedData, u16 and as many bytes
    viewport,  // u16 where the field before had kHasViewport, else nothing
};
constexpr unsigned kHasExtendedData = 2;
constexpr unsigned kHasViewport = 4;

/// What a field is to those who look at more than its value.
enum class FieldRole : std::uint8_t {
    color,
    extended,
    linetype,
    elevation,
    thickness,
    handle,
    block,  // number of the block that a reference means
    x,
    y,
    z,
    style,  // number of a text style
    viewport,
    movedX,  // of a further point, in the plane of the leading ones
    movedY,
    movedZ,
    normal,  // of the extrusion: x, y, z in order
    link,    // place of the record that a SEQEND closes
    other
};

struct FieldLayout {
    const char* name;
    FieldType type;
    std::uint16_t option;  // the options bit that announces it; 0: always there
    FieldRole role = FieldRole::other;
    bool height = false;  // left out where kHasElevation says that points have no z
};

constexpr int kNoFamily = -1;

struct KindLayout {
    std::uint8_t kind;
    const char* name;
    int points;   // leading points: x, y, or x, y, z
    bool threeD;  // points have a z of their own, unless the flags have kHasElevation
    int family;   // the flags of a record without colour and linetype, as far as copying knows the kind; or kNoFamily
    std::span<const FieldLayout> fields;  // after the points
};

namespace fields {

using enum FieldType;

inline constexpr FieldLayout NormalX(std::uint16_t option) {
    return {"ext_x", f64, option, FieldRole::normal};
}
inline constexpr FieldLayout NormalY(std::uint16_t option) {
    return {"ext_y", f64, option, FieldRole::normal};
}
inline constexpr FieldLayout NormalZ(std::uint16_t option) {
    return {"ext_z", f64, option, FieldRole::normal};
}

inline constexpr FieldLayout kExtrusion[] = {NormalX(1), NormalY(1), NormalZ(1)};
inline constexpr FieldLayout kPoint[] = {NormalX(1), NormalY(1), NormalZ(1), {"angle", f64, 2}};
inline constexpr FieldLayout kCircle[] = {{"radius", f64, 0}, NormalX(1), NormalY(1), NormalZ(1)};
inline constexpr FieldLayout kShape[] = {{"scale", f64, 0},    {"shape", u8, 0},
                                         {"rotation", f64, 1}, {"style", u8, 2, FieldRole::style},
                                         {"width", f64, 4},    {"oblique", f64, 8}};
inline constexpr FieldLayout kText[] = {{"height", f64, 0},
                                        {"text", text, 0},
                                        {"rotation", f64, 1},
                                        {"width", f64, 2},
                                        {"oblique", f64, 4},
                                        {"style", u8, 8, FieldRole::style},
                                        {"generation", u8, 16},
                                        {"horizontal", u8, 32},
                                        {"align_x", f64, 64, FieldRole::movedX},
                                        {"align_y", f64, 64, FieldRole::movedY},
                                        NormalX(128),
                                        NormalY(128),
                                        NormalZ(128),
                                        {"vertical", u8, 256}};
inline constexpr FieldLayout kArc[] = {{"radius", f64, 0}, {"start", f64, 0}, {"end", f64, 0},
                                       NormalX(1),         NormalY(1),        NormalZ(1)};
inline constexpr FieldLayout kBlockBegin[] = {{"path", text, 2}, {"name", text, 4}};
inline constexpr FieldLayout kInsert[] = {
    {"scale_x", f64, 1}, {"scale_y", f64, 2},     {"rotation", f64, 4},  {"scale_z", f64, 8}, {"columns", u16, 16},
    {"rows", u16, 32},   {"column_gap", f64, 64}, {"row_gap", f64, 128}, NormalX(256),        NormalY(256),
    NormalZ(256)};
// Definition of an attribute and the attribute itself differ by the prompt alone.
inline constexpr FieldLayout kAttDef[] = {{"height", f64, 0},
                                          {"text", text, 0},
                                          {"prompt", text, 0},
                                          {"tag", text, 0},
                                          {"attribute_flags", u8, 0},
                                          {"field_length", u8, 1},
                                          {"rotation", f64, 2},
                                          {"width", f64, 4},
                                          {"oblique", f64, 8},
                                          {"style", u8, 16, FieldRole::style},
                                          {"generation", u8, 32},
                                          {"horizontal", u8, 64},
                                          {"align_x", f64, 128, FieldRole::movedX},
                                          {"align_y", f64, 128, FieldRole::movedY},
                                          NormalX(256),
                                          NormalY(256),
                                          NormalZ(256),
                                          {"vertical", u8, 512}};
inline constexpr FieldLayout kAttrib[] = {{"height", f64, 0},
                                          {"text", text, 0},
                                          {"tag", text, 0},
                                          {"attribute_flags", u8, 0},
                                          {"field_length", u8, 1},
                                          {"rotation", f64, 2},
                                          {"width", f64, 4},
                                          {"oblique", f64, 8},
                                          {"style", u8, 16, FieldRole::style},
                                          {"generation", u8, 32},
                                          {"horizontal", u8, 64},
                                          {"align_x", f64, 128, FieldRole::movedX},
                                          {"align_y", f64, 128, FieldRole::movedY},
                                          NormalX(256),
                                          NormalY(256),
                                          NormalZ(256),
                                          {"vertical", u8, 512}};
inline constexpr FieldLayout kSeqEnd[] = {{"begin", u32, 0, FieldRole::link}};
inline constexpr FieldLayout kPolyline[] = {{"closed", u8, 1},
                                            {"start_width", f64, 2},
                                            {"end_width", f64, 4},
                                            NormalX(8),
                                            NormalY(8),
                                            NormalZ(8),
                                            {"m", u16, 16},
                                            {"n", u16, 32},
                                            {"m_density", u16, 64},
                                            {"n_density", u16, 128},
                                            {"curve", u16, 256}};
inline constexpr FieldLayout kVertex[] = {{"start_width", f64, 1}, {"end_width", f64, 2},  {"bulge", f64, 4},
                                          {"vertex_flags", u8, 8}, {"tangent", f64, 16},   {"corner_1", u16, 32},
                                          {"corner_2", u16, 64},   {"corner_3", u16, 128}, {"corner_4", u16, 256}};
inline constexpr FieldLayout kFace[] = {{"invisible", u16, 1}};
// After the point of the dimension line. The options from 512 on are rare and not proven by any drawing at hand.
constexpr unsigned kProvenDimensionOptions = 0x1FF;
inline constexpr FieldLayout kDimension[] = {{"text_x", f64, 0, FieldRole::movedX},
                                             {"text_y", f64, 0, FieldRole::movedY},
                                             {"insert_x", f64, 1},
                                             {"insert_y", f64, 1},
                                             {"dimension_type", u8, 2},
                                             {"text", text, 4},
                                             {"x3", f64, 8, FieldRole::movedX},
                                             {"y3", f64, 8, FieldRole::movedY},
                                             {"z3", f64, 8, FieldRole::movedZ, true},
                                             {"x4", f64, 16, FieldRole::movedX},
                                             {"y4", f64, 16, FieldRole::movedY},
                                             {"z4", f64, 16, FieldRole::movedZ, true},
                                             {"x5", f64, 32, FieldRole::movedX},
                                             {"y5", f64, 32, FieldRole::movedY},
                                             {"z5", f64, 32, FieldRole::movedZ, true},
                                             {"x6", f64, 64, FieldRole::movedX},
                                             {"y6", f64, 64, FieldRole::movedY},
                                             {"z6", f64, 64, FieldRole::movedZ, true},
                                             {"leader", f64, 128},
                                             {"rotation", f64, 256},
                                             {"text_rotation", f64, 512},
                                             {"oblique", f64, 1024},
                                             NormalX(2048),
                                             NormalY(2048),
                                             NormalZ(2048),
                                             {"dimension_style", u16, 4096}};

// Common ones.
inline constexpr FieldLayout kColor = {"color", u8, 0, FieldRole::color};
inline constexpr FieldLayout kExtended = {"extended", extended, 0, FieldRole::extended};
inline constexpr FieldLayout kLinetype = {"linetype", u8, 0, FieldRole::linetype};
inline constexpr FieldLayout kLinetype1009 = {"linetype", u16, 0, FieldRole::linetype};
inline constexpr FieldLayout kElevation = {"elevation", f64, 0, FieldRole::elevation};
inline constexpr FieldLayout kThickness = {"thickness", f64, 0, FieldRole::thickness};
inline constexpr FieldLayout kHandle = {"handle", handle, 0, FieldRole::handle};
inline constexpr FieldLayout kViewport = {"viewport", viewport, 0, FieldRole::viewport};
inline constexpr FieldLayout kBlock = {"block", u16, 0, FieldRole::block};
inline constexpr FieldLayout kNestedBlock = {"block", u32, 0, FieldRole::block};
inline constexpr FieldLayout kX = {"x", f64, 0, FieldRole::x};
inline constexpr FieldLayout kY = {"y", f64, 0, FieldRole::y};
inline constexpr FieldLayout kZ = {"z", f64, 0, FieldRole::z};

}  // namespace fields

inline constexpr KindLayout kKindLayouts[] = {
    {kinds::kLine, "LINE", 2, true, kHasElevation, fields::kExtrusion},
    {kinds::kPoint, "POINT", 1, true, kHasElevation, fields::kPoint},
    {kinds::kCircle, "CIRCLE", 1, false, 0, fields::kCircle},
    {kinds::kShape, "SHAPE", 1, false, kNoFamily, fields::kShape},
    {kinds::kText, "TEXT", 1, false, 0, fields::kText},
    {kinds::kArc, "ARC", 1, false, 0, fields::kArc},
    {kinds::kTrace, "TRACE", 4, false, 0, fields::kExtrusion},
    {kinds::kSolid, "SOLID", 4, false, 0, fields::kExtrusion},
    {kinds::kBlock, "BLOCK", 1, false, 0, fields::kBlockBegin},
    {kinds::kEndBlock, "ENDBLK", 0, false, 0, {}},
    {kinds::kInsert, "INSERT", 1, false, 0, fields::kInsert},
    {kinds::kAttDef, "ATTDEF", 1, false, kNoFamily, fields::kAttDef},
    {kinds::kAttrib, "ATTRIB", 1, false, kNoFamily, fields::kAttrib},
    {kinds::kSeqEnd, "SEQEND", 0, false, kNoFamily, fields::kSeqEnd},
    {kinds::kJump, "JUMP", 0, false, kNoFamily, {}},
    {kinds::kPolyline, "POLYLINE", 0, false, kHasFollowers, fields::kPolyline},
    {kinds::kVertex, "VERTEX", 1, false, 0, fields::kVertex},
    {kinds::kLine3D, "3DLINE", 2, true, kNoFamily, fields::kExtrusion},
    {kinds::kFace3D, "3DFACE", 4, true, kNoFamily, fields::kFace},
    {kinds::kDimension, "DIMENSION", 1, true, kNoFamily, fields::kDimension},
    {kinds::kViewport, "VIEWPORT", 0, false, kNoFamily, {}},
};

/// The layout of a kind without its erased bit; null where it is not known.
constexpr const KindLayout* KindLayoutOf(std::uint8_t kind) {
    for (const KindLayout& layout : kKindLayouts)
        if (layout.kind == kind) return &layout;
    return nullptr;
}

/// A kind with a body that nobody here reads: its fields are not proven.
constexpr bool IsOpaque(const KindLayout& layout) {
    return layout.kind == kinds::kViewport;
}

/// True for records that have a block number: INSERT and DIMENSION.
constexpr bool RefersToBlock(std::uint8_t kind) {
    return kind == kinds::kInsert || kind == kinds::kDimension;
}

/// The colour and linetype flags of a record that copying understands whole; -1 where its flags or its kind are beyond.
constexpr int PrefixOf(const KindLayout* layout, int flags) {
    if (layout == nullptr || layout->family == kNoFamily) return -1;
    const int prefix = flags - layout->family;
    return prefix >= 0 && prefix <= (kHasColor | kHasLinetype) ? prefix : -1;
}

/// How the records of a section stand.
struct RecordShape {
    bool later = false;       // of version digits 1009 and up
    bool wideNumber = false;  // references have a block number of four bytes, and are two bytes longer than they say
};

/// Bytes of a field that has a fixed size; of the others the count in front of them.
constexpr std::size_t WidthOf(FieldType type) {
    switch (type) {
        case FieldType::u8:
        case FieldType::handle:
        case FieldType::extended:
            return 1;
        case FieldType::u16:
        case FieldType::text:
            return 2;
        case FieldType::u32:
            return 4;
        case FieldType::f64:
            return 8;
        case FieldType::viewport:
            return 0;
    }
    return 0;
}

/// Calls take(const FieldLayout&) for each field that is after the header of a record, in order. What a later
/// version has at a record's end is no field.
template <typename Take>
void ForEachField(const KindLayout& layout, unsigned flags, unsigned options, RecordShape shape, Take take) {
    if (flags & kHasColor) take(fields::kColor);
    if (shape.later && (flags & kHasExtra)) take(fields::kExtended);
    if (flags & kHasLinetype) take(shape.later ? fields::kLinetype1009 : fields::kLinetype);
    if ((flags & kHasElevation) && !layout.threeD) take(fields::kElevation);
    if (flags & kHasThickness) take(fields::kThickness);
    if (flags & kHasHandle) take(fields::kHandle);
    if (shape.later && (flags & kHasExtra)) take(fields::kViewport);
    if (RefersToBlock(layout.kind))
        take(layout.kind == kinds::kInsert && shape.wideNumber ? fields::kNestedBlock : fields::kBlock);
    const bool withZ = layout.threeD && (flags & kHasElevation) == 0;
    for (int i = 0; i < layout.points; ++i) {
        take(fields::kX);
        take(fields::kY);
        if (withZ) take(fields::kZ);
    }
    for (const FieldLayout& field : layout.fields)
        if ((field.option == 0 || (options & field.option) != 0) && (withZ || !field.height)) take(field);
}

}  // namespace zm::dwg
