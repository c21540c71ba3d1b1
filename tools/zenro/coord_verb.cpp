// zenro coord: positions to the plane and back, and the zones of a longitude.
#include <cmath>
#include <cstdio>
#include <map>
#include <memory>

#include <nlohmann/json.hpp>

#include "tools/zenro/points_io.h"
#include "tools/zenro/text.h"
#include "zenromath/geodesy.h"

namespace zm::tool {
namespace {

constexpr double kDegree = 3.141592653589793 / 180.0;
constexpr double kMetresPerRadian = 6371000.0;  // for differences told in millimetres only
constexpr double kWideDegrees = 4.0;            // the series serve one zone; beyond it the user is warned
constexpr double kFalseEasting = 500000.0;
constexpr double kZone = 1000000.0;

enum class Easting { standard, offset, natural };

struct CoordOptions {
    std::string file;
    Family family;
    AngleForm angles = AngleForm::decimal;
    int zoneWidth = 3;
    double meridian = NAN;  // degrees; not a number: by zone
    Easting easting = Easting::standard;
    std::string order;
    std::string historic;  // "", "free" or "class"
    int decimals = -1;
};

znCoordSysTypeConstants SystemOf(const CoordOptions& options) {
    const bool three = options.zoneWidth == 3;
    switch (options.family.selector()) {
        case 54:
            return three ? znCoord54G3 : znCoord54G6;
        case 80:
            return three ? znCoord80G3 : znCoord80G6;
        default:
            return three ? znCoord84G3 : znCoord84G6;
    }
}

// The central meridian of a longitude by the library's zone rule.
int CentralMeridian(double longitude, int width) {
    Coordinate_2Dsys zone;
    zone.setEllipse(width == 3 ? znCoord84G3 : znCoord84G6);
    zone.setL(longitude * kDegree);
    return zone.getL0();
}

int ZoneNumber(int meridian, int width) {
    return width == 3 ? meridian / 3 : (meridian + 3) / 6;
}

struct PlanePoint {
    double north = 0.0, east = 0.0;  // east without false easting
};

// By the class, which knows whole meridians only; false for another one.
bool ClassForward(const CoordOptions& options, const PointLine& p, double meridian, PlanePoint& out) {
    if (meridian != std::floor(meridian)) return false;
    Coordinate_2Dsys c;
    c.setEllipse(SystemOf(options));
    c.setBL(p.first * kDegree, p.second * kDegree);
    c.setL0(static_cast<int>(meridian));
    if (c.UTMtoGS() == 0) return false;
    out = {c.getGX(), c.getGY()};
    return true;
}

bool ClassBackward(const CoordOptions& options, const PlanePoint& p, double meridian, double& lat, double& lon) {
    if (meridian != std::floor(meridian)) return false;
    Coordinate_2Dsys c;
    c.setEllipse(SystemOf(options));
    c.setGX(p.north);
    c.setGY(p.east);
    c.setL0(static_cast<int>(meridian));
    if (c.GStoUTM() == 0) return false;
    lat = c.getB() / kDegree;
    lon = c.getL() / kDegree;
    return true;
}

[[noreturn]] void NeedsWholeMeridian() {
    throw Failure(kUsage, "--historic class needs a central meridian of whole degrees.");
}

std::string Angle(double degrees, const CoordOptions& options) {
    if (options.angles == AngleForm::packed)
        return Fixed(deg_dms(degrees), options.decimals >= 0 ? options.decimals : 9);
    return Fixed(degrees, options.decimals >= 0 ? options.decimals : 10);
}

std::string Metres(double metres, const CoordOptions& options) {
    return Fixed(metres, options.decimals >= 0 ? options.decimals : 4);
}

// Numbers leave as JSON with the digits of the text form.
double Rounded(const std::string& text) {
    double number = 0.0;
    ReadReal(text, number);
    return number;
}

void Print(const std::string& line) {
    std::fputs(line.c_str(), stdout);
    std::fputc('\n', stdout);
}

double OutsideEasting(double east, int zone, const CoordOptions& options) {
    switch (options.easting) {
        case Easting::natural:
            return east;
        case Easting::offset:
            return east + kFalseEasting;
        case Easting::standard:
            break;
    }
    return std::isnan(options.meridian) ? zone * kZone + kFalseEasting + east : east + kFalseEasting;
}

void WarnIfWide(double offset, const std::string& where, Context& context) {
    if (std::fabs(offset) <= kWideDegrees) return;
    context.report.Warn("positions far from their meridian",
                        where + ": " + Fixed(offset, 2) + " degrees from the central meridian; the series serve " +
                            "one zone, so the result is not good to the millimetre.");
}

void ToPlane(const CoordOptions& options, Context& context) {
    const PointFormat format{PointKind::geographic, options.order != "lon,lat", options.angles};
    if (!context.json) Print("# north_m east_m zone central_meridian_deg (" + FamilyTitle(options.family) + ")");
    const long points = ReadPoints(options.file, format, context, [&](const PointLine& p) {
        const double meridian =
            std::isnan(options.meridian) ? CentralMeridian(p.second, options.zoneWidth) : options.meridian;
        const int zone = std::isnan(options.meridian) ? ZoneNumber(static_cast<int>(meridian), options.zoneWidth) : 0;
        WarnIfWide(p.second - meridian, "line " + std::to_string(p.number), context);
        PlanePoint freely, byClass;
        JWD_to_Gaosi(options.family.selector(), p.first * kDegree, p.second * kDegree, meridian * kDegree, freely.north,
                     freely.east);
        const bool hasClass = ClassForward(options, p, meridian, byClass);
        if (options.historic == "class" && !hasClass) NeedsWholeMeridian();
        const PlanePoint& out = options.historic == "class" ? byClass : freely;
        const std::string north = Metres(out.north, options);
        const std::string east = Metres(OutsideEasting(out.east, zone, options), options);
        const double dn = (byClass.north - freely.north) * 1000.0, de = (byClass.east - freely.east) * 1000.0;
        if (context.json) {
            nlohmann::ordered_json j = {{"north_m", Rounded(north)},
                                        {"east_m", Rounded(east)},
                                        {"zone", zone},
                                        {"central_meridian_deg", meridian}};
            if (context.verbose && hasClass) j["class_minus_free_mm"] = {{"north", dn}, {"east", de}};
            if (!p.rest.empty()) j["rest"] = p.rest;
            Print(j.dump(-1, ' ', false, nlohmann::json::error_handler_t::replace));
            return;
        }
        std::string line = north + " " + east + " " + std::to_string(zone) + " " + Fixed(meridian, 0);
        if (meridian != std::floor(meridian)) line = north + " " + east + " 0 " + Fixed(meridian, 6);
        if (context.verbose && hasClass) line += " class-free_mm north " + Fixed(dn, 4) + " east " + Fixed(de, 4);
        Print(p.rest.empty() ? line : line + " " + p.rest);
    });
    if (points == 0) throw Failure(kFailed, "no point was converted.");
    context.status = context.report.status();
}

// The meridian and the natural easting of an outside easting; false if the zone is not known.
bool SplitEasting(const CoordOptions& options, double east, double& natural, double& meridian) {
    const double zone = std::trunc(east / kZone);
    if (zone != 0.0 && std::isnan(options.meridian)) {
        meridian = options.zoneWidth == 3 ? zone * 3 : zone * 6 - 3;
        natural = east - zone * kZone - kFalseEasting;
        return true;
    }
    if (std::isnan(options.meridian)) return false;
    meridian = options.meridian;
    natural = options.easting == Easting::natural ? east : east - zone * kZone - kFalseEasting;
    return true;
}

void ToGeo(const CoordOptions& options, Context& context) {
    const PointFormat format{PointKind::plane, options.order != "east,north", AngleForm::decimal};
    if (!context.json)
        Print(std::string("# lat_") + (options.angles == AngleForm::packed ? "packed lon_packed" : "deg lon_deg") +
              " central_meridian_deg (" + FamilyTitle(options.family) + ")");
    long done = 0;
    ReadPoints(options.file, format, context, [&](const PointLine& p) {
        double natural = 0.0, meridian = 0.0;
        if (!SplitEasting(options, p.second, natural, meridian)) {
            context.report.Skip("eastings without zone number", "line " + std::to_string(p.number) + ": easting " +
                                                                    Fixed(p.second, 3) +
                                                                    " has no zone number; give --meridian.");
            return;
        }
        const PlanePoint plane{p.first, natural};
        const int ell = options.family.selector();
        double B = 0.0, l = 0.0, historicB = 0.0, historicL = 0.0, classLat = 0.0, classLon = 0.0;
        InverseOfForward(ell, plane.north, plane.east, B, l);
        Gaosi_to_JWD(ell, plane.north, plane.east, meridian * kDegree, historicB, historicL);
        const bool hasClass = ClassBackward(options, plane, meridian, classLat, classLon);
        double lat = B / kDegree, lon = l / kDegree + meridian;
        const double cosine = std::cos(B);
        const auto mm = [&](double dLat, double dLon) {
            return nlohmann::ordered_json{{"lat", dLat * kDegree * kMetresPerRadian * 1000.0},
                                          {"lon", dLon * kDegree * cosine * kMetresPerRadian * 1000.0}};
        };
        const auto freeDiff = mm(historicB / kDegree - lat, historicL / kDegree - lon);
        const auto classDiff = mm(classLat - lat, classLon - lon);
        if (options.historic == "free") {
            lat = historicB / kDegree;
            lon = historicL / kDegree;
        } else if (options.historic == "class") {
            if (!hasClass) NeedsWholeMeridian();
            lat = classLat;
            lon = classLon;
        }
        WarnIfWide(l / kDegree, "line " + std::to_string(p.number), context);
        ++done;
        const std::string latText = Angle(lat, options), lonText = Angle(lon, options);
        if (context.json) {
            const bool packed = options.angles == AngleForm::packed;
            nlohmann::ordered_json j = {{packed ? "lat_packed" : "lat_deg", Rounded(latText)},
                                        {packed ? "lon_packed" : "lon_deg", Rounded(lonText)},
                                        {"central_meridian_deg", meridian}};
            if (context.verbose) {
                j["free_minus_true_mm"] = freeDiff;
                if (hasClass) j["class_minus_true_mm"] = classDiff;
            }
            if (!p.rest.empty()) j["rest"] = p.rest;
            Print(j.dump(-1, ' ', false, nlohmann::json::error_handler_t::replace));
            return;
        }
        std::string line = latText + " " + lonText + " " + Fixed(meridian, meridian == std::floor(meridian) ? 0 : 6);
        if (context.verbose) {
            const auto told = [](const char* name, const nlohmann::ordered_json& d) {
                return std::string(" ") + name + "-true_mm lat " + Fixed(d["lat"].get<double>(), 4) + " lon " +
                       Fixed(d["lon"].get<double>(), 4);
            };
            line += told("free", freeDiff);
            if (hasClass) line += told("class", classDiff);
        }
        Print(p.rest.empty() ? line : line + " " + p.rest);
    });
    if (done == 0) throw Failure(kFailed, "no point was converted.");
    context.status = context.report.status();
}

void Zones(const CoordOptions& options, Context& context) {
    const PointFormat format{PointKind::geographic, options.order != "lon,lat", options.angles};
    if (!context.json) Print("# lon_deg zone3 central_meridian3_deg zone6 central_meridian6_deg");
    const long points = ReadLongitudes(options.file, format, context, [&](const PointLine& p) {
        if (p.second < 0.0)
            context.report.Warn("western longitudes", "line " + std::to_string(p.number) +
                                                          ": the zone rule truncates towards zero and serves eastern " +
                                                          "longitudes only.");
        const int m3 = CentralMeridian(p.second, 3), m6 = CentralMeridian(p.second, 6);
        if (context.json) {
            Print(nlohmann::ordered_json{
                {"lon_deg", p.second},
                {"zone3", ZoneNumber(m3, 3)},
                {"central_meridian3_deg", m3},
                {"zone6", ZoneNumber(m6, 6)},
                {"central_meridian6_deg",
                 m6}}.dump());
            return;
        }
        Print(Fixed(p.second, options.decimals >= 0 ? options.decimals : 6) + " " + std::to_string(ZoneNumber(m3, 3)) +
              " " + std::to_string(m3) + " " + std::to_string(ZoneNumber(m6, 6)) + " " + std::to_string(m6));
    });
    if (points == 0) throw Failure(kFailed, "no longitude was read.");
    context.status = context.report.status();
}

void AddCoordOptions(CLI::App& verb, Context& context, CoordOptions& options, const char* orders) {
    verb.add_option("FILE", options.file, "Points, one a line; - or nothing is stdin");
    AddCommonOptions(verb, context);
    AddAngleOption(verb, options.angles);
    verb.add_option("--decimals", options.decimals, "Decimals of the results")->check(CLI::Range(0, 15));
    std::vector<std::string> choices;
    const std::string both(orders);
    choices.push_back(both.substr(0, both.find('|')));
    choices.push_back(both.substr(both.find('|') + 1));
    verb.add_option("--order", options.order,
                    "Order of the two numbers on a line, unless they are named (lat=.. lon=..)")
        ->check(CLI::IsMember(choices))
        ->default_str(choices[0]);
}

void AddPlaneOptions(CLI::App& verb, CoordOptions& options) {
    static const std::map<std::string, Easting> kEastings = {
        {"standard", Easting::standard}, {"offset", Easting::offset}, {"natural", Easting::natural}};
    AddFamilyOption(verb, options.family);
    verb.add_option("--zone", options.zoneWidth, "Width of the zones, 3 or 6 degrees")
        ->check(CLI::IsMember({3, 6}))
        ->capture_default_str();
    verb.add_option("--meridian", options.meridian, "Central meridian in degrees, in place of a zone's")
        ->check(CLI::Range(-180.0, 360.0));
    verb.add_option("--easting", options.easting,
                    "standard: zone number and 500 km in front; offset: 500 km; natural: from the meridian")
        ->transform(CLI::CheckedTransformer(kEastings).description("standard|offset|natural"))
        ->default_str("standard");
    verb.add_option("--historic", options.historic,
                    "Results of the family's historic functions: free (forward, backward) or class (Coordinate_2Dsys)")
        ->check(CLI::IsMember({"free", "class"}));
}

}  // namespace

void AddCoordVerb(CLI::App& app, Context& context) {
    CLI::App& coord = *app.add_subcommand("coord", "Convert coordinates, one point a line");
    coord.require_subcommand(1);
    const auto options = std::make_shared<CoordOptions>();

    CLI::App& toPlane = *coord.add_subcommand("to-plane", "Latitude and longitude to northing and easting");
    AddCoordOptions(toPlane, context, *options, "lat,lon|lon,lat");
    AddPlaneOptions(toPlane, *options);
    toPlane.callback([options, &context] { ToPlane(*options, context); });

    CLI::App& toGeo =
        *coord.add_subcommand("to-geo", "Northing and easting to latitude and longitude, the true inverse");
    AddCoordOptions(toGeo, context, *options, "north,east|east,north");
    AddPlaneOptions(toGeo, *options);
    toGeo.callback([options, &context] { ToGeo(*options, context); });

    CLI::App& zone = *coord.add_subcommand("zone", "Zone numbers and central meridians of a longitude");
    AddCoordOptions(zone, context, *options, "lat,lon|lon,lat");
    zone.callback([options, &context] { Zones(*options, context); });
}

}  // namespace zm::tool
