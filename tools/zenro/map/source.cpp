#include "tools/zenro/map/source.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <filesystem>
#include <set>
#include <utility>

#include "runtime/text/numbers.h"
#include "runtime/uses.h"
#include "tools/kit/angles.h"
#include "tools/kit/text.h"
#include "tools/kit/tool_host.h"
#include "tools/kit/translation.h"
#include "tools/zenro/map/dataset.h"
#include "tools/zenro/map/watched_files.h"

namespace fs = std::filesystem;

namespace zm::tool {
namespace {

GeometryKind KindOfSimple(OGRwkbGeometryType type) {
    switch (wkbFlatten(type)) {
        case wkbPoint:
            return GeometryKind::point;
        case wkbLineString:
        case wkbLinearRing:
            return GeometryKind::line;
        case wkbPolygon:
        case wkbTriangle:
            return GeometryKind::area;
        default:
            return GeometryKind::any;
    }
}

bool AppendChain(const OGRSimpleCurve& curve, Shape& shape) {
    const int n = curve.getNumPoints();
    if (n < 1) return false;
    Chain& chain = shape.chains.emplace_back();
    chain.x.resize(static_cast<std::size_t>(n));
    chain.y.resize(static_cast<std::size_t>(n));
    curve.getPoints(chain.x.data(), sizeof(double), chain.y.data(), sizeof(double));
    return true;
}

// Takes a geometry apart into points, lines and areas. Curves were made straight before.
void AppendShapes(const OGRGeometry& geometry, std::vector<Shape>& shapes) {
    if (geometry.IsEmpty() != FALSE) return;
    Shape shape;
    shape.kind = KindOfSimple(geometry.getGeometryType());
    switch (shape.kind) {
        case GeometryKind::point: {
            const OGRPoint* point = geometry.toPoint();
            shape.chains.push_back({{point->getX()}, {point->getY()}});
            shapes.push_back(std::move(shape));
            return;
        }
        case GeometryKind::line:
            if (AppendChain(*geometry.toSimpleCurve(), shape)) shapes.push_back(std::move(shape));
            return;
        case GeometryKind::area: {
            const OGRPolygon* polygon = geometry.toPolygon();
            for (const OGRLinearRing* ring : *polygon) AppendChain(*ring, shape);
            if (!shape.chains.empty()) shapes.push_back(std::move(shape));
            return;
        }
        case GeometryKind::any:
            break;
    }
    if (const auto* many = dynamic_cast<const OGRGeometryCollection*>(&geometry)) {
        for (const OGRGeometry* part : *many) AppendShapes(*part, shapes);
    } else if (const auto* surface = dynamic_cast<const OGRPolyhedralSurface*>(&geometry)) {
        for (const OGRPolygon* part : *surface) AppendShapes(*part, shapes);
    }
}

// A closed ring of a polygon file, whatever the data has.
void CloseRings(Shape& shape) {
    if (shape.kind != GeometryKind::area) return;
    for (Chain& ring : shape.chains) {
        if (ring.size() < 2 || (ring.x.front() == ring.x.back() && ring.y.front() == ring.y.back())) continue;
        ring.x.push_back(ring.x.front());
        ring.y.push_back(ring.y.front());
    }
}

// The parts of a geometry, curves made straight.
void AppendStraight(const OGRGeometry& geometry, bool northFirst, std::vector<Shape>& shapes) {
    const std::unique_ptr<OGRGeometry> straight(geometry.hasCurveGeometry() != FALSE ? geometry.getLinearGeometry()
                                                                                     : nullptr);
    AppendShapes(straight != nullptr ? *straight : geometry, shapes);
    if (!northFirst) return;
    for (Shape& shape : shapes)
        for (Chain& chain : shape.chains) chain.x.swap(chain.y);
}

// A coordinate for a report, whatever its size.
std::string Plain(double number) {
    return numbers::Text("%.10g", number);
}

bool IsFinite(const Shape& shape) {
    for (const Chain& chain : shape.chains)
        for (std::size_t i = 0; i < chain.size(); ++i)
            if (!std::isfinite(chain.x[i]) || !std::isfinite(chain.y[i])) return false;
    return true;
}

}  // namespace

Chain Window::Outline() const {
    constexpr int kSteps = 16;
    const Box b = sheet.Widened(reach);
    const double cx = (sheet.x1 + sheet.x2) / 2, cy = (sheet.y1 + sheet.y2) / 2;
    const double sine = std::sin(-rotation * kDegree), cosine = std::cos(-rotation * kDegree);
    const double corners[5][2] = {{b.x1, b.y1}, {b.x2, b.y1}, {b.x2, b.y2}, {b.x1, b.y2}, {b.x1, b.y1}};
    Chain outline;
    for (int side = 0; side < 4; ++side)
        for (int i = 0; i < kSteps; ++i) {
            const double t = static_cast<double>(i) / kSteps;
            const double dx = corners[side][0] + t * (corners[side + 1][0] - corners[side][0]) - cx;
            const double dy = corners[side][1] + t * (corners[side + 1][1] - corners[side][1]) - cy;
            outline.x.push_back(cx + dx * cosine - dy * sine);
            outline.y.push_back(cy + dx * sine + dy * cosine);
        }
    outline.x.push_back(outline.x.front());
    outline.y.push_back(outline.y.front());
    return outline;
}

// A rule as it applies to one layer.
struct BoundRule {
    const Rule* rule;
    std::unique_ptr<OGRFeatureQuery> query;  // null: every feature
};

struct Source::Layer {
    std::unique_ptr<LayerReader> reader;
    std::string file;  // for reports that are the same for all layers of a file
    std::vector<BoundRule> rules;
    RobustExtent extent;
    std::vector<FeaturePointer> kept;  // all features, where reading the extent met few
    bool unread = false;               // a sheet is asked for, and the extent is not known
    OGREnvelope passed;                // of an unread layer without an index: what was read, in its own system
    std::unique_ptr<PlaneMap> map;
};

struct Source::State {
    explicit State(const SourceOptions& options) : decoder(options.encoding) {}
    TextDecoder decoder;
    std::vector<OpenInput> inputs;
    std::vector<std::unique_ptr<Layer>> layers;
    std::set<const Rule*> bound;  // rules that fit a layer, with their condition
    std::set<const Rule*> met;    // rules whose section is for a layer
    std::unique_ptr<PlaneChooser> chooser;
};

namespace {

// Rules that name a field which a layer does not have do not apply to it; a condition that is wrong in itself is reported.
bool Bind(const Rule& rule, OGRFeatureDefn& fields, const Rules& rules, BoundRule& bound) {
    bound.rule = &rule;
    if (rule.condition.empty()) return true;
    bound.query = std::make_unique<OGRFeatureQuery>();
    CPLErrorReset();
    if (bound.query->Compile(&fields, QuoteNames(rule.condition).c_str(), TRUE, nullptr) == OGRERR_NONE) return true;
    const std::string reason = LastReason();
    if (reason.find("not recognised as an available field") != std::string::npos ||
        reason.find("does not exist") != std::string::npos)
        return false;
    throw Failure(kUsage, Phrase("{0}:{1}: the condition \"{2}\" is no attribute filter: {3}.", rules.path.string(),
                                 rule.line, rule.condition, reason));
}

std::string PieceText(const LabelPiece& piece, const OGRFeatureDefn& fields, OGRFeature& feature) {
    if (!piece.field) return piece.text;
    const int index = fields.GetFieldIndex(piece.text.c_str());
    if (index < 0 || !feature.IsFieldSetAndNotNull(index)) return {};
    if (piece.decimals >= 0) {
        double number = 0.0;
        if (ReadReal(Trim(feature.GetFieldAsString(index)), number)) return Fixed(number, piece.decimals);
    }
    std::string text = feature.GetFieldAsString(index);
    for (char& c : text)
        if (c == '\n' || c == '\r' || c == '\t') c = ' ';
    return Trim(text);
}

// The text of a label; nothing where none of its fields has a value.
std::string LabelText(const std::vector<LabelPiece>& pieces, const OGRFeatureDefn& fields, OGRFeature& feature) {
    std::string text;
    bool any = false, asked = false;
    for (const LabelPiece& piece : pieces) {
        const std::string part = PieceText(piece, fields, feature);
        asked = asked || piece.field;
        any = any || (piece.field && !part.empty());
        text += part;
    }
    return any || !asked ? text : std::string();
}

int StoreyOf(double number) {
    return std::isfinite(number) ? static_cast<int>(std::clamp(std::floor(number), -99.0, 99.0)) : 0;
}

// The box of a window in the system of a layer, a little wider; false where the window has no place there.
bool OutlineBox(const PlaneMap& map, const Window& window, bool northFirst, OGREnvelope& box) {
    constexpr double kMargin = 0.01;  // of the sides: an outline with points between is no curve
    Chain outline = window.Outline();
    map.Invert(outline.size(), outline.x.data(), outline.y.data());
    for (std::size_t i = 0; i < outline.size(); ++i) {
        if (!std::isfinite(outline.x[i]) || !std::isfinite(outline.y[i])) return false;
        if (northFirst)
            box.Merge(outline.y[i], outline.x[i]);
        else
            box.Merge(outline.x[i], outline.y[i]);
    }
    const double dx = kMargin * (box.MaxX - box.MinX) + map.inverseError(),
                 dy = kMargin * (box.MaxY - box.MinY) + map.inverseError();
    box.MinX -= dx;
    box.MaxX += dx;
    box.MinY -= dy;
    box.MaxY += dy;
    return true;
}

Shape Turned(const Shape& shape, const Window& window) {
    const double cx = (window.sheet.x1 + window.sheet.x2) / 2, cy = (window.sheet.y1 + window.sheet.y2) / 2;
    const double sine = std::sin(window.rotation * kDegree), cosine = std::cos(window.rotation * kDegree);
    Shape turned = shape;
    for (Chain& chain : turned.chains)
        for (std::size_t i = 0; i < chain.size(); ++i) {
            const double dx = chain.x[i] - cx, dy = chain.y[i] - cy;
            chain.x[i] = cx + dx * cosine - dy * sine;
            chain.y[i] = cy + dx * sine + dy * cosine;
        }
    return turned;
}

// True if a shape, or the box of one, meets the sheet and so many metres around it.
bool MeetsSheet(const std::vector<Shape>& shapes, const Window& window, double reach, bool byBoxes) {
    const Box box = window.sheet.Widened(reach);
    const auto meets = [&](const Shape& shape) {
        return byBoxes ? BoxOf(shape.chains.front()).Meets(box) : Touches(shape, box);
    };
    return std::any_of(shapes.begin(), shapes.end(), [&](const Shape& shape) {
        return window.rotation == 0.0 ? meets(shape) : meets(Turned(shape, window));
    });
}

// False where the source refuses.
bool CountByIndex(LayerReader& reader, const PlaneMap& map, bool northFirst, const std::vector<Box>& boxes,
                  std::vector<long long>& counts) {
    for (std::size_t i = 0; i < boxes.size(); ++i) {
        CheckStop();
        OGREnvelope around;
        if (!OutlineBox(map, Window{boxes[i], 0.0, 0.0}, northFirst, around)) continue;
        reader.layer().SetSpatialFilterRect(around.MinX, around.MinY, around.MaxX, around.MaxY);
        CPLErrorReset();
        const GIntBig count = reader.layer().GetFeatureCount(TRUE);
        if (count < 0 || CPLGetLastErrorType() == CE_Failure) return false;
        counts[i] += count;
    }
    reader.layer().SetSpatialFilter(nullptr);
    return true;
}

void CountByLook(LayerReader& reader, const PlaneMap& map, bool northFirst, const BoxTree& tree,
                 std::vector<long long>& counts) {
    reader.SetWindow(nullptr);
    reader.Rewind();
    while (const FeaturePointer feature = reader.Next()) {
        const OGRGeometry* geometry = feature->GetGeometryRef();
        if (geometry == nullptr || geometry->IsEmpty() != FALSE) continue;
        OGREnvelope e;
        geometry->getEnvelope(&e);
        double x[4] = {e.MinX, e.MaxX, e.MaxX, e.MinX}, y[4] = {e.MinY, e.MinY, e.MaxY, e.MaxY};
        if (northFirst) std::swap(x, y);
        map.Apply(4, x, y);
        Box box;
        for (int i = 0; i < 4; ++i) box.Add(x[i], y[i]);
        for (const std::uint32_t i : tree.Within(box)) ++counts[i];
    }
}

std::string QuotedName(const std::string& name, const char* quote) {
    std::string quoted = "\"";
    for (const char c : name) c == '"' ? quoted += quote : quoted += c;
    return quoted + "\"";
}

// A condition on a field, whose name is written as it is given; nothing where values of the field are of another kind.
// Numbers are compared as numbers.
std::string AtLeast(const OGRFieldDefn& field, const std::string& name, const std::string& least) {
    double number = 0.0;
    std::string value = "'" + least + "'";
    switch (field.GetType()) {
        case OFTString:
        case OFTDate:
        case OFTTime:
        case OFTDateTime:
            break;
        case OFTInteger:
        case OFTInteger64:
        case OFTReal:
            if (!ReadReal(least, number)) return {};
            value = least;
            break;
        default:
            return {};
    }
    return name + " >= " + value;
}

// Whether a layer takes the condition. A double quote in a name is written twice for a database, and has a backslash
// before it where GDAL itself compares: no layer takes the form that is not its own.
bool SetCondition(OGRLayer& layer, const OGRFieldDefn& field, const std::string& least) {
    for (const char* quote : {"\"\"", "\\\""}) {
        const std::string filter = AtLeast(field, QuotedName(field.GetNameRef(), quote), least);
        if (filter.empty()) return false;
        if (layer.SetAttributeFilter(filter.c_str()) == OGRERR_NONE) return true;
    }
    return false;
}

[[noreturn]] void RefuseComparison(const LayerReader& reader, const std::string& field, const std::string& least) {
    throw Failure(kUsage, Phrase("{0}: the field \"{1}\" cannot be compared with \"{2}\"; give --changed-field a field "
                                 "of times, dates, numbers or texts, and --changed-since a value of that kind.",
                                 reader.name(), field, least));
}

void AddEnvelope(const OGRFeature& feature, OGREnvelope& box) {
    const OGRGeometry* geometry = feature.GetGeometryRef();
    if (geometry == nullptr || geometry->IsEmpty() != FALSE) return;
    OGREnvelope e;
    geometry->getEnvelope(&e);
    if (std::isfinite(e.MinX) && std::isfinite(e.MinY) && std::isfinite(e.MaxX) && std::isfinite(e.MaxY)) box.Merge(e);
}

// Memory of a feature, about.
std::size_t BytesOf(OGRFeature& feature) {
    const OGRGeometry* geometry = feature.GetGeometryRef();
    std::size_t bytes = sizeof(OGRFeature) + (geometry != nullptr ? geometry->WkbSize() : 0);
    for (int i = 0; i < feature.GetFieldCount(); ++i) {
        bytes += sizeof(OGRField);
        if (!feature.IsFieldSetAndNotNull(i)) continue;
        int count = 0;
        switch (feature.GetFieldDefnRef(i)->GetType()) {
            case OFTString:
                bytes += std::strlen(feature.GetFieldAsString(i));
                break;
            case OFTStringList:
                for (char** text = feature.GetFieldAsStringList(i); text != nullptr && *text != nullptr; ++text)
                    bytes += std::strlen(*text) + sizeof(char*);
                break;
            case OFTBinary:
                feature.GetFieldAsBinary(i, &count);
                bytes += static_cast<std::size_t>(count);
                break;
            case OFTIntegerList:
                feature.GetFieldAsIntegerList(i, &count);
                bytes += sizeof(int) * static_cast<std::size_t>(count);
                break;
            case OFTInteger64List:
                feature.GetFieldAsInteger64List(i, &count);
                bytes += sizeof(GIntBig) * static_cast<std::size_t>(count);
                break;
            case OFTRealList:
                feature.GetFieldAsDoubleList(i, &count);
                bytes += sizeof(double) * static_cast<std::size_t>(count);
                break;
            default:
                break;
        }
    }
    return bytes;
}

}  // namespace

Source::Source(const SourceOptions& options, const Rules& rules, Report& report)
    : m_options(options), m_rules(rules), m_report(report), m_state(std::make_unique<State>(options)) {
    m_state->chooser = std::make_unique<PlaneChooser>(options.plane, report);
    Open();
    TellUnboundRules();
    for (const auto& layer : m_state->layers) {
        const OGRSpatialReference* system = layer->reader->system();
        layer->unread = options.windowed && !m_state->chooser->NeedsExtent(system);
        if (layer->unread) {
            const bool isEmpty = !layer->reader->hasIndex() && layer->reader->count() == 0;
            if (!layer->rules.empty() && !isEmpty) m_state->chooser->ShowUnread(system);
            continue;
        }
        ReadExtent(*layer);
        m_state->chooser->Show(system, layer->extent, layer->file);
    }
    Settle(1000.0);
}

Source::~Source() = default;

void Source::Settle(double scale) {
    m_state->chooser->Settle(scale);
    m_box = Box();
    for (const auto& layer : m_state->layers) {
        CheckStop();
        layer->map = std::make_unique<PlaneMap>(m_state->chooser->MapOf(layer->reader->system(), layer->file));
        const RobustExtent& extent = layer->extent;
        if (extent.empty()) continue;
        // Corners and points between them: a side is no straight line in the plane.
        constexpr int kSteps = 8;
        std::vector<double> x, y;
        for (int i = 0; i <= kSteps; ++i)
            for (int k = 0; k <= kSteps; ++k) {
                x.push_back(extent.x1() + (extent.x2() - extent.x1()) * i / kSteps);
                y.push_back(extent.y1() + (extent.y2() - extent.y1()) * k / kSteps);
            }
        layer->map->Apply(x.size(), x.data(), y.data());
        for (std::size_t i = 0; i < x.size(); ++i)
            if (std::isfinite(x[i]) && std::isfinite(y[i])) m_box.Add(x[i], y[i]);
    }
}

Box Source::DataBox() const {
    Box box = m_box;
    for (const auto& layer : m_state->layers) {
        if (!layer->unread || layer->rules.empty()) continue;
        OGREnvelope extent = layer->passed;
        if (layer->reader->hasIndex() && !layer->reader->KnownExtent(extent)) continue;
        if (extent.IsInit() == FALSE) continue;
        double x[4] = {extent.MinX, extent.MaxX, extent.MaxX, extent.MinX},
               y[4] = {extent.MinY, extent.MinY, extent.MaxY, extent.MaxY};
        if (m_options.plane.axes == "north,east") std::swap(x, y);
        layer->map->Apply(4, x, y);
        for (int i = 0; i < 4; ++i)
            if (std::isfinite(x[i]) && std::isfinite(y[i])) box.Add(x[i], y[i]);
    }
    return box;
}

long long Source::Count() const {
    long long count = 0;
    for (const auto& layer : m_state->layers) {
        const long long of = layer->reader->count();
        if (of < 0) return -1;
        count += of;
    }
    return count;
}

void Source::TellPlane() {
    m_state->chooser->Tell();
}

const TargetPlane& Source::plane() const {
    return m_state->chooser->target();
}

void Source::Open() {
    for (auto& reader :
         OpenLayers(m_options.inputs, m_options.selection, m_state->decoder, m_report, m_state->inputs)) {
        auto layer = std::make_unique<Layer>();
        layer->reader = std::move(reader);
        const std::string& name = layer->reader->name();
        layer->file = name.substr(0, name.size() - layer->reader->layerName().size() - 2);
        BindRules(*layer);
        m_state->layers.push_back(std::move(layer));
    }
}

void Source::BindRules(Layer& layer) {
    for (const Rule& rule : m_rules.rules) {
        if (!FitsGlob(rule.layerGlob, layer.reader->layerName())) continue;
        m_state->met.insert(&rule);
        BoundRule bound;
        if (!Bind(rule, layer.reader->fields(), m_rules, bound)) continue;
        m_state->bound.insert(&rule);
        layer.rules.push_back(std::move(bound));
    }
    std::vector<std::string> used;
    for (const BoundRule& bound : layer.rules) {
        used.insert(used.end(), {bound.rule->angleField, bound.rule->heightField, bound.rule->roadField,
                                 bound.rule->storeyField, bound.rule->slopeField});
        for (const auto* pieces : {&bound.rule->label, &bound.rule->under})
            for (const LabelPiece& piece : *pieces)
                if (piece.field) used.push_back(piece.text);
        if (bound.query == nullptr) continue;
        const CPLStringList names(bound.query->GetUsedFields());
        for (int i = 0; i < names.size(); ++i) used.emplace_back(names[i]);
    }
    if (!layer.rules.empty()) layer.reader->AskFor(used);
    if (layer.rules.empty())
        m_report.Note(
            Phrase("{0}: no rule of {1} is for this layer.", layer.reader->name(), m_rules.path.filename().string()));
}

// A condition or a label on a field that no layer has is most often a slip of the pen.
void Source::TellUnboundRules() {
    if (m_rules.isShipped) return;
    const auto has = [&](const std::string& field, const Rule& rule) {
        return std::any_of(m_state->layers.begin(), m_state->layers.end(), [&](const auto& layer) {
            return FitsGlob(rule.layerGlob, layer->reader->layerName()) &&
                   layer->reader->fields().GetFieldIndex(field.c_str()) >= 0;
        });
    };
    for (const Rule& rule : m_rules.rules) {
        const std::string where = m_rules.path.string() + ":" + std::to_string(rule.line) + ": ";
        if (m_state->met.count(&rule) == 0) continue;  // its layers are not of this data
        if (m_state->bound.count(&rule) == 0) {
            m_report.Warn(
                N_("rules on fields that no layer has"),
                Phrase("{0}the condition \"{1}\" asks for a field that no layer has.", where, rule.condition));
            continue;
        }
        std::vector<std::string> names = {rule.angleField, rule.heightField, rule.roadField, rule.storeyField,
                                          rule.slopeField};
        for (const auto* pieces : {&rule.label, &rule.under})
            for (const LabelPiece& piece : *pieces)
                if (piece.field) names.push_back(piece.text);
        for (const std::string& name : names)
            if (!name.empty() && !has(name, rule))
                m_report.Warn(N_("rules on fields that no layer has"),
                              Phrase("{0}no layer has the field \"{1}\".", where, name));
    }
}

void Source::ReadExtent(Layer& layer) {
    if (layer.rules.empty()) return;
    constexpr std::size_t kMostKept = 20000, kMostVertices = 500000;  // some ten megabytes
    constexpr std::size_t kMostBytes = 64u << 20;                     // of all layers, with their attributes
    std::size_t vertices = 0, bytes = 0;
    bool isKept = !layer.reader->hasIndex();  // what has an index is asked by window
    layer.reader->Rewind();
    while (FeaturePointer feature = layer.reader->Next()) {
        ++m_looked;
        const OGRGeometry* geometry = feature->GetGeometryRef();
        std::vector<Shape> shapes;
        if (geometry != nullptr && geometry->IsEmpty() == FALSE)
            AppendStraight(*geometry, m_options.plane.axes == "north,east", shapes);
        for (const Shape& shape : shapes)
            for (const Chain& chain : shape.chains) {
                layer.extent.Add(chain.size(), chain.x.data(), chain.y.data());
                vertices += chain.size();
            }
        if (isKept) bytes += BytesOf(*feature);
        isKept = isKept && layer.kept.size() < kMostKept && vertices <= kMostVertices && m_kept + bytes <= kMostBytes;
        if (isKept)
            layer.kept.push_back(std::move(feature));
        else
            layer.kept.clear();
    }
    if (isKept) m_kept += bytes;
}

// What lies far from all the rest is named and left out; what remains of a line or a ring is drawn.
void Source::LeaveStraysOut(const Layer& layer, Feature& prepared, Damage& damage) {
    std::vector<Shape> shapes;
    for (Shape& shape : prepared.shapes) {
        bool whole = true;
        for (Chain& chain : shape.chains) {
            std::size_t kept = 0;
            for (std::size_t i = 0; i < chain.size(); ++i) {
                if (layer.extent.IsStray(chain.x[i], chain.y[i])) {
                    damage.reported.push_back(Phrase(
                        "{0}: the vertex ({1}, {2}) is no number, or lies far from all other data; it is left out.",
                        prepared.where, Plain(chain.x[i]), Plain(chain.y[i])));
                    continue;
                }
                chain.x[kept] = chain.x[i];
                chain.y[kept++] = chain.y[i];
            }
            if (kept < chain.size()) {
                damage.sound.x.insert(damage.sound.x.end(), chain.x.begin(), chain.x.begin() + kept);
                damage.sound.y.insert(damage.sound.y.end(), chain.y.begin(), chain.y.begin() + kept);
            }
            const std::size_t least = shape.kind == GeometryKind::area ? 3 : shape.kind == GeometryKind::line ? 2 : 1;
            if (kept < chain.size() && kept < least) kept = 0;
            chain.x.resize(kept);
            chain.y.resize(kept);
            whole = whole && (kept > 0 || &chain != &shape.chains.front());
        }
        std::erase_if(shape.chains, [](const Chain& chain) { return chain.size() == 0; });
        if (whole) shapes.push_back(std::move(shape));
    }
    prepared.shapes = std::move(shapes);
}

bool Source::TakeShapes(OGRFeature& feature, const std::optional<Window>& window, Feature& prepared) {
    const OGRGeometry* geometry = feature.GetGeometryRef();
    if (geometry == nullptr || geometry->IsEmpty() != FALSE) {
        // What has no place is of no sheet.
        if (!window)
            m_report.Skip(N_("features without geometry"),
                          Phrase("{0}: has no geometry; it is not drawn.", prepared.where));
        return false;
    }
    AppendStraight(*geometry, m_options.plane.axes == "north,east", prepared.shapes);
    return true;
}

// Brings the shapes of a feature to the plane; false where one has no place there. What is sound of a damaged feature
// says whether it is of the sheet.
bool Source::MapShapes(const Layer& layer, const std::optional<Window>& window, bool tell, Feature& prepared) {
    Damage damage;
    LeaveStraysOut(layer, prepared, damage);
    for (Shape& shape : prepared.shapes) {
        CloseRings(shape);
        for (Chain& chain : shape.chains) layer.map->Apply(chain.size(), chain.x.data(), chain.y.data());
    }
    layer.map->Apply(damage.sound.size(), damage.sound.x.data(), damage.sound.y.data());
    const auto reported = [&] {
        return tell && (!window || MeetsSheet(prepared.shapes, *window, 0.0, true) ||
                        MeetsSheet({{GeometryKind::line, {damage.sound}}}, *window, 0.0, true));
    };
    if (!damage.reported.empty() && reported())
        for (const std::string& line : damage.reported) m_report.Skip(N_("vertices far from all others"), line);
    if (std::all_of(prepared.shapes.begin(), prepared.shapes.end(), IsFinite)) return true;
    if (reported())
        m_report.Skip(N_("features outside the projection"),
                      Phrase("{0}: lies where the projection has no place for it; it is not drawn.", prepared.where));
    return false;
}

bool Source::Prepare(Layer& layer, OGRFeature& feature, const std::optional<Window>& window, Feature& prepared) {
    const OGRFeatureDefn& fields = layer.reader->fields();
    prepared.where = Phrase("{0}: feature {1}", layer.reader->name(), feature.GetFID());
    std::vector<const Rule*> fitting, storeys;
    for (const BoundRule& bound : layer.rules) {
        if (!bound.rule->IsFor(m_scale)) continue;
        if (bound.query != nullptr && bound.query->Evaluate(&feature) == FALSE) continue;
        if (bound.rule->OnlyStorey()) {
            storeys.push_back(bound.rule);
            continue;
        }
        fitting.push_back(bound.rule);
        if (!bound.rule->also && bound.rule->kind == GeometryKind::any) break;
    }
    if (!fitting.empty() && fitting.front()->skip && fitting.front()->kind == GeometryKind::any) return false;
    const auto fitsNone = [&] {
        m_report.Skip(N_("features that no rule fits"),
                      Phrase("{0}: no rule fits it; it is not drawn.", prepared.where));
        return false;
    };
    if (!window && fitting.empty()) return fitsNone();
    if (!TakeShapes(feature, window, prepared)) return false;
    const bool fits = std::any_of(prepared.shapes.begin(), prepared.shapes.end(), [&](const Shape& shape) {
        return std::any_of(fitting.begin(), fitting.end(), [&](const Rule* rule) {
            return rule->kind == GeometryKind::any || rule->kind == shape.kind;
        });
    });
    if (!window && !fits) return fitsNone();
    if (!MapShapes(layer, window, fits, prepared)) return false;
    bool tell = true;  // of a sheet only what meets it is reported, not what its symbols may reach
    if (window) {
        tell = MeetsSheet(prepared.shapes, *window, 0.0, false);
        // Some indexes go by the features themselves, some by their boxes: what is kept of them is the same.
        if (!tell && !MeetsSheet(prepared.shapes, *window, window->reach, !layer.reader->hasIndex())) return false;
        if (!fits) return tell && fitsNone();
    }
    bool toldLost = false;
    for (const Rule* rule : fitting) {
        Use use;
        use.rule = rule;
        int lost = 0, lostUnder = 0;
        use.label = ToLibraryText(LabelText(rule->label, fields, feature), m_options.replacement, lost);
        use.under = ToLibraryText(LabelText(rule->under, fields, feature), m_options.replacement, lostUnder);
        lost += lostUnder;
        if (lost > 0 && tell && !std::exchange(toldLost, true))
            m_report.Warn(N_("labels with characters outside GBK"),
                          Phrase("{0}: \"{1}\" has {2} characters that GBK lacks; each became its plain letter or "
                                 "\"{3}\" (--replace).",
                                 prepared.where, LabelText(rule->label, fields, feature), lost, m_options.replacement));
        const auto number = [&](const std::string& field, double& value) {
            const int index = field.empty() ? -1 : fields.GetFieldIndex(field.c_str());
            return index >= 0 && feature.IsFieldSetAndNotNull(index) &&
                   ReadReal(Trim(feature.GetFieldAsString(index)), value);
        };
        double degrees = 0.0;
        if (number(rule->angleField, degrees)) use.angle = (rule->azimuth ? 90.0 - degrees : degrees) * kDegree;
        use.hasHeight = number(rule->heightField, use.height);
        if (!number(rule->roadField, use.roadWidth)) use.roadWidth = rule->roadWidth;
        if (const int index = rule->slopeField.empty() ? -1 : fields.GetFieldIndex(rule->slopeField.c_str());
            index >= 0 && feature.IsFieldSetAndNotNull(index))
            use.slope = feature.GetFieldAsString(index);
        const auto takeStorey = [&](const Rule& from) {
            double storey = from.storey;
            if (from.storeyField.empty() || number(from.storeyField, storey)) use.storey = StoreyOf(storey);
        };
        for (const Rule* from : storeys)
            if (from->line < rule->line && (from->kind == GeometryKind::any || from->kind == rule->kind))
                takeStorey(*from);
        if (rule->hasStorey) takeStorey(*rule);
        prepared.uses.push_back(std::move(use));
    }
    return true;
}

void Source::ReadLayer(Layer& layer, const std::optional<Window>& window, FeatureStore& store,
                       const std::function<void(long long)>& step) {
    LayerReader& reader = *layer.reader;
    const bool orderKnown = !reader.isDatabase() || *reader.layer().GetFIDColumn() != '\0';
    const std::uint32_t place = store.AddLayer(reader.name(), orderKnown);
    OGREnvelope around;
    const bool northFirst = m_options.plane.axes == "north,east";
    if (window && reader.hasIndex() && OutlineBox(*layer.map, *window, northFirst, around)) reader.SetWindow(&around);
    const bool isPassing = layer.unread && !reader.hasIndex();
    const std::size_t before = store.size();
    const auto take = [&](OGRFeature& feature) {
        CheckStop();
        ++m_read;
        if (isPassing) AddEnvelope(feature, layer.passed);
        if (step) step(m_read);
        Feature prepared;
        if (Prepare(layer, feature, window, prepared)) store.Add(place, feature.GetFID(), prepared);
    };
    for (const FeaturePointer& feature : layer.kept) take(*feature);
    if (!layer.kept.empty()) return;
    reader.Rewind();
    while (const FeaturePointer feature = reader.Next()) take(*feature);
    reader.SetWindow(nullptr);
    // Numbers that are no places of their system may be why nothing of the file is on the sheet, and where none is named
    // a sheet may be of such numbers.
    const bool isNameless = reader.system() == nullptr && m_options.plane.source.empty();
    if (layer.passed.IsInit() != FALSE && (store.size() == before || isNameless))
        m_state->chooser->CheckNumbers(reader.system(), layer.passed, layer.file);
}

void Source::Read(const std::optional<Window>& window, FeatureStore& store,
                  const std::function<void(long long)>& step) {
    for (const auto& layer : m_state->layers)
        if (!layer->rules.empty()) ReadLayer(*layer, window, store, step);
    store.Settle();
}

std::vector<long long> Source::CountIn(const std::vector<Box>& boxes, const std::string& field,
                                       const std::string& least) {
    std::vector<long long> counts(boxes.size(), 0);
    const BoxTree tree(boxes);
    const bool northFirst = m_options.plane.axes == "north,east";
    bool found = field.empty();
    for (const auto& layer : m_state->layers) {
        if (layer->rules.empty()) continue;
        OGRLayer& data = layer->reader->layer();
        if (!field.empty()) {
            // Asked first: SQLite takes the name of a field that is not there for a text.
            const int index = layer->reader->fields().GetFieldIndex(field.c_str());
            if (index < 0) continue;
            found = true;
            layer->reader->AskForAll();  // the condition is on a field that no rule uses
            if (!SetCondition(data, *data.GetLayerDefn()->GetFieldDefn(index), least))
                RefuseComparison(*layer->reader, field, least);
        }
        const bool byIndex = layer->reader->hasIndex();
        uses::Count(byIndex ? uses::countByIndex : uses::countByLook);
        if (!byIndex)
            CountByLook(*layer->reader, *layer->map, northFirst, tree, counts);
        else if (!CountByIndex(*layer->reader, *layer->map, northFirst, boxes, counts) && !field.empty())
            RefuseComparison(*layer->reader, field, least);
        RefuseReadFault();
        if (!field.empty()) data.SetAttributeFilter(nullptr);
    }
    if (!found)
        throw Failure(kUsage, Phrase("no layer has the field \"{0}\"; give --changed-field one that is there.", field));
    return counts;
}

std::vector<std::pair<std::string, std::string>> Source::FieldsOf(const std::string& layer, long long fid) {
    std::vector<std::pair<std::string, std::string>> fields;
    for (const auto& one : m_state->layers) {
        if (one->rules.empty() || one->reader->name() != layer) continue;
        const FeaturePointer feature = one->reader->Find(fid);
        if (feature == nullptr) return fields;
        OGRFeatureDefn& names = one->reader->fields();
        for (int i = 0; i < names.GetFieldCount(); ++i)
            if (feature->IsFieldSetAndNotNull(i))
                fields.emplace_back(names.GetFieldDefn(i)->GetNameRef(), feature->GetFieldAsString(i));
        return fields;
    }
    return fields;
}

std::vector<std::string> Source::Files() const {
    std::set<std::string> files;
    std::error_code error;
    for (const std::string& input : m_options.inputs)  // an archive, whose list has names of what is in it
        if (fs::is_regular_file(PathOf(input), error)) files.insert(input);
    for (const OpenInput& input : m_state->inputs)
        for (const std::string& file : FilesOf(*input.dataset)) files.insert(file);
    return {files.begin(), files.end()};
}

Chain Source::ReadClipArea(const std::string& file) {
    const TextDecoder plain({});
    std::vector<OpenInput> kept;
    for (const auto& layer : OpenLayers({file}, {}, plain, m_report, kept)) {
        while (const FeaturePointer feature = layer->Next()) {
            if (feature->GetGeometryRef() == nullptr) continue;
            std::vector<Shape> shapes;
            AppendStraight(*feature->GetGeometryRef(), m_options.plane.axes == "north,east", shapes);
            for (Shape& shape : shapes) {
                if (shape.kind != GeometryKind::area || !IsFinite(shape)) continue;
                const PlaneMap map = m_state->chooser->MapOf(layer->system(), fs::path(file).filename().string());
                Chain& ring = shape.chains.front();
                map.Apply(ring.size(), ring.x.data(), ring.y.data());
                if (ring.size() > 1 && ring.x.front() == ring.x.back() && ring.y.front() == ring.y.back()) {
                    ring.x.pop_back();
                    ring.y.pop_back();
                }
                if (ring.size() < 3 || !IsFinite(shape)) continue;
                return std::move(ring);
            }
        }
    }
    throw Failure(kNoInput, Phrase("{0}: no area in it that can be used; --clip needs a polygon.", file));
}

}  // namespace zm::tool
