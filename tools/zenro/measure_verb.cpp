// zenro measure: the length of a line and the area of a figure, by every method side by side.
#include <geodesic.h>

#include <cmath>
#include <cstdio>
#include <functional>
#include <memory>
#include <vector>

#include <nlohmann/json.hpp>

#include "tools/zenro/points_io.h"
#include "tools/zenro/text.h"
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

// What TestmyCalEllipseArea and the reference need of an ellipsoid.
struct Ellipsoid {
    double a, b, f;
};

Ellipsoid EllipsoidOf(const Family& family) {
    double a = 6378137.0, b = 6356752.31414036;
    if (family.selector() == 54) {
        a = 6378245.0;
        b = 6356863.01877305;
    } else if (family.selector() == 80) {
        a = 6378140.0;
        b = 6356755.28815753;
    }
    return {a, b, (a - b) / a};
}

znCoordSysTypeConstants SystemOf(const Family& family) {
    return family.selector() == 54 ? znCoord54G3 : family.selector() == 80 ? znCoord80G3 : znCoord84G3;
}

struct Result {
    const char* key;
    const char* title;
    double value;
};

std::vector<Point3D> ReadVertices(const MeasureOptions& options, Context& context, std::size_t least) {
    const PointFormat format{PointKind::geographic, options.order != "lon,lat", options.angles};
    std::vector<Point3D> points;
    ReadPoints(options.file, format, context, [&](const PointLine& p) { points.push_back({p.second, p.first, 0.0}); });
    if (points.size() < least)
        throw Failure(kFailed, "only " + std::to_string(points.size()) + " points were read; at least " +
                                   std::to_string(least) + " are needed.");
    return points;
}

double GeodesicLength(const std::vector<Point3D>& points, const Ellipsoid& ellipsoid) {
    geod_geodesic g;
    geod_init(&g, ellipsoid.a, ellipsoid.f);
    double sum = 0.0;
    for (std::size_t i = 0; i + 1 < points.size(); ++i) {
        double s = 0.0;
        geod_inverse(&g, points[i].y, points[i].x, points[i + 1].y, points[i + 1].x, &s, nullptr, nullptr);
        sum += s;
    }
    return sum;
}

double GeodesicArea(const std::vector<Point3D>& points, const Ellipsoid& ellipsoid) {
    geod_geodesic g;
    geod_init(&g, ellipsoid.a, ellipsoid.f);
    std::vector<double> lats, lons;
    for (const Point3D& p : points) {
        lats.push_back(p.y);
        lons.push_back(p.x);
    }
    double area = 0.0, perimeter = 0.0;
    geod_polygonarea(&g, lats.data(), lons.data(), static_cast<int>(points.size()), &area, &perimeter);
    return std::fabs(area);
}

double LibraryLength(const std::vector<Point3D>& points, const Family& family, short method) {
    DistandAreaInquiry inquiry(points.data(), static_cast<int>(points.size()), method);
    inquiry.SetEllipse(SystemOf(family));
    return inquiry.GetDist();
}

double LibraryArea(const std::vector<Point3D>& ring, const Family& family, short method) {
    DistandAreaInquiry inquiry(ring.data(), static_cast<int>(ring.size()), method);
    inquiry.SetEllipse(SystemOf(family));
    return inquiry.GetArea();
}

// All results, each with its difference from the last, the reference.
void PrintResults(const MeasureOptions& options, Context& context, std::size_t points, const char* unit,
                  const std::vector<Result>& results, const std::vector<std::pair<const char*, double>>& units) {
    const double reference = results.back().value;
    if (context.json) {
        nlohmann::ordered_json j = {{"points", points}, {"system", options.family.name}, {"unit", unit}};
        for (const Result& r : results) j["results"][r.key] = {{"value", r.value}, {"difference", r.value - reference}};
        for (const auto& [name, value] : units) j[name] = value;
        std::printf("%s\n", j.dump(-1).c_str());
        return;
    }
    std::printf("# %s of %zu points, %s; differences from the last line\n", unit[1] == '\0' ? "length" : "area", points,
                FamilyTitle(options.family).c_str());
    for (const Result& r : results)
        std::printf("%-42s %16s %s %14s\n", r.title, Fixed(r.value, 4).c_str(), unit,
                    Fixed(r.value - reference, 4).c_str());
    for (const auto& [name, value] : units)
        std::printf("%-42s %16s %s\n", "the last line in", Fixed(value, 4).c_str(), name);
}

void MeasureDistance(const MeasureOptions& options, Context& context) {
    std::vector<Point3D> points = ReadVertices(options, context, 2);
    if (options.closed) points.push_back(points.front());
    std::vector<Point3D> back(points.rbegin(), points.rend());
    const Ellipsoid ellipsoid = EllipsoidOf(options.family);
    PrintResults(options, context, points.size(), "m",
                 {{"plane", "plane of the projection, 3-degree zones", LibraryLength(points, options.family, 0)},
                  {"ellipsoid", "ellipsoid, as the line runs", LibraryLength(points, options.family, 1)},
                  {"ellipsoid_back", "ellipsoid, the line run backwards", LibraryLength(back, options.family, 1)},
                  {"geodesic", "geodesic (reference)", GeodesicLength(points, ellipsoid)}},
                 {});
    context.status = context.report.status();
}

void MeasureArea(const MeasureOptions& options, Context& context) {
    std::vector<Point3D> ring = ReadVertices(options, context, 3);
    if (ring.front().x == ring.back().x && ring.front().y == ring.back().y) ring.pop_back();
    if (ring.size() < 3) throw Failure(kFailed, "fewer than three different points; that has no area.");
    const std::vector<Point3D> open = ring;
    ring.push_back(ring.front());  // the ellipsoid methods leave a ring as open as it is
    if (options.step > 0.0) SetEllipsePrecision(options.step);
    const Ellipsoid ellipsoid = EllipsoidOf(options.family);
    const double reference = GeodesicArea(open, ellipsoid);
    double mu = 0.0, hectare = 0.0;
    AreaUnitConvert(znAreaSquareMeter, znAreaMu, reference, mu);
    AreaUnitConvert(znAreaSquareMeter, znAreaHectare, reference, hectare);
    PrintResults(
        options, context, open.size(), "m2",
        {{"plane", "plane of the projection, 3-degree zones", LibraryArea(open, options.family, 0)},
         {"ellipsoid", "ellipsoid, edges straight in lat and lon", LibraryArea(ring, options.family, 1)},
         {"series", "land-survey series",
          TestmyCalEllipseArea(ring.data(), static_cast<int>(ring.size()), true, ellipsoid.a, ellipsoid.b, true)},
         {"geodesic", "geodesic edges (reference)", reference}},
        {{"mu", mu}, {"hectare", hectare}});
    context.status = context.report.status();
}

void AddMeasureOptions(CLI::App& verb, Context& context, MeasureOptions& options) {
    verb.add_option("FILE", options.file, "Points, one a line; - or nothing is stdin");
    AddCommonOptions(verb, context);
    AddFamilyOption(verb, options.family);
    AddAngleOption(verb, options.angles);
    verb.add_option("--order", options.order,
                    "Order of the two numbers on a line, unless they are named (lat=.. lon=..)")
        ->check(CLI::IsMember({"lat,lon", "lon,lat"}))
        ->default_str("lat,lon");
}

}  // namespace

void AddMeasureVerb(CLI::App& app, Context& context) {
    CLI::App& measure = *app.add_subcommand("measure", "Measure a line or a figure, by all methods side by side");
    measure.require_subcommand(1);
    const auto options = std::make_shared<MeasureOptions>();
    CLI::App& distance = *measure.add_subcommand("distance", "Length of the line through the points");
    AddMeasureOptions(distance, context, *options);
    distance.add_flag("--closed", options->closed, "Back to the first point");
    distance.callback([options, &context] { MeasureDistance(*options, context); });
    CLI::App& area = *measure.add_subcommand("area", "Area of the figure of the points");
    AddMeasureOptions(area, context, *options);
    area.add_option("--step", options->step, "Integration step in degrees")->check(CLI::PositiveNumber);
    area.callback([options, &context] { MeasureArea(*options, context); });
}

}  // namespace zm::tool
