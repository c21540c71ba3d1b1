// Reads drawing files of version digits 1006 and 1009 back: their tables, their entities, and a proof that they are
// sound. It shares no code with the writer of zenromath/dwg.h.
//
// Texts are bytes in GBK unless they are said to be UTF-8. Coordinates and angles are as the file has them.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "zenromath/export.h"

namespace zm {
namespace dwg::reader {
class Drawing;
}

/// A place, drawing units.
struct DrawingPoint {
    double x = 0.0;  ///< drawing units
    double y = 0.0;  ///< drawing units
    double z = 0.0;  ///< height, drawing units
};

/// A layer of the table. Names and texts of drawings are GBK.
struct DrawingLayer {
    std::string name;      ///< GBK
    int color = 0;         ///< CAD colour number; below 0: the layer is off
    std::string linetype;  ///< its name
    bool shown = true;     ///< neither off nor frozen
};

/// A text style of the table.
struct DrawingStyle {
    std::string name;          ///< GBK
    std::string font;          ///< file of the font
    std::string bigFont;       ///< file of the font for Chinese, empty without one
    double widthFactor = 1.0;  ///< width of characters by that of the font
    double oblique = 0.0;      ///< radians
};

/// A linetype of the table.
struct DrawingLinetype {
    std::string name;              ///< GBK
    std::string description;       ///< what it looks like, in characters
    std::vector<double> elements;  ///< dashes above 0, gaps below 0, dots 0; drawing units
};

/// A field of an entity after its points, such as the radius of a circle or the text of a text.
struct DrawingField {
    std::string name;     ///< such as "radius" or "rotation"
    double number = 0.0;  ///< drawing units, or radians of an angle
    std::string text;     ///< of a text field; number is 0 there
};

/// One entity of the file.
///
/// Its kinds, how many points each has, and its fields. A field that the file leaves out has its usual value: 1 for
/// scales, widths of characters, columns and rows, else 0 or an empty text. Angles are radians, lengths drawing units.
/// ext_x, ext_y, ext_z are the normal of the plane that the points lie in, (0, 0, 1) where they are left out.
///
///     LINE, 3DLINE          2   ext_x ext_y ext_z
///     POINT                 1   angle ext_x ext_y ext_z
///     CIRCLE                1   radius ext_x ext_y ext_z
///     ARC                   1   radius start end ext_x ext_y ext_z; from start counter-clockwise to end
///     TRACE, SOLID          4   ext_x ext_y ext_z
///     3DFACE                4   invisible: a bit for each edge
///     TEXT                  1   height text rotation width oblique style (number) generation horizontal vertical
///                               align_x align_y ext_x ext_y ext_z
///     SHAPE                 1   scale shape (number) rotation width oblique style
///     INSERT                1   block (number) scale_x scale_y scale_z rotation columns rows column_gap row_gap
///                               ext_x ext_y ext_z
///     ATTDEF, ATTRIB        1   as TEXT, and tag prompt (of ATTDEF) attribute_flags field_length
///     POLYLINE              0   closed (flags) start_width end_width m n m_density n_density curve ext_x ext_y ext_z
///     VERTEX                1   start_width end_width bulge vertex_flags tangent corner_1 corner_2 corner_3 corner_4;
///                               those of a polyline come after it, up to its SEQEND
///     SEQEND                0   begin: where the record that it ends lies
///     DIMENSION             1   block (number) text_x text_y insert_x insert_y dimension_type text x3 y3 z3 x4 y4 z4
///                               x5 y5 z5 x6 y6 z6 leader rotation text_rotation oblique dimension_style
///                               ext_x ext_y ext_z
///     BLOCK                 1   path name; the begin of a block
///     ENDBLK                0   none; its end
///     JUMP, VIEWPORT        0   none
struct DrawingEntity {
    std::uint64_t offset = 0;             ///< in the file, bytes
    std::string kind;                     ///< "LINE", "CIRCLE" ...; "KIND25" where the kind is not known
    bool erased = false;                  ///< deleted in the drawing program, still in the file
    bool inPaperSpace = false;            ///< no part of the drawing's model
    std::string layer;                    ///< its name
    std::optional<int> color;             ///< absent: that of the layer; 0: that of the block
    std::optional<std::string> linetype;  ///< absent: that of the layer; "BYBLOCK"
    std::optional<double> elevation;      ///< drawing units; absent: 0, or that of the points
    std::optional<double> thickness;      ///< drawing units; absent: 0
    std::vector<DrawingPoint> points;     ///< of its kind: a line has two, a circle its centre
    std::vector<DrawingField> fields;     ///< what else its kind has

    /// The number of a field by its name; otherwise where there is none.
    ZM_API double Number(std::string_view name, double otherwise) const;
    /// The text of a field by its name, empty where there is none.
    ZM_API std::string Text(std::string_view name) const;
};

/// What is wrong at a place of the file. UTF-8.
struct DrawingFinding {
    std::uint64_t offset = 0;  ///< in the file, bytes
    std::string text;          ///< UTF-8
};

/// What Prove has found.
struct DrawingProof {
    std::vector<DrawingFinding> problems;  ///< the drawing is damaged; at most 1000 are listed
    std::vector<DrawingFinding> remarks;   ///< sound, but some programs may not take it
    std::uint64_t entities = 0;            ///< in all, those of blocks included
    /// True where nothing is damaged.
    bool sound() const { return problems.empty(); }
};

/// A drawing file in memory. Takes any bytes: what cannot be read is left out, and Prove says where.
class ZM_API DrawingFile {
 public:
    /// \param bytes  the whole file
    explicit DrawingFile(std::vector<std::uint8_t> bytes);
    /// Reads a file. path: GBK, with backslashes or slashes. Empty where it cannot be opened or read, or is longer than 4
    /// GiB; of what does not begin as a drawing only the beginning is read.
    static std::optional<DrawingFile> Open(const char* path);
    ~DrawingFile();
    DrawingFile(DrawingFile&& other) noexcept;
    DrawingFile& operator=(DrawingFile&& other) noexcept;

    /// The version digits, 1006 or 1009; 0 for any other file, of which nothing else is read.
    int version() const;
    /// The layers, in the order of their numbers.
    std::vector<DrawingLayer> Layers() const;
    /// The text styles, in the order of their numbers.
    std::vector<DrawingStyle> Styles() const;
    /// The linetypes, in the order of their numbers.
    std::vector<DrawingLinetype> Linetypes() const;
    /// The names of the blocks, in the order of their numbers.
    std::vector<std::string> Blocks() const;

    /// Calls visit for each entity in the order of the file, until it returns false or a record cannot be read.
    void ForEachEntity(const std::function<bool(const DrawingEntity&)>& visit) const;
    /// The same for the entities of a block, from its BLOCK to its ENDBLK, both included.
    /// \param block  number of the block, from 0; nothing is visited beyond the last
    void ForEachInBlock(std::size_t block, const std::function<bool(const DrawingEntity&)>& visit) const;

    /// Bounds of what is drawn. False if nothing is.
    bool Extents(DrawingPoint& low, DrawingPoint& high) const;
    /// Checks every offset, length, index, count and link.
    DrawingProof Prove() const;
    /// Version, counts, tables and extents for people, or as one object of JSON. UTF-8.
    std::string Info(bool json) const;

 private:
    std::unique_ptr<dwg::reader::Drawing> m_drawing;
};

}  // namespace zm
