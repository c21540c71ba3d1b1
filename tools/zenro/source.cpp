#include "tools/zenro/source.h"

#include <gdal_priv.h>
#include <ogrsf_frmts.h>

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <utility>

#include "tools/zenro/text.h"
#include "tools/zenro/tool_host.h"

namespace fs = std::filesystem;

namespace zm::tool {
namespace {

constexpr std::size_t kKeptPoints = 4u << 20;  // points that are kept between the passes, some 64 MB
constexpr double kDegree = 3.141592653589793 / 180.0;

struct DatasetCloser {
    void operator()(GDALDataset* dataset) const { GDALClose(dataset); }
};
using Dataset = std::unique_ptr<GDALDataset, DatasetCloser>;
struct FeatureDestroyer {
    void operator()(OGRFeature* feature) const { OGRFeature::DestroyFeature(feature); }
};
using FeaturePointer = std::unique_ptr<OGRFeature, FeatureDestroyer>;

// GDAL's own words are asked for where they matter, and kept from stderr.
void BeSilent() {
    static const bool once = [] {
        CPLSetErrorHandler(CPLQuietErrorHandler);
        GDALAllRegister();
        // A feature of a million points is no attack here; the user's own setting goes first.
        if (CPLGetConfigOption("OGR_GEOJSON_MAX_OBJ_SIZE", nullptr) == nullptr)
            CPLSetConfigOption("OGR_GEOJSON_MAX_OBJ_SIZE", "0");
        return true;
    }();
    static_cast<void>(once);
}

std::string LastReason() {
    std::string reason = CPLGetLastErrorMsg();
    std::replace(reason.begin(), reason.end(), '\n', ' ');
    return reason.empty() ? "no driver knows it" : reason;
}

Dataset OpenDataset(const std::string& input, const std::string& encoding) {
    BeSilent();
    std::error_code error;
    const bool isFile = fs::exists(input, error);
    const bool mayBeName = input.find(':') != std::string::npos;  // PG:..., MYSQL:..., /vsizip/...
    if (!isFile && !mayBeName && input.rfind("/vsi", 0) != 0)
        throw Failure(kNoInput, input + ": no such file. Check the path.");
    if (isFile && fs::is_regular_file(input, error) && fs::file_size(input, error) == 0)
        throw Failure(kNoInput, input + ": is empty.");
    CPLStringList openOptions;
    if (!encoding.empty()) openOptions.SetNameValue("ENCODING", encoding.c_str());
    CPLErrorReset();
    Dataset dataset(static_cast<GDALDataset*>(
        GDALOpenEx(input.c_str(), GDAL_OF_VECTOR | GDAL_OF_READONLY, nullptr, openOptions.List(), nullptr)));
    if (dataset == nullptr)
        throw Failure(kNoInput, input + ": cannot be read as map data: " + LastReason() + ". Try ogrinfo on it.");
    return dataset;
}

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

bool IsFinite(const Shape& shape) {
    for (const Chain& chain : shape.chains)
        for (std::size_t i = 0; i < chain.size(); ++i)
            if (!std::isfinite(chain.x[i]) || !std::isfinite(chain.y[i])) return false;
    return true;
}

}  // namespace

void Box::Add(double x, double y) {
    x1 = std::min(x1, x);
    y1 = std::min(y1, y);
    x2 = std::max(x2, x);
    y2 = std::max(y2, y);
}

bool Box::Meets(const Box& other) const {
    return !empty() && !other.empty() && x1 <= other.x2 && other.x1 <= x2 && y1 <= other.y2 && other.y1 <= y2;
}

Box BoxOf(const Chain& chain) {
    Box box;
    for (std::size_t i = 0; i < chain.size(); ++i) box.Add(chain.x[i], chain.y[i]);
    return box;
}

// A rule as it applies to one layer.
struct BoundRule {
    const Rule* rule;
    std::unique_ptr<OGRFeatureQuery> query;  // null: every feature
};

struct Source::Layer {
    OGRLayer* ogr = nullptr;
    std::string name;  // file and layer, for reports
    std::vector<BoundRule> rules;
    std::unique_ptr<PlaneMap> map;
};

struct Source::State {
    std::vector<Dataset> datasets;
    std::vector<std::unique_ptr<Layer>> layers;
    std::unique_ptr<PlaneChooser> chooser;
    std::vector<Feature> kept;
    bool complete = false;  // kept holds all features
    bool tooMany = false;
    bool reported = false;  // what is wrong with single features was told in the first pass
};

namespace {

int FieldOf(const OGRFeatureDefn& fields, const std::string& name) {
    return fields.GetFieldIndex(name.c_str());
}

// Rules that name a field which a layer does not have do not apply to it; a condition that is wrong in itself is told.
bool Bind(const Rule& rule, OGRLayer& layer, const Rules& rules, BoundRule& bound) {
    bound.rule = &rule;
    if (rule.condition.empty()) return true;
    bound.query = std::make_unique<OGRFeatureQuery>();
    CPLErrorReset();
    if (bound.query->Compile(&layer, rule.condition.c_str()) == OGRERR_NONE) return true;
    const std::string reason = LastReason();
    if (reason.find("not recognised as an available field") != std::string::npos ||
        reason.find("does not exist") != std::string::npos)
        return false;
    throw Failure(kUsage, rules.path.string() + ":" + std::to_string(rule.line) + ": the condition \"" +
                              rule.condition + "\" is no attribute filter: " + reason + ".");
}

std::string PieceText(const LabelPiece& piece, OGRFeature& feature) {
    if (!piece.field) return piece.text;
    const int index = FieldOf(*feature.GetDefnRef(), piece.text);
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
std::string LabelText(const std::vector<LabelPiece>& pieces, OGRFeature& feature) {
    std::string text;
    bool any = false, fields = false;
    for (const LabelPiece& piece : pieces) {
        const std::string part = PieceText(piece, feature);
        fields = fields || piece.field;
        any = any || (piece.field && !part.empty());
        text += part;
    }
    return any || !fields ? text : std::string();
}

}  // namespace

Source::Source(const SourceOptions& options, const Rules& rules, double scale, Report& report)
    : m_options(options), m_rules(rules), m_report(report), m_state(std::make_unique<State>()) {
    m_state->chooser = std::make_unique<PlaneChooser>(options.plane, scale, report);
    for (const std::string& input : options.inputs) Open(input);
    for (const auto& layer : m_state->layers) {
        OGREnvelope extent;
        if (layer->ogr->GetExtent(&extent, TRUE) != OGRERR_NONE) continue;
        const double box[4] = {extent.MinX, extent.MinY, extent.MaxX, extent.MaxY};
        m_state->chooser->Settle(layer->ogr->GetSpatialRef(), box, layer->name);
    }
    for (const auto& layer : m_state->layers) {
        CheckStop();
        layer->map = std::make_unique<PlaneMap>(m_state->chooser->MapOf(layer->ogr->GetSpatialRef(), layer->name));
        OGREnvelope extent;
        if (layer->ogr->GetExtent(&extent, TRUE) != OGRERR_NONE) continue;
        // Corners and points between them: a side is no straight line in the plane.
        constexpr int kSteps = 8;
        std::vector<double> x, y;
        for (int i = 0; i <= kSteps; ++i)
            for (int k = 0; k <= kSteps; ++k) {
                x.push_back(extent.MinX + (extent.MaxX - extent.MinX) * i / kSteps);
                y.push_back(extent.MinY + (extent.MaxY - extent.MinY) * k / kSteps);
            }
        layer->map->Apply(x.size(), x.data(), y.data());
        for (std::size_t i = 0; i < x.size(); ++i)
            if (std::isfinite(x[i]) && std::isfinite(y[i])) m_box.Add(x[i], y[i]);
    }
}

Source::~Source() = default;

const TargetPlane& Source::plane() const {
    return m_state->chooser->target();
}

void Source::Open(const std::string& input) {
    Dataset dataset = OpenDataset(input, m_options.encoding);
    if (dataset->GetLayerCount() == 0) throw Failure(kNoInput, input + ": holds no layer of features.");
    const std::string file = fs::path(input).filename().string();
    for (OGRLayer* ogr : dataset->GetLayers()) {
        auto layer = std::make_unique<Layer>();
        layer->ogr = ogr;
        layer->name = file + ": " + ogr->GetName();
        for (const Rule& rule : m_rules.rules) {
            if (!FitsGlob(rule.layerGlob, ogr->GetName())) continue;
            BoundRule bound;
            if (Bind(rule, *ogr, m_rules, bound)) layer->rules.push_back(std::move(bound));
        }
        if (layer->rules.empty())
            m_report.Note(layer->name + ": no rule of " + m_rules.path.filename().string() + " is for this layer.");
        const GIntBig count = ogr->GetFeatureCount(FALSE);
        m_count = count < 0 || m_count < 0 ? -1 : m_count + count;
        m_state->layers.push_back(std::move(layer));
    }
    m_state->datasets.push_back(std::move(dataset));
}

bool Source::Prepare(Layer& layer, void* raw, Feature& prepared) {
    OGRFeature& feature = *static_cast<OGRFeature*>(raw);
    const bool tell = !m_state->reported;
    prepared.where = layer.name + ": feature " + std::to_string(feature.GetFID());
    const auto skip = [&](const std::string& kind, const std::string& why) {
        if (tell) m_report.Skip(kind, prepared.where + ": " + why);
        return false;
    };
    std::vector<const Rule*> fitting;
    for (const BoundRule& bound : layer.rules) {
        if (bound.query != nullptr && bound.query->Evaluate(&feature) == FALSE) continue;
        fitting.push_back(bound.rule);
        if (!bound.rule->also && bound.rule->kind == GeometryKind::any) break;
    }
    if (fitting.empty()) return skip("features that no rule fits", "no rule fits it; it is not drawn.");
    if (fitting.front()->skip && fitting.front()->kind == GeometryKind::any) return false;

    const OGRGeometry* geometry = feature.GetGeometryRef();
    if (geometry == nullptr || geometry->IsEmpty() != FALSE)
        return skip("features without geometry", "has no geometry; it is not drawn.");
    std::unique_ptr<OGRGeometry> straight;
    if (geometry->hasCurveGeometry() != FALSE) {
        straight.reset(geometry->getLinearGeometry());
        geometry = straight.get();
    }
    AppendShapes(*geometry, prepared.shapes);
    for (Shape& shape : prepared.shapes) {
        if (!IsFinite(shape))
            return skip("features with coordinates that are no numbers",
                        "has a coordinate that is no number; it is not drawn.");
        CloseRings(shape);
        for (Chain& chain : shape.chains) layer.map->Apply(chain.size(), chain.x.data(), chain.y.data());
        if (!IsFinite(shape))
            return skip("features outside the projection",
                        "lies where the projection has no place for it; it is not drawn.");
    }
    bool toldLost = false;
    for (const Rule* rule : fitting) {
        Use use;
        use.rule = rule;
        int lost = 0, lostUnder = 0;
        use.label = ToLibraryText(LabelText(rule->label, feature), m_options.replacement, lost);
        use.under = ToLibraryText(LabelText(rule->under, feature), m_options.replacement, lostUnder);
        lost += lostUnder;
        if (lost > 0 && tell && !std::exchange(toldLost, true))
            m_report.Warn("labels with characters outside GBK",
                          prepared.where + ": \"" + LabelText(rule->label, feature) + "\" has " + std::to_string(lost) +
                              " characters that GBK lacks; each became its plain letter or \"" + m_options.replacement +
                              "\" (--replace).");
        const auto number = [&](const std::string& field, double& value) {
            const int index = field.empty() ? -1 : FieldOf(*feature.GetDefnRef(), field);
            return index >= 0 && feature.IsFieldSetAndNotNull(index) &&
                   ReadReal(Trim(feature.GetFieldAsString(index)), value);
        };
        double degrees = 0.0;
        if (number(rule->angleField, degrees)) use.angle = (rule->azimuth ? 90.0 - degrees : degrees) * kDegree;
        use.hasHeight = number(rule->heightField, use.height);
        prepared.uses.push_back(std::move(use));
    }
    return true;
}

void Source::ReadAll(const std::function<void(const Feature&)>& work) {
    for (const auto& layer : m_state->layers) {
        if (layer->rules.empty()) continue;
        layer->ogr->ResetReading();
        CPLErrorReset();
        while (true) {
            CheckStop();
            const FeaturePointer feature(layer->ogr->GetNextFeature());
            if (feature == nullptr) break;
            Feature prepared;
            if (Prepare(*layer, feature.get(), prepared)) work(prepared);
            CPLErrorReset();
        }
        if (CPLGetLastErrorType() == CE_Failure && !m_state->reported)
            m_report.Skip("layers that end early", layer->name + ": reading ended early: " + LastReason() + ".");
    }
    m_state->reported = true;
}

void Source::ForEach(const std::function<void(const Feature&)>& work) {
    if (m_state->complete) {
        for (const Feature& feature : m_state->kept) {
            CheckStop();
            work(feature);
        }
        return;
    }
    std::size_t points = 0;
    ReadAll([&](const Feature& feature) {
        if (!m_state->tooMany) {
            for (const Shape& shape : feature.shapes)
                for (const Chain& chain : shape.chains) points += chain.size() + 8;
            if (points <= kKeptPoints) {
                m_state->kept.push_back(feature);
            } else {
                m_state->tooMany = true;
                std::vector<Feature>().swap(m_state->kept);
            }
        }
        work(feature);
    });
    m_state->complete = !m_state->tooMany;
}

Chain Source::ReadClipArea(const std::string& file) {
    const Dataset dataset = OpenDataset(file, {});
    for (OGRLayer* layer : dataset->GetLayers()) {
        layer->ResetReading();
        while (const FeaturePointer feature{layer->GetNextFeature()}) {
            if (feature->GetGeometryRef() == nullptr) continue;
            std::vector<Shape> shapes;
            const std::unique_ptr<OGRGeometry> straight(feature->GetGeometryRef()->getLinearGeometry());
            AppendShapes(*straight, shapes);
            for (Shape& shape : shapes) {
                if (shape.kind != GeometryKind::area || !IsFinite(shape)) continue;
                const PlaneMap map =
                    m_state->chooser->MapOf(layer->GetSpatialRef(), fs::path(file).filename().string());
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
    throw Failure(kNoInput, file + ": no area in it that can be used; --clip needs a polygon.");
}

}  // namespace zm::tool
