// zenro measure layer: the area and the length of each feature of a data set, into fields.
#include <ogr_spatialref.h>

#include <cmath>
#include <cstdio>
#include <memory>

#include "tools/kit/text.h"
#include "tools/kit/translation.h"
#include "tools/zenro/coord/measures.h"
#include "tools/zenro/map/dataset_copy.h"
#include "tools/zenro/map/plane.h"

namespace zm::tool {
namespace {

struct LayerOptions {
    std::string input, output, source, encoding;
    Selection selection;
    bool overwrite = false;
};

// In square metres and metres: on the ellipsoid by geodesics, and in the plane of 3-degree zones.
struct Measures {
    double area = 0.0, planeArea = 0.0, length = 0.0, planeLength = 0.0;
    bool hasArea = false, hasLength = false;
    bool crossesZones = false;  // a part lies in more than one zone; there is no measure in the plane then
};

const std::vector<std::string> kFields = {"area_m2",  "area_plane_m2",  "area_diff_m2",
                                          "length_m", "length_plane_m", "length_diff_m"};

std::vector<Point3D> PointsOf(const OGRSimpleCurve& curve) {
    std::vector<Point3D> points;
    points.reserve(static_cast<std::size_t>(curve.getNumPoints()));
    for (int i = 0; i < curve.getNumPoints(); ++i) points.push_back({curve.getX(i), curve.getY(i), 0.0});
    return points;
}

void AddRing(const OGRSimpleCurve& ring, double sign, const Family& family, Measures& sum) {
    std::vector<Point3D> points = PointsOf(ring);
    if (points.size() > 1 && points.front().x == points.back().x && points.front().y == points.back().y)
        points.pop_back();
    if (points.size() < 3) return;
    sum.area += sign * GeodesicArea(points, EllipsoidOf(family));
    sum.planeArea += sign * LibraryArea(points, family, 0);
    sum.crossesZones |= CrossesZones(points);
    points.push_back(points.front());
    sum.length += GeodesicLength(points, EllipsoidOf(family));
    sum.planeLength += LibraryLength(points, family, 0);
}

// Of a geometry in degrees. The length of an area is that of all its rings.
void Add(const OGRGeometry& geometry, const Family& family, Measures& sum) {
    if (const auto* polygon = dynamic_cast<const OGRPolygon*>(&geometry)) {
        sum.hasArea = sum.hasLength = true;
        bool outer = true;
        for (const OGRLinearRing* ring : *polygon) {
            AddRing(*ring, outer ? 1.0 : -1.0, family, sum);
            outer = false;
        }
    } else if (const auto* line = dynamic_cast<const OGRSimpleCurve*>(&geometry)) {
        sum.hasLength = true;
        const std::vector<Point3D> points = PointsOf(*line);
        if (points.size() < 2) return;
        sum.length += GeodesicLength(points, EllipsoidOf(family));
        sum.planeLength += LibraryLength(points, family, 0);
        sum.crossesZones |= CrossesZones(points);
    } else if (const auto* many = dynamic_cast<const OGRGeometryCollection*>(&geometry)) {
        for (const OGRGeometry* part : *many) Add(*part, family, sum);
    }
}

// The way of a layer to the degrees of its own datum, and its family.
std::unique_ptr<OGRCoordinateTransformation> WayToDegrees(const OGRSpatialReference& system, const std::string& name,
                                                          Family& family) {
    const int selector = FamilyOf(system);
    if (selector == 0)
        throw Failure(kNoInput,
                      Phrase("{0}: the ellipsoid of {1} is none of the families; bring the data to one first.", name,
                             system.GetName()));
    family.name = selector == 54 ? "54" : selector == 80 ? "80" : "2000";
    std::unique_ptr<OGRSpatialReference> from(system.Clone()), degrees(system.CloneGeogCS());
    from->SetAxisMappingStrategy(OAMS_TRADITIONAL_GIS_ORDER);
    degrees->SetAxisMappingStrategy(OAMS_TRADITIONAL_GIS_ORDER);
    std::unique_ptr<OGRCoordinateTransformation> way(OGRCreateCoordinateTransformation(from.get(), degrees.get()));
    if (way == nullptr)
        throw Failure(kNoInput, Phrase("{0}: its coordinates cannot be brought to degrees: {1}.", name, LastReason()));
    return way;
}

void Store(OGRFeature& feature, const Measures& m) {
    const auto set = [&](std::size_t field, double value) { feature.SetField(kFields[field].c_str(), value); };
    if (m.hasArea) {
        set(0, m.area);
        if (!m.crossesZones) {
            set(1, m.planeArea);
            set(2, m.planeArea - m.area);
        }
    }
    if (m.hasLength) {
        set(3, m.length);
        if (!m.crossesZones) {
            set(4, m.planeLength);
            set(5, m.planeLength - m.length);
        }
    }
}

void MeasureLayers(const LayerOptions& options, Context& context) {
    const TextDecoder decoder(options.encoding);
    std::vector<OpenInput> kept;
    const auto readers = OpenLayers({options.input}, options.selection, decoder, context.report, kept);
    OGRSpatialReference named;
    if (!options.source.empty() && named.SetFromUserInput(options.source.c_str()) != OGRERR_NONE)
        throw Failure(kUsage,
                      Phrase("--source {0}: no system of this name; give one such as EPSG:4490.", options.source));
    DatasetCopy copy(options.output, options.overwrite, context.report);
    Measures total;
    for (const auto& reader : readers) {
        const OGRSpatialReference* system = options.source.empty() ? reader->system() : &named;
        if (system == nullptr)
            throw Failure(kNoInput,
                          Phrase("{0}: names no coordinate system; give --source, such as EPSG:4490.", reader->name()));
        Family family;
        const auto way = WayToDegrees(*system, reader->name(), family);
        OGRLayer& layer = copy.AddLayer(*reader, system, kFields);
        reader->Rewind();
        while (const FeaturePointer feature = reader->Next()) {
            const FeaturePointer made = copy.Copy(layer, *feature);
            const OGRGeometry* geometry = feature->GetGeometryRef();
            if (geometry != nullptr && geometry->IsEmpty() == FALSE) {
                const std::unique_ptr<OGRGeometry> degrees(geometry->getLinearGeometry());
                degrees->assignSpatialReference(nullptr);
                Measures m;
                if (degrees->transform(way.get()) == OGRERR_NONE) Add(*degrees, family, m);
                const bool measured = (m.hasArea || m.hasLength) && std::isfinite(m.area) &&
                                      std::isfinite(m.planeArea) && std::isfinite(m.length) &&
                                      std::isfinite(m.planeLength);
                if (measured)
                    Store(*made, m);
                else
                    context.report.Skip(N_("features without a measure"),
                                        Phrase("{0}: feature {1}: has neither length nor area, or no place in degrees; "
                                               "its fields stay empty.",
                                               reader->name(), feature->GetFID()));
                if (measured && m.crossesZones)
                    context.report.Limit(N_("features of several zones"),
                                         Phrase("{0}: feature {1}: lies in more than one 3-degree zone, which have no "
                                                "common plane; its fields of the plane stay empty.",
                                                reader->name(), feature->GetFID()));
                if (measured) {
                    total.area += m.area;
                    total.length += m.length;
                }
            }
            copy.Write(layer, *made);
        }
    }
    copy.Finish();
    PrintText(Phrase("{0}: {1} features, {2} m2, {3} m", options.output, copy.written(), Fixed(total.area, 4),
                     Fixed(total.length, 4)));
    context.status = context.report.status();
}

}  // namespace

void AddMeasureLayerVerb(Verb measure, Context& context) {
    const Verb verb = measure.AddVerb("layer", "Area and length of each feature into fields, both ways");
    const auto options = std::make_shared<LayerOptions>();
    verb.AddOption("IN", options->input, "Map data").Required();
    verb.AddOption("-o,--output", options->output, "The data with the fields area_m2, length_m ...").Required();
    verb.AddFlag("--overwrite", options->overwrite, "Replace an output that exists");
    verb.AddOption("--layer", options->selection.layers, "Only layers of this name; * and ? as in a shell")
        .Repeatable();
    verb.AddOption("--where", options->selection.where, "Only features that this attribute filter takes");
    verb.AddOption("--source", options->source, "System of the data, in place of what it says itself");
    verb.AddOption("--encoding", options->encoding, "Encoding of attributes");
    AddCommonOptions(verb, context);
    verb.OnRun([options, &context] { MeasureLayers(*options, context); });
}

}  // namespace zm::tool
