// zenro measure: the length of a line and the area of a figure, by every method side by side.
#include <cmath>
#include <cstdio>
#include <functional>
#include <memory>
#include <vector>

#include <nlohmann/json.hpp>

#include "runtime/text/numbers.h"
#include "tools/kit/report.h"
#include "tools/kit/text.h"
#include "tools/kit/translation.h"
#include "tools/zenro/coord/measures.h"
#include "zenromath/geodesy.h"

namespace zm::tool {
namespace {

struct MeasureOptions {
    std::string file;
    Family family;
    AngleForm angles = AngleForm::decimal;
    std::string order;
    bool closed = false;
    double step = 0.0;  // degrees; 0: the library's own
};

struct Result {
    const char* key;
    const char* title;
    double value;
};

std::vector<Point3D> ReadVertices(const MeasureOptions& options, Context& context, std::size_t least) {
    const PointFormat format{PointKind::geographic, options.order != "lon,lat", options.angles, {}, {}};
    std::vector<Point3D> points;
    ReadPoints(options.file, format, context, [&](const PointLine& p) { points.push_back({p.second, p.first, 0.0}); });
    if (points.size() < least)
        throw Failure(kFailed, Phrase("only {0} points were read; at least {1} are needed.", points.size(), least));
    return points;
}

// All results, each with its difference from the last, the reference.
void PrintResults(const MeasureOptions& options, Context& context, std::size_t points, const char* unit,
                  const std::vector<Result>& results, const std::vector<std::pair<const char*, double>>& units) {
    const double reference = results.back().value;
    if (context.json) {
        nlohmann::ordered_json j = {{"points", points}, {"system", options.family.name}, {"unit", unit}};
        for (const Result& r : results) j["results"][r.key] = {{"value", r.value}, {"difference", r.value - reference}};
        for (const auto& [name, value] : units) j[name] = value;
        WriteLine(j.dump(-1));
        return;
    }
    const bool length = unit[1] == '\0';
    PrintText(Phrase(length ? N_("# length of {0} points, {1}; differences from the last line")
                            : N_("# area of {0} points, {1}; differences from the last line"),
                     points, Translated(FamilyTitle(options.family).c_str())));
    for (const Result& r : results)
        PrintText(InColumns(Translated(r.title), 42) +
                  zm::numbers::Text(" %16s %s %14s", std::isnan(r.value) ? "-" : Fixed(r.value, 4).c_str(), unit,
                                    std::isnan(r.value) ? "-" : Fixed(r.value - reference, 4).c_str()));
    for (const auto& [name, value] : units)
        PrintText(InColumns(Translated("the last line in"), 42) +
                  zm::numbers::Text(" %16s %s", Fixed(value, 4).c_str(), name));
}

// The measure in the plane of a zone; not a number for points of several zones.
Result PlaneResult(Context& context, const std::vector<Point3D>& points, const std::function<double()>& measure) {
    static constexpr const char* kTitle = N_("plane of the projection, 3-degree zones");
    if (!CrossesZones(points)) return {"plane", kTitle, measure()};
    context.report.Limit(
        N_("figures of several zones"),
        Phrase("the points lie in more than one 3-degree zone, which have no common plane; the measure in the "
               "plane is left out."));
    return {"plane", kTitle, NAN};
}

// Where geodesics cannot be had, the last of the library's own methods is what the others are compared with.
void AddReference(Context& context, std::vector<Result>& results, const std::function<Result()>& reference) {
    if (HasGeodesics())
        results.push_back(reference());
    else
        context.report.Note(Phrase("geodesics, the reference, need PROJ, which this program is built without."));
}

void MeasureDistance(const MeasureOptions& options, Context& context) {
    std::vector<Point3D> points = ReadVertices(options, context, 2);
    if (options.closed) points.push_back(points.front());
    std::vector<Point3D> back(points.rbegin(), points.rend());
    std::vector<Result> results = {
        PlaneResult(context, points, [&] { return LibraryLength(points, options.family, 0); }),
        {"ellipsoid", N_("ellipsoid, as the line runs"), LibraryLength(points, options.family, 1)},
        {"ellipsoid_back", N_("ellipsoid, the line run backwards"), LibraryLength(back, options.family, 1)}};
    AddReference(context, results, [&] {
        return Result{"geodesic", N_("geodesic (reference)"), GeodesicLength(points, EllipsoidOf(options.family))};
    });
    PrintResults(options, context, points.size(), "m", results, {});
    context.status = context.report.status();
}

void MeasureArea(const MeasureOptions& options, Context& context) {
    std::vector<Point3D> ring = ReadVertices(options, context, 3);
    if (ring.front().x == ring.back().x && ring.front().y == ring.back().y) ring.pop_back();
    if (ring.size() < 3) throw Failure(kFailed, Phrase("fewer than three different points; that has no area."));
    const std::vector<Point3D> open = ring;
    ring.push_back(ring.front());  // the ellipsoid methods leave a ring as open as it is
    if (options.step > 0.0) SetEllipsePrecision(options.step);
    const Ellipsoid ellipsoid = EllipsoidOf(options.family);
    std::vector<Result> results = {
        PlaneResult(context, open, [&] { return LibraryArea(open, options.family, 0); }),
        {"ellipsoid", N_("ellipsoid, edges straight in lat and lon"), LibraryArea(ring, options.family, 1)},
        {"series", N_("land-survey series"),
         TestmyCalEllipseArea(ring.data(), static_cast<int>(ring.size()), true, ellipsoid.a, ellipsoid.b, true)}};
    AddReference(context, results, [&] {
        return Result{"geodesic", N_("geodesic edges (reference)"), GeodesicArea(open, ellipsoid)};
    });
    double mu = 0.0, hectare = 0.0;
    AreaUnitConvert(znAreaSquareMeter, znAreaMu, results.back().value, mu);
    AreaUnitConvert(znAreaSquareMeter, znAreaHectare, results.back().value, hectare);
    PrintResults(options, context, open.size(), "m2", results, {{"mu", mu}, {"hectare", hectare}});
    context.status = context.report.status();
}

void AddMeasureOptions(Verb verb, Context& context, MeasureOptions& options) {
    verb.AddOption("FILE", options.file, "Points, one a line; - or nothing is stdin");
    AddCommonOptions(verb, context);
    AddFamilyOption(verb, options.family);
    AddAngleOption(verb, options.angles);
    verb.AddOption("--order", options.order,
                   "Order of the two numbers on a line, unless they are named (lat=.. lon=..)")
        .OneOf({"lat,lon", "lon,lat"})
        .Default("lat,lon");
}

}  // namespace

void AddMeasureVerb(Verb app, Context& context) {
    const Verb measure = app.AddVerb("measure", "Measure a line or a figure, by all methods side by side");
    measure.NeedsVerb();
    AddMeasureLayerVerb(measure, context);
    const auto options = std::make_shared<MeasureOptions>();
    const Verb distance = measure.AddVerb("distance", "Length of the line through the points");
    AddMeasureOptions(distance, context, *options);
    distance.AddFlag("--closed", options->closed, "Back to the first point");
    distance.OnRun([options, &context] { MeasureDistance(*options, context); });
    const Verb area = measure.AddVerb("area", "Area of the figure of the points");
    AddMeasureOptions(area, context, *options);
    area.AddOption("--step", options->step, "Integration step in degrees").Positive();
    area.OnRun([options, &context] { MeasureArea(*options, context); });
}

}  // namespace zm::tool
