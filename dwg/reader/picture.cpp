#include "dwg/reader/picture.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <utility>

#include "dwg/reader/plane.h"
#include "dwg/reader/polyline.h"

namespace zm::dwg::reader {
namespace {

constexpr int kMaxDepth = 64;
constexpr double kTurn = 2.0 * std::numbers::pi;
constexpr int kInvisible = 1, kConstant = 2;  // flags of attributes

// "%%d" and the like as characters of GBK.
std::string Resolved(const std::string& text) {
    std::string out;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text.compare(i, 2, "%%") != 0 || i + 2 >= text.size()) {
            out += text[i];
            continue;
        }
        switch (text[i + 2]) {
            case 'd':
            case 'D':
                out += "\xA1\xE3";
                break;
            case 'p':
            case 'P':
                out += "\xA1\xC0";
                break;
            case 'c':
            case 'C':
                out += "\xA6\xD5";
                break;
            case '%':
                out += '%';
                break;
            case 'u':
            case 'U':
            case 'o':
            case 'O':
                break;  // under- and overlining
            default:
                out += text.substr(i, 3);
        }
        i += 2;
    }
    return out;
}

class Viewer {
 public:
    Viewer(const Drawing& drawing, PictureSink& sink, long budget)
        : m_drawing(drawing), m_sink(sink), m_budget(budget), m_active(drawing.blocks.size()) {}

    PictureCount Run() {
        const Context top{{}, 7, 0, 0};
        ForEachInOrder(m_drawing, [&](const Record& record) { return Take(record, top); });
        EndPolyline(top);
        return m_count;
    }

 private:
    // Where records stand: in the drawing itself or in a block that is shown for an insert.
    struct Context {
        Placement placement;
        int color;       // by block
        unsigned layer;  // of the insert: that of records of layer 0
        int depth;
        const Linetype* linetype = nullptr;  // by block
    };

    unsigned LayerOf(const Record& record, const Context& context) const {
        return record.layer == 0 && context.depth > 0 ? context.layer : record.layer;
    }
    const Layer* LayerAt(unsigned index) const {
        return index < m_drawing.layers.size() ? &m_drawing.layers[index] : nullptr;
    }
    bool Shown(const Record& record, const Context& context) const {
        const Layer* layer = LayerAt(LayerOf(record, context));
        return layer == nullptr || layer->Shown();
    }

    Look LookOf(const Record& record, const Context& context) const {
        const Layer* layer = LayerAt(LayerOf(record, context));
        Look look;
        const int byLayer = layer != nullptr ? std::abs(layer->color) : 7;
        look.layer = LayerOf(record, context);
        look.color = !record.color ? byLayer : *record.color == 0 ? context.color : *record.color;
        look.dashScale = m_drawing.variables.linetypeScale;
        if (record.ByBlock()) {
            look.linetype = context.linetype;
            return look;
        }
        const int index = !record.ByLayer() ? *record.linetype : layer != nullptr ? layer->linetype : 0;
        if (index < 0 || static_cast<std::size_t>(index) >= m_drawing.linetypes.size()) return look;
        const Linetype& type = m_drawing.linetypes[static_cast<std::size_t>(index)];
        const bool dashed = type.count > 1 && static_cast<std::size_t>(type.count) <= type.elements.size() &&
                            type.length > 0.0 && std::isfinite(type.length);
        if (dashed) look.linetype = &type;
        return look;
    }

    bool Take(const Record& record, const Context& context) {
        if (--m_budget < 0) {
            m_count.cut = true;
            return false;
        }
        if (m_inPolyline && record.kind != kVertex) EndPolyline(context);
        if (record.InPaperSpace()) {
            ++m_count.paper;
            return true;
        }
        switch (record.kind) {
            case kPolyline:
                m_inPolyline = true;
                m_polyline = {record, {}};
                return true;
            case kVertex:
                if (m_inPolyline) m_polyline.vertices.push_back(record);
                return true;
            case kInsert:
                return Insert(record, context);
            case kDimension:
                return Dimension(record, context);
            case kSeqEnd:
            case kBlock:
            case kEndBlock:
            case kViewport:
                return true;
            default:
                break;
        }
        if (Shown(record, context)) Show(record, context);
        return true;
    }

    void Show(const Record& record, const Context& context) {
        const auto& p = record.points;
        const Look look = LookOf(record, context);
        switch (record.kind) {
            case kLine:
            case kLine3D:
                return Stroke(p, context.placement, look);
            case kPoint:
                m_sink.Dot(context.placement.Apply(p.at(0)), look);
                break;
            case kCircle:
                return Stroke(ArcPoints(p.at(0), record.Number("radius", 0), 0.0, kTurn), InPlane(record, context),
                              look);
            case kArc:
                return Stroke(
                    ArcPoints(p.at(0), record.Number("radius", 0), record.Number("start", 0), record.Number("end", 0)),
                    InPlane(record, context), look);
            case kTrace:
            case kSolid:
                return Fill(record, context, look);
            case kFace3D:
                return Face(record, context, look);
            case kText:
                return Text(record, "text", context, look);
            case kAttDef:
                // In a block an attribute's definition shows nothing but what is constant.
                if (context.depth == 0) return Text(record, "tag", context, look);
                if (Attribute(record) && (static_cast<int>(record.Number("attribute_flags", 0)) & kConstant) != 0)
                    return Text(record, "text", context, look);
                return;
            case kAttrib:
                if (Attribute(record)) Text(record, "text", context, look);
                return;
            case kShape:
                return Shape(record, context, look);
            default:
                ++m_count.unknown;
                return;
        }
        ++m_count.drawn;
    }

    bool Attribute(const Record& record) const {
        const bool invisible = (static_cast<int>(record.Number("attribute_flags", 0)) & kInvisible) != 0;
        return m_drawing.variables.attributeMode == 2 || (m_drawing.variables.attributeMode != 0 && !invisible);
    }

    static Placement InPlane(const Record& record, const Context& context) {
        return context.placement.Of(AxesOf(record));
    }

    void Stroke(std::vector<Point> points, const Placement& placement, const Look& look) {
        for (Point& point : points) point = placement.Apply(point);
        m_sink.Stroke(points, look);
        ++m_count.drawn;
    }

    void Fill(const Record& record, const Context& context, const Look& look) {
        const Placement placement = InPlane(record, context);
        std::vector<Point> corners;
        for (const std::size_t i : {0u, 1u, 3u, 2u})  // the corners go zigzag
            corners.push_back(placement.Apply(record.points.at(i)));
        if (m_drawing.variables.fillMode != 0) {
            m_sink.Fill(corners, look);
        } else {
            corners.push_back(corners.front());
            m_sink.Stroke(corners, look);
        }
        ++m_count.drawn;
    }

    void Face(const Record& record, const Context& context, const Look& look) {
        const auto hidden = static_cast<unsigned>(record.Number("invisible", 0.0));
        for (unsigned i = 0; i < 4; ++i)
            if ((hidden & 1u << i) == 0)
                m_sink.Stroke({context.placement.Apply(record.points.at(i)),
                               context.placement.Apply(record.points.at((i + 1) % 4))},
                              look);
        ++m_count.drawn;
    }

    void Text(const Record& record, const char* field, const Context& context, const Look& look) {
        const Field* text = record.Find(field);
        const Placement placement = InPlane(record, context);
        TextItem item;
        item.height = record.Number("height", 0.0) * placement.Scale();
        if (text == nullptr || text->text.empty() || !(item.height > 0.0) || !std::isfinite(item.height)) return;
        item.text = Resolved(text->text);
        item.angle = record.Number("rotation", 0.0) + placement.Angle();
        item.widthFactor = std::abs(record.Number("width", 1.0));
        item.at = placement.Apply(record.points.at(0));
        m_sink.Text(item, look);
        ++m_count.drawn;
    }

    void Shape(const Record& record, const Context& context, const Look& look) {
        const Placement placement = InPlane(record, context);
        const double size = record.Number("scale", 1.0), turn = record.Number("rotation", 0.0);
        const Point at = record.points.at(0);
        std::vector<Point> square;
        for (const auto& [x, y] : {std::pair{0.0, 0.0}, {1.0, 0.0}, {1.0, 1.0}, {0.0, 1.0}, {0.0, 0.0}})
            square.push_back(placement.Apply({at.x + size * (x * std::cos(turn) - y * std::sin(turn)),
                                              at.y + size * (x * std::sin(turn) + y * std::cos(turn)), at.z}));
        m_sink.Stroke(square, look);
        ++m_count.drawn;
        ++m_count.shapes;
    }

    void EndPolyline(const Context& context) {
        if (!std::exchange(m_inPolyline, false)) return;
        const Polyline polyline = std::move(m_polyline);
        if (!Shown(polyline.head, context)) return;
        const Placement placement = InPlane(polyline.head, context);
        const Look look = LookOf(polyline.head, context);
        for (std::vector<Point>& line : LinesOf(polyline, m_drawing.variables.splineFrame != 0)) {
            for (Point& point : line) point = placement.Apply(point);
            m_sink.Stroke(line, look);
        }
        ++m_count.drawn;
    }

    Point BaseOf(std::size_t block) const {
        Point base;
        m_drawing.ForEachInBlock(block, [&](const Record& record) {
            if (record.kind == kBlock && !record.points.empty()) base = record.points.front();
            return false;
        });
        return base;
    }

    // The records of a block, shown for an insert. False where the budget is used up.
    bool ShowBlock(std::size_t block, const Record& by, const Placement& placement, const Context& context) {
        if (block >= m_active.size() || m_active[block] || context.depth >= kMaxDepth) return true;
        const Look look = LookOf(by, context);
        const Context inner{placement, look.color, LayerOf(by, context), context.depth + 1, look.linetype};
        m_active[block] = true;
        ForEachInBlockInOrder(m_drawing, block, [&](const Record& part) { return Take(part, inner); });
        EndPolyline(inner);
        m_active[block] = false;
        return m_budget >= 0;
    }

    bool Insert(const Record& record, const Context& context) {
        // A layer that is off hides what takes it over; a frozen one hides the insert whole.
        const Layer* layer = LayerAt(LayerOf(record, context));
        if (layer != nullptr && (layer->flag & Layer::kFrozen) != 0) return true;
        const auto block = static_cast<std::size_t>(record.Number("block", 0.0));
        if (block >= m_drawing.blocks.size()) return true;
        const auto columns = static_cast<int>(std::max(record.Number("columns", 1.0), 1.0));
        const auto rows = static_cast<int>(std::max(record.Number("rows", 1.0), 1.0));
        const Point base = BaseOf(block);
        const Placement plane = InPlane(record, context);
        for (int row = 0; row < rows; ++row)
            for (int column = 0; column < columns; ++column) {
                const Placement inner = PlacementOf(record, base, column * record.Number("column_gap", 0.0),
                                                    row * record.Number("row_gap", 0.0));
                if (--m_budget < 0 || !ShowBlock(block, record, plane.Of(inner), context)) {
                    m_count.cut = true;
                    return false;
                }
            }
        ++m_count.drawn;
        return true;
    }

    // A dimension's block has its strokes where they stand in the drawing.
    bool Dimension(const Record& record, const Context& context) {
        if (!Shown(record, context)) return true;
        const auto block = static_cast<std::size_t>(record.Number("block", 0.0));
        if (block >= m_drawing.blocks.size()) return true;
        Placement shift;
        shift.e = record.Number("insert_x", 0.0);
        shift.f = record.Number("insert_y", 0.0);
        ++m_count.drawn;
        return ShowBlock(block, record, context.placement.Of(shift), context);
    }

    const Drawing& m_drawing;
    PictureSink& m_sink;
    PictureCount m_count;
    long m_budget;  // records that may still be visited
    std::vector<bool> m_active;
    bool m_inPolyline = false;
    Polyline m_polyline;
};

class Bounds : public PictureSink {
 public:
    void Stroke(const std::vector<Point>& points, const Look&) override { AddAll(points); }
    void Fill(const std::vector<Point>& corners, const Look&) override { AddAll(corners); }
    void Dot(const Point& at, const Look&) override { Add(at); }
    void Text(const TextItem& text, const Look&) override {
        // Characters are about as wide as capitals are high, in a face that the program has capitals a little more.
        double width = 0.0;
        for (std::size_t i = 0; i < text.text.size(); ++i) {
            const bool wide = static_cast<unsigned char>(text.text[i]) > 0x80 && i + 1 < text.text.size();
            const bool capital = text.text[i] >= 'A' && text.text[i] <= 'Z';
            width += capital ? 1.3 : 1.0;
            if (wide) ++i;
        }
        width *= text.height * text.widthFactor;
        const double c = std::cos(text.angle), s = std::sin(text.angle);
        for (const double along : {0.0, width})
            for (const double up : {0.0, text.height})
                Add({text.at.x + along * c - up * s, text.at.y + along * s + up * c, 0.0});
    }

    bool any = false;
    Point low, high;

 private:
    void AddAll(const std::vector<Point>& points) {
        for (const Point& point : points) Add(point);
    }
    void Add(const Point& p) {
        if (!std::isfinite(p.x) || !std::isfinite(p.y)) return;
        low = any ? Point{std::min(low.x, p.x), std::min(low.y, p.y), 0.0} : Point{p.x, p.y, 0.0};
        high = any ? Point{std::max(high.x, p.x), std::max(high.y, p.y), 0.0} : Point{p.x, p.y, 0.0};
        any = true;
    }
};

// Records that are visited at most: as many as no drawing has that a person made, however large the file.
long BudgetOf(const Drawing& drawing) {
    constexpr long kLeast = 2000000;
    return kLeast + static_cast<long>(drawing.bytes().size() / kRecordHeaderBytes) * 2;
}

}  // namespace

PictureCount ShowPicture(const Drawing& drawing, PictureSink& sink) {
    return Viewer(drawing, sink, BudgetOf(drawing)).Run();
}

bool Extents(const Drawing& drawing, Point& low, Point& high) {
    Bounds bounds;
    ShowPicture(drawing, bounds);
    low = bounds.low;
    high = bounds.high;
    return bounds.any;
}

}  // namespace zm::dwg::reader
